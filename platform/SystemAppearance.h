// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

// The desktop's accent colour, the set of symbols that the interface is drawn with, and its scroll bars' size.
class SystemAppearance {
public:
    virtual ~SystemAppearance() = default;

    // The user's accent colour now; ask again each time it is drawn.
    virtual QColor accentColor() const = 0;

    // The symbol of that name in one colour, crisp at every size and scale. A null icon when there is none.
    virtual QIcon symbol(const QString &name, const QColor &tint) const = 0;

    // The application's icon: the artwork's, or without that the one that the desktop shows for the application. Never
    // null.
    virtual QIcon applicationIcon() const = 0;

    // Whether the desktop's own colour panel comes with a button that takes the choice back, though none is asked for.
    virtual bool colorPanelTakesBack() const = 0;

    // How thick, in points, a scroll bar is that takes room beside what it scrolls, also where the user prefers bars
    // that lie over it.
    virtual double legacyScrollerWidth() const;
};
