// SPDX-License-Identifier: MIT
#include "settings/BuildInfo.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

// The build of the desktop tests: version 1.9, whose version record is wherever the test serves it.

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
