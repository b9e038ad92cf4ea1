// SPDX-License-Identifier: MIT
#include "shelf/DropViews.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfMetrics.h"
#include "shelf/ShelfViews.h"
#include "shelf/TileViews.h"
#include "tests/shelf/PanelFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QLabel>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

#include <array>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

// The panel as a window: its views, its tint and its key tap.
class ShelfPanelTest : public QObject {
    Q_OBJECT

private slots:
    // Creation
    void a_new_panel_is_a_hidden_floating_panel();
    void the_header_holds_three_buttons_with_their_labels();
    void the_gear_asks_for_the_preferences();
    void the_views_lie_above_each_other_in_their_order();
    void the_drop_label_stands_ten_points_below_the_middle();
    void the_background_and_the_tint_have_corners_of_14_points();
    void a_layer_is_a_rounded_rectangle_to_the_pixel_data();
    void a_layer_is_a_rounded_rectangle_to_the_pixel();
    void the_scroll_view_draws_no_background();
    void drop_targets_that_outlive_the_panel_do_nothing();
    // Settings
    void drop_targets_are_told_of_drags_without_files();
    void a_new_item_size_changes_heights_and_thumbnails_but_not_widths();
    void hiding_names_changes_heights_and_no_thumbnail();
    void a_settings_change_tints_and_refreshes_tiles();
    void the_tint_follows_its_intensity_data();
    void the_tint_follows_its_intensity();
    void the_tint_is_of_the_chosen_colour();
    void without_a_chosen_colour_the_tint_follows_the_accent_colour();
    void a_tint_that_is_switched_off_keeps_its_colour();
    void a_settings_change_after_the_panel_has_gone_is_no_matter();
    void names_follow_the_settings_both_ways_they_are_announced();
    void an_absurd_item_size_is_survived();
    void a_row_scrolls_sideways_and_by_the_wheel();
    // Command-A
    void the_tap_is_there_while_something_is_selected();
    void command_a_selects_all_later_and_is_swallowed();
    void other_keys_pass_through_data();
    void other_keys_pass_through();
    void a_refused_tap_is_no_matter();
    void a_tap_that_outlives_the_panel_does_nothing();
};

namespace {

QImage drawn(QWidget &view)
{
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

// The uncovered area in each corner of `image`, which has the opacity `full`.
QList<double> cornerAreas(const QImage &image, double full)
{
    constexpr int kReach = 20;
    QList<double> areas(4, 0.0);
    for (int y = 0; y < kReach; ++y) {
        for (int x = 0; x < kReach; ++x) {
            const int right = image.width() - 1 - x;
            const int bottom = image.height() - 1 - y;
            const std::array corners = {QPoint(x, y), QPoint(right, y), QPoint(x, bottom), QPoint(right, bottom)};
            for (qsizetype i = 0; i < areas.size(); ++i)
                areas[i] += 1 - std::min(1.0, image.pixelColor(corners[static_cast<std::size_t>(i)]).alphaF() / full);
        }
    }
    return areas;
}

} // namespace

void ShelfPanelTest::a_new_panel_is_a_hidden_floating_panel()
{
    PanelFixture f;
    QVERIFY(!f.panel->isVisible());
    QCOMPARE(f.panel->geometry(), QRect(0, 0, 0, 0));
    QCOMPARE(f.virtualPlatform.floatingPanels.panels.value(u"shelf"_s).data(), static_cast<QWidget *>(f.panel.get()));
    QCOMPARE(f.virtualPlatform.floatingPanels.styles.first().cornerRadius, 14.0);
    QVERIFY(f.panel->items.isEmpty());
    QVERIFY(f.panel->selectedViews.isEmpty());
    QVERIFY(!f.panel->droppedBackOnSelf);
    QVERIFY(!f.panel->dropLabel->isHidden());
    QCOMPARE(f.panel->dropLabel->text(), u"Drop files here"_s);
    QVERIFY(f.panel->selectAllBtn->isHidden());
    QVERIFY(!f.panel->trashBtn->isHidden());
    QVERIFY(!f.panel->gearBtn->isHidden());
}

void ShelfPanelTest::the_header_holds_three_buttons_with_their_labels()
{
    PanelFixture f;
    QCOMPARE(f.panel->gearBtn->toolTip(), u"Preferences"_s);
    QCOMPARE(f.panel->selectAllBtn->toolTip(), u"Select all"_s);
    QCOMPARE(f.panel->trashBtn->toolTip(), u"Clear all"_s);
    for (const HeaderButton *button : {f.panel->gearBtn, f.panel->selectAllBtn, f.panel->trashBtn}) {
        QCOMPARE(button->accessibleName(), button->toolTip());
        QCOMPARE(button->parentWidget(), f.panel->headerBar);
        QVERIFY(!button->icon().isNull());
        QCOMPARE(button->focusPolicy(), Qt::NoFocus);
    }
    // Tool tips must show although the panel is never the active window.
    QVERIFY(f.panel->testAttribute(Qt::WA_AlwaysShowToolTips));
    const QColor tint = QColor::fromRgbF(1, 1, 1, 0.65F);
    QCOMPARE(f.virtualPlatform.appearance.symbolRequests,
             (decltype(f.virtualPlatform.appearance.symbolRequests){
                 {u"gearshape"_s, tint}, {u"square.stack.3d.down.right"_s, tint}, {u"trash"_s, tint}}));
    // The symbols are white at 0.65.
    const QImage symbol = f.panel->gearBtn->icon().pixmap(16, 16).toImage();
    QCOMPARE(symbol.pixelColor(8, 8).alpha(), 166);
}

void ShelfPanelTest::the_gear_asks_for_the_preferences()
{
    PanelFixture f;
    int asked = 0;
    QObject observer;
    f.notifications.observe(Notifications::openPreferences, &observer, [&](const QVariantMap &userInfo) {
        ++asked;
        QVERIFY(userInfo.isEmpty());
    });
    f.panel->gearBtn->click();
    QCOMPARE(asked, 1);
}

void ShelfPanelTest::the_views_lie_above_each_other_in_their_order()
{
    PanelFixture f;
    QList<QObject *> views;
    for (QObject *child : f.panel->container->children()) {
        if (child->isWidgetType())
            views.append(child);
    }
    QCOMPARE(views, (QList<QObject *>{f.panel->visualFX, f.panel->tintOverlay, f.panel->headerBar, f.panel->sepLine,
                                      f.panel->dropLabel, f.panel->scrollView}));
    QCOMPARE(f.panel->sepLine->color(), QColor::fromRgbF(1, 1, 1, 0.12F));
    QCOMPARE(f.panel->dropLabel->palette().color(QPalette::WindowText), QColor::fromRgbF(1, 1, 1, 0.35F));
    QCOMPARE(f.panel->dropLabel->font().pixelSize(), 11);
}

void ShelfPanelTest::the_drop_label_stands_ten_points_below_the_middle()
{
    PanelFixture f;
    f.panel->show(Animated::No);
    const QRect label = f.panel->dropLabel->geometry();
    QVERIFY(std::abs(label.center().y() - (164 / 2 + 10)) <= 1);
    QVERIFY(std::abs(label.center().x() - 116 / 2) <= 1);
}

void ShelfPanelTest::a_layer_is_a_rounded_rectangle_to_the_pixel_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("border");
    for (const double scale : {1.0, 2.0, 3.0}) {
        for (const QSize size : {QSize(116, 400), QSize(400, 137), QSize(60, 29), QSize(60, 28), QSize(40, 20)}) {
            for (const double border : {0.0, 2.0})
                QTest::addRow("%g %dx%d %g", scale, size.width(), size.height(), border) << scale << size << border;
        }
    }
}

void ShelfPanelTest::a_layer_is_a_rounded_rectangle_to_the_pixel()
{
    QFETCH(const double, scale);
    QFETCH(const QSize, size);
    QFETCH(const double, border);
    PanelFixture f;
    const auto image = [&](const std::function<void(QPainter &)> &draw) {
        QImage drawn(size * scale, QImage::Format_ARGB32_Premultiplied);
        drawn.setDevicePixelRatio(scale);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        painter.setRenderHint(QPainter::Antialiasing);
        draw(painter);
        return drawn;
    };
    const auto layer = [&](QWidget &view) {
        view.resize(size);
        QImage drawn = image([](QPainter &) {});
        view.render(&drawn, QPoint(), QRegion(), QWidget::DrawChildren);
        return drawn;
    };
    const QColor tint(200, 10, 20, 100);
    ColorView color(ShelfMetrics::kPanelCornerRadius, nullptr);
    color.setColor(tint);
    QCOMPARE(layer(color), image([&](QPainter &painter) {
                 painter.setPen(Qt::NoPen);
                 painter.setBrush(tint);
                 painter.drawRoundedRect(QRect(QPoint(), size), 14, 14);
             }));

    VisualEffectView effect(*f.virtualPlatform.platform.floatingPanels, nullptr);
    effect.setBorder(border, Qt::blue);
    QColor background(34, 34, 38);
    background.setAlphaF(0.84F);
    QCOMPARE(layer(effect), image([&](QPainter &painter) {
                 painter.setPen(Qt::NoPen);
                 painter.setBrush(background);
                 painter.drawRoundedRect(QRect(QPoint(), size), 14, 14);
                 const double width = border > 0 ? border : 1;
                 painter.setPen(QPen(border > 0 ? QColor(Qt::blue) : QColor::fromRgbF(1, 1, 1, 0.13F), width));
                 painter.setBrush(Qt::NoBrush);
                 painter.drawRoundedRect(
                     QRectF(QPointF(), QSizeF(size)).adjusted(width / 2, width / 2, -width / 2, -width / 2),
                     14 - width / 2, 14 - width / 2);
             }));
}

void ShelfPanelTest::the_background_and_the_tint_have_corners_of_14_points()
{
    PanelFixture f;
    f.set(Settings::tintIntensity.key, 1.0);
    f.notifications.post(Notifications::settingsChanged);
    f.panel->show(Animated::No);
    const double expected = (1 - M_PI / 4) * 14 * 14;
    const double tolerance = 2; // for the antialiasing of an edge; one point of radius makes a difference of five
    QList<double> areas = cornerAreas(drawn(*f.panel->tintOverlay), 0.6) + cornerAreas(drawn(*f.panel->visualFX), 0.84);
    QCOMPARE(areas.size(), 8);
    for (const double area : areas)
        QVERIFY2(std::abs(area - expected) < tolerance, QByteArray::number(area - expected));
}

void ShelfPanelTest::the_scroll_view_draws_no_background()
{
    PanelFixture f;
    f.settings.setTintColor(Qt::green);
    f.set(Settings::tintIntensity.key, 9.0);
    f.notifications.post(Notifications::settingsChanged);
    f.panel->show(Animated::No);
    const QImage image = drawn(*f.panel);
    const QPoint overTiles = f.panel->scrollView->geometry().bottomLeft() + QPoint(20, -20);
    QVERIFY(f.panel->stackView->rect().contains(f.panel->stackView->mapFrom(f.panel.get(), overTiles)));
    QCOMPARE(image.pixelColor(overTiles), QColor(Qt::green));
}

void ShelfPanelTest::drop_targets_that_outlive_the_panel_do_nothing()
{
    PanelFixture f;
    int received = 0;
    f.panel->onDropReceived = [&] { ++received; };
    QList<std::function<void(const QList<QUrl> &)>> drops;
    QList<std::function<void(bool)>> highlights;
    for (const DropTarget *target :
         {static_cast<DropTarget *>(f.panel->container), static_cast<DropTarget *>(f.panel->scrollView)}) {
        drops.append(target->onDrop);
        highlights.append(target->onHighlight);
    }
    drops.first()({file(0)});
    QCOMPARE(received, 1);
    f.panel.reset();
    for (const auto &drop : drops)
        drop({file(1)});
    for (const auto &highlight : highlights)
        highlight(true);
    QCOMPARE(received, 1);
}

void ShelfPanelTest::drop_targets_are_told_of_drags_without_files()
{
    PanelFixture f;
    for (const DropTarget *target :
         {static_cast<DropTarget *>(f.panel->container), static_cast<DropTarget *>(f.panel->scrollView)}) {
        f.virtualPlatform.dropPasteboard.withoutFiles = false;
        QVERIFY(!target->isWithoutFiles());
        f.virtualPlatform.dropPasteboard.withoutFiles = true;
        QVERIFY(target->isWithoutFiles());
    }
}

void ShelfPanelTest::a_new_item_size_changes_heights_and_thumbnails_but_not_widths()
{
    PanelFixture f;
    f.add(1);
    f.panel->show(Animated::No);
    QCOMPARE(f.virtualPlatform.thumbnailGenerator.requestCount, 1);
    f.set(Settings::shelfItemSize.key, 100.0);
    f.panel->applySettings();
    QCOMPARE(f.tile(0)->size(), QSize(88, 130));
    QCOMPARE(f.tile(0)->lastLoadedSize, 100.0);
    QCOMPARE(f.virtualPlatform.thumbnailGenerator.requestCount, 2);
    QCOMPARE(f.panel->size(), QSize(144, 192));
    f.panel->applySettings();
    QCOMPARE(f.virtualPlatform.thumbnailGenerator.requestCount, 2);
    f.add(1);
    QCOMPARE(f.tile(1)->size(), QSize(116, 130));
    QCOMPARE(f.tile(0)->size(), QSize(88, 130));
}

void ShelfPanelTest::hiding_names_changes_heights_and_no_thumbnail()
{
    PanelFixture f;
    f.add(1);
    f.panel->show(Animated::No);
    f.set(Settings::fileNameDisplay.key, double(FileNameDisplay::Hidden));
    f.panel->applySettings();
    QCOMPARE(f.tile(0)->size(), QSize(88, 88));
    QCOMPARE(f.virtualPlatform.thumbnailGenerator.requestCount, 1);
    QVERIFY(f.tile(0)->nameLabel->isHidden());
    QCOMPARE(f.tile(0)->imageView->geometry(), QRect(4, 8, 80, 72));
    QCOMPARE(f.panel->height(), 72 + 16 + 6 + 56);
}

void ShelfPanelTest::a_settings_change_tints_and_refreshes_tiles()
{
    PanelFixture f;
    f.add(1);
    f.panel->show(Animated::No);
    const QRect before = f.panel->geometry();
    f.set(Settings::tintIntensity.key, 0.0);
    f.set(Settings::shelfItemSize.key, 100.0);
    f.set(Settings::hideFileExtensions.key, true);
    f.notifications.post(Notifications::settingsChanged);
    QVERIFY(f.panel->tintOverlay->isHidden());
    QCOMPARE(f.virtualPlatform.thumbnailGenerator.requestCount, 2);
    QCOMPARE(f.tile(0)->lastLoadedSize, 100.0);
    // Only applySettings() changes the frame and the heights of the tiles.
    QCOMPARE(f.panel->geometry(), before);
    QCOMPARE(f.tile(0)->height(), 102);
}

void ShelfPanelTest::the_tint_follows_its_intensity_data()
{
    QTest::addColumn<QVariant>("intensity");
    QTest::addColumn<bool>("visible");
    QTest::addColumn<double>("alpha");
    QTest::newRow("default") << QVariant() << true << 0.24;
    QTest::newRow("none") << QVariant(0.0) << false << 0.0;
    QTest::newRow("just none") << QVariant(0.01) << false << 0.0;
    QTest::newRow("just some") << QVariant(0.011) << true << 0.0066;
    QTest::newRow("full") << QVariant(1.0) << true << 0.6;
    QTest::newRow("beyond") << QVariant(9.0) << true << 1.0;
}

void ShelfPanelTest::the_tint_follows_its_intensity()
{
    QFETCH(QVariant, intensity);
    QFETCH(bool, visible);
    QFETCH(double, alpha);
    PanelFixture f;
    f.virtualPlatform.appearance.accent = QColor(200, 10, 20);
    if (intensity.isValid())
        f.set(Settings::tintIntensity.key, intensity);
    f.notifications.post(Notifications::settingsChanged);
    QCOMPARE(!f.panel->tintOverlay->isHidden(), visible);
    if (visible) {
        QVERIFY(std::abs(f.panel->tintOverlay->color().alphaF() - alpha) < 0.0001);
        QCOMPARE(f.panel->tintOverlay->color().red(), 200);
    }
}

void ShelfPanelTest::the_tint_is_of_the_chosen_colour()
{
    PanelFixture f;
    QColor green(Qt::green);
    f.settings.setTintColor(green);
    f.notifications.post(Notifications::settingsChanged);
    green.setAlphaF(0.24F);
    QCOMPARE(f.panel->tintOverlay->color(), green);
    // A panel that is created later has the tint from the start.
    const ShelfPanel later(f.virtualPlatform.platform, f.settings, f.notifications);
    QCOMPARE(later.tintOverlay->color(), green);
}

void ShelfPanelTest::without_a_chosen_colour_the_tint_follows_the_accent_colour()
{
    PanelFixture f;
    QColor accent(200, 10, 20);
    f.virtualPlatform.appearance.accent = accent;
    QPalette palette = f.panel->palette();
    palette.setColor(QPalette::Highlight, accent);
    f.panel->setPalette(palette);
    accent.setAlphaF(0.24F);
    QCOMPARE(f.panel->tintOverlay->color(), accent);
}

void ShelfPanelTest::a_settings_change_after_the_panel_has_gone_is_no_matter()
{
    PanelFixture f;
    f.add(1);
    f.panel.reset();
    f.set(Settings::shelfItemSize.key, 100.0);
    const int requests = f.virtualPlatform.thumbnailGenerator.requestCount;
    f.notifications.post(Notifications::settingsChanged);
    QCOMPARE(f.virtualPlatform.thumbnailGenerator.requestCount, requests);
}

void ShelfPanelTest::a_tint_that_is_switched_off_keeps_its_colour()
{
    PanelFixture f;
    const QColor before = f.panel->tintOverlay->color();
    QVERIFY(!f.panel->tintOverlay->isHidden());
    f.set(Settings::tintIntensity.key, 0.0);
    f.settings.setTintColor(Qt::green);
    f.notifications.post(Notifications::settingsChanged);
    QCOMPARE(f.panel->tintOverlay->color(), before);
}

void ShelfPanelTest::names_follow_the_settings_both_ways_they_are_announced()
{
    for (const bool posted : {false, true}) {
        PanelFixture f;
        f.add(1);
        f.panel->show(Animated::No);
        const auto announce = [&] {
            if (posted)
                f.notifications.post(Notifications::settingsChanged);
            else
                f.panel->applySettings();
        };
        f.set(Settings::hideFileExtensions.key, true);
        announce();
        QCOMPARE(f.tile(0)->nameLabel->text(), u"0"_s);
        QVERIFY(!f.tile(0)->nameLabel->isHidden());
        f.set(Settings::fileNameDisplay.key, double(FileNameDisplay::Hidden));
        f.set(Settings::hideFileExtensions.key, false);
        announce();
        QVERIFY(f.tile(0)->nameLabel->isHidden());
        QCOMPARE(f.tile(0)->nameLabel->text(), u"0"_s);
        // The image fills the space of the name, whatever the tile's height is.
        QCOMPARE(f.tile(0)->imageView->geometry().bottom(), f.tile(0)->height() - 8 - 1);
        f.set(Settings::fileNameDisplay.key, double(FileNameDisplay::OnHover));
        announce();
        QVERIFY(f.tile(0)->nameLabel->isHidden());
        QCOMPARE(f.tile(0)->nameLabel->text(), u"0.png"_s);
    }
}

void ShelfPanelTest::an_absurd_item_size_is_survived()
{
    for (const double size : {1e300, -80.0, 0.0, std::numeric_limits<double>::infinity()}) {
        PanelFixture f;
        f.add(2);
        f.set(Settings::shelfItemSize.key, size);
        f.panel->applySettings();
        f.add(1);
        f.panel->show(Animated::No);
        QVERIFY(f.panel->width() >= 0 && f.panel->width() <= 32000);
        f.set(Settings::shelfItemSize.key, 72.0);
        f.panel->applySettings();
        QCOMPARE(f.panel->geometry(), QRect(1160, 210, 116, 380));
    }
}

void ShelfPanelTest::a_row_scrolls_sideways_and_by_the_wheel()
{
    PanelFixture f;
    f.set(Settings::windowEdge.key, double(WindowEdge::Bottom));
    f.add(11);
    f.panel->show(Animated::No);
    QApplication::processEvents();
    QScrollBar *bar = f.panel->scrollView->horizontalScrollBar();
    QVERIFY(bar->maximum() > 0);
    QVERIFY(bar->isVisible());
    QCOMPARE(f.panel->scrollView->verticalScrollBar()->maximum(), 0);
    // The scroller is below the tiles and does not reduce their height.
    QCOMPARE(f.panel->stackView->height(), 72 + 30 + 12);
    QWheelEvent wheel(QPointF(50, 50), QPointF(50, 50), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(f.panel->scrollView->viewport(), &wheel);
    QVERIFY(bar->value() > 0);
    for (int i = 10; i > 0; --i)
        f.panel->removeItem(file(i));
    f.advance(1);
    QApplication::processEvents();
    QVERIFY(!bar->isVisible());
}

void ShelfPanelTest::the_tap_is_there_while_something_is_selected()
{
    PanelFixture f;
    f.add(2);
    VirtualKeyTap &tap = f.virtualPlatform.keyTap;
    QVERIFY(!tap.handler);
    f.panel->selectAll();
    QVERIFY(tap.handler != nullptr);
    QCOMPARE(tap.installs, 1);
    f.panel->selectAll();
    QCOMPARE(tap.installs, 1);
    f.panel->selectAllAction();
    QVERIFY(!tap.handler);
    QCOMPARE(tap.removals, 1);
    f.panel->removeCmdATap();
    QCOMPARE(tap.removals, 1);
}

void ShelfPanelTest::command_a_selects_all_later_and_is_swallowed()
{
    PanelFixture f;
    f.add(3);
    f.tile(1)->onSelect();
    QCOMPARE(f.panel->selectedViews.size(), 1);
    QVERIFY(f.virtualPlatform.keyTap.press(Qt::Key_A, Qt::ControlModifier));
    QCOMPARE(f.panel->selectedViews.size(), 1);
    f.virtualPlatform.mainQueue.runPending();
    QCOMPARE(f.panel->selectedViews.size(), 3);
}

void ShelfPanelTest::other_keys_pass_through_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("swallowed");
    QTest::newRow("command-a") << int(Qt::Key_A) << int(Qt::ControlModifier) << true;
    QTest::newRow("keypad does not matter") << int(Qt::Key_A) << int(Qt::ControlModifier | Qt::KeypadModifier) << true;
    QTest::newRow("a") << int(Qt::Key_A) << int(Qt::NoModifier) << false;
    QTest::newRow("command-shift-a") << int(Qt::Key_A) << int(Qt::ControlModifier | Qt::ShiftModifier) << false;
    QTest::newRow("command-option-a") << int(Qt::Key_A) << int(Qt::ControlModifier | Qt::AltModifier) << false;
    QTest::newRow("command-control-a") << int(Qt::Key_A) << int(Qt::ControlModifier | Qt::MetaModifier) << false;
    QTest::newRow("command-b") << int(Qt::Key_B) << int(Qt::ControlModifier) << false;
}

void ShelfPanelTest::other_keys_pass_through()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(bool, swallowed);
    PanelFixture f;
    f.add(2);
    f.tile(0)->onSelect();
    QCOMPARE(f.virtualPlatform.keyTap.press(static_cast<Qt::Key>(key), Qt::KeyboardModifiers(modifiers)), swallowed);
    f.virtualPlatform.mainQueue.runPending();
    QCOMPARE(f.panel->selectedViews.size(), swallowed ? 2 : 1);
}

void ShelfPanelTest::a_refused_tap_is_no_matter()
{
    PanelFixture f;
    f.virtualPlatform.keyTap.refuses = true;
    f.add(2);
    f.panel->selectAll();
    QCOMPARE(f.panel->selectedViews.size(), 2);
    f.virtualPlatform.keyTap.refuses = false;
    f.panel->selectAll();
    QVERIFY(f.virtualPlatform.keyTap.handler != nullptr);
}

void ShelfPanelTest::a_tap_that_outlives_the_panel_does_nothing()
{
    PanelFixture f;
    f.add(1);
    f.panel->selectAll();
    QVERIFY(f.virtualPlatform.keyTap.press(Qt::Key_A, Qt::ControlModifier));
    f.panel.reset();
    f.virtualPlatform.mainQueue.runPending();
}

PARKLET_TEST(ShelfPanelTest)
#include "ShelfPanelTest.moc"
