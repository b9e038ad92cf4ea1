// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UserDefaults.h"

// The standard user defaults, which `defaults write` reaches too. Their own typed reads also take a number or a truth
// value out of a string.
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
