// SPDX-License-Identifier: MIT
#pragma once

class QDropEvent;

// Whether `event` is of a drag that this program has begun.
bool isOwnDrag(const QDropEvent &event);
