// SPDX-License-Identifier: MIT
#pragma once

#include "preferences/ColorWell.h"

#include <QColor>
#include <QList>
#include <QWidget>

using namespace Qt::StringLiterals;

// A colour well in a window, with every colour that it reports written down.
struct WellFixture {
    WellFixture()
    {
        well.setAccessibleName(u"Tint colour"_s);
        well.setColor(QColor(20, 40, 60));
        well.onChange = [this] { chosen.append(well.color()); };
        window.resize(100, 100);
        window.show();
    }

    QWidget window;
    ColorWell well{&window};
    QList<QColor> chosen;
};
