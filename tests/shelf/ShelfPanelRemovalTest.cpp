// SPDX-License-Identifier: MIT
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfViews.h"
#include "shelf/TileViews.h"
#include "tests/shelf/ItemsFixture.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

using namespace Qt::StringLiterals;

// How files leave the panel, one by one or all.
class ShelfPanelRemovalTest : public QObject {
    Q_OBJECT

private slots:
    // Removal
    void a_removed_item_goes_at_once_and_its_tile_after_0_18_seconds();
    void the_removal_fade_ignores_disabled_animations();
    void removing_what_is_not_there_does_nothing();
    void removing_twice_removes_once();
    void a_file_that_comes_back_while_its_tile_fades_has_a_tile_of_its_own();
    void a_removed_tile_leaves_the_selection_and_the_tap_stays();
    void a_tile_selected_while_it_fades_leaves_the_selection_when_it_goes();
    void the_last_item_brings_the_label_back_after_its_fade();
    void a_single_item_is_cleared_at_once();
    void an_empty_shelf_is_cleared_without_a_question();
    void several_items_are_cleared_after_a_question();
    void cancelling_keeps_everything_and_stores_nothing();
    void the_question_can_be_switched_off();
    void clearing_shows_the_label_hides_the_button_and_then_the_shelf();
    void a_removal_ends_after_its_fade_also_when_all_was_cleared_meanwhile();
    void cleared_tiles_take_their_names_along();
    void an_alert_that_is_closed_clears_nothing();
};

namespace {

using Fixture = ItemsFixture;

} // namespace

void ShelfPanelRemovalTest::a_removed_item_goes_at_once_and_its_tile_after_0_18_seconds()
{
    Fixture f;
    f.add(3);
    const int height = f.panel->height();
    f.changes = 0;
    f.tile(1)->onRemove();
    QCOMPARE(f.panel->items, (QList<QUrl>{file(0), file(2)}));
    QCOMPARE(f.tileCount(), 3);
    QCOMPARE(f.panel->height(), height);
    f.advance(0.17);
    QVERIFY(f.tile(1)->alpha() > 0 && f.tile(1)->alpha() < 0.2);
    QCOMPARE(f.changes, 0);
    f.advance(0.01);
    QCOMPARE(f.tileCount(), 2);
    QCOMPARE(f.panel->height(), height - 108);
    QCOMPARE(f.changes, 1);
}

void ShelfPanelRemovalTest::the_removal_fade_ignores_disabled_animations()
{
    Fixture f;
    f.set(Settings::disableAnimations.key, true);
    f.add(2);
    f.panel->removeItem(file(0));
    f.advance(0.17);
    QCOMPARE(f.tileCount(), 2);
    f.advance(0.01);
    QCOMPARE(f.tileCount(), 1);
}

void ShelfPanelRemovalTest::removing_what_is_not_there_does_nothing()
{
    Fixture f;
    f.add(1);
    f.changes = 0;
    f.panel->removeItem(file(7));
    f.advance(1);
    QCOMPARE(f.panel->items.size(), 1);
    QCOMPARE(f.changes, 0);
}

void ShelfPanelRemovalTest::removing_twice_removes_once()
{
    Fixture f;
    f.add(2);
    f.changes = 0;
    f.panel->removeItem(file(0));
    f.advance(0.1);
    f.panel->removeItem(file(0));
    f.advance(0.08);
    QCOMPARE(f.tileCount(), 1);
    QCOMPARE(f.changes, 1);
    f.advance(1);
    QCOMPARE(f.changes, 1);
}

void ShelfPanelRemovalTest::a_file_that_comes_back_while_its_tile_fades_has_a_tile_of_its_own()
{
    Fixture f;
    f.add(1);
    f.panel->removeItem(file(0));
    f.advance(0.1);
    f.panel->addItem(file(0));
    QCOMPARE(f.tileCount(), 2);
    f.advance(0.08);
    QCOMPARE(f.tileCount(), 1);
    QCOMPARE(f.tile(0)->alpha(), 1.0);
    QCOMPARE(f.panel->items.size(), 1);

    // If it is removed again before the first tile has faded out, it stays away.
    f.panel->removeItem(file(0));
    f.advance(0.1);
    f.panel->addItem(file(0));
    f.panel->removeItem(file(0));
    f.advance(1);
    QCOMPARE(f.tileCount(), 0);
    QVERIFY(f.panel->items.isEmpty());
}

void ShelfPanelRemovalTest::a_removed_tile_leaves_the_selection_and_the_tap_stays()
{
    Fixture f;
    f.add(2);
    f.tile(0)->onSelect();
    f.panel->removeItem(file(0));
    QVERIFY(f.panel->selectedViews.isEmpty());
    QVERIFY(f.virtualPlatform.keyTap.handler != nullptr);
    f.advance(1);
    QVERIFY(f.virtualPlatform.keyTap.handler != nullptr);
}

void ShelfPanelRemovalTest::a_tile_selected_while_it_fades_leaves_the_selection_when_it_goes()
{
    Fixture f;
    f.add(2);
    f.panel->removeItem(file(0));
    f.panel->selectAll();
    QCOMPARE(f.panel->selectedViews.size(), 2);
    f.advance(0.18);
    QCOMPARE(f.panel->selectedViews, QList<ShelfItemView *>{f.tile(0)});
}

void ShelfPanelRemovalTest::the_last_item_brings_the_label_back_after_its_fade()
{
    Fixture f;
    f.add(1);
    f.panel->show(Animated::Yes);
    f.advance(1);
    f.panel->removeItem(file(0));
    QVERIFY(f.panel->dropLabel->isHidden());
    f.advance(0.18);
    QVERIFY(!f.panel->dropLabel->isHidden());
    f.advance(1.5 + 0.17);
    QVERIFY(f.panel->isVisible());
    f.advance(0.01);
    QVERIFY(!f.panel->isVisible());
}

void ShelfPanelRemovalTest::a_single_item_is_cleared_at_once()
{
    Fixture f;
    f.add(1);
    f.panel->trashBtn->click();
    QVERIFY(f.virtualPlatform.alerts.shown.isEmpty());
    QVERIFY(f.panel->items.isEmpty());
    QCOMPARE(f.tileCount(), 0);
}

void ShelfPanelRemovalTest::an_empty_shelf_is_cleared_without_a_question()
{
    Fixture f;
    f.panel->show(Animated::Yes);
    f.advance(1);
    f.panel->trashBtn->click();
    QVERIFY(f.virtualPlatform.alerts.shown.isEmpty());
    QCOMPARE(f.changes, 1);
    f.advance(1.5 + 0.18);
    QVERIFY(!f.panel->isVisible());
}

void ShelfPanelRemovalTest::several_items_are_cleared_after_a_question()
{
    for (const int count : {2, 3}) {
        Fixture f;
        f.add(count);
        f.virtualPlatform.alerts.answers = {AlertAnswer{0, false}};
        f.panel->trashBtn->click();
        QCOMPARE(f.virtualPlatform.alerts.shown.size(), 1);
        const Alert &alert = f.virtualPlatform.alerts.shown.first();
        QCOMPARE(alert.messageText, u"Clear all files?"_s);
        QCOMPARE(alert.informativeText, u"This will remove all %1 files from the shelf."_s.arg(count));
        QCOMPARE(alert.buttons, (QStringList{u"Clear All"_s, u"Cancel"_s}));
        QCOMPARE(alert.checkboxTitle, u"Don't show this message again"_s);
        QVERIFY(alert.dark);
        QVERIFY(alert.activates);
        QVERIFY(f.panel->items.isEmpty());
        QVERIFY(!f.virtualPlatform.userDefaults.values.contains(Settings::skipClearAllConfirmation.key));
    }
}

void ShelfPanelRemovalTest::cancelling_keeps_everything_and_stores_nothing()
{
    Fixture f;
    f.add(3);
    f.panel->selectAll();
    f.virtualPlatform.alerts.answers = {AlertAnswer{1, true}};
    f.panel->clearAll();
    QCOMPARE(f.panel->items.size(), 3);
    QCOMPARE(f.panel->selectedViews.size(), 3);
    QVERIFY(!f.virtualPlatform.userDefaults.values.contains(Settings::skipClearAllConfirmation.key));
}

void ShelfPanelRemovalTest::the_question_can_be_switched_off()
{
    Fixture f;
    f.add(2);
    f.virtualPlatform.alerts.answers = {AlertAnswer{0, true}};
    f.panel->clearAll();
    QCOMPARE(f.virtualPlatform.userDefaults.values.value(u"skipClearAllConfirmation"_s), QVariant(true));
    f.add(5);
    f.panel->clearAll();
    QCOMPARE(f.virtualPlatform.alerts.shown.size(), 1);
    QVERIFY(f.panel->items.isEmpty());
}

void ShelfPanelRemovalTest::clearing_shows_the_label_hides_the_button_and_then_the_shelf()
{
    Fixture f;
    f.set(Settings::skipClearAllConfirmation.key, true);
    f.add(3);
    f.panel->show(Animated::Yes);
    f.advance(1);
    f.panel->selectAll();
    f.changes = 0;
    f.panel->clearAll();
    // The tiles are gone without a fade.
    QCOMPARE(f.tileCount(), 0);
    QVERIFY(f.panel->selectedViews.isEmpty());
    QVERIFY(!f.virtualPlatform.keyTap.handler);
    QVERIFY(!f.panel->dropLabel->isHidden());
    QVERIFY(f.panel->selectAllBtn->isHidden());
    QCOMPARE(f.panel->height(), 164);
    QCOMPARE(f.changes, 1);
    f.advance(1.49);
    QVERIFY(f.panel->isVisible());
    f.advance(0.01 + 0.18);
    QVERIFY(!f.panel->isVisible());
}

void ShelfPanelRemovalTest::a_removal_ends_after_its_fade_also_when_all_was_cleared_meanwhile()
{
    Fixture f;
    f.set(Settings::skipClearAllConfirmation.key, true);
    f.add(3);
    f.panel->show(Animated::Yes);
    f.advance(1);
    f.changes = 0;
    f.panel->removeItem(file(0));
    f.advance(0.1);
    f.panel->clearAll();
    QCOMPARE(f.changes, 1);
    QCOMPARE(f.tileCount(), 0);
    f.advance(0.07);
    QCOMPARE(f.changes, 1);
    f.advance(0.01);
    QCOMPARE(f.changes, 2);
    // This restarts the timer that hides the empty shelf.
    f.advance(1.49);
    QVERIFY(!f.panel->isHiding());
    f.advance(0.01);
    QVERIFY(f.panel->isHiding());
}

void ShelfPanelRemovalTest::cleared_tiles_take_their_names_along()
{
    Fixture f;
    f.add(2);
    f.panel->show(Animated::No);
    const QPointer<TileLabel> name = f.tile(0)->nameLabel;
    QVERIFY(name->isVisible());
    f.virtualPlatform.alerts.answers = {AlertAnswer{0, false}};
    f.panel->clearAll();
    // The tile is deleted later, and its name must not stay visible until then.
    QVERIFY(name && !name->isVisible());
}

void ShelfPanelRemovalTest::an_alert_that_is_closed_clears_nothing()
{
    Fixture f;
    f.add(2);
    f.virtualPlatform.alerts.answers = {AlertAnswer{-1, true}};
    f.panel->clearAll();
    QCOMPARE(f.panel->items.size(), 2);
}

PARKLET_TEST(ShelfPanelRemovalTest)
#include "ShelfPanelRemovalTest.moc"
