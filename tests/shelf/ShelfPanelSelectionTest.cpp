// SPDX-License-Identifier: MIT
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfViews.h"
#include "tests/shelf/ItemsFixture.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QTest>

// Which tiles are selected.
class ShelfPanelSelectionTest : public QObject {
    Q_OBJECT

private slots:
    // Selection
    void a_click_selects_one_tile_alone();
    void select_all_takes_the_tiles_in_their_order();
    void the_select_all_button_takes_turns();
    void select_all_of_an_empty_shelf_installs_no_tap();
};

namespace {

using Fixture = ItemsFixture;

} // namespace

void ShelfPanelSelectionTest::a_click_selects_one_tile_alone()
{
    Fixture f;
    f.add(3);
    f.panel->selectAll();
    f.tile(1)->onSelect();
    QCOMPARE(f.panel->selectedViews, QList<ShelfItemView *>{f.tile(1)});
    QVERIFY(f.tile(1)->isSelected);
    QCOMPARE(f.tile(1)->borderWidth(), 2.0);
    QVERIFY(!f.tile(0)->isSelected);
    QCOMPARE(f.tile(0)->borderWidth(), 0.0);
    QVERIFY(!f.tile(2)->isSelected);
    QVERIFY(f.virtualPlatform.keyTap.handler != nullptr);
}

void ShelfPanelSelectionTest::select_all_takes_the_tiles_in_their_order()
{
    Fixture f;
    f.add(3);
    f.tile(2)->onSelect();
    f.tile(0)->onSelectAll();
    QCOMPARE(f.panel->selectedViews, f.panel->stackView->arrangedSubviews());
    for (const ShelfItemView *tile : f.panel->selectedViews) {
        QVERIFY(tile->isSelected);
        QCOMPARE(tile->borderWidth(), 2.0);
    }
}

void ShelfPanelSelectionTest::the_select_all_button_takes_turns()
{
    Fixture f;
    f.add(4);
    f.panel->selectAllBtn->click();
    QCOMPARE(f.panel->selectedViews.size(), 4);
    f.panel->selectAllBtn->click();
    QVERIFY(f.panel->selectedViews.isEmpty());
    QVERIFY(!f.tile(0)->isSelected);
    QVERIFY(!f.virtualPlatform.keyTap.handler);
    f.panel->selectAll();
    f.panel->removeItem(file(0));
    f.panel->addItem(file(7));
    f.advance(0.18);
    QCOMPARE(f.panel->selectedViews.size(), 3);
    f.panel->selectAllBtn->click();
    QCOMPARE(f.panel->selectedViews.size(), 4);
}

void ShelfPanelSelectionTest::select_all_of_an_empty_shelf_installs_no_tap()
{
    Fixture f;
    f.panel->selectAll();
    f.panel->selectAllAction();
    QCOMPARE(f.virtualPlatform.keyTap.installs, 0);
}

PARKLET_TEST(ShelfPanelSelectionTest)
#include "ShelfPanelSelectionTest.moc"
