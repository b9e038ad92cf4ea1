// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

// Whether the application is in the Dock or task list (a regular one) or not (an accessory), and how its windows come
// to the front.
class ActivationPolicy {
public:
    enum class Policy { Regular, Accessory };

    virtual ~ActivationPolicy() = default;

    virtual void set(Policy policy) = 0;

    // Shows `window`, brings it to the front and gives it the focus, even if another application has it.
    virtual void activate(QWidget &window) = 0;
};
