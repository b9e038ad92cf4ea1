// SPDX-License-Identifier: MIT
#include "settings/BuildInfo.h"

#include <QCoreApplication>

// The build of the desktop tests: version 1.9, whose version record is wherever the test serves it.

QString BuildInfo::builtVersion()
{
    return QStringLiteral("1.9");
}

QString BuildInfo::runningVersion()
{
    return QCoreApplication::applicationVersion();
}

QUrl BuildInfo::moreAppsURL()
{
    return QUrl(QStringLiteral("http://127.0.0.1/apps"));
}

QUrl BuildInfo::versionURL()
{
    return QUrl(qEnvironmentVariable("PARKLET_TEST_VERSION_URL"));
}

QString BuildInfo::makerLine()
{
    return QStringLiteral("The maker");
}
