// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ActivationPolicy.h"

#include <QByteArray>
#include <QHash>
#include <QObject>

#include <xcb/xcb.h>

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
    // The atom of that name, interned at most once.
    xcb_atom_t atom(const char *name);
    // Before a window is shown its state is ours to write; Qt keeps what it finds there.
    void writeHints(xcb_connection_t *xcb, xcb_window_t window);
    // Afterwards it is the window manager's.
    void askForHints(xcb_connection_t *xcb, xcb_window_t window);

    QHash<QByteArray, xcb_atom_t> atoms;
    Policy current = Policy::Accessory;
};
