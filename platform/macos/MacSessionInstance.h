// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SessionInstance.h"
#include "platform/common/SessionLock.h"

#include <memory>

// The first one to lock a file is the session's. Later starts tell it by a distributed notification; opening the
// running application once more, as from the Dock, comes as an Apple event.
class MacSessionInstance : public SessionInstance {
public:
    MacSessionInstance();
    ~MacSessionInstance() override;

    bool claim() override;

private:
    struct Listener;

    SessionLock lock;
    std::unique_ptr<Listener> listener;
};
