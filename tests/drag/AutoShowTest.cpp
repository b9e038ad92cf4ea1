// SPDX-License-Identifier: MIT
#include "drag/AutoShow.h"
#include "tests/support/TestProgram.h"

#include <QTest>

class AutoShowTest : public QObject {
    Q_OBJECT

private slots:
    void the_triggers_and_modes_are_numbered_as_they_are_stored();
    void an_application_is_excluded_by_mode_and_list_data();
    void an_application_is_excluded_by_mode_and_list();
    void without_a_frontmost_application_nothing_is_excluded_data();
    void without_a_frontmost_application_nothing_is_excluded();
    void near_is_within_120_points_on_every_side_data();
    void near_is_within_120_points_on_every_side();
};

namespace {

const QString kEditor = QStringLiteral("org.example.Editor");

QStringList list(const char *identifiers)
{
    return QString::fromUtf8(identifiers).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

void AutoShowTest::the_triggers_and_modes_are_numbered_as_they_are_stored()
{
    QCOMPARE(int(kShowAtOnce), 0);
    QCOMPARE(int(kShowNearCursor), 1);
    QCOMPARE(int(kShowWhenNear), 2);
    QCOMPARE(int(kHideInListed), 0);
    QCOMPARE(int(kShowOnlyInListed), 1);
}

void AutoShowTest::an_application_is_excluded_by_mode_and_list_data()
{
    QTest::addColumn<qint64>("mode");
    QTest::addColumn<QStringList>("listed");
    QTest::addColumn<bool>("excluded");
    QTest::newRow("hide, empty list") << qint64(0) << list("") << false;
    QTest::newRow("hide, listed") << qint64(0) << list("org.example.Editor") << true;
    QTest::newRow("hide, listed among others") << qint64(0) << list("a.b org.example.Editor c.d") << true;
    QTest::newRow("hide, not listed") << qint64(0) << list("org.example.Other") << false;
    QTest::newRow("hide, in other case") << qint64(0) << list("org.example.editor") << false;
    QTest::newRow("hide, part of a name") << qint64(0) << list("org.example org.example.Editor2") << false;
    QTest::newRow("only in, empty list") << qint64(1) << list("") << false;
    QTest::newRow("only in, listed") << qint64(1) << list("org.example.Editor") << false;
    QTest::newRow("only in, listed among others") << qint64(1) << list("a.b org.example.Editor") << false;
    QTest::newRow("only in, not listed") << qint64(1) << list("org.example.Other") << true;
    QTest::newRow("only in, in other case") << qint64(1) << list("ORG.example.Editor") << true;
    QTest::newRow("mode 2, listed") << qint64(2) << list("org.example.Editor") << false;
    QTest::newRow("mode 2, not listed") << qint64(2) << list("org.example.Other") << false;
    QTest::newRow("mode -1, listed") << qint64(-1) << list("org.example.Editor") << false;
}

void AutoShowTest::an_application_is_excluded_by_mode_and_list()
{
    QFETCH(qint64, mode);
    QFETCH(QStringList, listed);
    QTEST(isExcluded(kEditor, mode, listed), "excluded");
}

void AutoShowTest::without_a_frontmost_application_nothing_is_excluded_data()
{
    QTest::addColumn<qint64>("mode");
    QTest::newRow("hide") << qint64(0);
    QTest::newRow("only in") << qint64(1);
}

void AutoShowTest::without_a_frontmost_application_nothing_is_excluded()
{
    QFETCH(qint64, mode);
    QVERIFY(!isExcluded({}, mode, {kEditor}));
    QVERIFY(!isExcluded({}, mode, {QString()}));
    QVERIFY(!isExcluded({}, mode, {}));
}

void AutoShowTest::near_is_within_120_points_on_every_side_data()
{
    // Around a shelf at x 1000 to 1116 and y 300 to 464.
    QTest::addColumn<QPointF>("pointer");
    QTest::addColumn<bool>("near");
    QTest::newRow("inside") << QPointF(1050, 400) << true;
    QTest::newRow("left, 120 away") << QPointF(880, 400) << true;
    QTest::newRow("left, 121 away") << QPointF(879, 400) << false;
    QTest::newRow("right, 120 away") << QPointF(1236, 400) << true;
    QTest::newRow("right, 121 away") << QPointF(1237, 400) << false;
    QTest::newRow("below, 120 away") << QPointF(1050, 180) << true;
    QTest::newRow("below, 121 away") << QPointF(1050, 179) << false;
    QTest::newRow("above, 120 away") << QPointF(1050, 584) << true;
    QTest::newRow("above, 121 away") << QPointF(1050, 585) << false;
    // The margin is a rectangle, not a distance: its corners count.
    QTest::newRow("corner") << QPointF(881, 181) << true;
    QTest::newRow("past the corner") << QPointF(879, 181) << false;
    QTest::newRow("far away") << QPointF(0, 0) << false;
}

void AutoShowTest::near_is_within_120_points_on_every_side()
{
    QFETCH(QPointF, pointer);
    QTEST(isNear(pointer, QRectF(1000, 300, 116, 164)), "near");
}

PARKLET_GUILESS_TEST(AutoShowTest)
#include "AutoShowTest.moc"
