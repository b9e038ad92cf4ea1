// SPDX-License-Identifier: MIT
#include "shelf/DropViews.h"
#include "tests/support/DragEvents.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

// The background of a column and its scroll view must handle drags in the same way, so each test runs on both.
class DropTargetTest : public QObject {
    Q_OBJECT

private slots:
    void a_drag_of_files_is_answered_with_copy_whatever_the_source_proposes_data() { targets(); }
    void a_drag_of_files_is_answered_with_copy_whatever_the_source_proposes();
    void a_drop_hands_over_all_files_in_their_order_data() { targets(); }
    void a_drop_hands_over_all_files_in_their_order();
    void a_drop_with_anything_else_on_it_is_refused_as_a_whole_data() { targets(); }
    void a_drop_with_anything_else_on_it_is_refused_as_a_whole();
    void what_may_not_be_copied_passes_by_data() { targets(); }
    void what_may_not_be_copied_passes_by();
    void a_copy_that_is_taken_back_on_the_way_is_refused_data() { targets(); }
    void a_copy_that_is_taken_back_on_the_way_is_refused();
    void a_drag_of_text_passes_by_data() { targets(); }
    void a_drag_of_text_passes_by();
    void a_drag_that_is_known_to_have_no_files_passes_by_data() { targets(); }
    void a_drag_that_is_known_to_have_no_files_passes_by();
    void the_highlight_goes_when_a_drag_turns_out_to_have_no_files_data() { targets(); }
    void the_highlight_goes_when_a_drag_turns_out_to_have_no_files();
    void without_callbacks_nothing_happens_data() { targets(); }
    void without_callbacks_nothing_happens();

private:
    static void targets();

    struct Target {
        explicit Target(bool scrolls);
        std::unique_ptr<QWidget> view;
        QWidget *widget; // the receiver of the drag events
        DropTarget *target;
        QStringList calls;
        QList<QUrl> dropped;
        void listen();
    };
};

namespace {

constexpr double kScrollerWidth = 14;

QUrl file(const char *path)
{
    return QUrl::fromLocalFile(QString::fromUtf8(path));
}

} // namespace

void DropTargetTest::targets()
{
    QTest::addColumn<bool>("scrolls");
    QTest::newRow("background") << false;
    QTest::newRow("scroll view") << true;
}

DropTargetTest::Target::Target(bool scrolls)
{
    if (scrolls) {
        auto made = std::make_unique<ShelfScrollView>(kScrollerWidth);
        target = made.get();
        widget = made->viewport();
        view = std::move(made);
    } else {
        auto made = std::make_unique<DroppableView>();
        target = made.get();
        widget = made.get();
        view = std::move(made);
    }
    view->resize(100, 100);
}

void DropTargetTest::Target::listen()
{
    target->onHighlight = [this](bool on) { calls.append(on ? u"on"_s : u"off"_s); };
    target->onDrop = [this](const QList<QUrl> &urls) {
        calls.append(u"drop"_s);
        dropped = urls;
    };
}

void DropTargetTest::a_drag_of_files_is_answered_with_copy_whatever_the_source_proposes()
{
    QFETCH(bool, scrolls);
    Target t(scrolls);
    t.listen();
    QVERIFY(t.widget->acceptDrops());
    QMimeData data;
    data.setUrls({file("/a")});
    Qt::DropAction action = Qt::IgnoreAction;
    QVERIFY(sendDragEnter(*t.widget, data, &action));
    QCOMPARE(action, Qt::CopyAction);
    QCOMPARE(t.calls, QStringList{u"on"_s});
    QVERIFY(sendDragMove(*t.widget, data, &action));
    QCOMPARE(action, Qt::CopyAction);
    QCOMPARE(t.calls.size(), 1);
    sendDragLeave(*t.widget);
    QCOMPARE(t.calls, (QStringList{u"on"_s, u"off"_s}));
}

void DropTargetTest::a_drop_hands_over_all_files_in_their_order()
{
    QFETCH(bool, scrolls);
    Target t(scrolls);
    t.listen();
    QMimeData data;
    data.setUrls({file("/b"), file("/a b"), file("/ä")});
    Qt::DropAction action = Qt::IgnoreAction;
    sendDragEnter(*t.widget, data);
    QVERIFY(sendDrop(*t.widget, data, &action));
    QCOMPARE(action, Qt::CopyAction);
    QCOMPARE(t.dropped, (QList<QUrl>{file("/b"), file("/a b"), file("/ä")}));
    // The highlight ends before the files arrive.
    QCOMPARE(t.calls, (QStringList{u"on"_s, u"off"_s, u"drop"_s}));
}

void DropTargetTest::a_drop_with_anything_else_on_it_is_refused_as_a_whole()
{
    QFETCH(bool, scrolls);
    Target t(scrolls);
    t.listen();
    QMimeData mixed;
    mixed.setUrls({file("/a"), QUrl(u"https://example.org/b"_s)});
    // The contents of a drag are read only when it is dropped.
    QVERIFY(sendDragEnter(*t.widget, mixed));
    QVERIFY(!sendDrop(*t.widget, mixed));
    QCOMPARE(t.calls, (QStringList{u"on"_s, u"off"_s}));

    QMimeData elsewhere;
    elsewhere.setUrls({QUrl(u"file://elsewhere.example/a"_s)});
    QVERIFY(sendDragEnter(*t.widget, elsewhere));
    QVERIFY(!sendDrop(*t.widget, elsewhere));
    QMimeData empty;
    empty.setData(u"text/uri-list"_s, "\r\n");
    QVERIFY(sendDragEnter(*t.widget, empty));
    QVERIFY(!sendDrop(*t.widget, empty));
    QVERIFY(!t.calls.contains(u"drop"_s));
}

void DropTargetTest::what_may_not_be_copied_passes_by()
{
    QFETCH(bool, scrolls);
    QMimeData data;
    data.setUrls({file("/a")});
    for (const auto possible : {Qt::DropActions(Qt::MoveAction), Qt::DropActions(Qt::LinkAction),
                                Qt::MoveAction | Qt::LinkAction, Qt::DropActions(Qt::IgnoreAction)}) {
        Target t(scrolls);
        t.listen();
        QVERIFY(!sendDragEnter(*t.widget, data, nullptr, possible));
        QVERIFY(!sendDrop(*t.widget, data, nullptr, possible));
        QVERIFY(t.calls.isEmpty());
    }
}

void DropTargetTest::a_copy_that_is_taken_back_on_the_way_is_refused()
{
    QFETCH(bool, scrolls);
    Target t(scrolls);
    t.listen();
    QMimeData data;
    data.setUrls({file("/a")});
    QVERIFY(sendDragEnter(*t.widget, data));
    QVERIFY(!sendDragMove(*t.widget, data, nullptr, Qt::MoveAction));
    QVERIFY(sendDragMove(*t.widget, data));
    QVERIFY(!sendDrop(*t.widget, data, nullptr, Qt::MoveAction));
    QCOMPARE(t.calls, (QStringList{u"on"_s, u"off"_s}));
}

void DropTargetTest::a_drag_of_text_passes_by()
{
    QFETCH(bool, scrolls);
    Target t(scrolls);
    t.listen();
    QMimeData text;
    text.setText(u"/a"_s);
    QVERIFY(!sendDragEnter(*t.widget, text));
    QVERIFY(t.calls.isEmpty());
    QVERIFY(!sendDrop(*t.widget, text));
    QVERIFY(!t.calls.contains(u"drop"_s));
}

void DropTargetTest::a_drag_that_is_known_to_have_no_files_passes_by()
{
    QFETCH(bool, scrolls);
    Target t(scrolls);
    t.listen();
    t.target->isWithoutFiles = [] { return true; };
    QMimeData link;
    link.setUrls({QUrl(u"https://example.org/a"_s)});
    QVERIFY(!sendDragEnter(*t.widget, link));
    QVERIFY(t.calls.isEmpty());
}

void DropTargetTest::the_highlight_goes_when_a_drag_turns_out_to_have_no_files()
{
    QFETCH(bool, scrolls);
    Target t(scrolls);
    t.listen();
    bool known = false;
    t.target->isWithoutFiles = [&known] { return known; };
    QMimeData link;
    link.setUrls({QUrl(u"https://example.org/a"_s)});
    QVERIFY(sendDragEnter(*t.widget, link));
    known = true;
    QVERIFY(!sendDragMove(*t.widget, link));
    QCOMPARE(t.calls, (QStringList{u"on"_s, u"off"_s}));
}

void DropTargetTest::without_callbacks_nothing_happens()
{
    QFETCH(bool, scrolls);
    Target t(scrolls);
    QMimeData data;
    data.setUrls({file("/a")});
    QVERIFY(sendDragEnter(*t.widget, data));
    sendDragLeave(*t.widget);
    QVERIFY(sendDragEnter(*t.widget, data));
    QVERIFY(sendDrop(*t.widget, data));
}

PARKLET_TEST(DropTargetTest)
#include "DropTargetTest.moc"
