// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

// What CMake sets for each build: its version and the maker's addresses.
namespace BuildInfo {

// The version this was built as; main gives it to the application object.
QString builtVersion();

// The version that the running application reports; "1.0" when it reports none.
QString runningVersion();

// The web page of the maker's other applications.
QUrl moreAppsURL();

// Returns `address`. A malformed one stops the program.
inline QUrl checkedMoreAppsURL(const QUrl &address)
{
    if (!address.isValid())
        qFatal("The address of the maker's other applications is not valid.");
    return address;
}

// The version record that the update check fetches.
QUrl versionURL();

// The maker's one-line notice of year and name.
QString makerLine();

} // namespace BuildInfo
