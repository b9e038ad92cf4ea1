// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Workspace.h"
#include "platform/linux/desktop/DesktopEntries.h"
#include "platform/linux/desktop/FileIcons.h"

#include <functional>
#include <memory>
#include <optional>

class FileHelpers;
struct WindowIdentity;

// Finds applications by their desktop entries and icons by the icon theme and the shared MIME database, and opens files
// through GIO.
class LinuxWorkspace : public Workspace {
public:
    // Answers what the window with the focus says of its program.
    using Frontmost = std::function<std::optional<WindowIdentity>()>;

    // Without `frontmostWindow` there is no frontmost application.
    LinuxWorkspace(Frontmost frontmostWindow, std::shared_ptr<FileHelpers> files,
                   const DesktopEntries &desktopEntries = DesktopEntries());

    std::optional<QString> frontmostBundleIdentifier() const override;
    bool open(const QUrl &url) override;
    void icon(const QUrl &file, IconFound found) override;
    std::optional<Application> application(const QString &bundleIdentifier) const override;
    std::optional<QString> bundleIdentifier(const QUrl &chosenFile) const override;
    QList<QUrl> applicationsFolders() const override;

private:
    Frontmost frontmost;
    std::shared_ptr<FileHelpers> files;
    DesktopEntries entries;
    FileIcons icons;
};
