// SPDX-License-Identifier: MIT
#include "settings/BuildInfo.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

// The build settings of the desktop tests: version 1.9, and the address at which the test serves the version record.

QString BuildInfo::builtVersion()
{
    return u"1.9"_s;
}

QString BuildInfo::runningVersion()
{
    return QCoreApplication::applicationVersion();
}

QUrl BuildInfo::moreAppsURL()
{
    return QUrl(u"http://127.0.0.1/apps"_s);
}

QUrl BuildInfo::versionURL()
{
    return QUrl(qEnvironmentVariable("PARKLET_TEST_VERSION_URL"));
}

QString BuildInfo::makerLine()
{
    return u"The maker"_s;
}
