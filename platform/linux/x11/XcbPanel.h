// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FloatingPanels.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QPointer>
#include <QRegion>
#include <QTimer>
#include <QWidget>

#include <memory>

// The X side of one floating panel: a window that the window manager keeps above others, or, over a full-screen window
// and in a drag, one that it has no say about.
class XcbPanel : public QObject {
public:
    // A null connection leaves all to Qt.
    XcbPanel(QWidget &window, const PanelStyle &panelStyle, std::shared_ptr<XcbConnection> connection);

    QWidget *widget() const { return window; }

    // Does once what else the first drag would wait for: makes the window, and loads its letters and symbols.
    void prepare();

    // Shows the panel above all others. One that comes up while something is dragged overrides the window manager until
    // it is ordered out: some sources, Chromium among them, never see a window that gets its frame during their drag.
    void orderFront(bool overridesManager, bool isDragInProgress);

    void orderOut();

    // The opacity of the whole window, from 0 to 1.
    void setAlpha(double alpha);

    // Changes sides while the panel is visible, or brings it back above what came over it.
    void setOverridesManager(bool overrides);

    // Whether the corners can be blended; else the outline is cut out of the window.
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
    XcbConnection::Subscription withdrawal; // waits for the window manager to let go of the window
    QTimer withdrawalLimit;
    bool overrides = false;
    bool cameInDrag = false;
    bool blends = true;
};

// A rectangle of `size` at the origin with round corners, pixel by pixel: a pixel belongs to it when its centre does.
QRegion roundedRegion(const QSize &size, double radius);
