// SPDX-License-Identifier: MIT
#include "platform/macos/MacDragSessions.h"

#include "platform/macos/MacConversions.h"
#include "platform/macos/MacDragPasteboard.h"
#include "tests/macos/ReplacedMethod.h"
#include "tests/support/TestProgram.h"

#include <QMouseEvent>
#include <QTest>
#include <QWidget>

#import <AppKit/AppKit.h>

// What a session is begun with and what its source answers. No hand is needed: the session itself does not run.
class MacDragSessionsTest : public QObject {
    Q_OBJECT

private slots:
    void nothing_begins_after_the_button_has_been_released();
    void every_file_is_an_item_with_a_frame_of_its_own();
    void one_operation_is_offered_whatever_keys_are_held_data();
    void one_operation_is_offered_whatever_keys_are_held();
    void the_end_is_told_once();
    void no_other_drag_begins_meanwhile();
    void the_button_is_released_for_the_source();
    void a_drag_that_outlives_its_sessions_tells_nobody();
};

namespace {

// Receives the release that ends a drag.
class Tile : public QWidget {
public:
    using QWidget::QWidget;

    int releases = 0;

protected:
    void mousePressEvent(QMouseEvent *) override {}
    void mouseReleaseEvent(QMouseEvent *) override { ++releases; }
};

// A window with a tile in it, and a system that only notes what is begun.
struct Desk {
    explicit Desk(NSUInteger buttons = 1)
        : pressed(class_getClassMethod([NSEvent class], @selector(pressedMouseButtons)), ^NSUInteger(id) {
            return buttons;
        })
    {
        window.setGeometry(300, 200, 200, 300);
        tile.setGeometry(20, 30, 88, 102);
        window.show();
        beginning = std::make_unique<ReplacedMethod>(
            class_getInstanceMethod(object_getClass(view()), @selector(beginDraggingSessionWithItems:event:source:)),
            ^NSDraggingSession *(id, NSArray<NSDraggingItem *> *dragged, NSEvent *event,
                                 id<NSDraggingSource> draggingSource) {
                items = dragged;
                begunWith = event;
                source = draggingSource;
                return nil;
            });
    }

    NSView *view() const { return (__bridge NSView *)reinterpret_cast<void *>(window.winId()); }

    void begin(DragOperation offered = DragOperation::Copy)
    {
        QPixmap picture(144, 72);
        picture.fill(Qt::red);
        sessions->begin(tile,
                        {{QUrl::fromLocalFile(QStringLiteral("/tmp/a b.txt")), QRectF(0, 30, 72, 72), picture},
                         {QUrl::fromLocalFile(QStringLiteral("/tmp/ä.txt")), QRectF(0, 30, 72, 72), picture}},
                        offered, [this](DragOperation operation) { ended.append(operation); });
    }

    void end(NSDragOperation operation)
    {
        NSDraggingSession *none = nil;
        [source draggingSession:none endedAtPoint:NSZeroPoint operation:operation];
    }

    NSArray<NSDraggingItem *> *items = nil;
    NSEvent *begunWith = nil;
    id<NSDraggingSource> source = nil;
    QList<DragOperation> ended;

    const ReplacedMethod pressed;
    QWidget window;
    Tile tile{&window};
    std::unique_ptr<ReplacedMethod> beginning;
    MacDragPasteboard pasteboard;
    std::unique_ptr<MacDragSessions> sessions = std::make_unique<MacDragSessions>(pasteboard);
};

} // namespace

void MacDragSessionsTest::nothing_begins_after_the_button_has_been_released()
{
    Desk desk(0);
    desk.begin();
    QVERIFY(!desk.items);
    QVERIFY(!desk.sessions->isRunning());
}

void MacDragSessionsTest::every_file_is_an_item_with_a_frame_of_its_own()
{
    Desk desk;
    desk.begin();
    QVERIFY(desk.sessions->isRunning());
    QCOMPARE(desk.items.count, NSUInteger{2});
    QCOMPARE(fromNSURL(desk.items[0].item).value(), QUrl::fromLocalFile(QStringLiteral("/tmp/a b.txt")));
    QCOMPARE(fromNSURL(desk.items[1].item).value(), QUrl::fromLocalFile(QStringLiteral("/tmp/ä.txt")));
    // The tile's frame, in the view of its window, which counts from the top as Qt does.
    QVERIFY(desk.view().flipped);
    QCOMPARE(QRectF::fromCGRect(desk.items[0].draggingFrame), QRectF(20, 60, 72, 72));
    QVERIFY(desk.begunWith.window == desk.view().window);
}

void MacDragSessionsTest::one_operation_is_offered_whatever_keys_are_held_data()
{
    QTest::addColumn<DragOperation>("offered");
    QTest::addColumn<quint64>("mask");
    QTest::newRow("copy") << DragOperation::Copy << quint64{1};
    QTest::newRow("link") << DragOperation::Link << quint64{2};
    QTest::newRow("move") << DragOperation::Move << quint64{16};
}

void MacDragSessionsTest::one_operation_is_offered_whatever_keys_are_held()
{
    QFETCH(DragOperation, offered);
    Desk desk;
    desk.begin(offered);
    NSDraggingSession *none = nil;
    for (const auto context : {NSDraggingContextOutsideApplication, NSDraggingContextWithinApplication}) {
        const NSDragOperation mask = [desk.source draggingSession:none sourceOperationMaskForDraggingContext:context];
        QTEST(quint64{mask}, "mask");
    }
    QVERIFY([desk.source ignoreModifierKeysForDraggingSession:none]);
}

void MacDragSessionsTest::the_end_is_told_once()
{
    Desk desk;
    desk.begin();
    desk.end(NSDragOperationCopy);
    desk.end(NSDragOperationCopy);
    QCOMPARE(desk.ended, QList<DragOperation>{DragOperation::Copy});
    QVERIFY(!desk.sessions->isRunning());
    desk.begin(DragOperation::Move);
    desk.end(NSDragOperationNone);
    QCOMPARE(desk.ended, (QList<DragOperation>{DragOperation::Copy, DragOperation::None}));
    desk.begin(DragOperation::Move);
    desk.end(NSDragOperationMove);
    QCOMPARE(desk.ended.last(), DragOperation::Move);
}

void MacDragSessionsTest::no_other_drag_begins_meanwhile()
{
    Desk desk;
    desk.begin();
    id<NSDraggingSource> first = desk.source;
    desk.begin();
    QVERIFY(desk.source == first);
}

void MacDragSessionsTest::the_button_is_released_for_the_source()
{
    Desk desk;
    QTest::mousePress(&desk.tile, Qt::LeftButton);
    NSEvent *press = [NSEvent mouseEventWithType:NSEventTypeLeftMouseDown
                                        location:NSPoint{50, 220}
                                   modifierFlags:NSEventModifierFlags {}
                                       timestamp:NSProcessInfo.processInfo.systemUptime
                                    windowNumber:desk.view().window.windowNumber
                                         context:nil
                                     eventNumber:0
                                      clickCount:1
                                        pressure:1];
    [desk.view() mouseDown:press];
    desk.begin();
    desk.end(NSDragOperationCopy);
    QTRY_VERIFY(desk.tile.releases > 0);
}

void MacDragSessionsTest::a_drag_that_outlives_its_sessions_tells_nobody()
{
    Desk desk;
    desk.begin();
    desk.sessions.reset();
    desk.end(NSDragOperationCopy);
    QVERIFY(desk.ended.isEmpty());
}

PARKLET_TEST(MacDragSessionsTest)

#include "MacDragSessionsTest.moc"
