// SPDX-License-Identifier: MIT
#include "platform/linux/drags/ForeignDrag.h"

#include "platform/FileURLs.h"
#include "tests/support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QByteArray kOneFile = "file:///tmp/a\r\n";
const QList<QUrl> kOneURL = {QUrl(u"file:///tmp/a"_s)};

using Target = ForeignDrag::Target;

// The bytes of a text in UTF-16, as a browser sends it.
QByteArray utf16(const char *text)
{
    const QString wide = QString::fromLatin1(text);
    return {reinterpret_cast<const char *>(wide.utf16()), wide.size() * qsizetype(sizeof(char16_t))};
}

class ForeignDragTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        drag = ForeignDrag();
        asked.clear();
        dragged = ended = 0;
        drag.onAsk = [this](ForeignDrag::Question question, Target target, quint32 time) {
            asked.append({question, target, time});
        };
        drag.onDragged = [this] { ++dragged; };
        drag.onEnded = [this] { ++ended; };
    }

    void the_source_is_asked_at_once_in_the_name_of_its_announcement()
    {
        drag.begin(100);
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked.last().target, Target::URIList);
        QCOMPARE(asked.last().time, 100u);
        QCOMPARE(drag.changeCount(), 0);
        QVERIFY(drag.fileURLs().isEmpty());
    }

    void an_answer_moves_the_count_and_counts_as_a_movement()
    {
        drag.begin(100);
        drag.answered(question(), kOneFile);
        QCOMPARE(drag.changeCount(), 1);
        QCOMPARE(drag.fileURLs(), kOneURL);
        QCOMPARE(dragged, 1);
    }

    void a_drag_that_goes_on_asks_a_source_that_refused_again_and_moves_nothing()
    {
        drag.begin(100);
        drag.refused(question());
        drag.offered(question(), {.uriList = true, .link = true});
        drag.wentOn(105);
        QCOMPARE(asked.last().target, Target::URIList);
        QCOMPARE(asked.last().time, 105u);
        QCOMPARE(dragged, 0);
        const qsizetype questions = asked.size();
        drag.wentOn(106);
        QCOMPARE(asked.size(), questions);
    }

    void a_drag_is_without_files_once_its_source_has_told_so()
    {
        drag.begin(100);
        QVERIFY(!drag.isWithoutFiles());
        drag.silent();
        QVERIFY(!drag.isWithoutFiles());
        drag.answered(question(), "https://example.org/\r\n");
        QVERIFY(drag.isWithoutFiles());
        drag.begin(200);
        QVERIFY(!drag.isWithoutFiles());
        drag.refused(question());
        drag.offered(question(), {});
        QVERIFY(drag.isWithoutFiles());
        drag.begin(300);
        drag.answered(question(), kOneFile);
        QVERIFY(!drag.isWithoutFiles());
        drag.begin(350);
        drag.answered(question(), kOneFile + "https://example.org/\r\n");
        QVERIFY(!drag.isWithoutFiles());
        QVERIFY(drag.fileURLs().isEmpty());
        drag.begin(360);
        drag.refused(question());
        drag.offered(question(), {.link = true});
        drag.answered(question(), utf16("https://example.org/"));
        QVERIFY(drag.isWithoutFiles());
        drag.begin(400);
        drag.answered(question(), {});
        drag.end();
        QVERIFY(!drag.isWithoutFiles());
    }

    void the_count_moves_only_once_the_answer_is_there()
    {
        drag.begin(100);
        drag.pointerMoved(101);
        QCOMPARE(dragged, 1);
        QCOMPARE(drag.changeCount(), 0);
        drag.answered(question(), kOneFile);
        QCOMPARE(drag.changeCount(), 1);
        QCOMPARE(dragged, 2);
    }

    void a_drag_without_files_is_known_to_have_none()
    {
        drag.begin(100);
        drag.answered(question(), "http://example.org/\r\n");
        QCOMPARE(drag.changeCount(), 1);
        QVERIFY(drag.fileURLs().isEmpty());
    }

    void a_wrong_answer_is_a_drag_without_files()
    {
        drag.begin(100);
        drag.answeredWrongly(question());
        QCOMPARE(drag.changeCount(), 1);
        QVERIFY(drag.fileURLs().isEmpty());
    }

    void a_source_that_refuses_is_asked_again_with_each_movement()
    {
        drag.begin(100);
        refuseEverything();
        QCOMPARE(asked.size(), 2);
        drag.pointerMoved(107);
        QCOMPARE(asked.size(), 3);
        QCOMPARE(asked.last().target, Target::URIList);
        QCOMPARE(asked.last().time, 107u);
        // There is one open question at a time.
        drag.pointerMoved(108);
        QCOMPARE(asked.size(), 3);
        drag.answered(question(), kOneFile);
        QCOMPARE(drag.fileURLs(), kOneURL);
        drag.pointerMoved(109);
        QCOMPARE(asked.size(), 3);
    }

    void a_source_that_refuses_its_list_is_asked_at_once_what_it_offers()
    {
        drag.begin(100);
        drag.refused(question());
        QCOMPARE(asked.size(), 2);
        QCOMPARE(asked.last().target, Target::Offers);
        QCOMPARE(asked.last().time, 100u);
        QCOMPARE(drag.changeCount(), 0);
    }

    void a_link_to_a_file_counts_where_there_is_no_list()
    {
        drag.begin(100);
        drag.refused(question());
        drag.offered(question(), {.link = true});
        QCOMPARE(asked.size(), 3);
        QCOMPARE(asked.last().target, Target::Link);
        QCOMPARE(asked.last().time, 100u);
        drag.answered(question(), utf16("file:///tmp/a\nA file"));
        QCOMPARE(drag.changeCount(), 1);
        QCOMPARE(drag.fileURLs(), kOneURL);
    }

    void a_link_to_elsewhere_is_a_drag_without_files()
    {
        drag.begin(100);
        drag.refused(question());
        drag.offered(question(), {.link = true});
        drag.answered(question(), utf16("https://example.org/\nfile:///tmp/a"));
        QCOMPARE(drag.changeCount(), 1);
        QVERIFY(drag.fileURLs().isEmpty());
    }

    void a_link_that_is_refused_is_a_drag_without_files()
    {
        drag.begin(100);
        drag.refused(question());
        drag.offered(question(), {.link = true});
        drag.refused(question());
        QCOMPARE(drag.changeCount(), 1);
        QVERIFY(drag.fileURLs().isEmpty());
        drag.pointerMoved(101);
        QCOMPARE(asked.size(), 3);
    }

    void a_source_with_neither_is_not_asked_again()
    {
        drag.begin(100);
        drag.refused(question());
        drag.offered(question(), {});
        QCOMPARE(drag.changeCount(), 1);
        drag.pointerMoved(101);
        QCOMPARE(asked.size(), 2);
    }

    // The link of such a source has only the first of its files.
    void a_list_that_was_refused_for_now_comes_before_the_link()
    {
        drag.begin(100);
        drag.refused(question());
        drag.offered(question(), {.uriList = true, .link = true});
        QCOMPARE(asked.size(), 2);
        drag.pointerMoved(107);
        QCOMPARE(asked.last().target, Target::URIList);
        drag.answered(question(), kOneFile);
        QCOMPARE(drag.fileURLs(), kOneURL);
    }

    void a_list_that_is_only_offered_is_given_up_after_ten_more_questions()
    {
        drag.begin(100);
        for (quint32 time = 101; time < 150; ++time) {
            drag.refused(question());
            drag.offered(question(), {.uriList = true, .link = true});
            drag.pointerMoved(time);
        }
        QCOMPARE(asked.size(), 22);
        QCOMPARE(drag.changeCount(), 1);
    }

    void offers_that_nobody_asked_for_change_nothing()
    {
        drag.begin(100);
        drag.offered(question(), {.link = true});
        drag.offered(question(), {});
        QCOMPARE(asked.size(), 1);
        QCOMPARE(drag.changeCount(), 0);
    }

    void offers_in_the_wrong_form_are_a_drag_without_files()
    {
        drag.begin(100);
        drag.refused(question());
        drag.answered(question(), kOneFile);
        QCOMPARE(drag.changeCount(), 1);
        QVERIFY(drag.fileURLs().isEmpty());
    }

    void a_link_after_a_long_silence_still_counts()
    {
        drag.begin(100);
        drag.silent();
        drag.refused(question());
        QCOMPARE(asked.size(), 2);
        drag.silent();
        drag.offered(question(), {.link = true});
        drag.silent();
        drag.answered(question(), utf16("file:///tmp/a\n"));
        QCOMPARE(drag.fileURLs(), kOneURL);
    }

    void a_source_that_always_refuses_is_given_up_after_ten_more_questions()
    {
        drag.begin(100);
        for (quint32 time = 101; time < 150; ++time) {
            refuseEverything();
            drag.pointerMoved(time);
        }
        QCOMPARE(asked.size(), 22);
        QCOMPARE(drag.changeCount(), 1);
        QVERIFY(drag.fileURLs().isEmpty());
    }

    void a_mute_source_is_a_drag_without_files()
    {
        drag.begin(100);
        drag.silent();
        QCOMPARE(drag.changeCount(), 1);
        QCOMPARE(dragged, 1);
        QVERIFY(drag.fileURLs().isEmpty());
    }

    void an_answer_after_a_long_silence_still_counts()
    {
        drag.begin(100);
        drag.silent();
        drag.answered(question(), kOneFile);
        QCOMPARE(drag.changeCount(), 2);
        QCOMPARE(drag.fileURLs(), kOneURL);
    }

    void a_late_answer_without_files_tells_nothing_new()
    {
        drag.begin(100);
        drag.silent();
        drag.answeredWrongly(question());
        QCOMPARE(drag.changeCount(), 1);
    }

    void silence_while_nothing_was_asked_changes_nothing()
    {
        drag.silent();
        drag.begin(100);
        refuseEverything();
        drag.silent();
        QCOMPARE(drag.changeCount(), 0);
    }

    void pieces_are_put_together()
    {
        drag.begin(100);
        drag.answersInPieces(question());
        drag.pieceArrived(question(), "file:///tm");
        drag.pieceArrived(question(), "p/a\r\n");
        QCOMPARE(drag.changeCount(), 0);
        drag.pieceArrived(question(), {});
        QCOMPARE(drag.changeCount(), 1);
        QCOMPARE(drag.fileURLs(), kOneURL);
    }

    void pieces_that_stop_coming_are_a_drag_without_files()
    {
        drag.begin(100);
        drag.answersInPieces(question());
        drag.pieceArrived(question(), kOneFile);
        drag.silent();
        QCOMPARE(drag.changeCount(), 1);
        QVERIFY(drag.fileURLs().isEmpty());
    }

    void an_endless_answer_is_cut_off()
    {
        drag.begin(100);
        drag.answersInPieces(question());
        const QByteArray piece(kLongestAddressList / 4, ' ');
        for (int i = 0; i < 4; ++i)
            drag.pieceArrived(question(), piece);
        QCOMPARE(drag.changeCount(), 0);
        drag.pieceArrived(question(), " ");
        QCOMPARE(drag.changeCount(), 1);
        drag.pieceArrived(question(), kOneFile);
        drag.pieceArrived(question(), {});
        QCOMPARE(drag.changeCount(), 1);
        QVERIFY(drag.fileURLs().isEmpty());
    }

    void a_drag_ends_once()
    {
        drag.end();
        QCOMPARE(ended, 0);
        drag.begin(100);
        QVERIFY(drag.isInProgress());
        drag.end();
        drag.end();
        QCOMPARE(ended, 1);
        QVERIFY(!drag.isInProgress());
    }

    void the_files_of_a_drag_go_with_it()
    {
        drag.begin(100);
        drag.answered(question(), kOneFile);
        drag.end();
        QVERIFY(drag.fileURLs().isEmpty());
        QCOMPARE(drag.changeCount(), 1);
    }

    void a_release_during_the_read_drops_the_answer()
    {
        drag.begin(100);
        drag.end();
        drag.answered(question(), kOneFile);
        QCOMPARE(drag.changeCount(), 0);
        QVERIFY(drag.fileURLs().isEmpty());
        QCOMPARE(dragged, 0);
    }

    void a_new_drag_ends_the_one_in_progress()
    {
        drag.begin(100);
        drag.begin(140);
        QCOMPARE(ended, 1);
        QVERIFY(drag.isInProgress());
    }

    void an_answer_of_the_drag_before_is_dropped()
    {
        drag.begin(100);
        const auto first = question();
        drag.end();
        drag.begin(140);
        drag.answered(first, "file:///tmp/old\r\n");
        drag.refused(first);
        drag.offered(first, {.link = true});
        drag.answersInPieces(first);
        drag.pieceArrived(first, "file:///tmp/old\r\n");
        drag.pieceArrived(first, {});
        drag.answeredWrongly(first);
        QCOMPARE(drag.changeCount(), 0);
        drag.answered(question(), kOneFile);
        QCOMPARE(drag.fileURLs(), kOneURL);
        QCOMPARE(drag.changeCount(), 1);
    }

    void the_next_drag_may_refuse_as_often_again()
    {
        for (const quint32 start : {100u, 1000u}) {
            drag.begin(start);
            for (quint32 i = 1; i <= 10; ++i) {
                refuseEverything();
                drag.pointerMoved(start + i);
            }
            drag.answered(question(), kOneFile);
            QCOMPARE(drag.fileURLs(), kOneURL);
            drag.end();
        }
        QCOMPARE(drag.changeCount(), 2);
    }

    void a_pointer_that_moves_without_a_drag_is_no_matter()
    {
        drag.pointerMoved(100);
        QCOMPARE(dragged, 0);
        QVERIFY(asked.isEmpty());
    }

private:
    struct Asked {
        ForeignDrag::Question question;
        Target target;
        quint32 time;
    };

    ForeignDrag::Question question() const { return asked.last().question; }

    // Refuses the list, and the question about the offered types.
    void refuseEverything()
    {
        drag.refused(question());
        drag.refused(question());
    }

    ForeignDrag drag;
    QList<Asked> asked;
    int dragged = 0;
    int ended = 0;
};

} // namespace

PARKLET_APPLESS_TEST(ForeignDragTest)
#include "ForeignDragTest.moc"
