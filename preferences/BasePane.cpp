// SPDX-License-Identifier: MIT
#include "preferences/BasePane.h"

#include "preferences/Controls.h"

void BasePane::loadView()
{
    // Set the font first: the controls measure themselves while they are built, before the pane is in its window.
    setFont(systemFont(kLabelSize));
    setObjectName(QString::fromLatin1(metaObject()->className()));
}
