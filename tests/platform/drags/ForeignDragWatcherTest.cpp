// SPDX-License-Identifier: MIT
#include "tests/platform/drags/ClientProcess.h"

#include "platform/linux/drags/ForeignDragWatcher.h"
#include "platform/linux/drags/XcbDragPasteboard.h"
#include "platform/linux/drags/XcbEventMonitors.h"
#include "tests/support/Hand.h"
#include "tests/support/TestProgram.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QTest>
#include <QWidget>

#include <xcb/xtest.h>

#include <csignal>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 10'000; // milliseconds
constexpr QPoint kOnSource(60, 60);
constexpr QPoint kOnSecondSource(360, 60);
constexpr QPoint kAway(500, 400);
const QStringList kPlace = {u"--x"_s, u"10"_s, u"--y"_s, u"10"_s};
const QStringList kSecondPlace = {u"--x"_s, u"310"_s, u"--y"_s, u"10"_s};

// The files of each reported drag, and an empty list for each end.
using Reports = QList<QList<QUrl>>;
const QList<QUrl> kEnd;

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QList<QUrl> urls(int count)
{
    QList<QUrl> list;
    for (int i = 0; i < count; ++i)
        list.append(QUrl(u"file:///tmp/dragged%20%1"_s.arg(i)));
    return list;
}

class ForeignDragWatcherTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        hand.moveTo(kAway);
        QTRY_VERIFY_WITH_TIMEOUT(hand.isIdle(), kPatience);
        connection = XcbConnection::open();
        watcher = std::make_shared<ForeignDragWatcher>(connection);
        monitors = std::make_unique<XcbEventMonitors>(watcher);
        pasteboard = std::make_unique<XcbDragPasteboard>(watcher);
        happened.clear();
        // Does what the drag monitor does with these events.
        QVERIFY(monitors->add(LeftMouseDragged, [this] {
            ++dragged;
            if (pasteboard->changeCount() != lastCount && !pasteboard->fileURLs().isEmpty()) {
                lastCount = pasteboard->changeCount();
                happened.append(pasteboard->fileURLs());
            }
        }));
        QVERIFY(monitors->add(LeftMouseUp, [this] {
            ++up;
            happened.append(kEnd);
        }));
        lastCount = -1;
        dragged = up = 0;
    }

    void cleanup()
    {
        source.reset();
        monitors.reset();
        pasteboard.reset();
        watcher.reset();
        connection.reset();
    }

    void a_drag_of_files_is_told_of_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("count");
        QTest::newRow("at once") << words("") << 1;
        QTest::newRow("late") << words("--delay 200 --urls 3") << 3;
        QTest::newRow("after a long silence") << words("--delay 900 --urls 2") << 2;
        QTest::newRow("in pieces") << words("--answer pieces --urls 500") << 500;
        QTest::newRow("after refusals") << words("--after 3") << 1;
        QTest::newRow("only to its latest event") << words("--answer strict --after 1") << 1;
        QTest::newRow("as a link") << words("--link file:///tmp/dragged%200") << 1;
        QTest::newRow("as a link, late") << words("--link file:///tmp/dragged%200 --delay 200") << 1;
        QTest::newRow("as a link, after a long silence") << words("--link file:///tmp/dragged%200 --delay 700") << 1;
        QTest::newRow("more than are read") << words("--urls 10000") << 2'000;
        QTest::newRow("keeping the selection") << words("--keeps 1") << 1;
    }

    void a_drag_of_files_is_told_of()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, count);
        startSource(arguments);
        hand.moveTo(kOnSource).press().moveTo(kOnSource + QPoint(8, 8));
        // Some sources answer only after further events, however long the machine takes for each.
        hand.moveAboutUntil([this] { return !happened.isEmpty(); });
        QTRY_COMPARE_WITH_TIMEOUT(happened, Reports{urls(count)}, kPatience);
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(happened, (Reports{urls(count), kEnd}), kPatience);
        QVERIFY(pasteboard->fileURLs().isEmpty());
    }

    void the_answer_is_told_of_though_the_pointer_rests()
    {
        startSource(words("--delay 300"));
        hand.moveTo(kOnSource).press().moveTo(kOnSource + QPoint(5, 5));
        QTRY_COMPARE_WITH_TIMEOUT(happened, Reports{urls(1)}, kPatience);
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
    }

    void a_drag_without_files_is_followed_and_carries_nothing_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("another address") << words("--list http://example.org/");
        QTest::newRow("a file and another address") << words("--list file:///tmp/a\r\nhttp://example.org/");
        QTest::newRow("a wrong type") << words("--answer wrong");
        QTest::newRow("refused") << words("--answer refuse");
        QTest::newRow("a link to elsewhere") << words("--link http://example.org/");
        QTest::newRow("mute") << words("--answer never");
        QTest::newRow("stuck in pieces") << words("--answer stall --urls 500");
    }

    void a_drag_without_files_is_followed_and_carries_nothing()
    {
        QFETCH(QStringList, arguments);
        startSource(arguments);
        const qint64 before = pasteboard->changeCount();
        hand.moveTo(kOnSource).press().moveAboutUntil([this, before] { return pasteboard->changeCount() != before; });
        QTRY_COMPARE_WITH_TIMEOUT(pasteboard->changeCount(), before + 1, kPatience);
        QVERIFY(dragged > 0);
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
        QCOMPARE(happened, Reports{kEnd});
        nextDragWorks();
    }

    void a_source_that_dies_ends_its_drag_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("when it is asked") << words("--answer die");
        QTest::newRow("later") << words("");
    }

    void a_source_that_dies_ends_its_drag()
    {
        QFETCH(QStringList, arguments);
        startSource(arguments);
        hand.moveTo(kOnSource).press().moveTo(kOnSource + QPoint(20, 20)).waitUntil([this] {
            return source->said("asked");
        });
        hand.then([this] { source->kill(); });
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
        hand.release();
        nextDragWorks();
    }

    void a_stopped_source_does_not_stop_us()
    {
        startSource(words("--answer never"));
        hand.moveTo(kOnSource).press().moveTo(kOnSource + QPoint(20, 20)).waitUntil([this] {
            return source->said("asked");
        });
        hand.then([this] { ::kill(static_cast<pid_t>(source->pid()), SIGSTOP); }).moveTo(kAway).release();
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
        nextDragWorks();
    }

    void a_release_during_the_read_leaves_nothing_behind()
    {
        startSource(words("--delay 400"));
        hand.moveTo(kOnSource).press().moveTo(kOnSource + QPoint(20, 20)).waitUntil([this] {
            return source->said("asked");
        });
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
        QTRY_VERIFY_WITH_TIMEOUT(source->said("answered") && source->said("released"), kPatience);
        QCOMPARE(happened, Reports{kEnd});
        nextDragWorks();
    }

    void two_drags_in_quick_succession_are_not_mixed_up()
    {
        startSource(words("--delay 300"));
        ClientProcess second(u"DragSource"_s, kSecondPlace + words("--urls 2"));
        QTRY_VERIFY_WITH_TIMEOUT(second.said("ready"), kPatience);
        hand.moveTo(kOnSource).press().moveTo(kOnSource + QPoint(20, 20)).waitUntil([this] {
            return source->said("asked");
        });
        hand.then([this] {
            const QPoint way = kOnSecondSource - hand.position();
            useMouse({{XCB_BUTTON_RELEASE, 1},
                      {XCB_MOTION_NOTIFY, 1, way.x(), way.y()},
                      {XCB_BUTTON_PRESS, 1},
                      {XCB_MOTION_NOTIFY, 1, 4, 4}});
        });
        QTRY_COMPARE_WITH_TIMEOUT(happened, (Reports{kEnd, urls(2)}), kPatience);
        QTRY_VERIFY_WITH_TIMEOUT(source->said("answered"), kPatience);
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(happened, (Reports{kEnd, urls(2), kEnd}), kPatience);
    }

    void drags_that_are_over_before_they_are_heard_of_leave_nothing_behind()
    {
        startSource({});
        ClientProcess second(u"DragSource"_s, kSecondPlace + words("--urls 2 --keeps 1"));
        QTRY_VERIFY_WITH_TIMEOUT(second.said("ready"), kPatience);
        hand.then([&] {
            quickDrag(kOnSource, *source);
            quickDrag(kOnSecondSource, second);
        });
        QTRY_VERIFY_WITH_TIMEOUT(source->said("released") && second.said("released"), kPatience);
        nextDragWorks();
        QCOMPARE(up, 1);
        QCOMPARE(pasteboard->changeCount(), 1);
    }

    void answers_that_come_all_at_once_are_told_apart()
    {
        // The button is pressed on this window without a motion. The drags are announced by the test.
        startSource({});
        hand.moveTo(kOnSource).press();
        QTRY_VERIFY_WITH_TIMEOUT(hand.isIdle(), kPatience);
        const auto other = XcbConnection::open(nullptr);
        const auto window = xcb_generate_id(other->get());
        xcb_create_window(other->get(), 0, window, other->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        std::vector<xcb_selection_request_event_t> requests;
        const auto listening = other->listen([&requests](const xcb_generic_event_t &event) {
            if ((event.response_type & 0x7f) == XCB_SELECTION_REQUEST)
                requests.push_back(reinterpret_cast<const xcb_selection_request_event_t &>(event));
        });
        // There are more drags than properties for answers.
        constexpr int kDrags = 9;
        const auto announce = [&](xcb_window_t owner) {
            xcb_set_selection_owner(other->get(), owner, other->atom("XdndSelection"), XCB_CURRENT_TIME);
            other->flush();
        };
        for (int i = 1; i <= kDrags; ++i) {
            announce(window);
            QTRY_COMPARE_WITH_TIMEOUT(int(requests.size()), i, kPatience);
            if (i < kDrags) {
                announce(XCB_NONE);
                QTRY_COMPARE_WITH_TIMEOUT(up, i, kPatience);
            }
        }
        happened.clear();
        for (const auto &request : requests) {
            const bool isLast = &request == &requests.back();
            const QByteArray list = (isLast ? urls(2) : urls(1)).last().toEncoded();
            xcb_change_property(other->get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                                request.target, 8, quint32(list.size()), list.constData());
            xcb_selection_notify_event_t notify = {};
            notify.response_type = XCB_SELECTION_NOTIFY;
            notify.time = request.time;
            notify.requestor = request.requestor;
            notify.selection = request.selection;
            notify.target = request.target;
            notify.property = request.property;
            xcb_send_event(other->get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                           reinterpret_cast<const char *>(&notify));
        }
        other->flush();
        QTRY_COMPARE_WITH_TIMEOUT(happened, Reports{{urls(2).last()}}, kPatience);
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(up, kDrags, kPatience);
        nextDragWorks();
    }

    void a_drag_out_of_our_own_window_is_not_told_of()
    {
        class Own : public QWidget {
        public:
            bool done = false;

        protected:
            void mousePressEvent(QMouseEvent *) override {}
            void mouseMoveEvent(QMouseEvent *) override
            {
                auto data = std::make_unique<QMimeData>();
                data->setUrls(urls(1));
                auto *drag = new QDrag(qApp);
                drag->setMimeData(data.release());
                drag->exec(Qt::CopyAction);
                done = true;
            }
        };
        Own own;
        own.setWindowFlags(Qt::BypassWindowManagerHint);
        own.setGeometry(600, 10, 100, 100);
        own.show();
        QVERIFY(QTest::qWaitForWindowExposed(&own));
        hand.moveTo(QPoint(650, 60)).press().moveTo(kAway).release();
        QTRY_VERIFY_WITH_TIMEOUT(own.done && hand.isIdle(), kPatience);
        QCOMPARE(dragged, 0);
        QCOMPARE(up, 0);
        QCOMPARE(pasteboard->changeCount(), 0);
        nextDragWorks();
    }

    void a_selection_without_a_button_is_no_drag()
    {
        const auto other = XcbConnection::open(nullptr);
        const auto window = xcb_generate_id(other->get());
        xcb_create_window(other->get(), 0, window, other->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(other->get(), window, other->atom("XdndSelection"), XCB_CURRENT_TIME);
        // After a round trip on each connection, the watcher has received the change.
        other->values(window, XCB_ATOM_WM_NAME, XCB_ATOM_CARDINAL);
        nextDragWorks();
        QCOMPARE(pasteboard->changeCount(), 1);
        QCOMPARE(up, 1);
    }

    void the_program_sleeps_while_the_mouse_merely_moves()
    {
        int awakenings = 0;
        std::atomic<bool> done = false;
        std::thread user([&done] {
            for (int i = 0; i < 200; ++i)
                useMouse({{XCB_MOTION_NOTIFY, 1, i % 2 == 0 ? 3 : -3}});
            done = true;
            QMetaObject::invokeMethod(
                qApp, [] {}, Qt::QueuedConnection);
        });
        while (!done) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            ++awakenings;
        }
        user.join();
        // The first wake-up handles what came before, and the last one belongs to the thread itself.
        QVERIFY2(awakenings <= 2, qPrintable(QString::number(awakenings)));
    }

    void a_click_elsewhere_is_not_heard()
    {
        startSource({});
        hand.moveTo(kOnSource);
        QTRY_VERIFY_WITH_TIMEOUT(hand.isIdle(), kPatience);
        int heard = 0;
        const auto listening = connection->listen([&heard](const auto &) { ++heard; });
        useMouse({{XCB_BUTTON_PRESS, 1, 0}, {XCB_BUTTON_RELEASE, 1, 0}});
        // Everything that the server has sent before this reply has arrived.
        connection->values(connection->root(), XCB_ATOM_WM_NAME, XCB_ATOM_CARDINAL);
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        QCOMPARE(heard, 0);
    }

    void a_removed_monitor_is_not_called_again()
    {
        int calls = 0;
        EventMonitors::Token second = 0;
        const auto first = monitors->add(LeftMouseDragged, [&] { monitors->remove(second); });
        second = monitors->add(LeftMouseDragged, [&] { ++calls; }).value();
        EventMonitors::Token self = 0;
        int own = 0;
        self = monitors
                   ->add(LeftMouseDragged,
                         [&] {
                             ++own;
                             monitors->remove(self);
                         })
                   .value();
        nextDragWorks();
        QVERIFY(first);
        QCOMPARE(calls, 0);
        QCOMPARE(own, 1);
        monitors->remove(12345);
    }

    void reads_of_one_drag_share_one_list()
    {
        startSource(words("--urls 2000"));
        hand.moveTo(kOnSource).press().moveTo(kOnSource + QPoint(20, 20));
        QTRY_COMPARE_WITH_TIMEOUT(pasteboard->fileURLs().size(), 2'000, kPatience);
        // The shelf reads at every motion of the pointer, so a read neither asks the source nor copies the list.
        const QList<QUrl> first = pasteboard->fileURLs();
        const QList<QUrl> second = pasteboard->fileURLs();
        QCOMPARE(second.constData(), first.constData());
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
    }

    void the_end_is_told_once_an_expected_drop_has_arrived()
    {
        bool isExpected = true;
        monitors->onExpectsDrop = [&isExpected] { return isExpected; };
        startSource({});
        hand.moveTo(kOnSource).press().moveTo(kOnSource + QPoint(8, 8));
        QTRY_COMPARE_WITH_TIMEOUT(happened, Reports{urls(1)}, kPatience);
        hand.release();
        QTRY_VERIFY_WITH_TIMEOUT(!watcher->drag().isInProgress(), kPatience);
        monitors->dropArrived();
        QCOMPARE(up, 0);
        isExpected = false;
        monitors->dropArrived();
        QCOMPARE(up, 1);
        monitors->dropArrived();
        QCOMPARE(up, 1);
    }

    void the_end_is_told_though_an_expected_drop_never_arrives()
    {
        monitors->onExpectsDrop = [] { return true; };
        monitors->dropPatience = std::chrono::milliseconds(50);
        startSource({});
        hand.moveTo(kOnSource).press().moveTo(kOnSource + QPoint(8, 8));
        QTRY_COMPARE_WITH_TIMEOUT(happened, Reports{urls(1)}, kPatience);
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(up, 1, kPatience);
    }

    void a_new_drag_comes_after_the_end_of_one_whose_drop_is_expected()
    {
        monitors->onExpectsDrop = [] { return true; };
        startSource({});
        hand.moveTo(kOnSource).press().moveTo(kOnSource + QPoint(8, 8));
        QTRY_COMPARE_WITH_TIMEOUT(happened, Reports{urls(1)}, kPatience);
        hand.release();
        QTRY_VERIFY_WITH_TIMEOUT(!watcher->drag().isInProgress(), kPatience);
        QCOMPARE(up, 0);
        ClientProcess next(QStringLiteral("DragSource"), kSecondPlace + words("--urls 7"));
        QTRY_VERIFY_WITH_TIMEOUT(next.said("ready") && hand.isIdle(), kPatience);
        hand.moveTo(kOnSecondSource).press().moveTo(kOnSecondSource + QPoint(30, 30));
        QTRY_COMPARE_WITH_TIMEOUT(happened, (Reports{urls(1), kEnd, urls(7)}), kPatience);
        hand.release();
    }

    void without_a_server_there_are_no_monitors()
    {
        XcbEventMonitors none(std::make_shared<ForeignDragWatcher>(nullptr));
        QVERIFY(!none.add(LeftMouseUp, [] {}));
    }

private:
    void startSource(const QStringList &arguments)
    {
        source = std::make_unique<ClientProcess>(u"DragSource"_s, kPlace + arguments);
        QTRY_VERIFY_WITH_TIMEOUT(source->said("ready"), kPatience);
    }

    // A drag from a correct source works, whatever happened before it.
    void nextDragWorks()
    {
        ClientProcess next(u"DragSource"_s, kSecondPlace + words("--urls 7"));
        QTRY_VERIFY_WITH_TIMEOUT(next.said("ready") && hand.isIdle(), kPatience);
        const int before = up;
        happened.clear();
        hand.moveTo(kOnSecondSource).press().moveTo(kOnSecondSource + QPoint(30, 30));
        QTRY_COMPARE_WITH_TIMEOUT(happened, Reports{urls(7)}, kPatience);
        hand.release();
        QTRY_COMPARE_WITH_TIMEOUT(happened, (Reports{urls(7), kEnd}), kPatience);
        QCOMPARE(up, before + 1);
    }

    struct Fake {
        quint8 type;
        quint8 detail;
        int dx = 0;
        int dy = 0;
    };

    // Does what the hand does, but at once and on any thread. The server has handled each step when this returns.
    static void useMouse(std::initializer_list<Fake> steps)
    {
        xcb_connection_t *display = xcb_connect(nullptr, nullptr);
        for (const Fake &step : steps) {
            xcb_test_fake_input(display, step.type, step.detail, XCB_CURRENT_TIME, XCB_NONE,
                                static_cast<qint16>(step.dx), static_cast<qint16>(step.dy), 0);
            std::free(xcb_get_input_focus_reply(display, xcb_get_input_focus(display), nullptr));
        }
        xcb_disconnect(display);
    }

    void quickDrag(const QPoint &start, ClientProcess &from)
    {
        const QPoint way = start - hand.position();
        const auto before = from.lines.count(u"dragging"_s);
        useMouse({{XCB_MOTION_NOTIFY, 1, way.x(), way.y()}, {XCB_BUTTON_PRESS, 1}, {XCB_MOTION_NOTIFY, 1, 4, 4}});
        // Only the source continues. This process handles no events.
        while (from.lines.count(u"dragging"_s) == before && from.readLines())
            ;
        useMouse({{XCB_BUTTON_RELEASE, 1}});
    }

    Hand hand;
    std::shared_ptr<XcbConnection> connection;
    std::shared_ptr<ForeignDragWatcher> watcher;
    std::unique_ptr<XcbEventMonitors> monitors;
    std::unique_ptr<XcbDragPasteboard> pasteboard;
    std::unique_ptr<ClientProcess> source;
    qint64 lastCount = -1;
    int dragged = 0;
    int up = 0;
    Reports happened;
};

} // namespace

PARKLET_TEST(ForeignDragWatcherTest)
#include "ForeignDragWatcherTest.moc"
