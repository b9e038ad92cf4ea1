// SPDX-License-Identifier: MIT
#include "preferences/BasePane.h"

#include "preferences/Controls.h"

void BasePane::loadView()
{
    // A pane is built before it is in its window, and its controls measure themselves as they are built.
    setFont(systemFont(kLabelSize));
    setObjectName(QString::fromLatin1(metaObject()->className()));
}
