// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

class QWidget;

// A dialog in which the user picks one existing file of any kind.
struct OpenPanel {
    QString title;
    QString prompt;      // the title of the button that picks
    QList<QUrl> folders; // where it starts, and other places at hand; none: wherever the desktop starts
};

class OpenPanels {
public:
    virtual ~OpenPanels() = default;

    // Shows the panel over `window` and returns the chosen file, or nothing when the user chose none; the main loop
    // goes on turning meanwhile.
    virtual std::optional<QUrl> runModal(const OpenPanel &panel, QWidget *window) = 0;
};
