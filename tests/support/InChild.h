// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <functional>

// How a child of this process ended.
struct ChildEnd {
    bool finished = false; // its work returned
    bool stopped = false;  // by a fatal error
    QByteArray said;       // the message of that error
};

// Runs `work` in a child process, and waits for its end.
ChildEnd inChild(const std::function<void()> &work);
