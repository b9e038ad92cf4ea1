// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OpenPanels.h"

// The system's open panel. It shows an application as one file, although it is a folder.
class MacOpenPanels : public OpenPanels {
public:
    std::optional<QUrl> runModal(const OpenPanel &panel, QWidget *window) override;
};
