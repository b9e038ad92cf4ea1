// SPDX-License-Identifier: MIT
#pragma once

// The registration that starts this application when the user logs in.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    virtual bool isEnabled() const = 0;

    // False when the registration could not be changed.
    virtual bool enable() = 0;
    virtual bool disable() = 0;
};
