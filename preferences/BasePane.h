// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

// The common base of all panes: an empty view. Each selection makes a new pane, which lives until the next one replaces
// it.
class BasePane : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    // Builds the pane's controls from the current settings. Called once; an override calls the base first.
    virtual void loadView();
};
