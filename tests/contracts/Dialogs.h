// SPDX-License-Identifier: MIT
#pragma once

class QString;

// Presses a button of the visible dialog. False when there is no dialog, or not yet such a button.
bool pressButton(const QString &title);

// Cancels the visible dialog. False until it has closed, so that the caller tries again.
bool cancelDialog();
