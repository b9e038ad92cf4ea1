// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QString>

#include <unistd.h>

// While it exists, the test runs as an ordinary user who owns `folder`, because root may read and write everything.
// Does nothing when the test already runs as an ordinary user.
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
