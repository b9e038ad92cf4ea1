// SPDX-License-Identifier: MIT
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/DropViews.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfViews.h"
#include "tests/shelf/ItemsFixture.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QTest>

using namespace Qt::StringLiterals;

// The panel's files: how they arrive, and what a drag out takes along.
class ShelfPanelItemsTest : public QObject {
    Q_OBJECT

private slots:
    // Adding
    void an_added_item_gets_a_tile_at_the_end();
    void an_item_on_the_shelf_is_not_added_again();
    void links_and_paths_are_not_resolved();
    void a_full_shelf_refuses_the_fifty_first_item();
    void the_header_follows_the_number_of_items();
    void adding_shows_nothing();
    // Drops
    void a_drop_is_announced_before_its_files_are_added();
    void a_drop_counts_as_one_before_it_is_announced();
    void a_drop_of_known_files_is_announced_and_adds_nothing();
    void a_drop_of_sixty_keeps_the_first_fifty();
    void both_drop_targets_light_up_the_border_in_todays_accent_colour();
    // Drags out
    void a_dragged_out_item_is_removed();
    void an_item_dropped_back_stays();
    void a_drag_forgets_the_drop_before_it();
    void the_selection_is_dragged_in_selection_order_with_its_pictures();
    void an_unselected_tile_is_dragged_alone_and_leaves_the_selection();
    void a_selection_dragged_out_is_removed_as_a_whole();
    void a_selection_dropped_back_stays();
    void a_drag_of_a_selection_takes_what_is_selected_when_it_ends();
    void a_tile_knows_the_end_of_a_selections_drag_from_its_start();
    void a_drag_whose_tile_is_removed_meanwhile_removes_the_other_files();
    void any_drop_during_a_drag_keeps_what_is_dragged();
    void a_selection_stays_as_a_whole_when_one_of_it_came_back();
    void a_selection_that_came_back_stays_with_those_it_could_not_carry();
    // Clearing
    void a_screen_reader_meets_the_tiles_as_a_list();
    // Announcing
    void a_screen_reader_opens_and_removes_files();
    void a_screen_reader_meets_nothing_without_a_role();
    void the_announcement_of_a_change_carries_nothing();
    // Afterwards
    void callbacks_that_outlive_the_panel_do_nothing();
};

namespace {

using Fixture = ItemsFixture;

} // namespace

void ShelfPanelItemsTest::an_added_item_gets_a_tile_at_the_end()
{
    Fixture f;
    f.add(2);
    QCOMPARE(f.panel->items, files(0, 2));
    QCOMPARE(f.tileCount(), 2);
    QCOMPARE(f.tile(0)->fileURL, file(0));
    QCOMPARE(f.tile(1)->fileURL, file(1));
    QCOMPARE(f.tile(1)->size(), QSize(88, 102));
    QCOMPARE(f.changes, 2);
}

void ShelfPanelItemsTest::an_item_on_the_shelf_is_not_added_again()
{
    Fixture f;
    f.set(Settings::autoHideTimeout.key, 5.0);
    f.add(1);
    f.advance(4);
    f.panel->addItem(file(0));
    QCOMPARE(f.panel->items.size(), 1);
    QCOMPARE(f.tileCount(), 1);
    QCOMPARE(f.changes, 1);
    // The timer is not started again either.
    f.advance(1);
    QCOMPARE(f.virtualPlatform.mainQueue.timerCount(), 0);
}

void ShelfPanelItemsTest::links_and_paths_are_not_resolved()
{
    Fixture f;
    f.panel->addItem(QUrl(u"file:///files/0.png"_s));
    f.panel->addItem(QUrl(u"file:///files/../files/0.png"_s));
    f.panel->addItem(QUrl(u"file:///files/0.png/"_s));
    QCOMPARE(f.panel->items.size(), 3);
}

void ShelfPanelItemsTest::a_full_shelf_refuses_the_fifty_first_item()
{
    Fixture f;
    f.add(50);
    QCOMPARE(f.panel->items.size(), 50);
    f.panel->addItem(file(50));
    QCOMPARE(f.panel->items.size(), 50);
    QCOMPARE(f.tileCount(), 50);
    QCOMPARE(f.changes, 50);
}

void ShelfPanelItemsTest::the_header_follows_the_number_of_items()
{
    Fixture f;
    f.add(1);
    QVERIFY(f.panel->dropLabel->isHidden());
    QVERIFY(f.panel->selectAllBtn->isHidden());
    f.add(1);
    QVERIFY(!f.panel->selectAllBtn->isHidden());
    QVERIFY(!f.panel->trashBtn->isHidden());
    f.panel->removeItem(file(0));
    QVERIFY(!f.panel->selectAllBtn->isHidden());
    f.advance(0.18);
    QVERIFY(f.panel->selectAllBtn->isHidden());
    QVERIFY(f.panel->dropLabel->isHidden());
}

void ShelfPanelItemsTest::adding_shows_nothing()
{
    Fixture f;
    f.add(1);
    f.drop({file(9)});
    QVERIFY(!f.panel->isVisible());
}

void ShelfPanelItemsTest::a_drop_is_announced_before_its_files_are_added()
{
    Fixture f;
    f.add(1);
    f.drop(files(5, 3));
    QCOMPARE(f.dropsWithItemCount, QList<qsizetype>{1});
    QCOMPARE(f.panel->items, (QList<QUrl>{file(0), file(5), file(6), file(7)}));
    QVERIFY(f.panel->droppedBackOnSelf);
    f.panel->scrollView->onDrop(files(8, 1));
    QCOMPARE(f.dropsWithItemCount.size(), 2);
    QCOMPARE(f.panel->items.size(), 5);
}

void ShelfPanelItemsTest::a_drop_of_known_files_is_announced_and_adds_nothing()
{
    Fixture f;
    f.add(2);
    f.changes = 0;
    f.drop(files(0, 2));
    QCOMPARE(f.dropsWithItemCount.size(), 1);
    QVERIFY(f.panel->droppedBackOnSelf);
    QCOMPARE(f.panel->items.size(), 2);
    QCOMPARE(f.changes, 0);
    f.drop(files(0, 3));
    QCOMPARE(f.panel->items.size(), 3);
    QCOMPARE(f.changes, 1);
}

void ShelfPanelItemsTest::a_drop_of_sixty_keeps_the_first_fifty()
{
    Fixture f;
    f.drop(files(0, 60));
    QCOMPARE(f.panel->items, files(0, 50));
}

void ShelfPanelItemsTest::both_drop_targets_light_up_the_border_in_todays_accent_colour()
{
    Fixture f;
    QCOMPARE(f.panel->visualFX->borderWidth(), 0.0);
    f.virtualPlatform.appearance.accent = Qt::green;
    f.panel->container->onHighlight(true);
    QCOMPARE(f.panel->visualFX->borderWidth(), 2.0);
    QCOMPARE(f.panel->visualFX->borderColor(), QColor(Qt::green));
    f.panel->container->onHighlight(false);
    QCOMPARE(f.panel->visualFX->borderWidth(), 0.0);
    f.virtualPlatform.appearance.accent = Qt::blue;
    f.panel->scrollView->onHighlight(true);
    QCOMPARE(f.panel->visualFX->borderWidth(), 2.0);
    QCOMPARE(f.panel->visualFX->borderColor(), QColor(Qt::blue));
    f.panel->scrollView->onHighlight(false);
    QCOMPARE(f.panel->visualFX->borderWidth(), 0.0);
}

void ShelfPanelItemsTest::a_dragged_out_item_is_removed()
{
    Fixture f;
    f.add(2);
    f.tile(0)->onDragStarted();
    f.tile(0)->onDragOut();
    QCOMPARE(f.panel->items, QList<QUrl>{file(1)});
    QVERIFY(!f.panel->droppedBackOnSelf);
}

void ShelfPanelItemsTest::an_item_dropped_back_stays()
{
    Fixture f;
    f.add(2);
    f.tile(0)->onDragStarted();
    f.drop({file(0)});
    f.tile(0)->onDragOut();
    QCOMPARE(f.panel->items, files(0, 2));
    QVERIFY(!f.panel->droppedBackOnSelf);
    f.tile(0)->onDragOut();
    QCOMPARE(f.panel->items, QList<QUrl>{file(1)});
}

void ShelfPanelItemsTest::a_drag_forgets_the_drop_before_it()
{
    Fixture f;
    f.drop(files(0, 2));
    QVERIFY(f.panel->droppedBackOnSelf);
    f.tile(0)->onDragStarted();
    QVERIFY(!f.panel->droppedBackOnSelf);
}

void ShelfPanelItemsTest::the_selection_is_dragged_in_selection_order_with_its_pictures()
{
    Fixture f;
    f.set(Settings::shelfItemSize.key, 60.0);
    f.add(3);
    // Only the first two have received their pictures.
    QImage image(60, 60, QImage::Format_RGB32);
    f.virtualPlatform.thumbnailGenerator.completeFirst(image);
    f.virtualPlatform.thumbnailGenerator.completeFirst(image);
    f.virtualPlatform.mainQueue.runPending();
    f.panel->selectAll();
    auto dragged = f.tile(1)->getDragItems();
    QVERIFY(dragged.has_value());
    QCOMPARE(dragged->size(), 2);
    QCOMPARE(dragged->at(0).fileURL, file(0));
    QCOMPARE(dragged->at(1).fileURL, file(1));
    // The frame is at the bottom left of the tile under the pointer, which is 90 high.
    QCOMPARE(dragged->at(0).frame, QRectF(0, 30, 60, 60));
    QCOMPARE(dragged->at(1).frame, QRectF(0, 30, 60, 60));
    QVERIFY(!dragged->at(0).contents.isNull());
    // A selection of one file gives a list of one, and an empty list if the file has no picture yet.
    f.tile(1)->onSelect();
    QCOMPARE(f.tile(1)->getDragItems()->size(), 1);
    f.tile(2)->onSelect();
    dragged = f.tile(2)->getDragItems();
    QVERIFY(dragged.has_value());
    QVERIFY(dragged->isEmpty());
}

void ShelfPanelItemsTest::an_unselected_tile_is_dragged_alone_and_leaves_the_selection()
{
    Fixture f;
    f.add(3);
    f.showImages();
    f.tile(0)->onSelect();
    QVERIFY(!f.tile(1)->getDragItems().has_value());
    f.tile(1)->onDragStarted();
    f.tile(1)->onDragOut();
    f.advance(0.18);
    QCOMPARE(f.panel->items, (QList<QUrl>{file(0), file(2)}));
    QCOMPARE(f.panel->selectedViews, QList<ShelfItemView *>{f.tile(0)});
    QVERIFY(f.tile(0)->isSelected);
}

void ShelfPanelItemsTest::a_selection_dragged_out_is_removed_as_a_whole()
{
    Fixture f;
    f.add(4);
    f.panel->selectAll();
    f.panel->removeItem(file(3));
    f.tile(1)->onDragStarted();
    f.tile(1)->getDragItems();
    f.tile(1)->onMultiDragOut();
    QVERIFY(f.panel->items.isEmpty());
    QVERIFY(f.panel->selectedViews.isEmpty());
    QVERIFY(!f.virtualPlatform.keyTap.handler);
    // The tiles do not change their look until they are gone.
    QVERIFY(f.tile(0)->isSelected);
    f.advance(0.18);
    QCOMPARE(f.tileCount(), 0);
}

void ShelfPanelItemsTest::a_selection_dropped_back_stays()
{
    Fixture f;
    f.add(3);
    f.panel->selectAll();
    f.tile(1)->onDragStarted();
    f.tile(1)->getDragItems();
    f.drop(files(0, 3));
    f.tile(1)->onMultiDragOut();
    QCOMPARE(f.panel->items, files(0, 3));
    QCOMPARE(f.panel->selectedViews.size(), 3);
    QVERIFY(!f.panel->droppedBackOnSelf);
    QVERIFY(f.virtualPlatform.keyTap.handler != nullptr);
}

void ShelfPanelItemsTest::a_drag_of_a_selection_takes_what_is_selected_when_it_ends()
{
    Fixture f;
    f.add(3);
    f.showImages();
    f.panel->selectAll();
    f.dragTile(0);
    f.tile(2)->onSelect();
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QCOMPARE(f.panel->items, files(0, 2));
    QVERIFY(f.panel->selectedViews.isEmpty());
    QVERIFY(!f.virtualPlatform.keyTap.handler);
}

void ShelfPanelItemsTest::a_tile_knows_the_end_of_a_selections_drag_from_its_start()
{
    Fixture f;
    f.add(2);
    QVERIFY(f.tile(0)->onMultiDragOut != nullptr);
    f.panel->selectAll();
    // Nobody has asked the tile for what goes along.
    f.tile(0)->onMultiDragOut();
    QVERIFY(f.panel->items.isEmpty());
}

void ShelfPanelItemsTest::a_drag_whose_tile_is_removed_meanwhile_removes_the_other_files()
{
    Fixture f;
    f.add(3);
    f.showImages();
    f.panel->selectAll();
    f.dragTile(1);
    f.panel->removeItem(file(1));
    f.advance(1);
    QCOMPARE(f.tileCount(), 2);
    f.virtualPlatform.dragSessions.end(DragOperation::Move);
    QVERIFY(f.panel->items.isEmpty());
    // A deleted panel receives no callbacks.
    f.add(2);
    f.showImages();
    f.panel->selectAll();
    f.dragTile(0);
    f.panel.reset();
    f.virtualPlatform.dragSessions.end(DragOperation::Move);
}

void ShelfPanelItemsTest::any_drop_during_a_drag_keeps_what_is_dragged()
{
    Fixture f;
    f.add(2);
    f.showImages();
    f.dragTile(0);
    f.drop({file(7)});
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QCOMPARE(f.panel->items, (QList<QUrl>{file(0), file(1), file(7)}));
    QVERIFY(!f.panel->droppedBackOnSelf);
    // The next drag begins without it.
    f.dragTile(0);
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QCOMPARE(f.panel->items, (QList<QUrl>{file(1), file(7)}));
}

void ShelfPanelItemsTest::a_selection_stays_as_a_whole_when_one_of_it_came_back()
{
    Fixture f;
    f.add(3);
    f.showImages();
    f.panel->selectAll();
    f.dragTile(0);
    f.drop({file(1)});
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QCOMPARE(f.panel->items, files(0, 3));
    QCOMPARE(f.panel->selectedViews.size(), 3);
    QVERIFY(f.virtualPlatform.keyTap.handler != nullptr);
    QVERIFY(!f.panel->droppedBackOnSelf);
}

void ShelfPanelItemsTest::a_selection_that_came_back_stays_with_those_it_could_not_carry()
{
    Fixture f;
    f.add(2);
    f.showImages();
    f.add(1);
    f.panel->selectAll();
    f.dragTile(0);
    QCOMPARE(f.virtualPlatform.dragSessions.sessions.first().items.size(), 2);
    f.drop(files(0, 2));
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QCOMPARE(f.panel->items, files(0, 3));
    QCOMPARE(f.panel->selectedViews.size(), 3);
    // A drag that ended elsewhere removes them.
    f.dragTile(0);
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QVERIFY(f.panel->items.isEmpty());
    QVERIFY(f.panel->selectedViews.isEmpty());
}

void ShelfPanelItemsTest::a_screen_reader_meets_the_tiles_as_a_list()
{
    Fixture f;
    f.add(2);
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(f.panel->stackView);
    QCOMPARE(list->role(), QAccessible::List);
    QAccessibleInterface *tile = QAccessible::queryAccessibleInterface(f.tile(1));
    QCOMPARE(tile->role(), QAccessible::ListItem);
    QCOMPARE(tile->text(QAccessible::Name), u"1.png"_s);
    QCOMPARE(tile->text(QAccessible::Description), u"/files/1.png"_s);
    QVERIFY(tile->state().selectable);
    QVERIFY(!tile->state().selected);
    tile->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(tile->state().selected);
    QCOMPARE(f.panel->selectedViews, QList<ShelfItemView *>{f.tile(1)});
}

void ShelfPanelItemsTest::a_screen_reader_opens_and_removes_files()
{
    Fixture f;
    f.add(2);
    QAccessibleActionInterface *actions = QAccessible::queryAccessibleInterface(f.tile(1))->actionInterface();
    QCOMPARE(actions->actionNames(), (QStringList{actions->pressAction(), u"open"_s, u"remove"_s}));
    QCOMPARE(actions->localizedActionName(u"open"_s), u"Open"_s);
    QCOMPARE(actions->localizedActionName(u"remove"_s), u"Remove"_s);
    actions->doAction(u"open"_s);
    QCOMPARE(f.virtualPlatform.workspace.opened, QList<QUrl>{file(1)});
    actions->doAction(u"remove"_s);
    QCOMPARE(f.panel->items, QList<QUrl>{file(0)});
}

void ShelfPanelItemsTest::a_screen_reader_meets_nothing_without_a_role()
{
    Fixture f;
    f.add(2);
    QStringList met;
    const auto walk = [&met](QAccessibleInterface *view, const auto &again) -> void {
        met.append(u"%1 %2"_s.arg(int(view->role())).arg(view->text(QAccessible::Name)).trimmed());
        for (int i = 0; i < view->childCount(); ++i) {
            QAccessibleInterface *child = view->child(i);
            QVERIFY(child);
            QCOMPARE(child->parent(), view);
            QCOMPARE(view->indexOfChild(child), i);
            again(child, again);
        }
    };
    walk(QAccessible::queryAccessibleInterface(f.panel.get()), walk);
    const auto line = [](QAccessible::Role role, const QString &name = {}) {
        return u"%1 %2"_s.arg(int(role)).arg(name).trimmed();
    };
    QCOMPARE(met, (QStringList{line(QAccessible::Window, u"Parklet"_s), line(QAccessible::Pane),
                               line(QAccessible::ToolBar), line(QAccessible::Button, u"Preferences"_s),
                               line(QAccessible::Button, u"Select all"_s), line(QAccessible::Button, u"Clear all"_s),
                               line(QAccessible::StaticText, u"Drop files here"_s), line(QAccessible::Pane),
                               line(QAccessible::List, u"Files"_s), line(QAccessible::ListItem, u"0.png"_s),
                               line(QAccessible::Button, u"Remove"_s), line(QAccessible::ListItem, u"1.png"_s),
                               line(QAccessible::Button, u"Remove"_s)}));
}

void ShelfPanelItemsTest::the_announcement_of_a_change_carries_nothing()
{
    Fixture f;
    f.add(1);
    QCOMPARE(f.changes, 1);
    f.drop(files(1, 2));
    QCOMPARE(f.changes, 3);
    f.panel->removeItem(file(0));
    f.advance(0.18);
    QCOMPARE(f.changes, 4);
    f.set(Settings::skipClearAllConfirmation.key, true);
    f.panel->clearAll();
    QCOMPARE(f.changes, 5);
    QVERIFY(f.carried.isEmpty());
}

void ShelfPanelItemsTest::callbacks_that_outlive_the_panel_do_nothing()
{
    Fixture f;
    f.add(2);
    ShelfItemView *tile = f.tile(0);
    const auto onRemove = tile->onRemove;
    const auto onDragOut = tile->onDragOut;
    const auto onSelect = tile->onSelect;
    const auto onSelectAll = tile->onSelectAll;
    const auto onDragStarted = tile->onDragStarted;
    const auto getDragItems = tile->getDragItems;
    f.tile(0)->onSelect();
    getDragItems();
    const auto onMultiDragOut = tile->onMultiDragOut;
    f.panel->removeItem(file(1));
    f.panel.reset();
    onRemove();
    onDragOut();
    onSelect();
    onSelectAll();
    onDragStarted();
    QVERIFY(!getDragItems().has_value());
    onMultiDragOut();
    f.virtualPlatform.mainQueue.advance(5);
}

void ShelfPanelItemsTest::a_drop_counts_as_one_before_it_is_announced()
{
    Fixture f;
    QList<bool> seen;
    f.panel->onDropReceived = [&f, &seen] { seen.append(f.panel->droppedBackOnSelf); };
    f.drop({file(0)});
    QCOMPARE(seen, QList<bool>{true});
}

PARKLET_TEST(ShelfPanelItemsTest)
#include "ShelfPanelItemsTest.moc"
