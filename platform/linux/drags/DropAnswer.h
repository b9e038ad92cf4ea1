// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragSessions.h"

#include <optional>

// A destination's last word on a drop.
struct DropAnswer {
    bool accepted = false;
    std::optional<DragOperation> performed; // nothing when it named none, or one that has no name here
};

// What the destination of a drop did. `version` is that of the protocol it speaks: before the fifth its answer said
// only that it was done. An accepted drop whose operation it does not tell was the one that was `offered`.
DragOperation performedOperation(const DropAnswer &answer, quint32 version, DragOperation offered);
