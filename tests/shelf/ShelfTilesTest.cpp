// SPDX-License-Identifier: MIT
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/DropViews.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfMetrics.h"
#include "shelf/ShelfPanel.h"
#include "shelf/ShelfStackView.h"
#include "shelf/ShelfViews.h"
#include "shelf/TileViews.h"
#include "tests/support/DragEvents.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QLabel>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;

// The panel and its tiles together: what the user can click where, and what other programs see of it.
class ShelfTilesTest : public QObject {
    Q_OBJECT

private slots:
    void a_drop_over_a_tile_lands_on_the_scroll_view();
    void a_click_beside_the_tiles_changes_nothing();
    void callbacks_that_outlive_their_tile_do_nothing();
    void select_all_can_be_called_by_its_name();
    void a_change_is_told_last_and_without_more_words();
    void an_item_without_a_tile_goes_without_a_word();
    void a_tile_added_while_names_are_hidden_has_no_room_for_one();
    void the_selection_is_dragged_at_todays_size();
    void each_dragged_file_has_its_own_picture();
    void the_look_under_the_pointer_follows_the_tiles_that_scroll();
};

namespace {

QUrl file(int number)
{
    return QUrl::fromLocalFile(u"/files/%1.png"_s.arg(number));
}

struct Fixture {
    explicit Fixture(int count = 0)
    {
        panel = std::make_unique<ShelfPanel>(virtualPlatform.platform, settings, notifications);
        for (int i = 0; i < count; ++i)
            panel->addItem(file(i));
        panel->show(Animated::No);
    }

    void showImages(const QList<QColor> &colors)
    {
        for (const QColor &color : colors) {
            QImage image(72, 72, QImage::Format_RGB32);
            image.fill(color);
            virtualPlatform.thumbnailGenerator.completeFirst(image);
        }
        virtualPlatform.mainQueue.runPending();
    }
    void set(const QString &key, const QVariant &value) { virtualPlatform.userDefaults.values.insert(key, value); }
    void advance(double seconds)
    {
        virtualPlatform.mainQueue.advance(seconds);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    ShelfItemView *tile(qsizetype index) const { return panel->stackView->arrangedSubviews().at(index); }

    VirtualPlatform virtualPlatform;
    AppSettings settings{virtualPlatform.userDefaults, virtualPlatform.colorArchive, virtualPlatform.appearance};
    NotificationCenter notifications;
    std::unique_ptr<ShelfPanel> panel;
};

} // namespace

void ShelfTilesTest::a_drop_over_a_tile_lands_on_the_scroll_view()
{
    Fixture f(1);
    for (const QPoint place : {QPoint(44, 40), QPoint(44, 95), QPoint(77, 11)}) {
        QWidget *target = f.panel->childAt(f.tile(0)->mapTo(f.panel.get(), place));
        QVERIFY(target && (target == f.tile(0) || f.tile(0)->isAncestorOf(target)));
        while (target && !target->acceptDrops())
            target = target->parentWidget();
        QCOMPARE(target, f.panel->scrollView->viewport());
    }
    QMimeData data;
    data.setUrls({file(7)});
    QVERIFY(sendDragEnter(*f.panel->scrollView->viewport(), data));
    QVERIFY(sendDrop(*f.panel->scrollView->viewport(), data));
    QCOMPARE(f.panel->items, (QList<QUrl>{file(0), file(7)}));
}

void ShelfTilesTest::a_click_beside_the_tiles_changes_nothing()
{
    Fixture f(2);
    f.tile(1)->onSelect();
    int changes = 0;
    f.notifications.observe(Notifications::shelfItemsChanged, this, [&changes](const QVariantMap &) { ++changes; });
    QWidget *const panel = f.panel.get();
    const QPoint left = f.tile(1)->mapTo(panel, QPoint(-6, 40));
    const QPoint between = f.tile(1)->mapTo(panel, QPoint(80, -2));
    const QPoint inHeader = f.panel->headerBar->mapTo(panel, QPoint(1, 1));
    for (const QPoint place : {left, between, inHeader}) {
        QWidget *target = panel->childAt(place);
        QVERIFY(target && !f.tile(0)->isAncestorOf(target) && !f.tile(1)->isAncestorOf(target) && target != f.tile(1));
        QTest::mouseClick(target, Qt::LeftButton, {}, target->mapFrom(panel, place));
        QTest::mouseDClick(target, Qt::LeftButton, {}, target->mapFrom(panel, place));
        QCOMPARE(f.panel->selectedViews, QList<ShelfItemView *>{f.tile(1)});
        QVERIFY(f.tile(1)->isSelected);
        QVERIFY(f.virtualPlatform.keyTap.handler != nullptr);
    }
    QCOMPARE(f.panel->items.size(), 2);
    QCOMPARE(changes, 0);
}

void ShelfTilesTest::callbacks_that_outlive_their_tile_do_nothing()
{
    Fixture f(2);
    f.showImages({Qt::red, Qt::green});
    f.panel->selectAll();
    const auto onSelect = f.tile(0)->onSelect;
    const auto getDragItems = f.tile(0)->getDragItems;
    QVERIFY(getDragItems().has_value());
    const QPointer<ShelfItemView> tile = f.tile(0);
    f.panel->removeItem(file(0));
    f.advance(1);
    QVERIFY(!tile);
    onSelect();
    QCOMPARE(f.panel->selectedViews, QList<ShelfItemView *>{f.tile(0)});
    QVERIFY(!getDragItems().has_value());
}

void ShelfTilesTest::select_all_can_be_called_by_its_name()
{
    Fixture f(2);
    QVERIFY(QMetaObject::invokeMethod(f.panel.get(), "selectAll"));
    QCOMPARE(f.panel->selectedViews.size(), 2);
}

void ShelfTilesTest::a_change_is_told_last_and_without_more_words()
{
    Fixture f(2);
    f.set(Settings::autoHideTimeout.key, 5.0);
    const int heightOfTwo = f.panel->height();
    qsizetype items = 0;
    qsizetype tiles = 0;
    qsizetype timers = 0;
    int height = 0;
    int told = 0;
    bool labelHidden = false;
    bool buttonHidden = false;
    f.notifications.observe(Notifications::shelfItemsChanged, this, [&](const QVariantMap &userInfo) {
        QVERIFY(userInfo.isEmpty());
        ++told;
        items = f.panel->items.size();
        tiles = f.panel->stackView->arrangedSubviews().size();
        height = f.panel->height();
        labelHidden = f.panel->dropLabel->isHidden();
        buttonHidden = f.panel->selectAllBtn->isHidden();
        timers = f.virtualPlatform.mainQueue.timerCount();
    });

    f.panel->addItem(file(2));
    QCOMPARE(told, 1);
    QCOMPARE(items, 3);
    QCOMPARE(tiles, 3);
    QCOMPARE(height, heightOfTwo + 108);
    QVERIFY(labelHidden && !buttonHidden);
    QCOMPARE(timers, 1);

    f.panel->removeItem(file(2));
    f.advance(0.18);
    QCOMPARE(told, 2);
    QCOMPARE(tiles, 2);
    QCOMPARE(height, heightOfTwo);

    f.set(Settings::autoHideTimeout.key, 0.0);
    f.set(Settings::skipClearAllConfirmation.key, true);
    f.advance(10);
    f.panel->clearAll();
    QCOMPARE(told, 3);
    QCOMPARE(items, 0);
    QCOMPARE(tiles, 0);
    QVERIFY(!labelHidden && buttonHidden);
    QCOMPARE(height, 164);
    // The one timer hides the empty shelf.
    QCOMPARE(timers, 1);
}

void ShelfTilesTest::an_item_without_a_tile_goes_without_a_word()
{
    Fixture f(1);
    f.panel->items.append(file(7));
    int changes = 0;
    f.notifications.observe(Notifications::shelfItemsChanged, this, [&changes](const QVariantMap &) { ++changes; });
    f.panel->removeItem(file(7));
    QCOMPARE(f.panel->items, QList<QUrl>{file(0)});
    f.advance(1);
    QCOMPARE(changes, 0);
    QCOMPARE(f.panel->stackView->arrangedSubviews().size(), 1);
}

void ShelfTilesTest::a_tile_added_while_names_are_hidden_has_no_room_for_one()
{
    Fixture f(1);
    QCOMPARE(f.tile(0)->size(), QSize(88, 102));
    f.set(Settings::fileNameDisplay.key, double(FileNameDisplay::Hidden));
    f.panel->addItem(file(1));
    QCOMPARE(f.tile(1)->size(), QSize(88, 88));
}

void ShelfTilesTest::the_selection_is_dragged_at_todays_size()
{
    Fixture f(2);
    f.showImages({Qt::red, Qt::green});
    f.panel->selectAll();
    f.set(Settings::shelfItemSize.key, 100.0);
    const auto dragged = f.tile(1)->getDragItems();
    QCOMPARE(dragged->size(), 2);
    for (const DraggingItem &item : *dragged)
        QCOMPARE(item.frame, QRectF(0, 2, 100, 100));
}

void ShelfTilesTest::each_dragged_file_has_its_own_picture()
{
    Fixture f(3);
    const QList<QColor> colors = {Qt::red, Qt::green, Qt::blue};
    f.showImages(colors);
    f.panel->selectAll();
    const auto dragged = f.tile(2)->getDragItems();
    QCOMPARE(dragged->size(), 3);
    for (qsizetype i = 0; i < 3; ++i) {
        QCOMPARE(dragged->at(i).fileURL, file(static_cast<int>(i)));
        QCOMPARE(dragged->at(i).contents.toImage().pixelColor(36, 36), colors.at(i));
    }
}

void ShelfTilesTest::the_look_under_the_pointer_follows_the_tiles_that_scroll()
{
    Fixture f(12);
    f.set(Settings::fileNameDisplay.key, 2);
    f.panel->applySettings();
    QScrollBar *const bar = f.panel->scrollView->verticalScrollBar();
    QVERIFY(bar->maximum() > 216);
    const QPoint place = f.tile(1)->mapToGlobal(QPoint(40, 40));
    f.virtualPlatform.screens.pointerPosition = place;
    QEnterEvent enter(QPointF(40, 40), QPointF(40, 40), place);
    QApplication::sendEvent(f.tile(1), &enter);
    f.advance(0.15);
    QCOMPARE(f.tile(1)->removeBtn->alpha(), 1.0);
    // As long as it is still under the pointer it keeps its look.
    bar->setValue(20);
    QCOMPARE(f.tile(1)->removeBtn->alpha(), 1.0);
    QVERIFY(!f.tile(1)->nameLabel->isHidden());

    bar->setValue(108);
    QVERIFY(f.tile(2)->rect().contains(f.tile(2)->mapFromGlobal(place)));
    QCOMPARE(f.tile(1)->removeBtn->alpha(), 0.0);
    QCOMPARE(f.tile(1)->hoverBackgroundAlpha(), 0.0);
    QVERIFY(f.tile(1)->nameLabel->isHidden());
    f.advance(0.15);
    QCOMPARE(f.tile(2)->removeBtn->alpha(), 1.0);
    QCOMPARE(f.tile(2)->hoverBackgroundAlpha(), ShelfMetrics::kHoverAlpha);
    QVERIFY(!f.tile(2)->nameLabel->isHidden());
    // A tile that scrolls out of the list is not under the pointer that rests above the list.
    f.virtualPlatform.screens.pointerPosition = f.panel->headerBar->mapToGlobal(QPoint(40, 4));
    bar->setValue(200);
    f.advance(0.15);
    for (int i = 0; i < 12; ++i)
        QCOMPARE(f.tile(i)->hoverBackgroundAlpha(), 0.0);
}

PARKLET_TEST(ShelfTilesTest)
#include "ShelfTilesTest.moc"
