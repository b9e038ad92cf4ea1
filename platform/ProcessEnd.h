// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>

#include <optional>

// How the process ends. SIGTERM, SIGINT and SIGHUP quit the application as its menu does, so that what was set is
// saved; then the process dies of the signal, as the one who sent it expects. A second one ends it at once. From the
// signal or startDeadline() on, it ends within a second, whatever it waits for.
class ProcessEnd {
public:
    // Make one, after the application and before what is to be ended. A signal that is ignored stays so.
    ProcessEnd();
    ~ProcessEnd();
    ProcessEnd(const ProcessEnd &) = delete;
    ProcessEnd &operator=(const ProcessEnd &) = delete;

    static void startDeadline();

private:
    std::optional<QSocketNotifier> notifier;
};
