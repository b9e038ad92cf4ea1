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

    // Called on the main thread when another start has asked this process to show itself.
    std::function<void()> onActivate;

    // Called on the main thread with the name of an action that the user chose in the desktop's launcher.
    std::function<void(const QString &name)> onAction;
};

std::unique_ptr<SessionInstance> createSessionInstance();
