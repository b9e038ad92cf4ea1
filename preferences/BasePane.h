// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

// The common base of all panes: an empty view. A pane is made anew each time it is selected and lives until the next
// one replaces it.
class BasePane : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    // Builds the pane's controls from what the settings hold now. Called once; an override calls the base first.
    virtual void loadView();
};
