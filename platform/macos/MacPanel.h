// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FloatingPanels.h"
#include "platform/macos/MacHover.h"

#include <QPointer>
#include <QWidget>

#include <memory>

// The NSPanel of one window of Qt. Qt sets properties of its own on tool windows, some of them each time the
// application becomes active or inactive; this class restores those of a floating panel. It also tells the window about
// the pointer while another application is active.
class MacPanel : public QObject {
public:
    MacPanel(QWidget &panelWindow, const PanelStyle &panelStyle);
    ~MacPanel() override;

    // Null once the window has been deleted.
    QWidget *widget() const { return window; }

    void orderFront();
    void orderOut();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Native;

    void adopt();
    void applyProperties();

    const QPointer<QWidget> window;
    const PanelStyle style;
    MacHover hover;
    std::unique_ptr<Native> native;
};
