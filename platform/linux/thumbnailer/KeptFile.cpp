// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnailer/KeptFile.h"

#include "platform/linux/helpers/Channel.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t kFolderMode = 0700;

bool writeAll(int file, const std::string &bytes)
{
    size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(file, bytes.data() + written, bytes.size() - written);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        written += static_cast<size_t>(count);
    }
    return true;
}

} // namespace

bool makeFolder(const std::string &path)
{
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0)
        return S_ISDIR(info.st_mode);
    const auto slash = path.rfind('/');
    if (slash != std::string::npos && slash > 0 && !makeFolder(path.substr(0, slash)))
        return false;
    return ::mkdir(path.c_str(), kFolderMode) == 0 || errno == EEXIST;
}

bool keepFile(const std::string &path, const std::string &bytes)
{
    const auto slash = path.rfind('/');
    if (slash == std::string::npos || !makeFolder(path.substr(0, slash)))
        return false;
    std::string temporary = path + ".XXXXXX";
    {
        const Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
        if (!file.isOpen())
            return false;
        if (writeAll(file.get(), bytes) && ::rename(temporary.c_str(), path.c_str()) == 0)
            return true;
    }
    ::unlink(temporary.c_str());
    return false;
}
