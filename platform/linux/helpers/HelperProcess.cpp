// SPDX-License-Identifier: MIT
#include "platform/linux/helpers/HelperProcess.h"

#include "platform/linux/helpers/Protocol.h"

#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>

#include <csignal>
#include <ctime>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

QByteArray &givenFolder()
{
    static QByteArray folder;
    return folder;
}

// The helper is beside the program in a build, and in the folder for internal programs in an installation.
QByteArray programPath(const QByteArray &name)
{
    const QByteArray own = QFile::encodeName(QCoreApplication::applicationDirPath());
    for (const QByteArray &folder : {givenFolder(), own, own + "/../libexec/parklet"}) {
        QByteArray path = folder + '/' + name;
        if (!folder.isEmpty() && ::access(path.constData(), X_OK) == 0)
            return path;
    }
    return {};
}

// Waits for the end of the process in the background, so that it does not stay in the process list as a zombie.
void reap(pid_t process)
{
    const auto handle = static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
    if (handle < 0)
        return;
    auto *notifier = new QSocketNotifier(handle, QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [notifier, process, handle] {
        notifier->setEnabled(false);
        notifier->deleteLater();
        ::waitpid(process, nullptr, WNOHANG);
        ::close(handle);
    });
}

pid_t spawn(const QByteArray &program, const QList<QByteArray> &arguments, int socket, int further)
{
    std::vector<char *> words{const_cast<char *>(program.constData())};
    for (const QByteArray &argument : arguments)
        words.push_back(const_cast<char *>(argument.constData()));
    words.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_init(&attributes);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, socket, kShelfSocket);
    if (further >= 0)
        ::posix_spawn_file_actions_adddup2(&actions, further, kPicturesSocket);
    sigset_t none;
    sigset_t all;
    ::sigemptyset(&none);
    ::sigfillset(&all);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    pid_t process = -1;
    if (::posix_spawn(&process, program.constData(), &actions, &attributes, words.data(), environ) != 0)
        process = -1;
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    return process;
}

// Duplicates the descriptor to a number above those that a helper receives, so that placing one does not overwrite
// another.
Descriptor movedUp(Descriptor descriptor)
{
    constexpr int kAbove = 16;
    return Descriptor(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, kAbove));
}

} // namespace

double processorSeconds(pid_t process)
{
    clockid_t clock{};
    timespec time{};
    if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &time) != 0)
        return 0;
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

std::shared_ptr<HelperProcess> HelperProcess::start(const QByteArray &name, const QList<QByteArray> &arguments,
                                                    Descriptor further)
{
    const QByteArray program = programPath(name);
    SocketPair ends = socketPair();
    if (program.isEmpty() || !ends.ours.isOpen())
        return {};
    const Descriptor socket = movedUp(std::move(ends.theirs));
    const Descriptor second = further.isOpen() ? movedUp(std::move(further)) : Descriptor();
    const pid_t process = spawn(program, arguments, socket.get(), second.get());
    if (process < 0)
        return {};
    ::fcntl(ends.ours.get(), F_SETFL, O_NONBLOCK);
    return std::shared_ptr<HelperProcess>(new HelperProcess(std::move(ends.ours), process));
}

void HelperProcess::lookIn(const QByteArray &folder)
{
    givenFolder() = folder;
}

HelperProcess::HelperProcess(Descriptor end, pid_t id)
    : socket(std::move(end))
    , process(id)
    , notifier(std::make_unique<QSocketNotifier>(socket.get(), QSocketNotifier::Read))
{
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this] { readMessages(); });
}

HelperProcess::~HelperProcess()
{
    // The notifier may be the caller.
    notifier->setEnabled(false);
    notifier->setParent(QCoreApplication::instance());
    notifier.release()->deleteLater();
    if (!isRetired)
        ::kill(process, SIGKILL);
    reap(process);
}

bool HelperProcess::send(const std::string &bytes, const std::vector<int> &descriptors)
{
    return sendMessage(socket.get(), bytes, descriptors);
}

void HelperProcess::retire()
{
    isRetired = true;
    onMessage = nullptr;
    onEnd = nullptr;
}

void HelperProcess::readMessages()
{
    const auto self = shared_from_this();
    while (onMessage) {
        Received received = receiveMessage(socket.get());
        if (received.kind == Received::Kind::Nothing)
            return;
        if (received.kind == Received::Kind::Message) {
            // The callback may destroy this helper, and so itself.
            const auto handler = onMessage;
            handler(std::move(received));
            continue;
        }
        notifier->setEnabled(false);
        if (const auto handler = onEnd)
            handler();
        return;
    }
}
