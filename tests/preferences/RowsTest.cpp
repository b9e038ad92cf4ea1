// SPDX-License-Identifier: MIT
#include "preferences/Rows.h"
#include "tests/support/TestProgram.h"

#include <QTest>
#include <QWidget>

class RowsTest : public QObject {
    Q_OBJECT

private slots:
    void a_row_begins_at_the_margin_and_a_gap_below_the_last();
    void what_follows_in_a_row_is_centred_on_its_first_view();
    void a_view_may_be_kept_narrower_than_it_wants();
    void a_view_that_wraps_is_as_high_as_its_width_takes_up_to_a_limit();
    void the_last_view_takes_what_is_left_and_never_less_than_nothing();
    void a_fixed_size_counts_more_than_a_wish();
    void rows_begin_at_the_right_where_the_language_does();
};

namespace {

// A view that wants a given size. At a given width it wants the height that keeps half of its area.
class View : public QWidget {
public:
    View(QWidget &pane, const QSize &wanted)
        : QWidget(&pane)
        , size(wanted)
    {
    }

    QSize sizeHint() const override { return size; }
    int heightForWidth(int width) const override { return size.width() * size.height() / 2 / width; }

private:
    QSize size;
};

struct Fixture {
    Fixture() { pane.resize(519, 500); }

    QWidget pane;
    View label{pane, QSize(200, 16)};
    View box{pane, QSize(20, 20)};
    View popUp{pane, QSize(90, 26)};
};

} // namespace

void RowsTest::a_row_begins_at_the_margin_and_a_gap_below_the_last()
{
    Fixture f;
    Rows rows(f.pane, 24);
    QCOMPARE(rows.width(), 471);
    rows.begin(f.label, 0);
    QCOMPARE(f.label.geometry(), QRect(24, 24, 200, 16));
    rows.fill(f.popUp, 12);
    QCOMPARE(f.popUp.geometry(), QRect(24, 52, 471, 26));
    rows.begin(f.box, 14);
    QCOMPARE(f.box.geometry(), QRect(24, 92, 20, 20));
}

void RowsTest::what_follows_in_a_row_is_centred_on_its_first_view()
{
    Fixture f;
    Rows rows(f.pane, 24);
    rows.begin(f.label, 0);
    rows.next(f.popUp, 8);
    QCOMPARE(f.popUp.geometry(), QRect(232, 19, 90, 26));
    rows.end(f.box);
    QCOMPARE(f.box.geometry(), QRect(475, 22, 20, 20));
    // The next row is below the first view of this one, however high the others are.
    View below(f.pane, QSize(10, 10));
    rows.begin(below, 12);
    QCOMPARE(below.y(), 52);
}

void RowsTest::a_view_may_be_kept_narrower_than_it_wants()
{
    Fixture f;
    Rows rows(f.pane, 24);
    rows.begin(f.label, 0, 150);
    QCOMPARE(f.label.geometry(), QRect(24, 24, 150, 16));
}

void RowsTest::a_view_that_wraps_is_as_high_as_its_width_takes_up_to_a_limit()
{
    Fixture f;
    View text(f.pane, QSize(770, 32)); // as high as 32 over 385 points
    Rows rows(f.pane, 24);
    rows.begin(f.popUp, 0);
    rows.nextWrapped(text, -4, 100);
    QCOMPARE(text.geometry(), QRect(110, 24 + (26 - 32) / 2, 385, 32));
    rows.begin(f.popUp, 0);
    rows.nextWrapped(text, -4, 30);
    QCOMPARE(text.height(), 30);
}

void RowsTest::the_last_view_takes_what_is_left_and_never_less_than_nothing()
{
    Fixture f;
    Rows rows(f.pane, 24);
    rows.begin(f.label, 0);
    rows.fillRest(f.popUp, 8);
    QCOMPARE(f.popUp.geometry(), QRect(24, 48, 471, 428));
    f.pane.resize(519, 60);
    Rows low(f.pane, 24);
    low.begin(f.label, 0);
    low.fillRest(f.popUp, 8);
    QCOMPARE(f.popUp.geometry(), QRect(24, 48, 471, 0));
}

void RowsTest::a_fixed_size_counts_more_than_a_wish()
{
    Fixture f;
    f.popUp.setFixedHeight(1);
    Rows rows(f.pane, 24);
    rows.fill(f.popUp, 0);
    QCOMPARE(f.popUp.geometry(), QRect(24, 24, 471, 1));
}

void RowsTest::rows_begin_at_the_right_where_the_language_does()
{
    Fixture f;
    f.pane.setLayoutDirection(Qt::RightToLeft);
    Rows rows(f.pane, 24);
    rows.begin(f.label, 0);
    rows.end(f.box);
    QCOMPARE(f.label.geometry(), QRect(519 - 24 - 200, 24, 200, 16));
    QCOMPARE(f.box.geometry(), QRect(24, 22, 20, 20));
}

PARKLET_TEST(RowsTest)
#include "RowsTest.moc"
