// SPDX-License-Identifier: MIT
#pragma once

#include "preferences/PrefPane.h"

#include <QObject>
#include <QSplitter>

#include <memory>

class AppSettings;
class BasePane;
class NotificationCenter;
class SidebarViewController;
struct Platform;

// The preferences window: the sidebar at the left, the selected pane at the right. One controller and one window serve
// the whole run; closing the window only hides it.
class PreferencesWindowController : public QObject {
    Q_OBJECT

public:
    // The window is made at once, showing the Welcome pane, but not yet shown.
    PreferencesWindowController(Platform &platform, AppSettings &settings, NotificationCenter &notifications,
                                QObject *parent = nullptr);
    ~PreferencesWindowController() override;

    QWidget *window() const;
    // Whether the window is on screen; one that is minimised is not.
    bool isWindowVisible() const;

    // Shows the window with the pane it last showed, in front of everything and with the focus; a panel of its own that
    // has the focus keeps it.
    void showWindow();

    // The same after a change of the settings, which may have taken the window from the front. A panel that the desktop
    // shows for the window, as it does for the choice of a colour, keeps the focus.
    void showWindowAgain();

    // Replaces the shown pane by a new one of that kind. Posts appearancePaneActive when the Appearance pane comes or
    // goes.
    void showPane(PrefPane pane);

    // The shown pane.
    BasePane *pane() const { return detailVC; }
    SidebarViewController *sidebar() const { return sidebarVC; }

private:
    BasePane *makePane(PrefPane pane) const;
    // The window, or the panel opened from it that the user is working in.
    QWidget &keyWindow() const;
    // Whether a panel of the window is on screen that the desktop shows in place of Qt's.
    bool hasPanelOfTheDesktop() const;
    void setUpWindow();
    void setUpSplitView();
    void centerWindow();

    Platform &platform;
    AppSettings &settings;
    NotificationCenter &notifications;
    std::unique_ptr<QWidget> preferencesWindow;
    QSplitter *splitVC;
    SidebarViewController *sidebarVC;
    BasePane *detailVC;
};
