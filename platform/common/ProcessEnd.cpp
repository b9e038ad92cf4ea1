// SPDX-License-Identifier: MIT
#include "platform/ProcessEnd.h"

#include <QCoreApplication>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr int kDeadline = 900'000; // microseconds
constexpr int kFailure = 1;
constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};
constexpr char kTooLate[] = "parklet: ended before everything was done; the last settings may not be saved\n";

std::array<int, 2> wakeUp = {-1, -1};
volatile std::sig_atomic_t received = 0;

// Signal handlers may call async-signal-safe functions only.
void handleDeadline(int)
{
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, kTooLate, sizeof kTooLate - 1);
    ::_exit(kFailure);
}

void handleSignal(int signal)
{
    const int before = errno;
    received = signal;
    ProcessEnd::startDeadline();
    [[maybe_unused]] const ssize_t written = ::write(wakeUp[1], "", 1);
    errno = before;
}

void install(int signal, void (*handler)(int), int flags)
{
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
}

} // namespace

ProcessEnd::ProcessEnd()
{
    if (::pipe(wakeUp.data()) != 0)
        return;
    for (const int end : wakeUp) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    notifier.emplace(wakeUp[0], QSocketNotifier::Read);
    QObject::connect(&*notifier, &QSocketNotifier::activated, &*notifier, [this] {
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
    for (const int signal : kSignals) {
        struct sigaction before {};
        if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_DFL)
            install(signal, handleSignal, static_cast<int>(SA_RESTART | SA_RESETHAND));
    }
}

ProcessEnd::~ProcessEnd()
{
    notifier.reset();
    if (received == 0)
        return;
    install(received, SIG_DFL, 0);
    ::raise(received);
}

void ProcessEnd::startDeadline()
{
    install(SIGALRM, handleDeadline, 0);
    const itimerval deadline{{}, {0, kDeadline}};
    ::setitimer(ITIMER_REAL, &deadline, nullptr);
}
