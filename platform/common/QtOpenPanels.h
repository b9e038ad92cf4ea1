// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OpenPanels.h"

// Open panels as Qt file dialogs.
class QtOpenPanels : public OpenPanels {
public:
    std::optional<QUrl> runModal(const OpenPanel &panel, QWidget *window) override;
};
