// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbPanel.h"
#include "tests/support/TestProgram.h"

#include <QTest>

namespace {

class RoundedRegionTest : public QObject {
    Q_OBJECT

private slots:
    void only_the_corners_are_cut();
    void a_pixel_belongs_to_it_when_its_centre_is_in_the_circle();
    void it_is_symmetric();
    void without_a_radius_it_is_the_rectangle() { QCOMPARE(roundedRegion({20, 10}, 0), QRegion(0, 0, 20, 10)); }
    void a_radius_too_large_makes_a_round_end();
    void an_empty_size_is_an_empty_region() { QVERIFY(roundedRegion({0, 0}, 14).isEmpty()); }
};

void RoundedRegionTest::only_the_corners_are_cut()
{
    const QRegion region = roundedRegion({116, 164}, 14);
    QCOMPARE(region.boundingRect(), QRect(0, 0, 116, 164));
    QVERIFY(region.contains(QRect(0, 14, 116, 136)));
    QVERIFY(region.contains(QRect(14, 0, 88, 164)));
    for (const QPoint &corner : {QPoint(0, 0), QPoint(115, 0), QPoint(0, 163), QPoint(115, 163)})
        QVERIFY(!region.contains(corner));
}

void RoundedRegionTest::a_pixel_belongs_to_it_when_its_centre_is_in_the_circle()
{
    const QRegion region = roundedRegion({40, 40}, 14);
    for (int y = 0; y < 14; ++y) {
        for (int x = 0; x < 14; ++x) {
            const double dx = 14 - (x + 0.5);
            const double dy = 14 - (y + 0.5);
            QCOMPARE(region.contains(QPoint(x, y)), dx * dx + dy * dy < 14 * 14);
        }
    }
}

void RoundedRegionTest::it_is_symmetric()
{
    const QRegion region = roundedRegion({31, 47}, 9.5);
    for (int y = 0; y < 47; ++y) {
        for (int x = 0; x < 31; ++x) {
            QCOMPARE(region.contains(QPoint(x, y)), region.contains(QPoint(30 - x, y)));
            QCOMPARE(region.contains(QPoint(x, y)), region.contains(QPoint(x, 46 - y)));
        }
    }
}

void RoundedRegionTest::a_radius_too_large_makes_a_round_end()
{
    const QRegion region = roundedRegion({20, 10}, 50);
    QCOMPARE(region.boundingRect(), QRect(0, 0, 20, 10));
    QVERIFY(!region.contains(QPoint(0, 0)));
    QVERIFY(region.contains(QPoint(10, 0)));
}

} // namespace

PARKLET_APPLESS_TEST(RoundedRegionTest)
#include "RoundedRegionTest.moc"
