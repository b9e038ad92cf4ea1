// SPDX-License-Identifier: MIT
#pragma once

#include "platform/LoginItem.h"

#include <QString>
#include <QStringList>

// The login item as an autostart entry. The desktop's own settings may also switch it off and on.
class AutostartLoginItem : public LoginItem {
public:
    // Takes the user's autostart folder, the system's folders in their order of precedence, and the program to start.
    AutostartLoginItem(const QString &folder, const QStringList &systemFolders, const QString &program);

    // Takes those of this session, and this program.
    AutostartLoginItem();

    bool isEnabled() const override;
    bool enable() override;
    bool disable() override;

private:
    // The file of the entry in the system's folders. Empty when there is none.
    QByteArray systemEntry() const;

    QByteArray entry;
    QStringList systemFolders;
    QString program;
};

// A desktop entry's Exec value for `program` without arguments: quoted and escaped as far as needed.
QString execLine(const QString &program);
