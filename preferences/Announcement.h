// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Notifications.h"
#include "settings/SettingsTable.h"

// Posts settingsChanged when `setting`, which a pane has just stored, is one whose changes are announced.
template<typename T>
void announce(const Setting<T> &setting, NotificationCenter &notifications)
{
    if (setting.announced == Announced::Yes)
        notifications.post(Notifications::settingsChanged);
}
