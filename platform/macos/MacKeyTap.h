// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyTap.h"

#include <memory>

// A filtering event tap (CGEventTap) of the session. It reports the key with the code of A, and every other key as
// Qt::Key_unknown. When the system disables the tap, it stays disabled.
class MacKeyTap : public KeyTap {
public:
    MacKeyTap();
    ~MacKeyTap() override;

    bool install(Handler handler) override;
    void remove() override;

private:
    struct Tap;

    std::unique_ptr<Tap> tap;
};
