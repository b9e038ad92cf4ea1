// SPDX-License-Identifier: MIT
#include "platform/OwnDrag.h"

#include <QDropEvent>

bool isOwnDrag(const QDropEvent &event)
{
    return event.source() != nullptr;
}
