// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

class DesktopEntries;
class XcbConnection;

// What a window says of the program it belongs to; empty where it says nothing.
struct WindowIdentity {
    QString desktopFile;   // a desktop entry's identifier or path
    QString applicationId; // a GTK application's identifier
    QString sandboxId;     // of the process, by its sandbox
    QString className;     // WM_CLASS
    QString instanceName;  // WM_CLASS
};

// The identifier of the installed application that a window belongs to. What it says outright counts first, and also
// when no such application is known here.
std::optional<QString> bundleIdentifier(const WindowIdentity &window, const DesktopEntries &entries);

// The window that has the focus on this X server; nothing when there is none or it is one of our own.
std::optional<WindowIdentity> frontmostWindow(XcbConnection &xcb);

// The desktop entry's identifier that a sandbox gives a process, known by its folder in /proc; empty outside of one.
QString sandboxIdentifier(const QByteArray &process);
