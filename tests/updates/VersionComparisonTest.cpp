// SPDX-License-Identifier: MIT
#include "updates/VersionComparison.h"
#include "tests/support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

class VersionComparisonTest : public QObject {
    Q_OBJECT

private slots:
    void versions_are_ordered_by_the_value_of_their_numbers_data();
    void versions_are_ordered_by_the_value_of_their_numbers();
    void every_order_is_mirrored_data() { versions_are_ordered_by_the_value_of_their_numbers_data(); }
    void every_order_is_mirrored();
    void a_million_digits_take_no_time();
};

namespace {

enum Order { Older = -1, Same = 0, Newer = 1 };

int sign(std::weak_ordering order)
{
    return order < 0 ? Older : order > 0 ? Newer : Same;
}

} // namespace

void VersionComparisonTest::versions_are_ordered_by_the_value_of_their_numbers_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<int>("order");
    const auto row = [](const char *a, const char *b, Order order) {
        QTest::addRow("%s against %s", a, b) << QString::fromUtf8(a) << QString::fromUtf8(b) << int(order);
    };
    row("1.2", "1.2", Same);
    row("1.10", "1.9", Newer);
    row("2.0", "1.99", Newer);
    row("1.2.0", "1.2", Newer);
    row("1.2.", "1.2", Newer);
    row("1.2", "1.20", Older);
    row("10", "9", Newer);
    row("1.2.3", "1.2.10", Older);

    row("", "", Same);
    row("1.0", "", Newer);
    row("a", "", Newer);
    row("0", "", Newer);
    row(" 2.0", "1.9", Older);

    row("1.02", "1.2", Same);
    row("1.002", "1.10", Older);
    row("0", "000", Same);
    row("1.0", "1.00", Same);
    row("1.00", "1.0.0", Older);
    row("00.1", "0.2", Older);
    row("007a", "7b", Older);

    row("1.0b", "1.0a", Newer);
    row("1.0a", "1.0A", Newer);
    row("1.0-beta2", "1.0-beta10", Older);
    row("1.0rc1", "1.0", Newer);
    row("1.0a", "1.0.1", Newer);
    row("1.0 1", "1.0.1", Older);
    row("v2", "v10", Older);
    row("v2", "10", Newer);
    row("a1b", "a1", Newer);
    row("1-2", "1.2", Older);

    row("9999999999999999999999999999999999999999", "10000000000000000000000000000000000000000", Older);
    row("1.9999999999999999999999999999999999999998", "1.9999999999999999999999999999999999999999", Older);
    row("18446744073709551616", "0", Newer);
    row("0000000000000000000000000000000000000001", "2", Older);

    // Digits of other scripts compare like any other characters.
    row("1.\u0663", "1.\u0662\u0660", Newer);
    row("1.\u00e9", "1.e", Newer);
}

void VersionComparisonTest::versions_are_ordered_by_the_value_of_their_numbers()
{
    QFETCH(const QString, a);
    QFETCH(const QString, b);
    QTEST(sign(compareVersions(a, b)), "order");
}

void VersionComparisonTest::every_order_is_mirrored()
{
    QFETCH(const QString, a);
    QFETCH(const QString, b);
    QFETCH(const int, order);
    QCOMPARE(sign(compareVersions(b, a)), -order);
}

void VersionComparisonTest::a_million_digits_take_no_time()
{
    // If the time grew with the square of the length, the test would reach its time limit.
    constexpr int kDigits = 1'000'000;
    const QString digits(kDigits, u'7');
    const QString dots = u"7."_s.repeated(kDigits / 2);
    QCOMPARE(sign(compareVersions(digits + u'8', digits + u'7')), int(Newer));
    QCOMPARE(sign(compareVersions(dots + u'8', dots + u'7')), int(Newer));
    QCOMPARE(sign(compareVersions(QString(kDigits, u'0') + digits, digits)), int(Same));
}

PARKLET_GUILESS_TEST(VersionComparisonTest)
#include "VersionComparisonTest.moc"
