// SPDX-License-Identifier: MIT
#include "platform/linux/drags/XcbDropPasteboard.h"

#include "platform/FileURLs.h"
#include "tests/support/TestProgram.h"

#include <QDropEvent>
#include <QTest>
#include <QWidget>

using namespace std::chrono_literals;

class XcbDropPasteboardTest : public QObject {
    Q_OBJECT

private slots:
    void a_drop_is_delivered_when_its_source_has_answered();
    void a_drop_in_pieces_is_delivered_after_the_last();
    void a_drop_without_end_is_delivered_when_there_is_enough();
    void a_link_is_read_where_there_is_no_list();
    void a_source_that_refuses_brings_no_files();
    void a_source_that_never_answers_is_given_up();
    void a_source_that_stalls_in_pieces_is_given_up();
    void what_comes_too_late_belongs_to_nothing();
    void a_new_drag_does_not_wait_for_an_old_drop();
    void a_drop_of_text_goes_its_own_way();
};

namespace {

constexpr int kPatience = 5'000; // milliseconds
constexpr auto kNever = 60s;
constexpr auto kSoon = 50ms;
constexpr quint32 kVersion = 5;
const QByteArray kList = "file:///tmp/a%20b\r\nfile:///tmp/c\r\n";
const QList<QUrl> kFiles = {QUrl(QStringLiteral("file:///tmp/a%20b")), QUrl(QStringLiteral("file:///tmp/c"))};

// Where things are dropped.
class Target : public QWidget {
public:
    Target()
    {
        setAcceptDrops(true);
        setGeometry(0, 0, 100, 100);
        show();
    }

    std::function<QList<QUrl>(const QMimeData *)> read;
    QList<QList<QUrl>> drops;
    int leaves = 0;
    int enters = 0;

protected:
    void dragEnterEvent(QDragEnterEvent *event) override
    {
        ++enters;
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }
    void dragLeaveEvent(QDragLeaveEvent *) override { ++leaves; }
    void dropEvent(QDropEvent *event) override
    {
        drops.append(read(event->mimeData()));
        event->setDropAction(Qt::CopyAction);
        event->setAccepted(!drops.last().isEmpty());
    }
};

// Another program that drags. It answers when it is told to.
class Source {
public:
    explicit Source(const QByteArray &offered = "text/uri-list")
        : xcb(XcbConnection::open())
        , type(xcb->atom(offered))
        , window(xcb_generate_id(xcb->get()))
    {
        xcb_create_window(xcb->get(), XCB_COPY_FROM_PARENT, window, xcb->root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(xcb->get(), window, xcb->atom("XdndSelection"), XCB_CURRENT_TIME);
        xcb->flush();
        subscription = xcb->listen([this](const xcb_generic_event_t &event) { handle(event); });
    }

    ~Source() { xcb_destroy_window(xcb->get(), window); }
    Source(const Source &) = delete;
    Source &operator=(const Source &) = delete;

    void enter(const QWidget &target) { send(target, "XdndEnter", kVersion << 24, type, 0, 0); }
    void move(const QWidget &target)
    {
        send(target, "XdndPosition", 0, 50u << 16 | 50u, XCB_CURRENT_TIME, xcb->atom("XdndActionCopy"));
    }
    void drop(const QWidget &target) { send(target, "XdndDrop", 0, XCB_CURRENT_TIME, 0, 0); }
    void drag(const QWidget &target)
    {
        enter(target);
        move(target);
        drop(target);
    }

    void answer(const QByteArray &data)
    {
        put(type, data);
        notify(request.property);
    }
    void refuse() { notify(XCB_ATOM_NONE); }
    void beginPieces()
    {
        constexpr quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(xcb->get(), request.requestor, XCB_CW_EVENT_MASK, &events);
        constexpr quint32 size = 1;
        xcb_change_property(xcb->get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, xcb->atom("INCR"),
                            32, 1, &size);
        notify(request.property);
    }
    void put(xcb_atom_t as, const QByteArray &data)
    {
        xcb_change_property(xcb->get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, as, 8,
                            quint32(data.size()), data.constData());
        xcb->flush();
    }
    // Each piece goes when the one before has been read away.
    void putNext(const QByteArray &data)
    {
        const int before = taken;
        QTRY_VERIFY_WITH_TIMEOUT(deletions > before, kPatience);
        ++taken;
        put(type, data);
    }

    bool isAsked() const { return asks > 0; }

    std::shared_ptr<XcbConnection> xcb;
    xcb_atom_t type;
    xcb_window_t window;
    xcb_selection_request_event_t request{};
    int asks = 0;
    QList<bool> finished; // whether each drop was accepted
    int deletions = 0;
    int taken = 0;

private:
    void handle(const xcb_generic_event_t &event)
    {
        const int kind = event.response_type & 0x7f;
        if (kind == XCB_SELECTION_REQUEST) {
            request = reinterpret_cast<const xcb_selection_request_event_t &>(event);
            ++asks;
        } else if (kind == XCB_CLIENT_MESSAGE) {
            const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
            if (message.type == xcb->atom("XdndFinished"))
                finished.append((message.data.data32[1] & 1) != 0);
        } else if (kind == XCB_PROPERTY_NOTIFY) {
            const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
            if (change.state == XCB_PROPERTY_DELETE && change.atom == request.property)
                ++deletions;
        }
    }

    void notify(xcb_atom_t property)
    {
        xcb_selection_notify_event_t event{};
        event.response_type = XCB_SELECTION_NOTIFY;
        event.time = request.time;
        event.requestor = request.requestor;
        event.selection = request.selection;
        event.target = request.target;
        event.property = property;
        xcb_send_event(xcb->get(), 0, request.requestor, 0, reinterpret_cast<const char *>(&event));
        xcb->flush();
    }

    void send(const QWidget &target, const char *name, quint32 a, quint32 b, quint32 c, quint32 d)
    {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = xcb_window_t(target.winId());
        message.type = xcb->atom(name);
        message.data.data32[0] = window;
        message.data.data32[1] = a;
        message.data.data32[2] = b;
        message.data.data32[3] = c;
        message.data.data32[4] = d;
        xcb_send_event(xcb->get(), 0, message.window, 0, reinterpret_cast<const char *>(&message));
        xcb->flush();
    }

    XcbConnection::Subscription subscription;
};

struct Fixture {
    explicit Fixture(std::chrono::milliseconds patience = kNever)
        : pasteboard(XcbConnection::open(), patience)
    {
        target.read = [this](const QMimeData *data) { return pasteboard.fileURLs(data); };
        isShown = QTest::qWaitForWindowExposed(&target);
    }

    XcbDropPasteboard pasteboard;
    Target target;
    bool isShown = false;
};

} // namespace

void XcbDropPasteboardTest::a_drop_is_delivered_when_its_source_has_answered()
{
    Fixture f;
    QVERIFY(f.isShown);
    Source source;
    for (int i = 1; i <= 2; ++i) {
        source.drag(f.target);
        QTRY_COMPARE_WITH_TIMEOUT(source.asks, i, kPatience);
        QCOMPARE(f.target.enters, i);
        QVERIFY(f.pasteboard.isReading());
        QCOMPARE(f.target.drops.size(), i - 1);
        source.answer(kList);
        QTRY_COMPARE_WITH_TIMEOUT(source.finished.size(), i, kPatience);
        QVERIFY(source.finished.last());
        QCOMPARE(f.target.drops.size(), i);
        QCOMPARE(f.target.drops.last(), kFiles);
        QVERIFY(!f.pasteboard.isReading());
    }
    QCOMPARE(f.target.leaves, 0);
}

void XcbDropPasteboardTest::a_drop_in_pieces_is_delivered_after_the_last()
{
    Fixture f;
    Source source;
    source.drag(f.target);
    QTRY_VERIFY_WITH_TIMEOUT(source.isAsked(), kPatience);
    source.beginPieces();
    source.putNext(kList.left(9));
    source.putNext(kList.mid(9));
    QVERIFY(f.target.drops.isEmpty());
    source.putNext({});
    QTRY_COMPARE_WITH_TIMEOUT(source.finished, QList<bool>{true}, kPatience);
    QCOMPARE(f.target.drops, QList<QList<QUrl>>{kFiles});
}

void XcbDropPasteboardTest::a_drop_without_end_is_delivered_when_there_is_enough()
{
    Fixture f;
    Source source;
    source.drag(f.target);
    QTRY_VERIFY_WITH_TIMEOUT(source.isAsked(), kPatience);
    source.beginPieces();
    const QByteArray piece = QByteArray("file:///tmp/a\r\n").repeated(20'000);
    for (int i = 0; i < 8; ++i)
        source.putNext(piece);
    QTRY_COMPARE_WITH_TIMEOUT(source.finished, QList<bool>{true}, kPatience);
    QCOMPARE(f.target.drops.first().size(), kMostAddresses);
}

void XcbDropPasteboardTest::a_link_is_read_where_there_is_no_list()
{
    Fixture f;
    Source source("text/x-moz-url");
    source.drag(f.target);
    QTRY_VERIFY_WITH_TIMEOUT(source.isAsked(), kPatience);
    const QString link = QStringLiteral("file:///tmp/c\nThe file");
    source.answer(QByteArray(reinterpret_cast<const char *>(link.utf16()), link.size() * 2));
    QTRY_COMPARE_WITH_TIMEOUT(source.finished, QList<bool>{true}, kPatience);
    QCOMPARE(f.target.drops, QList<QList<QUrl>>{{fileURL("/tmp/c")}});
}

void XcbDropPasteboardTest::a_source_that_refuses_brings_no_files()
{
    Fixture f;
    Source source;
    source.drag(f.target);
    QTRY_VERIFY_WITH_TIMEOUT(source.isAsked(), kPatience);
    source.refuse();
    QTRY_COMPARE_WITH_TIMEOUT(source.finished, QList<bool>{false}, kPatience);
    QCOMPARE(f.target.drops, QList<QList<QUrl>>{{}});
}

void XcbDropPasteboardTest::a_source_that_never_answers_is_given_up()
{
    Fixture f(kSoon);
    Source source;
    source.drag(f.target);
    QTRY_COMPARE_WITH_TIMEOUT(source.finished, QList<bool>{false}, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(f.target.leaves, 1, kPatience);
    QVERIFY(f.target.drops.isEmpty());
    QVERIFY(!f.pasteboard.isReading());
}

void XcbDropPasteboardTest::a_source_that_stalls_in_pieces_is_given_up()
{
    Fixture f(500ms);
    Source source;
    source.drag(f.target);
    QTRY_VERIFY_WITH_TIMEOUT(source.isAsked(), kPatience);
    source.beginPieces();
    source.putNext(kList);
    QTRY_COMPARE_WITH_TIMEOUT(source.finished, QList<bool>{false}, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(f.target.leaves, 1, kPatience);
    QVERIFY(f.target.drops.isEmpty());
}

void XcbDropPasteboardTest::what_comes_too_late_belongs_to_nothing()
{
    Fixture f(kSoon);
    {
        Source late;
        late.drag(f.target);
        QTRY_COMPARE_WITH_TIMEOUT(late.finished, QList<bool>{false}, kPatience);
        QVERIFY(late.isAsked());
        late.answer("file:///tmp/late\r\n");
        QTRY_VERIFY_WITH_TIMEOUT(f.target.leaves == 1, kPatience);
    }
    QVERIFY(f.target.drops.isEmpty());
}

void XcbDropPasteboardTest::a_new_drag_does_not_wait_for_an_old_drop()
{
    Fixture f;
    Source mute;
    mute.drag(f.target);
    QTRY_VERIFY_WITH_TIMEOUT(mute.isAsked(), kPatience);
    Source source;
    source.drag(f.target);
    QTRY_COMPARE_WITH_TIMEOUT(mute.finished, QList<bool>{false}, kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(source.isAsked(), kPatience);
    source.answer(kList);
    QTRY_COMPARE_WITH_TIMEOUT(source.finished, QList<bool>{true}, kPatience);
    QCOMPARE(f.target.drops, QList<QList<QUrl>>{kFiles});
    QCOMPARE(f.target.enters, 2);
}

void XcbDropPasteboardTest::a_drop_of_text_goes_its_own_way()
{
    Fixture f;
    f.target.read = [](const QMimeData *) { return QList<QUrl>{}; };
    Source source("text/plain");
    source.drag(f.target);
    QTRY_COMPARE_WITH_TIMEOUT(source.finished, QList<bool>{false}, kPatience);
    QCOMPARE(source.asks, 0);
    QCOMPARE(f.target.drops.size(), 1);
}

PARKLET_TEST(XcbDropPasteboardTest)
#include "XcbDropPasteboardTest.moc"
