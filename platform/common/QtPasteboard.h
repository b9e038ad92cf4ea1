// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Pasteboard.h"

// The general pasteboard as Qt's clipboard.
class QtPasteboard : public Pasteboard {
public:
    void readFileURLs(Done done) override;
};
