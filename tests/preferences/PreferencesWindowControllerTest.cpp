// SPDX-License-Identifier: MIT
#include "preferences/PreferencesWindowController.h"

#include "preferences/AboutPane.h"
#include "preferences/AppExclusionListView.h"
#include "preferences/AppearancePane.h"
#include "preferences/BehaviorPane.h"
#include "preferences/DoubleSlider.h"
#include "preferences/GeneralPane.h"
#include "preferences/SidebarViewController.h"
#include "preferences/WelcomePane.h"
#include "tests/preferences/Fixture.h"
#include "tests/support/InChild.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QShortcut>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

class PreferencesWindowControllerTest : public QObject {
    Q_OBJECT

private slots:
    void the_window_is_700_by_500_points_in_the_middle_of_the_screen();
    void the_window_goes_to_the_middle_of_what_docks_leave_of_the_screen();
    void the_frame_that_the_desktop_adds_is_centred_with_the_window();
    void without_a_screen_the_window_is_made_all_the_same();
    void the_window_opens_on_the_welcome_pane();
    void opening_brings_the_one_window_to_the_front_with_its_last_pane();
    void a_minimised_window_comes_back_when_opened();
    void a_maximised_window_comes_back_from_its_icon_as_that();
    void opening_again_leaves_the_focus_with_a_panel_of_the_window();
    void a_change_of_the_settings_leaves_the_focus_with_a_panel_of_the_desktop();
    void closing_only_hides_the_window();
    void escape_and_command_w_close_the_window();
    void the_window_never_gets_smaller_than_600_by_420();
    void the_window_can_be_made_larger();
    void the_sidebar_is_160_to_200_points_wide_and_cannot_be_collapsed();
    void each_pane_has_its_class();
    void every_switch_makes_a_new_pane_and_ends_the_old_one();
    void only_the_pane_is_replaced();
    void a_window_without_its_detail_area_stops_the_program();
    void showing_a_pane_reads_the_sidebar_again();
    void showing_a_pane_selects_its_row_without_showing_it_twice();
    void a_click_in_the_sidebar_shows_the_pane();
    void a_row_that_is_taken_out_of_the_selection_keeps_its_pane();
    void the_arrow_keys_in_the_sidebar_show_one_pane_after_the_other();
    void the_appearance_pane_is_announced_when_it_comes_and_when_it_goes();
    void the_pane_and_its_row_are_there_when_it_is_announced();
    void panes_that_are_not_the_appearance_pane_announce_nothing();
    void closing_on_the_appearance_pane_announces_nothing_until_the_next_switch();
    void a_pane_reads_the_settings_when_it_is_shown();
    void the_appearance_pane_reads_the_settings_at_every_visit();
    void a_pane_that_goes_while_the_open_panel_is_up_adds_nothing();
    void the_users_font_size_leaves_the_controls_as_they_are();
    void a_sidebar_that_outlives_the_controller_calls_nobody();
};

namespace {

struct WindowFixture : Fixture {
    PreferencesWindowController controller{virtualPlatform.platform, settings, notifications};

    QListView &list() { return *controller.sidebar()->tableView; }
    QSplitter &splitter() { return *controller.window()->findChild<QSplitter *>(); }
    int selectedRow() { return list().selectionModel()->selectedRows().value(0).row(); }

    // The announcements of the Appearance pane so far. Any other notification appears as "?".
    QString announcements() const
    {
        QString text;
        for (const Posted &post : posts) {
            const QVariant active = post.userInfo.value(u"active"_s);
            if (post.name != Notifications::appearancePaneActive || post.userInfo.size() != 1 ||
                active.typeId() != QMetaType::Bool)
                text += QLatin1Char('?');
            else
                text += QLatin1Char(active.toBool() ? '+' : '-');
        }
        return text;
    }
};

void dragDivider(QSplitter &splitter, int distance)
{
    QWidget *divider = splitter.handle(1);
    const QPointF start(0, 50);
    const QPointF end(distance, 50);
    QTest::mousePress(divider, Qt::LeftButton, {}, start.toPoint());
    QMouseEvent move(QEvent::MouseMove, end, divider->mapToGlobal(end), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(divider, &move);
    QTest::mouseRelease(divider, Qt::LeftButton, {}, end.toPoint());
}

void runDeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

void PreferencesWindowControllerTest::the_window_is_700_by_500_points_in_the_middle_of_the_screen()
{
    WindowFixture f;
    QWidget *window = f.controller.window();
    QCOMPARE(window->geometry(), QRect(290, 150, 700, 500));
    QCOMPARE(window->windowTitle(), u"Parklet Preferences"_s);
    QCOMPARE(window->windowRole(), u"preferences"_s);
    QVERIFY(!f.controller.isWindowVisible());
    const Qt::WindowFlags flags = window->windowFlags();
    QCOMPARE(flags & Qt::WindowType_Mask, Qt::WindowFlags(Qt::Window));
    for (const Qt::WindowType hint :
         {Qt::WindowTitleHint, Qt::WindowCloseButtonHint, Qt::WindowMinimizeButtonHint, Qt::WindowMaximizeButtonHint})
        QVERIFY(flags.testFlag(hint));
}

void PreferencesWindowControllerTest::the_window_goes_to_the_middle_of_what_docks_leave_of_the_screen()
{
    Fixture f;
    f.virtualPlatform.screens.screens = {Screen{QRectF(100, 0, 1900, 1000), QRectF(100, 40, 1800, 900), 1.0}};
    PreferencesWindowController controller{f.virtualPlatform.platform, f.settings, f.notifications};
    QCOMPARE(controller.window()->geometry(), QRect(650, 240, 700, 500));
}

void PreferencesWindowControllerTest::the_frame_that_the_desktop_adds_is_centred_with_the_window()
{
    WindowFixture f;
    QWidget *window = f.controller.window();
    f.controller.showWindow();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    const QMargins margins = window->windowHandle()->frameMargins();
    QVERIFY(!margins.isNull());
    QCOMPARE(window->size(), QSize(700, 500));
    QCOMPARE(window->pos(), QPoint(640, 400) - QPoint(350 + margins.left(), 250 + margins.top()));
    // Where the user puts it, it stays.
    window->move(10, 20);
    window->hide();
    f.controller.showWindow();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    QCOMPARE(window->pos(), QPoint(10, 20));
}

void PreferencesWindowControllerTest::without_a_screen_the_window_is_made_all_the_same()
{
    Fixture f;
    f.virtualPlatform.screens.screens.clear();
    PreferencesWindowController controller{f.virtualPlatform.platform, f.settings, f.notifications};
    QCOMPARE(controller.window()->size(), QSize(700, 500));
}

void PreferencesWindowControllerTest::the_window_opens_on_the_welcome_pane()
{
    WindowFixture f;
    QVERIFY(qobject_cast<WelcomePane *>(f.controller.pane()));
    QCOMPARE(f.selectedRow(), 0);
    QVERIFY(f.posts.isEmpty());
}

void PreferencesWindowControllerTest::opening_brings_the_one_window_to_the_front_with_its_last_pane()
{
    WindowFixture f;
    QWidget *window = f.controller.window();
    f.controller.showWindow();
    QVERIFY(f.controller.isWindowVisible());
    f.controller.showPane(PrefPane::about);
    BasePane *pane = f.controller.pane();
    f.controller.showWindow();
    QCOMPARE(f.controller.window(), window);
    QCOMPARE(f.controller.pane(), pane);
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.size(), 2);
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.last().data(), window);
    QCOMPARE(QGuiApplication::topLevelWindows().size(), 1);
}

void PreferencesWindowControllerTest::a_minimised_window_comes_back_when_opened()
{
    WindowFixture f;
    f.controller.showWindow();
    f.controller.window()->showMinimized();
    QVERIFY(!f.controller.isWindowVisible());
    f.controller.showWindow();
    QVERIFY(!f.controller.window()->isMinimized());
    QVERIFY(f.controller.isWindowVisible());
}

void PreferencesWindowControllerTest::a_maximised_window_comes_back_from_its_icon_as_that()
{
    WindowFixture f;
    f.controller.showWindow();
    f.controller.window()->showMaximized();
    f.controller.window()->showMinimized();
    QVERIFY(!f.controller.isWindowVisible());
    f.controller.showWindow();
    QVERIFY(f.controller.isWindowVisible());
    QVERIFY(f.controller.window()->isMaximized());
}

void PreferencesWindowControllerTest::opening_again_leaves_the_focus_with_a_panel_of_the_window()
{
    // After a change in the colour panel, the application brings the preferences forward.
    WindowFixture f;
    f.controller.showWindow();
    QWidget panel(f.controller.pane(), Qt::Dialog);
    panel.show();
    panel.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    f.controller.showWindow();
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.last().data(), &panel);

    QWidget stranger;
    stranger.show();
    stranger.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&stranger));
    f.controller.showWindow();
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.last().data(), f.controller.window());
}

void PreferencesWindowControllerTest::a_change_of_the_settings_leaves_the_focus_with_a_panel_of_the_desktop()
{
    WindowFixture f;
    const auto &activated = f.virtualPlatform.activationPolicy.activated;
    f.controller.showWindow();
    // Qt then has a hidden dialog of its own, and no widget has the focus.
    QDialog panel(f.controller.pane());
    panel.setAttribute(Qt::WA_DontShowOnScreen);
    panel.show();
    QWindow shown;
    shown.show();
    shown.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&shown));
    QVERIFY(!QApplication::activeWindow());
    f.controller.showWindowAgain();
    QCOMPARE(activated.size(), 1);
    QVERIFY(f.controller.isWindowVisible());

    // An explicit request brings the window forward.
    f.controller.showWindow();
    QCOMPARE(activated.size(), 2);

    // Other windows than a panel may take the focus.
    panel.hide();
    f.controller.showWindowAgain();
    QCOMPARE(activated.size(), 3);
    QCOMPARE(activated.last().data(), f.controller.window());
    panel.show();
    f.controller.window()->hide();
    f.controller.showWindowAgain();
    QCOMPARE(activated.size(), 4);
    QVERIFY(f.controller.isWindowVisible());
    QWidget stranger;
    stranger.show();
    stranger.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&stranger));
    f.controller.showWindowAgain();
    QCOMPARE(activated.size(), 5);
}

void PreferencesWindowControllerTest::closing_only_hides_the_window()
{
    WindowFixture f;
    f.controller.showWindow();
    f.controller.showPane(PrefPane::general);
    const QPointer<QWidget> window = f.controller.window();
    const QPointer<BasePane> pane = f.controller.pane();
    window->close();
    runDeferredDeletes();
    QVERIFY(!f.controller.isWindowVisible());
    QVERIFY(window);
    f.controller.showWindow();
    QVERIFY(f.controller.isWindowVisible());
    QCOMPARE(f.controller.pane(), pane.data());
}

void PreferencesWindowControllerTest::escape_and_command_w_close_the_window()
{
    WindowFixture f;
    for (const auto &[key, modifiers] : {std::pair(Qt::Key_Escape, Qt::NoModifier), {Qt::Key_W, Qt::ControlModifier}}) {
        f.controller.showWindow();
        f.controller.window()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(f.controller.window()));
        QTest::keyClick(&f.list(), key, modifiers);
        QVERIFY(!f.controller.isWindowVisible());
    }
}

void PreferencesWindowControllerTest::the_window_never_gets_smaller_than_600_by_420()
{
    WindowFixture f;
    f.controller.showWindow();
    for (const PrefPane pane :
         {PrefPane::welcome, PrefPane::general, PrefPane::behavior, PrefPane::appearance, PrefPane::about}) {
        f.controller.showPane(pane);
        f.controller.window()->resize(100, 100);
        QCOMPARE(f.controller.window()->size(), QSize(600, 420));
        QCOMPARE(f.controller.window()->minimumSize(), QSize(600, 420));
        QVERIFY(f.controller.pane()->width() >= 600 - 200 - 1);
    }
}

void PreferencesWindowControllerTest::the_window_can_be_made_larger()
{
    WindowFixture f;
    f.controller.showWindow();
    f.controller.window()->resize(1000, 600);
    QCOMPARE(f.controller.window()->size(), QSize(1000, 600));
}

void PreferencesWindowControllerTest::the_sidebar_is_160_to_200_points_wide_and_cannot_be_collapsed()
{
    WindowFixture f;
    f.controller.showWindow();
    QCOMPARE(f.splitter().orientation(), Qt::Horizontal);
    QCOMPARE(f.splitter().widget(0), f.controller.sidebar());
    QCOMPARE(f.splitter().widget(1), f.controller.pane());
    QCOMPARE(f.splitter().count(), 2);
    for (const auto &[distance, width] : {std::pair(-150, 160), {150, 200}}) {
        dragDivider(f.splitter(), distance);
        QCOMPARE(f.controller.sidebar()->width(), width);
    }
    dragDivider(f.splitter(), -15);
    QVERIFY(f.controller.sidebar()->width() > 160 && f.controller.sidebar()->width() < 200);
    // The pane gets the space that the window gains, and loses what the window loses.
    f.splitter().setSizes({180, 520});
    f.controller.window()->resize(1000, 600);
    QCOMPARE(f.controller.sidebar()->width(), 180);
    f.controller.window()->resize(600, 420);
    QCOMPARE(f.controller.sidebar()->width(), 180);
}

void PreferencesWindowControllerTest::each_pane_has_its_class()
{
    WindowFixture f;
    f.controller.showPane(PrefPane::general);
    QVERIFY(qobject_cast<GeneralPane *>(f.controller.pane()));
    f.controller.showPane(PrefPane::behavior);
    QVERIFY(qobject_cast<BehaviorPane *>(f.controller.pane()));
    f.controller.showPane(PrefPane::appearance);
    QVERIFY(qobject_cast<AppearancePane *>(f.controller.pane()));
    f.controller.showPane(PrefPane::about);
    QVERIFY(qobject_cast<AboutPane *>(f.controller.pane()));
    f.controller.showPane(PrefPane::welcome);
    QVERIFY(qobject_cast<WelcomePane *>(f.controller.pane()));
}

void PreferencesWindowControllerTest::every_switch_makes_a_new_pane_and_ends_the_old_one()
{
    WindowFixture f;
    f.controller.showWindow();
    f.controller.showPane(PrefPane::general);
    const QPointer<BasePane> first = f.controller.pane();
    f.controller.showPane(PrefPane::general);
    QVERIFY(f.controller.pane() != first);
    QVERIFY(f.controller.pane()->isVisible());
    QCOMPARE(f.splitter().widget(1), f.controller.pane());
    QCOMPARE(f.splitter().count(), 2);
    runDeferredDeletes();
    QVERIFY(!first);
    QCOMPARE(f.controller.window()->findChildren<BasePane *>().size(), 1);
}

void PreferencesWindowControllerTest::only_the_pane_is_replaced()
{
    WindowFixture f;
    f.controller.showWindow();
    f.splitter().setSizes({165, 534});
    const QPointer<SidebarViewController> sidebar = f.controller.sidebar();
    for (const PrefPane pane :
         {PrefPane::general, PrefPane::behavior, PrefPane::appearance, PrefPane::about, PrefPane::welcome}) {
        f.controller.showPane(pane);
        runDeferredDeletes();
        QCOMPARE(f.controller.sidebar(), sidebar.data());
        QCOMPARE(f.splitter().widget(0), sidebar.data());
        QCOMPARE(sidebar->width(), 165);
    }
}

void PreferencesWindowControllerTest::a_window_without_its_detail_area_stops_the_program()
{
    const ChildEnd end = inChild([] {
        WindowFixture f;
        f.splitter().widget(1)->setParent(nullptr);
        f.controller.showPane(PrefPane::general);
    });
    QVERIFY(end.stopped);
    QVERIFY2(end.said.contains("detail area"), end.said.constData());
}

void PreferencesWindowControllerTest::showing_a_pane_reads_the_sidebar_again()
{
    WindowFixture f;
    auto &requests = f.virtualPlatform.appearance.symbolRequests;
    requests.clear();
    f.controller.showPane(PrefPane::about);
    QSet<QString> asked;
    for (const auto &[symbol, tint] : requests)
        asked.insert(symbol);
    for (const SidebarViewController::Row &row : SidebarViewController::rows())
        QVERIFY2(asked.contains(row.icon), qPrintable(row.icon));
}

void PreferencesWindowControllerTest::showing_a_pane_selects_its_row_without_showing_it_twice()
{
    WindowFixture f;
    // Showing a pane must not call what the user's choice of a row calls.
    int choices = 0;
    f.controller.sidebar()->onSelect = [&choices](PrefPane) { ++choices; };
    int row = 0;
    for (const PrefPane pane :
         {PrefPane::welcome, PrefPane::general, PrefPane::behavior, PrefPane::appearance, PrefPane::about}) {
        f.controller.showPane(pane);
        QCOMPARE(f.selectedRow(), row++);
    }
    QCOMPARE(choices, 0);
    QCOMPARE(f.announcements(), u"+-"_s);
}

void PreferencesWindowControllerTest::a_click_in_the_sidebar_shows_the_pane()
{
    WindowFixture f;
    f.controller.showWindow();
    const QRect row = f.list().visualRect(f.list().model()->index(2, 0));
    QTest::mouseClick(f.list().viewport(), Qt::LeftButton, {}, row.center());
    QVERIFY(qobject_cast<BehaviorPane *>(f.controller.pane()));
    QCOMPARE(f.selectedRow(), 2);
    // A click beside the rows clears the selection, and the pane stays.
    const BasePane *pane = f.controller.pane();
    QTest::mouseClick(f.list().viewport(), Qt::LeftButton, {}, QPoint(80, 400));
    QCOMPARE(f.controller.pane(), pane);
    QVERIFY(!f.list().selectionModel()->hasSelection());
    QTest::mouseClick(f.list().viewport(), Qt::LeftButton, {}, row.center());
    QVERIFY(f.controller.pane() != pane);
    QVERIFY(qobject_cast<BehaviorPane *>(f.controller.pane()));
}

void PreferencesWindowControllerTest::a_row_that_is_taken_out_of_the_selection_keeps_its_pane()
{
    WindowFixture f;
    f.controller.showWindow();
    f.controller.showPane(PrefPane::behavior);
    const BasePane *pane = f.controller.pane();
    const QRect row = f.list().visualRect(f.list().model()->index(2, 0));
    QTest::mouseClick(f.list().viewport(), Qt::LeftButton, Qt::ControlModifier, row.center());
    QVERIFY(!f.list().selectionModel()->hasSelection());
    QCOMPARE(f.controller.pane(), pane);
    f.controller.showPane(PrefPane::behavior);
    QCOMPARE(f.selectedRow(), 2);
}

void PreferencesWindowControllerTest::the_arrow_keys_in_the_sidebar_show_one_pane_after_the_other()
{
    WindowFixture f;
    f.controller.showWindow();
    QTest::keyClick(&f.list(), Qt::Key_Down);
    QVERIFY(qobject_cast<GeneralPane *>(f.controller.pane()));
    QTest::keyClick(&f.list(), Qt::Key_Down);
    QVERIFY(qobject_cast<BehaviorPane *>(f.controller.pane()));
    QTest::keyClick(&f.list(), Qt::Key_Down);
    QVERIFY(qobject_cast<AppearancePane *>(f.controller.pane()));
    QTest::keyClick(&f.list(), Qt::Key_Up);
    QVERIFY(qobject_cast<BehaviorPane *>(f.controller.pane()));
    QCOMPARE(f.announcements(), u"+-"_s);
}

void PreferencesWindowControllerTest::the_appearance_pane_is_announced_when_it_comes_and_when_it_goes()
{
    WindowFixture f;
    f.controller.showPane(PrefPane::appearance);
    QCOMPARE(f.announcements(), u"+"_s);
    f.controller.showPane(PrefPane::appearance);
    QCOMPARE(f.announcements(), u"+"_s);
    f.controller.showPane(PrefPane::about);
    QCOMPARE(f.announcements(), u"+-"_s);
    f.controller.showPane(PrefPane::appearance);
    QCOMPARE(f.announcements(), u"+-+"_s);
}

void PreferencesWindowControllerTest::the_pane_and_its_row_are_there_when_it_is_announced()
{
    WindowFixture f;
    QStringList seen;
    f.notifications.observe(Notifications::appearancePaneActive, &f.controller, [&](const QVariantMap &) {
        seen.append(u"%1 %2 %3"_s.arg(f.selectedRow())
                        .arg(QString::fromLatin1(f.controller.pane()->metaObject()->className()),
                             QString::fromLatin1(f.splitter().widget(1)->metaObject()->className())));
    });
    f.controller.showPane(PrefPane::appearance);
    f.controller.showPane(PrefPane::about);
    QCOMPARE(seen, QStringList({u"3 AppearancePane AppearancePane"_s, u"4 AboutPane AboutPane"_s}));
}

void PreferencesWindowControllerTest::panes_that_are_not_the_appearance_pane_announce_nothing()
{
    WindowFixture f;
    for (const PrefPane pane : {PrefPane::general, PrefPane::behavior, PrefPane::about, PrefPane::welcome})
        f.controller.showPane(pane);
    QVERIFY(f.posts.isEmpty());
}

void PreferencesWindowControllerTest::closing_on_the_appearance_pane_announces_nothing_until_the_next_switch()
{
    WindowFixture f;
    f.controller.showWindow();
    f.controller.showPane(PrefPane::appearance);
    f.controller.window()->close();
    f.controller.showWindow();
    QCOMPARE(f.announcements(), u"+"_s);
    f.controller.showPane(PrefPane::welcome);
    QCOMPARE(f.announcements(), u"+-"_s);
}

void PreferencesWindowControllerTest::a_pane_reads_the_settings_when_it_is_shown()
{
    WindowFixture f;
    const auto isOn = [&f](const QString &key) {
        return f.controller.pane()->findChild<QCheckBox *>(key)->isChecked();
    };
    f.controller.showPane(PrefPane::general);
    QVERIFY(isOn(Settings::showMenuBarIcon.key));
    f.values.insert(Settings::showMenuBarIcon.key, false);
    QVERIFY(isOn(Settings::showMenuBarIcon.key));
    f.controller.showPane(PrefPane::general);
    QVERIFY(!isOn(Settings::showMenuBarIcon.key));
}

void PreferencesWindowControllerTest::the_appearance_pane_reads_the_settings_at_every_visit()
{
    WindowFixture f;
    const auto size = [&f] {
        return f.controller.pane()->findChild<DoubleSlider *>(Settings::shelfItemSize.key)->doubleValue();
    };
    f.controller.showPane(PrefPane::appearance);
    QCOMPARE(size(), 72.0);
    f.values.insert(Settings::shelfItemSize.key, 90.0);
    f.controller.showPane(PrefPane::appearance);
    QCOMPARE(size(), 90.0);
    f.controller.showPane(PrefPane::about);
    f.values.insert(Settings::shelfItemSize.key, 100.0);
    f.controller.showPane(PrefPane::appearance);
    QCOMPARE(size(), 100.0);
}

void PreferencesWindowControllerTest::a_pane_that_goes_while_the_open_panel_is_up_adds_nothing()
{
    WindowFixture f;
    f.controller.showWindow();
    f.controller.showPane(PrefPane::behavior);
    const QUrl file = QUrl::fromLocalFile(u"/Applications/x"_s);
    f.virtualPlatform.workspace.identifiers.insert(file, u"org.late"_s);
    f.virtualPlatform.openPanels.choice = file;
    f.virtualPlatform.openPanels.whileShown = [&f] {
        f.controller.showPane(PrefPane::general);
        runDeferredDeletes();
    };
    f.controller.pane()->findChild<AppExclusionListView *>()->addBtn->click();
    QCoreApplication::processEvents();
    QCOMPARE(f.virtualPlatform.openPanels.shown.size(), 1);
    QVERIFY(f.virtualPlatform.userDefaults.writes.isEmpty());
    QVERIFY(qobject_cast<GeneralPane *>(f.controller.pane()));
}

void PreferencesWindowControllerTest::the_users_font_size_leaves_the_controls_as_they_are()
{
    const auto heights = [] {
        WindowFixture f;
        f.controller.showWindow();
        QList<int> list;
        for (const PrefPane pane : {PrefPane::general, PrefPane::behavior, PrefPane::appearance, PrefPane::about}) {
            f.controller.showPane(pane);
            for (const auto *control : f.controller.pane()->findChildren<QWidget *>()) {
                if (qobject_cast<const QComboBox *>(control) || qobject_cast<const QAbstractButton *>(control))
                    list.append(control->height());
            }
        }
        return list;
    };
    const QFont before = QApplication::font();
    const QList<int> usual = heights();
    QFont large = before;
    large.setPointSize(24);
    QApplication::setFont(large);
    const QList<int> withLarge = heights();
    QApplication::setFont(before);
    QVERIFY(usual.size() > 10);
    QCOMPARE(withLarge, usual);
}

void PreferencesWindowControllerTest::a_sidebar_that_outlives_the_controller_calls_nobody()
{
    std::function<void(PrefPane)> callback;
    {
        WindowFixture f;
        callback = f.controller.sidebar()->onSelect;
    }
    callback(PrefPane::general);
}

PARKLET_TEST(PreferencesWindowControllerTest)
#include "PreferencesWindowControllerTest.moc"
