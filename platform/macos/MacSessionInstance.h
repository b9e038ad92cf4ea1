// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SessionInstance.h"
#include "platform/common/SessionLock.h"

#include <memory>

// The first process that locks a file owns the session. Later starts notify it by a distributed notification. When the
// user opens the running application again, as from the Dock, it receives an Apple event.
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
