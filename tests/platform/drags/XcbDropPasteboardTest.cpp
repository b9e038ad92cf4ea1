// SPDX-License-Identifier: MIT
#include "platform/linux/drags/XcbDropPasteboard.h"

#include "platform/FileURLs.h"
#include "tests/platform/drags/DropSource.h"
#include "tests/support/TestProgram.h"

#include <QDropEvent>
#include <QTest>
#include <QWidget>

using namespace Qt::StringLiterals;

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
    void a_drag_over_a_window_may_be_dropped_until_it_leaves();
    void a_drop_is_expected_until_it_is_delivered();
    void nothing_is_expected_of_a_source_that_has_gone();
};

namespace {

constexpr int kPatience = DropSource::kPatience;
constexpr auto kNever = 60s;
constexpr auto kSoon = 50ms;
const QByteArray kList = "file:///tmp/a%20b\r\nfile:///tmp/c\r\n";
const QList<QUrl> kFiles = {QUrl(u"file:///tmp/a%20b"_s), QUrl(u"file:///tmp/c"_s)};

// The destination of the drops.
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
    DropSource source;
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
    DropSource source;
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
    DropSource source;
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
    DropSource source("text/x-moz-url");
    source.drag(f.target);
    QTRY_VERIFY_WITH_TIMEOUT(source.isAsked(), kPatience);
    const QString link = u"file:///tmp/c\nThe file"_s;
    source.answer(QByteArray(reinterpret_cast<const char *>(link.utf16()), link.size() * 2));
    QTRY_COMPARE_WITH_TIMEOUT(source.finished, QList<bool>{true}, kPatience);
    QCOMPARE(f.target.drops, QList<QList<QUrl>>{{fileURL("/tmp/c")}});
}

void XcbDropPasteboardTest::a_source_that_refuses_brings_no_files()
{
    Fixture f;
    DropSource source;
    source.drag(f.target);
    QTRY_VERIFY_WITH_TIMEOUT(source.isAsked(), kPatience);
    source.refuse();
    QTRY_COMPARE_WITH_TIMEOUT(source.finished, QList<bool>{false}, kPatience);
    QCOMPARE(f.target.drops, QList<QList<QUrl>>{{}});
}

void XcbDropPasteboardTest::a_source_that_never_answers_is_given_up()
{
    Fixture f(kSoon);
    DropSource source;
    source.drag(f.target);
    QTRY_COMPARE_WITH_TIMEOUT(source.finished, QList<bool>{false}, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(f.target.leaves, 1, kPatience);
    QVERIFY(f.target.drops.isEmpty());
    QVERIFY(!f.pasteboard.isReading());
}

void XcbDropPasteboardTest::a_source_that_stalls_in_pieces_is_given_up()
{
    Fixture f(500ms);
    DropSource source;
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
        DropSource late;
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
    DropSource mute;
    mute.drag(f.target);
    QTRY_VERIFY_WITH_TIMEOUT(mute.isAsked(), kPatience);
    DropSource source;
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
    DropSource source("text/plain");
    source.drag(f.target);
    QTRY_COMPARE_WITH_TIMEOUT(source.finished, QList<bool>{false}, kPatience);
    QCOMPARE(source.asks, 0);
    QCOMPARE(f.target.drops.size(), 1);
}

void XcbDropPasteboardTest::a_drag_over_a_window_may_be_dropped_until_it_leaves()
{
    Fixture f;
    int arrivals = 0;
    f.pasteboard.onArrived = [&arrivals] { ++arrivals; };
    QVERIFY(!f.pasteboard.isExpecting());
    DropSource source;
    source.enter(f.target);
    source.move(f.target);
    QTRY_VERIFY_WITH_TIMEOUT(f.pasteboard.isExpecting(), kPatience);
    QVERIFY(!f.pasteboard.isReading());
    QCOMPARE(arrivals, 0);
    source.leave(f.target);
    QTRY_COMPARE_WITH_TIMEOUT(arrivals, 1, kPatience);
    QVERIFY(!f.pasteboard.isExpecting());
}

void XcbDropPasteboardTest::a_drop_is_expected_until_it_is_delivered()
{
    Fixture f;
    qsizetype dropsAtArrival = -1;
    f.pasteboard.onArrived = [&] {
        if (!f.pasteboard.isExpecting())
            dropsAtArrival = f.target.drops.size();
    };
    DropSource source;
    source.drag(f.target);
    QTRY_VERIFY_WITH_TIMEOUT(source.isAsked(), kPatience);
    QVERIFY(f.pasteboard.isExpecting());
    QCOMPARE(dropsAtArrival, -1);
    source.answer(kList);
    QTRY_COMPARE_WITH_TIMEOUT(dropsAtArrival, 1, kPatience);
}

void XcbDropPasteboardTest::nothing_is_expected_of_a_source_that_has_gone()
{
    Fixture f;
    {
        DropSource source;
        source.enter(f.target);
        QTRY_VERIFY_WITH_TIMEOUT(f.pasteboard.isExpecting(), kPatience);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!f.pasteboard.isExpecting(), kPatience);
}

PARKLET_TEST(XcbDropPasteboardTest)
#include "XcbDropPasteboardTest.moc"
