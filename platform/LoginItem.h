// SPDX-License-Identifier: MIT
#pragma once

// The registration that starts this application when the user logs in.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    // False also while the system waits for the user's approval of the registration.
    virtual bool isEnabled() const = 0;

    // Returns whether it is enabled now. False when the registration failed, or waits for the user's approval.
    virtual bool enable() = 0;

    // Returns whether no registration is left, not even one that waits for approval.
    virtual bool disable() = 0;
};
