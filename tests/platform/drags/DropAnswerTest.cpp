// SPDX-License-Identifier: MIT
#include "platform/linux/drags/DropAnswer.h"
#include "tests/support/TestProgram.h"

#include <QTest>

namespace {

class DropAnswerTest : public QObject {
    Q_OBJECT

private slots:
    void an_accepted_drop_is_what_the_destination_says_it_did()
    {
        QCOMPARE(performedOperation({true, DragOperation::Move}, 5, DragOperation::Move), DragOperation::Move);
        QCOMPARE(performedOperation({true, DragOperation::Copy}, 5, DragOperation::Move), DragOperation::Copy);
    }

    void an_accepted_drop_without_a_known_operation_is_the_offered_one()
    {
        QCOMPARE(performedOperation({true, {}}, 5, DragOperation::Link), DragOperation::Link);
    }

    void a_refused_drop_is_none_whatever_else_it_says()
    {
        QCOMPARE(performedOperation({false, DragOperation::Copy}, 5, DragOperation::Copy), DragOperation::None);
        QCOMPARE(performedOperation({false, {}}, 6, DragOperation::Copy), DragOperation::None);
    }

    void before_the_fifth_version_an_answer_means_done()
    {
        QCOMPARE(performedOperation({false, {}}, 4, DragOperation::Move), DragOperation::Move);
        QCOMPARE(performedOperation({false, DragOperation::Copy}, 3, DragOperation::Move), DragOperation::Move);
    }
};

} // namespace

PARKLET_APPLESS_TEST(DropAnswerTest)
#include "DropAnswerTest.moc"
