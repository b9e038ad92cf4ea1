// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ActivationPolicy.h"

#include <QByteArray>
#include <QHash>
#include <QObject>

#include <xcb/xcb.h>

// Keeps an accessory application's windows out of the task list and the pager. Floating panels are never in there, so
// it ignores them.
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
    // Whether the window is to be left out. A minimised one stays in the lists: it comes back from there.
    bool isLeftOut(const QWidget &window) const;
    // Before a window is shown, the program writes its state itself; Qt keeps what it finds.
    void writeHints(xcb_connection_t *xcb, const QWidget &window);
    // Afterwards it asks the window manager.
    void askForHints(xcb_connection_t *xcb, const QWidget &window);

    QHash<QByteArray, xcb_atom_t> atoms;
    Policy current = Policy::Accessory;
};
