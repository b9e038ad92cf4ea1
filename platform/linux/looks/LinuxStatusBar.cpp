// SPDX-License-Identifier: MIT
#include "platform/linux/looks/LinuxStatusBar.h"

#include "platform/linux/looks/LinuxStatusItem.h"

LinuxStatusBar::LinuxStatusBar(std::shared_ptr<XcbConnection> xcb, const SystemAppearance &systemAppearance)
    : connection(std::move(xcb))
    , appearance(systemAppearance)
{
}

std::unique_ptr<StatusItem> LinuxStatusBar::createItem()
{
    return std::make_unique<LinuxStatusItem>(connection, appearance);
}
