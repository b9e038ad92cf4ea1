// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QString>

#include <unistd.h>

// For as long as it lives the test is a user whom permissions bind, and who owns `folder`; the superuser may read and
// write everything. Whoever is an ordinary user already stays who he is.
class OrdinaryUser {
public:
    explicit OrdinaryUser(const QString &folder)
    {
        constexpr uid_t kNobody = 65'534;
        if (wasSuperUser && (::chown(QFile::encodeName(folder).constData(), kNobody, static_cast<gid_t>(-1)) != 0 ||
                             ::seteuid(kNobody) != 0))
            qFatal("The superuser could not become an ordinary one.");
    }
    ~OrdinaryUser()
    {
        if (wasSuperUser && ::seteuid(0) != 0)
            qFatal("The superuser did not come back.");
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    const bool wasSuperUser = ::geteuid() == 0;
};
