// SPDX-License-Identifier: MIT
#include "shelf/TileViews.h"
#include "shelf/ShelfMetrics.h"
#include "shelf/ShelfViews.h"
#include "tests/support/Corners.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QPainter>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

// The look of a tile's views and of the coloured layer behind them, measured in pixels.
class TileViewsTest : public QObject {
    Q_OBJECT

private slots:
    void the_image_is_clipped_to_corners_of_6_points();
    void a_small_icon_is_drawn_as_large_as_it_goes_at_the_top();
    void the_name_is_white_11_points_high_and_of_medium_weight();
    void the_name_is_broken_anew_when_it_or_its_room_changes();
    void the_remove_button_is_a_red_circle_with_a_symbol_of_8_points();
    void the_remove_button_fades_as_a_whole();
    void the_colour_over_the_panel_has_its_corners();
    void the_border_of_the_panel_follows_its_corners();
};

namespace {

constexpr double kTolerance =
    5; // pixels of area, for the antialiasing of an edge; one point of radius makes a difference of at least nine

QImage shown(QWidget &view, QSize size)
{
    view.resize(size);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

// The covered area in pixels, where `full` is the opacity of a fully covered pixel.
double coveredArea(const QImage &image, double full = 1.0)
{
    double area = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            area += image.pixelColor(x, y).alphaF() / full;
    }
    return area;
}

double roundedArea(QSize size, double radius)
{
    return size.width() * size.height() - (4 - M_PI) * radius * radius;
}

QIcon plainIcon(QColor color)
{
    QPixmap pixmap(32, 32);
    pixmap.fill(color);
    return QIcon(pixmap);
}

} // namespace

void TileViewsTest::the_image_is_clipped_to_corners_of_6_points()
{
    const QSize size(60, 60);
    QPixmap red(size);
    red.fill(Qt::red);
    TileImageView view(nullptr);
    view.setImage(red, size);
    const QImage image = shown(view, size);
    QVERIFY(std::abs(coveredArea(image) - roundedArea(size, 6)) < kTolerance);
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(image.pixelColor(30, 0), QColor(Qt::red));
}

void TileViewsTest::a_small_icon_is_drawn_as_large_as_it_goes_at_the_top()
{
    TileImageView view(nullptr);
    view.setImage(plainIcon(Qt::red));
    const QImage image = shown(view, QSize(80, 67));
    // The picture is a square as high as the view, in its middle: from 6.5 to 73.5.
    for (const int y : {0, 33, 66}) {
        for (const int x : {0, 5, 74, 79})
            QCOMPARE(image.pixelColor(x, y).alpha(), 0);
        for (const int x : {7, 40, 72})
            QCOMPARE(image.pixelColor(x, y), QColor(Qt::red));
    }
    // In a view that is narrower than the square, it is as wide as the view.
    const QImage narrow = shown(view, QSize(40, 67));
    QCOMPARE(narrow.pixelColor(20, 0), QColor(Qt::red));
    QCOMPARE(narrow.pixelColor(20, 39), QColor(Qt::red));
    QCOMPARE(narrow.pixelColor(20, 40).alpha(), 0);
}

void TileViewsTest::the_name_is_white_11_points_high_and_of_medium_weight()
{
    TileLabel label(nullptr);
    QCOMPARE(label.font().pixelSize(), 11);
    QCOMPARE(label.font().weight(), QFont::Medium);
    label.setText(u"■"_s);
    const QImage image = shown(label, QSize(84, 26));
    int white = 0;
    double left = 0;
    double right = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            white += image.pixelColor(x, y) == QColor(Qt::white);
            (x < image.width() / 2 ? left : right) += image.pixelColor(x, y).alphaF();
        }
    }
    QVERIFY(white > 4);
    // The symbol is centred, except for one pixel of rounding.
    QVERIFY2(std::abs(left - right) < (left + right) / 4, qPrintable(u"%1 %2"_s.arg(left).arg(right)));
}

void TileViewsTest::the_name_is_broken_anew_when_it_or_its_room_changes()
{
    const auto fresh = [](const QString &text, const QSize &size, const QFont &font) {
        TileLabel label(nullptr);
        label.setFont(font);
        label.setText(text);
        return shown(label, size);
    };
    TileLabel label(nullptr);
    const QString first = u"a rather long name of a file.txt"_s;
    const QString second = u"another one, and just as long.txt"_s;
    label.setText(first);
    QCOMPARE(shown(label, QSize(84, 26)), fresh(first, QSize(84, 26), label.font()));
    QCOMPARE(shown(label, QSize(60, 26)), fresh(first, QSize(60, 26), label.font()));
    label.setText(second);
    QCOMPARE(shown(label, QSize(60, 26)), fresh(second, QSize(60, 26), label.font()));
    QFont bold = label.font();
    bold.setBold(true);
    label.setFont(bold);
    QCOMPARE(shown(label, QSize(60, 26)), fresh(second, QSize(60, 26), bold));
    QVERIFY(fresh(second, QSize(60, 26), bold) != fresh(second, QSize(84, 26), bold));
}

void TileViewsTest::the_remove_button_is_a_red_circle_with_a_symbol_of_8_points()
{
    const QSize size(18, 18);
    TileRemoveButton button(plainIcon(Qt::white), nullptr);
    QCOMPARE(coveredArea(shown(button, size)), 0.0);
    button.setAlpha(1);
    const QImage image = shown(button, size);

    const QRect symbol(5, 5, 8, 8);
    double background = 0;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (symbol.contains(x, y))
                QCOMPARE(color, QColor(Qt::white));
            else
                background += color.alphaF() / 0.85;
        }
    }
    QVERIFY(std::abs(background - (M_PI * 9 * 9 - 8 * 8)) < kTolerance);
    const QColor red = image.pixelColor(3, 9);
    QCOMPARE(red.alpha(), 217); // 0.85
    QVERIFY(std::abs(red.red() - 255) <= 1 && std::abs(red.green() - 59) <= 1 && std::abs(red.blue() - 48) <= 1);
}

void TileViewsTest::the_remove_button_fades_as_a_whole()
{
    TileRemoveButton button(plainIcon(Qt::white), nullptr);
    button.setAlpha(0.5);
    const QImage image = shown(button, QSize(18, 18));
    QVERIFY(std::abs(image.pixelColor(3, 9).alphaF() - 0.425F) < 0.01F);
    // White at 0.5 is drawn over red at 0.5 x 0.85.
    QVERIFY(std::abs(image.pixelColor(9, 9).alphaF() - (0.5F + 0.5F * 0.425F)) < 0.01F);
}

void TileViewsTest::the_colour_over_the_panel_has_its_corners()
{
    const QSize size(116, 164);
    ColorView view(ShelfMetrics::kPanelCornerRadius, nullptr);
    view.setColor(QColor(200, 30, 90, 128));
    const QImage image = shown(view, size);
    const double area = coveredArea(image, 128 / 255.0);
    QVERIFY2(std::abs(area - roundedArea(size, 14)) < kTolerance, QByteArray::number(area - roundedArea(size, 14)));
    QCOMPARE(image.pixelColor(58, 0).alpha(), 128);
}

void TileViewsTest::the_border_of_the_panel_follows_its_corners()
{
    VirtualFloatingPanels panels;
    panels.hasMaterial = true;
    VisualEffectView view(panels, nullptr);
    view.setBorder(2, Qt::green);
    const QSize size(116, 164);
    const QImage image = shown(view, size);
    const double outside = areaOutsideCorner(image, 14);
    QVERIFY2(std::abs(outside - (1 - M_PI / 4) * 14 * 14) < 2.5, QByteArray::number(outside).constData());
    QCOMPARE(image.pixelColor(58, 0), QColor(Qt::green));
    QCOMPARE(image.pixelColor(58, 1), QColor(Qt::green));
    QCOMPARE(image.pixelColor(58, 3).alpha(), 0);
    QCOMPARE(image.pixelColor(2, 2).alpha(), 0);
}

PARKLET_TEST(TileViewsTest)
#include "TileViewsTest.moc"
