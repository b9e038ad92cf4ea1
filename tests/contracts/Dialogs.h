// SPDX-License-Identifier: MIT
#pragma once

class QString;

// What a user does to the dialog that is on the screen. False when there is none, or no such button yet.
bool pressButton(const QString &title);

// The same; also false while the dialog has not gone yet, so that it is cancelled until it has.
bool cancelDialog();
