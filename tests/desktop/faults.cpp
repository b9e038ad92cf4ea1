// SPDX-License-Identifier: MIT
// Loaded before the C library, it causes faults in a program that otherwise only the system could cause.
// support/faults.py has the names of the environment variables.

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <string>
#include <string_view>

#include <dlfcn.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr off_t kRoom = 32; // bytes; a file can still grow by these on the full disk

bool isBelow(int file, std::string_view folder)
{
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    std::array<char, PATH_MAX> target{};
    const ssize_t length = ::readlink(link.c_str(), target.data(), target.size());
    const std::string_view path(target.data(), static_cast<size_t>(std::max<ssize_t>(length, 0)));
    return path.size() > folder.size() && path.substr(0, folder.size()) == folder && path[folder.size()] == '/';
}

bool isOnFullDisk(int file)
{
    const char *folder = std::getenv("PARKLET_FULL_DISK");
    return folder && ::access((std::string(folder) + ".full").c_str(), F_OK) == 0 && isBelow(file, folder);
}

} // namespace

extern "C" {

ssize_t write(int file, const void *data, size_t size)
{
    static const auto real = reinterpret_cast<decltype(&write)>(::dlsym(RTLD_NEXT, "write"));
    const int before = errno;
    struct stat state {};
    if (isOnFullDisk(file) && ::fstat(file, &state) == 0) {
        if (state.st_size >= kRoom) {
            errno = ENOSPC;
            return -1;
        }
        size = std::min(size, static_cast<size_t>(kRoom - state.st_size));
    }
    errno = before;
    return real(file, data, size);
}

int fsync(int file)
{
    static const auto real = reinterpret_cast<decltype(&fsync)>(::dlsym(RTLD_NEXT, "fsync"));
    const int before = errno;
    if (const char *folder = std::getenv("PARKLET_SLOW_DISK"); folder && isBelow(file, folder)) {
        const std::string name(folder);
        ::close(::creat((name + ".waited").c_str(), 0600));
        while (::access((name + ".slow").c_str(), F_OK) == 0)
            ::usleep(10'000);
    }
    errno = before;
    return real(file);
}

passwd *getpwuid(uid_t user)
{
    static const auto real = reinterpret_cast<decltype(&getpwuid)>(::dlsym(RTLD_NEXT, "getpwuid"));
    static passwd entry;
    if (char *home = std::getenv("PARKLET_HOME_OF_USER")) {
        entry.pw_uid = user;
        entry.pw_dir = home;
        return &entry;
    }
    return real(user);
}

} // extern "C"
