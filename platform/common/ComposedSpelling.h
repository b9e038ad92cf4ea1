// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

// A path with each letter that can be composed in one piece (NFC), as Qt spells what a Mac copies or drops. What is no
// UTF-8 stays as it is.
QByteArray composedSpelling(const QByteArray &path);
