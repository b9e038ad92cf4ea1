// SPDX-License-Identifier: MIT
#include "tests/platform/drags/ClientProcess.h"

#include "platform/linux/drags/XcbDragSessions.h"
#include "shelf/DropViews.h"
#include "tests/support/Hand.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include <csignal>
#include <xcb/shape.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 20'000; // milliseconds
constexpr quint32 kEscape = 0xff1b;
constexpr quint32 kNumLock = 0xff7f;
constexpr quint32 kCapsLock = 0xffe5;
constexpr QPoint kOnSource(60, 60);
constexpr QPoint kOnDestination(460, 360);
constexpr QPoint kOnOwnWindow(860, 160);
constexpr QPoint kOnNothing(1000, 700);
const QStringList kDestinationPlace = {u"--x"_s,     u"400"_s, u"--y"_s,      u"300"_s,
                                       u"--width"_s, u"200"_s, u"--height"_s, u"200"_s};

// A window without focus, as the shelf is, that begins a drag when the pointer moves with the button down.
class Source : public QWidget {
public:
    Source()
    {
        setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
        setGeometry(20, 20, 100, 100);
    }

    std::function<void(Source &)> onDrag;

protected:
    void mousePressEvent(QMouseEvent *) override { pressed = true; }
    void mouseMoveEvent(QMouseEvent *) override
    {
        if (std::exchange(pressed, false))
            onDrag(*this);
    }

private:
    bool pressed = false;
};

class OwnDestination : public QWidget {
public:
    OwnDestination()
    {
        setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
        setGeometry(800, 100, 120, 120);
        setAcceptDrops(true);
    }

    bool takes = true;
    QList<QUrl> dropped;

protected:
    void dragEnterEvent(QDragEnterEvent *event) override { event->acceptProposedAction(); }
    void dropEvent(QDropEvent *event) override
    {
        dropped = event->mimeData()->urls();
        event->setAccepted(takes);
    }
};

DraggingItem item(const QUrl &url)
{
    QPixmap picture(64, 64);
    picture.fill(Qt::darkCyan);
    return {url, QRectF(0, 0, 64, 64), picture};
}

class XcbDragSessionsTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        makeSessions({});
        source = new Source;
        source->onDrag = [this](Source &widget) {
            ++begun;
            sessions->begin(widget, items, offered, record());
            ++returned;
        };
        source->show();
        QVERIFY(QTest::qWaitForWindowExposed(source));
        items = {item(QUrl(u"file:///tmp/a"_s))};
        offered = DragOperation::Copy;
        results.clear();
        begun = returned = 0;
        hand.moveTo(kOnNothing);
        QTRY_VERIFY_WITH_TIMEOUT(hand.isIdle(), kPatience);
    }

    void cleanup()
    {
        destination.reset();
        delete source;
        // No drag object remains, whatever the result of the drag was.
        QTRY_VERIFY_WITH_TIMEOUT(sessions->findChildren<QDrag *>().isEmpty(), kPatience);
    }

    void the_operation_that_was_performed_is_reported_data()
    {
        QTest::addColumn<DragOperation>("offer");
        QTest::addColumn<QString>("performed");
        QTest::addColumn<DragOperation>("reported");
        QTest::newRow("copy") << DragOperation::Copy << "offered" << DragOperation::Copy;
        QTest::newRow("move") << DragOperation::Move << "offered" << DragOperation::Move;
        QTest::newRow("link") << DragOperation::Link << "offered" << DragOperation::Link;
        QTest::newRow("another one") << DragOperation::Move << "Copy" << DragOperation::Copy;
        QTest::newRow("an unknown one") << DragOperation::Move << "Private" << DragOperation::Move;
        QTest::newRow("an untold one") << DragOperation::Link << "none" << DragOperation::Link;
    }

    void the_operation_that_was_performed_is_reported()
    {
        QFETCH(DragOperation, offer);
        QFETCH(QString, performed);
        QFETCH(DragOperation, reported);
        offered = offer;
        startDestination({u"--action"_s, performed});
        dragTo(kOnDestination);
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{reported}, kPatience);
    }

    void only_one_operation_is_offered_data()
    {
        QTest::addColumn<DragOperation>("offer");
        QTest::addColumn<QString>("name");
        QTest::newRow("copy") << DragOperation::Copy << "XdndActionCopy";
        QTest::newRow("move") << DragOperation::Move << "XdndActionMove";
        QTest::newRow("link") << DragOperation::Link << "XdndActionLink";
    }

    void only_one_operation_is_offered()
    {
        QFETCH(DragOperation, offer);
        QFETCH(QString, name);
        offered = offer;
        startDestination({});
        dragTo(kOnDestination);
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{offer}, kPatience);
        QCOMPARE(destination->lines.filter(u"offers "_s), QStringList{u"offers "_s + name});
        QCOMPARE(destination->lines.filter(u"proposes "_s), QStringList{u"proposes "_s + name});
    }

    void an_operation_is_reported_only_when_the_destination_has_finished()
    {
        startDestination({u"--delay"_s, u"500"_s});
        dragTo(kOnDestination);
        QTRY_VERIFY_WITH_TIMEOUT(returned == 1 && destination->said("data"), kPatience);
        QVERIFY(results.isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::Copy}, kPatience);
        QVERIFY(destination->said("finished"));
    }

    void a_destination_that_promised_and_then_fails_reports_none()
    {
        startDestination({u"--finish"_s, u"refuse"_s});
        dragTo(kOnDestination);
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::None}, kPatience);
        QVERIFY(destination->said("drop"));
    }

    void an_old_destination_that_finishes_has_taken_the_drop()
    {
        startDestination({u"--version"_s, u"4"_s, u"--finish"_s, u"refuse"_s});
        dragTo(kOnDestination);
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::Copy}, kPatience);
    }

    void a_destination_that_refuses_beforehand_reports_none()
    {
        startDestination({u"--status"_s, u"refuse"_s});
        dragTo(kOnDestination);
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::None}, kPatience);
        QVERIFY(!destination->said("drop"));
    }

    void a_destination_that_dies_reports_none_data()
    {
        QTest::addColumn<QStringList>("death");
        QTest::newRow("under the pointer") << QStringList{u"--die"_s, u"enter"_s};
        QTest::newRow("at the drop") << QStringList{u"--die"_s, u"drop"_s};
        QTest::newRow("after the drop") << QStringList{u"--finish"_s, u"die"_s, u"--delay"_s, u"300"_s};
    }

    void a_destination_that_dies_reports_none()
    {
        QFETCH(QStringList, death);
        startDestination(death);
        hand.moveTo(kOnSource).press().moveTo(kOnDestination);
        if (death.contains(u"enter"_s))
            hand.waitUntil([this] { return !destination->isRunning(); });
        else
            hand.waitUntil([this] { return destination->said("position"); });
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::None}, kPatience);
    }

    void a_destination_that_never_finishes_is_given_up()
    {
        makeSessions({.delivered = 0.5});
        startDestination({u"--finish"_s, u"never"_s});
        dragTo(kOnDestination);
        QTRY_VERIFY_WITH_TIMEOUT(destination->said("data") && returned == 1, kPatience);
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::None}, kPatience);
    }

    void a_release_where_nobody_takes_it_reports_none()
    {
        dragTo(kOnNothing + QPoint(40, 40));
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::None}, kPatience);
    }

    void an_earlier_acceptance_elsewhere_does_not_count()
    {
        startDestination({});
        dragBy(kOnDestination, kOnNothing);
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::None}, kPatience);
        QVERIFY(!destination->said("drop"));
    }

    void the_next_drag_ends_one_that_nobody_took()
    {
        makeSessions({.undelivered = 3600});
        startDestination({});
        dragBy(kOnDestination, kOnNothing);
        QTRY_COMPARE_WITH_TIMEOUT(returned, 1, kPatience);
        dragTo(kOnDestination);
        QTRY_COMPARE_WITH_TIMEOUT(results, (QList{DragOperation::None, DragOperation::Copy}), kPatience);
    }

    void a_mute_window_below_the_pointer_does_not_inherit_an_acceptance()
    {
        startDestination({});
        ClientProcess mute(u"DropDestination"_s,
                           {u"--x"_s, u"600"_s, u"--y"_s, u"300"_s, u"--width"_s, u"200"_s, u"--height"_s, u"200"_s,
                            u"--status"_s, u"never"_s, u"--finish"_s, u"refuse"_s});
        QTRY_VERIFY_WITH_TIMEOUT(mute.said("ready"), kPatience);
        dragBy(kOnDestination, QPoint(660, 360), [&mute] { return mute.said("position"); });
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::None}, kPatience);
        QVERIFY(!destination->said("drop"));
    }

    void our_own_window_has_answered_before_the_end()
    {
        OwnDestination own;
        own.show();
        QVERIFY(QTest::qWaitForWindowExposed(&own));
        offered = DragOperation::Move;
        dragTo(kOnOwnWindow);
        QTRY_COMPARE_WITH_TIMEOUT(returned, 1, kPatience);
        QCOMPARE(own.dropped, QList{items.first().fileURL});
        QCOMPARE(results, QList{DragOperation::Move});
    }

    void the_shelf_takes_back_its_own_files_whatever_may_be_done_with_them()
    {
        for (const DragOperation operation : {DragOperation::Move, DragOperation::Link}) {
            DroppableView shelf;
            shelf.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
            shelf.setGeometry(QRect(kOnOwnWindow - QPoint(60, 60), QSize(120, 120)));
            QList<QUrl> dropped;
            shelf.onDrop = [&dropped](const QList<QUrl> &urls) { dropped = urls; };
            shelf.show();
            QVERIFY(QTest::qWaitForWindowExposed(&shelf));
            results.clear();
            offered = operation;
            dragTo(kOnOwnWindow);
            QTRY_COMPARE_WITH_TIMEOUT(results, QList{operation}, kPatience);
            QCOMPARE(dropped, QList{items.first().fileURL});
            QTRY_VERIFY_WITH_TIMEOUT(hand.isIdle(), kPatience);
        }
    }

    void our_own_window_may_refuse()
    {
        OwnDestination own;
        own.takes = false;
        own.show();
        QVERIFY(QTest::qWaitForWindowExposed(&own));
        dragTo(kOnOwnWindow);
        QTRY_COMPARE_WITH_TIMEOUT(returned, 1, kPatience);
        QCOMPARE(results, QList{DragOperation::None});
    }

    void escape_cancels_although_the_source_never_has_the_focus_data()
    {
        QTest::addColumn<QList<quint32>>("locks");
        QTest::newRow("plain") << QList<quint32>{};
        QTest::newRow("num lock") << QList<quint32>{kNumLock};
        QTest::newRow("caps lock") << QList<quint32>{kCapsLock};
        QTest::newRow("both") << QList<quint32>{kNumLock, kCapsLock};
    }

    void escape_cancels_although_the_source_never_has_the_focus()
    {
        QFETCH(QList<quint32>, locks);
        startDestination({});
        for (const quint32 lock : locks)
            hand.type(lock);
        hand.moveTo(kOnSource).press().moveTo(kOnDestination).waitUntil([this] {
            return destination->said("position");
        });
        hand.type(kEscape).waitUntil([this] { return returned == 1; }).release();
        for (const quint32 lock : locks)
            hand.type(lock);
        QTRY_VERIFY_WITH_TIMEOUT(hand.isIdle(), kPatience);
        QCOMPARE(results, QList{DragOperation::None});
        QTRY_VERIFY_WITH_TIMEOUT(destination->said("leave"), kPatience);
        QVERIFY(!destination->said("drop"));
    }

    void escape_belongs_to_others_again_after_a_drag()
    {
        startDestination({});
        const auto other = XcbConnection::open(nullptr);
        bool duringDrag = true;
        hand.moveTo(kOnSource).press().moveTo(kOnDestination).waitUntil([this] {
            return destination->said("position");
        });
        hand.then([&] { duringDrag = canGrabEscape(*other); }).release();
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::Copy}, kPatience);
        QVERIFY(!duringDrag);
        QVERIFY(canGrabEscape(*other));
    }

    void the_source_may_be_deleted_during_the_drag()
    {
        startDestination({});
        hand.moveTo(kOnSource).press().moveTo(kOnDestination).then([this] { delete source; });
        hand.waitUntil([this] { return destination->said("position"); }).release();
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::Copy}, kPatience);
    }

    void a_second_drag_cannot_begin_during_the_first()
    {
        startDestination({});
        QWidget another;
        hand.moveTo(kOnSource).press().moveTo(kOnDestination).then([&] {
            sessions->begin(another, items, DragOperation::Move, record());
        });
        hand.waitUntil([this] { return destination->said("position"); }).release();
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::Copy}, kPatience);
        QTRY_VERIFY_WITH_TIMEOUT(hand.isIdle(), kPatience);
        QCOMPARE(results.size(), 1);
    }

    void a_drag_of_nothing_does_not_begin()
    {
        items.clear();
        dragTo(kOnDestination);
        QTRY_VERIFY_WITH_TIMEOUT(hand.isIdle() && returned == 1, kPatience);
        QVERIFY(results.isEmpty());
    }

    void drops_that_finish_late_keep_their_order()
    {
        startDestination({u"--delay"_s, u"800"_s});
        offered = DragOperation::Move;
        dragTo(kOnDestination);
        QTRY_COMPARE_WITH_TIMEOUT(returned, 1, kPatience);
        offered = DragOperation::Link;
        dragTo(kOnDestination);
        QTRY_COMPARE_WITH_TIMEOUT(results, (QList{DragOperation::Move, DragOperation::Link}), kPatience);
    }

    void the_dragged_picture_is_announced_as_one_and_has_its_own_outline()
    {
        items = {item(QUrl(u"file:///tmp/a"_s)), item(QUrl(u"file:///tmp/b"_s))};
        std::vector<quint32> types;
        quint32 shaped = 0;
        const auto other = XcbConnection::open(nullptr);
        hand.moveTo(kOnSource).press().moveTo(kOnNothing).waitUntil([&] { return dragWindow() != XCB_NONE; });
        hand.waitUntil([&] {
            types = other->values(dragWindow(), other->atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM);
            return types.size() == 1;
        });
        hand.then([&] {
            const auto extents =
                other->reply(xcb_shape_query_extents_reply, xcb_shape_query_extents(other->get(), dragWindow()));
            shaped = extents ? extents->bounding_shaped : 0;
        });
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::None}, kPatience);
        QCOMPARE(types, std::vector<quint32>{other->atom("_NET_WM_WINDOW_TYPE_DND")});
        QCOMPARE(shaped, 1u);
    }

    void ten_thousand_files_arrive_in_order()
    {
        items.clear();
        QByteArray expected;
        for (int i = 0; i < 10'000; ++i) {
            items.append(item(QUrl(u"file:///home/someone/pictures/picture%201-%1.png"_s.arg(i))));
            expected += items.last().fileURL.toEncoded() + "\r\n";
        }
        startDestination({});
        dragTo(kOnDestination);
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::Copy}, kPatience);
        QCOMPARE(dropped(), expected);
    }

    void a_name_that_is_no_text_arrives_byte_for_byte()
    {
        items = {item(QUrl::fromEncoded("file:///tmp/caf%E9%25.txt")),
                 item(QUrl::fromEncoded("file:///tmp/caf%C3%A9%20%23.txt"))};
        startDestination({});
        dragTo(kOnDestination);
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::Copy}, kPatience);
        QCOMPARE(dropped(), QByteArray("file:///tmp/caf%E9%25.txt\r\nfile:///tmp/caf%C3%A9%20%23.txt\r\n"));
    }

    void a_compositor_that_asks_after_the_drop_is_answered_and_has_then_taken_it()
    {
        bridgeTo({QStringLiteral("--drop"), QStringLiteral("waits")});
        dragTo(kOnDestination);
        QTRY_VERIFY_WITH_TIMEOUT(returned == 1 && destination->said("drop"), kPatience);
        // Until it has read the list nobody knows.
        QVERIFY(results.isEmpty());
        QCOMPARE(::kill(static_cast<pid_t>(destination->pid()), SIGUSR1), 0);
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::Copy}, kPatience);
        QVERIFY(destination->said("offered text/uri-list"));
        QVERIFY(destination->said("data"));
        QVERIFY(!destination->said("refused"));
        QCOMPARE(dropped(), QByteArray("file:///tmp/a\r\n"));
    }

    void a_compositor_that_asks_when_the_drop_has_been_settled_is_answered_too()
    {
        bridgeTo(
            {QStringLiteral("--hover"), QStringLiteral("reads"), QStringLiteral("--drop"), QStringLiteral("waits")});
        hand.moveTo(kOnSource).press().moveTo(kOnDestination).waitUntil([this] { return destination->said("data"); });
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::Copy}, kPatience);
        QCOMPARE(destination->lines.count(QStringLiteral("data")), 1);
        QTRY_VERIFY_WITH_TIMEOUT(destination->said("drop"), kPatience);
        QCOMPARE(::kill(static_cast<pid_t>(destination->pid()), SIGUSR1), 0);
        QTRY_COMPARE_WITH_TIMEOUT(destination->lines.count(QStringLiteral("data")), 2, kPatience);
        QVERIFY(!destination->said("refused"));
        QCOMPARE(dropped(), QByteArray("file:///tmp/a\r\n"));
    }

    void a_compositor_has_its_user_asked_about_links_and_what_he_says_is_not_known()
    {
        offered = DragOperation::Link;
        bridgeTo({});
        hand.moveTo(kOnSource).press().moveTo(kOnDestination).waitUntil([this] {
            return destination->said("proposes XdndActionAsk");
        });
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(results, QList{DragOperation::None}, kPatience);
        QVERIFY(destination->said("data"));
    }

    void another_window_is_not_answered_at_a_time_that_is_not_that_of_the_drag()
    {
        bridgeTo({}, false);
        dragTo(kOnDestination);
        QTRY_VERIFY_WITH_TIMEOUT(destination->said("refused"), kPatience);
        QVERIFY(!destination->said("data"));
    }

private:
    // Starts a destination that is a Wayland compositor, or on a server that is not one of Wayland's.
    void bridgeTo(const QStringList &arguments, bool isXwayland = true)
    {
        const auto connection = XcbConnection::open();
        DragBridge bridge(connection);
        bridge.assume(isXwayland);
        sessions.reset();
        sessions = std::make_unique<XcbDragSessions>(
            connection, [] { return QColor(Qt::blue); }, XcbDragSessions::Patience{.delivered = 5, .read = 0.1},
            bridge);
        destination = std::make_unique<ClientProcess>(
            QStringLiteral("BridgedDestination"),
            kDestinationPlace + QStringList{QStringLiteral("--out"), folder->filePath(QStringLiteral("dropped"))} +
                arguments);
        QTRY_VERIFY_WITH_TIMEOUT(destination->said("ready"), kPatience);
    }

    void makeSessions(XcbDragSessions::Patience patience)
    {
        sessions.reset();
        sessions = std::make_unique<XcbDragSessions>(
            XcbConnection::open(), [] { return QColor(Qt::blue); }, patience);
    }

    DragSessions::Ended record()
    {
        return [this](DragOperation operation) { results.append(operation); };
    }

    void startDestination(const QStringList &arguments)
    {
        destination = std::make_unique<ClientProcess>(
            u"DropDestination"_s,
            kDestinationPlace + QStringList{u"--out"_s, folder->filePath(u"dropped"_s)} + arguments);
        QTRY_VERIFY_WITH_TIMEOUT(destination->said("ready"), kPatience);
    }

    // The visible window with the drag's picture.
    static xcb_window_t dragWindow()
    {
        for (const QWindow *window : QGuiApplication::allWindows()) {
            if (window->isVisible() && window->flags().testFlag(Qt::WindowTransparentForInput))
                return static_cast<xcb_window_t>(window->winId());
        }
        return XCB_NONE;
    }

    // Drags to `end`, and releases the button there once the destination has been asked.
    void dragTo(const QPoint &end)
    {
        hand.moveTo(kOnSource).press().moveTo(end);
        if (destination && end == kOnDestination) {
            const auto asked = destination->lines.count(u"position"_s);
            hand.waitUntil([this, asked] { return destination->lines.count(u"position"_s) > asked; });
        }
        hand.release();
    }

    // Drags over the destination until it has accepted, and then continues to `end`.
    void dragBy(
        const QPoint &over, const QPoint &end, std::function<bool()> arrived = [] { return true; })
    {
        hand.moveTo(kOnSource).press().moveTo(over).waitUntil([this] { return destination->said("position"); });
        hand.moveTo(over + QPoint(5, 5)).moveTo(end).waitUntil(std::move(arrived)).release();
    }

    QByteArray dropped() const
    {
        QFile file(folder->filePath(u"dropped"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static bool canGrabEscape(XcbConnection &other)
    {
        constexpr xcb_keycode_t kEscapeKey = 9;
        const bool grabbed = other.succeeded(xcb_grab_key_checked(other.get(), 0, other.root(), 0, kEscapeKey,
                                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        xcb_ungrab_key(other.get(), kEscapeKey, other.root(), 0);
        other.flush();
        return grabbed;
    }

    Hand hand;
    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<XcbDragSessions> sessions;
    std::unique_ptr<ClientProcess> destination;
    QPointer<Source> source;
    QList<DraggingItem> items;
    DragOperation offered = DragOperation::Copy;
    QList<DragOperation> results;
    int begun = 0;
    int returned = 0;
};

} // namespace

PARKLET_TEST(XcbDragSessionsTest)
#include "XcbDragSessionsTest.moc"
