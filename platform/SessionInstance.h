// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>
#include <memory>

// Allows one Parklet per user session.
class SessionInstance {
public:
    virtual ~SessionInstance() = default;

    // True when this process is now the only one. False when another one runs; that one has been asked to show itself.
    virtual bool claim() = 0;

    // Whether the other one, after a claim in vain, has not answered.
    bool isUnanswered() const { return unanswered; }

    // Called on the main thread when a later start asked this process to show itself.
    std::function<void()> onActivate;

    // Called on the main thread with the name of an action that the user chose in the desktop's launcher.
    std::function<void(const QString &name)> onAction;

protected:
    bool unanswered = false;
};

std::unique_ptr<SessionInstance> createSessionInstance();
