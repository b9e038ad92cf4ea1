// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusBar.h"

class SystemAppearance;
class XcbConnection;

// The session's tray.
class LinuxStatusBar : public StatusBar {
public:
    // `xcb` is null where there is no X server.
    LinuxStatusBar(std::shared_ptr<XcbConnection> xcb, const SystemAppearance &systemAppearance);

    std::unique_ptr<StatusItem> createItem() override;

private:
    std::shared_ptr<XcbConnection> connection;
    const SystemAppearance &appearance;
};
