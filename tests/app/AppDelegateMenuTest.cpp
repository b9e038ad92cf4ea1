// SPDX-License-Identifier: MIT
#include "app/StatusMenu.h"
#include "settings/BuildInfo.h"
#include "shelf/DropViews.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfStackView.h"
#include "shelf/ShelfViews.h"
#include "tests/app/AppFixture.h"
#include "tests/app/RunningFixture.h"
#include "tests/support/InChild.h"
#include "tests/support/TestProgram.h"
#include "updates/BoundedFetch.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

// The commands of the status menu and of the launcher: the shelf, the clipboard, the preferences, updates, the login
// item.
class AppDelegateMenuTest : public QObject {
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
    void a_right_click_anywhere_on_the_shelf_asks_for_its_menu();
    void the_shelfs_menu_hides_it_and_opens_the_preferences();

    void the_clipboards_files_are_added_in_order_and_the_shelf_shows();
    void a_visible_shelf_is_not_shown_again_for_the_clipboard();
    void the_clipboard_brings_back_a_shelf_that_fades_out();
    void a_clipboard_without_files_does_nothing();
    void the_files_of_a_clipboard_that_answers_late_are_added_then();
    void a_delegate_that_is_gone_adds_nothing();

    void launch_at_login_changes_the_setting_the_item_and_the_check_mark();
    void launch_at_login_chosen_twice_leaves_everything_as_it_was();
    void launch_at_login_that_is_refused_stays_as_the_user_set_it();
    void launch_at_login_without_a_status_item_changes_the_setting();
    void a_check_mark_does_not_follow_the_setting_until_the_menu_is_rebuilt();
    void a_menu_that_waits_for_its_status_item_is_dropped_with_it();
};

namespace {

using Fixture = RunningFixture;

} // namespace

void AppDelegateMenuTest::the_status_item_shows_the_tray_symbol_and_the_menu()
{
    Fixture f;
    QVERIFY(f.item());
    QCOMPARE(f.virtualPlatform.statusBar.created, 1);
    QCOMPARE(f.item()->symbol, u"tray.and.arrow.down"_s);
    QCOMPARE(f.item()->description, u"Parklet"_s);
    QVERIFY(f.item()->menu);
}

void AppDelegateMenuTest::the_status_item_is_absent_while_the_setting_is_off()
{
    Fixture f({{Settings::showMenuBarIcon.key, false}});
    QVERIFY(!f.item());
    QCOMPARE(f.virtualPlatform.statusBar.created, 0);
}

void AppDelegateMenuTest::the_status_menu_holds_its_items_in_their_order()
{
    Fixture f;
    QStringList items;
    for (const QAction *action : f.menuItems()) {
        QString item = action->isSeparator() ? u"-"_s : action->text();
        if (!action->isEnabled())
            item += u" (disabled)"_s;
        if (action->isCheckable())
            item += u" (checkable)"_s;
        if (!action->shortcut().isEmpty())
            item += QLatin1Char(' ') + action->shortcut().toString(QKeySequence::PortableText);
        QVERIFY(!action->menu());
        items.append(item);
    }
    const QString separator = u"-"_s;
    QCOMPARE(items,
             QStringList({u"Parklet (disabled)"_s, separator, u"Add From Clipboard"_s, separator, u"Show Shelf"_s,
                          separator, u"Preferences\u2026 Ctrl+,"_s, u"Check for Updates\u2026"_s, u"More from Orvane"_s,
                          separator, u"Launch at Login (checkable)"_s, separator, u"Quit Parklet Ctrl+Q"_s}));
}

void AppDelegateMenuTest::the_check_mark_tells_whether_the_login_item_is_wanted()
{
    Fixture off;
    QVERIFY(!off.isChecked());
    Fixture on({{Settings::launchAtLogin.key, true}});
    QVERIFY(on.isChecked());
}

void AppDelegateMenuTest::the_shelf_item_toggles_and_keeps_its_title()
{
    Fixture f;
    const QString title = u"Show Shelf"_s;
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

void AppDelegateMenuTest::the_shelf_item_brings_back_a_shelf_that_fades_out()
{
    Fixture f;
    f.fadeOut();
    f.choose(u"Show Shelf"_s);
    QVERIFY(f.comesBack());
}

void AppDelegateMenuTest::the_preferences_item_shows_the_window_in_front()
{
    Fixture f;
    QVERIFY(!f.shared.isPreferencesWindowVisible());
    f.choose(u"Preferences\u2026"_s);
    QVERIFY(f.shared.isPreferencesWindowVisible());
    const auto &activated = f.virtualPlatform.activationPolicy.activated;
    QCOMPARE(activated.size(), 1);
    QCOMPARE(activated.first().data(), f.shared.preferences().window());
    // There is one window only, which comes to the front again.
    f.choose(u"Preferences\u2026"_s);
    QCOMPARE(activated.size(), 2);
    QCOMPARE(activated.last().data(), activated.first().data());
}

void AppDelegateMenuTest::the_updates_item_asks_for_a_check()
{
    Fixture f;
    // A local address where no server listens.
    f.shared.versionURL = QUrl(u"http://127.0.0.1:1/version.json"_s);
    QVERIFY(!f.shared.updateChecker().findChild<BoundedFetch *>());
    f.choose(u"Check for Updates\u2026"_s);
    QVERIFY(f.shared.updateChecker().findChild<BoundedFetch *>());
}

void AppDelegateMenuTest::the_more_item_opens_the_makers_page()
{
    Fixture f;
    f.choose(u"More from Orvane"_s);
    QCOMPARE(f.virtualPlatform.workspace.opened, QList{BuildInfo::moreAppsURL()});
}

void AppDelegateMenuTest::a_malformed_address_of_the_build_stops_the_program_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<QUrl>("address");
    QTest::addColumn<bool>("stops");
    const QUrl malformed(u"https://orvane.example:port/"_s, QUrl::StrictMode);
    const QUrl whole(u"http://127.0.0.1:1/version.json"_s);
    const QString more = u"More from Orvane"_s;
    const QString updates = u"Check for Updates\u2026"_s;
    QTest::newRow("no page of the maker") << more << QUrl() << true;
    QTest::newRow("a malformed page of the maker") << more << malformed << true;
    QTest::newRow("a page of the maker") << more << whole << false;
    QTest::newRow("no version record") << updates << QUrl() << true;
    QTest::newRow("a malformed version record") << updates << malformed << true;
    QTest::newRow("a version record") << updates << whole << false;
}

void AppDelegateMenuTest::a_malformed_address_of_the_build_stops_the_program()
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

void AppDelegateMenuTest::the_quit_item_ends_the_application()
{
    Fixture f;
    constexpr int kNotQuit = 1;
    QTimer::singleShot(0, &f.shelf, [&f] { f.choose(u"Quit Parklet"_s); });
    QTimer::singleShot(10'000, &f.shelf, [] { QCoreApplication::exit(kNotQuit); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

void AppDelegateMenuTest::the_launchers_actions_do_what_their_names_say()
{
    // As on a desktop without a tray.
    Fixture f({{Settings::showMenuBarIcon.key, false}});
    f.shared.versionURL = QUrl(u"http://127.0.0.1:1/version.json"_s);
    f.delegate->performAction(u"nonsense"_s);
    QVERIFY(!f.shelf.isVisible());

    f.delegate->performAction(u"show-shelf"_s);
    QVERIFY(f.shelf.isVisible());
    f.delegate->performAction(u"show-shelf"_s);
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
    // A second start shows it and never hides it.
    f.delegate->showShelf();
    f.delegate->showShelf();
    f.queue.advance(1);
    QVERIFY(f.shelf.isVisible());
    f.virtualPlatform.generalPasteboard.urls = {file("/a.txt")};
    QVERIFY(f.shelf.items.isEmpty());
    f.delegate->performAction(u"add-from-clipboard"_s);
    QCOMPARE(f.shelf.items, QList{file("/a.txt")});
    QVERIFY(!f.shared.isPreferencesWindowVisible());
    f.delegate->performAction(u"preferences"_s);
    QVERIFY(f.shared.isPreferencesWindowVisible());
    QVERIFY(!f.shared.updateChecker().findChild<BoundedFetch *>());
    f.delegate->performAction(u"check-for-updates"_s);
    QVERIFY(f.shared.updateChecker().findChild<BoundedFetch *>());
}

void AppDelegateMenuTest::a_right_click_anywhere_on_the_shelf_asks_for_its_menu()
{
    Fixture f({{Settings::showMenuBarIcon.key, false}});
    f.shelf.addItem(file("/a.txt"));
    f.delegate->showShelf();
    QVERIFY(f.shelf.onContextMenu != nullptr);
    QList<QPoint> places;
    f.shelf.onContextMenu = [&places](const QPoint &place) { places.append(place); };
    ShelfItemView *tile = f.shelf.stackView->arrangedSubviews().first();
    for (QWidget *view : {static_cast<QWidget *>(f.shelf.container), f.shelf.scrollView->viewport(),
                          static_cast<QWidget *>(tile), static_cast<QWidget *>(f.shelf.trashBtn)}) {
        const QPoint place = view->mapToGlobal(QPoint(2, 2));
        QContextMenuEvent click(QContextMenuEvent::Mouse, QPoint(2, 2), place);
        QApplication::sendEvent(view, &click);
        QCOMPARE(places, QList<QPoint>{place});
        places.clear();
    }
    // It does nothing to the files.
    QCOMPARE(f.shelf.items.size(), 1);
    QVERIFY(f.shelf.selectedViews.isEmpty());
}

void AppDelegateMenuTest::the_shelfs_menu_hides_it_and_opens_the_preferences()
{
    Fixture f({{Settings::showMenuBarIcon.key, false}});
    f.delegate->showShelf();
    const auto menu = makeShelfMenu(*f.delegate);
    QMap<QString, QAction *> items;
    QStringList titles;
    for (QAction *action : menu->actions()) {
        if (action->isSeparator())
            continue;
        titles.append(action->text());
        items.insert(action->text(), action);
    }
    QCOMPARE(titles, (QStringList{u"Hide Shelf"_s, u"Preferences…"_s, u"Quit Parklet"_s}));
    items[u"Preferences…"_s]->trigger();
    QVERIFY(f.shared.isPreferencesWindowVisible());
    items[u"Hide Shelf"_s]->trigger();
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateMenuTest::the_launcher_can_quit()
{
    Fixture f;
    constexpr int kNotQuit = 1;
    QTimer::singleShot(0, &f.shelf, [&f] { f.delegate->performAction(u"quit"_s); });
    QTimer::singleShot(10'000, &f.shelf, [] { QCoreApplication::exit(kNotQuit); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

void AppDelegateMenuTest::the_clipboards_files_are_added_in_order_and_the_shelf_shows()
{
    Fixture f;
    const QList<QUrl> urls = {file("/z.txt"), file("/a.txt"), file("/m.txt")};
    f.virtualPlatform.generalPasteboard.urls = urls;
    qsizetype addedBefore = 0;
    f.virtualPlatform.log.onCall = [&](const QString &) { addedBefore = f.shelf.items.size(); };
    f.choose(u"Add From Clipboard"_s);
    QCOMPARE(f.shelf.items, urls);
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.alpha(), 0.0); // it fades in
    QCOMPARE(f.panels.ordersFront, 1);
    QCOMPARE(addedBefore, 3);
}

void AppDelegateMenuTest::a_visible_shelf_is_not_shown_again_for_the_clipboard()
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

void AppDelegateMenuTest::the_clipboard_brings_back_a_shelf_that_fades_out()
{
    Fixture f;
    f.fadeOut();
    f.virtualPlatform.generalPasteboard.urls = {file("/a.txt")};
    f.choose(u"Add From Clipboard"_s);
    QVERIFY(f.comesBack());
}

void AppDelegateMenuTest::the_files_of_a_clipboard_that_answers_late_are_added_then()
{
    Fixture f;
    f.virtualPlatform.generalPasteboard.isMute = true;
    f.choose(u"Add From Clipboard"_s);
    QCOMPARE(f.virtualPlatform.generalPasteboard.asked.size(), 1);
    QVERIFY(!f.shelf.isVisible());
    f.virtualPlatform.generalPasteboard.asked.constFirst()({file("/a.txt")});
    QCOMPARE(f.shelf.items, QList{file("/a.txt")});
    QVERIFY(f.shelf.isVisible());
}

void AppDelegateMenuTest::a_delegate_that_is_gone_adds_nothing()
{
    Fixture f;
    f.virtualPlatform.generalPasteboard.isMute = true;
    f.delegate->addFromClipboard();
    const int before = f.panels.ordersFront;
    f.delegate.reset();
    f.virtualPlatform.generalPasteboard.asked.constFirst()({file("/a.txt")});
    QCOMPARE(f.panels.ordersFront, before);
}

void AppDelegateMenuTest::a_clipboard_without_files_does_nothing()
{
    Fixture f;
    f.choose(u"Add From Clipboard"_s);
    QVERIFY(f.shelf.items.isEmpty());
    QVERIFY(!f.shelf.isVisible());
    QCOMPARE(f.panels.ordersFront, 0);
    QVERIFY(f.virtualPlatform.alerts.shown.isEmpty());
}

void AppDelegateMenuTest::launch_at_login_changes_the_setting_the_item_and_the_check_mark()
{
    Fixture f;
    const QMenu *before = f.item()->menu.get();
    f.choose(Fixture::kLaunchAtLogin);
    QCOMPARE(f.values.value(Settings::launchAtLogin.key), QVariant(true));
    QCOMPARE(f.virtualPlatform.loginItem.calls, QStringList{u"enable"_s});
    QVERIFY(f.isChecked());
    f.queue.runPending();
    QVERIFY(f.isChecked());
    QVERIFY(f.item()->menu.get() != before);
    QCOMPARE(f.menuItems().size(), 13);
    QCOMPARE(f.virtualPlatform.statusBar.created, 1);
}

void AppDelegateMenuTest::launch_at_login_chosen_twice_leaves_everything_as_it_was()
{
    Fixture f;
    f.choose(Fixture::kLaunchAtLogin);
    f.queue.runPending();
    f.choose(Fixture::kLaunchAtLogin);
    f.queue.runPending();
    QCOMPARE(f.values.value(Settings::launchAtLogin.key), QVariant(false));
    QCOMPARE(f.virtualPlatform.loginItem.calls, QStringList({u"enable"_s, u"disable"_s}));
    QVERIFY(!f.virtualPlatform.loginItem.enabled);
    QVERIFY(!f.isChecked());

    // The second choice also counts before the menu has been rebuilt.
    f.choose(Fixture::kLaunchAtLogin);
    f.choose(Fixture::kLaunchAtLogin);
    f.queue.runPending();
    QVERIFY(!f.virtualPlatform.loginItem.enabled);
    QVERIFY(!f.isChecked());
}

void AppDelegateMenuTest::launch_at_login_that_is_refused_stays_as_the_user_set_it()
{
    Fixture f;
    f.virtualPlatform.loginItem.fails = true;
    f.choose(Fixture::kLaunchAtLogin);
    f.queue.runPending();
    QCOMPARE(f.values.value(Settings::launchAtLogin.key), QVariant(true));
    QVERIFY(f.isChecked());
    QVERIFY(f.virtualPlatform.alerts.shown.isEmpty());
}

void AppDelegateMenuTest::launch_at_login_without_a_status_item_changes_the_setting()
{
    Fixture f({{Settings::showMenuBarIcon.key, false}});
    f.delegate->toggleLaunchAtLogin();
    f.queue.runPending();
    QCOMPARE(f.values.value(Settings::launchAtLogin.key), QVariant(true));
    QVERIFY(f.virtualPlatform.loginItem.enabled);
    QVERIFY(!f.item());
}

void AppDelegateMenuTest::a_check_mark_does_not_follow_the_setting_until_the_menu_is_rebuilt()
{
    Fixture f;
    const QMenu *menu = f.item()->menu.get();
    f.change(Settings::launchAtLogin.key, true);
    f.queue.runPending();
    QCOMPARE(f.item()->menu.get(), menu);
    QVERIFY(!f.isChecked());

    // A new status item shows the stored setting.
    f.change(Settings::showMenuBarIcon.key, false);
    f.change(Settings::showMenuBarIcon.key, true);
    QVERIFY(f.isChecked());

    // The menu item inverts the setting, not its own check mark.
    f.change(Settings::launchAtLogin.key, false);
    QVERIFY(f.isChecked());
    f.choose(Fixture::kLaunchAtLogin);
    f.queue.runPending();
    QCOMPARE(f.values.value(Settings::launchAtLogin.key), QVariant(true));
    QVERIFY(f.isChecked());
}

void AppDelegateMenuTest::a_menu_that_waits_for_its_status_item_is_dropped_with_it()
{
    Fixture f;
    f.choose(Fixture::kLaunchAtLogin);
    f.change(Settings::showMenuBarIcon.key, false);
    f.queue.runPending();
    QVERIFY(!f.item());
    QCOMPARE(f.virtualPlatform.statusBar.created, 1);
}

PARKLET_TEST(AppDelegateMenuTest)
#include "AppDelegateMenuTest.moc"
