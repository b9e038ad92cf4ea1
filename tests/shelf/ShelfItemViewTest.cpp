// SPDX-License-Identifier: MIT
#include "shelf/ShelfItemView.h"
#include "platform/FileURLs.h"
#include "settings/AppSettings.h"
#include "shelf/TileViews.h"
#include "tests/support/Corners.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QThread>

#include <cmath>

class ShelfItemViewTest : public QObject {
    Q_OBJECT

private slots:
    // Creation
    void a_new_tile_is_unselected_and_has_asked_for_its_thumbnail();
    void the_border_keeps_the_accent_colour_of_the_tiles_creation();
    void the_border_has_corners_of_8_points_and_goes_with_the_hover_background();
    void the_whole_tile_fades();
    // Thumbnail
    void the_thumbnail_is_requested_at_the_fitted_size_and_the_screens_scale();
    void without_a_screen_the_scale_is_two();
    void until_the_thumbnail_comes_there_is_no_image();
    void a_thumbnail_is_shown_at_the_size_it_was_requested_for();
    void without_a_thumbnail_the_files_icon_is_shown();
    void of_several_requests_the_last_to_complete_is_shown();
    void a_thumbnail_that_comes_after_the_tile_has_gone_does_nothing();
    void a_completion_on_another_thread_comes_back_to_the_main_queue();
    void an_image_is_fitted_to_the_top_of_its_view();
    void a_picture_of_other_proportions_than_asked_for_is_not_stretched();
    // Name
    void the_name_shows_by_the_setting();
    void a_hidden_name_keeps_its_text();
    void the_extension_is_hidden_by_the_setting_data();
    void the_extension_is_hidden_by_the_setting();
    void odd_names_are_shown_as_they_are_data();
    void odd_names_are_shown_as_they_are();
    void a_long_name_takes_two_lines_and_loses_its_middle();
    void a_line_break_in_a_name_takes_no_line();
    // Layout and hover
    void the_views_are_placed_in_the_tile_and_the_name_hangs_out_of_it();
    void the_pointer_brings_the_remove_button_over_0_15_seconds();
    void the_hover_background_is_white_with_corners_of_8_points();
    void on_hover_shows_the_name_while_the_pointer_is_there();
    void a_new_size_resets_the_hover_look_but_not_the_name();
    void the_hover_fade_ignores_disabled_animations();
    // Clicks
    void a_press_selects_an_unselected_tile_at_once();
    void a_press_on_a_selected_tile_selects_it_on_release();
    void a_drag_from_a_selected_tile_selects_nothing();
    void a_drag_that_cannot_begin_selects_nothing_either();
    void a_double_click_selects_all_unless_it_opens();
    void the_second_click_of_a_double_click_does_not_select_on_release();
    void a_third_click_in_a_row_is_one_of_several();
    void other_buttons_do_nothing();
    void the_remove_button_answers_while_it_is_invisible();
    void clicks_on_image_and_name_are_the_tiles();
    void the_tile_takes_no_drops();
    // Drags
    void the_drag_mode_decides_the_only_operation_data();
    void the_drag_mode_decides_the_only_operation();
    void a_drag_carries_the_file_with_its_picture();
    void a_drag_asks_for_companions_after_it_has_announced_itself();
    void an_empty_answer_drags_the_file_alone();
    void without_an_image_no_drag_begins_but_it_was_announced();
    void a_small_movement_is_no_drag();
    void the_end_of_a_drag_is_reported_when_it_did_something_data();
    void the_end_of_a_drag_is_reported_when_it_did_something();
    void without_callbacks_nothing_happens();
    void a_drag_that_ends_after_its_tile_has_gone_is_reported();
    void each_drag_of_a_tile_has_its_own_report();

private:
    static QImage picture();
};

namespace {

QUrl file(const QString &name)
{
    return QUrl::fromLocalFile(QStringLiteral("/files/") + name);
}

struct Fixture {
    explicit Fixture(const QString &name = QStringLiteral("picture.png"))
        : url(file(name))
    {
    }

    // A tile of the usual size, in a parent, with its callbacks recorded.
    ShelfItemView &make()
    {
        tile = std::make_unique<ShelfItemView>(url, virtualPlatform.platform, settings, &parent);
        parent.resize(200, 200);
        parent.show();
        tile->setGeometry(14, 6, 88, 102);
        tile->show();
        tile->onRemove = [this] { calls.append(QStringLiteral("remove")); };
        tile->onSelect = [this] { calls.append(QStringLiteral("select")); };
        tile->onSelectAll = [this] { calls.append(QStringLiteral("selectAll")); };
        tile->onDragStarted = [this] { calls.append(QStringLiteral("dragStarted")); };
        tile->onDragOut = [this] { calls.append(QStringLiteral("dragOut")); };
        tile->onMultiDragOut = [this] { calls.append(QStringLiteral("multiDragOut")); };
        return *tile;
    }

    void press(QPoint position = QPoint(40, 40)) { QTest::mousePress(tile.get(), Qt::LeftButton, {}, position); }
    void release(QPoint position = QPoint(40, 40)) { QTest::mouseRelease(tile.get(), Qt::LeftButton, {}, position); }

    // QTest::mouseMove sends no buttons, so the event is made by hand.
    void move(QPointF position)
    {
        QMouseEvent event(QEvent::MouseMove, position, tile->mapToGlobal(position), Qt::NoButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(tile.get(), &event);
    }

    void drag()
    {
        press();
        move(QPointF(80, 80));
    }

    void enter()
    {
        QEnterEvent event(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
        QApplication::sendEvent(tile.get(), &event);
    }

    void leave()
    {
        QEvent event(QEvent::Leave);
        QApplication::sendEvent(tile.get(), &event);
    }

    void completeThumbnail(std::optional<QImage> image)
    {
        virtualPlatform.thumbnailGenerator.completeFirst(std::move(image));
        virtualPlatform.mainQueue.runPending();
    }

    void set(const QString &key, const QVariant &value) { virtualPlatform.userDefaults.values.insert(key, value); }

    QUrl url;
    VirtualPlatform virtualPlatform;
    AppSettings settings{virtualPlatform.userDefaults, virtualPlatform.colorArchive, virtualPlatform.appearance};
    QWidget parent;
    QStringList calls;
    std::unique_ptr<ShelfItemView> tile;
};

// How much `view` itself covers, in pixels of full opacity.
double opacity(QWidget &view)
{
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += image.pixelColor(x, y).alphaF();
    }
    return sum;
}

} // namespace

QImage ShelfItemViewTest::picture()
{
    QImage image(72, 41, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

void ShelfItemViewTest::a_new_tile_is_unselected_and_has_asked_for_its_thumbnail()
{
    Fixture f;
    const ShelfItemView &tile = f.make();
    QCOMPARE(tile.fileURL, f.url);
    QVERIFY(!tile.isSelected);
    QCOMPARE(tile.borderWidth(), 0.0);
    QCOMPARE(tile.alpha(), 1.0);
    QCOMPARE(tile.lastLoadedSize, 72.0);
    QCOMPARE(f.virtualPlatform.thumbnailGenerator.requestCount, 1);
    QCOMPARE(tile.nameLabel->text(), QStringLiteral("picture.png"));
    QCOMPARE(tile.accessibleName(), QStringLiteral("picture.png"));
    QCOMPARE(tile.removeBtn->alpha(), 0.0);
    QCOMPARE(tile.removeBtn->accessibleName(), QStringLiteral("Remove"));
    QVERIFY(f.virtualPlatform.appearance.symbolRequests.contains({QStringLiteral("xmark"), QColor(Qt::white)}));
}

void ShelfItemViewTest::the_whole_tile_fades()
{
    Fixture f;
    f.set(Settings::disableAnimations.key, true);
    ShelfItemView &tile = f.make();
    f.completeThumbnail(picture());
    f.enter();
    tile.setBorderWidth(2);
    f.virtualPlatform.mainQueue.advance(0.15);
    const QList<QWidget *> parts = {&tile, tile.imageView, tile.nameLabel, tile.removeBtn};
    QList<double> full;
    for (QWidget *part : parts) {
        full.append(opacity(*part));
        QVERIFY(full.last() > 0);
    }
    tile.fadeOut(0.18);
    QVERIFY(tile.isFadingOut());
    f.virtualPlatform.mainQueue.advance(0.09);
    QVERIFY(tile.alpha() > 0.1 && tile.alpha() < 0.9);
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const double share = opacity(*parts.at(i)) / full.at(i);
        // Where a part is drawn in layers, as the name over its shadow, more of it is left.
        QVERIFY2(share > tile.alpha() - 0.03 && share < tile.alpha() + 0.12, QByteArray::number(share).constData());
    }
    f.virtualPlatform.mainQueue.advance(0.09);
    for (QWidget *part : parts)
        QCOMPARE(opacity(*part), 0.0);
}

void ShelfItemViewTest::the_border_has_corners_of_8_points_and_goes_with_the_hover_background()
{
    Fixture f;
    f.virtualPlatform.appearance.accent = Qt::green;
    ShelfItemView &tile = f.make();
    tile.setBorderWidth(2);
    QImage shown(tile.size(), QImage::Format_ARGB32_Premultiplied);
    shown.fill(Qt::transparent);
    tile.render(&shown, QPoint(), QRegion(), QWidget::RenderFlags());
    const double outside = areaOutsideCorner(shown, 8);
    QVERIFY2(std::abs(outside - (1 - M_PI / 4) * 8 * 8) < 1.5, QByteArray::number(outside).constData());

    f.enter();
    f.virtualPlatform.mainQueue.advance(0.15);
    shown.fill(Qt::transparent);
    tile.render(&shown, QPoint(), QRegion(), QWidget::RenderFlags());
    QCOMPARE(shown.pixelColor(44, 0), QColor(Qt::green));
    QCOMPARE(shown.pixelColor(1, 51), QColor(Qt::green));
    QCOMPARE(shown.pixelColor(44, 3).red(), 255);
    QVERIFY(std::abs(shown.pixelColor(44, 3).alpha() - 31) <= 1);
}

void ShelfItemViewTest::the_border_keeps_the_accent_colour_of_the_tiles_creation()
{
    Fixture f;
    f.virtualPlatform.appearance.accent = Qt::green;
    ShelfItemView &tile = f.make();
    f.virtualPlatform.appearance.accent = Qt::blue;
    tile.setBorderWidth(2);
    QImage shown(tile.size(), QImage::Format_ARGB32_Premultiplied);
    shown.fill(Qt::transparent);
    tile.render(&shown, QPoint(), QRegion(), QWidget::DrawChildren);
    // The border is two points wide, inside the tile's edge, and its corners are rounded.
    QCOMPARE(shown.pixelColor(44, 0), QColor(Qt::green));
    QCOMPARE(shown.pixelColor(44, 1), QColor(Qt::green));
    QCOMPARE(shown.pixelColor(44, 3).alpha(), 0);
    QCOMPARE(shown.pixelColor(0, 0).alpha(), 0);
    tile.setBorderWidth(0);
    shown.fill(Qt::transparent);
    tile.render(&shown, QPoint(), QRegion(), QWidget::DrawChildren);
    QCOMPARE(shown.pixelColor(44, 0).alpha(), 0);
}

void ShelfItemViewTest::the_thumbnail_is_requested_at_the_fitted_size_and_the_screens_scale()
{
    Fixture f;
    f.virtualPlatform.thumbnailGenerator.pixelSizes.insert(f.url, QSize(1920, 1080));
    f.virtualPlatform.screens.screens[0].scale = 1.5;
    f.set(Settings::shelfItemSize.key, 100.0);
    ShelfItemView &tile = f.make();
    const auto &request = f.virtualPlatform.thumbnailGenerator.requests.constFirst();
    QCOMPARE(request.file, f.url);
    QCOMPARE(request.size, QSizeF(100, 56));
    QCOMPARE(request.scale, 1.5);
    QCOMPARE(tile.lastLoadedSize, 100.0);
}

void ShelfItemViewTest::without_a_screen_the_scale_is_two()
{
    Fixture f;
    f.virtualPlatform.screens.mainIndex = -1;
    f.make();
    QCOMPARE(f.virtualPlatform.thumbnailGenerator.requests.constFirst().scale, 2.0);
    QCOMPARE(f.virtualPlatform.thumbnailGenerator.requests.constFirst().size, QSizeF(72, 72));
}

void ShelfItemViewTest::until_the_thumbnail_comes_there_is_no_image()
{
    Fixture f;
    const ShelfItemView &tile = f.make();
    QVERIFY(!tile.imageView->hasImage());
    f.virtualPlatform.thumbnailGenerator.completeFirst(picture());
    QVERIFY(!tile.imageView->hasImage());
    f.virtualPlatform.mainQueue.runPending();
    QVERIFY(tile.imageView->hasImage());
}

void ShelfItemViewTest::a_thumbnail_is_shown_at_the_size_it_was_requested_for()
{
    Fixture f;
    f.virtualPlatform.thumbnailGenerator.pixelSizes.insert(f.url, QSize(1080, 1920));
    const ShelfItemView &tile = f.make();
    f.completeThumbnail(QImage(20, 20, QImage::Format_RGB32));
    QCOMPARE(tile.imageView->imageSize(), QSizeF(41, 72));
    QVERIFY(f.virtualPlatform.workspace.iconRequests.isEmpty());
}

void ShelfItemViewTest::without_a_thumbnail_the_files_icon_is_shown()
{
    Fixture f;
    const ShelfItemView &tile = f.make();
    f.completeThumbnail(std::nullopt);
    QVERIFY(tile.imageView->hasImage());
    QCOMPARE(f.virtualPlatform.workspace.iconRequests, QList<QUrl>{f.url});

    Fixture nullImage;
    const ShelfItemView &other = nullImage.make();
    nullImage.completeThumbnail(QImage());
    QVERIFY(other.imageView->hasImage());
    QCOMPARE(nullImage.virtualPlatform.workspace.iconRequests.size(), 1);
}

void ShelfItemViewTest::of_several_requests_the_last_to_complete_is_shown()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    f.set(Settings::shelfItemSize.key, 100.0);
    tile.loadThumbnail();
    auto &requests = f.virtualPlatform.thumbnailGenerator.requests;
    QCOMPARE(requests.size(), 2);
    const auto first = requests.takeFirst();
    f.completeThumbnail(picture());
    QCOMPARE(tile.imageView->imageSize(), QSizeF(100, 100));
    first.completion(picture());
    f.virtualPlatform.mainQueue.runPending();
    QCOMPARE(tile.imageView->imageSize(), QSizeF(72, 72));
}

void ShelfItemViewTest::a_thumbnail_that_comes_after_the_tile_has_gone_does_nothing()
{
    Fixture f;
    f.make();
    f.virtualPlatform.thumbnailGenerator.completeFirst(std::nullopt);
    f.tile.reset();
    f.virtualPlatform.mainQueue.runPending();
    QVERIFY(f.virtualPlatform.workspace.iconRequests.isEmpty());
}

void ShelfItemViewTest::a_completion_on_another_thread_comes_back_to_the_main_queue()
{
    // The virtual queue is filled from the worker and emptied here, after it has ended.
    Fixture f;
    const ShelfItemView &tile = f.make();
    const auto request = f.virtualPlatform.thumbnailGenerator.requests.takeFirst();
    std::unique_ptr<QThread> worker(QThread::create([&request] { request.completion(picture()); }));
    worker->start();
    QVERIFY(worker->wait(10'000));
    QVERIFY(!tile.imageView->hasImage());
    QCOMPARE(f.virtualPlatform.mainQueue.pendingCount(), 1);
    f.virtualPlatform.mainQueue.runPending();
    QVERIFY(tile.imageView->hasImage());
}

void ShelfItemViewTest::an_image_is_fitted_to_the_top_of_its_view()
{
    const QRectF view(0, 0, 80, 67);
    // Small images grow, large ones shrink, both keep their proportions.
    QCOMPARE(TileImageView::fittedRect(QSizeF(72, 41), view), QRectF(0, 0, 80, 41 * 80.0 / 72));
    QCOMPARE(TileImageView::fittedRect(QSizeF(41, 72), view), QRectF((80 - 41 * 67.0 / 72) / 2, 0, 41 * 67.0 / 72, 67));
    QCOMPARE(TileImageView::fittedRect(QSizeF(500, 500), view), QRectF(6.5, 0, 67, 67));
    QVERIFY(TileImageView::fittedRect(QSizeF(72, 0), view).isEmpty());
}

void ShelfItemViewTest::a_picture_of_other_proportions_than_asked_for_is_not_stretched()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    QImage page(36, 72, QImage::Format_RGB32);
    page.fill(Qt::red);
    f.completeThumbnail(page);
    QCOMPARE(tile.imageView->imageSize(), QSizeF(72, 72));
    QImage shown(tile.imageView->QWidget::size(), QImage::Format_ARGB32_Premultiplied);
    shown.fill(Qt::transparent);
    tile.imageView->render(&shown, QPoint(), QRegion(), QWidget::DrawChildren);
    // 67 high, so half as wide, in the middle of the 80 that the view is wide.
    QCOMPARE(shown.pixelColor(40, 33), QColor(Qt::red));
    QCOMPARE(shown.pixelColor(40 - 20, 33).alpha(), 0);
    QCOMPARE(shown.pixelColor(40 + 20, 33).alpha(), 0);
}

void ShelfItemViewTest::the_name_shows_by_the_setting()
{
    const QList<std::pair<QVariant, bool>> cases = {{QVariant(), true}, {0.0, true}, {1.0, false},
                                                    {2.0, false},       {7.0, true}, {QStringLiteral("1"), true}};
    for (const auto &[value, visible] : cases) {
        Fixture f;
        if (value.isValid())
            f.set(Settings::fileNameDisplay.key, value);
        QCOMPARE(!f.make().nameLabel->isHidden(), visible);
    }
}

void ShelfItemViewTest::a_hidden_name_keeps_its_text()
{
    Fixture f(QStringLiteral("a.txt"));
    ShelfItemView &tile = f.make();
    f.set(Settings::fileNameDisplay.key, 1.0);
    f.set(Settings::hideFileExtensions.key, true);
    tile.updateNameLabel();
    QVERIFY(tile.nameLabel->isHidden());
    QCOMPARE(tile.nameLabel->text(), QStringLiteral("a.txt"));
    f.set(Settings::fileNameDisplay.key, 2.0);
    tile.updateNameLabel();
    QVERIFY(tile.nameLabel->isHidden());
    QCOMPARE(tile.nameLabel->text(), QStringLiteral("a"));
    // One that was hidden from the beginning has none.
    Fixture hidden;
    hidden.set(Settings::fileNameDisplay.key, 1.0);
    QCOMPARE(hidden.make().nameLabel->text(), QString());
}

void ShelfItemViewTest::the_extension_is_hidden_by_the_setting_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::newRow("one") << QStringLiteral("Report.pdf") << QStringLiteral("Report");
    QTest::newRow("only the last goes") << QStringLiteral("Report.final.pdf") << QStringLiteral("Report.final");
    QTest::newRow("archive") << QStringLiteral("archive.tar.gz") << QStringLiteral("archive.tar");
    QTest::newRow("dot file") << QStringLiteral(".bashrc") << QStringLiteral(".bashrc");
    QTest::newRow("dot file with extension") << QStringLiteral(".config.json") << QStringLiteral(".config");
    QTest::newRow("none") << QStringLiteral("Makefile") << QStringLiteral("Makefile");
    QTest::newRow("dot in a folder only") << QStringLiteral("v1.2/Makefile") << QStringLiteral("Makefile");
    QTest::newRow("trailing dot") << QStringLiteral("name.") << QStringLiteral("name.");
    QTest::newRow("not latin") << QStringLiteral("отчёт.pdf") << QStringLiteral("отчёт");
}

void ShelfItemViewTest::the_extension_is_hidden_by_the_setting()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    Fixture f(name);
    f.set(Settings::hideFileExtensions.key, true);
    QCOMPARE(f.make().nameLabel->text(), shown);
    QCOMPARE(ShelfItemView::displayName(file(name), false), name.section(QLatin1Char('/'), -1));
}

void ShelfItemViewTest::odd_names_are_shown_as_they_are_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QString>("whole");
    QTest::addColumn<QString>("withoutExtension");
    const auto row = [](const char *path, const char *whole, const char *withoutExtension) {
        QTest::newRow(whole) << QByteArray(path) << QString::fromUtf8(whole) << QString::fromUtf8(withoutExtension);
    };
    row("/a/100% sure.txt", "100% sure.txt", "100% sure");
    row("/a/percent%20sign.txt", "percent%20sign.txt", "percent%20sign");
    row("/a/#1.txt", "#1.txt", "#1");
    row("/a/what?x=1.txt", "what?x=1.txt", "what?x=1");
    row("/a/no \xff\xfe text.txt", "no \xef\xbf\xbd\xef\xbf\xbd text.txt", "no \xef\xbf\xbd\xef\xbf\xbd text");
    row("/a/folder.d/", "folder.d", "folder");
}

void ShelfItemViewTest::odd_names_are_shown_as_they_are()
{
    QFETCH(QByteArray, path);
    QFETCH(QString, whole);
    QFETCH(QString, withoutExtension);
    QCOMPARE(ShelfItemView::displayName(fileURL(path), false), whole);
    QCOMPARE(ShelfItemView::displayName(fileURL(path), true), withoutExtension);
}

void ShelfItemViewTest::a_long_name_takes_two_lines_and_loses_its_middle()
{
    QWidget parent;
    const TileLabel label(&parent);
    QCOMPARE(TileLabel::lines(QStringLiteral("a"), label.font(), 84), QStringList{QStringLiteral("a")});
    QVERIFY(TileLabel::lines(QString(), label.font(), 84).isEmpty());
    const QString longName = QStringLiteral("A very long name of a file that nobody can read in one go at all.tar.gz");
    const QStringList lines = TileLabel::lines(longName, label.font(), 84);
    QCOMPARE(lines.size(), 2);
    QVERIFY(longName.startsWith(lines.first()));
    QVERIFY(lines.last().contains(QChar(0x2026)));
    QVERIFY(lines.last().endsWith(QStringLiteral("gz")));
    const QFontMetricsF metrics(label.font());
    for (const QString &line : lines)
        QVERIFY(metrics.horizontalAdvance(line) <= 84);
    // A name without any place to break is broken anyway.
    QCOMPARE(TileLabel::lines(QString(200, QLatin1Char('x')), label.font(), 84).size(), 2);
}

void ShelfItemViewTest::a_line_break_in_a_name_takes_no_line()
{
    QWidget parent;
    const TileLabel label(&parent);
    QCOMPARE(TileLabel::lines(QStringLiteral("a\nb\tc"), label.font(), 84), QStringList{QStringLiteral("a b c")});
}

void ShelfItemViewTest::the_views_are_placed_in_the_tile_and_the_name_hangs_out_of_it()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    QCOMPARE(tile.imageView->geometry(), QRect(4, 8, 80, 67));
    QCOMPARE(tile.removeBtn->geometry(), QRect(68, 2, 18, 18));
    // The label is the tile's sibling: 2 in from the tile's left, its last 5 points below the tile's bottom.
    QCOMPARE(tile.nameLabel->parentWidget(), &f.parent);
    QCOMPARE(tile.nameLabel->geometry(), QRect(14 + 2, 6 + 102 + 5 - 26, 84, 26));
    tile.move(50, 60);
    QCOMPARE(tile.nameLabel->pos(), QPoint(52, 60 + 81));

    f.set(Settings::fileNameDisplay.key, 1.0);
    tile.resize(88, 88);
    QCOMPARE(tile.imageView->geometry(), QRect(4, 8, 80, 72));
    QCOMPARE(tile.nameLabel->height(), 0);
    const QPointer<TileLabel> label = tile.nameLabel;
    f.tile.reset();
    QVERIFY(!label);
}

void ShelfItemViewTest::the_pointer_brings_the_remove_button_over_0_15_seconds()
{
    Fixture f;
    const ShelfItemView &tile = f.make();
    f.enter();
    QCOMPARE(tile.removeBtn->alpha(), 0.0);
    f.virtualPlatform.mainQueue.advance(0.075);
    QVERIFY(tile.removeBtn->alpha() > 0.0 && tile.removeBtn->alpha() < 1.0);
    f.virtualPlatform.mainQueue.advance(0.075);
    QCOMPARE(tile.removeBtn->alpha(), 1.0);
    QCOMPARE(tile.hoverBackgroundAlpha(), 0.12);
    f.leave();
    f.virtualPlatform.mainQueue.advance(0.14);
    QVERIFY(tile.removeBtn->alpha() > 0.0);
    f.virtualPlatform.mainQueue.advance(0.01);
    QCOMPARE(tile.removeBtn->alpha(), 0.0);
    QCOMPARE(tile.hoverBackgroundAlpha(), 0.0);
}

void ShelfItemViewTest::the_hover_background_is_white_with_corners_of_8_points()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    f.enter();
    f.virtualPlatform.mainQueue.advance(0.15);
    QImage shown(tile.size(), QImage::Format_ARGB32_Premultiplied);
    shown.fill(Qt::transparent);
    tile.render(&shown, QPoint(), QRegion(), QWidget::RenderFlags());
    QVERIFY(std::abs(shown.pixelColor(44, 0).alpha() - 31) <= 1); // 0.12
    // A quarter of a circle fills the corner.
    double corner = 0;
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x)
            corner += shown.pixelColor(x, y).alphaF() / shown.pixelColor(44, 0).alphaF();
    }
    QVERIFY2(std::abs(corner - M_PI * 8 * 8 / 4) < 1.5, QByteArray::number(corner).constData());
    QCOMPARE(shown.pixelColor(0, 0).alpha(), 0);
}

void ShelfItemViewTest::on_hover_shows_the_name_while_the_pointer_is_there()
{
    Fixture f;
    f.set(Settings::fileNameDisplay.key, 2.0);
    const ShelfItemView &tile = f.make();
    f.enter();
    QVERIFY(!tile.nameLabel->isHidden());
    f.leave();
    QVERIFY(tile.nameLabel->isHidden());

    Fixture always;
    const ShelfItemView &other = always.make();
    always.leave();
    QVERIFY(!other.nameLabel->isHidden());
    always.set(Settings::fileNameDisplay.key, 1.0);
    other.nameLabel->hide();
    always.enter();
    QVERIFY(other.nameLabel->isHidden());
}

void ShelfItemViewTest::a_new_size_resets_the_hover_look_but_not_the_name()
{
    Fixture f;
    f.set(Settings::fileNameDisplay.key, 2.0);
    ShelfItemView &tile = f.make();
    f.enter();
    f.virtualPlatform.mainQueue.advance(0.15);
    tile.resize(88, 130);
    QCOMPARE(tile.removeBtn->alpha(), 0.0);
    QCOMPARE(tile.hoverBackgroundAlpha(), 0.0);
    QVERIFY(!tile.nameLabel->isHidden());
}

void ShelfItemViewTest::the_hover_fade_ignores_disabled_animations()
{
    Fixture f;
    f.set(Settings::disableAnimations.key, true);
    const ShelfItemView &tile = f.make();
    f.enter();
    QCOMPARE(tile.removeBtn->alpha(), 0.0);
    f.virtualPlatform.mainQueue.advance(0.15);
    QCOMPARE(tile.removeBtn->alpha(), 1.0);
}

void ShelfItemViewTest::a_press_selects_an_unselected_tile_at_once()
{
    Fixture f;
    f.make();
    QTest::mousePress(f.tile.get(), Qt::LeftButton, Qt::ControlModifier | Qt::ShiftModifier, QPoint(40, 40));
    QCOMPARE(f.calls, QStringList{QStringLiteral("select")});
    f.tile->isSelected = true; // as the shelf does
    f.release();
    QCOMPARE(f.calls.size(), 1);
}

void ShelfItemViewTest::a_press_on_a_selected_tile_selects_it_on_release()
{
    Fixture f;
    f.make().isSelected = true;
    f.press();
    QVERIFY(f.calls.isEmpty());
    f.release();
    QCOMPARE(f.calls, QStringList{QStringLiteral("select")});
    f.release();
    QCOMPARE(f.calls.size(), 1);
}

void ShelfItemViewTest::a_drag_from_a_selected_tile_selects_nothing()
{
    Fixture f;
    f.make().isSelected = true;
    f.completeThumbnail(picture());
    f.drag();
    f.release();
    QCOMPARE(f.calls, QStringList{QStringLiteral("dragStarted")});
}

void ShelfItemViewTest::a_drag_that_cannot_begin_selects_nothing_either()
{
    Fixture f;
    f.make().isSelected = true;
    f.drag();
    QCOMPARE(f.virtualPlatform.dragSessions.begun, 0);
    f.release();
    QCOMPARE(f.calls, QStringList{QStringLiteral("dragStarted")});
}

void ShelfItemViewTest::a_double_click_selects_all_unless_it_opens()
{
    for (const QVariant &action : {QVariant(), QVariant(1.0), QVariant(5.0)}) {
        Fixture f;
        if (action.isValid())
            f.set(Settings::doubleClickAction.key, action);
        f.make();
        QTest::mouseDClick(f.tile.get(), Qt::LeftButton, {}, QPoint(40, 40));
        QCOMPARE(f.calls.last(), QStringLiteral("selectAll"));
        QVERIFY(f.virtualPlatform.workspace.opened.isEmpty());
    }
    Fixture opens;
    opens.set(Settings::doubleClickAction.key, 0.0);
    opens.virtualPlatform.workspace.openSucceeds = false;
    opens.make();
    opens.press();
    opens.release();
    QTest::mouseDClick(opens.tile.get(), Qt::LeftButton, {}, QPoint(40, 40));
    QCOMPARE(opens.virtualPlatform.workspace.opened, QList<QUrl>{opens.url});
    // The first click has selected it.
    QCOMPARE(opens.calls, QStringList{QStringLiteral("select")});
}

void ShelfItemViewTest::the_second_click_of_a_double_click_does_not_select_on_release()
{
    Fixture f;
    f.make().isSelected = true;
    f.press();
    QMouseEvent second(QEvent::MouseButtonDblClick, QPointF(40, 40), QPointF(40, 40), Qt::LeftButton, Qt::LeftButton,
                       Qt::NoModifier);
    QApplication::sendEvent(f.tile.get(), &second);
    f.release();
    QCOMPARE(f.calls, QStringList{QStringLiteral("selectAll")});
}

void ShelfItemViewTest::a_third_click_in_a_row_is_one_of_several()
{
    Fixture f;
    f.make().isSelected = true;
    const auto send = [&](QEvent::Type type, ulong time) {
        QMouseEvent event(type, QPointF(40, 40), QPointF(40, 40), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        event.setTimestamp(time);
        QApplication::sendEvent(f.tile.get(), &event);
    };
    send(QEvent::MouseButtonPress, 1000);
    send(QEvent::MouseButtonDblClick, 1100);
    send(QEvent::MouseButtonRelease, 1120);
    send(QEvent::MouseButtonPress, 1200);
    send(QEvent::MouseButtonRelease, 1220);
    QCOMPARE(f.calls, (QStringList{QStringLiteral("selectAll"), QStringLiteral("selectAll")}));
    // Long after, a click is a click again.
    send(QEvent::MouseButtonPress, 9000);
    send(QEvent::MouseButtonRelease, 9020);
    QCOMPARE(f.calls.last(), QStringLiteral("select"));
}

void ShelfItemViewTest::other_buttons_do_nothing()
{
    Fixture f;
    f.make();
    QTest::mouseClick(f.tile.get(), Qt::RightButton, {}, QPoint(40, 40));
    QTest::mouseDClick(f.tile.get(), Qt::MiddleButton, {}, QPoint(40, 40));
    QVERIFY(f.calls.isEmpty());
}

void ShelfItemViewTest::the_remove_button_answers_while_it_is_invisible()
{
    Fixture f;
    const ShelfItemView &tile = f.make();
    QCOMPARE(tile.removeBtn->alpha(), 0.0);
    for (const QPoint corner : {QPoint(68, 2), QPoint(85, 2), QPoint(68, 19), QPoint(85, 19)})
        QCOMPARE(tile.childAt(corner), static_cast<QWidget *>(tile.removeBtn));
    QTest::mouseClick(tile.removeBtn, Qt::LeftButton);
    QCOMPARE(f.calls, QStringList{QStringLiteral("remove")});
}

void ShelfItemViewTest::clicks_on_image_and_name_are_the_tiles()
{
    Fixture f;
    const ShelfItemView &tile = f.make();
    QCOMPARE(f.parent.childAt(tile.geometry().topLeft() + QPoint(40, 40)), static_cast<const QWidget *>(&tile));
    QCOMPARE(f.parent.childAt(tile.geometry().topLeft() + QPoint(40, 95)), static_cast<const QWidget *>(&tile));
    // The last points of the name lie outside the tile, and so do clicks on them.
    QVERIFY(!f.parent.childAt(tile.geometry().topLeft() + QPoint(40, 104)));
}

void ShelfItemViewTest::the_tile_takes_no_drops()
{
    Fixture f;
    const ShelfItemView &tile = f.make();
    QVERIFY(!tile.acceptDrops());
    QVERIFY(!tile.imageView->acceptDrops());
    QVERIFY(!tile.nameLabel->acceptDrops());
}

void ShelfItemViewTest::the_drag_mode_decides_the_only_operation_data()
{
    QTest::addColumn<QVariant>("mode");
    QTest::addColumn<int>("operation");
    QTest::newRow("absent") << QVariant() << static_cast<int>(DragOperation::Copy);
    QTest::newRow("copy") << QVariant(0.0) << static_cast<int>(DragOperation::Copy);
    QTest::newRow("move") << QVariant(1.0) << static_cast<int>(DragOperation::Move);
    QTest::newRow("link") << QVariant(2.0) << static_cast<int>(DragOperation::Link);
    QTest::newRow("out of range") << QVariant(7.0) << static_cast<int>(DragOperation::Copy);
    QTest::newRow("negative") << QVariant(-1.0) << static_cast<int>(DragOperation::Copy);
}

void ShelfItemViewTest::the_drag_mode_decides_the_only_operation()
{
    QFETCH(QVariant, mode);
    QFETCH(int, operation);
    Fixture f;
    if (mode.isValid())
        f.set(Settings::dragMode.key, mode);
    f.make();
    f.completeThumbnail(picture());
    f.drag();
    QCOMPARE(f.virtualPlatform.dragSessions.sessions.size(), 1);
    QCOMPARE(static_cast<int>(f.virtualPlatform.dragSessions.sessions.first().offered), operation);
}

void ShelfItemViewTest::a_drag_carries_the_file_with_its_picture()
{
    Fixture f;
    f.make();
    f.completeThumbnail(picture());
    f.drag();
    const auto &session = f.virtualPlatform.dragSessions.sessions.first();
    QCOMPARE(session.source.data(), static_cast<QWidget *>(f.tile.get()));
    QCOMPARE(session.items.size(), 1);
    QCOMPARE(session.items.first().fileURL, f.url);
    // At the bottom left of the tile, which is 102 high.
    QCOMPARE(session.items.first().frame, QRectF(0, 30, 72, 72));
    QVERIFY(!session.items.first().contents.isNull());
    // At the size that items have as the drag begins, not as the tile was made.
    f.set(Settings::shelfItemSize.key, 100.0);
    f.drag();
    QCOMPARE(f.virtualPlatform.dragSessions.sessions.last().items.first().frame, QRectF(0, 2, 100, 100));
    // Without a thumbnail the icon goes along, at the item's size.
    Fixture icon;
    icon.make();
    icon.completeThumbnail(std::nullopt);
    icon.drag();
    QVERIFY(!icon.virtualPlatform.dragSessions.sessions.first().items.first().contents.isNull());
}

void ShelfItemViewTest::a_drag_asks_for_companions_after_it_has_announced_itself()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    QList<DraggingItem> items = {DraggingItem{file(QStringLiteral("b")), QRectF(0, 0, 72, 72), QPixmap(2, 2)},
                                 DraggingItem{f.url, QRectF(0, 0, 72, 72), QPixmap(2, 2)}};
    tile.getDragItems = [&]() -> std::optional<QList<DraggingItem>> {
        f.calls.append(QStringLiteral("getDragItems"));
        return items;
    };
    // Also a tile whose own image has not come yet drags the selection.
    f.drag();
    QCOMPARE(f.calls,
             (QStringList{QStringLiteral("select"), QStringLiteral("dragStarted"), QStringLiteral("getDragItems")}));
    const auto &session = f.virtualPlatform.dragSessions.sessions.first();
    QCOMPARE(session.items.size(), 2);
    QCOMPARE(session.items.first().fileURL, items.first().fileURL);
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QCOMPARE(f.calls.last(), QStringLiteral("multiDragOut"));
}

void ShelfItemViewTest::an_empty_answer_drags_the_file_alone()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    tile.getDragItems = [] { return std::optional<QList<DraggingItem>>(QList<DraggingItem>()); };
    f.completeThumbnail(picture());
    f.drag();
    QCOMPARE(f.virtualPlatform.dragSessions.sessions.first().items.first().fileURL, f.url);
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QCOMPARE(f.calls.last(), QStringLiteral("dragOut"));
}

void ShelfItemViewTest::without_an_image_no_drag_begins_but_it_was_announced()
{
    Fixture f;
    f.make();
    f.drag();
    QCOMPARE(f.virtualPlatform.dragSessions.begun, 0);
    QCOMPARE(f.calls.last(), QStringLiteral("dragStarted"));
}

void ShelfItemViewTest::a_small_movement_is_no_drag()
{
    Fixture f;
    f.make().isSelected = true;
    f.completeThumbnail(picture());
    f.press();
    f.move(QPointF(42, 41));
    f.release();
    QCOMPARE(f.virtualPlatform.dragSessions.begun, 0);
    QCOMPARE(f.calls, QStringList{QStringLiteral("select")});
    // Without a press there is nothing to drag.
    f.move(QPointF(90, 90));
    QCOMPARE(f.virtualPlatform.dragSessions.begun, 0);
}

void ShelfItemViewTest::the_end_of_a_drag_is_reported_when_it_did_something_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QVariant>("removes");
    QTest::addColumn<bool>("reported");
    for (const auto operation : {DragOperation::Copy, DragOperation::Move, DragOperation::Link}) {
        QTest::addRow("operation %d", static_cast<int>(operation)) << static_cast<int>(operation) << QVariant() << true;
        QTest::addRow("operation %d, items stay", static_cast<int>(operation))
            << static_cast<int>(operation) << QVariant(false) << false;
    }
    QTest::newRow("cancelled") << static_cast<int>(DragOperation::None) << QVariant() << false;
}

void ShelfItemViewTest::the_end_of_a_drag_is_reported_when_it_did_something()
{
    QFETCH(int, operation);
    QFETCH(QVariant, removes);
    QFETCH(bool, reported);
    for (const bool multiple : {false, true}) {
        Fixture f;
        if (removes.isValid())
            f.set(Settings::removeItemsWhenDraggedOut.key, removes);
        ShelfItemView &tile = f.make();
        f.completeThumbnail(picture());
        if (multiple) {
            tile.getDragItems = [&f] {
                return std::optional<QList<DraggingItem>>({DraggingItem{f.url, QRectF(0, 0, 72, 72), QPixmap(2, 2)}});
            };
        }
        f.drag();
        f.calls.clear();
        f.virtualPlatform.dragSessions.end(static_cast<DragOperation>(operation));
        const QString report = multiple ? QStringLiteral("multiDragOut") : QStringLiteral("dragOut");
        QCOMPARE(f.calls, reported ? QStringList{report} : QStringList());
    }
}

void ShelfItemViewTest::without_callbacks_nothing_happens()
{
    Fixture f;
    f.tile = std::make_unique<ShelfItemView>(f.url, f.virtualPlatform.platform, f.settings, nullptr);
    f.tile->resize(88, 102);
    QCOMPARE(f.tile->nameLabel->parentWidget(), static_cast<QWidget *>(f.tile.get()));
    f.completeThumbnail(picture());
    f.drag();
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QTest::mouseDClick(f.tile.get(), Qt::LeftButton, {}, QPoint(40, 40));
    f.tile->isSelected = true;
    f.press();
    f.release();
    QTest::mouseClick(f.tile->removeBtn, Qt::LeftButton);
    f.drag();
    f.tile.reset();
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
}

void ShelfItemViewTest::a_drag_that_ends_after_its_tile_has_gone_is_reported()
{
    for (const bool multiple : {false, true}) {
        Fixture f;
        ShelfItemView &tile = f.make();
        f.completeThumbnail(picture());
        if (multiple) {
            tile.getDragItems = [&f] {
                return std::optional<QList<DraggingItem>>({DraggingItem{f.url, QRectF(0, 0, 72, 72), QPixmap(2, 2)}});
            };
        }
        f.drag();
        f.calls.clear();
        f.tile.reset();
        f.virtualPlatform.dragSessions.end(DragOperation::Copy);
        QCOMPARE(f.calls, QStringList{multiple ? QStringLiteral("multiDragOut") : QStringLiteral("dragOut")});
    }
}

void ShelfItemViewTest::each_drag_of_a_tile_has_its_own_report()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    f.completeThumbnail(picture());
    const auto dragAs = [&](const QString &name) {
        tile.onDragOut = [&f, name] { f.calls.append(name); };
        f.drag();
    };
    dragAs(QStringLiteral("first"));
    dragAs(QStringLiteral("second"));
    f.calls.clear();
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    f.virtualPlatform.dragSessions.end(DragOperation::Copy);
    QCOMPARE(f.calls, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
}

PARKLET_TEST(ShelfItemViewTest)
#include "ShelfItemViewTest.moc"
