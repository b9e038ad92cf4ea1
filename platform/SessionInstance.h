// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

// Keeps one Parklet per user session.
class SessionInstance {
public:
    virtual ~SessionInstance() = default;

    // True when this process is now the session's one. False when another is: it has then been asked to show itself.
    virtual bool claim() = 0;

    // Called on the main thread when a later start asked this process to show itself.
    std::function<void()> onActivate;
};

std::unique_ptr<SessionInstance> createSessionInstance();
