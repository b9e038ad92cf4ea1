// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

// The desktop's accent colour, the symbols of the interface, and the size of scroll bars.
class SystemAppearance {
public:
    virtual ~SystemAppearance() = default;

    // The user's current accent colour. It may change: ask each time it is drawn.
    virtual QColor accentColor() const = 0;

    // The symbol of that name in one colour, sharp at every size and scale. A null icon when there is none.
    virtual QIcon symbol(const QString &name, const QColor &tint) const = 0;

    // The application's icon: our own, or, where that is missing, the one that the desktop shows. Never null.
    virtual QIcon applicationIcon() const = 0;

    // Whether the desktop's own colour panel has a cancel button, although we ask for none.
    virtual bool colorPanelTakesBack() const = 0;

    // The width, in points, of a scroll bar beside its content, even if the user prefers bars that lie over the
    // content.
    virtual double legacyScrollerWidth() const;
};
