// SPDX-License-Identifier: MIT
#include "platform/SystemAppearance.h"

#include <QApplication>
#include <QStyle>

double SystemAppearance::legacyScrollerWidth() const
{
    return QApplication::style()->pixelMetric(QStyle::PM_ScrollBarExtent);
}
