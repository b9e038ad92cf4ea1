// SPDX-License-Identifier: MIT
//
// stalled-mount FOLDER SOURCE CONTROL COMMAND ...: shows SOURCE in FOLDER, read-only, by a file system of its own, and
// becomes COMMAND, which alone sees it. What CONTROL holds says how the file system behaves: "lookup" never answers who
// asks for a file, "read" never who reads one, "slow" takes three seconds for everything. What COMMAND itself asks for,
// rather than a process that it has started, is written to CONTROL.asked. It ends when CONTROL is removed.

#define FUSE_USE_VERSION 31

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>

#include <dirent.h>
#include <fcntl.h>
#include <fuse.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

std::string source;
std::string control;
pid_t command = -1;

std::string behaviour()
{
    std::ifstream file(control);
    std::string word;
    file >> word;
    return word;
}

// The kernel reports the number of the thread that asks.
void note(const char *operation, const char *path)
{
    const std::string thread = "/proc/" + std::to_string(command) + "/task/" + std::to_string(fuse_get_context()->pid);
    if (::access(thread.c_str(), F_OK) == 0)
        std::ofstream(control + ".asked", std::ios::app) << operation << ' ' << path << '\n';
}

void behave(const char *operation)
{
    if (behaviour() == "slow")
        std::this_thread::sleep_for(3s);
    while (behaviour() == operation)
        std::this_thread::sleep_for(10ms);
}

int getAttributes(const char *path, struct stat *info, fuse_file_info *)
{
    note("getattr", path);
    if (std::strcmp(path, "/") != 0)
        behave("lookup");
    return ::lstat((source + path).c_str(), info) == 0 ? 0 : -errno;
}

int readFolder(const char *path, void *buffer, fuse_fill_dir_t fill, off_t, fuse_file_info *, fuse_readdir_flags)
{
    note("readdir", path);
    DIR *folder = ::opendir((source + path).c_str());
    if (!folder)
        return -errno;
    while (const dirent *entry = ::readdir(folder))
        fill(buffer, entry->d_name, nullptr, 0, {});
    ::closedir(folder);
    return 0;
}

int openFile(const char *path, fuse_file_info *info)
{
    note("open", path);
    const int file = ::open((source + path).c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return -errno;
    info->fh = static_cast<std::uint64_t>(file);
    return 0;
}

int readFile(const char *path, char *bytes, size_t size, off_t offset, fuse_file_info *info)
{
    note("read", path);
    behave("read");
    const ssize_t count = ::pread(static_cast<int>(info->fh), bytes, size, offset);
    return count < 0 ? -errno : static_cast<int>(count);
}

int releaseFile(const char *, fuse_file_info *info)
{
    ::close(static_cast<int>(info->fh));
    return 0;
}

void *begin(fuse_conn_info *, fuse_config *config)
{
    // The kernel must not cache anything.
    config->attr_timeout = 0;
    config->entry_timeout = 0;
    config->negative_timeout = 0;
    return nullptr;
}

bool write(const char *path, const std::string &text)
{
    std::ofstream file(path);
    file << text;
    return static_cast<bool>(file.flush());
}

// Makes a mount namespace, which a user may do if the system allows user namespaces.
bool ownMounts()
{
    const std::string user = std::to_string(::getuid());
    const std::string group = std::to_string(::getgid());
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && write("/proc/self/uid_map", user + ' ' + user + " 1") &&
           write("/proc/self/setgroups", "deny") && write("/proc/self/gid_map", group + ' ' + group + " 1");
}

[[noreturn]] void serve(fuse *server)
{
    std::thread([] {
        while (::access(control.c_str(), F_OK) == 0)
            std::this_thread::sleep_for(50ms);
        ::_exit(0);
    }).detach();
    fuse_loop(server);
    ::_exit(0);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 5)
        return 2;
    source = argv[2];
    control = argv[3];
    fuse_operations operations{};
    operations.getattr = getAttributes;
    operations.readdir = readFolder;
    operations.open = openFile;
    operations.read = readFile;
    operations.release = releaseFile;
    operations.init = begin;
    fuse_args arguments = FUSE_ARGS_INIT(1, argv);
    if (!ownMounts()) {
        std::perror("stalled-mount");
        return 77;
    }
    fuse *server = fuse_new(&arguments, &operations, sizeof operations, nullptr);
    if (!server || fuse_mount(server, argv[1]) != 0)
        return 77;
    command = ::getpid();
    if (::fork() == 0)
        serve(server);
    ::execvp(argv[4], argv + 4);
    std::perror(argv[4]);
    return 1;
}
