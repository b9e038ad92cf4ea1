// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Notifications.h"
#include "settings/SettingsTable.h"

// Posts settingsChanged if changes of `setting` are announced. A pane calls it after it has stored the setting.
template<typename T>
void announce(const Setting<T> &setting, NotificationCenter &notifications)
{
    if (setting.announced == Announced::Yes)
        notifications.post(Notifications::settingsChanged);
}
