// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>

class QWidget;

// Presents the tiles to a screen reader as a list: each item has the name of its file, is described by its path, can be
// selected, pressed like a click, opened and removed. Views that only decorate are left out. Call it before a name is
// given to any view; repeated calls do nothing.
void installShelfAccessibility();

// Lets a screen reader meet `view` as `role`, with those of its children that have one.
void setAccessibleRole(QWidget &view, QAccessible::Role role);
