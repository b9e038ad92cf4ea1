// SPDX-License-Identifier: MIT
#include "platform/linux/FolderWatch.h"

#include "platform/MainQueue.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr quint32 kDirectoryOnly = IN_ONLYDIR | IN_EXCL_UNLINK | IN_MASK_ADD;
constexpr quint32 kPassed = IN_MOVE_SELF | IN_DELETE_SELF;
constexpr quint32 kRemoved = kPassed | IN_DELETE;
constexpr quint32 kAwaited = kRemoved | IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM;
// Writing to a file says nothing until it is closed: a long download does not keep us awake.
constexpr quint32 kInside = kAwaited | IN_CLOSE_WRITE | IN_ATTRIB;
constexpr quint32 kWayIsLost = IN_MOVE_SELF | IN_DELETE_SELF | IN_UNMOUNT | IN_IGNORED | IN_Q_OVERFLOW;

constexpr int kMostLinks = 40;         // on the way, as the kernel counts
constexpr int kMostAttempts = 10;      // to follow a path that changes meanwhile
constexpr double kRetryInterval = 5.0; // seconds, while the system grants no watch
constexpr size_t kReadSize = 65'536;   // bytes
constexpr int kNone = -1;

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

// Empty for what is no link.
QByteArray linkTarget(const QByteArray &link)
{
    std::array<char, PATH_MAX> buffer;
    const ssize_t size = readlink(link.constData(), buffer.data(), buffer.size());
    return QByteArray(buffer.data(), std::max<ssize_t>(size, 0));
}

// Differs when a name in the folder came or went, or it is another folder.
QByteArray state(const QByteArray &folder)
{
    struct stat info = {};
    if (stat(folder.constData(), &info) != 0)
        return {};
    return QByteArray::number(info.st_dev) + ' ' + QByteArray::number(info.st_ino) + ' ' +
           QByteArray::number(qint64(info.st_mtim.tv_sec)) + ' ' + QByteArray::number(qint64(info.st_mtim.tv_nsec));
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
    watched.clear();
    if (queue >= 0)
        close(queue); // and with it every watch
    queue = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (queue >= 0 && !followPath()) {
        close(queue);
        queue = -1;
    }
    if (queue < 0) {
        // The user's programs have used up what the system grants. Look from time to time, until it grants a watch.
        lastState = state(path);
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
        switch (followSteps(components(path))) {
        case Outcome::Followed:
            return true;
        case Outcome::Refused:
            return false;
        case Outcome::Gone:
            break; // look again at what is there now
        }
    }
    return false;
}

// Walks from the root to the folder, or as far as there is something. What is passed on the way is watched for being
// renamed only: it cannot be removed before what is inside, so the comings and goings there need not wake us.
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
            if (const Outcome outcome = add(directory, kPassed, {}); outcome != Outcome::Followed)
                return outcome;
            directory = next;
            continue;
        }
        if (const Outcome outcome = add(directory, kAwaited, name); outcome != Outcome::Followed)
            return outcome;
        // It may have come before the watch, so the second look counts.
        if (isDirectory(next)) {
            directory = next;
            continue;
        }
        const QByteArray target = linkTarget(next);
        if (target.isEmpty() || ++links > kMostLinks)
            return followEnd(directory, kAwaited, false);
        if (target.startsWith('/'))
            directory = "/";
        names = components(target) + names;
    }
    return followEnd(directory, kInside, true);
}

// Watches where the walk ended. A directory that is removed while a process is in it tells so only to its parent.
FolderWatch::Outcome FolderWatch::followEnd(const QByteArray &directory, quint32 mask, bool isFolder)
{
    if (const Outcome outcome = add(parent(directory), kRemoved, lastComponent(directory));
        outcome != Outcome::Followed)
        return outcome;
    int watch = kNone;
    const Outcome outcome = add(directory, mask, {}, &watch);
    if (isFolder && watch != kNone)
        watched[watch].isFolder = true;
    return outcome;
}

FolderWatch::Outcome FolderWatch::add(const QByteArray &directory, quint32 mask, const QByteArray &name,
                                      int *descriptor)
{
    const int watch = inotify_add_watch(queue, directory.constData(), mask | kDirectoryOnly);
    if (watch < 0) {
        if (errno == ENOSPC || errno == ENOMEM)
            return Outcome::Refused;
        // A directory that may not be read can still be passed, and tells nothing.
        return errno == EACCES ? Outcome::Followed : Outcome::Gone;
    }
    Watched &source = watched[watch];
    if (!name.isEmpty())
        source.names.insert(name);
    if (descriptor)
        *descriptor = watch;
    return Outcome::Followed;
}

void FolderWatch::wake()
{
    readEvents();
    if (change == Change::None)
        return;
    // Until the time is up the events wait in the kernel: a busy folder wakes us twice in that time, however busy.
    notifier->setEnabled(false);
    timer = mainQueue.after(latency, [this] { report(); });
}

void FolderWatch::report()
{
    timer = nullptr;
    readEvents();
    if (std::exchange(change, Change::None) == Change::OnTheWay)
        arm();
    else
        notifier->setEnabled(true);
    const auto callback = onChange; // outlives the watch
    callback();
}

void FolderWatch::lookWithoutEvents()
{
    timer = nullptr;
    const QByteArray before = lastState;
    arm();
    if (state(path) == before)
        return;
    const auto callback = onChange; // outlives the watch
    callback();
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
            const char *const name = buffer.data() + offset + sizeof event;
            offset += static_cast<ssize_t>(sizeof event + event.len);
            const Watched source = watched.value(event.wd);
            if (event.mask & kWayIsLost || (event.len > 0 && source.names.contains(QByteArray(name))))
                change = Change::OnTheWay;
            else if (source.isFolder && change == Change::None)
                change = Change::Inside;
        }
    }
}
