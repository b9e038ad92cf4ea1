// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qnamespace.h>

#include <functional>

// A tap on key presses that go to any application. Where the platform can only tap named keys it taps Command-A.
class KeyTap {
public:
    // Answers whether the key press is swallowed. Command is Qt::ControlModifier, Option Qt::AltModifier and Control
    // Qt::MetaModifier. Lock keys are not reported.
    using Handler = std::function<bool(Qt::Key key, Qt::KeyboardModifiers modifiers)>;

    virtual ~KeyTap() = default;

    // Starts the tap; `handler` runs on the main thread. False when the platform refuses.
    virtual bool install(Handler handler) = 0;

    // Ends the tap; nothing when there is none.
    virtual void remove() = 0;
};
