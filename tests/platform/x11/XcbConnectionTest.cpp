// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbConnection.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>
#include <QTimer>

namespace {

constexpr int kPatience = 10'000; // milliseconds

class XcbConnectionTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void an_event_reaches_every_listener();
    void an_event_read_while_waiting_for_a_reply_is_delivered();
    void a_request_is_sent_without_an_explicit_flush();
    void a_listener_may_go_within_a_handler();
    void errors_do_no_harm();
    void a_property_of_another_type_reads_as_empty();
    void a_server_that_is_not_there_gives_no_connection() { QVERIFY(!XcbConnection::open(":59999")); }
    void windows_of_this_process_are_its_own();

private:
    // Changes the root window from another client. The server has done it when this returns.
    void change(xcb_atom_t property)
    {
        const quint32 value = 1;
        QVERIFY(other->succeeded(xcb_change_property_checked(other->get(), XCB_PROP_MODE_REPLACE, other->root(),
                                                             property, XCB_ATOM_CARDINAL, 32, 1, &value)));
    }

    static int isChange(const xcb_generic_event_t &event, xcb_atom_t property)
    {
        return eventType(event) == XCB_PROPERTY_NOTIFY &&
               reinterpret_cast<const xcb_property_notify_event_t &>(event).atom == property;
    }

    std::shared_ptr<XcbConnection> connection;
    std::shared_ptr<XcbConnection> other;
};

void XcbConnectionTest::init()
{
    connection = XcbConnection::open();
    other = XcbConnection::open();
    QVERIFY(connection);
    QVERIFY(other);
    connection->addRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    // The server has handled the selection before another client changes anything.
    connection->atom("_PARKLET_ROUND_TRIP");
}

void XcbConnectionTest::cleanup()
{
    connection.reset();
    other.reset();
}

void XcbConnectionTest::an_event_reaches_every_listener()
{
    const xcb_atom_t mark = other->atom("_PARKLET_MARK");
    int first = 0;
    int second = 0;
    const auto one = connection->listen([&](const auto &event) { first += isChange(event, mark); });
    const auto two = connection->listen([&](const auto &event) { second += isChange(event, mark); });
    change(mark);
    QTRY_COMPARE_WITH_TIMEOUT(first, 1, kPatience);
    QCOMPARE(second, 1);
}

void XcbConnectionTest::an_event_read_while_waiting_for_a_reply_is_delivered()
{
    const xcb_atom_t mark = other->atom("_PARKLET_MARK");
    int changes = 0;
    const auto listening = connection->listen([&](const auto &event) { changes += isChange(event, mark); });
    QTimer::singleShot(0, this, [&] {
        change(mark);
        // The server sends the event before this reply, so the socket is empty afterwards.
        connection->values(connection->root(), mark, XCB_ATOM_CARDINAL);
    });
    QTRY_COMPARE_WITH_TIMEOUT(changes, 1, kPatience);
}

void XcbConnectionTest::a_request_is_sent_without_an_explicit_flush()
{
    const xcb_atom_t mark = connection->atom("_PARKLET_UNFLUSHED");
    int changes = 0;
    const auto listening = connection->listen([&](const auto &event) { changes += isChange(event, mark); });
    QTimer::singleShot(0, this, [&] {
        const quint32 value = 1;
        xcb_change_property(connection->get(), XCB_PROP_MODE_REPLACE, connection->root(), mark, XCB_ATOM_CARDINAL, 32,
                            1, &value);
    });
    QTRY_COMPARE_WITH_TIMEOUT(changes, 1, kPatience);
}

void XcbConnectionTest::a_listener_may_go_within_a_handler()
{
    const xcb_atom_t mark = other->atom("_PARKLET_MARK");
    int first = 0;
    int second = 0;
    XcbConnection::Subscription two;
    const auto one = connection->listen([&](const auto &event) {
        first += isChange(event, mark);
        two.reset();
    });
    two = connection->listen([&](const auto &) { ++second; });
    change(mark);
    QTRY_COMPARE_WITH_TIMEOUT(first, 1, kPatience);
    QCOMPARE(second, 0);
}

void XcbConnectionTest::errors_do_no_harm()
{
    constexpr xcb_window_t kNoWindow = 1;
    const xcb_atom_t mark = other->atom("_PARKLET_MARK");
    int changes = 0;
    const auto listening = connection->listen([&](const auto &event) { changes += isChange(event, mark); });
    xcb_map_window(connection->get(), kNoWindow);
    QVERIFY(!connection->succeeded(xcb_map_window_checked(connection->get(), kNoWindow)));
    QVERIFY(connection->values(kNoWindow, XCB_ATOM_WM_NAME, XCB_ATOM_ATOM).empty());
    change(mark);
    QTRY_COMPARE_WITH_TIMEOUT(changes, 1, kPatience);
    QVERIFY(connection->isAlive());
}

void XcbConnectionTest::a_property_of_another_type_reads_as_empty()
{
    const xcb_atom_t mark = other->atom("_PARKLET_TYPED");
    change(mark);
    QCOMPARE(connection->values(connection->root(), mark, XCB_ATOM_CARDINAL), std::vector<quint32>{1});
    QVERIFY(connection->values(connection->root(), mark, XCB_ATOM_ATOM).empty());
}

void XcbConnectionTest::windows_of_this_process_are_its_own()
{
    QWidget widget;
    QVERIFY(connection->isOwn(static_cast<xcb_window_t>(widget.winId())));
    QVERIFY(connection->isOwn(xcb_generate_id(connection->get())));
    QVERIFY(!connection->isOwn(xcb_generate_id(other->get())));
    QVERIFY(!connection->isOwn(connection->root()));
    QVERIFY(!connection->isOwn(XCB_NONE));
}

} // namespace

PARKLET_TEST(XcbConnectionTest)
#include "XcbConnectionTest.moc"
