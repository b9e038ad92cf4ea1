// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

// The clipboard: what the user last copied.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    // All its file URLs, in their order. Empty when it holds anything else or cannot be read.
    virtual QList<QUrl> fileURLs() const = 0;
};
