// SPDX-License-Identifier: MIT
#include "platform/macos/MacSessionInstance.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTest>

// A lock file that says nothing; what two instances make of each other is in their contract.
class MacSessionInstanceTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void init();
    void cleanup();
    void an_empty_lock_file_does_not_keep_it_from_starting();
    void a_folder_that_cannot_be_written_does_not_either();
    void another_one_is_refused_all_the_same();

private:
    QString folder;
};

void MacSessionInstanceTest::init()
{
    folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Parklet");
    QVERIFY(QDir().mkpath(folder));
}

void MacSessionInstanceTest::cleanup()
{
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QFile::remove(folder + QStringLiteral("/session.lock"));
}

void MacSessionInstanceTest::an_empty_lock_file_does_not_keep_it_from_starting()
{
    QFile file(folder + QStringLiteral("/session.lock"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QVERIFY(MacSessionInstance().claim());
}

void MacSessionInstanceTest::a_folder_that_cannot_be_written_does_not_either()
{
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    QVERIFY(MacSessionInstance().claim());
}

void MacSessionInstanceTest::another_one_is_refused_all_the_same()
{
    MacSessionInstance first;
    QVERIFY(first.claim());
    QVERIFY(!MacSessionInstance().claim());
}

PARKLET_TEST(MacSessionInstanceTest)

#include "MacSessionInstanceTest.moc"
