// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragSessions.h"

#include <optional>

// What a destination reports in XdndFinished, the last message about a drop.
struct DropAnswer {
    bool accepted = false;
    std::optional<DragOperation> performed; // empty when it named no operation, or an unknown one
};

// The operation that the destination of a drop has performed. `version` is the version of XDND that it speaks: before
// version 5, XdndFinished has no details. An accepted drop without a named operation counts as the one that was
// `offered`.
DragOperation performedOperation(const DropAnswer &answer, quint32 version, DragOperation offered);
