// SPDX-License-Identifier: MIT
#include "platform/common/Flipped.h"
#include "tests/support/TestProgram.h"

#include <QTest>

class FlippedTest : public QObject {
    Q_OBJECT

private slots:
    void places_are_measured_from_the_top_of_the_primary_screen_data();
    void places_are_measured_from_the_top_of_the_primary_screen();
};

void FlippedTest::places_are_measured_from_the_top_of_the_primary_screen_data()
{
    QTest::addColumn<QRectF>("native");
    QTest::addColumn<QRectF>("expected");
    // The primary screen is 1440 x 900.
    QTest::newRow("all of it") << QRectF(0, 0, 1440, 900) << QRectF(0, 0, 1440, 900);
    QTest::newRow("below its menu bar, above the Dock") << QRectF(0, 70, 1440, 806) << QRectF(0, 24, 1440, 806);
    QTest::newRow("a screen above") << QRectF(0, 900, 1920, 1080) << QRectF(0, -1080, 1920, 1080);
    QTest::newRow("a screen to the left, lower") << QRectF(-1280, -100, 1280, 800) << QRectF(-1280, 200, 1280, 800);
}

void FlippedTest::places_are_measured_from_the_top_of_the_primary_screen()
{
    QFETCH(QRectF, native);
    QFETCH(QRectF, expected);
    QCOMPARE(flippedIn(900, native), expected);
    QCOMPARE(flippedIn(900, expected), native);
    QCOMPARE(flippedIn(900, native.topLeft()), expected.bottomLeft());
}

PARKLET_TEST(FlippedTest)

#include "FlippedTest.moc"
