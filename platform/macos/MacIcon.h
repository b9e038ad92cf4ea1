// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>

Q_FORWARD_DECLARE_OBJC_CLASS(NSImage);

// An icon that draws `image` at every size, in one colour if `tint` is valid. Null when `image` is nil.
QIcon macIcon(NSImage *image, const QColor &tint = QColor());
