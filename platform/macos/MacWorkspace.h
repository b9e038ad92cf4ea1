// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Workspace.h"

#include <QObject>

// The shared workspace and Launch Services.
class MacWorkspace : public Workspace {
public:
    std::optional<QString> frontmostBundleIdentifier() const override;
    bool open(const QUrl &url) override;
    void icon(const QUrl &file, IconFound found) override;
    std::optional<Application> application(const QString &bundleIdentifier) const override;
    std::optional<QString> bundleIdentifier(const QUrl &chosenFile) const override;
    QList<QUrl> applicationsFolders() const override;

private:
    QObject receiver; // receives the results of other threads
};
