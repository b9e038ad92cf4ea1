// SPDX-License-Identifier: MIT
#include "shelf/CursorShelf.h"
#include "shelf/ShelfMetrics.h"
#include "shelf/ShelfViews.h"
#include "tests/support/DragEvents.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QEasingCurve>
#include <QLabel>
#include <QTest>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class CursorShelfTest : public QObject {
    Q_OBJECT

private slots:
    void the_panel_is_a_floating_one_of_88_points_and_created_hidden();
    void the_background_fills_the_zone_and_the_symbol_stands_in_its_middle();
    void the_symbol_is_described_and_there_is_no_text();
    void the_panel_is_placed_beside_the_pointer_data();
    void the_panel_is_placed_beside_the_pointer();
    void the_panel_comes_to_the_front_in_its_place_and_transparent();
    void a_panel_shown_again_is_placed_anew();
    void without_any_screen_the_program_stops();
    void showing_fades_in_over_015_seconds_and_eases_out();
    void showing_a_visible_panel_fades_it_in_from_nothing_again();
    void hiding_fades_out_over_012_seconds();
    void hiding_a_fading_in_panel_starts_from_where_it_stands();
    void hiding_again_does_not_put_the_end_off();
    void a_panel_shown_while_it_fades_out_stays();
    void hiding_a_hidden_panel_does_nothing();
    void the_zone_is_drawn_to_the_pixel();
    void a_background_that_the_desktop_draws_is_not_drawn_again();
    void entering_and_leaving_turns_the_accent_border_on_and_off();
    void dropping_two_files_hands_both_over_at_once_and_in_order();
    void a_drop_is_a_copy_and_does_not_hide_the_panel();
    void what_may_not_be_copied_passes_by();
    void a_drag_that_is_known_to_have_no_files_passes_by();
    void dropping_text_is_refused_and_turns_the_highlight_off();
    void dropping_anything_that_is_no_file_is_refused_as_a_whole();
    void a_drop_without_a_receiver_is_still_taken();
    void a_drop_for_a_panel_that_has_gone_does_nothing();
};

namespace {

QUrl file(const char *path)
{
    return QUrl::fromLocalFile(QString::fromUtf8(path));
}

Screen screen(const QRectF &frame, const QRectF &visibleFrame)
{
    return Screen{frame, visibleFrame, 1.0};
}

struct Fixture {
    VirtualPlatform virtualPlatform;
    VirtualFloatingPanels &panels = virtualPlatform.floatingPanels;
    VirtualMainQueue &queue = virtualPlatform.mainQueue;
    VirtualScreens &screens = virtualPlatform.screens;
    std::unique_ptr<CursorShelf> panel = std::make_unique<CursorShelf>(virtualPlatform.platform);
    CursorDropZone &zone = *panel->dropZone;
    QList<QList<QUrl>> drops;

    Fixture()
    {
        panel->onDrop = [this](const QList<QUrl> &urls) { drops.append(urls); };
    }
    // The opacity that the desktop was last told.
    double shownAlpha() const { return panels.alphas.value(panel.get(), 1.0); }
    void showFully()
    {
        panel->showNearCursor();
        queue.advance(1);
    }
};

} // namespace

void CursorShelfTest::the_panel_is_a_floating_one_of_88_points_and_created_hidden()
{
    Fixture f;
    QCOMPARE(f.panel->size(), QSize(88, 88));
    QVERIFY(!f.panel->isVisible());
    QCOMPARE(f.panels.styles.size(), 1);
    QCOMPARE(f.panels.styles.first().role, u"cursor-shelf"_s);
    QCOMPARE(f.panels.styles.first().cornerRadius, 14.0);
    QCOMPARE(f.panels.panels.value(u"cursor-shelf"_s).data(), f.panel.get());
    QCOMPARE(f.panels.ordersFront, 0);
}

void CursorShelfTest::the_background_fills_the_zone_and_the_symbol_stands_in_its_middle()
{
    Fixture f;
    f.showFully();
    QCOMPARE(f.zone.geometry(), QRect(0, 0, 88, 88));
    QCOMPARE(f.zone.visualFX->geometry(), QRect(0, 0, 88, 88));
    QCOMPARE(f.zone.iconView->geometry(), QRect(27, 27, 34, 34));
    QCOMPARE(ShelfMetrics::kPanelCornerRadius, 14.0);
    // The symbol is above the background.
    QVERIFY(f.zone.children().indexOf(f.zone.visualFX) < f.zone.children().indexOf(f.zone.iconView));

    f.zone.resize(134, 54);
    QCOMPARE(f.zone.visualFX->geometry(), QRect(0, 0, 134, 54));
    QCOMPARE(f.zone.iconView->geometry(), QRect(50, 10, 34, 34));
}

void CursorShelfTest::the_symbol_is_described_and_there_is_no_text()
{
    Fixture f;
    const auto &requests = f.virtualPlatform.appearance.symbolRequests;
    QCOMPARE(requests.size(), 1);
    QCOMPARE(requests.first().first, u"tray.and.arrow.down"_s);
    QCOMPARE(requests.first().second, QColor::fromRgbF(1, 1, 1, 0.65F));
    QCOMPARE(f.zone.iconView->accessibleName(), u"Drop here"_s);
    QVERIFY(f.panel->findChildren<QLabel *>().isEmpty());
    // Drops over the symbol reach the zone.
    QVERIFY(f.zone.acceptDrops());
    QVERIFY(!f.zone.iconView->acceptDrops());
    QVERIFY(!f.zone.visualFX->acceptDrops());
}

void CursorShelfTest::the_panel_is_placed_beside_the_pointer_data()
{
    const QRectF whole(0, 0, 1280, 800);
    const QRectF below(0, 30, 1280, 730); // with a bar of 30 points at the top and one of 40 at the bottom
    const QList<Screen> one = {screen(whole, whole)};
    const QList<Screen> barred = {screen(whole, below)};
    const QRectF right(1280, -200, 1920, 1080);
    const QList<Screen> two = {screen(whole, below), screen(right, right.adjusted(60, 0, 0, 0))};
    const QRectF under(0, 800, 1280, 800);
    const QList<Screen> stacked = {screen(whole, whole), screen(under, under)};
    const QList<Screen> mirrored = {screen(whole, whole), screen(whole, QRectF(0, 0, 400, 400))};
    const QList<Screen> tiny = {screen(QRectF(0, 0, 50, 60), QRectF(0, 0, 50, 60))};

    QTest::addColumn<QList<Screen>>("screens");
    QTest::addColumn<int>("mainIndex");
    QTest::addColumn<QPointF>("pointer");
    QTest::addColumn<QPoint>("corner"); // top left
    QTest::newRow("24 right and 16 below") << one << 0 << QPointF(640, 400) << QPoint(664, 416);
    QTest::newRow("near the top") << one << 0 << QPointF(640, 5) << QPoint(664, 21);
    QTest::newRow("top left corner") << one << 0 << QPointF(0, 0) << QPoint(24, 16);
    QTest::newRow("bottom right corner") << one << 0 << QPointF(1279, 799) << QPoint(1188, 708);
    QTest::newRow("last place right") << one << 0 << QPointF(1164, 400) << QPoint(1188, 416);
    QTest::newRow("clamped right") << one << 0 << QPointF(1165, 400) << QPoint(1188, 416);
    QTest::newRow("last place below") << one << 0 << QPointF(640, 692) << QPoint(664, 708);
    QTest::newRow("clamped below") << one << 0 << QPointF(640, 693) << QPoint(664, 708);
    QTest::newRow("above the bottom bar") << barred << 0 << QPointF(640, 790) << QPoint(664, 668);
    QTest::newRow("in the top bar") << barred << 0 << QPointF(640, 2) << QPoint(664, 34);
    QTest::newRow("second screen") << two << 0 << QPointF(2000, -100) << QPoint(2024, -84);
    QTest::newRow("second screen, corner") << two << 0 << QPointF(3199, 879) << QPoint(3108, 788);
    QTest::newRow("second screen, in its bar") << two << 0 << QPointF(1281, 100) << QPoint(1344, 116);
    // The first column and row of a screen do not belong to its neighbour.
    QTest::newRow("first column of the second screen") << two << 0 << QPointF(1280, 100) << QPoint(1344, 116);
    QTest::newRow("last column of the first screen") << two << 1 << QPointF(1279, 100) << QPoint(1188, 116);
    QTest::newRow("first row of the lower screen") << stacked << 0 << QPointF(640, 800) << QPoint(664, 816);
    QTest::newRow("last row of the upper screen") << stacked << 1 << QPointF(640, 799) << QPoint(664, 708);
    QTest::newRow("first of two that contain the pointer") << mirrored << 1 << QPointF(900, 600) << QPoint(924, 616);
    QTest::newRow("on no screen, main is the first") << two << 0 << QPointF(100, -50) << QPoint(124, 34);
    QTest::newRow("on no screen, main is the second") << two << 1 << QPointF(100, -50) << QPoint(1344, -34);
    // The upper bound wins: right and, counted from below, top.
    QTest::newRow("screen too small") << tiny << 0 << QPointF(25, 30) << QPoint(-42, 4);
}

void CursorShelfTest::the_panel_is_placed_beside_the_pointer()
{
    QFETCH(QList<Screen>, screens);
    QFETCH(int, mainIndex);
    QFETCH(QPointF, pointer);
    QFETCH(QPoint, corner);
    Fixture f;
    f.screens.screens = screens;
    f.screens.mainIndex = mainIndex;
    f.screens.pointerPosition = pointer;
    f.panel->showNearCursor();
    QCOMPARE(f.panel->geometry(), QRect(corner, QSize(88, 88)));
    QVERIFY(f.panel->isVisible());
}

void CursorShelfTest::the_panel_comes_to_the_front_in_its_place_and_transparent()
{
    Fixture f;
    f.screens.pointerPosition = QPointF(100, 100);
    QList<double> alphas;
    QList<QRect> frames;
    f.panels.whenOrderedFront = [&](QWidget &window) {
        alphas.append(f.panels.alphas.value(&window, 1.0));
        frames.append(window.geometry());
    };
    f.panels.whenOrderedOut = [&](QWidget &window) { alphas.append(f.panels.alphas.value(&window, 1.0)); };
    f.panel->showNearCursor();
    QCOMPARE(alphas, QList<double>{0.0});
    QCOMPARE(frames, QList<QRect>{QRect(124, 116, 88, 88)});
    // It hides again before it is fully opaque.
    f.queue.advance(1);
    f.panel->hide();
    f.queue.advance(1);
    QCOMPARE(alphas, (QList<double>{0.0, 0.0}));
}

void CursorShelfTest::a_panel_shown_again_is_placed_anew()
{
    Fixture f;
    f.showFully();
    f.screens.pointerPosition = QPointF(100, 100);
    f.panel->showNearCursor();
    QCOMPARE(f.panel->geometry(), QRect(124, 116, 88, 88));
}

void CursorShelfTest::without_any_screen_the_program_stops()
{
    const pid_t child = fork();
    if (child == 0) {
        // Suppress the message and a stack trace.
        close(STDERR_FILENO);
        qInstallMessageHandler(nullptr);
        signal(SIGABRT, SIG_DFL);
        Fixture f;
        f.screens.screens.clear();
        f.panel->showNearCursor();
        _exit(0);
    }
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(WTERMSIG(status), SIGABRT);
}

void CursorShelfTest::showing_fades_in_over_015_seconds_and_eases_out()
{
    Fixture f;
    f.panel->showNearCursor();
    QCOMPARE(f.panel->alpha(), 0.0);
    QCOMPARE(f.shownAlpha(), 0.0);
    QVERIFY(f.panel->isVisible());
    QCOMPARE(f.panels.ordersFront, 1);

    QEasingCurve easeOut(QEasingCurve::BezierSpline);
    easeOut.addCubicBezierSegment(QPointF(0, 0), QPointF(0.58, 1), QPointF(1, 1));
    constexpr double kFrame = 1.0 / 60.0;
    for (int i = 1; i <= 8; ++i) {
        f.queue.advance(kFrame);
        const double expected = easeOut.valueForProgress(i * kFrame / 0.15);
        QVERIFY2(qAbs(f.panel->alpha() - expected) < 0.001, qPrintable(QString::number(f.panel->alpha())));
        QVERIFY(qAbs(f.shownAlpha() - f.panel->alpha()) < 0.01);
    }
    f.queue.advance(0.149 - 8 * kFrame);
    QVERIFY(f.panel->alpha() < 1.0);
    f.queue.advance(0.001);
    QCOMPARE(f.panel->alpha(), 1.0);
    QCOMPARE(f.shownAlpha(), 1.0);
    QCOMPARE(f.queue.timerCount(), 0);
}

void CursorShelfTest::showing_a_visible_panel_fades_it_in_from_nothing_again()
{
    Fixture f;
    f.showFully();
    QCOMPARE(f.panel->alpha(), 1.0);
    f.panel->showNearCursor();
    QCOMPARE(f.panel->alpha(), 0.0);
    QCOMPARE(f.panels.ordersFront, 2);
    f.queue.advance(0.15);
    QCOMPARE(f.panel->alpha(), 1.0);
}

void CursorShelfTest::hiding_fades_out_over_012_seconds()
{
    Fixture f;
    f.showFully();
    f.panel->hide();
    QCOMPARE(f.panel->alpha(), 1.0);

    QEasingCurve standard(QEasingCurve::BezierSpline);
    standard.addCubicBezierSegment(QPointF(0.25, 0.1), QPointF(0.25, 1), QPointF(1, 1));
    constexpr double kFrame = 1.0 / 60.0;
    for (int i = 1; i <= 7; ++i) {
        f.queue.advance(kFrame);
        const double expected = 1 - standard.valueForProgress(i * kFrame / 0.12);
        QVERIFY2(qAbs(f.panel->alpha() - expected) < 0.001, qPrintable(QString::number(f.panel->alpha())));
    }
    f.queue.advance(0.119 - 7 * kFrame);
    QVERIFY(f.panel->isVisible());
    QCOMPARE(f.panels.ordersOut, 0);
    f.queue.advance(0.001);
    QVERIFY(!f.panel->isVisible());
    QCOMPARE(f.panels.ordersOut, 1);
    QCOMPARE(f.panel->alpha(), 1.0);
    QCOMPARE(f.shownAlpha(), 1.0);
}

void CursorShelfTest::hiding_a_fading_in_panel_starts_from_where_it_stands()
{
    Fixture f;
    f.panel->showNearCursor();
    f.queue.advance(0.05);
    const double reached = f.panel->alpha();
    QVERIFY(reached > 0 && reached < 1);
    f.panel->hide();
    QCOMPARE(f.panel->alpha(), reached);
    f.queue.advance(0.05);
    QVERIFY(f.panel->alpha() < reached);
    f.queue.advance(0.07);
    QVERIFY(!f.panel->isVisible());
    QCOMPARE(f.panel->alpha(), 1.0);
}

void CursorShelfTest::hiding_again_does_not_put_the_end_off()
{
    Fixture f;
    f.showFully();
    f.panel->hide();
    f.queue.advance(0.06);
    f.panel->hide();
    f.queue.advance(0.06);
    QVERIFY(!f.panel->isVisible());
    // The next fade-out has its full length again.
    f.showFully();
    f.panel->hide();
    f.queue.advance(0.11);
    QVERIFY(f.panel->isVisible());
    f.queue.advance(0.01);
    QVERIFY(!f.panel->isVisible());
}

void CursorShelfTest::a_panel_shown_while_it_fades_out_stays()
{
    Fixture f;
    f.showFully();
    f.panel->hide();
    f.queue.advance(0.1);
    f.panel->showNearCursor();
    QCOMPARE(f.panel->alpha(), 0.0);
    f.queue.advance(1);
    QVERIFY(f.panel->isVisible());
    QCOMPARE(f.panel->alpha(), 1.0);
}

void CursorShelfTest::hiding_a_hidden_panel_does_nothing()
{
    Fixture f;
    f.panel->hide();
    QCOMPARE(f.queue.timerCount(), 0);
    f.queue.advance(1);
    QCOMPARE(f.panels.ordersOut, 0);
    QCOMPARE(f.panel->alpha(), 1.0);
}

void CursorShelfTest::a_background_that_the_desktop_draws_is_not_drawn_again()
{
    Fixture f;
    f.showFully();
    const auto pixel = [&f](int x) {
        QImage canvas(f.panel->size(), QImage::Format_ARGB32_Premultiplied);
        canvas.fill(Qt::transparent);
        f.zone.visualFX->render(&canvas, QPoint(), QRegion(), QWidget::RenderFlags());
        return canvas.pixelColor(x, 44);
    };
    QVERIFY(pixel(44).alpha() > 0);
    QVERIFY(pixel(0).alpha() > 0);
    f.panels.hasMaterial = true;
    QCOMPARE(pixel(44).alpha(), 0);
    QCOMPARE(pixel(0).alpha(), 0);
    // The border is still visible.
    f.zone.visualFX->setBorder(2, Qt::red);
    QCOMPARE(pixel(1), QColor(Qt::red));
    QCOMPARE(pixel(44).alpha(), 0);
}

void CursorShelfTest::entering_and_leaving_turns_the_accent_border_on_and_off()
{
    Fixture f;
    f.showFully();
    const VisualEffectView &background = *f.zone.visualFX;
    QCOMPARE(background.borderWidth(), 0.0);

    QMimeData data;
    data.setUrls({file("/a.txt")});
    Qt::DropAction action = Qt::IgnoreAction;
    f.virtualPlatform.appearance.accent = QColor(200, 30, 90);
    QVERIFY(sendDragEnter(f.zone, data, &action));
    QCOMPARE(action, Qt::CopyAction);
    QCOMPARE(background.borderWidth(), 2.0);
    QCOMPARE(background.borderColor(), QColor(200, 30, 90));
    QCOMPARE(f.panel->grab().toImage().pixelColor(1, 44), QColor(200, 30, 90));

    action = Qt::IgnoreAction;
    QVERIFY(sendDragMove(f.zone, data, &action));
    QCOMPARE(action, Qt::CopyAction);
    QCOMPARE(background.borderWidth(), 2.0);

    // The colour is the current accent colour, also for a border that fades out.
    f.virtualPlatform.appearance.accent = QColor(10, 160, 20);
    sendDragLeave(f.zone);
    QCOMPARE(background.borderWidth(), 0.0);
    QCOMPARE(background.borderColor(), QColor(10, 160, 20));
    QVERIFY(f.drops.isEmpty());
}

void CursorShelfTest::dropping_two_files_hands_both_over_at_once_and_in_order()
{
    Fixture f;
    f.showFully();
    QMimeData data;
    data.setUrls({file("/z.txt"), file("/a.txt")});
    sendDragEnter(f.zone, data);
    QCOMPARE(f.zone.visualFX->borderWidth(), 2.0);
    bool highlighted = true;
    f.panel->onDrop = [&f, &highlighted](const QList<QUrl> &urls) {
        f.drops.append(urls);
        highlighted = f.zone.visualFX->borderWidth() > 0;
    };
    QVERIFY(sendDrop(f.zone, data));
    QCOMPARE(f.drops, QList<QList<QUrl>>({{file("/z.txt"), file("/a.txt")}}));
    QVERIFY(!highlighted); // before the files are handed over
    QCOMPARE(f.zone.visualFX->borderWidth(), 0.0);
}

void CursorShelfTest::a_drop_is_a_copy_and_does_not_hide_the_panel()
{
    Fixture f;
    f.showFully();
    QMimeData data;
    data.setUrls({file("/a.txt")});
    sendDragEnter(f.zone, data);
    Qt::DropAction action = Qt::IgnoreAction;
    QVERIFY(sendDrop(f.zone, data, &action));
    QCOMPARE(action, Qt::CopyAction);
    f.queue.advance(10);
    QVERIFY(f.panel->isVisible());
    QCOMPARE(f.panel->alpha(), 1.0);
}

void CursorShelfTest::what_may_not_be_copied_passes_by()
{
    Fixture f;
    f.showFully();
    QMimeData data;
    data.setUrls({file("/a")});
    QVERIFY(!sendDragEnter(f.zone, data, nullptr, Qt::MoveAction));
    QCOMPARE(f.zone.visualFX->borderWidth(), 0.0);
    // The user may press the key for a move later.
    QVERIFY(sendDragEnter(f.zone, data));
    QVERIFY(!sendDrop(f.zone, data, nullptr, Qt::MoveAction));
    QVERIFY(f.drops.isEmpty());
}

void CursorShelfTest::a_drag_that_is_known_to_have_no_files_passes_by()
{
    Fixture f;
    f.showFully();
    f.virtualPlatform.dropPasteboard.withoutFiles = true;
    QMimeData link;
    link.setUrls({QUrl(u"https://example.org/a"_s)});
    QVERIFY(!sendDragEnter(f.zone, link));
    QCOMPARE(f.zone.visualFX->borderWidth(), 0.0);
}

void CursorShelfTest::dropping_text_is_refused_and_turns_the_highlight_off()
{
    Fixture f;
    f.showFully();
    QMimeData carried;
    carried.setUrls({file("/a.txt")});
    sendDragEnter(f.zone, carried);
    QCOMPARE(f.zone.visualFX->borderWidth(), 2.0);
    QMimeData text;
    text.setText(u"/a.txt"_s);
    QVERIFY(!sendDrop(f.zone, text));
    QVERIFY(f.drops.isEmpty());
    QCOMPARE(f.zone.visualFX->borderWidth(), 0.0);
}

void CursorShelfTest::dropping_anything_that_is_no_file_is_refused_as_a_whole()
{
    Fixture f;
    f.showFully();
    QMimeData mixed;
    mixed.setUrls({file("/a.txt"), QUrl(u"https://example.org/b.txt"_s)});
    QVERIFY(sendDragEnter(f.zone, mixed));
    QCOMPARE(f.zone.visualFX->borderWidth(), 2.0);
    QVERIFY(!sendDrop(f.zone, mixed));
    QVERIFY(f.drops.isEmpty());
    QCOMPARE(f.zone.visualFX->borderWidth(), 0.0);

    QMimeData nothing;
    QVERIFY(sendDragEnter(f.zone, mixed));
    QVERIFY(!sendDrop(f.zone, nothing));
    QVERIFY(f.drops.isEmpty());
}

void CursorShelfTest::a_drop_without_a_receiver_is_still_taken()
{
    Fixture f;
    f.showFully();
    f.panel->onDrop = {};
    QMimeData data;
    data.setUrls({file("/a.txt")});
    QVERIFY(sendDragEnter(f.zone, data));
    QVERIFY(sendDrop(f.zone, data));
    QVERIFY(f.drops.isEmpty());
}

void CursorShelfTest::a_drop_for_a_panel_that_has_gone_does_nothing()
{
    Fixture f;
    const auto drop = f.zone.onDrop;
    drop({file("/a.txt")});
    QCOMPARE(f.drops.size(), 1);
    f.panel.reset();
    drop({file("/b.txt")});
    QCOMPARE(f.drops.size(), 1);
}

void CursorShelfTest::the_zone_is_drawn_to_the_pixel()
{
    Fixture f;
    f.showFully();
    const auto picture = [&f] {
        QImage canvas(f.zone.size(), QImage::Format_ARGB32_Premultiplied);
        canvas.fill(Qt::transparent);
        f.zone.render(&canvas, QPoint(), QRegion(), QWidget::DrawChildren);
        return canvas;
    };
    const QImage plain = picture();
    QColor background = ShelfMetrics::kBackground;
    background.setAlphaF(ShelfMetrics::kBackgroundAlpha);
    // Premultiplied, a channel may be one off.
    const auto isLike = [](const QColor &a, const QColor &b) {
        return std::abs(a.red() - b.red()) <= 1 && std::abs(a.green() - b.green()) <= 1 &&
               std::abs(a.blue() - b.blue()) <= 1 && std::abs(a.alpha() - b.alpha()) <= 1;
    };
    QVERIFY(isLike(plain.pixelColor(10, 44), background));
    QVERIFY(isLike(plain.pixelColor(26, 44), background));
    for (const QPoint corner : {QPoint(0, 0), QPoint(87, 0), QPoint(0, 87), QPoint(87, 87)})
        QCOMPARE(plain.pixelColor(corner).alpha(), 0);
    // The symbol is white at 0.65, 34 points wide and high in the middle.
    const QColor symbol = plain.pixelColor(44, 44);
    QVERIFY2(symbol.red() > background.red() + 100, qPrintable(symbol.name(QColor::HexArgb)));
    QCOMPARE(plain.pixelColor(36, 44), symbol);
    // The border takes the outermost two points, and no more.
    f.zone.onHighlight(true);
    const QImage lit = picture();
    for (const int x : {0, 1, 86, 87})
        QCOMPARE(lit.pixelColor(x, 44), f.virtualPlatform.appearance.accent);
    for (const int x : {2, 10, 44, 85})
        QCOMPARE(lit.pixelColor(x, 44), plain.pixelColor(x, 44));
    f.zone.onHighlight(false);
    QCOMPARE(picture(), plain);
}

PARKLET_TEST(CursorShelfTest)
#include "CursorShelfTest.moc"
