// SPDX-License-Identifier: MIT
#pragma once

// The registration that starts this application when the user logs in.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    // False also while the system waits for the user's approval of the registration.
    virtual bool isEnabled() const = 0;

    // True when it is enabled then. False when the registration could not be made, or waits for the user's approval.
    virtual bool enable() = 0;

    // True when no registration is left, not one that waits for approval either; false when it could not be removed.
    virtual bool disable() = 0;
};
