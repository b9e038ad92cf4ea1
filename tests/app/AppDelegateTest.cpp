// SPDX-License-Identifier: MIT
#include "preferences/PreferencesWindowController.h"
#include "settings/BuildInfo.h"
#include "shelf/ShelfGeometry.h"
#include "tests/app/AppFixture.h"
#include "tests/support/InChild.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QFile>
#include <QNetworkAccessManager>
#include <QTest>
#include <QTimer>

// What the running application does: its menu, the clipboard, screenshots, and the reactions to notifications.
class AppDelegateTest : public QObject {
    Q_OBJECT

private slots:
    void the_status_item_shows_the_tray_symbol_and_the_menu();
    void the_status_item_is_absent_while_the_setting_is_off();
    void the_status_menu_holds_its_items_in_their_order();
    void the_check_mark_tells_whether_the_login_item_is_wanted();
    void the_shelf_item_toggles_and_keeps_its_title();
    void the_shelf_item_brings_back_a_shelf_that_fades_out();
    void the_preferences_item_shows_the_window_in_front();
    void the_updates_item_asks_for_a_check();
    void the_more_item_opens_the_makers_page();
    void a_malformed_address_of_the_build_stops_the_program_data();
    void a_malformed_address_of_the_build_stops_the_program();
    void the_quit_item_ends_the_application();
    void the_launchers_actions_do_what_their_names_say();
    void the_launcher_can_quit();

    void the_clipboards_files_are_added_in_order_and_the_shelf_shows();
    void a_visible_shelf_is_not_shown_again_for_the_clipboard();
    void the_clipboard_brings_back_a_shelf_that_fades_out();
    void a_clipboard_without_files_does_nothing();

    void launch_at_login_changes_the_setting_the_item_and_the_check_mark();
    void launch_at_login_chosen_twice_leaves_everything_as_it_was();
    void launch_at_login_that_is_refused_stays_as_the_user_set_it();
    void launch_at_login_without_a_status_item_changes_the_setting();
    void a_check_mark_does_not_follow_the_setting_until_the_menu_is_rebuilt();
    void a_menu_that_waits_for_its_status_item_is_dropped_with_it();

    void a_new_screenshot_is_added_and_shows_the_shelf();
    void a_new_screenshot_brings_back_a_shelf_that_fades_out();
    void a_new_screenshot_shows_a_full_shelf();
    void a_screenshot_made_again_under_its_name_shows_the_shelf();
    void a_screenshot_while_the_setting_is_off_is_ignored_at_once();
    void turning_screenshots_on_takes_effect_with_the_next_settings_change();

    void a_settings_change_goes_in_its_order();
    void a_settings_change_places_the_shelf_anew();
    void turning_the_icon_off_and_on_makes_a_fresh_item_and_menu();
    void a_status_item_that_is_there_is_kept();
    void the_dock_icon_follows_every_settings_change();
    void visible_preferences_are_shown_again_in_a_later_turn();
    void hidden_preferences_are_left_alone();
    void minimised_preferences_are_left_alone();
    void every_settings_change_starts_or_stops_the_watcher();
    void a_settings_change_leaves_the_login_item();

    void the_appearance_pane_brings_a_hidden_shelf_and_takes_it_away();
    void the_appearance_pane_leaves_a_visible_shelf();
    void a_shelf_that_the_user_hides_meanwhile_stays_away();
    void an_appearance_pane_that_is_left_and_entered_at_once_keeps_its_shelf();
    void anything_but_true_counts_as_leaving_data();
    void anything_but_true_counts_as_leaving();
    void leaving_without_having_come_hides_the_shelf();
    void the_shelfs_gear_button_opens_the_preferences();

    void a_changed_screen_moves_a_visible_shelf_only();
    void what_a_delegate_handed_out_does_nothing_after_it_has_gone();
};

namespace {

struct Fixture : AppFixture {
    explicit Fixture(const QMap<QString, QVariant> &settings = {})
    {
        values.insert(settings);
        launch();
    }

    VirtualStatusBar::Item *item() const { return virtualPlatform.statusBar.item; }
    QList<QAction *> menuItems() const { return item()->menu->actions(); }

    QAction *menuItem(const QString &title) const
    {
        for (QAction *action : menuItems()) {
            if (action->text() == title)
                return action;
        }
        return nullptr;
    }
    void choose(const QString &title) const { menuItem(title)->trigger(); }
    bool isChecked() const { return menuItem(kLaunchAtLogin)->isChecked(); }

    void appearancePane(const QVariantMap &userInfo)
    {
        shared.notifications().post(Notifications::appearancePaneActive, userInfo);
    }
    static QVariantMap active(const QVariant &value) { return {{QStringLiteral("active"), value}}; }

    // Saves a new PNG on the Desktop.
    QUrl saveScreenshot(const QString &name)
    {
        QFile png(home.path() + QStringLiteral("/Desktop/") + name);
        [&] { QVERIFY(png.open(QIODevice::WriteOnly)); }();
        const QUrl url = QUrl::fromLocalFile(png.fileName());
        virtualPlatform.fileEventStreams.creationDates.insert(url, queue.currentDate());
        virtualPlatform.fileEventStreams.send();
        return url;
    }

    // A shelf that has 0.08 seconds to go until it is off the screen.
    void fadeOut()
    {
        delegate->toggleShelf();
        queue.advance(1);
        delegate->toggleShelf();
        queue.advance(0.1);
        QVERIFY(shelf.isVisible());
        QVERIFY(shelf.isHiding());
    }
    // Whether the shelf is fading in, and then stays.
    bool comesBack()
    {
        if (shelf.isHiding())
            return false;
        queue.advance(10);
        return shelf.isVisible() && shelf.alpha() == 1.0;
    }

    inline static const QString kLaunchAtLogin = QStringLiteral("Launch at Login");
};

} // namespace

void AppDelegateTest::the_status_item_shows_the_tray_symbol_and_the_menu()
{
    Fixture f;
    QVERIFY(f.item());
    QCOMPARE(f.virtualPlatform.statusBar.created, 1);
    QCOMPARE(f.item()->symbol, QStringLiteral("tray.and.arrow.down"));
    QCOMPARE(f.item()->description, QStringLiteral("Parklet"));
    QVERIFY(f.item()->menu);
}

void AppDelegateTest::the_status_item_is_absent_while_the_setting_is_off()
{
    Fixture f({{Settings::showMenuBarIcon.key, false}});
    QVERIFY(!f.item());
    QCOMPARE(f.virtualPlatform.statusBar.created, 0);
}

void AppDelegateTest::the_status_menu_holds_its_items_in_their_order()
{
    Fixture f;
    QStringList items;
    for (const QAction *action : f.menuItems()) {
        QString item = action->isSeparator() ? QStringLiteral("-") : action->text();
        if (!action->isEnabled())
            item += QStringLiteral(" (disabled)");
        if (action->isCheckable())
            item += QStringLiteral(" (checkable)");
        if (!action->shortcut().isEmpty())
            item += QLatin1Char(' ') + action->shortcut().toString(QKeySequence::PortableText);
        QVERIFY(!action->menu());
        items.append(item);
    }
    const QString separator = QStringLiteral("-");
    QCOMPARE(
        items,
        QStringList({QStringLiteral("Parklet (disabled)"), separator, QStringLiteral("Add From Clipboard"), separator,
                     QStringLiteral("Show Shelf"), separator, QStringLiteral("Preferences\u2026 Ctrl+,"),
                     QStringLiteral("Check for Updates\u2026"), QStringLiteral("More from Orvane"), separator,
                     QStringLiteral("Launch at Login (checkable)"), separator, QStringLiteral("Quit Parklet Ctrl+Q")}));
}

void AppDelegateTest::the_check_mark_tells_whether_the_login_item_is_wanted()
{
    Fixture off;
    QVERIFY(!off.isChecked());
    Fixture on({{Settings::launchAtLogin.key, true}});
    QVERIFY(on.isChecked());
}

void AppDelegateTest::the_shelf_item_toggles_and_keeps_its_title()
{
    Fixture f;
    const QString title = QStringLiteral("Show Shelf");
    f.choose(title);
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.alpha(), 0.0);
    f.queue.advance(0.22);
    QCOMPARE(f.shelf.alpha(), 1.0);
    QVERIFY(f.menuItem(title));

    f.choose(title);
    QVERIFY(f.shelf.isVisible());
    f.queue.advance(0.17);
    QVERIFY(f.shelf.isVisible());
    f.queue.advance(0.01);
    QVERIFY(!f.shelf.isVisible());
    QVERIFY(f.menuItem(title));
    QVERIFY(f.menuItem(title)->isEnabled());
}

void AppDelegateTest::the_shelf_item_brings_back_a_shelf_that_fades_out()
{
    Fixture f;
    f.fadeOut();
    f.choose(QStringLiteral("Show Shelf"));
    QVERIFY(f.comesBack());
}

void AppDelegateTest::the_preferences_item_shows_the_window_in_front()
{
    Fixture f;
    QVERIFY(!f.shared.isPreferencesWindowVisible());
    f.choose(QStringLiteral("Preferences\u2026"));
    QVERIFY(f.shared.isPreferencesWindowVisible());
    const auto &activated = f.virtualPlatform.activationPolicy.activated;
    QCOMPARE(activated.size(), 1);
    QCOMPARE(activated.first().data(), f.shared.preferences().window());
    // There is one window, which comes to the front again.
    f.choose(QStringLiteral("Preferences\u2026"));
    QCOMPARE(activated.size(), 2);
    QCOMPARE(activated.last().data(), activated.first().data());
}

void AppDelegateTest::the_updates_item_asks_for_a_check()
{
    Fixture f;
    // An address of this machine on which nobody answers.
    f.shared.versionURL = QUrl(QStringLiteral("http://127.0.0.1:1/version.json"));
    QVERIFY(!f.shared.updateChecker().findChild<QNetworkAccessManager *>());
    f.choose(QStringLiteral("Check for Updates\u2026"));
    QVERIFY(f.shared.updateChecker().findChild<QNetworkAccessManager *>());
}

void AppDelegateTest::the_more_item_opens_the_makers_page()
{
    Fixture f;
    f.choose(QStringLiteral("More from Orvane"));
    QCOMPARE(f.virtualPlatform.workspace.opened, QList{BuildInfo::moreAppsURL()});
}

void AppDelegateTest::a_malformed_address_of_the_build_stops_the_program_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<QUrl>("address");
    QTest::addColumn<bool>("stops");
    const QUrl malformed(QStringLiteral("https://orvane.example:port/"), QUrl::StrictMode);
    const QUrl whole(QStringLiteral("http://127.0.0.1:1/version.json"));
    const QString more = QStringLiteral("More from Orvane");
    const QString updates = QStringLiteral("Check for Updates\u2026");
    QTest::newRow("no page of the maker") << more << QUrl() << true;
    QTest::newRow("a malformed page of the maker") << more << malformed << true;
    QTest::newRow("a page of the maker") << more << whole << false;
    QTest::newRow("no version record") << updates << QUrl() << true;
    QTest::newRow("a malformed version record") << updates << malformed << true;
    QTest::newRow("a version record") << updates << whole << false;
}

void AppDelegateTest::a_malformed_address_of_the_build_stops_the_program()
{
    QFETCH(const QString, item);
    QFETCH(const QUrl, address);
    QFETCH(const bool, stops);
    Fixture f;
    f.shared.moreAppsURL = address;
    f.shared.versionURL = address;
    const ChildEnd end = inChild([&] { f.choose(item); });
    QCOMPARE(end.stopped, stops);
    QCOMPARE(end.finished, !stops);
}

void AppDelegateTest::the_quit_item_ends_the_application()
{
    Fixture f;
    constexpr int kNotQuit = 1;
    QTimer::singleShot(0, &f.shelf, [&f] { f.choose(QStringLiteral("Quit Parklet")); });
    QTimer::singleShot(10'000, &f.shelf, [] { QCoreApplication::exit(kNotQuit); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

void AppDelegateTest::the_launchers_actions_do_what_their_names_say()
{
    // As on a desktop without a tray.
    Fixture f({{Settings::showMenuBarIcon.key, false}});
    f.shared.versionURL = QUrl(QStringLiteral("http://127.0.0.1:1/version.json"));
    f.delegate->performAction(QStringLiteral("nonsense"));
    QVERIFY(!f.shelf.isVisible());

    f.delegate->performAction(QStringLiteral("show-shelf"));
    QVERIFY(f.shelf.isVisible());
    f.delegate->performAction(QStringLiteral("show-shelf"));
    QVERIFY(f.shelf.isVisible());
    f.virtualPlatform.generalPasteboard.urls = {file("/a.txt")};
    QVERIFY(f.shelf.items.isEmpty());
    f.delegate->performAction(QStringLiteral("add-from-clipboard"));
    QCOMPARE(f.shelf.items, QList{file("/a.txt")});
    QVERIFY(!f.shared.isPreferencesWindowVisible());
    f.delegate->performAction(QStringLiteral("preferences"));
    QVERIFY(f.shared.isPreferencesWindowVisible());
    QVERIFY(!f.shared.updateChecker().findChild<QNetworkAccessManager *>());
    f.delegate->performAction(QStringLiteral("check-for-updates"));
    QVERIFY(f.shared.updateChecker().findChild<QNetworkAccessManager *>());
}

void AppDelegateTest::the_launcher_can_quit()
{
    Fixture f;
    constexpr int kNotQuit = 1;
    QTimer::singleShot(0, &f.shelf, [&f] { f.delegate->performAction(QStringLiteral("quit")); });
    QTimer::singleShot(10'000, &f.shelf, [] { QCoreApplication::exit(kNotQuit); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

void AppDelegateTest::the_clipboards_files_are_added_in_order_and_the_shelf_shows()
{
    Fixture f;
    const QList<QUrl> urls = {file("/z.txt"), file("/a.txt"), file("/m.txt")};
    f.virtualPlatform.generalPasteboard.urls = urls;
    qsizetype addedBefore = 0;
    f.virtualPlatform.log.onCall = [&](const QString &) { addedBefore = f.shelf.items.size(); };
    f.choose(QStringLiteral("Add From Clipboard"));
    QCOMPARE(f.shelf.items, urls);
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.alpha(), 0.0); // it fades in
    QCOMPARE(f.panels.ordersFront, 1);
    QCOMPARE(addedBefore, 3);
}

void AppDelegateTest::a_visible_shelf_is_not_shown_again_for_the_clipboard()
{
    Fixture f;
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.virtualPlatform.generalPasteboard.urls = {file("/a.txt")};
    f.delegate->addFromClipboard();
    QCOMPARE(f.shelf.items.size(), 1);
    QCOMPARE(f.panels.ordersFront, 1);
    QCOMPARE(f.shelf.alpha(), 1.0);
}

void AppDelegateTest::the_clipboard_brings_back_a_shelf_that_fades_out()
{
    Fixture f;
    f.fadeOut();
    f.virtualPlatform.generalPasteboard.urls = {file("/a.txt")};
    f.choose(QStringLiteral("Add From Clipboard"));
    QVERIFY(f.comesBack());
}

void AppDelegateTest::a_clipboard_without_files_does_nothing()
{
    Fixture f;
    f.choose(QStringLiteral("Add From Clipboard"));
    QVERIFY(f.shelf.items.isEmpty());
    QVERIFY(!f.shelf.isVisible());
    QCOMPARE(f.panels.ordersFront, 0);
    QVERIFY(f.virtualPlatform.alerts.shown.isEmpty());
}

void AppDelegateTest::launch_at_login_changes_the_setting_the_item_and_the_check_mark()
{
    Fixture f;
    const QMenu *before = f.item()->menu.get();
    f.choose(Fixture::kLaunchAtLogin);
    QCOMPARE(f.values.value(Settings::launchAtLogin.key), QVariant(true));
    QCOMPARE(f.virtualPlatform.loginItem.calls, QStringList{QStringLiteral("enable")});
    QVERIFY(f.isChecked());
    f.queue.runPending();
    QVERIFY(f.isChecked());
    QVERIFY(f.item()->menu.get() != before);
    QCOMPARE(f.menuItems().size(), 13);
    QCOMPARE(f.virtualPlatform.statusBar.created, 1);
}

void AppDelegateTest::launch_at_login_chosen_twice_leaves_everything_as_it_was()
{
    Fixture f;
    f.choose(Fixture::kLaunchAtLogin);
    f.queue.runPending();
    f.choose(Fixture::kLaunchAtLogin);
    f.queue.runPending();
    QCOMPARE(f.values.value(Settings::launchAtLogin.key), QVariant(false));
    QCOMPARE(f.virtualPlatform.loginItem.calls, QStringList({QStringLiteral("enable"), QStringLiteral("disable")}));
    QVERIFY(!f.virtualPlatform.loginItem.enabled);
    QVERIFY(!f.isChecked());

    // Also when the second choice comes before the menu has been rebuilt.
    f.choose(Fixture::kLaunchAtLogin);
    f.choose(Fixture::kLaunchAtLogin);
    f.queue.runPending();
    QVERIFY(!f.virtualPlatform.loginItem.enabled);
    QVERIFY(!f.isChecked());
}

void AppDelegateTest::launch_at_login_that_is_refused_stays_as_the_user_set_it()
{
    Fixture f;
    f.virtualPlatform.loginItem.fails = true;
    f.choose(Fixture::kLaunchAtLogin);
    f.queue.runPending();
    QCOMPARE(f.values.value(Settings::launchAtLogin.key), QVariant(true));
    QVERIFY(f.isChecked());
    QVERIFY(f.virtualPlatform.alerts.shown.isEmpty());
}

void AppDelegateTest::launch_at_login_without_a_status_item_changes_the_setting()
{
    Fixture f({{Settings::showMenuBarIcon.key, false}});
    f.delegate->toggleLaunchAtLogin();
    f.queue.runPending();
    QCOMPARE(f.values.value(Settings::launchAtLogin.key), QVariant(true));
    QVERIFY(f.virtualPlatform.loginItem.enabled);
    QVERIFY(!f.item());
}

void AppDelegateTest::a_check_mark_does_not_follow_the_setting_until_the_menu_is_rebuilt()
{
    Fixture f;
    const QMenu *menu = f.item()->menu.get();
    f.change(Settings::launchAtLogin.key, true);
    f.queue.runPending();
    QCOMPARE(f.item()->menu.get(), menu);
    QVERIFY(!f.isChecked());

    // A fresh status item tells the truth.
    f.change(Settings::showMenuBarIcon.key, false);
    f.change(Settings::showMenuBarIcon.key, true);
    QVERIFY(f.isChecked());

    // So does the menu item itself, which turns the setting over and not the check mark.
    f.change(Settings::launchAtLogin.key, false);
    QVERIFY(f.isChecked());
    f.choose(Fixture::kLaunchAtLogin);
    f.queue.runPending();
    QCOMPARE(f.values.value(Settings::launchAtLogin.key), QVariant(true));
    QVERIFY(f.isChecked());
}

void AppDelegateTest::a_menu_that_waits_for_its_status_item_is_dropped_with_it()
{
    Fixture f;
    f.choose(Fixture::kLaunchAtLogin);
    f.change(Settings::showMenuBarIcon.key, false);
    f.queue.runPending();
    QVERIFY(!f.item());
    QCOMPARE(f.virtualPlatform.statusBar.created, 1);
}

void AppDelegateTest::a_new_screenshot_is_added_and_shows_the_shelf()
{
    Fixture f;
    qsizetype addedBefore = 0;
    f.virtualPlatform.log.onCall = [&](const QString &) { addedBefore = f.shelf.items.size(); };
    const QUrl first = f.saveScreenshot(QStringLiteral("one.png"));
    QVERIFY(f.shelf.items.isEmpty());
    f.queue.runPending();
    QCOMPARE(f.shelf.items, QList{first});
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.alpha(), 0.0);
    QCOMPARE(addedBefore, 1);

    // A visible shelf is not shown again.
    f.queue.advance(1);
    const QUrl second = f.saveScreenshot(QStringLiteral("two.png"));
    f.queue.runPending();
    QCOMPARE(f.shelf.items, QList({first, second}));
    QCOMPARE(f.panels.ordersFront, 1);
    QCOMPARE(f.shelf.alpha(), 1.0);
}

void AppDelegateTest::a_new_screenshot_brings_back_a_shelf_that_fades_out()
{
    Fixture f;
    f.fadeOut();
    f.saveScreenshot(QStringLiteral("one.png"));
    f.queue.runPending();
    QCOMPARE(f.shelf.items.size(), 1);
    QVERIFY(f.comesBack());
}

void AppDelegateTest::a_new_screenshot_shows_a_full_shelf()
{
    Fixture f;
    for (int i = 0; i < 50; ++i)
        f.shelf.addItem(QUrl::fromLocalFile(QStringLiteral("/%1.txt").arg(i)));
    QVERIFY(!f.shelf.isVisible());
    f.saveScreenshot(QStringLiteral("one.png"));
    f.queue.runPending();
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.items.size(), 50);
}

void AppDelegateTest::a_screenshot_made_again_under_its_name_shows_the_shelf()
{
    Fixture f;
    const QUrl one = f.saveScreenshot(QStringLiteral("one.png"));
    f.queue.advance(1);
    f.delegate->toggleShelf();
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
    QVERIFY(QFile::remove(one.toLocalFile()));
    f.virtualPlatform.fileEventStreams.send();
    f.saveScreenshot(QStringLiteral("one.png"));
    f.queue.runPending();
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.items, QList{one});
}

void AppDelegateTest::a_screenshot_while_the_setting_is_off_is_ignored_at_once()
{
    Fixture f;
    f.values.insert(Settings::autoAddScreenshots.key, false);
    f.saveScreenshot(QStringLiteral("one.png"));
    f.queue.runPending();
    QVERIFY(f.shelf.items.isEmpty());
    QVERIFY(!f.shelf.isVisible());
    // The stream itself goes on until the next settings change.
    QVERIFY(f.virtualPlatform.fileEventStreams.streams.first()->isRunning());
}

void AppDelegateTest::turning_screenshots_on_takes_effect_with_the_next_settings_change()
{
    Fixture f({{Settings::autoAddScreenshots.key, false}});
    f.values.insert(Settings::autoAddScreenshots.key, true);
    f.queue.advance(60);
    QVERIFY(f.virtualPlatform.fileEventStreams.streams.isEmpty());
    f.change(Settings::showDockIcon.key, true);
    QCOMPARE(f.virtualPlatform.fileEventStreams.streams.size(), 1);
    QVERIFY(f.virtualPlatform.fileEventStreams.streams.first()->isRunning());
}

void AppDelegateTest::a_settings_change_goes_in_its_order()
{
    Fixture f({{Settings::showMenuBarIcon.key, false}});
    f.delegate->openPreferences();
    f.calls.clear();
    QRectF frameAtIcon;
    f.virtualPlatform.log.onCall = [&](const QString &call) {
        if (call == QStringLiteral("makeStatusItem"))
            frameAtIcon = f.shelf.frame();
    };
    f.values.insert(Settings::showMenuBarIcon.key, true);
    f.change(Settings::windowEdge.key, int(WindowEdge::Left));
    f.queue.runPending();
    QCOMPARE(f.calls, QStringList({QStringLiteral("makeStatusItem"), QStringLiteral("setPolicy"),
                                   QStringLiteral("openStream"), QStringLiteral("activate")}));
    QCOMPARE(frameAtIcon.x(), 4.0);
}

void AppDelegateTest::a_settings_change_places_the_shelf_anew()
{
    Fixture f;
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.shelf.addItem(file("/a.txt"));
    QCOMPARE(f.shelf.frame(), QRectF(1160, 318, 116, 164));
    f.values.insert(Settings::shelfItemSize.key, 100.0);
    QCOMPARE(f.shelf.frame(), QRectF(1160, 318, 116, 164));
    f.change(Settings::windowEdge.key, int(WindowEdge::Left));
    QCOMPARE(f.shelf.frame(), QRectF(4, 304, 144, 192));
    // Its visibility is not touched, either way.
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.panels.ordersFront, 1);
    Fixture hidden;
    hidden.change(Settings::windowEdge.key, int(WindowEdge::Left));
    QVERIFY(!hidden.shelf.isVisible());
}

void AppDelegateTest::turning_the_icon_off_and_on_makes_a_fresh_item_and_menu()
{
    Fixture f;
    f.change(Settings::showMenuBarIcon.key, false);
    QVERIFY(!f.item());
    f.values.insert(Settings::launchAtLogin.key, true);
    f.change(Settings::showMenuBarIcon.key, true);
    QVERIFY(f.item());
    QCOMPARE(f.virtualPlatform.statusBar.created, 2);
    QCOMPARE(f.item()->symbol, QStringLiteral("tray.and.arrow.down"));
    QCOMPARE(f.item()->description, QStringLiteral("Parklet"));
    QCOMPARE(f.menuItems().size(), 13);
    QVERIFY(f.isChecked());
}

void AppDelegateTest::a_status_item_that_is_there_is_kept()
{
    Fixture f;
    const VirtualStatusBar::Item *item = f.item();
    const QMenu *menu = item->menu.get();
    f.change(Settings::tintIntensity.key, 0.9);
    QCOMPARE(f.item(), item);
    QCOMPARE(f.item()->menu.get(), menu);
    QCOMPARE(f.virtualPlatform.statusBar.created, 1);

    Fixture without({{Settings::showMenuBarIcon.key, false}});
    without.change(Settings::tintIntensity.key, 0.9);
    QVERIFY(!without.item());
}

void AppDelegateTest::the_dock_icon_follows_every_settings_change()
{
    using Policy = ActivationPolicy::Policy;
    Fixture f;
    f.change(Settings::tintIntensity.key, 0.9);
    f.change(Settings::showDockIcon.key, true);
    f.change(Settings::tintIntensity.key, 0.8);
    f.change(Settings::showDockIcon.key, false);
    QCOMPARE(f.virtualPlatform.activationPolicy.policies,
             QList({Policy::Accessory, Policy::Regular, Policy::Regular, Policy::Accessory}));
}

void AppDelegateTest::visible_preferences_are_shown_again_in_a_later_turn()
{
    Fixture f;
    f.delegate->openPreferences();
    const auto &activated = f.virtualPlatform.activationPolicy.activated;
    QCOMPARE(activated.size(), 1);
    // The desktop may take the window away as the policy changes; what counts is that it was visible before.
    f.virtualPlatform.log.onCall = [&](const QString &call) {
        if (call == QStringLiteral("setPolicy"))
            f.shared.preferences().window()->hide();
    };
    f.change(Settings::showDockIcon.key, true);
    QCOMPARE(activated.size(), 1);
    QVERIFY(!f.shared.isPreferencesWindowVisible());
    f.queue.runPending();
    QCOMPARE(activated.size(), 2);
    QCOMPARE(activated.last().data(), f.shared.preferences().window());
    QVERIFY(f.shared.isPreferencesWindowVisible());
}

void AppDelegateTest::hidden_preferences_are_left_alone()
{
    Fixture f;
    f.change(Settings::showDockIcon.key, true);
    f.queue.runPending();
    QVERIFY(f.virtualPlatform.activationPolicy.activated.isEmpty());

    f.delegate->openPreferences();
    f.shared.preferences().window()->close();
    f.change(Settings::showDockIcon.key, false);
    f.queue.runPending();
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.size(), 1);
    QVERIFY(!f.shared.isPreferencesWindowVisible());
}

void AppDelegateTest::minimised_preferences_are_left_alone()
{
    Fixture f;
    f.delegate->openPreferences();
    f.shared.preferences().window()->showMinimized();
    QVERIFY(!f.shared.isPreferencesWindowVisible());
    f.change(Settings::showDockIcon.key, true);
    f.queue.runPending();
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.size(), 1);
    QVERIFY(f.shared.preferences().window()->isMinimized());
}

void AppDelegateTest::every_settings_change_starts_or_stops_the_watcher()
{
    Fixture f;
    const auto &streams = f.virtualPlatform.fileEventStreams.streams;
    f.change(Settings::tintIntensity.key, 0.9);
    QCOMPARE(streams.size(), 2);
    QVERIFY(streams.last()->isRunning());

    f.change(Settings::autoAddScreenshots.key, false);
    QCOMPARE(streams.size(), 2);
    const QStringList ended = {QStringLiteral("start"), QStringLiteral("stop"), QStringLiteral("invalidate")};
    QCOMPARE(streams.last()->calls, ended);
    // There is none left to stop.
    f.change(Settings::tintIntensity.key, 0.8);
    QCOMPARE(streams.last()->calls, ended);
    QCOMPARE(streams.size(), 2);

    f.change(Settings::autoAddScreenshots.key, true);
    QCOMPARE(streams.size(), 3);
    QVERIFY(streams.last()->isRunning());
}

void AppDelegateTest::a_settings_change_leaves_the_login_item()
{
    Fixture f;
    f.calls.clear();
    f.change(Settings::launchAtLogin.key, true);
    f.queue.runPending();
    QVERIFY(!f.calls.contains(QStringLiteral("isLoginItemEnabled")));
    QVERIFY(f.virtualPlatform.loginItem.calls.isEmpty());
}

void AppDelegateTest::the_appearance_pane_brings_a_hidden_shelf_and_takes_it_away()
{
    Fixture f;
    f.appearancePane(Fixture::active(true));
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.alpha(), 0.0);
    f.queue.advance(0.22);
    QCOMPARE(f.shelf.alpha(), 1.0);

    f.appearancePane(Fixture::active(false));
    f.queue.advance(0.17);
    QVERIFY(f.shelf.isVisible());
    f.queue.advance(0.01);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateTest::the_appearance_pane_leaves_a_visible_shelf()
{
    Fixture f;
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.appearancePane(Fixture::active(true));
    QCOMPARE(f.shelf.alpha(), 1.0);
    QCOMPARE(f.panels.ordersFront, 1);
    f.appearancePane(Fixture::active(false));
    f.queue.advance(10);
    QVERIFY(f.shelf.isVisible());

    // What counts is how the shelf was at the last coming.
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.appearancePane(Fixture::active(true));
    f.queue.advance(1);
    QVERIFY(f.shelf.isVisible());
    f.appearancePane(Fixture::active(false));
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateTest::a_shelf_that_the_user_hides_meanwhile_stays_away()
{
    Fixture f;
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.appearancePane(Fixture::active(true));
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.appearancePane(Fixture::active(false));
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
    QCOMPARE(f.panels.ordersFront, 1);
}

void AppDelegateTest::an_appearance_pane_that_is_left_and_entered_at_once_keeps_its_shelf()
{
    Fixture f;
    f.appearancePane(Fixture::active(true));
    f.queue.advance(1);
    f.appearancePane(Fixture::active(false));
    f.queue.advance(0.1);
    QVERIFY(f.shelf.isVisible());
    f.appearancePane(Fixture::active(true));
    QVERIFY(f.comesBack());
    // The pane still owes the hiding of a shelf that it brought.
    f.appearancePane(Fixture::active(false));
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateTest::anything_but_true_counts_as_leaving_data()
{
    QTest::addColumn<QVariantMap>("userInfo");
    QTest::newRow("false") << Fixture::active(false);
    QTest::newRow("no user info") << QVariantMap();
    QTest::newRow("another key") << QVariantMap{{QStringLiteral("Active"), true}};
    QTest::newRow("a number") << Fixture::active(1);
    QTest::newRow("a string") << Fixture::active(QStringLiteral("true"));
    QTest::newRow("an invalid value") << Fixture::active(QVariant());
}

void AppDelegateTest::anything_but_true_counts_as_leaving()
{
    QFETCH(QVariantMap, userInfo);
    Fixture f;
    f.appearancePane(Fixture::active(true));
    f.queue.advance(1);
    QVERIFY(f.shelf.isVisible());
    f.appearancePane(userInfo);
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateTest::leaving_without_having_come_hides_the_shelf()
{
    Fixture f;
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.appearancePane(Fixture::active(false));
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateTest::the_shelfs_gear_button_opens_the_preferences()
{
    Fixture f;
    f.shelf.openPrefs();
    QVERIFY(f.shared.isPreferencesWindowVisible());
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.size(), 1);
}

void AppDelegateTest::a_changed_screen_moves_a_visible_shelf_only()
{
    Fixture f;
    f.virtualPlatform.screens.onChange();
    QCOMPARE(f.shelf.frame(), QRectF());
    f.delegate->toggleShelf();
    QCOMPARE(f.shelf.frame(), QRectF(1160, 318, 116, 164));
    f.virtualPlatform.screens.screens = {Screen{QRectF(0, 0, 1000, 600), QRectF(0, 0, 1000, 600), 1.0}};
    f.virtualPlatform.screens.onChange();
    QCOMPARE(f.shelf.frame(), QRectF(880, 218, 116, 164));
}

void AppDelegateTest::what_a_delegate_handed_out_does_nothing_after_it_has_gone()
{
    Fixture f;
    f.delegate->openPreferences();
    f.change(Settings::showDockIcon.key, true); // queues the showing of the preferences
    f.choose(Fixture::kLaunchAtLogin);          // queues a menu
    const auto screenshot = f.shared.screenshotWatcher().onNewScreenshot;
    const auto shelfDrop = f.shelf.onDropReceived;
    const auto cursorDrop = f.cursorShelf.onDrop;
    const auto screensChange = f.virtualPlatform.screens.onChange;
    const qsizetype activations = f.virtualPlatform.activationPolicy.activated.size();
    const qsizetype policies = f.virtualPlatform.activationPolicy.policies.size();
    QVERIFY(f.queue.pendingCount() >= 2);
    f.delegate.reset();

    f.queue.runPending();
    screenshot(file("/a.png"));
    shelfDrop();
    cursorDrop({file("/a.txt")});
    screensChange();
    f.shared.notifications().post(Notifications::openPreferences);
    f.shared.notifications().post(Notifications::settingsChanged);
    f.shared.notifications().post(Notifications::appearancePaneActive, Fixture::active(true));
    f.queue.advance(10);
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.size(), activations);
    QCOMPARE(f.virtualPlatform.activationPolicy.policies.size(), policies);
    QCOMPARE(f.panels.ordersFront, 0);
}

PARKLET_TEST(AppDelegateTest)
#include "AppDelegateTest.moc"
