// SPDX-License-Identifier: MIT
#include "platform/linux/files/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

FileState stateFrom(const struct stat &info)
{
    return {info.st_size, info.st_mtim.tv_sec, info.st_mtim.tv_nsec};
}

} // namespace

RegularFile::RegularFile(int descriptor, const FileState &state)
    : fd(descriptor)
    , opened(state)
{
}

RegularFile::RegularFile(RegularFile &&other) noexcept
    : fd(std::exchange(other.fd, -1))
    , opened(other.opened)
{
}

RegularFile::~RegularFile()
{
    if (fd >= 0)
        ::close(fd);
}

std::optional<RegularFile> RegularFile::open(const QByteArray &path)
{
    struct stat info;
    // Opening a device can have effects, so the kind is checked before. The path may lead to another file by then, so
    // the open file is checked again.
    if (path.isEmpty() || path.contains('\0') || ::stat(path.constData(), &info) != 0 || !S_ISREG(info.st_mode))
        return {};
    return adopt(::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

std::optional<RegularFile> RegularFile::adopt(int descriptor)
{
    struct stat info;
    if (descriptor < 0)
        return {};
    RegularFile file(descriptor, {});
    if (::fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode))
        return {};
    file.opened = stateFrom(info);
    return file;
}

FileState RegularFile::currentState() const
{
    struct stat info;
    return ::fstat(fd, &info) == 0 ? stateFrom(info) : FileState{};
}

QByteArray RegularFile::read(qint64 offset, qint64 length) const
{
    QByteArray bytes(length, Qt::Uninitialized);
    qsizetype count = 0;
    while (count < bytes.size()) {
        const auto got = ::pread(fd, bytes.data() + count, static_cast<size_t>(bytes.size() - count), offset + count);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        count += got;
    }
    bytes.truncate(count);
    return bytes;
}
