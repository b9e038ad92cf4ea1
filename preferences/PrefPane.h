// SPDX-License-Identifier: MIT
#pragma once

// The panes of the preferences window, in the order of its sidebar.
enum class PrefPane { welcome, general, behavior, appearance, about };
