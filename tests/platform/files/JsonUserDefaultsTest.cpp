// SPDX-License-Identifier: MIT
#include "platform/linux/files/JsonUserDefaults.h"

#include "tests/support/OrdinaryUser.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class JsonUserDefaultsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void an_absent_file_is_an_empty_store();
    void every_type_comes_back_as_it_was_stored();
    void numbers_are_written_as_json_numbers();
    void data_is_written_in_base64();
    void a_value_json_cannot_hold_is_refused();
    void a_file_made_by_hand_is_read();
    void an_edit_from_outside_is_seen_by_the_next_read();
    void keys_of_others_survive_a_write();
    void an_unchanged_value_is_not_written_again();
    void a_new_file_and_its_folder_belong_to_the_user_alone();
    void a_files_permissions_are_kept();
    void a_link_stays_a_link();
    void a_link_that_points_nowhere_gets_its_file();
    void a_loop_of_links_reads_as_empty_and_refuses_writes();
    void what_is_no_json_object_is_kept_aside_data();
    void what_is_no_json_object_is_kept_aside();
    void a_file_that_is_being_written_is_not_taken_away();
    void a_pipe_or_folder_in_its_place_is_left_alone();
    void a_full_disk_leaves_the_old_file_whole();
    void a_read_only_file_refuses_writes();
    void a_read_only_folder_refuses_writes();
    void an_unreadable_file_is_never_written_over();
    void two_programs_writing_lose_nothing();
    void a_program_killed_while_writing_leaves_a_whole_file();

private:
    QByteArray contents(const QString &name) const;
    bool write(const QByteArray &text) const;
    mode_t mode(const QString &name) const;
    QString at(const QString &name) const { return folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> folder;
    QString path;
};

namespace {

const QString kKey = u"windowEdge"_s;

} // namespace

void JsonUserDefaultsTest::init()
{
    folder = std::make_unique<QTemporaryDir>();
    path = at(u"settings.json"_s);
}

void JsonUserDefaultsTest::cleanup()
{
    folder.reset();
}

QByteArray JsonUserDefaultsTest::contents(const QString &name) const
{
    QFile file(at(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

bool JsonUserDefaultsTest::write(const QByteArray &text) const
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

mode_t JsonUserDefaultsTest::mode(const QString &name) const
{
    struct stat status {};
    return ::stat(QFile::encodeName(at(name)).constData(), &status) == 0 ? status.st_mode & 0777 : 0;
}

void JsonUserDefaultsTest::an_absent_file_is_an_empty_store()
{
    JsonUserDefaults defaults(path);
    QVERIFY(!defaults.object(kKey).isValid());
    QCOMPARE(defaults.integer(kKey), 0);
    QVERIFY(defaults.remove(kKey));
    QVERIFY(!QFile::exists(path));
}

void JsonUserDefaultsTest::every_type_comes_back_as_it_was_stored()
{
    const QList<std::pair<QVariant, QVariant>> values = {
        {true, true},
        {false, false},
        {3, 3.0},
        {qint64{1} << 40, 1099511627776.0},
        {0.4, 0.4},
        {72.0, 72.0},
        {-0.25F, -0.25},
        {u"Ünïcode \"quoted\" 🗂\n"_s, u"Ünïcode \"quoted\" 🗂\n"_s},
        {QString(), QString()},
        {QByteArray("\0\xff bytes", 8), QByteArray("\0\xff bytes", 8)},
        {QByteArray(), QByteArray()},
        {QStringList{u"a"_s, u"b"_s}, QVariantList{u"a"_s, u"b"_s}},
        {QStringList(), QVariantList()},
        {QVariantList{true, 1.5, u"x"_s, QVariantList{2}}, QVariantList{true, 1.5, u"x"_s, QVariantList{2.0}}},
    };
    for (const auto &[stored, expected] : values) {
        QVERIFY(JsonUserDefaults(path).set(kKey, stored));
        const QVariant read = JsonUserDefaults(path).object(kKey);
        QCOMPARE(read.typeId(), expected.typeId());
        QCOMPARE(read, expected);
    }
    QVERIFY(JsonUserDefaults(path).set(kKey, QVariant()));
    QVERIFY(!JsonUserDefaults(path).object(kKey).isValid());
}

void JsonUserDefaultsTest::numbers_are_written_as_json_numbers()
{
    JsonUserDefaults defaults(path);
    QVERIFY(defaults.set(u"a"_s, 3));
    QVERIFY(defaults.set(u"b"_s, 0.4));
    QVERIFY(defaults.set(u"c"_s, true));
    QCOMPARE(contents(u"settings.json"_s), QByteArray("{\n    \"a\": 3,\n    \"b\": 0.4,\n    \"c\": true\n}\n"));
}

void JsonUserDefaultsTest::data_is_written_in_base64()
{
    QVERIFY(JsonUserDefaults(path).set(u"tintColorData"_s, QByteArray("abc")));
    const QJsonObject object = QJsonDocument::fromJson(contents(u"settings.json"_s)).object();
    QCOMPARE(object.value(u"tintColorData"_s), QJsonValue(QJsonObject{{u"base64"_s, u"YWJj"_s}}));

    // Other objects are not data.
    QVERIFY(write(R"({"a": {"base64": "Y*"}, "b": {"base64": 1}, "c": {"base64": "YWJj", "d": 1}, "e": "YWJj"})"));
    JsonUserDefaults defaults(path);
    for (const char *key : {"a", "b", "c", "e"})
        QVERIFY2(defaults.data(QString::fromLatin1(key)).isEmpty(), key);
}

void JsonUserDefaultsTest::a_value_json_cannot_hold_is_refused()
{
    JsonUserDefaults defaults(path);
    QVERIFY(defaults.set(kKey, 2));
    QVERIFY(!defaults.set(kKey, std::numeric_limits<double>::infinity()));
    QVERIFY(!defaults.set(kKey, std::numeric_limits<double>::quiet_NaN()));
    QVERIFY(!defaults.set(kKey, QVariantList{std::numeric_limits<double>::quiet_NaN()}));
    QVERIFY(!defaults.set(kKey, QVariant::fromValue(QSize(1, 2))));
    QCOMPARE(defaults.integer(kKey), 2);
}

void JsonUserDefaultsTest::a_file_made_by_hand_is_read()
{
    QVERIFY(write("\xef\xbb\xbf{\r\n\t\"windowEdge\" : 3.0, \"autoHideTimeout\":1.5e0, \"disableAnimations\": true,"
                  "\"showDockIcon\": null, \"excludedBundleIDs\": [\"a\", \"b\"]}"));
    const JsonUserDefaults defaults(path);
    QCOMPARE(defaults.integer(kKey), 3);
    QCOMPARE(defaults.number(u"autoHideTimeout"_s), 1.5);
    QCOMPARE(defaults.boolean(u"disableAnimations"_s), true);
    QVERIFY(!defaults.object(u"showDockIcon"_s).isValid());
    QCOMPARE(defaults.stringArray(u"excludedBundleIDs"_s), (QStringList{u"a"_s, u"b"_s}));
}

void JsonUserDefaultsTest::an_edit_from_outside_is_seen_by_the_next_read()
{
    JsonUserDefaults defaults(path);
    QVERIFY(defaults.set(kKey, 1));
    QCOMPARE(defaults.integer(kKey), 1);
    // The file is changed in place, with the same length, and within one tick of the file system's clock.
    for (int i = 0; i < 50; ++i) {
        const int value = i % 10;
        QVERIFY(write("{\"windowEdge\": " + QByteArray::number(value) + "}"));
        QCOMPARE(defaults.integer(kKey), value);
    }
    QVERIFY(QFile::remove(path));
    QVERIFY(!defaults.object(kKey).isValid());
    QVERIFY(write("{\"windowEdge\": 2}"));
    QCOMPARE(defaults.integer(kKey), 2);
}

void JsonUserDefaultsTest::keys_of_others_survive_a_write()
{
    QVERIFY(write(R"({"windowEdge": 1, "later": {"version": [1, null, "x"]}})"));
    QVERIFY(JsonUserDefaults(path).set(kKey, 2));
    QCOMPARE(QJsonDocument::fromJson(contents(u"settings.json"_s)),
             QJsonDocument::fromJson(R"({"windowEdge": 2, "later": {"version": [1, null, "x"]}})"));
}

void JsonUserDefaultsTest::an_unchanged_value_is_not_written_again()
{
    JsonUserDefaults defaults(path);
    QVERIFY(defaults.set(kKey, 1));
    struct stat before {};
    struct stat after {};
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &before), 0);
    QVERIFY(defaults.set(kKey, 1));
    QVERIFY(defaults.remove(u"other"_s));
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &after), 0);
    QCOMPARE(after.st_ino, before.st_ino);
}

void JsonUserDefaultsTest::a_new_file_and_its_folder_belong_to_the_user_alone()
{
    path = at(u"config/parklet/settings.json"_s);
    QVERIFY(JsonUserDefaults(path).set(kKey, 1));
    QCOMPARE(mode(u"config/parklet/settings.json"_s), mode_t{0600});
    QCOMPARE(mode(u"config/parklet"_s), mode_t{0700});
    QCOMPARE(mode(u"config"_s), mode_t{0700});
    QCOMPARE(QDir(at(u"config/parklet"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"settings.json"_s});
}

void JsonUserDefaultsTest::a_files_permissions_are_kept()
{
    QVERIFY(write("{}"));
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0640), 0);
    QVERIFY(JsonUserDefaults(path).set(kKey, 1));
    QCOMPARE(mode(u"settings.json"_s), mode_t{0640});
}

void JsonUserDefaultsTest::a_link_stays_a_link()
{
    QVERIFY(QDir(folder->path()).mkdir(u"dotfiles"_s));
    QCOMPARE(::symlink("dotfiles/parklet.json", QFile::encodeName(path).constData()), 0);
    QVERIFY(write("{\"windowEdge\": 3}"));
    JsonUserDefaults defaults(path);
    QCOMPARE(defaults.integer(kKey), 3);
    QVERIFY(defaults.set(kKey, 0));
    QVERIFY(QFileInfo(path).isSymLink());
    QCOMPARE(contents(u"dotfiles/parklet.json"_s), QByteArray("{\n    \"windowEdge\": 0\n}\n"));
    QCOMPARE(defaults.object(kKey), QVariant(0.0));
}

void JsonUserDefaultsTest::a_link_that_points_nowhere_gets_its_file()
{
    QCOMPARE(::symlink("new/parklet.json", QFile::encodeName(path).constData()), 0);
    JsonUserDefaults defaults(path);
    QVERIFY(!defaults.object(kKey).isValid());
    QVERIFY(defaults.set(kKey, 1));
    QVERIFY(QFileInfo(path).isSymLink());
    QCOMPARE(contents(u"new/parklet.json"_s), QByteArray("{\n    \"windowEdge\": 1\n}\n"));
}

void JsonUserDefaultsTest::a_loop_of_links_reads_as_empty_and_refuses_writes()
{
    QCOMPARE(::symlink("settings.json", QFile::encodeName(path).constData()), 0);
    JsonUserDefaults defaults(path);
    QVERIFY(!defaults.object(kKey).isValid());
    QVERIFY(!defaults.set(kKey, 1));
    QVERIFY(QFileInfo(path).isSymLink());
}

void JsonUserDefaultsTest::what_is_no_json_object_is_kept_aside_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("truncated") << QByteArray("{\"windowEdge\": 2, \"show");
    QTest::newRow("array") << QByteArray("[1, 2]");
    QTest::newRow("number") << QByteArray("3");
    QTest::newRow("text") << QByteArray("windowEdge=2\n");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("no UTF-8") << QByteArray("{\"windowEdge\": \"\xff\xfe\"}");
    QTest::newRow("two objects") << QByteArray("{}{}");
    QTest::newRow("deep") << QByteArray(100'000, '[');
}

void JsonUserDefaultsTest::what_is_no_json_object_is_kept_aside()
{
    QFETCH(const QByteArray, text);
    QVERIFY(write(text));
    JsonUserDefaults defaults(path);
    QVERIFY(!defaults.object(kKey).isValid());
    QVERIFY(!QFile::exists(path));
    QCOMPARE(contents(u"settings.json.invalid"_s), text);
    // The store continues to work.
    QVERIFY(defaults.set(kKey, 1));
    QCOMPARE(defaults.integer(kKey), 1);
    QCOMPARE(contents(u"settings.json.invalid"_s), text);
}

void JsonUserDefaultsTest::a_file_that_is_being_written_is_not_taken_away()
{
    QVERIFY(write("{\"windowEdge\": 1}"));
    const JsonUserDefaults defaults(path);
    QCOMPARE(defaults.integer(kKey), 1);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    const std::unique_ptr<QThread> editor(QThread::create([&file] {
        QThread::msleep(5);
        file.write("{\"windowEdge\": 2}");
        file.close();
    }));
    editor->start();
    QCOMPARE(defaults.integer(kKey), 2);
    QVERIFY(editor->wait());
    QVERIFY(!QFile::exists(at(u"settings.json.invalid"_s)));
}

void JsonUserDefaultsTest::a_pipe_or_folder_in_its_place_is_left_alone()
{
    const QByteArray name = QFile::encodeName(path);
    QCOMPARE(::mkfifo(name.constData(), 0600), 0);
    {
        JsonUserDefaults defaults(path);
        QVERIFY(!defaults.object(kKey).isValid());
        QVERIFY(!defaults.set(kKey, 1));
    }
    struct stat status {};
    QCOMPARE(::lstat(name.constData(), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));
    QVERIFY(QFile::remove(path));

    QVERIFY(QDir().mkdir(path));
    JsonUserDefaults defaults(path);
    QVERIFY(!defaults.object(kKey).isValid());
    QVERIFY(!defaults.set(kKey, 1));
    QVERIFY(QFileInfo(path).isDir());
    QVERIFY(QDir().rmdir(path));

    QCOMPARE(::symlink("/dev/zero", name.constData()), 0);
    QVERIFY(!defaults.object(kKey).isValid());
    QVERIFY(!defaults.set(kKey, 1));
    QVERIFY(QFileInfo(path).isSymLink());
}

void JsonUserDefaultsTest::a_full_disk_leaves_the_old_file_whole()
{
    JsonUserDefaults defaults(path);
    QVERIFY(defaults.set(kKey, 1));
    const QByteArray before = contents(u"settings.json"_s);

    // Files may have a few bytes only, as on a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &old), 0);
    rlimit few = old;
    few.rlim_cur = 10;
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &few), 0);
    const bool stored = defaults.set(kKey, 2);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &old), 0);

    QVERIFY(!stored);
    QCOMPARE(contents(u"settings.json"_s), before);
    QCOMPARE(defaults.integer(kKey), 1);
    QCOMPARE(QDir(folder->path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"settings.json"_s});
    QVERIFY(defaults.set(kKey, 2));
    QCOMPARE(defaults.integer(kKey), 2);
}

void JsonUserDefaultsTest::a_read_only_file_refuses_writes()
{
    QVERIFY(write("{\"windowEdge\": 1}"));
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0444), 0);
    JsonUserDefaults defaults(path);
    QVERIFY(!defaults.set(kKey, 2));
    QCOMPARE(defaults.integer(kKey), 1);
    QCOMPARE(contents(u"settings.json"_s), QByteArray("{\"windowEdge\": 1}"));
}

void JsonUserDefaultsTest::a_read_only_folder_refuses_writes()
{
    const OrdinaryUser user(folder->path());
    JsonUserDefaults defaults(path);
    QVERIFY(defaults.set(kKey, 1));
    const QByteArray name = QFile::encodeName(folder->path());
    QCOMPARE(::chmod(name.constData(), 0500), 0);
    const bool stored = defaults.set(kKey, 2);
    const bool removed = defaults.remove(kKey);
    QCOMPARE(::chmod(name.constData(), 0700), 0);
    QVERIFY(!stored);
    QVERIFY(!removed);
    QCOMPARE(defaults.integer(kKey), 1);

    // A file that cannot be backed up is not overwritten either.
    QVERIFY(write("not JSON"));
    QCOMPARE(::chmod(name.constData(), 0500), 0);
    const QVariant value = defaults.object(kKey);
    const bool storedOver = defaults.set(kKey, 2);
    QCOMPARE(::chmod(name.constData(), 0700), 0);
    QVERIFY(!value.isValid());
    QVERIFY(!storedOver);
    QCOMPARE(contents(u"settings.json"_s), QByteArray("not JSON"));
}

void JsonUserDefaultsTest::an_unreadable_file_is_never_written_over()
{
    const OrdinaryUser user(folder->path());
    QVERIFY(write("{\"windowEdge\": 1}"));
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0200), 0);
    JsonUserDefaults defaults(path);
    QVERIFY(!defaults.object(kKey).isValid());
    QVERIFY(!defaults.set(kKey, 2));
    QVERIFY(!QFile::exists(at(u"settings.json.invalid"_s)));
    // A new permission takes effect at once.
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0600), 0);
    QCOMPARE(defaults.integer(kKey), 1);
}

void JsonUserDefaultsTest::two_programs_writing_lose_nothing()
{
    constexpr int kPrograms = 4;
    constexpr int kWrites = 25;
    QList<pid_t> programs;
    for (int program = 0; program < kPrograms; ++program) {
        const pid_t pid = ::fork();
        QVERIFY(pid >= 0);
        if (pid == 0) {
            JsonUserDefaults defaults(path);
            bool stored = true;
            for (int i = 0; i < kWrites; ++i)
                stored = defaults.set(u"%1-%2"_s.arg(program).arg(i), i) && stored;
            ::_exit(stored ? 0 : 1);
        }
        programs.append(pid);
    }
    for (const pid_t pid : programs) {
        int status = -1;
        QCOMPARE(::waitpid(pid, &status, 0), pid);
        QCOMPARE(status, 0);
    }
    QCOMPARE(QJsonDocument::fromJson(contents(u"settings.json"_s)).object().size(), kPrograms * kWrites);
}

void JsonUserDefaultsTest::a_program_killed_while_writing_leaves_a_whole_file()
{
    JsonUserDefaults defaults(path);
    QVERIFY(defaults.set(u"first"_s, QString(50'000, QLatin1Char('x'))));
    for (unsigned long round = 0; round < 10; ++round) {
        const pid_t pid = ::fork();
        QVERIFY(pid >= 0);
        if (pid == 0) {
            JsonUserDefaults writer(path);
            for (int i = 0;; ++i)
                writer.set(kKey, i);
        }
        QThread::msleep(10 + round);
        ::kill(pid, SIGKILL);
        int status = 0;
        QCOMPARE(::waitpid(pid, &status, 0), pid);
        QVERIFY(QJsonDocument::fromJson(contents(u"settings.json"_s)).isObject());
        QCOMPARE(defaults.object(u"first"_s).toString().size(), 50'000);
    }
    // No backlog grows, and the next write succeeds.
    QVERIFY(defaults.set(kKey, -1));
    QCOMPARE(QDir(folder->path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"settings.json"_s});
}

PARKLET_GUILESS_TEST(JsonUserDefaultsTest)
#include "JsonUserDefaultsTest.moc"
