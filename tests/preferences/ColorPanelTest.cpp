// SPDX-License-Identifier: MIT
#include "preferences/ColorWell.h"

#include "preferences/BasePane.h"
#include "preferences/PreferencesWindowController.h"
#include "tests/preferences/Fixture.h"
#include "tests/preferences/WellFixture.h"

#include <QTest>

// The colour panel is a window of a fixed size, which needs a real desktop.
class ColorPanelTest : public QObject {
    Q_OBJECT

private slots:
    void a_colour_well_opens_one_panel_with_alpha_and_without_buttons();
    void the_colour_panel_opens_by_keyboard_with_the_shown_colour();
    void the_colour_panel_goes_with_its_window();
    void the_colour_panel_goes_with_its_well();
    void the_colour_panel_goes_with_its_pane();
    void closing_the_panel_keeps_the_last_colour();
    void minimising_the_window_keeps_the_panel();
};

void ColorPanelTest::a_colour_well_opens_one_panel_with_alpha_and_without_buttons()
{
    WellFixture f;
    QVERIFY(!f.well.colorPanel());
    f.well.click();
    QColorDialog *panel = f.well.colorPanel();
    QVERIFY(panel && panel->isVisible());
    QVERIFY(!panel->isModal());
    QVERIFY(panel->testOption(QColorDialog::ShowAlphaChannel));
    QVERIFY(panel->testOption(QColorDialog::NoButtons));
    QCOMPARE(panel->windowTitle(), QStringLiteral("Tint colour"));
    f.well.click();
    QCOMPARE(f.well.colorPanel(), panel);
    QVERIFY(f.chosen.isEmpty());
}

void ColorPanelTest::the_colour_panel_opens_by_keyboard_with_the_shown_colour()
{
    WellFixture f;
    QTest::keyClick(&f.well, Qt::Key_Space);
    QVERIFY(f.well.colorPanel());
    QCOMPARE(f.well.colorPanel()->currentColor(), QColor(20, 40, 60));
    f.well.colorPanel()->setCurrentColor(QColor(1, 2, 3, 4));
    QCOMPARE(f.chosen.last(), QColor(1, 2, 3, 4));
    QCOMPARE(f.well.color(), QColor(1, 2, 3, 4));
}

void ColorPanelTest::the_colour_panel_goes_with_its_window()
{
    WellFixture f;
    f.well.click();
    f.window.close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!f.well.colorPanel());
    f.window.show();
    f.well.click();
    QVERIFY(f.well.colorPanel()->isVisible());
}

void ColorPanelTest::the_colour_panel_goes_with_its_well()
{
    auto fixture = std::make_unique<WellFixture>();
    fixture->well.click();
    const QPointer<QColorDialog> panel = fixture->well.colorPanel();
    fixture.reset();
    QVERIFY(!panel);
}

void ColorPanelTest::the_colour_panel_goes_with_its_pane()
{
    Fixture f;
    PreferencesWindowController controller(f.virtualPlatform.platform, f.settings, f.notifications);
    controller.showWindow();
    controller.showPane(PrefPane::appearance);
    auto *well = controller.pane()->findChild<ColorWell *>();
    well->click();
    const QPointer<QColorDialog> panel = well->colorPanel();
    QVERIFY(panel && panel->isVisible());
    panel->setCurrentColor(QColor(1, 2, 3));
    QCOMPARE(f.settings.tintColor(), QColor(1, 2, 3));
    controller.showPane(PrefPane::general);
    QVERIFY(!panel || !panel->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!panel);
    QVERIFY(controller.isWindowVisible());
}

void ColorPanelTest::closing_the_panel_keeps_the_last_colour()
{
    WellFixture f;
    f.well.click();
    f.well.colorPanel()->setCurrentColor(QColor(1, 2, 3));
    f.well.colorPanel()->setCurrentColor(QColor(4, 5, 6));
    QVERIFY(QTest::qWaitForWindowExposed(f.well.colorPanel()));
    QTest::keyClick(f.well.colorPanel(), Qt::Key_Escape);
    QTRY_VERIFY(!f.well.colorPanel());
    QCOMPARE(f.well.color(), QColor(4, 5, 6));
    QCOMPARE(f.chosen, QList<QColor>({QColor(1, 2, 3), QColor(4, 5, 6)}));
}

void ColorPanelTest::minimising_the_window_keeps_the_panel()
{
    WellFixture f;
    QVERIFY(QTest::qWaitForWindowExposed(&f.window));
    f.well.click();
    f.window.showMinimized();
    QTRY_VERIFY(f.window.isMinimized());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(f.well.colorPanel());
}

QTEST_MAIN(ColorPanelTest)
#include "ColorPanelTest.moc"
