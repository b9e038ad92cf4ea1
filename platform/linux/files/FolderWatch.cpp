// SPDX-License-Identifier: MIT
#include "platform/linux/files/FolderWatch.h"

#include "platform/MainQueue.h"
#include "platform/linux/files/DefaultMode.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr quint32 kDirectory = IN_ONLYDIR | IN_EXCL_UNLINK | IN_MASK_ADD;
constexpr quint32 kPassed = kDirectory | IN_MOVE_SELF | IN_DELETE_SELF;
// The link itself, not its target.
constexpr quint32 kLink = IN_DONT_FOLLOW | IN_MASK_ADD | IN_MOVE_SELF | IN_DELETE_SELF | IN_ATTRIB;
constexpr quint32 kAwaited = kPassed | IN_CREATE | IN_MOVED_TO | IN_ATTRIB;
constexpr quint32 kLeaving = IN_DELETE | IN_MOVED_FROM;
// Select no event for writing, only for closing a written file: a long download must not wake the program.
constexpr quint32 kInside = kAwaited | kLeaving | IN_CLOSE_WRITE;
constexpr quint32 kWayIsLost = IN_MOVE_SELF | IN_DELETE_SELF | IN_UNMOUNT | IN_IGNORED | IN_Q_OVERFLOW;

constexpr int kMostAttempts = 10;      // to follow a path that changes at the same time
constexpr double kRetryInterval = 5.0; // seconds, while the kernel has no free watch
constexpr size_t kReadSize = 65'536;   // bytes

QList<QByteArray> components(const QByteArray &path)
{
    QList<QByteArray> names = path.split('/');
    names.removeIf([](const QByteArray &name) { return name.isEmpty() || name == "."; });
    return names;
}

QByteArray child(const QByteArray &directory, const QByteArray &name)
{
    return directory.endsWith('/') ? directory + name : directory + '/' + name;
}

QByteArray parent(const QByteArray &directory)
{
    return directory.left(std::max<qsizetype>(directory.lastIndexOf('/'), 1));
}

QByteArray lastComponent(const QByteArray &directory)
{
    return directory.mid(directory.lastIndexOf('/') + 1);
}

// Whether it is a directory itself, and no link to one.
bool isDirectory(const QByteArray &path)
{
    struct stat info = {};
    return lstat(path.constData(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool permits(const QByteArray &path, int access)
{
    return faccessat(AT_FDCWD, path.constData(), access, AT_EACCESS) == 0;
}

// Nothing when there is no such folder.
std::optional<FileIdentity> identityOf(const QByteArray &folder)
{
    struct stat status = {};
    if (stat(folder.constData(), &status) != 0)
        return {};
    return fileIdentity(status);
}

bool isSameFolder(const std::optional<FileIdentity> &one, const std::optional<FileIdentity> &other)
{
    return one && other ? one->isSameFile(*other) : !one && !other;
}

// Whether it is the same folder, and no name in it was added or removed.
bool hasSameNames(const std::optional<FileIdentity> &one, const std::optional<FileIdentity> &other)
{
    return isSameFolder(one, other) && (!one || one->modified == other->modified);
}

} // namespace

FolderWatch::FolderWatch(const QByteArray &folder, double seconds, MainQueue &queueOfMain,
                         std::function<void()> callback)
    : path(folder)
    , latency(seconds)
    , mainQueue(queueOfMain)
    , onChange(std::move(callback))
{
    arm();
}

FolderWatch::~FolderWatch()
{
    if (timer)
        timer->invalidate();
    notifier.reset();
    if (queue >= 0)
        close(queue);
}

void FolderWatch::arm()
{
    notifier.reset();
    if (queue >= 0)
        close(queue); // removes every watch
    queue = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (queue >= 0 && !followPath()) {
        close(queue);
        queue = -1;
    }
    if (queue < 0) {
        // The user's programs have used up all inotify watches. Poll until there is a free one.
        lastState = identityOf(path);
        timer = mainQueue.after(kRetryInterval, [this] { lookWithoutEvents(); });
        return;
    }
    notifier = std::make_unique<QSocketNotifier>(queue, QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this] { wake(); });
}

bool FolderWatch::followPath()
{
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        watched.clear();
        lastIdentity.reset();
        switch (followSteps(components(path))) {
        case Outcome::Followed:
            return true;
        case Outcome::Refused:
        case Outcome::Unreadable:
            return false;
        case Outcome::Gone:
            break; // start again
        }
    }
    return false;
}

// Walks from the root to the folder, as far as the path exists. On the way it watches each folder for its own removal
// only, so that changes inside do not wake the program while the watched folder exists.
FolderWatch::Outcome FolderWatch::followSteps(QList<QByteArray> names)
{
    QByteArray directory = "/";
    int links = 0;
    while (!names.isEmpty()) {
        const QByteArray name = names.takeFirst();
        if (name == "..") {
            directory = parent(directory);
            continue;
        }
        const QByteArray next = child(directory, name);
        if (isDirectory(next)) {
            // A folder without read permission can be passed, but not watched.
            if (const Outcome outcome = add(directory, kPassed);
                outcome == Outcome::Refused || outcome == Outcome::Gone)
                return outcome;
            directory = next;
            continue;
        }
        if (readLink(next).isEmpty()) {
            const Outcome outcome = followMissing(directory, name);
            // It may have appeared just before the watch, so check again.
            return isDirectory(next) || !readLink(next).isEmpty() ? Outcome::Gone : outcome;
        }
        if (const Outcome outcome = add(next, kLink, {""}); outcome != Outcome::Followed)
            return outcome == Outcome::Unreadable ? Outcome::Refused : outcome;
        // Read the link after its watch was added.
        const QByteArray target = readLink(next);
        if (target.isEmpty())
            return Outcome::Gone;
        if (++links > kMostLinks)
            return Outcome::Followed; // leads nowhere, until one of the links changes
        if (target.startsWith('/'))
            directory = "/";
        names = components(target) + names;
    }
    return followFolder(directory);
}

FolderWatch::Outcome FolderWatch::followFolder(const QByteArray &directory)
{
    const Outcome outcome = add(directory, kInside, {}, true);
    if (outcome == Outcome::Unreadable)
        return followUnreadable(directory);
    lastIdentity = identityOf(directory);
    return outcome;
}

FolderWatch::Outcome FolderWatch::followMissing(const QByteArray &directory, const QByteArray &name)
{
    const Outcome outcome = add(directory, kAwaited, {name, ""});
    if (outcome != Outcome::Unreadable)
        return outcome;
    // inotify reports no names in a folder without read permission.
    return permits(directory, X_OK) ? Outcome::Refused : followUnreadable(directory);
}

// The watch of its parent reports when the permissions change.
FolderWatch::Outcome FolderWatch::followUnreadable(const QByteArray &directory)
{
    const Outcome outcome = add(parent(directory), kAwaited | kLeaving, {lastComponent(directory)});
    if (outcome == Outcome::Unreadable)
        return Outcome::Refused;
    return permits(directory, R_OK) ? Outcome::Gone : outcome;
}

FolderWatch::Outcome FolderWatch::add(const QByteArray &entry, quint32 mask, const QSet<QByteArray> &names,
                                      bool isFolder)
{
    const int watch = inotify_add_watch(queue, entry.constData(), mask);
    if (watch < 0) {
        if (errno == ENOSPC || errno == ENOMEM)
            return Outcome::Refused;
        return errno == EACCES ? Outcome::Unreadable : Outcome::Gone;
    }
    Watched &source = watched[watch];
    source.names.unite(names);
    source.isFolder = source.isFolder || isFolder;
    return Outcome::Followed;
}

void FolderWatch::wake()
{
    readEvents();
    if (change == Change::None)
        return;
    // Leave the events in the kernel until then: even a busy folder wakes the program only twice in that time.
    notifier->setEnabled(false);
    timer = mainQueue.after(latency, [this] { report(); });
}

void FolderWatch::report()
{
    timer = nullptr;
    if (isPutOff(&FolderWatch::report))
        return;
    readEvents();
    // A removed folder reports that only when no program uses it any more, so compare identities.
    const bool isLost = change == Change::OnTheWay || (lastIdentity && !isSameFolder(identityOf(path), lastIdentity));
    change = Change::None;
    if (isLost)
        arm();
    else
        notifier->setEnabled(true);
    const auto callback = onChange; // outlives the watch
    callback();
}

void FolderWatch::lookWithoutEvents()
{
    timer = nullptr;
    if (isPutOff(&FolderWatch::lookWithoutEvents))
        return;
    const auto before = lastState;
    arm();
    if (hasSameNames(identityOf(path), before))
        return;
    const auto callback = onChange; // outlives the watch
    callback();
}

// Whether `step` must wait for the default mode. It is called again then.
bool FolderWatch::isPutOff(void (FolderWatch::*step)())
{
    if (isDefaultMode())
        return false;
    defaultMode = whenDefaultMode([this, step] {
        // The loop is about to sleep, so wake it for what the step begins.
        timer = mainQueue.after(0, [this, step] { (this->*step)(); });
        defaultMode = nullptr;
    });
    return true;
}

void FolderWatch::readEvents()
{
    alignas(inotify_event) std::array<char, kReadSize> buffer;
    while (true) {
        const ssize_t size = read(queue, buffer.data(), buffer.size());
        if (size <= 0)
            return;
        for (ssize_t offset = 0; offset < size;) {
            inotify_event event;
            std::memcpy(&event, buffer.data() + offset, sizeof event);
            const QByteArray name(event.len > 0 ? buffer.data() + offset + sizeof event : "");
            offset += static_cast<ssize_t>(sizeof event + event.len);
            const Watched source = watched.value(event.wd);
            if (event.mask & kWayIsLost || source.names.contains(name))
                change = Change::OnTheWay;
            else if (source.isFolder && change == Change::None)
                change = Change::Inside;
        }
    }
}
