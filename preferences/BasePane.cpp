// SPDX-License-Identifier: MIT
#include "preferences/BasePane.h"

void BasePane::loadView()
{
    setObjectName(QString::fromLatin1(metaObject()->className()));
}
