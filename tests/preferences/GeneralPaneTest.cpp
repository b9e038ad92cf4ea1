// SPDX-License-Identifier: MIT
#include "preferences/GeneralPane.h"

#include "preferences/Controls.h"
#include "tests/preferences/Fixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

class GeneralPaneTest : public QObject {
    Q_OBJECT

private slots:
    void the_controls_stand_in_order_with_their_titles();
    void the_stack_is_24_points_from_the_edges_with_10_points_between_views();
    void every_view_begins_at_the_right_where_the_language_does();
    void a_fresh_installation_shows_the_defaults();
    void the_controls_show_what_is_stored();
    void a_toggle_is_stored_at_once_data();
    void a_toggle_is_stored_at_once();
    void start_at_login_registers_and_unregisters_the_login_item();
    void a_failing_registration_keeps_the_users_choice();
    void only_start_at_login_touches_the_login_item();
    void a_check_box_bound_to_nothing_changes_nothing();
    void the_drag_mode_stores_its_index_and_posts_nothing();
    void choosing_the_drag_mode_shown_stores_it();
    void a_drag_mode_without_a_title_shows_none_and_stays_stored();
    void values_of_the_wrong_type_show_as_the_defaults();
    void a_store_that_cannot_be_written_keeps_its_values();
    void the_pane_works_by_keyboard_from_top_to_bottom();
    void every_control_has_its_label_as_accessible_name();
};

namespace {

struct PaneFixture : Fixture {
    GeneralPane &load()
    {
        pane = &show(std::make_unique<GeneralPane>(settings, virtualPlatform.loginItem, notifications));
        return *pane;
    }

    QCheckBox *box(const QString &key) const { return pane->findChild<QCheckBox *>(key); }
    QComboBox *dragMode() const { return pane->findChild<QComboBox *>(); }

    GeneralPane *pane = nullptr;
};

const QStringList kCheckBoxKeys = {Settings::launchAtLogin.key, Settings::showMenuBarIcon.key,
                                   Settings::showDockIcon.key, Settings::removeItemsWhenDraggedOut.key,
                                   Settings::autoAddScreenshots.key};

// The views of the stack from top to bottom.
QList<QWidget *> stackedViews(const QWidget &pane)
{
    QList<QWidget *> views = pane.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    std::sort(views.begin(), views.end(), [](const QWidget *a, const QWidget *b) { return a->y() < b->y(); });
    return views;
}

QString describe(QWidget *view)
{
    if (qobject_cast<Separator *>(view))
        return u"separator"_s;
    if (auto *label = qobject_cast<QLabel *>(view))
        return u"label "_s + label->text();
    if (auto *box = qobject_cast<QCheckBox *>(view))
        return u"check box "_s + box->text();
    if (auto *popUp = qobject_cast<QComboBox *>(view)) {
        QStringList titles;
        for (int i = 0; i < popUp->count(); ++i)
            titles.append(popUp->itemText(i));
        return u"pop-up "_s + titles.join(QLatin1Char('|'));
    }
    return u"something else"_s;
}

} // namespace

void GeneralPaneTest::the_controls_stand_in_order_with_their_titles()
{
    PaneFixture f;
    QStringList shown;
    for (QWidget *view : stackedViews(f.load()))
        shown.append(describe(view));
    QCOMPARE(shown, QStringList({u"label General"_s, u"separator"_s, u"check box Start at login"_s,
                                 u"check box Show menu bar icon"_s, u"check box Show Dock icon"_s, u"separator"_s,
                                 u"check box Remove items when dragged out"_s, u"label Drag mode"_s,
                                 u"pop-up Copy files|Move files|Create alias"_s, u"separator"_s,
                                 u"check box Automatically add new screenshots"_s}));
}

void GeneralPaneTest::the_stack_is_24_points_from_the_edges_with_10_points_between_views()
{
    PaneFixture f;
    const QWidget &pane = f.load();
    const QList<QWidget *> views = stackedViews(pane);
    QCOMPARE(views.first()->y(), 24);
    for (int i = 0; i < views.size(); ++i) {
        QCOMPARE(views.at(i)->x(), 24);
        if (qobject_cast<Separator *>(views.at(i)))
            QCOMPARE(views.at(i)->width(), pane.width() - 48);
        else
            QCOMPARE(views.at(i)->width(), views.at(i)->sizeHint().width());
        if (i > 0)
            QCOMPARE(views.at(i)->y() - views.at(i - 1)->geometry().bottom() - 1, 10);
    }
    for (const QLabel *label : pane.findChildren<QLabel *>())
        QCOMPARE(label->font().pixelSize(), 13);
}

void GeneralPaneTest::every_view_begins_at_the_right_where_the_language_does()
{
    PaneFixture f;
    const QWidget &pane = f.load();
    f.window->setLayoutDirection(Qt::RightToLeft);
    QCoreApplication::sendPostedEvents();
    for (QWidget *view : stackedViews(pane)) {
        QVERIFY2(view->geometry().right() + 1 == pane.width() - 24, qPrintable(describe(view)));
        if (!qobject_cast<Separator *>(view))
            QCOMPARE(view->width(), view->sizeHint().width());
    }
}

void GeneralPaneTest::a_fresh_installation_shows_the_defaults()
{
    PaneFixture f;
    f.load();
    QCOMPARE(f.box(Settings::launchAtLogin.key)->isChecked(), false);
    QCOMPARE(f.box(Settings::showMenuBarIcon.key)->isChecked(), true);
    QCOMPARE(f.box(Settings::showDockIcon.key)->isChecked(), false);
    QCOMPARE(f.box(Settings::removeItemsWhenDraggedOut.key)->isChecked(), true);
    QCOMPARE(f.box(Settings::autoAddScreenshots.key)->isChecked(), true);
    QCOMPARE(f.dragMode()->currentText(), u"Copy files"_s);
    QVERIFY(f.virtualPlatform.userDefaults.writes.isEmpty());
    QVERIFY(f.posts.isEmpty());
}

void GeneralPaneTest::the_controls_show_what_is_stored()
{
    PaneFixture f;
    for (const bool on : {true, false}) {
        for (const QString &key : kCheckBoxKeys)
            f.values.insert(key, on);
        f.values.insert(Settings::dragMode.key, on ? 1.0 : 2.0);
        f.load();
        for (const QString &key : kCheckBoxKeys)
            QCOMPARE(f.box(key)->isChecked(), on);
        QCOMPARE(f.dragMode()->currentText(), on ? u"Move files"_s : u"Create alias"_s);
    }
}

void GeneralPaneTest::a_toggle_is_stored_at_once_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("posts");
    QTest::newRow("login") << Settings::launchAtLogin.key << 0;
    QTest::newRow("menu bar icon") << Settings::showMenuBarIcon.key << 1;
    QTest::newRow("Dock icon") << Settings::showDockIcon.key << 1;
    QTest::newRow("removal") << Settings::removeItemsWhenDraggedOut.key << 0;
    QTest::newRow("screenshots") << Settings::autoAddScreenshots.key << 0;
}

void GeneralPaneTest::a_toggle_is_stored_at_once()
{
    QFETCH(const QString, key);
    QFETCH(const int, posts);
    PaneFixture f;
    f.load();
    const bool was = f.box(key)->isChecked();

    f.box(key)->click();
    QCOMPARE(f.stored(key), QVariant(!was));
    QCOMPARE(f.stored(key).typeId(), static_cast<int>(QMetaType::Bool));
    QCOMPARE(f.virtualPlatform.userDefaults.writes, QStringList{key});
    QCOMPARE(f.settingsChangedPosts(), posts);
    QVERIFY(posts == 0 || f.storedAtLastPost(key) == QVariant(!was));

    f.box(key)->click();
    QCOMPARE(f.stored(key), QVariant(was));
    QCOMPARE(f.stored(key).typeId(), static_cast<int>(QMetaType::Bool));
    QCOMPARE(f.settingsChangedPosts(), 2 * posts);

    f.values.insert(key, !was);
    f.load();
    QCOMPARE(f.box(key)->isChecked(), !was);
}

void GeneralPaneTest::start_at_login_registers_and_unregisters_the_login_item()
{
    PaneFixture f;
    f.load();
    f.box(Settings::launchAtLogin.key)->click();
    QVERIFY(f.virtualPlatform.loginItem.enabled);
    f.box(Settings::launchAtLogin.key)->click();
    QVERIFY(!f.virtualPlatform.loginItem.enabled);
    QCOMPARE(f.virtualPlatform.loginItem.calls, QStringList({u"enable"_s, u"disable"_s}));
    QVERIFY(f.posts.isEmpty());
}

void GeneralPaneTest::a_failing_registration_keeps_the_users_choice()
{
    PaneFixture f;
    f.virtualPlatform.loginItem.fails = true;
    f.load();
    f.box(Settings::launchAtLogin.key)->click();
    QCOMPARE(f.stored(Settings::launchAtLogin.key), QVariant(true));
    QVERIFY(f.box(Settings::launchAtLogin.key)->isChecked());
    QVERIFY(f.virtualPlatform.alerts.shown.isEmpty());
    f.box(Settings::launchAtLogin.key)->click();
    QCOMPARE(f.stored(Settings::launchAtLogin.key), QVariant(false));
    QCOMPARE(f.virtualPlatform.loginItem.calls, QStringList({u"enable"_s, u"disable"_s}));
}

void GeneralPaneTest::only_start_at_login_touches_the_login_item()
{
    PaneFixture f;
    f.load();
    for (const QString &key : kCheckBoxKeys.mid(1))
        f.box(key)->click();
    QVERIFY(f.virtualPlatform.loginItem.calls.isEmpty());
}

void GeneralPaneTest::a_check_box_bound_to_nothing_changes_nothing()
{
    PaneFixture f;
    QCheckBox stranger;
    stranger.setChecked(true);
    f.load().toggleChanged(&stranger);
    QVERIFY(f.virtualPlatform.userDefaults.writes.isEmpty());
    QVERIFY(f.posts.isEmpty());
    QVERIFY(f.virtualPlatform.loginItem.calls.isEmpty());
}

void GeneralPaneTest::the_drag_mode_stores_its_index_and_posts_nothing()
{
    PaneFixture f;
    f.load();
    for (const int index : {1, 2}) {
        QTest::keyClick(f.dragMode(), Qt::Key_Down);
        QCOMPARE(f.stored(Settings::dragMode.key), QVariant(index));
        QCOMPARE(f.stored(Settings::dragMode.key).typeId(), static_cast<int>(QMetaType::Int));
    }
    QCOMPARE(f.dragMode()->currentText(), u"Create alias"_s);
    QTest::keyClick(f.dragMode(), Qt::Key_Home);
    QCOMPARE(f.stored(Settings::dragMode.key), QVariant(0));
    QVERIFY(f.posts.isEmpty());
}

void GeneralPaneTest::choosing_the_drag_mode_shown_stores_it()
{
    PaneFixture f;
    f.load();
    emit f.dragMode()->activated(f.dragMode()->currentIndex());
    QCOMPARE(f.stored(Settings::dragMode.key), QVariant(0));
    QCOMPARE(f.virtualPlatform.userDefaults.writes, QStringList{Settings::dragMode.key});
}

void GeneralPaneTest::a_drag_mode_without_a_title_shows_none_and_stays_stored()
{
    PaneFixture f;
    // A value that cannot be an index counts as 0 for all readers.
    for (const auto &[value, index] : {std::pair(5.0, -1), {-1.0, -1}, {1e300, 0}}) {
        f.values.insert(Settings::dragMode.key, value);
        f.load();
        QCOMPARE(f.dragMode()->currentIndex(), index);
        QCOMPARE(f.stored(Settings::dragMode.key), QVariant(value));
    }
    QVERIFY(f.virtualPlatform.userDefaults.writes.isEmpty());
}

void GeneralPaneTest::values_of_the_wrong_type_show_as_the_defaults()
{
    PaneFixture f;
    for (const QString &key : kCheckBoxKeys + QStringList{Settings::dragMode.key})
        f.values.insert(key, u"yes"_s);
    f.load();
    QCOMPARE(f.box(Settings::launchAtLogin.key)->isChecked(), false);
    QCOMPARE(f.box(Settings::showMenuBarIcon.key)->isChecked(), true);
    QCOMPARE(f.box(Settings::showDockIcon.key)->isChecked(), false);
    QCOMPARE(f.box(Settings::removeItemsWhenDraggedOut.key)->isChecked(), true);
    QCOMPARE(f.box(Settings::autoAddScreenshots.key)->isChecked(), true);
    QCOMPARE(f.dragMode()->currentIndex(), 0);
    QVERIFY(f.virtualPlatform.userDefaults.writes.isEmpty());
}

void GeneralPaneTest::a_store_that_cannot_be_written_keeps_its_values()
{
    PaneFixture f;
    f.virtualPlatform.userDefaults.writable = false;
    f.load();
    for (const QString &key : kCheckBoxKeys)
        f.box(key)->click();
    QTest::keyClick(f.dragMode(), Qt::Key_Down);
    QVERIFY(f.values.isEmpty());
    // The stored value is applied, not the state of the check box.
    QCOMPARE(f.virtualPlatform.loginItem.calls, QStringList{u"disable"_s});

    f.load();
    QCOMPARE(f.box(Settings::launchAtLogin.key)->isChecked(), false);
    QCOMPARE(f.box(Settings::showMenuBarIcon.key)->isChecked(), true);
    QCOMPARE(f.dragMode()->currentIndex(), 0);
}

void GeneralPaneTest::the_pane_works_by_keyboard_from_top_to_bottom()
{
    PaneFixture f;
    f.load();
    f.window->activateWindow();
    QList<QWidget *> visited;
    f.box(Settings::launchAtLogin.key)->setFocus();
    for (int i = 0; i < 6; ++i) {
        visited.append(f.window->focusWidget());
        QTest::keyClick(f.window->focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(visited,
             QList<QWidget *>({f.box(Settings::launchAtLogin.key), f.box(Settings::showMenuBarIcon.key),
                               f.box(Settings::showDockIcon.key), f.box(Settings::removeItemsWhenDraggedOut.key),
                               f.dragMode(), f.box(Settings::autoAddScreenshots.key)}));
    QTest::keyClick(visited.at(2), Qt::Key_Space);
    QCOMPARE(f.stored(Settings::showDockIcon.key), QVariant(true));
}

void GeneralPaneTest::every_control_has_its_label_as_accessible_name()
{
    PaneFixture f;
    const QWidget &pane = f.load();
    QCOMPARE(labelWith(pane, u"Drag mode"_s)->buddy(), f.dragMode());
    QCOMPARE(f.dragMode()->accessibleName(), u"Drag mode"_s);
    for (const QString &key : kCheckBoxKeys)
        QVERIFY(!f.box(key)->text().isEmpty());
}

PARKLET_TEST(GeneralPaneTest)
#include "GeneralPaneTest.moc"
