// SPDX-License-Identifier: MIT
#include "preferences/AppExclusionListView.h"
#include "preferences/Controls.h"
#include "tests/preferences/Fixture.h"
#include "tests/preferences/ListFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

// The look of a row of the list.
class AppExclusionCellTest : public QObject {
    Q_OBJECT

private slots:
    void rows_are_26_points_high_with_icon_name_and_line_in_their_places();
    void a_row_is_mirrored_where_the_language_begins_at_the_right();
    void a_long_name_ends_4_points_before_the_row_does();
    void the_line_below_a_row_is_in_the_lists_separator_colour();
    void a_name_is_in_the_lists_text_colour_and_on_the_selection_in_its_own();
    void the_row_that_the_keyboard_acts_on_is_marked();
};

namespace {

// How a row is drawn, besides its state.
struct Look {
    Qt::LayoutDirection direction = Qt::LeftToRight;
    int width = 300;
    QColor text = Qt::black;
    QColor windowText = Qt::black;
    QColor highlightedText = Qt::white;
};

// The drawn first row.
QImage drawnRow(const AppExclusionListView &view, QStyle::State state, const Look &look = {})
{
    QImage image(look.width, 26, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.initFrom(view.tableView);
    option.state = state;
    option.direction = look.direction;
    option.font = view.tableView->font();
    option.fontMetrics = QFontMetrics(option.font);
    option.palette.setColor(QPalette::Text, look.text);
    option.palette.setColor(QPalette::WindowText, look.windowText);
    option.palette.setColor(QPalette::HighlightedText, look.highlightedText);
    option.rect = image.rect();
    view.tableView->itemDelegate()->paint(&painter, option, view.tableView->model()->index(0, 0));
    return image;
}

// The rectangle of the red pixels, and that of all other drawn pixels above the line at the bottom.
std::pair<QRect, QRect> inkOf(const QImage &image)
{
    QRect icon;
    QRect name;
    for (int y = 0; y < image.height() - 1; ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel == QColor(Qt::red))
                icon |= QRect(x, y, 1, 1);
            else if (pixel != QColor(Qt::white))
                name |= QRect(x, y, 1, 1);
        }
    }
    return {icon, name};
}

} // namespace

void AppExclusionCellTest::rows_are_26_points_high_with_icon_name_and_line_in_their_places()
{
    ListFixture f;
    f.virtualPlatform.workspace.applications.insert(kFirst, Application{kFirst, u"HHH"_s, square(Qt::red)});
    AppExclusionListView &view = f.load({kFirst, kSecond});
    const QAbstractItemModel &model = *view.tableView->model();
    QCOMPARE(view.tableView->visualRect(model.index(0, 0)).height(), 26);
    QCOMPARE(view.tableView->visualRect(model.index(1, 0)).y(), 26);

    const QImage image = drawnRow(view, QStyle::State_Enabled);
    const auto [icon, name] = inkOf(image);
    QCOMPARE(icon, QRect(4, 4, 18, 18));
    QVERIFY(name.x() >= 28 && name.x() <= 30);
    QVERIFY(name.right() < 300 - 4);
    QVERIFY(qAbs(name.center().y() - 13) <= 3);
    for (int x = 0; x < image.width(); ++x)
        QVERIFY(image.pixelColor(x, 25) != QColor(Qt::white));
    QCOMPARE(view.tableView->font().pixelSize(), 13);
}

void AppExclusionCellTest::a_row_is_mirrored_where_the_language_begins_at_the_right()
{
    ListFixture f;
    f.virtualPlatform.workspace.applications.insert(kFirst, Application{kFirst, u"HHH"_s, square(Qt::red)});
    const auto [icon, name] = inkOf(drawnRow(f.load({kFirst}), QStyle::State_Enabled, {.direction = Qt::RightToLeft}));
    QCOMPARE(icon, QRect(300 - 4 - 18, 4, 18, 18));
    QVERIFY(name.right() < 300 - 28 && name.right() >= 300 - 31);
    QVERIFY(name.x() >= 4);
}

void AppExclusionCellTest::a_long_name_ends_4_points_before_the_row_does()
{
    ListFixture f;
    f.virtualPlatform.workspace.applications.insert(
        kFirst, Application{kFirst, u"An application with a very long name"_s, square(Qt::red)});
    const AppExclusionListView &view = f.load({kFirst});
    // The place where the text is cut varies with the width. Within a few points it comes close to its limit.
    int nearest = 0;
    int nearestMirrored = 0;
    for (int width = 120; width <= 160; ++width) {
        const QRect name = inkOf(drawnRow(view, QStyle::State_Enabled, {.width = width})).second;
        QVERIFY2(name.right() <= width - 5, qPrintable(QString::number(width)));
        nearest += name.right() >= width - 8;
        const QRect mirrored =
            inkOf(drawnRow(view, QStyle::State_Enabled, {.direction = Qt::RightToLeft, .width = width})).second;
        QVERIFY2(mirrored.x() >= 4, qPrintable(QString::number(width)));
        nearestMirrored += mirrored.x() <= 7;
    }
    QVERIFY(nearest > 0);
    QVERIFY(nearestMirrored > 0);
}

void AppExclusionCellTest::the_line_below_a_row_is_in_the_lists_separator_colour()
{
    ListFixture f;
    const QImage image =
        drawnRow(f.load({kFirst}), QStyle::State_Enabled, {.text = Qt::blue, .windowText = Qt::darkGreen});
    QPalette palette;
    palette.setColor(QPalette::Text, Qt::blue);
    QImage expected(1, 1, image.format());
    expected.fill(Qt::white);
    QPainter painter(&expected);
    painter.fillRect(expected.rect(), separatorColor(palette, QPalette::Text));
    painter.end();
    for (int x = 0; x < image.width(); ++x)
        QCOMPARE(image.pixelColor(x, 25), expected.pixelColor(0, 0));
    QCOMPARE(image.pixelColor(299, 24), QColor(Qt::white));
}

void AppExclusionCellTest::a_name_is_in_the_lists_text_colour_and_on_the_selection_in_its_own()
{
    ListFixture f;
    // This letter fills its whole rectangle.
    f.virtualPlatform.workspace.applications.insert(kFirst,
                                                    Application{kFirst, QString(QChar(0x2588)), square(Qt::red)});
    const Look look{.text = Qt::blue, .windowText = Qt::darkGreen, .highlightedText = Qt::magenta};
    const AppExclusionListView &view = f.load({kFirst});
    const QPoint letter(31, 13);
    QCOMPARE(drawnRow(view, QStyle::State_Enabled, look).pixelColor(letter), QColor(Qt::blue));
    QCOMPARE(drawnRow(view, QStyle::State_Enabled | QStyle::State_Selected, look).pixelColor(letter),
             QColor(Qt::magenta));
}

void AppExclusionCellTest::the_row_that_the_keyboard_acts_on_is_marked()
{
    ListFixture f;
    const AppExclusionListView &view = f.load({kFirst});
    for (const QStyle::State row :
         {QStyle::State(QStyle::State_Enabled), QStyle::State_Enabled | QStyle::State_Selected}) {
        const QImage plain = drawnRow(view, row);
        // A click gives the focus too, but needs no focus ring.
        QCOMPARE(drawnRow(view, row | QStyle::State_HasFocus), plain);
        QCOMPARE(drawnRow(view, row | QStyle::State_KeyboardFocusChange), plain);
        QVERIFY(drawnRow(view, row | QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange) != plain);
    }
}

PARKLET_TEST(AppExclusionCellTest)
#include "AppExclusionCellTest.moc"
