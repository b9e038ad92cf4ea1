// SPDX-License-Identifier: MIT
#include "drag/DragMonitor.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QTest>

using namespace Qt::StringLiterals;

class DragMonitorTest : public QObject {
    Q_OBJECT

private slots:
    void starting_follows_dragged_and_up_events();
    void before_the_start_nothing_is_followed();
    void a_second_start_installs_a_second_pair_of_monitors();
    void a_file_drag_is_reported_once_and_its_release_once();
    void the_delegate_receives_the_files_in_pasteboard_order();
    void the_delegate_is_called_only_after_the_event_has_been_handled();
    void a_start_and_an_end_that_both_wait_arrive_in_their_order();
    void the_first_drag_is_reported_though_the_change_count_is_0();
    void a_release_without_a_drag_reports_nothing();
    void a_second_release_reports_nothing();
    void a_new_drag_is_recognised_only_after_the_change_count_moved();
    void while_a_drag_is_reported_the_pasteboard_is_left_alone();
    void a_drag_of_text_reports_nothing_and_is_read_at_every_event();
    void a_drag_of_text_leaves_the_last_seen_change_count();
    void the_change_count_is_read_again_after_the_files();
    void calls_for_a_delegate_that_has_gone_do_nothing();
    void the_delegate_is_the_one_at_the_time_of_the_call();
    void without_a_delegate_nothing_happens();
    void a_monitor_that_has_gone_neither_handles_nor_calls();
    void a_refused_monitor_leaves_its_half_missing_data();
    void a_refused_monitor_leaves_its_half_missing();
};

namespace {

QUrl file(const char *path)
{
    return QUrl::fromLocalFile(QString::fromUtf8(path));
}

class RecordingDelegate : public DragMonitorDelegate {
public:
    void dragMonitorDidStartDrag(const QList<QUrl> &urls) override
    {
        calls.append(u"start"_s);
        carried.append(urls);
    }
    void dragMonitorDidEndDrag() override { calls.append(u"end"_s); }

    QStringList calls;
    QList<QList<QUrl>> carried;
};

struct Fixture {
    VirtualPlatform virtualPlatform;
    VirtualEventMonitors &monitors = virtualPlatform.eventMonitors;
    VirtualDragPasteboard &pasteboard = virtualPlatform.dragPasteboard;
    VirtualMainQueue &queue = virtualPlatform.mainQueue;
    std::unique_ptr<DragMonitor> monitor = std::make_unique<DragMonitor>(monitors, pasteboard, queue);
    RecordingDelegate delegate;

    Fixture() { monitor->delegate = &delegate; }

    // Does what a source does when it begins a drag.
    void write(const QList<QUrl> &urls)
    {
        ++pasteboard.count;
        pasteboard.urls = urls;
    }
    void drag()
    {
        monitors.send(LeftMouseDragged);
        queue.runPending();
    }
    void release()
    {
        monitors.send(LeftMouseUp);
        queue.runPending();
    }
};

const QStringList kStart = {u"start"_s};
const QStringList kStartAndEnd = {u"start"_s, u"end"_s};

} // namespace

void DragMonitorTest::starting_follows_dragged_and_up_events()
{
    Fixture f;
    f.monitor->start();
    QCOMPARE(f.virtualPlatform.log.calls, QStringList({u"addMonitor 64"_s, u"addMonitor 4"_s}));
}

void DragMonitorTest::before_the_start_nothing_is_followed()
{
    Fixture f;
    f.write({file("/a.txt")});
    f.drag();
    f.release();
    QCOMPARE(f.pasteboard.reads, 0);
    QVERIFY(f.delegate.calls.isEmpty());
}

void DragMonitorTest::a_second_start_installs_a_second_pair_of_monitors()
{
    Fixture f;
    f.monitor->start();
    f.monitor->start();
    QCOMPARE(f.monitors.count(LeftMouseDragged), 2);
    QCOMPARE(f.monitors.count(LeftMouseUp), 2);
}

void DragMonitorTest::a_file_drag_is_reported_once_and_its_release_once()
{
    Fixture f;
    f.monitor->start();
    f.write({file("/a.txt")});
    for (int i = 0; i < 20; ++i)
        f.drag();
    QCOMPARE(f.delegate.calls, kStart);
    f.release();
    QCOMPARE(f.delegate.calls, kStartAndEnd);
    f.drag();
    QCOMPARE(f.delegate.calls, kStartAndEnd);
}

void DragMonitorTest::the_delegate_receives_the_files_in_pasteboard_order()
{
    Fixture f;
    f.monitor->start();
    const QList<QUrl> urls = {file("/b.txt"), file("/a.txt"), file("/c d.txt")};
    f.write(urls);
    f.monitors.send(LeftMouseDragged);
    // The pasteboard may have changed by the time of the call.
    f.pasteboard.urls = {file("/other.txt")};
    f.queue.runPending();
    QCOMPARE(f.delegate.carried, QList<QList<QUrl>>{urls});
}

void DragMonitorTest::the_delegate_is_called_only_after_the_event_has_been_handled()
{
    Fixture f;
    f.monitor->start();
    f.write({file("/a.txt")});
    f.monitors.send(LeftMouseDragged);
    QVERIFY(f.delegate.calls.isEmpty());
    QCOMPARE(f.queue.pendingCount(), 1);
    f.queue.runPending();
    QCOMPARE(f.delegate.calls, kStart);
    f.monitors.send(LeftMouseUp);
    QCOMPARE(f.delegate.calls, kStart);
    QCOMPARE(f.queue.pendingCount(), 1);
    f.queue.runPending();
    QCOMPARE(f.delegate.calls, kStartAndEnd);
}

void DragMonitorTest::a_start_and_an_end_that_both_wait_arrive_in_their_order()
{
    Fixture f;
    f.monitor->start();
    f.write({file("/a.txt")});
    f.monitors.send(LeftMouseDragged);
    f.monitors.send(LeftMouseUp);
    QVERIFY(f.delegate.calls.isEmpty());
    f.queue.runPending();
    QCOMPARE(f.delegate.calls, kStartAndEnd);
}

void DragMonitorTest::the_first_drag_is_reported_though_the_change_count_is_0()
{
    Fixture f;
    f.monitor->start();
    f.pasteboard.count = 0;
    f.pasteboard.urls = {file("/a.txt")};
    f.drag();
    QCOMPARE(f.delegate.calls, kStart);

    // A count that no pasteboard has means "none yet".
    Fixture untouched;
    untouched.monitor->start();
    untouched.pasteboard.count = -1;
    untouched.pasteboard.urls = {file("/a.txt")};
    untouched.drag();
    QVERIFY(untouched.delegate.calls.isEmpty());
}

void DragMonitorTest::a_release_without_a_drag_reports_nothing()
{
    Fixture f;
    f.monitor->start();
    f.release();
    QVERIFY(f.delegate.calls.isEmpty());
    QCOMPARE(f.pasteboard.reads, 0);
}

void DragMonitorTest::a_second_release_reports_nothing()
{
    Fixture f;
    f.monitor->start();
    f.write({file("/a.txt")});
    f.drag();
    f.release();
    f.release();
    QCOMPARE(f.delegate.calls, kStartAndEnd);
}

void DragMonitorTest::a_new_drag_is_recognised_only_after_the_change_count_moved()
{
    Fixture f;
    f.monitor->start();
    f.write({file("/a.txt")});
    f.drag();
    f.release();
    f.pasteboard.urls = {file("/b.txt")};
    f.drag();
    f.release();
    QCOMPARE(f.delegate.calls, kStartAndEnd);
    // The files are not read while the count is unchanged.
    QCOMPARE(f.pasteboard.reads, 1);
    f.write({file("/b.txt")});
    f.drag();
    QCOMPARE(f.delegate.calls, kStartAndEnd + kStart);
    QCOMPARE(f.delegate.carried.last(), QList<QUrl>{file("/b.txt")});
}

void DragMonitorTest::while_a_drag_is_reported_the_pasteboard_is_left_alone()
{
    Fixture f;
    f.monitor->start();
    f.write({file("/a.txt")});
    f.drag();
    f.write({file("/b.txt")});
    f.drag();
    QCOMPARE(f.pasteboard.reads, 1);
    QCOMPARE(f.delegate.calls, kStart);
    f.release();
    f.drag();
    QCOMPARE(f.delegate.carried.last(), QList<QUrl>{file("/b.txt")});
}

void DragMonitorTest::a_drag_of_text_reports_nothing_and_is_read_at_every_event()
{
    Fixture f;
    f.monitor->start();
    f.write({});
    for (int i = 0; i < 5; ++i)
        f.drag();
    QCOMPARE(f.pasteboard.reads, 5);
    f.release();
    QVERIFY(f.delegate.calls.isEmpty());
}

void DragMonitorTest::a_drag_of_text_leaves_the_last_seen_change_count()
{
    Fixture f;
    f.monitor->start();
    f.pasteboard.count = 7;
    f.pasteboard.urls = {file("/a.txt")};
    f.drag();
    f.release();

    // The monitor has not stored the count of the text drag ...
    f.pasteboard.count = 8;
    f.pasteboard.urls.clear();
    f.drag();
    f.release();
    // ... and has not forgotten the one before it.
    f.pasteboard.count = 7;
    f.pasteboard.urls = {file("/a.txt")};
    f.drag();
    QCOMPARE(f.delegate.calls, kStartAndEnd);
    f.pasteboard.count = 8;
    f.drag();
    QCOMPARE(f.delegate.calls, kStartAndEnd + kStart);
}

void DragMonitorTest::the_change_count_is_read_again_after_the_files()
{
    class MovingPasteboard : public VirtualDragPasteboard {
    public:
        QList<QUrl> fileURLs() const override
        {
            whileRead();
            return urls;
        }

        std::function<void()> whileRead;
    };
    VirtualPlatform virtualPlatform;
    MovingPasteboard pasteboard;
    pasteboard.urls = {file("/a.txt")};
    pasteboard.count = 5;
    pasteboard.whileRead = [&pasteboard] { pasteboard.count = 6; };
    DragMonitor monitor(virtualPlatform.eventMonitors, pasteboard, virtualPlatform.mainQueue);
    RecordingDelegate delegate;
    monitor.delegate = &delegate;
    monitor.start();
    for (int i = 0; i < 2; ++i) {
        virtualPlatform.eventMonitors.send(LeftMouseDragged);
        virtualPlatform.eventMonitors.send(LeftMouseUp);
        virtualPlatform.mainQueue.runPending();
    }
    QCOMPARE(delegate.calls, kStartAndEnd);
}

void DragMonitorTest::calls_for_a_delegate_that_has_gone_do_nothing()
{
    Fixture f;
    f.monitor->start();
    auto delegate = std::make_unique<RecordingDelegate>();
    f.monitor->delegate = delegate.get();
    f.write({file("/a.txt")});
    f.monitors.send(LeftMouseDragged);
    f.monitors.send(LeftMouseUp);
    QCOMPARE(f.queue.pendingCount(), 2);
    delegate.reset();
    f.queue.runPending();
    QVERIFY(f.monitor->delegate.isNull());
    // The detection itself continues.
    f.monitor->delegate = &f.delegate;
    f.write({file("/b.txt")});
    f.drag();
    QCOMPARE(f.delegate.calls, kStart);
}

void DragMonitorTest::the_delegate_is_the_one_at_the_time_of_the_call()
{
    Fixture f;
    f.monitor->start();
    f.write({file("/a.txt")});
    f.monitors.send(LeftMouseDragged);
    RecordingDelegate later;
    f.monitor->delegate = &later;
    f.queue.runPending();
    QVERIFY(f.delegate.calls.isEmpty());
    QCOMPARE(later.calls, kStart);
}

void DragMonitorTest::without_a_delegate_nothing_happens()
{
    Fixture f;
    f.monitor->start();
    f.monitor->delegate = nullptr;
    f.write({file("/a.txt")});
    f.drag();
    f.release();
    // The drag still counts as reported.
    f.monitor->delegate = &f.delegate;
    f.drag();
    QVERIFY(f.delegate.calls.isEmpty());
}

void DragMonitorTest::a_monitor_that_has_gone_neither_handles_nor_calls()
{
    Fixture f;
    f.monitor->start();
    f.write({file("/a.txt")});
    f.monitors.send(LeftMouseDragged);
    QCOMPARE(f.queue.pendingCount(), 1);
    f.monitor.reset();
    f.queue.runPending();
    QVERIFY(f.delegate.calls.isEmpty());

    f.write({file("/b.txt")});
    const int reads = f.pasteboard.reads;
    f.drag();
    f.release();
    QCOMPARE(f.pasteboard.reads, reads);
    QVERIFY(f.delegate.calls.isEmpty());
}

void DragMonitorTest::a_refused_monitor_leaves_its_half_missing_data()
{
    QTest::addColumn<quint32>("refused");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("dragged") << quint32(LeftMouseDragged) << QStringList();
    QTest::newRow("up") << quint32(LeftMouseUp) << kStart;
    QTest::newRow("both") << quint32(LeftMouseDragged | LeftMouseUp) << QStringList();
}

void DragMonitorTest::a_refused_monitor_leaves_its_half_missing()
{
    class HalfMonitors : public VirtualEventMonitors {
    public:
        std::optional<Token> add(quint32 mask, std::function<void()> handler) override
        {
            if (mask & refused)
                return {};
            return VirtualEventMonitors::add(mask, std::move(handler));
        }

        quint32 refused = 0;
    };
    QFETCH(quint32, refused);
    VirtualPlatform virtualPlatform;
    HalfMonitors monitors;
    monitors.refused = refused;
    DragMonitor monitor(monitors, virtualPlatform.dragPasteboard, virtualPlatform.mainQueue);
    RecordingDelegate delegate;
    monitor.delegate = &delegate;
    monitor.start();
    QCOMPARE(monitors.count(LeftMouseDragged | LeftMouseUp),
             (refused & LeftMouseDragged ? 0 : 1) + (refused & LeftMouseUp ? 0 : 1));

    virtualPlatform.dragPasteboard.urls = {file("/a.txt")};
    monitors.send(LeftMouseDragged);
    monitors.send(LeftMouseUp);
    virtualPlatform.mainQueue.runPending();
    QTEST(delegate.calls, "calls");
}

PARKLET_GUILESS_TEST(DragMonitorTest)
#include "DragMonitorTest.moc"
