// SPDX-License-Identifier: MIT
#include "platform/FloatingPanels.h"

#include <QWidget>

void FloatingPanels::setAlpha(QWidget &window, double alpha)
{
    window.setWindowOpacity(alpha);
}
