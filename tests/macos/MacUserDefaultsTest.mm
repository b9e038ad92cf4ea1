// SPDX-License-Identifier: MIT
#include "platform/macos/MacUserDefaults.h"
#include "tests/support/TestProgram.h"

#include <QProcess>
#include <QTest>

// The store as `defaults` writes and reads it.
class MacUserDefaultsTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { defaults.remove(kKey); }
    void a_typed_read_takes_a_number_or_a_truth_value_out_of_a_string();
    void a_string_itself_stays_one();
    void other_words_are_false_and_0();
    void what_has_been_synchronized_another_process_reads();

private:
    const QString kKey = QStringLiteral("testValue");
    MacUserDefaults defaults;
};

void MacUserDefaultsTest::a_typed_read_takes_a_number_or_a_truth_value_out_of_a_string()
{
    QVERIFY(defaults.set(kKey, QStringLiteral("YES")));
    QCOMPARE(defaults.boolean(kKey), true);
    QVERIFY(defaults.set(kKey, QStringLiteral("3")));
    QCOMPARE(defaults.integer(kKey), 3);
    QCOMPARE(defaults.number(kKey), 3.0);
}

void MacUserDefaultsTest::a_string_itself_stays_one()
{
    QVERIFY(defaults.set(kKey, QStringLiteral("3")));
    QCOMPARE(defaults.object(kKey), QVariant(QStringLiteral("3")));
}

void MacUserDefaultsTest::other_words_are_false_and_0()
{
    QVERIFY(defaults.set(kKey, QStringLiteral("words")));
    QCOMPARE(defaults.boolean(kKey), false);
    QCOMPARE(defaults.integer(kKey), 0);
    QCOMPARE(defaults.number(kKey), 0.0);
}

void MacUserDefaultsTest::what_has_been_synchronized_another_process_reads()
{
    QVERIFY(defaults.set(kKey, QStringLiteral("on the disk")));
    defaults.synchronize();
    QProcess reader;
    reader.start(QStringLiteral("/usr/bin/defaults"),
                 {QStringLiteral("read"), QStringLiteral("MacUserDefaultsTest"), kKey});
    QVERIFY(reader.waitForFinished());
    QCOMPARE(QString::fromUtf8(reader.readAllStandardOutput()).trimmed(), QStringLiteral("on the disk"));
}

PARKLET_GUILESS_TEST(MacUserDefaultsTest)

#include "MacUserDefaultsTest.moc"
