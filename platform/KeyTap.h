// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qnamespace.h>

#include <functional>

// Receives, and may swallow, key presses in every application; the Mac calls that a tap. A platform that can only tap
// given keys taps Command-A, which is Ctrl+A on Linux.
class KeyTap {
public:
    // Returns whether the key press is swallowed. Command is Qt::ControlModifier, Option Qt::AltModifier and Control
    // Qt::MetaModifier. Lock keys are not reported.
    using Handler = std::function<bool(Qt::Key key, Qt::KeyboardModifiers modifiers)>;

    virtual ~KeyTap() = default;

    // Starts the tap; `handler` runs on the main thread. False when the platform refuses.
    virtual bool install(Handler handler) = 0;

    // Ends the tap, if there is one. A key that is pressed after this has returned reaches the focused program.
    virtual void remove() = 0;
};
