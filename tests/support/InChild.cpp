// SPDX-License-Identifier: MIT
#include "tests/support/InChild.h"

#include <QString>

#include <array>
#include <csignal>
#include <cstdlib>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr unsigned kPatience = 20; // seconds; a child that hangs is ended then

int messages = -1; // the descriptor for the child's messages

void passOn(QtMsgType, const QMessageLogContext &, const QString &text)
{
    const QByteArray line = text.toUtf8();
    (void)!::write(messages, line.constData(), static_cast<size_t>(line.size()));
}

} // namespace

ChildEnd inChild(const std::function<void()> &work)
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        return {};
    const pid_t child = ::fork();
    if (child == 0) {
        // Write no core file, because the child is expected to crash.
        const rlimit noCore{};
        ::setrlimit(RLIMIT_CORE, &noCore);
        std::signal(SIGABRT, SIG_DFL);
        ::alarm(kPatience);
        messages = ends[1];
        qInstallMessageHandler(passOn);
        work();
        ::_exit(EXIT_SUCCESS);
    }
    ::close(ends[1]);
    ChildEnd end;
    std::array<char, 512> part{};
    for (ssize_t count = 0; child > 0 && (count = ::read(ends[0], part.data(), part.size())) > 0;)
        end.said.append(part.data(), static_cast<qsizetype>(count));
    ::close(ends[0]);
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child)
        return {};
    end.finished = WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS;
    end.stopped = WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
    return end;
}
