// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

class QWidget;

// A dialog in which the user picks an existing file.
struct OpenPanel {
    QString title;
    QString prompt;      // the title of the button that picks
    QList<QUrl> folders; // where it starts, and further places; empty for the desktop's choice
};

class OpenPanels {
public:
    virtual ~OpenPanels() = default;

    // Shows the panel over `window` and returns the chosen file, or nothing when the user cancelled. The main loop runs
    // meanwhile.
    virtual std::optional<QUrl> runModal(const OpenPanel &panel, QWidget *window) = 0;
};
