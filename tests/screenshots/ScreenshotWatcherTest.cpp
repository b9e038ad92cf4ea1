// SPDX-License-Identifier: MIT
#include "screenshots/ScreenshotWatcher.h"

#include "platform/FileURLs.h"
#include "settings/AppSettings.h"
#include "tests/screenshots/WatcherFixture.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// Which files the watcher reports, and how.
class ScreenshotWatcherTest : public QObject {
    Q_OBJECT

private slots:
    void it_watches_the_folder_desktop_in_the_home_directory();
    void where_the_desktop_environment_has_its_desktop_does_not_matter();
    void construction_starts_nothing();
    void a_start_follows_the_folder_with_half_a_second_of_latency();
    void a_new_file_is_reported_in_a_later_turn_of_the_main_loop();
    void a_file_that_was_there_at_the_start_is_never_reported();
    void a_file_that_comes_after_the_snapshot_is_new_even_before_the_stream();
    void a_start_without_a_stream_takes_its_snapshot_all_the_same();
    void a_file_is_reported_once_however_often_the_folder_changes();
    void an_old_file_is_taken_in_and_never_reported();
    void the_age_limit_is_ten_seconds_at_the_moment_of_the_look();
    void a_file_without_a_creation_date_is_skipped_and_not_tried_again();
    void no_file_keeps_the_others_from_being_looked_at();
    void other_kinds_of_files_are_not_reported();
    void a_name_that_is_no_utf_8_is_reported_with_its_own_bytes();
    void a_file_that_comes_back_is_new_again();
    void a_renamed_file_is_reported_again_only_while_it_is_recent();
    void two_hundred_files_at_once_are_each_reported_once();
    void what_was_seen_is_reported_whatever_happens_meanwhile_data();
    void what_was_seen_is_reported_whatever_happens_meanwhile();
    void a_folder_that_cannot_be_read_at_the_start_knows_nothing();
    void a_folder_that_goes_and_comes_back_is_examined_afresh();
    void a_change_right_after_the_look_is_found_at_the_next_call();
    void a_callback_that_is_not_set_is_skipped();
    void a_callback_is_looked_up_when_the_report_runs();
    void a_callback_may_replace_itself();
    void each_report_looks_for_the_watcher_and_its_callback_data();
    void each_report_looks_for_the_watcher_and_its_callback();
    void a_watcher_that_is_gone_reports_nothing_and_its_stream_calls_in_vain();
};

namespace {

using Fixture = WatcherFixture;

} // namespace

void ScreenshotWatcherTest::it_watches_the_folder_desktop_in_the_home_directory()
{
    QCOMPARE(homeDesktop(), QUrl::fromLocalFile(QDir::homePath() + u"/Desktop"_s));

    VirtualPlatform virtualPlatform;
    AppSettings settings{virtualPlatform.userDefaults, virtualPlatform.colorArchive, virtualPlatform.appearance};
    ScreenshotWatcher watcher(settings, virtualPlatform.fileEventStreams, virtualPlatform.mainQueue);
    watcher.start();
    QCOMPARE(virtualPlatform.fileEventStreams.streams.first()->folder, QDir::homePath() + u"/Desktop"_s);
}

void ScreenshotWatcherTest::where_the_desktop_environment_has_its_desktop_does_not_matter()
{
    const QByteArray home = qgetenv("HOME");
    const QByteArray config = qgetenv("XDG_CONFIG_HOME");
    const auto restore = qScopeGuard([&] {
        qputenv("HOME", home);
        qputenv("XDG_CONFIG_HOME", config);
    });
    const QTemporaryDir root;
    qputenv("HOME", root.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", root.filePath(u".config"_s).toLocal8Bit());
    QVERIFY(QDir(root.path()).mkdir(u".config"_s));
    QFile folders(root.filePath(u".config/user-dirs.dirs"_s));
    QVERIFY(folders.open(QFile::WriteOnly));
    folders.write("XDG_DESKTOP_DIR=\"$HOME/Elsewhere\"\n");
    folders.close();
    QCOMPARE(QStandardPaths::writableLocation(QStandardPaths::DesktopLocation), root.filePath(u"Elsewhere"_s));
    QCOMPARE(homeDesktop(), QUrl::fromLocalFile(root.filePath(u"Desktop"_s)));
}

void ScreenshotWatcherTest::construction_starts_nothing()
{
    const Fixture f;
    QVERIFY(f.streams.streams.isEmpty());
    QCOMPARE(f.queue.timerCount(), 0);
    QCOMPARE(f.queue.pendingCount(), 0);
}

void ScreenshotWatcherTest::a_start_follows_the_folder_with_half_a_second_of_latency()
{
    Fixture f;
    f.watcher->start();
    QCOMPARE(f.streams.streams.size(), 1);
    QCOMPARE(f.streams.streams.first()->folder, f.desktop);
    QCOMPARE(f.streams.streams.first()->latency, 0.5);
    QVERIFY(f.streams.streams.first()->isRunning());
    QCOMPARE(f.queue.timerCount(), 0);
}

void ScreenshotWatcherTest::a_new_file_is_reported_in_a_later_turn_of_the_main_loop()
{
    Fixture f;
    QList<QUrl> files;
    f.watcher->onNewScreenshot = [&files](const QUrl &file) { files.append(file); };
    f.watcher->start();
    f.create(kShot);
    f.streams.send();
    QVERIFY(files.isEmpty());
    f.queue.runPending();
    QCOMPARE(files, QList<QUrl>{f.url(kShot)});
}

void ScreenshotWatcherTest::a_file_that_was_there_at_the_start_is_never_reported()
{
    Fixture f;
    f.create(kShot);
    f.watcher->start();
    f.change();
    QVERIFY(f.reported.isEmpty());
}

void ScreenshotWatcherTest::a_file_that_comes_after_the_snapshot_is_new_even_before_the_stream()
{
    Fixture f;
    f.virtualPlatform.log.onCall = [&f](const QString &call) {
        QCOMPARE(call, u"openStream"_s);
        f.create(kShot);
    };
    f.watcher->start();
    f.change();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherTest::a_start_without_a_stream_takes_its_snapshot_all_the_same()
{
    Fixture f;
    f.watcher->start();
    f.create(kShot);
    f.streams.refuses = true;
    f.watcher->start();
    f.change();
    QVERIFY(f.reported.isEmpty());
}

void ScreenshotWatcherTest::a_file_is_reported_once_however_often_the_folder_changes()
{
    Fixture f;
    f.watcher->start();
    f.create(kShot);
    f.change();
    f.change();
    f.streams.send();
    f.streams.send();
    f.queue.runPending();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherTest::an_old_file_is_taken_in_and_never_reported()
{
    Fixture f;
    f.watcher->start();
    f.create(kShot, 3600);
    f.change();
    f.setAge(kShot, 0);
    f.change();
    QVERIFY(f.reported.isEmpty());
}

void ScreenshotWatcherTest::the_age_limit_is_ten_seconds_at_the_moment_of_the_look()
{
    Fixture f;
    f.watcher->start();
    f.create(u"exactly.png"_s, 0.001);
    f.create(u"under.png"_s, 0);
    f.create(u"future.png"_s, -3600);
    f.queue.advance(9.999);
    f.streams.send();
    f.queue.advance(60); // the time until the report is handled does not matter
    f.reported.sort();
    QCOMPARE(f.reported, (QStringList{u"future.png"_s, u"under.png"_s}));
}

void ScreenshotWatcherTest::a_file_without_a_creation_date_is_skipped_and_not_tried_again()
{
    Fixture f;
    f.watcher->start();
    f.create(kShot);
    f.streams.creationDates.clear();
    f.create(u"other.png"_s);
    f.change();
    QCOMPARE(f.takeReported(), QStringList{u"other.png"_s});
    f.setAge(kShot, 0);
    f.change();
    QVERIFY(f.reported.isEmpty());
}

void ScreenshotWatcherTest::no_file_keeps_the_others_from_being_looked_at()
{
    Fixture f;
    f.watcher->start();
    for (int i = 0; i < 20; ++i) {
        const QString undated = u"undated %1.png"_s.arg(i);
        f.create(undated);
        f.streams.creationDates.remove(f.url(undated));
        f.create(u"old %1.png"_s.arg(i), 3600);
    }
    f.create(kShot);
    f.change();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherTest::other_kinds_of_files_are_not_reported()
{
    Fixture f;
    f.watcher->start();
    f.create(u"shot.jpg"_s);
    f.create(u"shot.PNG"_s);
    f.create(u"shot.png.part"_s);
    f.change();
    QVERIFY(f.reported.isEmpty());
}

void ScreenshotWatcherTest::a_name_that_is_no_utf_8_is_reported_with_its_own_bytes()
{
    Fixture f;
    QList<QByteArray> paths;
    f.watcher->onNewScreenshot = [&paths](const QUrl &file) { paths.append(fileSystemPath(file)); };
    f.watcher->start();
    const QByteArray path = f.desktop.toLocal8Bit() + "/100% caf\xe9;(1).png";
    const int file = open(path.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    if (file < 0 && errno == EILSEQ)
        QSKIP("This file system has no names that are no UTF-8");
    QVERIFY(file >= 0);
    QCOMPARE(close(file), 0);
    f.streams.creationDates[fileURL(path)] = f.queue.currentDate();
    f.change();
    QCOMPARE(paths, QList<QByteArray>{path});
    QCOMPARE(unlink(path.constData()), 0);
}

void ScreenshotWatcherTest::a_file_that_comes_back_is_new_again()
{
    Fixture f;
    f.watcher->start();
    f.create(kShot);
    f.change();
    QVERIFY(QFile::remove(f.url(kShot).toLocalFile()));
    f.change();
    f.create(kShot);
    f.change();
    QCOMPARE(f.reported, (QStringList{kShot, kShot}));
}

void ScreenshotWatcherTest::a_renamed_file_is_reported_again_only_while_it_is_recent()
{
    Fixture f;
    f.watcher->start();
    f.create(kShot);
    f.change();
    const QString second = u"second.png"_s;
    const QString third = u"third.png"_s;
    QVERIFY(QFile::rename(f.url(kShot).toLocalFile(), f.url(second).toLocalFile()));
    f.setAge(second, 9.9);
    f.change();
    QVERIFY(QFile::rename(f.url(second).toLocalFile(), f.url(third).toLocalFile()));
    f.setAge(third, 10);
    f.change();
    QCOMPARE(f.reported, (QStringList{kShot, second}));
}

void ScreenshotWatcherTest::two_hundred_files_at_once_are_each_reported_once()
{
    Fixture f;
    f.watcher->start();
    QStringList names;
    for (int i = 0; i < 200; ++i) {
        names.append(u"shot %1.png"_s.arg(i, 3, 10, QLatin1Char('0')));
        f.create(names.last());
        if (i % 50 == 0)
            f.change();
    }
    f.change();
    f.reported.sort();
    QCOMPARE(f.reported, names);
}

void ScreenshotWatcherTest::what_was_seen_is_reported_whatever_happens_meanwhile_data()
{
    QTest::addColumn<QString>("event");
    for (const char *event : {"setting off", "stop", "file removed"})
        QTest::newRow(event) << QString::fromLatin1(event);
}

void ScreenshotWatcherTest::what_was_seen_is_reported_whatever_happens_meanwhile()
{
    QFETCH(const QString, event);
    Fixture f;
    f.watcher->start();
    f.create(kShot);
    f.streams.send();
    if (event == u"setting off"_s)
        f.settings.set(Settings::autoAddScreenshots, false);
    else if (event == u"stop"_s)
        f.watcher->stop();
    else
        f.remove(kShot);
    f.queue.runPending();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherTest::a_folder_that_cannot_be_read_at_the_start_knows_nothing()
{
    Fixture f;
    const QString elsewhere = f.desktop + u" elsewhere"_s;
    f.create(kShot);
    f.create(u"old.png"_s, 10);
    QVERIFY(QDir().rename(f.desktop, elsewhere));
    f.watcher->start();
    QVERIFY(QDir().rename(elsewhere, f.desktop));
    f.change();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherTest::a_folder_that_goes_and_comes_back_is_examined_afresh()
{
    Fixture f;
    const QString elsewhere = f.desktop + u" elsewhere"_s;
    f.create(kShot);
    f.create(u"old.png"_s, 10);
    f.watcher->start();
    QVERIFY(QDir().rename(f.desktop, elsewhere));
    f.change();
    QVERIFY(QDir().rename(elsewhere, f.desktop));
    f.change();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherTest::a_change_right_after_the_look_is_found_at_the_next_call()
{
    Fixture f;
    f.watcher->start();
    f.watcher->onNewScreenshot = [&f](const QUrl &file) {
        f.reported.append(file.fileName());
        if (f.reported.size() == 1)
            f.create(u"second.png"_s);
    };
    f.create(u"first.png"_s);
    f.change();
    f.change();
    QCOMPARE(f.reported, (QStringList{u"first.png"_s, u"second.png"_s}));
}

void ScreenshotWatcherTest::a_callback_that_is_not_set_is_skipped()
{
    Fixture f;
    f.watcher->start();
    f.create(kShot);
    f.streams.send();
    f.watcher->onNewScreenshot = nullptr;
    f.queue.runPending();
    QVERIFY(f.reported.isEmpty());
}

void ScreenshotWatcherTest::a_callback_is_looked_up_when_the_report_runs()
{
    Fixture f;
    const auto callback = std::exchange(f.watcher->onNewScreenshot, nullptr);
    f.watcher->start();
    f.create(kShot);
    f.streams.send();
    f.watcher->onNewScreenshot = callback;
    f.queue.runPending();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherTest::a_callback_may_replace_itself()
{
    Fixture f;
    f.watcher->onNewScreenshot = [&f, keep = kShot](const QUrl &) {
        f.watcher->onNewScreenshot = nullptr;
        f.reported.append(keep);
    };
    f.watcher->start();
    f.create(kShot);
    f.change();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherTest::each_report_looks_for_the_watcher_and_its_callback_data()
{
    QTest::addColumn<bool>("ends");
    QTest::newRow("the callback goes") << false;
    QTest::newRow("the watcher goes") << true;
}

void ScreenshotWatcherTest::each_report_looks_for_the_watcher_and_its_callback()
{
    QFETCH(const bool, ends);
    Fixture f;
    f.watcher->onNewScreenshot = [&f, ends](const QUrl &file) {
        f.reported.append(file.fileName());
        if (ends)
            f.watcher.reset();
        else
            f.watcher->onNewScreenshot = nullptr;
    };
    f.watcher->start();
    f.create(kShot);
    f.create(u"shot too.png"_s);
    f.change();
    QCOMPARE(f.reported.size(), 1);
}

void ScreenshotWatcherTest::a_watcher_that_is_gone_reports_nothing_and_its_stream_calls_in_vain()
{
    Fixture f;
    f.watcher->start();
    f.create(kShot);
    f.streams.send();
    f.watcher.reset();
    f.queue.runPending();
    QVERIFY(f.streams.streams.first()->isRunning());
    f.change();
    QVERIFY(f.reported.isEmpty());
}

PARKLET_GUILESS_TEST(ScreenshotWatcherTest)
#include "ScreenshotWatcherTest.moc"
