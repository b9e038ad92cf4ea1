// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/AutostartLoginItem.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class AutostartLoginItemTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void without_an_entry_it_is_off();
    void enabling_writes_an_entry_that_reads_as_on();
    void disabling_removes_the_entry();
    void enabling_and_disabling_twice_changes_nothing();
    void what_the_desktops_settings_wrote_is_read_back_data();
    void what_the_desktops_settings_wrote_is_read_back();
    void enabling_takes_back_what_the_desktops_settings_wrote();
    void an_entry_of_a_program_that_has_gone_is_off();
    void a_system_wide_entry_counts_and_is_hidden_when_disabled();
    void the_users_entry_stands_in_for_the_systems();
    void a_refused_write_is_reported();
    void a_pipe_in_its_place_is_never_opened();
    void the_program_is_quoted_data();
    void the_program_is_quoted();
    void the_standard_item_lies_in_the_users_autostart_folder();

private:
    bool write(const QString &name, const QByteArray &text) const;
    QByteArray entry() const;

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<AutostartLoginItem> item;
    QString user;
    QString system;
};

namespace {

const QString kFile = u"/com.orvane.Parklet.desktop"_s;

} // namespace

void AutostartLoginItemTest::init()
{
    folder = std::make_unique<QTemporaryDir>();
    user = folder->filePath(u"config/autostart"_s);
    system = folder->filePath(u"system"_s);
    QVERIFY(QDir().mkpath(system));
    item = std::make_unique<AutostartLoginItem>(user, QStringList{system}, u"/bin/true"_s);
}

void AutostartLoginItemTest::cleanup()
{
    item.reset();
    folder.reset();
}

bool AutostartLoginItemTest::write(const QString &name, const QByteArray &text) const
{
    QFile file(name);
    return QDir().mkpath(user) && file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

QByteArray AutostartLoginItemTest::entry() const
{
    QFile file(user + kFile);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void AutostartLoginItemTest::without_an_entry_it_is_off()
{
    QVERIFY(!item->isEnabled());
    QVERIFY(item->disable());
    QVERIFY(!QFile::exists(user));
}

void AutostartLoginItemTest::enabling_writes_an_entry_that_reads_as_on()
{
    QVERIFY(item->enable());
    QVERIFY(item->isEnabled());
    const QList<QByteArray> lines = entry().split('\n');
    QCOMPARE(lines.first(), QByteArray("[Desktop Entry]"));
    for (const char *line : {"Type=Application", "Name=Parklet", "Exec=\"/bin/true\"", "TryExec=/bin/true",
                             "X-GNOME-Autostart-enabled=true", "Hidden=false", "Terminal=false"})
        QVERIFY2(lines.contains(line), line);
    // The texts are those of the menu's entry: in English, and in every translation.
    QCOMPARE(entry().count("\nComment="), 1);
    QCOMPARE(entry().count("\nComment[de]="), 1);
}

void AutostartLoginItemTest::disabling_removes_the_entry()
{
    QVERIFY(item->enable());
    QVERIFY(item->disable());
    QVERIFY(!item->isEnabled());
    QVERIFY(!QFile::exists(user + kFile));
}

void AutostartLoginItemTest::enabling_and_disabling_twice_changes_nothing()
{
    QVERIFY(item->enable());
    const QByteArray first = entry();
    QVERIFY(item->enable());
    QCOMPARE(entry(), first);
    QVERIFY(item->disable());
    QVERIFY(item->disable());
    QVERIFY(!item->isEnabled());
}

void AutostartLoginItemTest::what_the_desktops_settings_wrote_is_read_back_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("enabled");
    const QByteArray head = "[Desktop Entry]\nType=Application\nName=Parklet\n";
    QTest::newRow("plain") << head + "Exec=parklet\n" << true;
    QTest::newRow("hidden") << head + "Exec=parklet\nHidden=true\n" << false;
    QTest::newRow("not hidden") << head + "Exec=parklet\nHidden=false\n" << true;
    QTest::newRow("switched off") << head + "Exec=parklet\nX-GNOME-Autostart-enabled=false\n" << false;
    QTest::newRow("switched on") << head + "Exec=parklet\nX-GNOME-Autostart-enabled=true\n" << true;
    QTest::newRow("nonsense for a boolean") << head + "Exec=parklet\nHidden=maybe\n" << true;
    QTest::newRow("nothing to start") << head << false;
    QTest::newRow("another group") << QByteArray("[Other]\nExec=parklet\n") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("no entry") << QByteArray("\xff\xfe rubbish \0 here", 15) << false;
}

void AutostartLoginItemTest::what_the_desktops_settings_wrote_is_read_back()
{
    QFETCH(const QByteArray, text);
    QVERIFY(write(user + kFile, text));
    QTEST(item->isEnabled(), "enabled");
}

void AutostartLoginItemTest::enabling_takes_back_what_the_desktops_settings_wrote()
{
    QVERIFY(write(user + kFile, "[Desktop Entry]\nExec=parklet\nHidden=true\nX-GNOME-Autostart-enabled=false\n"));
    QVERIFY(item->enable());
    QVERIFY(item->isEnabled());
}

void AutostartLoginItemTest::an_entry_of_a_program_that_has_gone_is_off()
{
    QVERIFY(write(user + kFile, "[Desktop Entry]\nExec=\"/no/such/parklet\"\nTryExec=/no/such/parklet\n"));
    QVERIFY(!item->isEnabled());
    QVERIFY(item->enable());
    QVERIFY(item->isEnabled());
}

void AutostartLoginItemTest::a_system_wide_entry_counts_and_is_hidden_when_disabled()
{
    QVERIFY(write(system + kFile, "[Desktop Entry]\nType=Application\nName=Parklet\nExec=parklet\n"));
    QVERIFY(item->isEnabled());
    QVERIFY(item->disable());
    QVERIFY(!item->isEnabled());
    QVERIFY(entry().contains("Hidden=true"));
    QVERIFY(QFile::exists(system + kFile));
    QVERIFY(item->enable());
    QVERIFY(item->isEnabled());
}

void AutostartLoginItemTest::the_users_entry_stands_in_for_the_systems()
{
    QVERIFY(write(system + kFile, "[Desktop Entry]\nExec=parklet\n"));
    QVERIFY(write(user + kFile, "[Desktop Entry]\nExec=parklet\nHidden=true\n"));
    QVERIFY(!item->isEnabled());
}

void AutostartLoginItemTest::a_refused_write_is_reported()
{
    // There is a file in the place of the folder.
    QVERIFY(QDir().mkpath(folder->filePath(u"config"_s)));
    QFile file(user);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(!item->enable());
    QVERIFY(!item->isEnabled());
}

void AutostartLoginItemTest::a_pipe_in_its_place_is_never_opened()
{
    QVERIFY(QDir().mkpath(user));
    QCOMPARE(::mkfifo(QFile::encodeName(user + kFile).constData(), 0600), 0);
    QVERIFY(!item->isEnabled());
    QVERIFY(!item->enable());
    QVERIFY(item->disable());
    QVERIFY(!QFile::exists(user + kFile));
}

void AutostartLoginItemTest::the_program_is_quoted_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("line");
    const auto row = [](const char *name, const char *program, const char *line) {
        QTest::newRow(name) << QString::fromUtf8(program) << QString::fromUtf8(line);
    };
    row("plain", "/usr/bin/parklet", R"("/usr/bin/parklet")");
    row("blank", "/opt/my apps/parklet", R"("/opt/my apps/parklet")");
    row("percent", "/opt/100%/parklet", R"("/opt/100%%/parklet")");
    row("quote", R"(/opt/a"b/parklet)", R"("/opt/a\\"b/parklet")");
    row("dollar", "/opt/$HOME/parklet", R"("/opt/\\$HOME/parklet")");
    row("backslash", R"(/opt/a\b/parklet)", R"("/opt/a\\\\b/parklet")");
    row("new line", "/opt/a\nb/parklet", R"("/opt/a\nb/parklet")");
    row("umlaut", "/opt/ä/parklet", R"("/opt/ä/parklet")");
}

void AutostartLoginItemTest::the_program_is_quoted()
{
    QFETCH(const QString, program);
    QTEST(execLine(program), "line");
}

void AutostartLoginItemTest::the_standard_item_lies_in_the_users_autostart_folder()
{
    AutostartLoginItem standard;
    QVERIFY(standard.enable());
    QFile file(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/autostart"_s + kFile);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("TryExec=" + QFile::encodeName(QCoreApplication::applicationFilePath()) + '\n'));
    QVERIFY(standard.isEnabled());
    QVERIFY(standard.disable());
    QVERIFY(!QFile::exists(file.fileName()));
}

PARKLET_GUILESS_TEST(AutostartLoginItemTest)
#include "AutostartLoginItemTest.moc"
