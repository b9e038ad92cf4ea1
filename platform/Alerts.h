// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QString>
#include <QStringList>

// A question to the user.
struct Alert {
    QString messageText;
    QString informativeText;
    QStringList buttons;   // in order; the first is the default one
    QString checkboxTitle; // a check box below the text, initially off; none when empty
    QIcon icon;            // null for the application's own
    bool dark = false;     // always in dark colours
    bool activates = true; // comes to the front, even if another application is active
};

struct AlertAnswer {
    int button = -1; // index of the chosen button; -1 when the alert was closed without one
    bool checkboxOn = false;

    bool isFirstButton() const { return button == 0; }
};

class Alerts {
public:
    virtual ~Alerts() = default;

    // Shows the alert and returns when the user has answered it. The main loop runs meanwhile.
    virtual AlertAnswer runModal(const Alert &alert) = 0;
};
