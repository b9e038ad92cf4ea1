// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OpenPanels.h"

// The system's open panel. An application is one file to it, though it is a folder.
class MacOpenPanels : public OpenPanels {
public:
    std::optional<QUrl> runModal(const OpenPanel &panel, QWidget *window) override;
};
