// SPDX-License-Identifier: MIT
#include "preferences/BehaviorPane.h"

#include "preferences/AppExclusionListView.h"
#include "preferences/Controls.h"
#include "tests/preferences/Fixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

class BehaviorPaneTest : public QObject {
    Q_OBJECT

private slots:
    void a_long_first_label_stops_8_points_before_its_check_box();
    void the_list_takes_the_height_that_is_left();
    void the_views_keep_the_stated_distances();
    void the_views_are_mirrored_where_the_language_begins_at_the_right();
    void the_controls_have_their_titles_and_items();
    void a_fresh_installation_shows_the_defaults();
    void the_controls_show_what_is_stored();
    void the_check_box_stores_and_enables_the_trigger_at_once();
    void the_check_box_stores_before_the_pane_is_built();
    void a_trigger_is_built_disabled_while_the_shelf_does_not_show_by_itself();
    void the_pop_ups_store_their_index_data();
    void the_pop_ups_store_their_index();
    void choosing_the_item_shown_stores_it_data() { the_pop_ups_store_their_index_data(); }
    void choosing_the_item_shown_stores_it();
    void nothing_here_posts_a_notification();
    void the_list_shows_and_stores_the_excluded_applications();
    void removing_the_last_application_stores_an_empty_array();
    void a_list_that_outlives_the_pane_stores_nothing();
    void values_of_the_wrong_type_or_range_do_no_harm();
    void a_store_that_cannot_be_written_keeps_its_values();
    void the_label_of_the_exclusion_mode_wraps_to_two_lines_at_most();
    void the_exclusion_mode_is_a_small_control();
    void every_control_has_a_label();
    void focus_goes_from_top_to_bottom();
};

namespace {

const QString kAutoShow = u"Automatically show the drop window"_s;
const QString kDoubleClick = u"When double-clicking a shelf file:"_s;
const QString kExclude = u"The Parklet window in the following applications:"_s;

struct PaneFixture : Fixture {
    BehaviorPane &load(const QSize &size = QSize(519, 500))
    {
        pane = &show(std::make_unique<BehaviorPane>(settings, virtualPlatform.platform), size);
        return *pane;
    }

    QCheckBox &autoShow() { return *pane->findChild<QCheckBox *>(Settings::autoShowDropWindow.key); }
    QComboBox &popUp(const QString &key) { return *pane->findChild<QComboBox *>(key); }
    AppExclusionListView &list() { return *pane->findChild<AppExclusionListView *>(); }

    BehaviorPane *pane = nullptr;
};

QStringList titles(const QComboBox &box)
{
    QStringList list;
    for (int i = 0; i < box.count(); ++i)
        list.append(box.itemText(i));
    return list;
}

} // namespace

void BehaviorPaneTest::a_long_first_label_stops_8_points_before_its_check_box()
{
    PaneFixture f;
    const QWidget &pane = f.load(QSize(200, 500));
    const QLabel *label = labelWith(pane, kAutoShow);
    QVERIFY(label->width() < label->sizeHint().width());
    QCOMPARE(label->geometry().right() + 1 + 8, f.autoShow().x());
}

void BehaviorPaneTest::the_list_takes_the_height_that_is_left()
{
    PaneFixture f;
    f.load(QSize(519, 500));
    const QRect list = f.list().geometry();
    f.load(QSize(519, 1000));
    QCOMPARE(f.list().geometry(), list.adjusted(0, 0, 0, 500));
    f.load(QSize(519, 100));
    QCOMPARE(f.list().height(), 0);
}

void BehaviorPaneTest::the_views_keep_the_stated_distances()
{
    PaneFixture f;
    for (const QSize &size : {QSize(519, 500), QSize(399, 420)}) {
        const QWidget &pane = f.load(size);
        const QRect label = labelWith(pane, kAutoShow)->geometry();
        QCOMPARE(label.topLeft(), QPoint(24, 24));
        QCOMPARE(f.autoShow().geometry().right() + 1, size.width() - 24);
        QVERIFY(qAbs(f.autoShow().geometry().center().y() - label.center().y()) <= 1);
        const QRect trigger = f.popUp(Settings::autoShowTrigger.key).geometry();
        QCOMPARE(trigger.y(), label.bottom() + 1 + 12 + 1 + 12);
        QCOMPARE(trigger.x(), 24);
        QCOMPARE(trigger.width(), size.width() - 48);
        const QRect doubleClick = labelWith(pane, kDoubleClick)->geometry();
        QCOMPARE(doubleClick.topLeft(), QPoint(24, trigger.bottom() + 1 + 14 + 1 + 14));
        const QRect doubleClickPopUp = f.popUp(Settings::doubleClickAction.key).geometry();
        QCOMPARE(doubleClickPopUp.x(), doubleClick.right() + 1 + 8);
        QVERIFY(qAbs(doubleClickPopUp.center().y() - doubleClick.center().y()) <= 1);
        const QRect mode = f.popUp(Settings::excludeMode.key).geometry();
        QCOMPARE(mode.topLeft(), QPoint(24, doubleClick.bottom() + 1 + 14 + 1 + 14));
        const QRect exclude = labelWith(pane, kExclude)->geometry();
        QCOMPARE(exclude.x(), mode.right() + 1 + 6);
        QCOMPARE(exclude.right() + 1, size.width() - 24);
        QVERIFY(qAbs(exclude.center().y() - mode.center().y()) <= 1);
        QCOMPARE(f.list().geometry().topLeft(), QPoint(24, mode.bottom() + 1 + 8));
        QCOMPARE(f.list().geometry().bottomRight(), QPoint(size.width() - 24 - 1, size.height() - 24 - 1));
        QVERIFY(f.list().height() > 100);
        const QList<Separator *> separators = pane.findChildren<Separator *>();
        QCOMPARE(separators.size(), 3);
        for (const Separator *separator : separators) {
            QCOMPARE(separator->x(), 24);
            QCOMPARE(separator->size(), QSize(size.width() - 48, 1));
        }
        // No two views overlap.
        QList<QWidget *> views = pane.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        views.removeIf([](const QWidget *view) { return view->isHidden(); });
        QCOMPARE(views.size(), 11);
        for (int i = 0; i < views.size(); ++i) {
            for (int j = 0; j < i; ++j)
                QVERIFY2(!views.at(i)->geometry().intersects(views.at(j)->geometry()),
                         qPrintable(views.at(i)->objectName() + QLatin1Char(' ') + views.at(j)->objectName()));
        }
    }
}

void BehaviorPaneTest::the_views_are_mirrored_where_the_language_begins_at_the_right()
{
    PaneFixture f;
    const QWidget &pane = f.load();
    const QList<QWidget *> views = pane.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    QList<QRect> mirrored;
    for (const QWidget *view : views)
        mirrored.append(QStyle::visualRect(Qt::RightToLeft, pane.rect(), view->geometry()));
    f.window->setLayoutDirection(Qt::RightToLeft);
    for (int i = 0; i < views.size(); ++i) {
        if (!views.at(i)->isHidden())
            QCOMPARE(views.at(i)->geometry(), mirrored.at(i));
    }
    QVERIFY(labelWith(pane, kExclude)->alignment().testFlag(Qt::AlignRight));
}

void BehaviorPaneTest::the_controls_have_their_titles_and_items()
{
    PaneFixture f;
    const QWidget &pane = f.load();
    for (const QString &text : {kAutoShow, kDoubleClick, kExclude}) {
        QVERIFY2(labelWith(pane, text), qPrintable(text));
        QCOMPARE(labelWith(pane, text)->font().pixelSize(), 13);
    }
    QCOMPARE(f.autoShow().text(), QString());
    QCOMPARE(titles(f.popUp(Settings::autoShowTrigger.key)),
             QStringList({u"When you start dragging"_s, u"Near cursor position when you start dragging"_s,
                          u"When dragging towards Parklet's location"_s}));
    QCOMPARE(titles(f.popUp(Settings::doubleClickAction.key)), QStringList({u"Open file"_s, u"Select all"_s}));
    QCOMPARE(titles(f.popUp(Settings::excludeMode.key)), QStringList({u"Hide"_s, u"Show only in"_s}));
}

void BehaviorPaneTest::a_fresh_installation_shows_the_defaults()
{
    PaneFixture f;
    f.load();
    QVERIFY(f.autoShow().isChecked());
    QVERIFY(f.popUp(Settings::autoShowTrigger.key).isEnabled());
    QCOMPARE(f.popUp(Settings::autoShowTrigger.key).currentIndex(), 0);
    QCOMPARE(f.popUp(Settings::doubleClickAction.key).currentText(), u"Select all"_s);
    QCOMPARE(f.popUp(Settings::excludeMode.key).currentText(), u"Hide"_s);
    QVERIFY(f.list().ids.isEmpty());
    QVERIFY(f.virtualPlatform.userDefaults.writes.isEmpty());
}

void BehaviorPaneTest::the_controls_show_what_is_stored()
{
    PaneFixture f;
    f.values = {{Settings::autoShowDropWindow.key, false},
                {Settings::autoShowTrigger.key, double(AutoShowTrigger::WhenNear)},
                {Settings::doubleClickAction.key, double(DoubleClickAction::OpenFile)},
                {Settings::excludeMode.key, double(ExcludeMode::ShowOnlyInListed)},
                {Settings::excludedBundleIDs.key, QVariantList{u"a"_s, u"b"_s}}};
    f.load();
    QVERIFY(!f.autoShow().isChecked());
    QCOMPARE(f.popUp(Settings::autoShowTrigger.key).currentIndex(), 2);
    QCOMPARE(f.popUp(Settings::doubleClickAction.key).currentIndex(), 0);
    QCOMPARE(f.popUp(Settings::excludeMode.key).currentIndex(), 1);
    QCOMPARE(f.list().ids, QStringList({u"a"_s, u"b"_s}));
}

void BehaviorPaneTest::the_check_box_stores_and_enables_the_trigger_at_once()
{
    PaneFixture f;
    f.load();
    f.autoShow().click();
    QCOMPARE(f.stored(Settings::autoShowDropWindow.key), QVariant(false));
    QCOMPARE(f.stored(Settings::autoShowDropWindow.key).typeId(), static_cast<int>(QMetaType::Bool));
    QVERIFY(!f.popUp(Settings::autoShowTrigger.key).isEnabled());
    f.autoShow().click();
    QCOMPARE(f.stored(Settings::autoShowDropWindow.key), QVariant(true));
    QCOMPARE(f.stored(Settings::autoShowDropWindow.key).typeId(), static_cast<int>(QMetaType::Bool));
    QVERIFY(f.popUp(Settings::autoShowTrigger.key).isEnabled());
}

void BehaviorPaneTest::the_check_box_stores_before_the_pane_is_built()
{
    PaneFixture f;
    BehaviorPane pane(f.settings, f.virtualPlatform.platform);
    QCheckBox box;
    box.setChecked(false);
    pane.autoShowChanged(&box);
    QCOMPARE(f.stored(Settings::autoShowDropWindow.key), QVariant(false));
}

void BehaviorPaneTest::a_trigger_is_built_disabled_while_the_shelf_does_not_show_by_itself()
{
    PaneFixture f;
    f.values.insert(Settings::autoShowDropWindow.key, false);
    f.load();
    QComboBox &trigger = f.popUp(Settings::autoShowTrigger.key);
    QVERIFY(!trigger.isEnabled());
    f.autoShow().click();
    QVERIFY(trigger.isEnabled());
}

void BehaviorPaneTest::the_pop_ups_store_their_index_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("count");
    QTest::newRow("trigger") << Settings::autoShowTrigger.key << 3;
    QTest::newRow("double click") << Settings::doubleClickAction.key << 2;
    QTest::newRow("exclusion mode") << Settings::excludeMode.key << 2;
}

void BehaviorPaneTest::the_pop_ups_store_their_index()
{
    QFETCH(const QString, key);
    QFETCH(const int, count);
    PaneFixture f;
    f.load();
    QComboBox &box = f.popUp(key);
    QTest::keyClick(&box, Qt::Key_End);
    QTest::keyClick(&box, Qt::Key_Home);
    QCOMPARE(f.stored(key), QVariant(0));
    QCOMPARE(f.stored(key).typeId(), static_cast<int>(QMetaType::Int));
    for (int i = 1; i < count; ++i) {
        QTest::keyClick(&box, Qt::Key_Down);
        QCOMPARE(f.stored(key), QVariant(i));
        QCOMPARE(f.stored(key).typeId(), static_cast<int>(QMetaType::Int));
    }
    f.load();
    QCOMPARE(f.popUp(key).currentIndex(), count - 1);
    QCOMPARE(f.values.size(), 1);
}

void BehaviorPaneTest::choosing_the_item_shown_stores_it()
{
    QFETCH(const QString, key);
    PaneFixture f;
    f.load();
    const int shown = f.popUp(key).currentIndex();
    emit f.popUp(key).activated(shown);
    QCOMPARE(f.stored(key), QVariant(shown));
    QCOMPARE(f.virtualPlatform.userDefaults.writes, QStringList{key});
}

void BehaviorPaneTest::nothing_here_posts_a_notification()
{
    PaneFixture f;
    const QUrl file = QUrl::fromLocalFile(u"/Applications/Second"_s);
    f.virtualPlatform.workspace.identifiers.insert(file, u"org.second"_s);
    f.virtualPlatform.openPanels.choice = file;
    f.values.insert(Settings::excludedBundleIDs.key, QVariantList{u"a"_s});
    f.load();
    f.autoShow().click();
    f.autoShow().click();
    for (const QString &key :
         {Settings::autoShowTrigger.key, Settings::doubleClickAction.key, Settings::excludeMode.key})
        QTest::keyClick(&f.popUp(key), Qt::Key_Down);
    f.list().tableView->setCurrentIndex(f.list().tableView->model()->index(0, 0));
    f.list().removeBtn->click();
    f.list().addBtn->click();
    QCoreApplication::sendPostedEvents(&f.list(), QEvent::MetaCall);
    QCOMPARE(f.list().ids, QStringList{u"org.second"_s});
    QVERIFY(f.virtualPlatform.userDefaults.writes.size() >= 5);
    QVERIFY(f.posts.isEmpty());
}

void BehaviorPaneTest::the_list_shows_and_stores_the_excluded_applications()
{
    PaneFixture f;
    f.values.insert(Settings::excludedBundleIDs.key, QVariantList{u"org.first"_s});
    const QUrl file = QUrl::fromLocalFile(u"/Applications/Second"_s);
    f.virtualPlatform.workspace.identifiers.insert(file, u"org.second"_s);
    f.virtualPlatform.openPanels.choice = file;
    f.load();
    f.list().addBtn->click();
    QCoreApplication::sendPostedEvents(&f.list(), QEvent::MetaCall);
    QCOMPARE(f.settings.get(Settings::excludedBundleIDs), QStringList({u"org.first"_s, u"org.second"_s}));
    QCOMPARE(f.stored(Settings::excludedBundleIDs.key).typeId(), static_cast<int>(QMetaType::QVariantList));
}

void BehaviorPaneTest::removing_the_last_application_stores_an_empty_array()
{
    PaneFixture f;
    f.values.insert(Settings::excludedBundleIDs.key, QVariantList{u"org.only"_s});
    f.load();
    f.list().tableView->setCurrentIndex(f.list().tableView->model()->index(0, 0));
    f.list().removeBtn->click();
    QCOMPARE(f.stored(Settings::excludedBundleIDs.key), QVariant(QVariantList()));
    QVERIFY(f.values.contains(Settings::excludedBundleIDs.key));
}

void BehaviorPaneTest::a_list_that_outlives_the_pane_stores_nothing()
{
    PaneFixture f;
    f.load();
    const AppExclusionListView::OnChange onChange = f.list().onChange;
    f.window.reset();
    onChange({u"org.late"_s});
    QVERIFY(f.values.isEmpty());
}

void BehaviorPaneTest::values_of_the_wrong_type_or_range_do_no_harm()
{
    PaneFixture f;
    f.values = {{Settings::autoShowDropWindow.key, u"no"_s},
                {Settings::autoShowTrigger.key, 7.0},
                {Settings::doubleClickAction.key, -3.0},
                {Settings::excludeMode.key, QVariantList{1.0}},
                {Settings::excludedBundleIDs.key, QVariantList{u"a"_s, 3.0}}};
    const auto before = f.values;
    f.load();
    QVERIFY(f.autoShow().isChecked());
    QCOMPARE(f.popUp(Settings::autoShowTrigger.key).currentIndex(), -1);
    QCOMPARE(f.popUp(Settings::doubleClickAction.key).currentIndex(), -1);
    QCOMPARE(f.popUp(Settings::excludeMode.key).currentIndex(), 0);
    QVERIFY(f.list().ids.isEmpty());
    QCOMPARE(f.values, before);
    QTest::keyClick(&f.popUp(Settings::autoShowTrigger.key), Qt::Key_Down);
    QCOMPARE(f.stored(Settings::autoShowTrigger.key), QVariant(0));
}

void BehaviorPaneTest::a_store_that_cannot_be_written_keeps_its_values()
{
    PaneFixture f;
    f.values.insert(Settings::excludedBundleIDs.key, QVariantList{u"org.kept"_s});
    f.virtualPlatform.userDefaults.writable = false;
    f.load();
    f.autoShow().click();
    QTest::keyClick(&f.popUp(Settings::autoShowTrigger.key), Qt::Key_Down);
    f.list().tableView->setCurrentIndex(f.list().tableView->model()->index(0, 0));
    f.list().removeBtn->click();
    QCOMPARE(f.values.size(), 1);
    f.load();
    QVERIFY(f.autoShow().isChecked());
    QCOMPARE(f.popUp(Settings::autoShowTrigger.key).currentIndex(), 0);
    QCOMPARE(f.list().ids, QStringList{u"org.kept"_s});
}

void BehaviorPaneTest::the_label_of_the_exclusion_mode_wraps_to_two_lines_at_most()
{
    PaneFixture f;
    const QLabel *label = labelWith(f.load(QSize(300, 420)), kExclude);
    QVERIFY(label->wordWrap());
    QCOMPARE(label->height(), 2 * label->fontMetrics().lineSpacing());
    label = labelWith(f.load(QSize(800, 420)), kExclude);
    QVERIFY(label->height() < 2 * label->fontMetrics().lineSpacing());
}

void BehaviorPaneTest::the_exclusion_mode_is_a_small_control()
{
    PaneFixture f;
    f.load();
    const QComboBox &mode = f.popUp(Settings::excludeMode.key);
    QVERIFY(mode.testAttribute(Qt::WA_MacSmallSize));
    QVERIFY(mode.height() < f.popUp(Settings::doubleClickAction.key).height());
}

void BehaviorPaneTest::every_control_has_a_label()
{
    PaneFixture f;
    const QWidget &pane = f.load();
    QCOMPARE(f.autoShow().accessibleName(), kAutoShow);
    QCOMPARE(labelWith(pane, kAutoShow)->buddy(), &f.autoShow());
    // The trigger has no visible label, and a screen reader would use the check box's label for both.
    const QLabel *trigger = labelWith(pane, u"When to show the drop window"_s);
    QVERIFY(trigger->isHidden());
    QCOMPARE(trigger->buddy(), &f.popUp(Settings::autoShowTrigger.key));
    QCOMPARE(labelWith(pane, kDoubleClick)->buddy(), &f.popUp(Settings::doubleClickAction.key));
    QCOMPARE(labelWith(pane, kExclude)->buddy(), &f.popUp(Settings::excludeMode.key));
    QCOMPARE(f.list().tableView->accessibleName(), kExclude);
}

void BehaviorPaneTest::focus_goes_from_top_to_bottom()
{
    PaneFixture f;
    f.load();
    f.window->activateWindow();
    f.autoShow().setFocus();
    QList<QWidget *> visited;
    for (int i = 0; i < 7; ++i) {
        visited.append(f.window->focusWidget());
        QTest::keyClick(f.window->focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(visited, QList<QWidget *>({&f.autoShow(), &f.popUp(Settings::autoShowTrigger.key),
                                        &f.popUp(Settings::doubleClickAction.key), &f.popUp(Settings::excludeMode.key),
                                        f.list().tableView, f.list().addBtn, f.list().removeBtn}));
}

PARKLET_TEST(BehaviorPaneTest)
#include "BehaviorPaneTest.moc"
