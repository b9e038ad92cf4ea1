// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qnamespace.h>

// Whether a key press is Command-A and not Command-Shift-A or the like. Lock keys do not matter.
inline bool isSelectAllKey(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    constexpr auto kDecisive = Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier | Qt::MetaModifier;
    return key == Qt::Key_A && (modifiers & kDecisive) == Qt::ControlModifier;
}
