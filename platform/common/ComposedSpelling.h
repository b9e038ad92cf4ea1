// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

// Returns the path with composed letters (NFC), as Qt spells the paths that are copied or dropped on a Mac. Bytes that
// are not UTF-8 stay unchanged.
QByteArray composedSpelling(const QByteArray &path);
