// SPDX-License-Identifier: MIT
#include "platform/linux/drags/ForeignDragWatcher.h"
#include "platform/linux/drags/XcbDragPasteboard.h"
#include "platform/linux/drags/XcbEventMonitors.h"
#include "tests/support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 10'000; // milliseconds
constexpr int kSeveralQuestions = 400;
const QByteArray kFiles = "file:///tmp/a\r\nfile:///tmp/b\r\n";
const QList<QUrl> kURLs = {QUrl(u"file:///tmp/a"_s), QUrl(u"file:///tmp/b"_s)};

// Another client of the server, which can play the role of a Wayland compositor.
class Client {
public:
    Client()
        : xcb(XcbConnection::open())
        , window(xcb_generate_id(xcb->get()))
    {
        xcb_create_window(xcb->get(), 0, window, xcb->root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        subscription = xcb->listen([this](const xcb_generic_event_t &event) {
            if ((event.response_type & 0x7f) == XCB_SELECTION_REQUEST)
                answer(reinterpret_cast<const xcb_selection_request_event_t &>(event));
        });
    }

    void manageWindows()
    {
        xcb_change_property(xcb->get(), XCB_PROP_MODE_REPLACE, xcb->root(), xcb->atom("_NET_SUPPORTING_WM_CHECK"),
                            XCB_ATOM_WINDOW, 32, 1, &window);
        xcb->flush();
    }

    void beginDrag()
    {
        isDragging = true;
        xcb_set_selection_owner(xcb->get(), window, xcb->atom("XdndSelection"), XCB_CURRENT_TIME);
        xcb->flush();
    }

    // Ends the drag as a compositor does, which keeps the selection.
    void endDrag() { isDragging = false; }

    QByteArray list = kFiles;
    bool tells = true; // whether it answers what the drag carries
    int goesOnAsked = 0;
    int listAsked = 0;

private:
    void answer(const xcb_selection_request_event_t &request)
    {
        const xcb_atom_t uriList = xcb->atom("text/uri-list");
        const bool asksOffers = request.target == xcb->atom("TARGETS");
        ++(asksOffers ? goesOnAsked : listAsked);
        if (!asksOffers && !tells)
            return;
        const bool refuses = !isDragging || (!asksOffers && (list.isEmpty() || request.target != uriList));
        if (!refuses && asksOffers)
            xcb_change_property(xcb->get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, XCB_ATOM_ATOM,
                                32, list.isEmpty() ? 0 : 1, &uriList);
        else if (!refuses)
            xcb_change_property(xcb->get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, uriList, 8,
                                static_cast<quint32>(list.size()), list.constData());
        xcb_selection_notify_event_t notify = {};
        notify.response_type = XCB_SELECTION_NOTIFY;
        notify.time = request.time;
        notify.requestor = request.requestor;
        notify.selection = request.selection;
        notify.target = request.target;
        notify.property = refuses ? xcb_atom_t{XCB_ATOM_NONE} : request.property;
        xcb_send_event(xcb->get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char *>(&notify));
        xcb->flush();
    }

    std::shared_ptr<XcbConnection> xcb;
    xcb_window_t window;
    XcbConnection::Subscription subscription;
    bool isDragging = false;
};

// The X server of a compositor, on which no button is down.
class BridgedDragTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        compositor = std::make_unique<Client>();
        compositor->manageWindows();
        watch(true);
    }

    void cleanup()
    {
        monitors.reset();
        pasteboard.reset();
        watcher.reset();
        compositor.reset();
    }

    void a_drag_is_told_of_without_a_button_and_its_end_too()
    {
        compositor->beginDrag();
        QTRY_COMPARE_WITH_TIMEOUT(pasteboard->fileURLs(), kURLs, kPatience);
        QCOMPARE(dragged, 1);
        QVERIFY(watcher->isBridged());
        // The drag continues as long as the compositor confirms it, and its source is not asked for the files again.
        QTRY_VERIFY_WITH_TIMEOUT(compositor->goesOnAsked >= 3, kPatience);
        QCOMPARE(up, 0);
        QCOMPARE(compositor->listAsked, 1);
        compositor->endDrag();
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
        QVERIFY(pasteboard->fileURLs().isEmpty());
        QVERIFY(!watcher->isBridged());
    }

    void nothing_is_asked_between_drags()
    {
        QTest::qWait(kSeveralQuestions);
        QCOMPARE(compositor->goesOnAsked, 0);
        compositor->beginDrag();
        QTRY_VERIFY_WITH_TIMEOUT(compositor->goesOnAsked >= 1, kPatience);
        compositor->endDrag();
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
        const int asked = compositor->goesOnAsked;
        QTest::qWait(kSeveralQuestions);
        QCOMPARE(compositor->goesOnAsked, asked);
    }

    void a_locked_up_source_ends_with_its_drag()
    {
        compositor->tells = false;
        compositor->beginDrag();
        QTRY_VERIFY_WITH_TIMEOUT(compositor->goesOnAsked >= 2, kPatience);
        QVERIFY(!watcher->drag().isWithoutFiles());
        compositor->endDrag();
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
        compositor->tells = true;
        compositor->beginDrag();
        QTRY_COMPARE_WITH_TIMEOUT(pasteboard->fileURLs(), kURLs, kPatience);
    }

    void a_drag_of_text_carries_nothing()
    {
        compositor->list.clear();
        compositor->beginDrag();
        QTRY_VERIFY_WITH_TIMEOUT(watcher->drag().isWithoutFiles(), kPatience);
        compositor->endDrag();
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
    }

    void a_second_drag_ends_the_first()
    {
        compositor->beginDrag();
        QTRY_COMPARE_WITH_TIMEOUT(pasteboard->fileURLs(), kURLs, kPatience);
        compositor->list = "file:///tmp/a\r\n";
        compositor->beginDrag();
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
        QTRY_COMPARE_WITH_TIMEOUT(pasteboard->fileURLs(), kURLs.mid(0, 1), kPatience);
        compositor.reset();
        QTRY_COMPARE_WITH_TIMEOUT(up, 2, kPatience);
    }

    void the_pointer_is_where_a_window_of_ours_was_told()
    {
        watcher->bridgedPointerMoved(QPointF(1, 2));
        QVERIFY(!watcher->bridgedPointer());
        compositor->beginDrag();
        QTRY_COMPARE_WITH_TIMEOUT(dragged, 1, kPatience);
        QVERIFY(!watcher->bridgedPointer());
        watcher->bridgedPointerMoved(QPointF(1, 2));
        QCOMPARE(dragged, 2);
        QCOMPARE(watcher->bridgedPointer().value_or(QPointF()), QPointF(1, 2));
        watcher->bridgedPointerMoved({});
        QCOMPARE(dragged, 2);
        QVERIFY(!watcher->bridgedPointer());
        watcher->bridgedPointerMoved(QPointF(1, 2));
        compositor->endDrag();
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
        QVERIFY(!watcher->bridgedPointer());
    }

    void elsewhere_an_owner_needs_a_pressed_button_data()
    {
        QTest::addColumn<bool>("onXwayland");
        QTest::addColumn<bool>("managesWindows");
        QTest::newRow("a client that is not the compositor") << true << false;
        QTest::newRow("a window manager of an X session") << false << true;
    }

    void elsewhere_an_owner_needs_a_pressed_button()
    {
        QFETCH(bool, onXwayland);
        QFETCH(bool, managesWindows);
        watch(onXwayland);
        Client other;
        if (managesWindows)
            other.manageWindows();
        other.beginDrag();
        QTest::qWait(kSeveralQuestions);
        QCOMPARE(other.listAsked, 0);
        QCOMPARE(other.goesOnAsked, 0);
        QCOMPARE(up, 0);
    }

private:
    void watch(bool onXwayland)
    {
        dragged = up = 0;
        const auto connection = XcbConnection::open();
        DragBridge bridge(connection);
        bridge.assume(onXwayland);
        monitors.reset();
        watcher = std::make_shared<ForeignDragWatcher>(connection, bridge);
        monitors = std::make_unique<XcbEventMonitors>(watcher);
        pasteboard = std::make_unique<XcbDragPasteboard>(watcher);
        QVERIFY(monitors->add(LeftMouseDragged, [this] { ++dragged; }));
        QVERIFY(monitors->add(LeftMouseUp, [this] { ++up; }));
    }

    std::unique_ptr<Client> compositor;
    std::shared_ptr<ForeignDragWatcher> watcher;
    std::unique_ptr<XcbEventMonitors> monitors;
    std::unique_ptr<XcbDragPasteboard> pasteboard;
    int dragged = 0;
    int up = 0;
};

} // namespace

PARKLET_TEST(BridgedDragTest)

#include "BridgedDragTest.moc"
