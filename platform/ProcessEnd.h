// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>

#include <optional>

// Ends the process properly. SIGTERM, SIGINT and SIGHUP quit the application as its menu does, so that the settings are
// saved; then the process dies of the signal, as its sender expects. A second signal ends it at once. After a signal or
// startDeadline(), the process ends within a second, even if something blocks.
class ProcessEnd {
public:
    // Make one after the application object, and before the objects that it must end. An ignored signal stays ignored.
    ProcessEnd();
    ~ProcessEnd();
    ProcessEnd(const ProcessEnd &) = delete;
    ProcessEnd &operator=(const ProcessEnd &) = delete;

    static void startDeadline();

private:
    std::optional<QSocketNotifier> notifier;
};
