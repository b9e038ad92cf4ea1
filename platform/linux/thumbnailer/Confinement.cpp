// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnailer/Confinement.h"

#include "platform/linux/helpers/Channel.h"

#include <cerrno>
#include <csignal>
#include <memory>

#include <fcntl.h>
#include <linux/landlock.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr rlim_t kProcessorSeconds = 60; // in total; the shelf replaces a helper long before
constexpr rlim_t kLargestFile = 64 << 20;
constexpr rlim_t kAddressSpace = rlim_t(1) << 30;
constexpr rlim_t kMostDescriptorsOpen = 256;

// Rights that later versions of Landlock have added.
constexpr std::uint64_t kTruncate = 1ULL << 14;
constexpr std::uint64_t kDeviceControl = 1ULL << 15;

#ifdef PARKLET_UNCONFINED
// The sanitizers map terabytes of memory, and open files for their reports.
constexpr bool kConfines = false;
#else
constexpr bool kConfines = true;
#endif

constexpr std::uint64_t kReading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t kWriting = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_FILE |
                                   LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG;
constexpr std::uint64_t kFirstVersion = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1; // all rights of the first version

bool limit(__rlimit_resource resource, rlim_t most)
{
    const rlimit both{most, most};
    return ::setrlimit(resource, &both) == 0;
}

// All rights that this version of Landlock can restrict. Rules then allow single ones.
std::uint64_t handledRights(long version, bool readsEverywhere)
{
    std::uint64_t rights = kFirstVersion;
    if (version >= 2)
        rights |= LANDLOCK_ACCESS_FS_REFER;
    if (version >= 3)
        rights |= kTruncate;
    if (version >= 5)
        rights |= kDeviceControl;
    return readsEverywhere ? rights & ~kReading : rights;
}

bool allowBelow(int ruleset, const std::string &folder, std::uint64_t rights)
{
    const Descriptor opened(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    // A folder that does not exist needs no rule.
    if (!opened.isOpen())
        return true;
    landlock_path_beneath_attr rule{};
    rule.allowed_access = rights;
    rule.parent_fd = opened.get();
    return ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
}

// Allowed for every helper: memory that is not executable, files and sockets that are already open, the clock, and
// exit.
constexpr int kAlwaysAllowed[] = {
    SCMP_SYS(read),
    SCMP_SYS(readv),
    SCMP_SYS(write),
    SCMP_SYS(pread64),
    SCMP_SYS(lseek),
    SCMP_SYS(close),
    SCMP_SYS(fstat),
    SCMP_SYS(recvmsg),
    SCMP_SYS(sendmsg),
    SCMP_SYS(poll),
    SCMP_SYS(ppoll),
    SCMP_SYS(brk),
    SCMP_SYS(munmap),
    SCMP_SYS(mremap),
    SCMP_SYS(madvise),
    SCMP_SYS(futex),
    SCMP_SYS(clock_gettime),
    SCMP_SYS(clock_getres),
    SCMP_SYS(gettimeofday),
    SCMP_SYS(getrandom),
    SCMP_SYS(rt_sigreturn),
    SCMP_SYS(rt_sigaction),
    SCMP_SYS(rt_sigprocmask),
    SCMP_SYS(sigaltstack),
    SCMP_SYS(exit),
    SCMP_SYS(exit_group),
    SCMP_SYS(gettid),
    SCMP_SYS(getpid),
    SCMP_SYS(sched_yield),
    SCMP_SYS(getrusage),
    SCMP_SYS(memfd_create),
    SCMP_SYS(restart_syscall),
    SCMP_SYS(set_robust_list),
    SCMP_SYS(rseq),
    SCMP_SYS(sched_getaffinity),
};
constexpr int kForReaders[] = {
    SCMP_SYS(stat),       SCMP_SYS(lstat),    SCMP_SYS(access),     SCMP_SYS(faccessat),
    SCMP_SYS(faccessat2), SCMP_SYS(readlink), SCMP_SYS(readlinkat), SCMP_SYS(getdents64),
    SCMP_SYS(fstatfs),    SCMP_SYS(statfs),   SCMP_SYS(getuid),     SCMP_SYS(geteuid),
};
constexpr int kForWriters[] = {
    SCMP_SYS(open),   SCMP_SYS(openat),   SCMP_SYS(stat),      SCMP_SYS(mkdir),  SCMP_SYS(mkdirat),
    SCMP_SYS(rename), SCMP_SYS(renameat), SCMP_SYS(renameat2), SCMP_SYS(unlink), SCMP_SYS(unlinkat),
};

class Filter {
public:
    template<size_t Count>
    void allow(const int (&calls)[Count])
    {
        for (const int call : calls)
            allow(call);
    }

    void allow(int call) { note(seccomp_rule_add(context.get(), SCMP_ACT_ALLOW, call, 0)); }

    void allowIf(int call, const scmp_arg_cmp &argument)
    {
        note(seccomp_rule_add(context.get(), SCMP_ACT_ALLOW, call, 1, argument));
    }

    bool load()
    {
        // Apply the filter to all threads; another thread is already running.
        note(seccomp_attr_set(context.get(), SCMP_FLTATR_CTL_TSYNC, 1));
        return isGood && seccomp_load(context.get()) == 0;
    }

private:
    void note(int result) { isGood = isGood && result == 0; }

    // Libraries try calls that they can do without. Those fail with EPERM; only dangerous calls end the helper.
    std::unique_ptr<void, decltype(&seccomp_release)> context{seccomp_init(SCMP_ACT_ERRNO(EPERM)), seccomp_release};
    bool isGood = context != nullptr;
};

} // namespace

void beginHelper(int first)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    // The kernel takes a limit of one byte as "no core file" even when it pipes core files to a program.
    limit(RLIMIT_CORE, 1);
    ::syscall(SYS_close_range, static_cast<unsigned>(first), ~0U, 0U);
}

bool confineFileSystem(const Confinement &confinement)
{
    if (!kConfines)
        return true;
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1)
        return true; // the kernel has no Landlock
    landlock_ruleset_attr attributes{};
    attributes.handled_access_fs = handledRights(version, confinement.readsEverywhere);
    const Descriptor ruleset(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
    if (!ruleset.isOpen())
        return false;
    for (const std::string &folder : confinement.readable) {
        if (!allowBelow(ruleset.get(), folder, kReading))
            return false;
    }
    for (const std::string &folder : confinement.writable) {
        if (!allowBelow(ruleset.get(), folder, kReading | kWriting))
            return false;
    }
    return ::syscall(SYS_landlock_restrict_self, ruleset.get(), 0) == 0;
}

bool confineProcess(const Confinement &confinement)
{
    if (!kConfines)
        return true;
    if (!limit(RLIMIT_DATA, confinement.memory) || !limit(RLIMIT_AS, kAddressSpace) ||
        !limit(RLIMIT_CPU, kProcessorSeconds) || !limit(RLIMIT_FSIZE, kLargestFile) ||
        !limit(RLIMIT_NOFILE, kMostDescriptorsOpen))
        return false;

    Filter filter;
    filter.allow(kAlwaysAllowed);
    for (const int call : {SCMP_SYS(mmap), SCMP_SYS(mprotect)})
        filter.allowIf(call, SCMP_A2(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0));
    // The C library and Qt get the size of an open file by this call.
    filter.allowIf(SCMP_SYS(newfstatat), SCMP_A3(SCMP_CMP_MASKED_EQ, AT_EMPTY_PATH, AT_EMPTY_PATH));
    filter.allowIf(SCMP_SYS(statx), SCMP_A2(SCMP_CMP_MASKED_EQ, AT_EMPTY_PATH, AT_EMPTY_PATH));
    for (const unsigned command : {F_ADD_SEALS, F_GET_SEALS, F_GETFL, F_GETFD, F_SETFD, F_DUPFD_CLOEXEC})
        filter.allowIf(SCMP_SYS(fcntl), SCMP_A1(SCMP_CMP_EQ, command));
    if (confinement.opensFiles) {
        constexpr auto kChanging = O_ACCMODE | O_CREAT | O_TRUNC;
        filter.allow(kForReaders);
        filter.allowIf(SCMP_SYS(open), SCMP_A1(SCMP_CMP_MASKED_EQ, kChanging, O_RDONLY));
        filter.allowIf(SCMP_SYS(openat), SCMP_A2(SCMP_CMP_MASKED_EQ, kChanging, O_RDONLY));
        filter.allowIf(SCMP_SYS(newfstatat), SCMP_A3(SCMP_CMP_MASKED_EQ, AT_EMPTY_PATH, 0));
        filter.allowIf(SCMP_SYS(statx), SCMP_A2(SCMP_CMP_MASKED_EQ, AT_EMPTY_PATH, 0));
    }
    if (confinement.writesFiles) {
        filter.allow(kForWriters);
        filter.allowIf(SCMP_SYS(newfstatat), SCMP_A3(SCMP_CMP_MASKED_EQ, AT_EMPTY_PATH, 0));
    }
    if (confinement.awaitsWriters)
        filter.allow(SCMP_SYS(inotify_add_watch));
    return filter.load();
}
