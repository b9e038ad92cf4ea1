// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/helpers/Channel.h"

#include <QByteArray>
#include <QList>

#include <functional>
#include <memory>

#include <sys/types.h>

class QSocketNotifier;

// Seconds that a process has computed, 0 when it is not there.
double processorSeconds(pid_t process);

// A helper program under way, and the socket to it. It is ended with this object, and never waited for: one that a file
// system keeps may take as long as it likes. Main thread only.
class HelperProcess : public std::enable_shared_from_this<HelperProcess> {
public:
    // Starts the helper of that name; null when it cannot be started. `further` becomes its second socket.
    static std::shared_ptr<HelperProcess> start(const QByteArray &name, const QList<QByteArray> &arguments,
                                                Descriptor further = Descriptor());

    // Where helpers are looked for instead of beside the program.
    static void lookIn(const QByteArray &folder);

    ~HelperProcess();

    // Hands a message over as a whole. False when the helper is gone or takes no more.
    bool send(const std::string &bytes, const std::vector<int> &descriptors = {});

    // Lets the helper end when it has done what it has been told. Neither callback is called any more.
    void retire();

    pid_t processId() const { return process; }

    std::function<void(Received &&)> onMessage;
    std::function<void()> onEnd; // it has ended by itself or by somebody else

private:
    HelperProcess(Descriptor socket, pid_t process);

    void readMessages();

    Descriptor socket;
    pid_t process;
    bool isRetired = false;
    std::unique_ptr<QSocketNotifier> notifier;
};
