// SPDX-License-Identifier: MIT
#include "platform/linux/drags/EdgeStrip.h"
#include "tests/support/TestProgram.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QTest>

namespace {

// A screen with a bar of 32 points at its top.
constexpr QRectF kVisible(0, 32, 1280, 768);

// Makes the handlers callable, because Qt delivers moves and leaves of its own drags only.
class OpenStrip : public EdgeStrip {
public:
    using EdgeStrip::dragEnterEvent;
    using EdgeStrip::dragLeaveEvent;
    using EdgeStrip::dragMoveEvent;
    using EdgeStrip::EdgeStrip;
};

class EdgeStripTest : public QObject {
    Q_OBJECT

private slots:
    void strips_are_at_the_edge_next_to_the_shelf_data()
    {
        QTest::addColumn<QRectF>("shelf");
        QTest::addColumn<QList<QRect>>("strips");
        QTest::newRow("left") << QRectF(4, 334, 116, 164) << QList<QRect>{{0, 214, 4, 404}};
        QTest::newRow("right") << QRectF(1160, 334, 116, 164) << QList<QRect>{{1276, 214, 4, 404}};
        QTest::newRow("top") << QRectF(582, 36, 116, 164) << QList<QRect>{{462, 32, 356, 4}};
        QTest::newRow("bottom") << QRectF(582, 632, 116, 164) << QList<QRect>{{462, 796, 356, 4}};
        QTest::newRow("a corner") << QRectF(1160, 36, 116, 164) << QList<QRect>{{1276, 32, 4, 288}, {1040, 32, 240, 4}};
        QTest::newRow("cut to the screen") << QRectF(1160, 100, 116, 164) << QList<QRect>{{1276, 32, 4, 352}};
    }

    void strips_are_at_the_edge_next_to_the_shelf()
    {
        QFETCH(QRectF, shelf);
        QFETCH(QList<QRect>, strips);
        QCOMPARE(edgeStrips(shelf, kVisible), strips);
    }

    void a_drag_is_noticed_and_nothing_is_taken()
    {
        OpenStrip strip(QRect(1276, 214, 4, 404));
        QList<std::optional<QPointF>> seen;
        strip.onPointer = [&seen](std::optional<QPointF> position) { seen.append(position); };
        const QMimeData files;
        QDragEnterEvent enter(QPoint(2, 10), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
        enter.accept();
        strip.dragEnterEvent(&enter);
        QVERIFY(!enter.isAccepted());
        QDragMoveEvent move(QPoint(3, 20), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
        move.accept();
        strip.dragMoveEvent(&move);
        QVERIFY(!move.isAccepted());
        QDragLeaveEvent leave;
        strip.dragLeaveEvent(&leave);
        QCOMPARE(seen, (QList<std::optional<QPointF>>{QPointF(1278, 224), QPointF(1279, 234), {}}));
    }
};

} // namespace

PARKLET_TEST(EdgeStripTest)

#include "EdgeStripTest.moc"
