// SPDX-License-Identifier: MIT
#pragma once

class QString;

// What a user does to the dialog that is on the screen. False when there is none, or no such button yet.
bool pressButton(const QString &title);
bool cancelDialog();
