// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyTap.h"

#include <memory>

// A filtering event tap of the session. It names the key with the code of A; every other key is Qt::Key_unknown. When
// the system disables it, it stays so.
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
