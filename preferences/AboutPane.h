// SPDX-License-Identifier: MIT
#pragma once

#include "preferences/BasePane.h"

#include <QUrl>

class QPushButton;
class SystemAppearance;
class Workspace;

// The application's icon, its running version, its maker, and the way to the maker's other applications.
class AboutPane : public BasePane {
    Q_OBJECT

public:
    AboutPane(const SystemAppearance &appearance, Workspace &workspace, QWidget *parent = nullptr);

    void loadView() override;

    // The maker's web page, as it was set for this build.
    QUrl moreAppsURL;

    // Opens that page in the default browser.
    void openMoreApps();

protected:
    void changeEvent(QEvent *event) override;

private:
    void tint();

    const SystemAppearance &appearance;
    Workspace &workspace;
    QPushButton *moreApps = nullptr;
};
