// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Screens.h"
#include "platform/linux/x11/VisibleFrame.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>

class QScreen;

// The screens of an X server, with the space that panels and docks reserve on each. With several screens neither Qt nor
// the window manager's single work area knows that space.
class XcbScreens : public Screens {
public:
    // With a null connection it knows only what Qt knows.
    explicit XcbScreens(std::shared_ptr<XcbConnection> connection);

    std::optional<Screen> main() const override;
    QList<Screen> all() const override;
    std::optional<QPointF> pointer() const override;

    // Asked where the pointer is, if set, as there are times when the server does not know.
    std::function<std::optional<QPointF>()> onPointer;

private:
    void follow(QScreen *screen);
    void handle(const xcb_generic_event_t &event);
    void invalidate();
    void report();
    QList<Strut> readStruts() const;
    QList<QRect> readWorkAreas() const;
    std::optional<QRect> activeWindow() const;

    QObject context; // of the connections to Qt's screens
    std::shared_ptr<XcbConnection> xcb;
    XcbConnection::Subscription subscription;
    QTimer reportSoon; // one report for all changes of a turn
    mutable QList<Strut> struts;
    mutable bool strutsChanged = true;
    mutable xcb_atom_t workAreas = XCB_ATOM_NONE; // of the current desktop
    mutable std::optional<QList<Screen>> known;   // until something changes
    mutable QList<Screen> reported;               // first read or last reported
};
