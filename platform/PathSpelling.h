// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

// `path` in the spelling that this system's own copies and drops have for the same file.
QByteArray canonicalSpelling(const QByteArray &path);
