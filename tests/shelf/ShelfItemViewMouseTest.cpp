// SPDX-License-Identifier: MIT
#include "platform/FileURLs.h"
#include "shelf/ShelfItemView.h"
#include "shelf/TileViews.h"
#include "tests/shelf/TileFixture.h"
#include "tests/support/Corners.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>

using namespace Qt::StringLiterals;

// Clicks on a tile, and drags out of it.
class ShelfItemViewMouseTest : public QObject {
    Q_OBJECT

private slots:
    // Clicks
    void a_press_selects_an_unselected_tile_at_once();
    void a_press_on_a_selected_tile_selects_it_on_release();
    void a_drag_from_a_selected_tile_selects_nothing();
    void a_drag_that_cannot_begin_selects_nothing_either();
    void a_double_click_selects_all_unless_it_opens();
    void the_second_click_of_a_double_click_does_not_select_on_release();
    void a_third_click_in_a_row_is_one_of_several();
    void a_selected_tile_is_selected_also_by_a_release_beside_it();
    void other_buttons_do_nothing();
    void the_remove_button_answers_while_it_is_invisible();
    void clicks_on_image_and_name_are_the_tiles();
    void the_tile_takes_no_drops();
    // Drags
    void the_drag_mode_decides_the_only_operation_data();
    void the_drag_mode_decides_the_only_operation();
    void a_drag_carries_the_file_with_its_picture();
    void a_drag_asks_for_companions_after_it_has_announced_itself();
    void an_empty_answer_drags_the_file_alone();
    void without_an_image_no_drag_begins_but_it_was_announced();
    void a_small_movement_is_no_drag();
    void the_end_of_a_drag_is_reported_when_it_did_something_data();
    void the_end_of_a_drag_is_reported_when_it_did_something();
    void without_callbacks_nothing_happens();
    void a_drag_that_ends_after_its_tile_has_gone_is_reported();
    void whether_a_dragged_file_goes_is_decided_at_the_end_of_its_drag();
    void each_drag_of_a_tile_has_its_own_report();
};

namespace {

using Fixture = TileFixture;

} // namespace

void ShelfItemViewMouseTest::a_press_selects_an_unselected_tile_at_once()
{
    Fixture f;
    f.make();
    QTest::mousePress(f.tile.get(), Qt::LeftButton, Qt::ControlModifier | Qt::ShiftModifier, QPoint(40, 40));
    QCOMPARE(f.calls, QStringList{u"select"_s});
    f.tile->isSelected = true; // as the shelf sets it
    f.release();
    QCOMPARE(f.calls.size(), 1);
}

void ShelfItemViewMouseTest::a_press_on_a_selected_tile_selects_it_on_release()
{
    Fixture f;
    f.make().isSelected = true;
    f.press();
    QVERIFY(f.calls.isEmpty());
    f.release();
    QCOMPARE(f.calls, QStringList{u"select"_s});
    f.release();
    QCOMPARE(f.calls.size(), 1);
}

void ShelfItemViewMouseTest::a_drag_from_a_selected_tile_selects_nothing()
{
    Fixture f;
    f.make().isSelected = true;
    f.completeThumbnail(picture());
    f.drag();
    f.release();
    QCOMPARE(f.calls, QStringList{u"dragStarted"_s});
}

void ShelfItemViewMouseTest::a_drag_that_cannot_begin_selects_nothing_either()
{
    Fixture f;
    f.make().isSelected = true;
    f.drag();
    QCOMPARE(f.virtualPlatform.dragSessions.begun, 0);
    f.release();
    QCOMPARE(f.calls, QStringList{u"dragStarted"_s});
}

void ShelfItemViewMouseTest::a_double_click_selects_all_unless_it_opens()
{
    for (const QVariant &action : {QVariant(), QVariant(1.0), QVariant(5.0)}) {
        Fixture f;
        if (action.isValid())
            f.set(Settings::doubleClickAction.key, action);
        f.make();
        QTest::mouseDClick(f.tile.get(), Qt::LeftButton, {}, QPoint(40, 40));
        QCOMPARE(f.calls.last(), u"selectAll"_s);
        QVERIFY(f.virtualPlatform.workspace.opened.isEmpty());
    }
    Fixture opens;
    opens.set(Settings::doubleClickAction.key, 0.0);
    opens.virtualPlatform.workspace.openSucceeds = false;
    opens.make();
    opens.press();
    opens.release();
    QTest::mouseDClick(opens.tile.get(), Qt::LeftButton, {}, QPoint(40, 40));
    QCOMPARE(opens.virtualPlatform.workspace.opened, QList<QUrl>{opens.url});
    // The first click has selected it.
    QCOMPARE(opens.calls, QStringList{u"select"_s});
}

void ShelfItemViewMouseTest::the_second_click_of_a_double_click_does_not_select_on_release()
{
    Fixture f;
    f.make().isSelected = true;
    f.press();
    QMouseEvent second(QEvent::MouseButtonDblClick, QPointF(40, 40), QPointF(40, 40), Qt::LeftButton, Qt::LeftButton,
                       Qt::NoModifier);
    QApplication::sendEvent(f.tile.get(), &second);
    f.release();
    QCOMPARE(f.calls, QStringList{u"selectAll"_s});
}

void ShelfItemViewMouseTest::a_third_click_in_a_row_is_one_of_several()
{
    Fixture f;
    f.make().isSelected = true;
    const auto send = [&](QEvent::Type type, ulong time) {
        QMouseEvent event(type, QPointF(40, 40), QPointF(40, 40), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        event.setTimestamp(time);
        QApplication::sendEvent(f.tile.get(), &event);
    };
    send(QEvent::MouseButtonPress, 1000);
    send(QEvent::MouseButtonDblClick, 1100);
    send(QEvent::MouseButtonRelease, 1120);
    send(QEvent::MouseButtonPress, 1200);
    send(QEvent::MouseButtonRelease, 1220);
    QCOMPARE(f.calls, (QStringList{u"selectAll"_s, u"selectAll"_s}));
    // Long after that, a click is a single click again.
    send(QEvent::MouseButtonPress, 9000);
    send(QEvent::MouseButtonRelease, 9020);
    QCOMPARE(f.calls.last(), u"select"_s);
}

void ShelfItemViewMouseTest::other_buttons_do_nothing()
{
    Fixture f;
    f.make();
    QTest::mouseClick(f.tile.get(), Qt::RightButton, {}, QPoint(40, 40));
    QTest::mouseDClick(f.tile.get(), Qt::MiddleButton, {}, QPoint(40, 40));
    QVERIFY(f.calls.isEmpty());
}

void ShelfItemViewMouseTest::the_remove_button_answers_while_it_is_invisible()
{
    Fixture f;
    const ShelfItemView &tile = f.make();
    QCOMPARE(tile.removeBtn->alpha(), 0.0);
    for (const QPoint corner : {QPoint(68, 2), QPoint(85, 2), QPoint(68, 19), QPoint(85, 19)})
        QCOMPARE(tile.childAt(corner), static_cast<QWidget *>(tile.removeBtn));
    QTest::mouseClick(tile.removeBtn, Qt::LeftButton);
    QCOMPARE(f.calls, QStringList{u"remove"_s});
}

void ShelfItemViewMouseTest::clicks_on_image_and_name_are_the_tiles()
{
    Fixture f;
    const ShelfItemView &tile = f.make();
    QCOMPARE(f.parent.childAt(tile.geometry().topLeft() + QPoint(40, 40)), static_cast<const QWidget *>(&tile));
    QCOMPARE(f.parent.childAt(tile.geometry().topLeft() + QPoint(40, 95)), static_cast<const QWidget *>(&tile));
    // The lowest points of the name are outside the tile, and so are clicks on them.
    QVERIFY(!f.parent.childAt(tile.geometry().topLeft() + QPoint(40, 104)));
}

void ShelfItemViewMouseTest::the_tile_takes_no_drops()
{
    Fixture f;
    const ShelfItemView &tile = f.make();
    QVERIFY(!tile.acceptDrops());
    QVERIFY(!tile.imageView->acceptDrops());
    QVERIFY(!tile.nameLabel->acceptDrops());
}

void ShelfItemViewMouseTest::the_drag_mode_decides_the_only_operation_data()
{
    QTest::addColumn<QVariant>("mode");
    QTest::addColumn<int>("operation");
    QTest::newRow("absent") << QVariant() << static_cast<int>(DragOperation::Copy);
    QTest::newRow("copy") << QVariant(0.0) << static_cast<int>(DragOperation::Copy);
    QTest::newRow("move") << QVariant(1.0) << static_cast<int>(DragOperation::Move);
    QTest::newRow("link") << QVariant(2.0) << static_cast<int>(DragOperation::Link);
    QTest::newRow("out of range") << QVariant(7.0) << static_cast<int>(DragOperation::Copy);
    QTest::newRow("negative") << QVariant(-1.0) << static_cast<int>(DragOperation::Copy);
}

void ShelfItemViewMouseTest::the_drag_mode_decides_the_only_operation()
{
    QFETCH(QVariant, mode);
    QFETCH(int, operation);
    Fixture f;
    if (mode.isValid())
        f.set(Settings::dragMode.key, mode);
    f.make();
    f.completeThumbnail(picture());
    f.drag();
    QCOMPARE(f.virtualPlatform.dragSessions.sessions.size(), 1);
    QCOMPARE(static_cast<int>(f.virtualPlatform.dragSessions.sessions.first().offered), operation);
}

void ShelfItemViewMouseTest::a_drag_carries_the_file_with_its_picture()
{
    Fixture f;
    f.make();
    f.completeThumbnail(picture());
    f.drag();
    const auto &session = f.virtualPlatform.dragSessions.sessions.first();
    QCOMPARE(session.source.data(), static_cast<QWidget *>(f.tile.get()));
    QCOMPARE(session.items.size(), 1);
    QCOMPARE(session.items.first().fileURL, f.url);
    // The frame is at the bottom left of the tile, which is 102 high.
    QCOMPARE(session.items.first().frame, QRectF(0, 30, 72, 72));
    QVERIFY(!session.items.first().contents.isNull());
    // The item size when the drag begins counts, not the one when the tile was made.
    f.set(Settings::shelfItemSize.key, 100.0);
    f.drag();
    QCOMPARE(f.virtualPlatform.dragSessions.sessions.last().items.first().frame, QRectF(0, 2, 100, 100));
    // Without a thumbnail the drag shows the icon, at the item size.
    Fixture icon;
    icon.make();
    icon.completeThumbnail(std::nullopt);
    icon.drag();
    QVERIFY(!icon.virtualPlatform.dragSessions.sessions.first().items.first().contents.isNull());
}

void ShelfItemViewMouseTest::a_drag_asks_for_companions_after_it_has_announced_itself()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    QList<DraggingItem> items = {DraggingItem{file(u"b"_s), QRectF(0, 0, 72, 72), QPixmap(2, 2)},
                                 DraggingItem{f.url, QRectF(0, 0, 72, 72), QPixmap(2, 2)}};
    tile.getDragItems = [&]() -> std::optional<QList<DraggingItem>> {
        f.calls.append(u"getDragItems"_s);
        return items;
    };
    // A tile without an image also drags the selection.
    f.drag();
    QCOMPARE(f.calls, (QStringList{u"select"_s, u"dragStarted"_s, u"getDragItems"_s}));
    const auto &session = f.virtualPlatform.dragSessions.sessions.first();
    QCOMPARE(session.items.size(), 2);
    QCOMPARE(session.items.first().fileURL, items.first().fileURL);
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QCOMPARE(f.calls.last(), u"multiDragOut"_s);
}

void ShelfItemViewMouseTest::an_empty_answer_drags_the_file_alone()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    tile.getDragItems = [] { return std::optional<QList<DraggingItem>>(QList<DraggingItem>()); };
    f.completeThumbnail(picture());
    f.drag();
    QCOMPARE(f.virtualPlatform.dragSessions.sessions.first().items.first().fileURL, f.url);
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QCOMPARE(f.calls.last(), u"dragOut"_s);
}

void ShelfItemViewMouseTest::without_an_image_no_drag_begins_but_it_was_announced()
{
    Fixture f;
    f.make();
    f.drag();
    QCOMPARE(f.virtualPlatform.dragSessions.begun, 0);
    QCOMPARE(f.calls.last(), u"dragStarted"_s);
}

void ShelfItemViewMouseTest::a_small_movement_is_no_drag()
{
    Fixture f;
    f.make().isSelected = true;
    f.completeThumbnail(picture());
    f.press();
    f.move(QPointF(42, 41));
    f.release();
    QCOMPARE(f.virtualPlatform.dragSessions.begun, 0);
    QCOMPARE(f.calls, QStringList{u"select"_s});
    // Without a press, a motion does not drag.
    f.move(QPointF(90, 90));
    QCOMPARE(f.virtualPlatform.dragSessions.begun, 0);
}

void ShelfItemViewMouseTest::the_end_of_a_drag_is_reported_when_it_did_something_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QVariant>("removes");
    QTest::addColumn<bool>("reported");
    for (const auto operation : {DragOperation::Copy, DragOperation::Move, DragOperation::Link}) {
        QTest::addRow("operation %d", static_cast<int>(operation)) << static_cast<int>(operation) << QVariant() << true;
        QTest::addRow("operation %d, items stay", static_cast<int>(operation))
            << static_cast<int>(operation) << QVariant(false) << false;
    }
    QTest::newRow("cancelled") << static_cast<int>(DragOperation::None) << QVariant() << false;
}

void ShelfItemViewMouseTest::the_end_of_a_drag_is_reported_when_it_did_something()
{
    QFETCH(int, operation);
    QFETCH(QVariant, removes);
    QFETCH(bool, reported);
    for (const bool multiple : {false, true}) {
        Fixture f;
        if (removes.isValid())
            f.set(Settings::removeItemsWhenDraggedOut.key, removes);
        ShelfItemView &tile = f.make();
        f.completeThumbnail(picture());
        if (multiple) {
            tile.getDragItems = [&f] {
                return std::optional<QList<DraggingItem>>({DraggingItem{f.url, QRectF(0, 0, 72, 72), QPixmap(2, 2)}});
            };
        }
        f.drag();
        f.calls.clear();
        f.virtualPlatform.dragSessions.end(static_cast<DragOperation>(operation));
        const QString report = multiple ? u"multiDragOut"_s : u"dragOut"_s;
        QCOMPARE(f.calls, reported ? QStringList{report} : QStringList());
    }
}

void ShelfItemViewMouseTest::without_callbacks_nothing_happens()
{
    Fixture f;
    f.tile = std::make_unique<ShelfItemView>(f.url, f.virtualPlatform.platform, f.settings, nullptr);
    f.tile->resize(88, 102);
    QCOMPARE(f.tile->nameLabel->parentWidget(), static_cast<QWidget *>(f.tile.get()));
    f.completeThumbnail(picture());
    f.drag();
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QTest::mouseDClick(f.tile.get(), Qt::LeftButton, {}, QPoint(40, 40));
    f.tile->isSelected = true;
    f.press();
    f.release();
    QTest::mouseClick(f.tile->removeBtn, Qt::LeftButton);
    f.drag();
    f.tile.reset();
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
}

void ShelfItemViewMouseTest::a_drag_that_ends_after_its_tile_has_gone_is_reported()
{
    for (const bool multiple : {false, true}) {
        Fixture f;
        ShelfItemView &tile = f.make();
        f.completeThumbnail(picture());
        if (multiple) {
            tile.getDragItems = [&f] {
                return std::optional<QList<DraggingItem>>({DraggingItem{f.url, QRectF(0, 0, 72, 72), QPixmap(2, 2)}});
            };
        }
        f.drag();
        f.calls.clear();
        f.tile.reset();
        f.virtualPlatform.dragSessions.end(DragOperation::Copy);
        QCOMPARE(f.calls, QStringList{multiple ? u"multiDragOut"_s : u"dragOut"_s});
    }
}

void ShelfItemViewMouseTest::each_drag_of_a_tile_has_its_own_report()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    f.completeThumbnail(picture());
    const auto dragAs = [&](const QString &name) {
        tile.onDragOut = [&f, name] { f.calls.append(name); };
        f.drag();
    };
    dragAs(u"first"_s);
    dragAs(u"second"_s);
    f.calls.clear();
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QCOMPARE(f.calls, (QStringList{u"first"_s, u"second"_s}));
}

void ShelfItemViewMouseTest::a_selected_tile_is_selected_also_by_a_release_beside_it()
{
    Fixture f;
    f.make();
    f.tile->isSelected = true;
    f.press();
    QVERIFY(f.calls.isEmpty());
    const QPointF outside(-30, 140);
    QMouseEvent release(QEvent::MouseButtonRelease, outside, f.tile->mapToGlobal(outside), Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(f.tile.get(), &release);
    QCOMPARE(f.calls, QStringList{u"select"_s});
}

void ShelfItemViewMouseTest::whether_a_dragged_file_goes_is_decided_at_the_end_of_its_drag()
{
    for (const bool atEnd : {false, true}) {
        Fixture f;
        f.set(Settings::removeItemsWhenDraggedOut.key, !atEnd);
        f.make();
        f.completeThumbnail(picture());
        f.drag();
        f.calls.clear();
        f.set(Settings::removeItemsWhenDraggedOut.key, atEnd);
        f.virtualPlatform.dragSessions.end(DragOperation::Copy);
        QCOMPARE(f.calls, atEnd ? QStringList{u"dragOut"_s} : QStringList());
    }
}

PARKLET_TEST(ShelfItemViewMouseTest)
#include "ShelfItemViewMouseTest.moc"
