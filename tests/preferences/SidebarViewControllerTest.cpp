// SPDX-License-Identifier: MIT
#include "preferences/SidebarViewController.h"

#include "preferences/Controls.h"
#include "preferences/SidebarCell.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

class SidebarViewControllerTest : public QObject {
    Q_OBJECT

private slots:
    void the_rows_stand_in_order_with_their_titles_and_symbols();
    void welcome_is_selected_at_first();
    void selecting_a_row_calls_back_with_its_pane();
    void the_arrow_keys_select();
    void one_row_is_selected_at_a_time();
    void a_screen_reader_is_told_what_the_list_is();
    void a_silent_selection_calls_nobody_back_and_selects_exactly_one_row();
    void losing_the_selection_calls_nobody_back();
    void without_a_callback_a_selection_is_harmless();
    void reloading_keeps_the_selection_and_calls_nobody_back();
    void a_row_is_38_points_high_with_its_symbol_and_title_in_their_frames();
    void a_title_is_in_the_middle_of_its_frame_and_cut_to_its_width_data();
    void a_title_is_in_the_middle_of_its_frame_and_cut_to_its_width();
    void a_row_is_mirrored_where_the_language_begins_at_the_right();
    void a_title_is_in_the_windows_text_colour_and_on_the_selection_in_its_own();
    void the_row_that_the_keyboard_acts_on_is_marked();
    void the_symbols_are_in_the_secondary_colour_and_on_the_selection_in_its_own();
    void the_symbols_follow_the_palette();
    void the_symbols_follow_the_windows_activity();
    void the_list_does_not_scroll_and_shows_what_is_behind_it();
    void the_sidebar_is_a_shade_apart_from_the_panes_data();
    void the_sidebar_is_a_shade_apart_from_the_panes();
    void rows_cannot_be_edited();
    void a_missing_symbol_leaves_the_title();
};

namespace {

struct Fixture {
    Fixture()
    {
        sidebar.resize(180, 500);
        sidebar.onSelect = [this](PrefPane pane) { selected.append(pane); };
        window.show();
    }

    void select(int row) { sidebar.tableView->setCurrentIndex(sidebar.tableView->model()->index(row, 0)); }
    QModelIndexList selectedRows() const { return sidebar.tableView->selectionModel()->selectedRows(); }

    VirtualPlatform virtualPlatform;
    QWidget window;
    SidebarViewController sidebar{virtualPlatform.appearance, &window};
    QList<PrefPane> selected;
};

// How a row is drawn, besides its state.
struct Look {
    Qt::LayoutDirection direction = Qt::LeftToRight;
    QColor windowText = Qt::black;
    QColor text = Qt::black;
    QColor highlightedText = Qt::black;
};

// Row 1 as the cell draws it without a selection, 180 points wide.
QImage drawnRow(const Fixture &f, QStyle::State state, const Look &look = {})
{
    QImage image(180, 38, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.initFrom(f.sidebar.tableView);
    option.state = state;
    option.direction = look.direction;
    option.font = f.sidebar.tableView->font();
    option.fontMetrics = QFontMetrics(option.font);
    option.palette.setColor(QPalette::WindowText, look.windowText);
    option.palette.setColor(QPalette::Text, look.text);
    option.palette.setColor(QPalette::HighlightedText, look.highlightedText);
    option.rect = image.rect();
    f.sidebar.tableView->itemDelegate()->paint(&painter, option, f.sidebar.tableView->model()->index(1, 0));
    return image;
}

// The smallest rectangle within columns `from` to `to` that holds everything that is not white.
QRect inkBetween(const QImage &image, int from, int to)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = from; x < to; ++x) {
            if (image.pixelColor(x, y) != QColor(Qt::white))
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

} // namespace

void SidebarViewControllerTest::the_rows_stand_in_order_with_their_titles_and_symbols()
{
    struct Expected {
        QString title;
        QString icon;
        PrefPane pane;
    };
    const QList<Expected> expected = {
        {u"Welcome"_s, u"hand.wave"_s, PrefPane::welcome},
        {u"General"_s, u"gearshape"_s, PrefPane::general},
        {u"Behavior"_s, u"rectangle.on.rectangle"_s, PrefPane::behavior},
        {u"Appearance"_s, u"paintpalette"_s, PrefPane::appearance},
        {u"About"_s, u"info.circle"_s, PrefPane::about},
    };
    Fixture f;
    const QAbstractItemModel &model = *f.sidebar.tableView->model();
    QCOMPARE(SidebarViewController::rows().size(), expected.size());
    QCOMPARE(model.rowCount(), static_cast<int>(expected.size()));
    for (int i = 0; i < expected.size(); ++i) {
        const SidebarViewController::Row &row = SidebarViewController::rows().at(i);
        QCOMPARE(QString::fromUtf8(row.title), expected.at(i).title);
        QCOMPARE(row.icon, expected.at(i).icon);
        QCOMPARE(row.pane, expected.at(i).pane);
        QCOMPARE(model.index(i, 0).data().toString(), expected.at(i).title);
        QVERIFY(!model.index(i, 0).data(Qt::DecorationRole).value<QIcon>().isNull());
    }
    for (const Expected &row : expected)
        QVERIFY(QFile::exists(u":/symbols/%1.svg"_s.arg(row.icon)));
}

void SidebarViewControllerTest::welcome_is_selected_at_first()
{
    Fixture f;
    QCOMPARE(f.selectedRows().size(), 1);
    QCOMPARE(f.selectedRows().first().row(), 0);
    QVERIFY(f.selected.isEmpty());
}

void SidebarViewControllerTest::selecting_a_row_calls_back_with_its_pane()
{
    Fixture f;
    const QRect rect = f.sidebar.tableView->visualRect(f.sidebar.tableView->model()->index(3, 0));
    QTest::mouseClick(f.sidebar.tableView->viewport(), Qt::LeftButton, {}, rect.center());
    QCOMPARE(f.selected, QList<PrefPane>{PrefPane::appearance});
}

void SidebarViewControllerTest::the_arrow_keys_select()
{
    Fixture f;
    QTest::keyClick(f.sidebar.tableView, Qt::Key_Down);
    QTest::keyClick(f.sidebar.tableView, Qt::Key_Down);
    QTest::keyClick(f.sidebar.tableView, Qt::Key_End);
    QCOMPARE(f.selected, QList<PrefPane>({PrefPane::general, PrefPane::behavior, PrefPane::about}));
}

void SidebarViewControllerTest::one_row_is_selected_at_a_time()
{
    Fixture f;
    const QListView &list = *f.sidebar.tableView;
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ShiftModifier,
                      list.visualRect(list.model()->index(2, 0)).center());
    QCOMPARE(f.selectedRows().size(), 1);
    QCOMPARE(f.selected, QList<PrefPane>{PrefPane::behavior});
}

void SidebarViewControllerTest::a_screen_reader_is_told_what_the_list_is()
{
    Fixture f;
    QCOMPARE(f.sidebar.tableView->accessibleName(), u"Panes"_s);
}

void SidebarViewControllerTest::a_silent_selection_calls_nobody_back_and_selects_exactly_one_row()
{
    Fixture f;
    f.sidebar.selectSilently(PrefPane::behavior);
    QVERIFY(f.selected.isEmpty());
    QCOMPARE(f.selectedRows().size(), 1);
    QCOMPARE(f.selectedRows().first().row(), 2);
    // A pane without a row leaves the selection as it is.
    f.sidebar.selectSilently(static_cast<PrefPane>(99));
    QCOMPARE(f.selectedRows().size(), 1);
    QCOMPARE(f.selectedRows().first().row(), 2);
    QVERIFY(f.selected.isEmpty());
    f.select(4);
    QCOMPARE(f.selected, QList<PrefPane>{PrefPane::about});
}

void SidebarViewControllerTest::losing_the_selection_calls_nobody_back()
{
    Fixture f;
    f.sidebar.tableView->clearSelection();
    QVERIFY(f.selectedRows().isEmpty());
    QVERIFY(f.selected.isEmpty());
}

void SidebarViewControllerTest::without_a_callback_a_selection_is_harmless()
{
    Fixture f;
    f.sidebar.onSelect = nullptr;
    f.select(1);
    QCOMPARE(f.selectedRows().first().row(), 1);
}

void SidebarViewControllerTest::reloading_keeps_the_selection_and_calls_nobody_back()
{
    Fixture f;
    f.sidebar.selectSilently(PrefPane::general);
    f.sidebar.reload();
    QCOMPARE(f.selectedRows().first().row(), 1);
    QVERIFY(f.selected.isEmpty());
}

void SidebarViewControllerTest::a_row_is_38_points_high_with_its_symbol_and_title_in_their_frames()
{
    Fixture f;
    for (int i = 0; i < 5; ++i) {
        const QRect rect = f.sidebar.tableView->visualRect(f.sidebar.tableView->model()->index(i, 0));
        QCOMPARE(rect.height(), 38);
        QCOMPARE(rect.y(), 38 * i);
    }
    // A virtual symbol is a square of one colour, 18 by 18 at x 10 and 9 above the bottom.
    const QImage image = drawnRow(f, QStyle::State_Enabled);
    QCOMPARE(inkBetween(image, 0, 34), QRect(10, 11, 18, 18));
    // The title is in a rectangle of 120 by 17 at x 34 and 10 above the bottom.
    const QRect title = inkBetween(image, 34, 180);
    QVERIFY(!title.isEmpty());
    QVERIFY2(QRect(34, 11, 120, 17).contains(title), qPrintable(u"%1 %2"_s.arg(title.y()).arg(title.height())));
    QVERIFY(title.x() < 38);
    QCOMPARE(f.sidebar.tableView->font().pixelSize(), 13);
}

void SidebarViewControllerTest::a_title_is_in_the_middle_of_its_frame_and_cut_to_its_width_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("short") << u"General"_s;
    QTest::newRow("long") << u"Allgemeine Einstellungen von Parklet"_s;
}

void SidebarViewControllerTest::a_title_is_in_the_middle_of_its_frame_and_cut_to_its_width()
{
    QFETCH(const QString, title);
    Fixture f;
    QAbstractItemModel &model = *f.sidebar.tableView->model();
    QVERIFY(model.setData(model.index(1, 0), title));
    const QImage drawn = drawnRow(f, QStyle::State_Enabled);

    QImage expected(drawn.size(), drawn.format());
    expected.fill(Qt::white);
    QPainter painter(&expected);
    painter.setFont(f.sidebar.tableView->font());
    painter.setPen(Qt::black);
    painter.drawText(QRect(34, 11, 120, 17), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(title, Qt::ElideRight, 120));
    painter.end();
    const QRect right(34, 0, 180 - 34, 38);
    QCOMPARE(drawn.copy(right), expected.copy(right));
}

void SidebarViewControllerTest::a_row_is_mirrored_where_the_language_begins_at_the_right()
{
    Fixture f;
    const QImage image = drawnRow(f, QStyle::State_Enabled, {.direction = Qt::RightToLeft});
    QCOMPARE(inkBetween(image, 180 - 34, 180), QRect(180 - 10 - 18, 11, 18, 18));
    const QRect title = inkBetween(image, 0, 180 - 34);
    QVERIFY(QRect(180 - 34 - 120, 11, 120, 17).contains(title));
    QVERIFY(title.right() > 180 - 34 - 4);
}

void SidebarViewControllerTest::a_title_is_in_the_windows_text_colour_and_on_the_selection_in_its_own()
{
    Fixture f;
    QAbstractItemModel &model = *f.sidebar.tableView->model();
    // This letter fills its whole rectangle.
    QVERIFY(model.setData(model.index(1, 0), QString(QChar(0x2588))));
    const Look look{.windowText = Qt::blue, .text = Qt::darkGreen, .highlightedText = Qt::magenta};
    const QPoint letter(37, 19);
    const QImage plain = drawnRow(f, QStyle::State_Enabled, look);
    QCOMPARE(plain.pixelColor(letter), QColor(Qt::blue));
    const QImage selected = drawnRow(f, QStyle::State_Enabled | QStyle::State_Selected, look);
    QCOMPARE(selected.pixelColor(letter), QColor(Qt::magenta));
    // The symbols have the colours of the list's palette.
    const QPoint symbol(19, 20);
    QCOMPARE(selected.pixelColor(symbol), f.sidebar.palette().color(QPalette::HighlightedText));
    QVERIFY(plain.pixelColor(symbol) != selected.pixelColor(symbol));
}

void SidebarViewControllerTest::the_row_that_the_keyboard_acts_on_is_marked()
{
    Fixture f;
    for (const QStyle::State row :
         {QStyle::State(QStyle::State_Enabled), QStyle::State_Enabled | QStyle::State_Selected}) {
        const QImage plain = drawnRow(f, row);
        // A click gives the focus too, but needs no focus ring.
        QCOMPARE(drawnRow(f, row | QStyle::State_HasFocus), plain);
        QCOMPARE(drawnRow(f, row | QStyle::State_KeyboardFocusChange), plain);
        QVERIFY(drawnRow(f, row | QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange) != plain);
    }
}

void SidebarViewControllerTest::the_symbols_are_in_the_secondary_colour_and_on_the_selection_in_its_own()
{
    Fixture f;
    const QPalette palette = f.sidebar.palette();
    for (const SidebarViewController::Row &row : SidebarViewController::rows()) {
        QVERIFY(
            f.virtualPlatform.appearance.symbolRequests.contains(std::pair(row.icon, secondaryLabelColor(palette))));
    }
    const QModelIndex index = f.sidebar.tableView->model()->index(0, 0);
    const auto color = [&index](int role) {
        return index.data(role).value<QIcon>().pixmap(16).toImage().pixelColor(8, 8);
    };
    QCOMPARE(color(SidebarCell::kSelectedSymbolRole), palette.color(QPalette::HighlightedText));
    QVERIFY(color(Qt::DecorationRole) != color(SidebarCell::kSelectedSymbolRole));
}

void SidebarViewControllerTest::the_symbols_follow_the_palette()
{
    Fixture f;
    QPalette palette = f.sidebar.palette();
    palette.setColor(QPalette::WindowText, Qt::magenta);
    f.sidebar.setPalette(palette);
    QCOMPARE(f.virtualPlatform.appearance.symbolRequests.at(f.virtualPlatform.appearance.symbolRequests.size() - 2),
             std::pair(u"info.circle"_s, secondaryLabelColor(palette)));
    QVERIFY(f.selected.isEmpty());
}

void SidebarViewControllerTest::the_symbols_follow_the_windows_activity()
{
    Fixture f;
    QPalette palette = f.window.palette();
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, Qt::magenta);
    f.window.setPalette(palette);
    const auto lastColor = [&f] { return f.virtualPlatform.appearance.symbolRequests.last().second; };
    f.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&f.window));
    QCOMPARE(lastColor(), palette.color(QPalette::Active, QPalette::HighlightedText));

    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QCOMPARE(lastColor(), QColor(Qt::magenta));

    f.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&f.window));
    QCOMPARE(lastColor(), palette.color(QPalette::Active, QPalette::HighlightedText));
    QVERIFY(f.selected.isEmpty());
}

void SidebarViewControllerTest::the_list_does_not_scroll_and_shows_what_is_behind_it()
{
    Fixture f;
    QListView *list = f.sidebar.tableView;
    QCOMPARE(list->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QVERIFY(!list->viewport()->autoFillBackground());
    QCOMPARE(list->frameShape(), QFrame::NoFrame);
    f.sidebar.resize(160, 420);
    QCOMPARE(list->geometry(), QRect(0, 0, 160, 420));
}

void SidebarViewControllerTest::the_sidebar_is_a_shade_apart_from_the_panes_data()
{
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("background");
    QTest::newRow("light") << QColor(Qt::black) << QColor(239, 239, 239);
    QTest::newRow("dark") << QColor(Qt::white) << QColor(53, 53, 53);
}

void SidebarViewControllerTest::the_sidebar_is_a_shade_apart_from_the_panes()
{
    QFETCH(const QColor, text);
    QFETCH(const QColor, background);
    Fixture f;
    QPalette palette;
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Window, background);
    f.window.setPalette(palette);
    const int shade = f.sidebar.grab().toImage().pixelColor(90, 400).lightness();
    // The colour is slightly closer to that of the text.
    const int distance =
        text.lightness() < background.lightness() ? background.lightness() - shade : shade - background.lightness();
    QVERIFY2(distance >= 4 && distance <= 30, qPrintable(QString::number(distance)));
}

void SidebarViewControllerTest::rows_cannot_be_edited()
{
    Fixture f;
    QCOMPARE(f.sidebar.tableView->editTriggers(), QAbstractItemView::NoEditTriggers);
}

void SidebarViewControllerTest::a_missing_symbol_leaves_the_title()
{
    Fixture f;
    f.virtualPlatform.appearance.missingSymbols = {u"gearshape"_s};
    f.sidebar.reload();
    const QImage image = drawnRow(f, QStyle::State_Enabled);
    QVERIFY(inkBetween(image, 0, 34).isEmpty());
    QVERIFY(!inkBetween(image, 34, 180).isEmpty());
}

PARKLET_TEST(SidebarViewControllerTest)
#include "SidebarViewControllerTest.moc"
