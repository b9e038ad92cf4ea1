// SPDX-License-Identifier: MIT
#include "drag/AutoShow.h"
#include "tests/support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

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

const QString kEditor = u"org.example.Editor"_s;

QStringList list(const char *identifiers)
{
    return QString::fromUtf8(identifiers).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

void AutoShowTest::the_triggers_and_modes_are_numbered_as_they_are_stored()
{
    QCOMPARE(int(AutoShowTrigger::AtOnce), 0);
    QCOMPARE(int(AutoShowTrigger::NearCursor), 1);
    QCOMPARE(int(AutoShowTrigger::WhenNear), 2);
    QCOMPARE(int(ExcludeMode::HideInListed), 0);
    QCOMPARE(int(ExcludeMode::ShowOnlyInListed), 1);
}

void AutoShowTest::an_application_is_excluded_by_mode_and_list_data()
{
    QTest::addColumn<ExcludeMode>("mode");
    QTest::addColumn<QStringList>("listed");
    QTest::addColumn<bool>("excluded");
    QTest::newRow("hide, empty list") << ExcludeMode::HideInListed << list("") << false;
    QTest::newRow("hide, listed") << ExcludeMode::HideInListed << list("org.example.Editor") << true;
    QTest::newRow("hide, listed among others")
        << ExcludeMode::HideInListed << list("a.b org.example.Editor c.d") << true;
    QTest::newRow("hide, not listed") << ExcludeMode::HideInListed << list("org.example.Other") << false;
    QTest::newRow("hide, in other case") << ExcludeMode::HideInListed << list("org.example.editor") << false;
    QTest::newRow("hide, part of a name")
        << ExcludeMode::HideInListed << list("org.example org.example.Editor2") << false;
    QTest::newRow("only in, empty list") << ExcludeMode::ShowOnlyInListed << list("") << false;
    QTest::newRow("only in, listed") << ExcludeMode::ShowOnlyInListed << list("org.example.Editor") << false;
    QTest::newRow("only in, listed among others")
        << ExcludeMode::ShowOnlyInListed << list("a.b org.example.Editor") << false;
    QTest::newRow("only in, not listed") << ExcludeMode::ShowOnlyInListed << list("org.example.Other") << true;
    QTest::newRow("only in, in other case") << ExcludeMode::ShowOnlyInListed << list("ORG.example.Editor") << true;
    QTest::newRow("mode 2, listed") << ExcludeMode(2) << list("org.example.Editor") << false;
    QTest::newRow("mode 2, not listed") << ExcludeMode(2) << list("org.example.Other") << false;
    QTest::newRow("mode -1, listed") << ExcludeMode(-1) << list("org.example.Editor") << false;
}

void AutoShowTest::an_application_is_excluded_by_mode_and_list()
{
    QFETCH(ExcludeMode, mode);
    QFETCH(QStringList, listed);
    QTEST(isExcluded(kEditor, mode, listed), "excluded");
}

void AutoShowTest::without_a_frontmost_application_nothing_is_excluded_data()
{
    QTest::addColumn<ExcludeMode>("mode");
    QTest::newRow("hide") << ExcludeMode::HideInListed;
    QTest::newRow("only in") << ExcludeMode::ShowOnlyInListed;
}

void AutoShowTest::without_a_frontmost_application_nothing_is_excluded()
{
    QFETCH(ExcludeMode, mode);
    QVERIFY(!isExcluded({}, mode, {kEditor}));
    QVERIFY(!isExcluded({}, mode, {QString()}));
    QVERIFY(!isExcluded({}, mode, {}));
}

void AutoShowTest::near_is_within_120_points_on_every_side_data()
{
    // The shelf is at x 1000 to 1116 and y 300 to 464.
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
    // The margin is a rectangle and not a distance, so its corners count.
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
