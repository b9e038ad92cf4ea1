// SPDX-License-Identifier: MIT
#include "platform/linux/drags/DropAnswer.h"

namespace {

// The first version of XDND whose destinations report how a drop ended.
constexpr quint32 kTellsOutcome = 5;

} // namespace

DragOperation performedOperation(const DropAnswer &answer, quint32 version, DragOperation offered)
{
    if (version < kTellsOutcome)
        return offered;
    if (!answer.accepted)
        return DragOperation::None;
    return answer.performed.value_or(offered);
}
