// SPDX-License-Identifier: MIT
#pragma once

#include "preferences/BasePane.h"

class SystemAppearance;

// Introduces the application: its icon, name, tagline and a short description.
class WelcomePane : public BasePane {
    Q_OBJECT

public:
    explicit WelcomePane(const SystemAppearance &appearance, QWidget *parent = nullptr);

    void loadView() override;

private:
    const SystemAppearance &appearance;
};
