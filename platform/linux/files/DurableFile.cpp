// SPDX-License-Identifier: MIT
#include "platform/linux/files/DurableFile.h"

#include "platform/linux/files/RegularFile.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 kNanosecondsPerSecond = 1'000'000'000;
constexpr char kUnfinished[] = ".new";
constexpr mode_t kPrivateFile = 0600;
constexpr mode_t kPrivateFolder = 0700;
constexpr mode_t kPermissions = 0777;
constexpr mode_t kAnyWrite = 0222;

class Descriptor {
public:
    explicit Descriptor(int opened)
        : number(opened)
    {
    }
    ~Descriptor()
    {
        if (number >= 0)
            ::close(number);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int get() const { return number; }
    bool isOpen() const { return number >= 0; }

    // Some file systems report a failed write only when the file is closed.
    bool close()
    {
        const int closing = number;
        number = -1;
        return ::close(closing) == 0;
    }

private:
    int number;
};

bool syncFolder(const QByteArray &path)
{
    const Descriptor folder(::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Ignore file systems that cannot sync a folder: they have nothing to sync.
    return folder.isOpen() && (::fsync(folder.get()) == 0 || errno == EINVAL);
}

bool writeAll(int file, const QByteArray &contents)
{
    qsizetype done = 0;
    while (done < contents.size()) {
        const ssize_t count = ::write(file, contents.constData() + done, static_cast<size_t>(contents.size() - done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        done += count;
    }
    return true;
}

} // namespace

FileIdentity fileIdentity(const struct stat &status)
{
    const auto nanoseconds = [](const timespec &time) { return time.tv_sec * kNanosecondsPerSecond + time.tv_nsec; };
    return {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
}

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return QByteArrayLiteral(".");
    return slash == 0 ? QByteArrayLiteral("/") : path.left(slash);
}

QByteArray readLink(const QByteArray &link)
{
    std::array<char, PATH_MAX> buffer;
    const ssize_t size = ::readlink(link.constData(), buffer.data(), buffer.size());
    return size > 0 ? QByteArray(buffer.data(), size) : QByteArray();
}

QByteArray linkTarget(const QByteArray &path)
{
    QByteArray target = path;
    for (int links = 0; links < kMostLinks; ++links) {
        const QByteArray next = readLink(target);
        if (next.isEmpty())
            return errno == ELOOP ? QByteArray() : target;
        target = next.startsWith('/') ? next : folderOf(target) + '/' + next;
    }
    return {};
}

bool makePrivateFolder(const QByteArray &path)
{
    struct stat status {};
    if (::stat(path.constData(), &status) == 0)
        return S_ISDIR(status.st_mode);
    const QByteArray parent = folderOf(path);
    if (parent == path || !makePrivateFolder(parent))
        return false;
    if (::mkdir(path.constData(), kPrivateFolder) != 0 && errno != EEXIST)
        return false;
    return syncFolder(parent);
}

std::optional<QByteArray> readRegularFile(const QByteArray &path, qint64 limit)
{
    const auto file = RegularFile::open(path);
    if (!file || file->state().size > limit)
        return {};
    // Files of the kernel, as in /proc, have no size: read them to their end.
    const qint64 size = file->state().size;
    const QByteArray contents = file->read(0, size > 0 ? size + 1 : limit);
    // Any other difference is a failed read, or a file that another program is changing.
    if (size > 0 && contents.size() != size)
        return {};
    return contents;
}

bool replaceFile(const QByteArray &path, const QByteArray &contents)
{
    const QByteArray target = linkTarget(path);
    if (target.isEmpty())
        return false;
    const QByteArray folder = folderOf(target);
    if (!makePrivateFolder(folder))
        return false;

    mode_t mode = kPrivateFile;
    struct stat status {};
    if (::lstat(target.constData(), &status) == 0) {
        // The owner of the folder could replace a read-only file, but somebody made it read-only for a reason.
        if (!S_ISREG(status.st_mode) || (status.st_mode & kAnyWrite) == 0 ||
            ::faccessat(AT_FDCWD, target.constData(), W_OK, AT_EACCESS) != 0)
            return false;
        mode = status.st_mode & kPermissions;
    } else if (errno != ENOENT) {
        return false;
    }

    // Always the same name, so that a program that is killed here leaves one file at most.
    const QByteArray temporary = target + kUnfinished;
    ::unlink(temporary.constData());
    Descriptor file(::open(temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kPrivateFile));
    if (!file.isOpen())
        return false;
    const bool written = writeAll(file.get(), contents) && ::fchmod(file.get(), mode) == 0 && ::fsync(file.get()) == 0;
    if (!file.close() || !written || ::rename(temporary.constData(), target.constData()) != 0) {
        ::unlink(temporary.constData());
        return false;
    }
    return syncFolder(folder);
}

bool hasUnfinished(const QByteArray &path)
{
    return ::faccessat(AT_FDCWD, (path + kUnfinished).constData(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
}

void removeUnfinished(const QByteArray &path)
{
    ::unlink((path + kUnfinished).constData());
}
