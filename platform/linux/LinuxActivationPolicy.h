// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ActivationPolicy.h"

#include <QObject>

// An accessory application's windows are in no task list and no pager. Floating panels are never in one and are left
// alone.
class LinuxActivationPolicy : public QObject, public ActivationPolicy {
public:
    // The application starts as an accessory one.
    LinuxActivationPolicy();

    void set(Policy policy) override;
    void activate(QWidget &window) override;

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    Policy current = Policy::Accessory;
};
