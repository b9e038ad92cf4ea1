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

// The application-wide switches, and the operation of a drag out of the shelf.
class GeneralPane : public BasePane {
    Q_OBJECT

public:
    GeneralPane(AppSettings &settings, LoginItem &loginItem, NotificationCenter &notifications,
                QWidget *parent = nullptr);

    void loadView() override;

    // Stores the sender's state in the setting that it is bound to, and announces it if the table says so. Ignores a
    // sender that is bound to none.
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
