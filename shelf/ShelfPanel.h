// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragSessions.h"
#include "shelf/Fader.h"

#include <QList>
#include <QUrl>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class AppSettings;
class ColorView;
class DroppableView;
class HeaderButton;
class NotificationCenter;
class QLabel;
class ShelfItemView;
class ShelfScrollView;
class ShelfStackView;
class Timer;
class VisualEffectView;
struct Platform;

// Whether the shelf fades. `disableAnimations` turns every fade off.
enum class Animated { No, Yes };

// The floating shelf: a panel at a screen edge that holds file references as tiles, at most 50 and no two the same,
// in the order they arrived. Four sources implement it, in the order of the groups below:
//
//   ShelfPanel.cpp            its views, its frame and how it looks
//   ShelfPanelVisibility.cpp  when it shows, what empties it, and when it hides
//   ShelfPanelItems.cpp       how files come, by a drop or otherwise, and what a drag out takes with it
//   ShelfPanelSelection.cpp   which tiles are selected, and the key that selects them all
class ShelfPanel : public QWidget {
    Q_OBJECT

public:
    // The panel is created hidden.
    ShelfPanel(Platform &platform, AppSettings &settings, NotificationCenter &notifications);

    // Sets the frame for the current settings and number of items, even if the panel is hidden. Without a main screen
    // the frame does not change.
    void updateFrame();

    // The frame now, in points with the origin at the bottom left of the primary screen, as updateFrame() set it.
    QRectF frame() const { return currentFrame; }

    // Reads every appearance setting again. Tiles on the shelf keep the width they were added with.
    void applySettings();

    // The views, from the back to the front.
    DroppableView *container;
    VisualEffectView *visualFX;
    ColorView *tintOverlay = nullptr;
    QWidget *headerBar;
    HeaderButton *gearBtn;
    HeaderButton *selectAllBtn;
    HeaderButton *trashBtn;
    ColorView *sepLine;
    QLabel *dropLabel;
    ShelfScrollView *scrollView;
    ShelfStackView *stackView;

    // Asked for a menu at this place of the screen, by a right click anywhere on the panel.
    std::function<void(const QPoint &place)> onContextMenu;

    // Visibility

    // Puts the panel in its place and shows it above all other windows; animated, it fades in over 0.22 s, also when
    // it is already visible.
    void show(Animated animated);

    // Hides the panel if it is visible; animated, it fades out over 0.18 s first. A running fade-out continues.
    void hide(Animated animated);

    double alpha() const { return fader.alpha(); }

    // Whether the panel is fading out; it is still visible then.
    bool isHiding() const { return hiding; }

    // Removes a file from the shelf; its tile fades out over 0.18 s.
    void removeItem(const QUrl &url);

    // Each starts the one timer that hides the shelf if it is empty by then, and stops the previous one. The first
    // waits for autoHideTimeout seconds, and starts none when that is 0; the second for 1.5 seconds.
    void restartAutoHideTimer();
    void scheduleHideIfEmpty();

    // Items

    QList<QUrl> items;

    // Called once for each drop of files on the panel, before they are added.
    std::function<void()> onDropReceived;

    // Appends a file unless it is on the shelf already or the shelf holds 50. Does not show the panel.
    void addItem(const QUrl &url);

    bool droppedBackOnSelf = false; // a drop on the panel happened while a tile was being dragged out

    // Selection

    QList<ShelfItemView *> selectedViews; // in the order they were selected

    // The tap that selects all tiles on Command-A in any application, while something is selected.
    void installCmdATap();
    void removeCmdATap();

public slots:
    void openPrefs();
    // Asks before it clears two or more items, unless the user has said not to.
    void clearAll();
    void selectAll();
    // Selects all, or none when all are selected.
    void selectAllAction();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    HeaderButton *makeHeaderButton(const QString &symbol, const QString &label);
    void buildInterface();
    void layoutViews();
    void setHorizontal(bool horizontal);
    void scrollIntoView(const QRectF &visibleFrame);
    void applyTint();
    void settingsDidChange();
    void refreshTiles();
    void updateHeader();
    void tilesDidScroll();

    void tileDidFadeOut(ShelfItemView *tile);
    void removeAllItems();
    void itemsDidChange();
    void hideIfEmpty();
    void fadeOut();
    void vanish();

    void handleDrop(const QList<QUrl> &urls);
    void setHighlighted(bool on);
    std::optional<QList<DraggingItem>> dragItems(ShelfItemView *tile);
    void didDragOut(const QUrl &url);
    void didDragOutSelection();

    void setSelected(ShelfItemView *tile, bool selected);
    void clearSelection();
    void select(ShelfItemView *tile);

    Platform &platform;
    AppSettings &settings;
    NotificationCenter &notifications;
    QRectF currentFrame;
    Fader fader;
    bool hiding = false;
    bool hidesOnlyEmpty = false; // the current fade-out is to end only while the shelf is empty
    std::shared_ptr<Timer> autoHideTimer;
    bool isTapInstalled = false;
};
