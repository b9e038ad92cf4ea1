// SPDX-License-Identifier: MIT
#include "preferences/AppExclusionListView.h"

#include "preferences/Controls.h"
#include "tests/preferences/Fixture.h"
#include "tests/preferences/ListFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

class AppExclusionListViewTest : public QObject {
    Q_OBJECT

private slots:
    void the_list_fills_the_view_above_two_small_buttons();
    void an_installed_application_shows_its_own_name_and_icon();
    void an_unknown_application_shows_its_identifier_and_a_question_mark();
    void without_the_symbol_the_icon_is_empty();
    void an_application_without_name_or_icon_still_shows_something();
    void the_open_panel_starts_where_the_applications_are();
    void a_press_of_the_button_is_over_before_the_open_panel_comes();
    void a_second_press_opens_no_second_panel();
    void adding_appends_and_calls_back_once();
    void adding_leaves_the_selection_where_it_is();
    void the_callback_comes_before_the_list_shows_the_change();
    void adding_the_same_application_twice_leaves_one();
    void identifiers_are_compared_exactly();
    void a_cancelled_panel_adds_nothing();
    void a_file_that_is_no_application_is_refused_in_silence();
    void a_view_that_goes_while_the_panel_is_open_is_left_alone();
    void removing_takes_the_selected_application_away_and_calls_back_once();
    void removing_without_a_selection_does_nothing();
    void removing_the_last_entry_calls_back_with_an_empty_list();
    void after_a_removal_the_next_row_is_selected();
    void after_the_last_row_is_removed_none_is_selected();
    void one_row_is_selected_at_a_time();
    void stored_duplicates_stay_until_they_are_removed();
    void without_a_callback_changes_are_harmless();
    void a_list_of_5000_applications_looks_up_only_what_is_seen();
    void a_changed_row_leaves_the_others_looked_up();
    void the_question_mark_follows_the_palette();
    void the_list_works_by_keyboard();
};

void AppExclusionListViewTest::the_list_fills_the_view_above_two_small_buttons()
{
    ListFixture f;
    AppExclusionListView &view = f.load({});
    const QRect list = frameIn(view, *view.tableView);
    const QRect add = frameIn(view, *view.addBtn);
    const QRect remove = frameIn(view, *view.removeBtn);
    QCOMPARE(list.topLeft(), QPoint(0, 0));
    QCOMPARE(list.width(), view.width());
    QCOMPARE(add.y() - list.bottom() - 1, 4);
    QCOMPARE(add.x(), 0);
    QCOMPARE(add.bottom(), view.rect().bottom());
    QCOMPARE(remove.x() - add.right() - 1, 2);
    QCOMPARE(remove.y(), add.y());
    QCOMPARE(add.size(), remove.size());
    QCOMPARE(add.width(), add.height());
    QCOMPARE(view.addBtn->text(), u"+"_s);
    QCOMPARE(view.removeBtn->text(), QString(QChar(0x2212)));
    QCOMPARE(view.addBtn->accessibleDescription(), u"Add application"_s);
    QCOMPARE(view.removeBtn->accessibleDescription(), u"Remove application"_s);
    QCOMPARE(view.tableView->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
    QVERIFY(view.tableView->frameShape() != QFrame::NoFrame);
}

void AppExclusionListViewTest::an_installed_application_shows_its_own_name_and_icon()
{
    VirtualPlatform platform;
    platform.workspace.applications.insert(kFirst, Application{kFirst, u"First"_s, square(Qt::green)});
    const AppLabel label = resolveApp(kFirst, platform.workspace, platform.appearance, Qt::gray);
    QCOMPARE(label.name, u"First"_s);
    QCOMPARE(label.icon.pixmap(18).toImage().pixelColor(9, 9), QColor(Qt::green));
}

void AppExclusionListViewTest::an_unknown_application_shows_its_identifier_and_a_question_mark()
{
    VirtualPlatform platform;
    const AppLabel label = resolveApp(kFirst, platform.workspace, platform.appearance, Qt::magenta);
    QCOMPARE(label.name, kFirst);
    QCOMPARE(platform.appearance.symbolRequests,
             (QList<std::pair<QString, QColor>>{{u"questionmark.app"_s, Qt::magenta}}));
    QVERIFY(!label.icon.isNull());
    QVERIFY(QFile::exists(u":/symbols/questionmark.app.svg"_s));
}

void AppExclusionListViewTest::without_the_symbol_the_icon_is_empty()
{
    ListFixture f;
    f.virtualPlatform.appearance.missingSymbols = {u"questionmark.app"_s};
    AppExclusionListView &view = f.load({kFirst});
    QVERIFY(view.tableView->model()->index(0, 0).data(Qt::DecorationRole).value<QIcon>().isNull());
    QVERIFY(!view.grab().isNull());
}

void AppExclusionListViewTest::an_application_without_name_or_icon_still_shows_something()
{
    VirtualPlatform platform;
    platform.workspace.applications.insert(kFirst, Application{kFirst, QString(), QIcon()});
    const AppLabel label = resolveApp(kFirst, platform.workspace, platform.appearance, Qt::gray);
    QCOMPARE(label.name, kFirst);
    QVERIFY(!label.icon.isNull());
}

void AppExclusionListViewTest::the_open_panel_starts_where_the_applications_are()
{
    ListFixture f;
    f.load({});
    f.pressAdd();
    QCOMPARE(f.virtualPlatform.openPanels.shown.size(), 1);
    const OpenPanel &panel = f.virtualPlatform.openPanels.shown.first();
    QCOMPARE(panel.title, u"Add application"_s);
    QCOMPARE(panel.prompt, u"Add"_s);
    QCOMPARE(panel.folders, f.virtualPlatform.workspace.folders);
    QCOMPARE(f.virtualPlatform.openPanels.windows.first().data(), f.window.get());
}

void AppExclusionListViewTest::a_press_of_the_button_is_over_before_the_open_panel_comes()
{
    ListFixture f;
    f.load({});
    f.view->addBtn->click();
    QVERIFY(f.virtualPlatform.openPanels.shown.isEmpty());
    QCoreApplication::sendPostedEvents(f.view, QEvent::MetaCall);
    QCOMPARE(f.virtualPlatform.openPanels.shown.size(), 1);
}

void AppExclusionListViewTest::a_second_press_opens_no_second_panel()
{
    ListFixture f;
    f.load({});
    f.virtualPlatform.openPanels.whileShown = [&f] { f.pressAdd(); };
    f.pressAdd();
    QCOMPARE(f.virtualPlatform.openPanels.shown.size(), 1);
    f.virtualPlatform.openPanels.whileShown = nullptr;
    f.pressAdd();
    QCOMPARE(f.virtualPlatform.openPanels.shown.size(), 2);
}

void AppExclusionListViewTest::adding_appends_and_calls_back_once()
{
    ListFixture f;
    f.load({kFirst});
    f.pick(kSecond);
    QCOMPARE(f.changes, QList<QStringList>({{kFirst, kSecond}}));
    QCOMPARE(f.view->ids, QStringList({kFirst, kSecond}));
    QCOMPARE(f.names(), QStringList({kFirst, kSecond}));
}

void AppExclusionListViewTest::adding_leaves_the_selection_where_it_is()
{
    ListFixture f;
    f.load({kFirst, kSecond});
    f.select(0);
    f.pick(kThird);
    QCOMPARE(f.selectedRows(), QList<int>{0});
    f.view->removeBtn->click();
    QCOMPARE(f.view->ids, QStringList({kSecond, kThird}));

    ListFixture without;
    without.load({kFirst});
    without.pick(kSecond);
    QCOMPARE(without.selectedRows(), QList<int>());
}

void AppExclusionListViewTest::the_callback_comes_before_the_list_shows_the_change()
{
    ListFixture f;
    f.load({kFirst});
    QList<std::pair<int, int>> seen; // the rows in the list, and the announced number of rows
    f.view->onChange = [&](const QStringList &) {
        seen.append({f.view->tableView->model()->rowCount(), static_cast<int>(f.view->ids.size())});
    };
    f.pick(kSecond);
    f.select(0);
    f.view->removeBtn->click();
    QCOMPARE(seen, (QList<std::pair<int, int>>{{1, 2}, {2, 1}}));
    QCOMPARE(f.names(), QStringList{kSecond});
}

void AppExclusionListViewTest::adding_the_same_application_twice_leaves_one()
{
    ListFixture f;
    f.load({});
    f.pick(kFirst);
    f.pick(kFirst);
    QCOMPARE(f.view->ids, QStringList{kFirst});
    QCOMPARE(f.changes.size(), 1);
    QVERIFY(f.virtualPlatform.alerts.shown.isEmpty());
}

void AppExclusionListViewTest::identifiers_are_compared_exactly()
{
    ListFixture f;
    f.load({kFirst});
    f.pick(u"org.First"_s);
    QCOMPARE(f.view->ids, QStringList({kFirst, u"org.First"_s}));
}

void AppExclusionListViewTest::a_cancelled_panel_adds_nothing()
{
    ListFixture f;
    f.load({kFirst});
    f.virtualPlatform.openPanels.choice = {};
    f.pressAdd();
    QVERIFY(f.changes.isEmpty());
    QCOMPARE(f.view->ids, QStringList{kFirst});
}

void AppExclusionListViewTest::a_file_that_is_no_application_is_refused_in_silence()
{
    ListFixture f;
    f.load({});
    f.virtualPlatform.openPanels.choice = QUrl::fromLocalFile(u"/tmp/picture.png"_s);
    f.pressAdd();
    f.pick(QString()); // an application whose identifier is empty
    QVERIFY(f.changes.isEmpty());
    QVERIFY(f.view->ids.isEmpty());
    QVERIFY(f.virtualPlatform.alerts.shown.isEmpty());
}

void AppExclusionListViewTest::a_view_that_goes_while_the_panel_is_open_is_left_alone()
{
    ListFixture f;
    f.load({});
    f.virtualPlatform.workspace.identifiers.insert(QUrl::fromLocalFile(u"/Applications/x"_s), kFirst);
    f.virtualPlatform.openPanels.choice = QUrl::fromLocalFile(u"/Applications/x"_s);
    f.virtualPlatform.openPanels.whileShown = [&f] { f.window.reset(); };
    f.view->addApp();
    QVERIFY(f.changes.isEmpty());
}

void AppExclusionListViewTest::removing_takes_the_selected_application_away_and_calls_back_once()
{
    ListFixture f;
    f.load({kFirst, kSecond, kThird});
    f.select(1);
    f.view->removeBtn->click();
    QCOMPARE(f.changes, QList<QStringList>({{kFirst, kThird}}));
    QCOMPARE(f.view->ids, QStringList({kFirst, kThird}));
    QCOMPARE(f.names(), QStringList({kFirst, kThird}));
}

void AppExclusionListViewTest::removing_without_a_selection_does_nothing()
{
    ListFixture f;
    f.load({kFirst});
    f.view->removeBtn->click();
    QVERIFY(f.changes.isEmpty());
    QCOMPARE(f.view->ids, QStringList{kFirst});
}

void AppExclusionListViewTest::removing_the_last_entry_calls_back_with_an_empty_list()
{
    ListFixture f;
    f.load({kFirst});
    f.select(0);
    f.view->removeBtn->click();
    QCOMPARE(f.changes, QList<QStringList>({QStringList()}));
    f.view->removeBtn->click();
    QCOMPARE(f.changes.size(), 1);
}

void AppExclusionListViewTest::after_a_removal_the_next_row_is_selected()
{
    ListFixture f;
    f.load({kFirst, kSecond, kThird});
    f.select(1);
    f.view->removeBtn->click();
    QCOMPARE(f.selectedRows(), QList<int>{1});
    f.view->removeBtn->click();
    QCOMPARE(f.view->ids, QStringList{kFirst});
}

void AppExclusionListViewTest::after_the_last_row_is_removed_none_is_selected()
{
    ListFixture f;
    f.load({kFirst, kSecond, kThird});
    f.select(2);
    f.view->removeBtn->click();
    QCOMPARE(f.view->ids, QStringList({kFirst, kSecond}));
    QCOMPARE(f.selectedRows(), QList<int>());
    f.view->removeBtn->click();
    QCOMPARE(f.view->ids, QStringList({kFirst, kSecond}));
    QCOMPARE(f.changes.size(), 1);
    // The arrow keys continue from this row.
    QTest::keyClick(f.view->tableView, Qt::Key_Up);
    QCOMPARE(f.selectedRows(), QList<int>{0});
}

void AppExclusionListViewTest::one_row_is_selected_at_a_time()
{
    ListFixture f;
    const QListView &list = *f.load({kFirst, kSecond, kThird}).tableView;
    const auto click = [&list](int row, Qt::KeyboardModifiers modifiers) {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers,
                          list.visualRect(list.model()->index(row, 0)).center());
    };
    click(0, {});
    click(2, Qt::ShiftModifier);
    QCOMPARE(f.selectedRows().size(), 1);
}

void AppExclusionListViewTest::stored_duplicates_stay_until_they_are_removed()
{
    ListFixture f;
    f.load({kFirst, kFirst, kFirst});
    QCOMPARE(f.names().size(), 3);
    f.select(0);
    f.view->removeBtn->click();
    QCOMPARE(f.view->ids, QStringList({kFirst, kFirst}));
    QCOMPARE(f.names(), f.view->ids);
}

void AppExclusionListViewTest::without_a_callback_changes_are_harmless()
{
    ListFixture f;
    f.load({kFirst});
    f.view->onChange = nullptr;
    f.select(0);
    f.view->removeBtn->click();
    QVERIFY(f.names().isEmpty());
}

void AppExclusionListViewTest::a_list_of_5000_applications_looks_up_only_what_is_seen()
{
    ListFixture f;
    QStringList ids;
    for (int i = 0; i < 5000; ++i)
        ids.append(u"org.example.App%1"_s.arg(i));
    AppExclusionListView &view = f.load(ids);
    view.grab();
    const QStringList &lookups = f.virtualPlatform.workspace.applicationLookups;
    const int visibleRows = view.tableView->viewport()->height() / 26 + 2;
    QVERIFY(!lookups.isEmpty());
    QVERIFY2(lookups.size() <= visibleRows, qPrintable(QString::number(lookups.size())));

    view.tableView->scrollToBottom();
    view.grab();
    QVERIFY(lookups.contains(ids.last()));
    QVERIFY2(lookups.size() <= 2 * visibleRows, qPrintable(QString::number(lookups.size())));
    view.grab();
    QVERIFY(lookups.size() <= 2 * visibleRows);
}

void AppExclusionListViewTest::a_changed_row_leaves_the_others_looked_up()
{
    ListFixture f;
    AppExclusionListView &view = f.load({kFirst, kSecond});
    view.grab();
    const auto before = f.virtualPlatform.workspace.applicationLookups;
    f.pick(kThird);
    view.grab();
    QCOMPARE(f.virtualPlatform.workspace.applicationLookups, before + QStringList{kThird});
}

void AppExclusionListViewTest::the_question_mark_follows_the_palette()
{
    ListFixture f;
    AppExclusionListView &view = f.load({kFirst});
    view.grab();
    QPalette palette = view.palette();
    palette.setColor(QPalette::Text, Qt::cyan);
    view.setPalette(palette);
    view.grab();
    QCOMPARE(f.virtualPlatform.appearance.symbolRequests.last(),
             std::pair(u"questionmark.app"_s, secondaryLabelColor(palette, QPalette::Text)));
}

void AppExclusionListViewTest::the_list_works_by_keyboard()
{
    ListFixture f;
    AppExclusionListView &view = f.load({kFirst, kSecond});
    QTest::keyClick(view.tableView, Qt::Key_Down);
    QTest::keyClick(view.tableView, Qt::Key_Down);
    QTest::keyClick(view.removeBtn, Qt::Key_Space);
    QCOMPARE(view.ids, QStringList{kFirst});
}

PARKLET_TEST(AppExclusionListViewTest)
#include "AppExclusionListViewTest.moc"
