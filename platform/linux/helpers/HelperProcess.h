// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/helpers/Channel.h"

#include <QByteArray>
#include <QList>

#include <functional>
#include <memory>

#include <sys/types.h>

class QSocketNotifier;

// The processor time of a process in seconds; 0 when the process does not exist.
double processorSeconds(pid_t process);

// A running helper program, and the socket to it. The destructor ends the helper and does not wait for it, because a
// file system may block it for any time. Main thread only.
class HelperProcess : public std::enable_shared_from_this<HelperProcess> {
public:
    // Starts the helper program `name`. Null when it cannot be started. `further` becomes its second socket.
    static std::shared_ptr<HelperProcess> start(const QByteArray &name, const QList<QByteArray> &arguments,
                                                Descriptor further = Descriptor());

    // Searches helper programs in `folder` instead of beside this program.
    static void lookIn(const QByteArray &folder);

    ~HelperProcess();

    // Sends one whole message. False when the helper has ended or its buffer is full.
    bool send(const std::string &bytes, const std::vector<int> &descriptors = {});

    // Lets the helper finish its work and end. Neither callback is called any more.
    void retire();

    pid_t processId() const { return process; }

    std::function<void(Received &&)> onMessage;
    std::function<void()> onEnd; // the helper has ended or was killed

private:
    HelperProcess(Descriptor socket, pid_t process);

    void readMessages();

    Descriptor socket;
    pid_t process;
    bool isRetired = false;
    std::unique_ptr<QSocketNotifier> notifier;
};
