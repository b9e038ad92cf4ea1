// SPDX-License-Identifier: MIT
#include "preferences/AppearancePane.h"

#include "preferences/ColorWell.h"
#include "preferences/Controls.h"
#include "preferences/DoubleSlider.h"
#include "tests/preferences/Fixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTest>

using namespace Qt::StringLiterals;

class AppearancePaneTest : public QObject {
    Q_OBJECT

private slots:
    void the_nineteen_views_stand_in_order_with_8_points_between_them();
    void the_scroll_view_is_8_points_inside_and_its_stack_20_narrower();
    void a_pane_that_is_too_low_scrolls();
    void every_view_begins_at_the_right_where_the_language_does();
    void a_fresh_installation_shows_the_defaults();
    void the_controls_show_what_is_stored();
    void the_pop_ups_store_their_index_and_post_once_data();
    void the_pop_ups_store_their_index_and_post_once();
    void bottom_is_stored_as_3();
    void choosing_the_item_shown_stores_and_posts_it();
    void hiding_extensions_is_stored_and_posted();
    void a_slider_reports_each_move_of_a_drag_data();
    void a_slider_reports_each_move_of_a_drag();
    void the_sliders_store_doubles_and_move_by_keyboard();
    void a_stored_size_out_of_range_can_be_ended_at_the_shown_end();
    void a_stored_size_between_two_places_can_be_ended_at_the_shown_one();
    void a_chosen_colour_is_stored_and_posted_and_shown_again();
    void a_colour_keeps_its_alpha();
    void animations_cannot_be_changed_here();
    void the_action_for_animations_stores_and_posts_nothing();
    void values_of_the_wrong_type_or_range_do_no_harm();
    void a_store_that_cannot_be_written_keeps_its_values();
    void the_wheel_goes_past_controls_without_the_focus();
    void every_control_has_a_label();
    void focus_goes_from_top_to_bottom();
};

namespace {

struct PaneFixture : Fixture {
    AppearancePane &load(const QSize &size = QSize(519, 500))
    {
        pane = &show(std::make_unique<AppearancePane>(settings, virtualPlatform.appearance, notifications), size);
        return *pane;
    }

    ColorWell &well() { return *pane->findChild<ColorWell *>(); }
    // Does what the well does when its panel reports a colour.
    void choose(const QColor &color)
    {
        well().setColor(color);
        well().onChange();
    }
    DoubleSlider &slider(const QString &key) { return *pane->findChild<DoubleSlider *>(key); }
    QComboBox &popUp(const QString &key) { return *pane->findChild<QComboBox *>(key); }
    QCheckBox &hideExtensions() { return *pane->findChild<QCheckBox *>(); }
    QScrollArea &scroll() { return *pane->findChild<QScrollArea *>(); }

    AppearancePane *pane = nullptr;
};

QList<QWidget *> stackedViews(const QWidget &stack)
{
    QList<QWidget *> views = stack.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    std::sort(views.begin(), views.end(), [](const QWidget *a, const QWidget *b) { return a->y() < b->y(); });
    return views;
}

QString describe(QWidget *view)
{
    if (qobject_cast<Separator *>(view))
        return u"-"_s;
    if (auto *label = qobject_cast<QLabel *>(view))
        return label->text();
    if (qobject_cast<ColorWell *>(view))
        return u"[colour well]"_s;
    if (auto *slider = qobject_cast<DoubleSlider *>(view))
        return u"[%1 to %2]"_s.arg(slider->minimumValue).arg(slider->maximumValue);
    if (auto *box = qobject_cast<QCheckBox *>(view))
        return u"[x] "_s + box->text();
    if (auto *popUp = qobject_cast<QComboBox *>(view)) {
        QStringList titles;
        for (int i = 0; i < popUp->count(); ++i)
            titles.append(popUp->itemText(i));
        return titles.join(QLatin1Char('|'));
    }
    return u"something else"_s;
}

QPoint knob(const DoubleSlider &slider)
{
    QStyleOptionSlider option;
    option.initFrom(&slider);
    option.orientation = slider.orientation();
    option.minimum = slider.minimum();
    option.maximum = slider.maximum();
    option.sliderPosition = slider.value();
    option.sliderValue = slider.value();
    option.state |= QStyle::State_Horizontal;
    return slider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider).center();
}

} // namespace

void AppearancePaneTest::the_nineteen_views_stand_in_order_with_8_points_between_them()
{
    PaneFixture f;
    f.load(QSize(519, 700));
    const QList<QWidget *> views = stackedViews(*f.scroll().widget());
    QStringList shown;
    for (QWidget *view : views)
        shown.append(describe(view));
    QCOMPARE(shown,
             QStringList({u"Appearance"_s, u"-"_s, u"Tint colour"_s, u"[colour well]"_s, u"Tint intensity"_s,
                          u"[0 to 1]"_s, u"-"_s, u"Shelf item size"_s, u"[48 to 120]"_s, u"-"_s, u"Window edge"_s,
                          u"Left|Right|Top|Bottom"_s, u"Alignment"_s, u"Start|Center|End"_s, u"-"_s, u"File names"_s,
                          u"Show under icon|Hide|Show on hover"_s, u"[x] Hide file extensions"_s, u" "_s}));
    QCOMPARE(views.size(), 19);
    QCOMPARE(views.first()->y(), 0);
    for (int i = 0; i < views.size(); ++i) {
        QCOMPARE(views.at(i)->x(), 0);
        if (i > 0)
            QCOMPARE(views.at(i)->y() - views.at(i - 1)->geometry().bottom() - 1, 8);
        if (auto *label = qobject_cast<QLabel *>(views.at(i))) {
            QCOMPARE(label->font().pixelSize(), 13);
            QCOMPARE(label->font().family(), QApplication::font().family());
            QCOMPARE(label->font().weight(), QApplication::font().weight());
            QCOMPARE(label->foregroundRole(), QPalette::WindowText);
        }
        if (auto *popUp = qobject_cast<QComboBox *>(views.at(i)))
            QCOMPARE(popUp->width(), popUp->sizeHint().width());
        if (qobject_cast<Separator *>(views.at(i)) || qobject_cast<DoubleSlider *>(views.at(i)))
            QCOMPARE(views.at(i)->width(), f.scroll().widget()->width());
    }
    for (const QString &key : {Settings::tintIntensity.key, Settings::shelfItemSize.key})
        QVERIFY(f.slider(key).testAttribute(Qt::WA_MacSmallSize));
}

void AppearancePaneTest::the_scroll_view_is_8_points_inside_and_its_stack_20_narrower()
{
    PaneFixture f;
    for (const QSize &size : {QSize(519, 500), QSize(399, 420), QSize(900, 900)}) {
        f.load(size);
        QCOMPARE(f.scroll().geometry(), QRect(8, 8, size.width() - 16, size.height() - 16));
        QCOMPARE(f.scroll().widget()->width(), size.width() - 16 - 20);
        QCOMPARE(f.scroll().widget()->x(), 0);
    }
    f.pane->resize(700, 600);
    QCOMPARE(f.scroll().widget()->width(), 700 - 16 - 20);
    QCOMPARE(f.scroll().frameShape(), QFrame::NoFrame);
    QVERIFY(!f.scroll().viewport()->autoFillBackground());
    QVERIFY(!f.scroll().widget()->autoFillBackground());
    QCOMPARE(f.scroll().verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
}

void AppearancePaneTest::a_pane_that_is_too_low_scrolls()
{
    PaneFixture f;
    f.load(QSize(399, 300));
    QVERIFY(f.scroll().verticalScrollBar()->maximum() > 0);
    // The scroll bar is beside the stack and does not cover it.
    QVERIFY(f.scroll().viewport()->width() >= f.scroll().widget()->width());
    f.load(QSize(399, 900));
    QCOMPARE(f.scroll().verticalScrollBar()->maximum(), 0);
}

void AppearancePaneTest::every_view_begins_at_the_right_where_the_language_does()
{
    PaneFixture f;
    f.load();
    f.window->setLayoutDirection(Qt::RightToLeft);
    QCoreApplication::sendPostedEvents();
    for (QWidget *view : stackedViews(*f.scroll().widget()))
        QVERIFY2(view->geometry().right() + 1 == f.scroll().widget()->width(), qPrintable(describe(view)));
}

void AppearancePaneTest::a_fresh_installation_shows_the_defaults()
{
    PaneFixture f;
    f.load();
    QCOMPARE(f.well().color(), f.virtualPlatform.appearance.accent);
    QCOMPARE(f.slider(Settings::tintIntensity.key).doubleValue(), 0.4);
    QCOMPARE(f.slider(Settings::shelfItemSize.key).doubleValue(), 72.0);
    QCOMPARE(f.popUp(Settings::windowEdge.key).currentText(), u"Right"_s);
    QCOMPARE(f.popUp(Settings::windowAlignment.key).currentText(), u"Center"_s);
    QCOMPARE(f.popUp(Settings::fileNameDisplay.key).currentText(), u"Show under icon"_s);
    QVERIFY(!f.hideExtensions().isChecked());
    QVERIFY(f.virtualPlatform.userDefaults.writes.isEmpty());
    QVERIFY(f.posts.isEmpty());
}

void AppearancePaneTest::the_controls_show_what_is_stored()
{
    PaneFixture f;
    f.settings.setTintColor(QColor(1, 2, 3, 100));
    f.values.insert(Settings::tintIntensity.key, 0.123);
    f.values.insert(Settings::shelfItemSize.key, 100.5);
    f.values.insert(Settings::windowEdge.key, double(WindowEdge::Top));
    f.values.insert(Settings::windowAlignment.key, double(WindowAlignment::Start));
    f.values.insert(Settings::fileNameDisplay.key, double(FileNameDisplay::OnHover));
    f.values.insert(Settings::hideFileExtensions.key, true);
    f.load();
    QCOMPARE(f.well().color(), QColor(1, 2, 3, 100));
    QCOMPARE(f.slider(Settings::tintIntensity.key).doubleValue(), 0.123);
    QCOMPARE(f.slider(Settings::shelfItemSize.key).doubleValue(), 100.5);
    QCOMPARE(f.popUp(Settings::windowEdge.key).currentIndex(), 2);
    QCOMPARE(f.popUp(Settings::windowAlignment.key).currentIndex(), 0);
    QCOMPARE(f.popUp(Settings::fileNameDisplay.key).currentIndex(), 2);
    QVERIFY(f.hideExtensions().isChecked());
}

void AppearancePaneTest::the_pop_ups_store_their_index_and_post_once_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("count");
    QTest::newRow("edge") << Settings::windowEdge.key << 4;
    QTest::newRow("alignment") << Settings::windowAlignment.key << 3;
    QTest::newRow("names") << Settings::fileNameDisplay.key << 3;
}

void AppearancePaneTest::the_pop_ups_store_their_index_and_post_once()
{
    QFETCH(const QString, key);
    QFETCH(const int, count);
    PaneFixture f;
    f.values.insert(key, 0.0);
    f.load();
    for (int i = 1; i < count; ++i) {
        QTest::keyClick(&f.popUp(key), Qt::Key_Down);
        QCOMPARE(f.stored(key), QVariant(i));
        QCOMPARE(f.stored(key).typeId(), static_cast<int>(QMetaType::Int));
        QCOMPARE(f.settingsChangedPosts(), i);
        QCOMPARE(f.storedAtLastPost(key), QVariant(i));
    }
    QCOMPARE(f.values.size(), 1);
}

void AppearancePaneTest::bottom_is_stored_as_3()
{
    PaneFixture f;
    f.load();
    QTest::keyClick(&f.popUp(Settings::windowEdge.key), Qt::Key_B);
    QCOMPARE(f.popUp(Settings::windowEdge.key).currentText(), u"Bottom"_s);
    QCOMPARE(f.stored(Settings::windowEdge.key), QVariant(3));
    QCOMPARE(f.settingsChangedPosts(), 1);
}

void AppearancePaneTest::choosing_the_item_shown_stores_and_posts_it()
{
    PaneFixture f;
    f.load();
    // The file was edited while the pane was open.
    f.values.insert(Settings::windowAlignment.key, int(WindowAlignment::End));
    QComboBox &popUp = f.popUp(Settings::windowAlignment.key);
    emit popUp.activated(popUp.currentIndex());
    QCOMPARE(f.stored(Settings::windowAlignment.key), QVariant(popUp.currentIndex()));
    QCOMPARE(f.settingsChangedPosts(), 1);
}

void AppearancePaneTest::hiding_extensions_is_stored_and_posted()
{
    PaneFixture f;
    f.load();
    f.hideExtensions().click();
    QCOMPARE(f.stored(Settings::hideFileExtensions.key), QVariant(true));
    QCOMPARE(f.stored(Settings::hideFileExtensions.key).typeId(), static_cast<int>(QMetaType::Bool));
    QCOMPARE(f.virtualPlatform.userDefaults.writes, QStringList{Settings::hideFileExtensions.key});
    QCOMPARE(f.settingsChangedPosts(), 1);
    QCOMPARE(f.storedAtLastPost(Settings::hideFileExtensions.key), QVariant(true));
    f.hideExtensions().click();
    QCOMPARE(f.stored(Settings::hideFileExtensions.key), QVariant(false));
    QCOMPARE(f.stored(Settings::hideFileExtensions.key).typeId(), static_cast<int>(QMetaType::Bool));
    QCOMPARE(f.settingsChangedPosts(), 2);
}

void AppearancePaneTest::a_slider_reports_each_move_of_a_drag_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("intensity") << Settings::tintIntensity.key;
    QTest::newRow("size") << Settings::shelfItemSize.key;
}

void AppearancePaneTest::a_slider_reports_each_move_of_a_drag()
{
    QFETCH(const QString, key);
    PaneFixture f;
    f.load();
    DoubleSlider &slider = f.slider(key);
    const QPoint start = knob(slider);
    QTest::mousePress(&slider, Qt::LeftButton, {}, start);
    double last = slider.doubleValue();
    for (int i = 1; i <= 5; ++i) {
        const QPointF place = start + QPoint(20 * i, 0);
        QMouseEvent move(QEvent::MouseMove, place, slider.mapToGlobal(place), Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&slider, &move);
        QVERIFY(slider.doubleValue() > last);
        last = slider.doubleValue();
        QCOMPARE(f.stored(key), QVariant(last));
        QCOMPARE(f.settingsChangedPosts(), i);
        QCOMPARE(f.storedAtLastPost(key), QVariant(last));
    }
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, start + QPoint(100, 0));
    QCOMPARE(f.settingsChangedPosts(), 5);
    QCOMPARE(f.virtualPlatform.userDefaults.writes, QStringList(5, key));
}

void AppearancePaneTest::the_sliders_store_doubles_and_move_by_keyboard()
{
    PaneFixture f;
    f.load();
    DoubleSlider &size = f.slider(Settings::shelfItemSize.key);
    QTest::keyClick(&size, Qt::Key_Right);
    QCOMPARE(f.stored(Settings::shelfItemSize.key), QVariant(73.0));
    QCOMPARE(f.stored(Settings::shelfItemSize.key).typeId(), static_cast<int>(QMetaType::Double));
    QCOMPARE(f.virtualPlatform.userDefaults.writes, QStringList{Settings::shelfItemSize.key});
    QCOMPARE(f.storedAtLastPost(Settings::shelfItemSize.key), QVariant(73.0));
    QTest::keyClick(&size, Qt::Key_Home);
    QCOMPARE(f.stored(Settings::shelfItemSize.key), QVariant(48.0));
    QTest::keyClick(&size, Qt::Key_End);
    QCOMPARE(f.stored(Settings::shelfItemSize.key), QVariant(120.0));
    QCOMPARE(f.settingsChangedPosts(), 3);
    DoubleSlider &intensity = f.slider(Settings::tintIntensity.key);
    QTest::keyClick(&intensity, Qt::Key_Left);
    QCOMPARE(f.stored(Settings::tintIntensity.key), QVariant(0.39));
    QCOMPARE(f.virtualPlatform.userDefaults.writes,
             QStringList(3, Settings::shelfItemSize.key) + QStringList{Settings::tintIntensity.key});
    QCOMPARE(f.storedAtLastPost(Settings::tintIntensity.key), QVariant(0.39));
    QTest::keyClick(&intensity, Qt::Key_End);
    QCOMPARE(f.stored(Settings::tintIntensity.key), QVariant(1.0));
    QCOMPARE(f.stored(Settings::tintIntensity.key).typeId(), static_cast<int>(QMetaType::Double));
    QCOMPARE(f.settingsChangedPosts(), 5);
}

void AppearancePaneTest::a_stored_size_out_of_range_can_be_ended_at_the_shown_end()
{
    PaneFixture f;
    f.values.insert(Settings::shelfItemSize.key, 5000.0);
    f.load();
    DoubleSlider &size = f.slider(Settings::shelfItemSize.key);
    QTest::mouseClick(&size, Qt::LeftButton, {}, knob(size));
    QCOMPARE(f.stored(Settings::shelfItemSize.key), QVariant(120.0));
    QCOMPARE(f.settingsChangedPosts(), 1);
    QTest::mouseClick(&size, Qt::LeftButton, {}, knob(size));
    QCOMPARE(f.settingsChangedPosts(), 1);
}

void AppearancePaneTest::a_stored_size_between_two_places_can_be_ended_at_the_shown_one()
{
    PaneFixture f;
    f.values.insert(Settings::shelfItemSize.key, 90.04);
    f.load();
    DoubleSlider &size = f.slider(Settings::shelfItemSize.key);
    QCOMPARE(size.doubleValue(), 90.0);
    QTest::mouseClick(&size, Qt::LeftButton, {}, knob(size));
    QCOMPARE(f.stored(Settings::shelfItemSize.key), QVariant(90.0));
    QCOMPARE(f.settingsChangedPosts(), 1);
    // A knob at the stored value reports nothing.
    f.load();
    QTest::mouseClick(&f.slider(Settings::shelfItemSize.key), Qt::LeftButton, {},
                      knob(f.slider(Settings::shelfItemSize.key)));
    QCOMPARE(f.settingsChangedPosts(), 1);
}

void AppearancePaneTest::a_chosen_colour_is_stored_and_posted_and_shown_again()
{
    PaneFixture f;
    f.load();
    f.choose(QColor(10, 200, 30));
    QCOMPARE(f.settings.tintColor(), QColor(10, 200, 30));
    QCOMPARE(f.settingsChangedPosts(), 1);
    QVERIFY(f.storedAtLastPost(Settings::tintColorData.key).isValid());
    QCOMPARE(f.storedAtLastPost(Settings::tintColorData.key), f.stored(Settings::tintColorData.key));
    f.choose(QColor(11, 200, 30));
    QCOMPARE(f.settingsChangedPosts(), 2);
    QCOMPARE(f.storedAtLastPost(Settings::tintColorData.key), f.stored(Settings::tintColorData.key));
    QCOMPARE(f.virtualPlatform.userDefaults.writes,
             QStringList({Settings::tintColorData.key, Settings::tintColorData.key}));
    f.load();
    QCOMPARE(f.well().color(), QColor(11, 200, 30));
}

void AppearancePaneTest::a_colour_keeps_its_alpha()
{
    PaneFixture f;
    f.load();
    f.choose(QColor(10, 20, 30, 40));
    QCOMPARE(f.settings.tintColor(), QColor(10, 20, 30, 40));
}

void AppearancePaneTest::animations_cannot_be_changed_here()
{
    PaneFixture f;
    f.load();
    f.choose(Qt::red);
    for (QCheckBox *box : f.pane->findChildren<QCheckBox *>())
        box->click();
    for (const QString &key : {Settings::windowEdge.key, Settings::windowAlignment.key, Settings::fileNameDisplay.key})
        QTest::keyClick(&f.popUp(key), Qt::Key_Down);
    for (const QString &key : {Settings::tintIntensity.key, Settings::shelfItemSize.key})
        QTest::keyClick(&f.slider(key), Qt::Key_Right);
    QVERIFY(f.values.contains(Settings::hideFileExtensions.key));
    QVERIFY(!f.values.contains(Settings::disableAnimations.key));
}

void AppearancePaneTest::the_action_for_animations_stores_and_posts_nothing()
{
    PaneFixture f;
    QCheckBox sender;
    sender.setChecked(true);
    f.load().noAnimChanged(&sender);
    QCOMPARE(f.stored(Settings::disableAnimations.key), QVariant(true));
    sender.setChecked(false);
    f.pane->noAnimChanged(&sender);
    QCOMPARE(f.stored(Settings::disableAnimations.key), QVariant(false));
    QVERIFY(f.posts.isEmpty());
}

void AppearancePaneTest::values_of_the_wrong_type_or_range_do_no_harm()
{
    PaneFixture f;
    f.values = {{Settings::tintColorData.key, QByteArray("no colour")},
                {Settings::tintIntensity.key, -3.0},
                {Settings::shelfItemSize.key, 5000.0},
                {Settings::windowEdge.key, 9.0},
                {Settings::windowAlignment.key, u"End"_s},
                {Settings::fileNameDisplay.key, -1.0},
                {Settings::hideFileExtensions.key, QVariantList()}};
    const auto before = f.values;
    f.load();
    QCOMPARE(f.well().color(), f.virtualPlatform.appearance.accent);
    QCOMPARE(f.slider(Settings::tintIntensity.key).doubleValue(), 0.0);
    QCOMPARE(f.slider(Settings::shelfItemSize.key).doubleValue(), 120.0);
    QCOMPARE(f.popUp(Settings::windowEdge.key).currentIndex(), -1);
    QCOMPARE(f.popUp(Settings::windowAlignment.key).currentIndex(), 1);
    QCOMPARE(f.popUp(Settings::fileNameDisplay.key).currentIndex(), -1);
    QVERIFY(!f.hideExtensions().isChecked());
    QCOMPARE(f.values, before);
    QVERIFY(f.posts.isEmpty());
}

void AppearancePaneTest::a_store_that_cannot_be_written_keeps_its_values()
{
    PaneFixture f;
    f.virtualPlatform.userDefaults.writable = false;
    f.load();
    QTest::keyClick(&f.slider(Settings::shelfItemSize.key), Qt::Key_End);
    f.hideExtensions().click();
    QVERIFY(f.values.isEmpty());
    f.load();
    QCOMPARE(f.slider(Settings::shelfItemSize.key).doubleValue(), 72.0);
    QVERIFY(!f.hideExtensions().isChecked());
}

void AppearancePaneTest::the_wheel_goes_past_controls_without_the_focus()
{
    PaneFixture f;
    f.load(QSize(399, 300));
    f.window->activateWindow();
    const auto turnWheelOver = [](QWidget &control) {
        const QPointF middle = control.rect().center();
        QWheelEvent event(middle, control.mapToGlobal(middle), {}, QPoint(0, -120), Qt::NoButton, {}, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(&control, &event);
        return event.isAccepted();
    };
    QWidget *const controls[] = {&f.slider(Settings::tintIntensity.key), &f.slider(Settings::shelfItemSize.key),
                                 &f.popUp(Settings::windowEdge.key), &f.popUp(Settings::fileNameDisplay.key)};
    for (QWidget *control : controls) {
        QVERIFY(!turnWheelOver(*control));
        QVERIFY(!control->hasFocus());
    }
    QVERIFY(f.values.isEmpty());

    QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
    f.slider(Settings::shelfItemSize.key).setFocus();
    QVERIFY(turnWheelOver(f.slider(Settings::shelfItemSize.key)));
    QVERIFY(f.stored(Settings::shelfItemSize.key).toDouble() < 72.0);
}

void AppearancePaneTest::every_control_has_a_label()
{
    PaneFixture f;
    const QWidget &pane = f.load();
    const std::pair<QString, QWidget *> labelled[] = {{u"Tint colour"_s, &f.well()},
                                                      {u"Tint intensity"_s, &f.slider(Settings::tintIntensity.key)},
                                                      {u"Shelf item size"_s, &f.slider(Settings::shelfItemSize.key)},
                                                      {u"Window edge"_s, &f.popUp(Settings::windowEdge.key)},
                                                      {u"Alignment"_s, &f.popUp(Settings::windowAlignment.key)},
                                                      {u"File names"_s, &f.popUp(Settings::fileNameDisplay.key)}};
    for (const auto &[text, control] : labelled) {
        QCOMPARE(labelWith(pane, text)->buddy(), control);
        QCOMPARE(control->accessibleName(), text);
    }
}

void AppearancePaneTest::focus_goes_from_top_to_bottom()
{
    PaneFixture f;
    f.load(QSize(399, 300));
    f.window->activateWindow();
    f.well().setFocus();
    QList<QWidget *> visited;
    for (int i = 0; i < 7; ++i) {
        QWidget *focused = f.window->focusWidget();
        visited.append(focused);
        // The pane scrolls to the focused view.
        QVERIFY(!focused->visibleRegion().isEmpty());
        QTest::keyClick(focused, Qt::Key_Tab);
    }
    const QList<QWidget *> order = {&f.well(),
                                    &f.slider(Settings::tintIntensity.key),
                                    &f.slider(Settings::shelfItemSize.key),
                                    &f.popUp(Settings::windowEdge.key),
                                    &f.popUp(Settings::windowAlignment.key),
                                    &f.popUp(Settings::fileNameDisplay.key),
                                    &f.hideExtensions()};
    QCOMPARE(visited, order);
    QCOMPARE(f.window->focusWidget(), order.first());

    for (auto control = order.crbegin(); control != order.crend(); ++control) {
        QTest::keyClick(f.window->focusWidget(), Qt::Key_Backtab);
        QCOMPARE(f.window->focusWidget(), *control);
    }
}

PARKLET_TEST(AppearancePaneTest)
#include "AppearancePaneTest.moc"
