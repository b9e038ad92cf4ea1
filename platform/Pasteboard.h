// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

// The general pasteboard: what the user last copied.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    // All file URLs on it, in their order; empty when it holds anything else or cannot be read.
    virtual QList<QUrl> fileURLs() const = 0;
};
