// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Platform.h"

#include <QTemporaryDir>

// Whether a platform may refuse something because the user has not permitted it, or because the user's session has it
// already. On a Mac, the suites run in the user's session. Elsewhere they have their own session, and a refusal is an
// error.
#ifdef Q_OS_MACOS
inline constexpr bool kMayRefuse = true;
#else
inline constexpr bool kMayRefuse = false;
#endif

// The services of one platform, and the actions of a user on them.
class World {
public:
    virtual ~World() = default;

    virtual Platform &platform() = 0;

    // Waits until `condition` is true. False when it never is.
    virtual bool waitFor(const std::function<bool()> &condition) = 0;

    // Copies files, or text, to the clipboard.
    virtual void copy(const QList<QUrl> &files) = 0;
    virtual void copy(const QString &words) = 0;

    // Waits until these are the files that the clipboard is said to hold.
    bool waitForCopied(const QList<QUrl> &files);

    // Makes a file in a folder that is watched.
    virtual void addFile(const QString &folder, const QString &name) = 0;

    // Answers the next alert, which is `alert`, as a user: turns the check box on or not, and then presses a button.
    virtual void answerAlert(const Alert &alert, const AlertAnswer &answer) = 0;

    // Cancels the next open panel, as a user.
    virtual void cancelOpenPanel() = 0;

    // Makes a file with this name and contents, and returns its URL.
    QUrl makeFile(const QString &name, const QByteArray &contents) const;

    const QTemporaryDir folder;
};
