// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Workspace.h"

// The shared workspace and Launch Services.
class MacWorkspace : public Workspace {
public:
    std::optional<QString> frontmostBundleIdentifier() const override;
    bool open(const QUrl &url) override;
    QIcon icon(const QUrl &file) const override;
    std::optional<Application> application(const QString &bundleIdentifier) const override;
    std::optional<QString> bundleIdentifier(const QUrl &chosenFile) const override;
    QList<QUrl> applicationsFolders() const override;
};
