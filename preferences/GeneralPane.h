// SPDX-License-Identifier: MIT
#pragma once

#include "preferences/BasePane.h"
#include "settings/SettingsTable.h"

#include <QHash>

class AppSettings;
class LoginItem;
class NotificationCenter;
class QCheckBox;
class QComboBox;

// The application-wide switches, and what files dragged out of the shelf are offered as.
class GeneralPane : public BasePane {
    Q_OBJECT

public:
    GeneralPane(AppSettings &settings, LoginItem &loginItem, NotificationCenter &notifications,
                QWidget *parent = nullptr);

    void loadView() override;

    // Stores what the sender shows under the setting it is bound to; a sender bound to none is ignored. Only the two
    // icons post settingsChanged: the other settings are read when they are needed.
    void toggleChanged(QCheckBox *sender);
    void dragModeChanged(QComboBox *sender);

private:
    QCheckBox *boundCheckBox(const QString &title, const Setting<bool> &setting);
    void applyStartAtLogin();

    AppSettings &s;
    LoginItem &loginItem;
    NotificationCenter &notifications;
    QHash<QCheckBox *, const Setting<bool> *> bindings;
};
