// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <functional>

// How a child of this process ended.
struct ChildEnd {
    bool finished = false; // its work came to its end
    bool stopped = false;  // by a fatal error
    QByteArray said;       // the message of that error
};

// Does `work` in a child of this process, which ends with it.
ChildEnd inChild(const std::function<void()> &work);
