// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UserDefaults.h"

// The standard user defaults, which the command `defaults write` also changes. Their typed reads also convert a string
// to a number or a Boolean.
class MacUserDefaults : public UserDefaults {
public:
    QVariant object(const QString &key) const override;
    bool set(const QString &key, const QVariant &value) override;
    bool remove(const QString &key) override;
    void synchronize() override;

    bool boolean(const QString &key) const override;
    qint64 integer(const QString &key) const override;
    double number(const QString &key) const override;
    QByteArray data(const QString &key) const override;
    QStringList stringArray(const QString &key) const override;
};
