// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FloatingPanels.h"

#include <QPointer>
#include <QWidget>

#include <memory>

// The panel behind one window of Qt's. Qt gives its tool windows properties of its own, some of them anew whenever the
// application becomes active or stops being so; this puts back what a floating panel has.
class MacPanel : public QObject {
public:
    MacPanel(QWidget &panelWindow, const PanelStyle &panelStyle);
    ~MacPanel() override;

    // Null once the window has been deleted.
    QWidget *widget() const { return window; }

    void orderFront();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Native;

    void adopt();
    void applyProperties();

    const QPointer<QWidget> window;
    const PanelStyle style;
    std::unique_ptr<Native> native;
};
