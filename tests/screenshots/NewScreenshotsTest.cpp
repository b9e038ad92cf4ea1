// SPDX-License-Identifier: MIT
#include "screenshots/NewScreenshots.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class NewScreenshotsTest : public QObject {
    Q_OBJECT

private slots:
    void only_a_lower_case_png_suffix_counts_data();
    void only_a_lower_case_png_suffix_counts();
    void a_listing_is_shallow_and_holds_hidden_names();
    void a_listing_keeps_names_that_are_no_utf_8();
    void a_folder_that_cannot_be_read_lists_as_empty();
    void a_folder_of_twenty_thousand_files_is_listed_whole();
    void new_names_are_those_not_known();
    void names_of_a_folder_that_cannot_be_read_are_forgotten();
    void a_file_is_recent_for_less_than_ten_seconds_data();
    void a_file_is_recent_for_less_than_ten_seconds();
};

namespace {

void create(const QTemporaryDir &folder, const char *name)
{
    QFile file(QString::fromLocal8Bit(folder.path().toLocal8Bit() + '/' + name));
    QVERIFY(file.open(QFile::WriteOnly));
}

} // namespace

void NewScreenshotsTest::only_a_lower_case_png_suffix_counts_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("counts");
    QTest::newRow("plain") << QByteArray("shot.png") << true;
    QTest::newRow("two suffixes") << QByteArray("shot.jpg.png") << true;
    QTest::newRow("hidden") << QByteArray(".shot.png") << true;
    QTest::newRow("nothing but the suffix") << QByteArray(".png") << true;
    QTest::newRow("no UTF-8") << QByteArray("\xff\xfe.png") << true;
    QTest::newRow("upper case") << QByteArray("shot.PNG") << false;
    QTest::newRow("mixed case") << QByteArray("shot.Png") << false;
    QTest::newRow("another kind") << QByteArray("shot.jpg") << false;
    QTest::newRow("still downloading") << QByteArray("shot.png.part") << false;
    QTest::newRow("no dot") << QByteArray("png") << false;
    QTest::newRow("empty") << QByteArray("") << false;
}

void NewScreenshotsTest::only_a_lower_case_png_suffix_counts()
{
    QFETCH(const QByteArray, name);
    QTEST(isScreenshotName(name.constData()), "counts");
}

void NewScreenshotsTest::a_listing_is_shallow_and_holds_hidden_names()
{
    const QTemporaryDir folder;
    create(folder, "a.png");
    create(folder, ".hidden.png");
    create(folder, "b.PNG");
    create(folder, "c.jpg");
    // The kind of an entry does not matter.
    QVERIFY(QDir(folder.path()).mkdir(u"inner.png"_s));
    create(folder, "inner.png/d.png");
    QVERIFY(QFile::link(u"nowhere"_s, folder.filePath(u"link.png"_s)));
    QCOMPARE(screenshotNames(folder.path().toLocal8Bit()),
             (QSet<QByteArray>{"a.png", ".hidden.png", "inner.png", "link.png"}));
}

void NewScreenshotsTest::a_listing_keeps_names_that_are_no_utf_8()
{
    const QTemporaryDir folder;
    const QByteArray name = "caf\xe9.png";
    const QByteArray path = folder.path().toLocal8Bit() + '/' + name;
    const int file = open(path.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    if (file < 0 && errno == EILSEQ)
        QSKIP("This file system has no names that are no UTF-8");
    QVERIFY(file >= 0);
    QCOMPARE(close(file), 0);
    QCOMPARE(screenshotNames(folder.path().toLocal8Bit()), QSet<QByteArray>{name});
    QCOMPARE(unlink(path.constData()), 0);
}

void NewScreenshotsTest::a_folder_that_cannot_be_read_lists_as_empty()
{
    const QTemporaryDir folder;
    create(folder, "file.png");
    const QByteArray path = folder.path().toLocal8Bit();
    QVERIFY(screenshotNames(path + "/missing").isEmpty());
    QVERIFY(screenshotNames(path + "/file.png").isEmpty());
    QVERIFY(screenshotNames({}).isEmpty());
}

void NewScreenshotsTest::a_folder_of_twenty_thousand_files_is_listed_whole()
{
    const QTemporaryDir folder;
    const QByteArray path = folder.path().toLocal8Bit();
    for (int i = 0; i < 20'000; ++i) {
        const QByteArray name = QByteArray::number(i) + (i % 2 ? ".png" : ".txt");
        const int file = open((path + '/' + name).constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        QVERIFY(file >= 0);
        QCOMPARE(close(file), 0);
    }
    const QSet<QByteArray> names = screenshotNames(path);
    QCOMPARE(names.size(), 10'000);
    QVERIFY(names.contains("19999.png"));
    QVERIFY(!names.contains("19998.txt"));
}

void NewScreenshotsTest::new_names_are_those_not_known()
{
    const QTemporaryDir folder;
    const QByteArray path = folder.path().toLocal8Bit();
    QSet<QByteArray> known;
    QVERIFY(refreshNames(known, path).isEmpty());
    QVERIFY(known.isEmpty());

    create(folder, "a.png");
    create(folder, "b.png");
    const QList<QByteArray> all = refreshNames(known, path);
    QCOMPARE(QSet<QByteArray>(all.begin(), all.end()), (QSet<QByteArray>{"a.png", "b.png"}));
    QCOMPARE(all.size(), 2);
    QCOMPARE(known, (QSet<QByteArray>{"a.png", "b.png"}));

    QVERIFY(refreshNames(known, path).isEmpty());
    QCOMPARE(known, (QSet<QByteArray>{"a.png", "b.png"}));

    // The number is as before, but the files are others.
    QVERIFY(QFile::remove(folder.filePath(u"a.png"_s)));
    create(folder, "c.png");
    QCOMPARE(refreshNames(known, path), QList<QByteArray>{"c.png"});
    QCOMPARE(known, (QSet<QByteArray>{"b.png", "c.png"}));

    QVERIFY(QFile::remove(folder.filePath(u"b.png"_s)));
    QVERIFY(refreshNames(known, path).isEmpty());
    QCOMPARE(known, QSet<QByteArray>{"c.png"});

    // A file that was removed and created again between two checks is new only if a check missed it.
    create(folder, "b.png");
    QCOMPARE(refreshNames(known, path), QList<QByteArray>{"b.png"});
}

void NewScreenshotsTest::names_of_a_folder_that_cannot_be_read_are_forgotten()
{
    QSet<QByteArray> known{"a.png"};
    QVERIFY(refreshNames(known, "/nowhere/at/all").isEmpty());
    QVERIFY(known.isEmpty());
}

void NewScreenshotsTest::a_file_is_recent_for_less_than_ten_seconds_data()
{
    QTest::addColumn<qint64>("age");
    QTest::addColumn<bool>("recent");
    QTest::newRow("just made") << qint64(0) << true;
    QTest::newRow("9.999 s") << qint64(9'999) << true;
    QTest::newRow("10 s") << qint64(10'000) << false;
    QTest::newRow("a year") << qint64(365) * 86'400'000 << false;
    QTest::newRow("in a second") << qint64(-1'000) << true;
    QTest::newRow("in a year") << qint64(-365) * 86'400'000 << true;
}

void NewScreenshotsTest::a_file_is_recent_for_less_than_ten_seconds()
{
    QFETCH(const qint64, age);
    const QDateTime now = QDateTime::fromSecsSinceEpoch(1'700'000'000);
    QTEST(isRecent(now.addMSecs(-age), now), "recent");
}

PARKLET_GUILESS_TEST(NewScreenshotsTest)
#include "NewScreenshotsTest.moc"
