// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

class DesktopEntries;
class XcbConnection;

// What a window states about its program. Each is empty when the window does not state it.
struct WindowIdentity {
    QString desktopFile;   // identifier or path of a desktop entry
    QString applicationId; // identifier of a GTK application
    QString sandboxId;     // what its sandbox calls the process
    QString className;     // WM_CLASS
    QString instanceName;  // WM_CLASS
};

// The identifier of the installed application of a window. An identifier that the window states itself comes first,
// even if no such application is installed.
std::optional<QString> bundleIdentifier(const WindowIdentity &window, const DesktopEntries &entries);

// The window that has the focus on this X server. Nothing when there is none, or it is our own.
std::optional<WindowIdentity> frontmostWindow(XcbConnection &xcb);

// The identifier that a sandbox gives a process, from its folder in /proc. Empty without a sandbox.
QString sandboxIdentifier(const QByteArray &process);
