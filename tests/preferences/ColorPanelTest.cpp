// SPDX-License-Identifier: MIT
#include "preferences/ColorWell.h"

#include "preferences/BasePane.h"
#include "preferences/PreferencesWindowController.h"
#include "tests/preferences/Fixture.h"
#include "tests/preferences/WellFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

// The colour panel is a window of a fixed size, so its test needs a real desktop.
class ColorPanelTest : public QObject {
    Q_OBJECT

private slots:
    void a_colour_well_opens_one_panel_without_alpha_and_buttons();
    void the_colour_panel_opens_by_keyboard_with_the_shown_colour();
    void the_colour_panel_goes_with_its_window();
    void the_colour_panel_goes_with_its_well();
    void the_colour_panel_goes_with_its_pane();
    void closing_the_panel_keeps_the_last_colour();
    void a_panel_of_the_desktop_that_is_cancelled_gives_the_colour_back_data();
    void a_panel_of_the_desktop_that_is_cancelled_gives_the_colour_back();
    void a_window_that_goes_keeps_the_colour_of_a_panel_of_the_desktop();
    void the_well_of_the_pane_knows_the_panel_of_the_desktop();
    void minimising_the_window_keeps_the_panel();
};

namespace {

// Puts Qt's dialog into the state that it has while the desktop shows its own panel instead. Hiding the dialog would
// end that state.
class DesktopPanel : public QObject {
public:
    explicit DesktopPanel(QColorDialog &dialog)
        : QObject(&dialog)
    {
        dialog.setAttribute(Qt::WA_DontShowOnScreen);
        dialog.installEventFilter(this);
    }

    bool eventFilter(QObject *dialog, QEvent *event) override
    {
        if (event->type() == QEvent::Hide)
            static_cast<QWidget *>(dialog)->setAttribute(Qt::WA_DontShowOnScreen);
        return false;
    }
};

} // namespace

void ColorPanelTest::a_colour_well_opens_one_panel_without_alpha_and_buttons()
{
    WellFixture f;
    QVERIFY(!f.well.colorPanel());
    f.well.click();
    QColorDialog *panel = f.well.colorPanel();
    QVERIFY(panel && panel->isVisible());
    QVERIFY(!panel->isModal());
    QVERIFY(!panel->testOption(QColorDialog::ShowAlphaChannel));
    QVERIFY(panel->testOption(QColorDialog::NoButtons));
    // If the desktop has its own colour panel, Qt uses that one.
    QVERIFY(!panel->testOption(QColorDialog::DontUseNativeDialog));
    QCOMPARE(panel->windowTitle(), u"Tint colour"_s);
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
    f.well.colorPanel()->setCurrentColor(QColor(1, 2, 3));
    QCOMPARE(f.chosen.last(), QColor(1, 2, 3));
    QCOMPARE(f.well.color(), QColor(1, 2, 3));
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

void ColorPanelTest::a_panel_of_the_desktop_that_is_cancelled_gives_the_colour_back_data()
{
    QTest::addColumn<bool>("isOfTheDesktop");
    QTest::addColumn<bool>("takesBack");
    QTest::addColumn<bool>("isCancelled");
    QTest::addColumn<bool>("givesBack");
    QTest::newRow("cancelled") << true << true << true << true;
    QTest::newRow("confirmed") << true << true << false << false;
    QTest::newRow("without buttons") << true << false << true << false;
    QTest::newRow("Qt's") << false << true << true << false;
}

void ColorPanelTest::a_panel_of_the_desktop_that_is_cancelled_gives_the_colour_back()
{
    QFETCH(const bool, isOfTheDesktop);
    QFETCH(const bool, takesBack);
    QFETCH(const bool, isCancelled);
    QFETCH(const bool, givesBack);
    WellFixture f;
    f.well.panelTakesBack = takesBack;
    f.well.click();
    QColorDialog *panel = f.well.colorPanel();
    if (isOfTheDesktop)
        new DesktopPanel(*panel);
    panel->setCurrentColor(QColor(1, 2, 3));
    panel->setCurrentColor(QColor(4, 5, 6));
    if (isCancelled)
        panel->reject();
    else
        panel->accept();
    QCOMPARE(f.well.color(), givesBack ? QColor(20, 40, 60) : QColor(4, 5, 6));
    QCOMPARE(f.chosen.size(), givesBack ? 3 : 2);

    // If no colour was chosen in the panel, it restores none.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    f.chosen.clear();
    f.well.click();
    if (isOfTheDesktop)
        new DesktopPanel(*f.well.colorPanel());
    f.well.colorPanel()->reject();
    QVERIFY(f.chosen.isEmpty());
}

void ColorPanelTest::a_window_that_goes_keeps_the_colour_of_a_panel_of_the_desktop()
{
    WellFixture f;
    f.well.panelTakesBack = true;
    f.well.click();
    new DesktopPanel(*f.well.colorPanel());
    f.well.colorPanel()->setCurrentColor(QColor(1, 2, 3));
    f.window.close();
    QCOMPARE(f.well.color(), QColor(1, 2, 3));
    QCOMPARE(f.chosen, QList<QColor>{QColor(1, 2, 3)});
}

void ColorPanelTest::the_well_of_the_pane_knows_the_panel_of_the_desktop()
{
    Fixture f;
    PreferencesWindowController controller(f.virtualPlatform.platform, f.settings, f.notifications);
    for (const bool takesBack : {true, false}) {
        f.virtualPlatform.appearance.panelTakesBack = takesBack;
        controller.showPane(PrefPane::appearance);
        QCOMPARE(controller.pane()->findChild<ColorWell *>()->panelTakesBack, takesBack);
    }
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

PARKLET_TEST(ColorPanelTest)
#include "ColorPanelTest.moc"
