// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

using namespace Qt::StringLiterals;

class UserDefaultsContract : public QObject {
    Q_OBJECT

public:
    explicit UserDefaultsContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void cleanup();
    void a_key_that_was_never_written_is_absent();
    void what_was_set_is_read_data();
    void what_was_set_is_read();
    void an_integer_is_read_as_a_number();
    void a_number_reads_as_its_truth_value_and_back();
    void only_a_list_of_nothing_but_strings_is_one();
    void an_invalid_value_removes_the_key();
    void what_was_set_is_there_after_it_was_written_out();

private:
    UserDefaults &userDefaults() const { return *world.platform().userDefaults; }

    World &world;
};

void UserDefaultsContract::cleanup()
{
    userDefaults().remove(u"contractTest"_s);
}

void UserDefaultsContract::a_key_that_was_never_written_is_absent()
{
    const QString key = u"contractTest"_s;
    QVERIFY(!userDefaults().object(key).isValid());
    QCOMPARE(userDefaults().boolean(key), false);
    QCOMPARE(userDefaults().integer(key), 0);
    QCOMPARE(userDefaults().number(key), 0.0);
    QVERIFY(userDefaults().data(key).isEmpty());
    QVERIFY(userDefaults().stringArray(key).isEmpty());
}

void UserDefaultsContract::what_was_set_is_read_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("bool") << QVariant(true);
    QTest::newRow("double") << QVariant(0.4);
    QTest::newRow("string") << QVariant(u"Größe 雪"_s);
    QTest::newRow("data") << QVariant(QByteArray("\0\x01\xff", 3));
    QTest::newRow("list") << QVariant(QVariantList{u"a"_s, u"b"_s});
    QTest::newRow("empty list") << QVariant(QVariantList());
}

void UserDefaultsContract::what_was_set_is_read()
{
    QFETCH(QVariant, value);
    QVERIFY(userDefaults().set(u"contractTest"_s, value));
    const QVariant read = userDefaults().object(u"contractTest"_s);
    QCOMPARE(read.typeId(), value.typeId());
    QCOMPARE(read, value);
}

void UserDefaultsContract::an_integer_is_read_as_a_number()
{
    QVERIFY(userDefaults().set(u"contractTest"_s, 3));
    QCOMPARE(userDefaults().integer(u"contractTest"_s), 3);
    QCOMPARE(userDefaults().number(u"contractTest"_s), 3.0);
    QCOMPARE(userDefaults().object(u"contractTest"_s).toDouble(), 3.0);
}

void UserDefaultsContract::a_number_reads_as_its_truth_value_and_back()
{
    QVERIFY(userDefaults().set(u"contractTest"_s, 2.0));
    QCOMPARE(userDefaults().boolean(u"contractTest"_s), true);
    QVERIFY(userDefaults().set(u"contractTest"_s, true));
    QCOMPARE(userDefaults().integer(u"contractTest"_s), 1);
}

void UserDefaultsContract::only_a_list_of_nothing_but_strings_is_one()
{
    QVERIFY(userDefaults().set(u"contractTest"_s, QVariantList{u"a"_s, 1.0}));
    QVERIFY(userDefaults().stringArray(u"contractTest"_s).isEmpty());
    QVERIFY(userDefaults().set(u"contractTest"_s, QVariantList{u"a"_s, u"b"_s}));
    const QStringList strings = {u"a"_s, u"b"_s};
    QCOMPARE(userDefaults().stringArray(u"contractTest"_s), strings);
}

void UserDefaultsContract::an_invalid_value_removes_the_key()
{
    QVERIFY(userDefaults().set(u"contractTest"_s, true));
    QVERIFY(userDefaults().set(u"contractTest"_s, QVariant()));
    QVERIFY(!userDefaults().object(u"contractTest"_s).isValid());
}

void UserDefaultsContract::what_was_set_is_there_after_it_was_written_out()
{
    QVERIFY(userDefaults().set(u"contractTest"_s, u"kept"_s));
    userDefaults().synchronize();
    QCOMPARE(userDefaults().object(u"contractTest"_s), QVariant(u"kept"_s));
}

std::unique_ptr<QObject> userDefaultsContract(World &world)
{
    return std::make_unique<UserDefaultsContract>(world);
}

#include "UserDefaultsContract.moc"
