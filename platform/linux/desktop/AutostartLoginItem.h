// SPDX-License-Identifier: MIT
#pragma once

#include "platform/LoginItem.h"

#include <QString>
#include <QStringList>

// The login item as an autostart entry, which the desktop's own settings may switch off and on as well.
class AutostartLoginItem : public LoginItem {
public:
    // The user's autostart folder, the system's ones in their order of precedence, and the program to start.
    AutostartLoginItem(const QString &folder, const QStringList &systemFolders, const QString &program);

    // Those of this session, and this program.
    AutostartLoginItem();

    bool isEnabled() const override;
    bool enable() override;
    bool disable() override;

private:
    // The file of an entry that the system's folders hold; empty when there is none.
    QByteArray systemEntry() const;

    QByteArray entry;
    QStringList systemFolders;
    QString program;
};

// A desktop entry's Exec value for `program` without arguments: quoted and escaped as far as needed.
QString execLine(const QString &program);
