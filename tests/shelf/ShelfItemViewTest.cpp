// SPDX-License-Identifier: MIT
#include "shelf/ShelfItemView.h"
#include "platform/FileURLs.h"
#include "shelf/TileViews.h"
#include "tests/shelf/TileFixture.h"
#include "tests/support/Corners.h"
#include "tests/support/TestProgram.h"

#include <QTest>
#include <QThread>

#include <cmath>

using namespace Qt::StringLiterals;

// The look of a tile, and its requests.
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
    void the_icon_is_shown_meanwhile_when_the_thumbnail_is_delayed();
    void a_delay_leaves_the_picture_that_is_there();
    void an_icon_that_is_found_late_does_not_replace_a_picture();
    void of_several_requests_the_last_to_complete_is_shown();
    void a_thumbnail_that_comes_after_the_tile_has_gone_does_nothing();
    void a_completion_on_another_thread_comes_back_to_the_main_queue();
    void an_image_is_fitted_to_the_top_of_its_view();
    void the_remove_button_lies_over_the_picture();
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
};

namespace {

using Fixture = TileFixture;

} // namespace

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
    QCOMPARE(tile.nameLabel->text(), u"picture.png"_s);
    QCOMPARE(tile.accessibleName(), u"picture.png"_s);
    QCOMPARE(tile.removeBtn->alpha(), 0.0);
    QCOMPARE(tile.removeBtn->accessibleName(), u"Remove"_s);
    QVERIFY(f.virtualPlatform.appearance.symbolRequests.contains({u"xmark"_s, QColor(Qt::white)}));
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
        // A part that is drawn in layers, as the name over its shadow, keeps more of its opacity.
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

void ShelfItemViewTest::the_icon_is_shown_meanwhile_when_the_thumbnail_is_delayed()
{
    Fixture f;
    const ShelfItemView &tile = f.make();
    f.virtualPlatform.thumbnailGenerator.requests.constFirst().delayed();
    QVERIFY(tile.imageView->hasImage());
    QCOMPARE(f.virtualPlatform.workspace.iconRequests, QList<QUrl>{f.url});
    f.completeThumbnail(picture());
    QCOMPARE(tile.imageView->imageSize(), QSizeF(72, 72));
    QCOMPARE(f.virtualPlatform.workspace.iconRequests.size(), 1);
}

void ShelfItemViewTest::a_delay_leaves_the_picture_that_is_there()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    f.completeThumbnail(picture());
    tile.loadThumbnail();
    f.virtualPlatform.thumbnailGenerator.requests.constFirst().delayed();
    QVERIFY(f.virtualPlatform.workspace.iconRequests.isEmpty());
    QCOMPARE(tile.imageView->imageSize(), QSizeF(72, 72));
}

void ShelfItemViewTest::an_icon_that_is_found_late_does_not_replace_a_picture()
{
    Fixture f;
    f.virtualPlatform.workspace.holdsIcons = true;
    const ShelfItemView &tile = f.make();
    f.virtualPlatform.thumbnailGenerator.requests.constFirst().delayed();
    QVERIFY(!tile.imageView->hasImage());
    QPixmap pixels(32, 32);
    pixels.fill(Qt::gray);
    const auto found = f.virtualPlatform.workspace.heldIcons.takeFirst();
    // The desktop finds an icon first by the name, then by the kind.
    found(QIcon(pixels));
    QVERIFY(tile.imageView->hasImage());
    f.completeThumbnail(picture());
    found(QIcon(pixels));
    QCOMPARE(tile.imageView->imageSize(), QSizeF(72, 72));
    f.tile.reset();
    found(QIcon(pixels));
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
    // The worker fills the virtual queue, and the test empties it after the worker has ended.
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
    // Small images are enlarged and large ones reduced, and both keep their proportions.
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
    // The image is 67 high, so it is 33.5 wide, in the middle of a view that is 80 wide.
    QCOMPARE(shown.pixelColor(40, 33), QColor(Qt::red));
    QCOMPARE(shown.pixelColor(40 - 20, 33).alpha(), 0);
    QCOMPARE(shown.pixelColor(40 + 20, 33).alpha(), 0);
}

void ShelfItemViewTest::the_name_shows_by_the_setting()
{
    const QList<std::pair<QVariant, bool>> cases = {{QVariant(), true}, {0.0, true}, {1.0, false},
                                                    {2.0, false},       {7.0, true}, {u"1"_s, true}};
    for (const auto &[value, visible] : cases) {
        Fixture f;
        if (value.isValid())
            f.set(Settings::fileNameDisplay.key, value);
        QCOMPARE(!f.make().nameLabel->isHidden(), visible);
    }
}

void ShelfItemViewTest::a_hidden_name_keeps_its_text()
{
    Fixture f(u"a.txt"_s);
    ShelfItemView &tile = f.make();
    f.set(Settings::fileNameDisplay.key, 1.0);
    f.set(Settings::hideFileExtensions.key, true);
    tile.updateNameLabel();
    QVERIFY(tile.nameLabel->isHidden());
    QCOMPARE(tile.nameLabel->text(), u"a.txt"_s);
    f.set(Settings::fileNameDisplay.key, 2.0);
    tile.updateNameLabel();
    QVERIFY(tile.nameLabel->isHidden());
    QCOMPARE(tile.nameLabel->text(), u"a"_s);
    // A name that was hidden from the beginning has no label text.
    Fixture hidden;
    hidden.set(Settings::fileNameDisplay.key, 1.0);
    QCOMPARE(hidden.make().nameLabel->text(), QString());
}

void ShelfItemViewTest::the_extension_is_hidden_by_the_setting_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::newRow("one") << u"Report.pdf"_s << u"Report"_s;
    QTest::newRow("only the last goes") << u"Report.final.pdf"_s << u"Report.final"_s;
    QTest::newRow("archive") << u"archive.tar.gz"_s << u"archive.tar"_s;
    QTest::newRow("dot file") << u".bashrc"_s << u".bashrc"_s;
    QTest::newRow("dot file with extension") << u".config.json"_s << u".config"_s;
    QTest::newRow("none") << u"Makefile"_s << u"Makefile"_s;
    QTest::newRow("dot in a folder only") << u"v1.2/Makefile"_s << u"Makefile"_s;
    QTest::newRow("trailing dot") << u"name."_s << u"name."_s;
    QTest::newRow("not latin") << u"отчёт.pdf"_s << u"отчёт"_s;
}

void ShelfItemViewTest::the_extension_is_hidden_by_the_setting()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    Fixture f(name);
    f.set(Settings::hideFileExtensions.key, true);
    QCOMPARE(f.make().nameLabel->text(), shown);
    QCOMPARE(ShelfItemView::displayName(file(name), Extension::Shown), name.section(QLatin1Char('/'), -1));
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
    // The name would look like "exe.png" if the mark took effect.
    row("/a/\xe2\x80\xae"
        "gnp.exe",
        "\xef\xbf\xbdgnp.exe", "\xef\xbf\xbdgnp");
    row("/a/\xe2\x81\xa7"
        "a.txt",
        "\xef\xbf\xbd"
        "a.txt",
        "\xef\xbf\xbd"
        "a");
    row("/a/folder.d/", "folder.d", "folder");
}

void ShelfItemViewTest::odd_names_are_shown_as_they_are()
{
    QFETCH(QByteArray, path);
    QFETCH(QString, whole);
    QFETCH(QString, withoutExtension);
    QCOMPARE(ShelfItemView::displayName(fileURL(path), Extension::Shown), whole);
    QCOMPARE(ShelfItemView::displayName(fileURL(path), Extension::Hidden), withoutExtension);
}

void ShelfItemViewTest::a_long_name_takes_two_lines_and_loses_its_middle()
{
    QWidget parent;
    const TileLabel label(&parent);
    QCOMPARE(TileLabel::lines(u"a"_s, label.font(), 84), QStringList{u"a"_s});
    QVERIFY(TileLabel::lines(QString(), label.font(), 84).isEmpty());
    const QString longName = u"A very long name of a file that nobody can read in one go at all.tar.gz"_s;
    const QStringList lines = TileLabel::lines(longName, label.font(), 84);
    QCOMPARE(lines.size(), 2);
    QVERIFY(longName.startsWith(lines.first()));
    QVERIFY(lines.last().contains(QChar(0x2026)));
    QVERIFY(lines.last().endsWith(u"gz"_s));
    const QFontMetricsF metrics(label.font());
    for (const QString &line : lines)
        QVERIFY(metrics.horizontalAdvance(line) <= 84);
    // A name without a place to break is broken anyway.
    QCOMPARE(TileLabel::lines(QString(200, QLatin1Char('x')), label.font(), 84).size(), 2);
}

void ShelfItemViewTest::a_line_break_in_a_name_takes_no_line()
{
    QWidget parent;
    const TileLabel label(&parent);
    QCOMPARE(TileLabel::lines(u"a\nb\tc"_s, label.font(), 84), QStringList{u"a b c"_s});
}

void ShelfItemViewTest::the_views_are_placed_in_the_tile_and_the_name_hangs_out_of_it()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    QCOMPARE(tile.imageView->geometry(), QRect(4, 8, 80, 67));
    QCOMPARE(tile.removeBtn->geometry(), QRect(68, 2, 18, 18));
    // The label is the tile's sibling. It begins 2 points right of the tile's left edge, and its last 5 points are
    // below the tile.
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

void ShelfItemViewTest::the_remove_button_lies_over_the_picture()
{
    Fixture f;
    ShelfItemView &tile = f.make();
    QImage blue(72, 72, QImage::Format_RGB32);
    blue.fill(Qt::blue);
    f.completeThumbnail(blue);
    const QPoint overlap(72, 12); // of the button's circle and the picture
    QVERIFY(tile.imageView->geometry().contains(overlap));
    QCOMPARE(tile.grab().toImage().pixelColor(overlap), QColor(Qt::blue));
    f.enter();
    f.virtualPlatform.mainQueue.advance(0.15);
    const QColor covered = tile.grab().toImage().pixelColor(overlap);
    QVERIFY2(covered.red() > 150 && covered.blue() < 120, qPrintable(covered.name()));
}

PARKLET_TEST(ShelfItemViewTest)
#include "ShelfItemViewTest.moc"
