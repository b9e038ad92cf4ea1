// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Platform.h"

#include <QTemporaryDir>

// Whether a platform may refuse what its user has not permitted, or what the user's own session holds already. On a Mac
// the suites run in that session; elsewhere they have one to themselves, and a refusal is a fault.
#ifdef Q_OS_MACOS
inline constexpr bool kMayRefuse = true;
#else
inline constexpr bool kMayRefuse = false;
#endif

// What the suites are run against: the services of one platform, and a hand that does to them what a user would.
class World {
public:
    virtual ~World() = default;

    virtual Platform &platform() = 0;

    // Lets time pass until `condition` holds. False when it never does.
    virtual bool waitFor(const std::function<bool()> &condition) = 0;

    // Puts files, or words, where the user's copies go.
    virtual void copy(const QList<QUrl> &files) = 0;
    virtual void copy(const QString &words) = 0;

    // Makes a file in a folder that is watched.
    virtual void addFile(const QString &folder, const QString &name) = 0;

    // Has the user answer the alert that comes next, which is `alert`: the check box turned on or not, and then a
    // button.
    virtual void answerAlert(const Alert &alert, const AlertAnswer &answer) = 0;

    // Has the user cancel the open panel that comes next.
    virtual void cancelOpenPanel() = 0;

    // The address of a new file of that name with these contents.
    QUrl makeFile(const QString &name, const QByteArray &contents) const;

    const QTemporaryDir folder;
};
