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

// The preferences window: the sidebar at the left, the selected pane at the right. There is one for the whole run;
// closing the window only hides it.
class PreferencesWindowController : public QObject {
    Q_OBJECT

public:
    // The window is made at once, showing the Welcome pane, but not yet shown.
    PreferencesWindowController(Platform &platform, AppSettings &settings, NotificationCenter &notifications,
                                QObject *parent = nullptr);
    ~PreferencesWindowController() override;

    QWidget *window() const;
    // Whether the window is on screen. A minimised one is not.
    bool isWindowVisible() const;

    // Shows the window with its last pane, in front of everything and with the focus. A panel of the window that has
    // the focus keeps it.
    void showWindow();

    // The same after a settings change, which may have moved the window behind others. A panel that the desktop shows
    // for the window, such as its colour panel, keeps the focus.
    void showWindowAgain();

    // Replaces the shown pane by a new one of that kind. Posts appearancePaneActive when the Appearance pane is shown
    // or replaced.
    void showPane(PrefPane pane);

    // The shown pane.
    BasePane *pane() const { return detailVC; }
    SidebarViewController *sidebar() const { return sidebarVC; }

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    BasePane *makePane(PrefPane pane) const;
    // The window, or the panel opened from it that the user is working in.
    QWidget &keyWindow() const;
    // Whether the desktop shows a panel of the window in place of Qt's.
    bool hasPanelOfTheDesktop() const;
    void setUpWindow();
    void setUpSplitView();
    // Centres the window with its frame, as far as the desktop has told how wide that is.
    void centerWindow();

    Platform &platform;
    AppSettings &settings;
    NotificationCenter &notifications;
    std::unique_ptr<QWidget> preferencesWindow;
    QSplitter *splitVC;
    SidebarViewController *sidebarVC;
    BasePane *detailVC;
};
