// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FloatingPanels.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QPointer>
#include <QRegion>
#include <QTimer>
#include <QWidget>

#include <memory>

// The X window of one floating panel. The window manager keeps it above others; over a full-screen window and during a
// drag it is override-redirect instead, so that the window manager ignores it.
class XcbPanel : public QObject {
public:
    // With a null connection Qt does everything.
    XcbPanel(QWidget &window, const PanelStyle &panelStyle, std::shared_ptr<XcbConnection> connection);

    QWidget *widget() const { return window; }

    // Makes the window and loads its font and symbols, so that the first drag does not wait for that.
    void prepare();

    struct Desktop {
        bool isFullScreen = false;     // the active window is
        bool isDragInProgress = false; // a mouse button is down
    };

    // Shows the panel above all others. A panel that shows during a drag stays override-redirect until it is ordered
    // out: some sources, Chromium among them, do not see a window that gets a frame during their drag.
    void orderFront(const Desktop &desktop);

    void orderOut();

    // The opacity of the whole window, from 0 to 1.
    void setAlpha(double alpha);

    // Switches between the two kinds while the panel is visible, or raises it again.
    void setOverridesManager(bool overrides);

    // Whether the corners can be blended. Otherwise the window gets a rounded shape.
    void setBlends(bool canBlend);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    xcb_window_t nativeWindow() const;
    void identify();
    void writeState();
    void requestAllDesktops();
    void updateOutline();
    void applyFlags();
    void withdraw();
    void finishWithdrawal();

    QPointer<QWidget> window;
    PanelStyle style;
    std::shared_ptr<XcbConnection> xcb;
    XcbConnection::Subscription withdrawal; // waits until the window manager has withdrawn the window
    QTimer withdrawalLimit;
    bool overrides = false;
    bool cameInDrag = false;
    bool blends = true;
};

// A rectangle of `size` at the origin with round corners. A pixel belongs to it if its centre does.
QRegion roundedRegion(const QSize &size, double radius);
