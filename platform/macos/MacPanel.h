// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FloatingPanels.h"
#include "platform/macos/MacHover.h"

#include <QPointer>
#include <QWidget>

#include <memory>

// The panel behind one window of Qt's. Qt gives its tool windows properties of its own, some of them anew whenever the
// application becomes active or stops being so; this puts back what a floating panel has. And it tells the window of
// the pointer while another application is active, as is the rule with a panel.
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
