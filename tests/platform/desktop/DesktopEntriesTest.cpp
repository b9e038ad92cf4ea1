// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/DesktopEntries.h"
#include "platform/linux/desktop/FrontmostApplication.h"
#include "platform/linux/files/DurableFile.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class DesktopEntriesTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void an_entry_states_its_name_and_icon();
    void what_is_no_application_is_none_data();
    void what_is_no_application_is_none();
    void a_pipe_is_never_opened();
    void an_identifier_leads_to_its_file();
    void a_subfolder_counts_as_a_dash();
    void an_identifier_that_is_a_path_leads_nowhere();
    void an_earlier_folder_stands_in_for_a_later_one();
    void a_files_identifier_is_its_path_below_the_folder();
    void a_link_from_elsewhere_has_the_identifier_of_its_entry();
    void a_loop_of_links_ends();
    void a_window_class_leads_to_the_entry_that_states_it();
    void a_listed_entry_goes_before_one_that_no_menu_shows();
    void an_entry_that_comes_or_goes_is_noticed();
    void the_standard_folders_include_those_of_flatpak_and_snap();

    void what_a_window_says_outright_counts_first();
    void an_entry_may_be_named_by_its_file();
    void a_window_class_is_compared_in_any_case();
    void an_unknown_identifier_counts_when_nothing_else_leads_to_an_entry();
    void a_window_that_says_nothing_has_no_identifier();
    void a_process_in_a_sandbox_has_its_identifier_data();
    void a_process_in_a_sandbox_has_its_identifier();
    void a_process_outside_of_a_sandbox_has_no_identifier_from_it();

private:
    bool write(const QString &name, const QByteArray &keys = "Exec=true\n") const;
    QByteArray at(const QString &name) const { return QFile::encodeName(folder->filePath(name)); }
    DesktopEntries entries() const
    {
        return DesktopEntries({folder->filePath(u"user"_s), folder->filePath(u"system"_s)});
    }

    std::unique_ptr<QTemporaryDir> folder;
};

void DesktopEntriesTest::init()
{
    folder = std::make_unique<QTemporaryDir>();
}

void DesktopEntriesTest::cleanup()
{
    folder.reset();
}

// Writes an entry below the test's folder, with `keys` and the keys that every entry has.
bool DesktopEntriesTest::write(const QString &name, const QByteArray &keys) const
{
    const QString path = folder->filePath(name);
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write("[Desktop Entry]\nType=Application\nName=Text Editor\nIcon=accessories-text-editor\n" + keys) > 0;
}

void DesktopEntriesTest::an_entry_states_its_name_and_icon()
{
    QVERIFY(write(u"a.desktop"_s));
    const auto entry = readDesktopEntry(at(u"a.desktop"_s));
    QVERIFY(entry);
    QCOMPARE(entry->name, u"Text Editor"_s);
    QCOMPARE(entry->icon, u"accessories-text-editor"_s);

    QFile file(folder->filePath(u"bare.desktop"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Desktop Entry]\nType=Application\nExec=true\n");
    file.close();
    const auto bare = readDesktopEntry(at(u"bare.desktop"_s));
    QVERIFY(bare);
    QVERIFY(bare->name.isEmpty());
    QVERIFY(bare->icon.isEmpty());
}

void DesktopEntriesTest::what_is_no_application_is_none_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("hello\n");
    QTest::newRow("zeros") << QByteArray(100, '\0');
    QTest::newRow("link") << QByteArray("[Desktop Entry]\nType=Link\nName=A\nURL=https://example.org\nExec=true\n");
    QTest::newRow("folder") << QByteArray("[Desktop Entry]\nType=Directory\nName=A\n");
    QTest::newRow("no type") << QByteArray("[Desktop Entry]\nName=A\nExec=true\n");
    QTest::newRow("nothing to start") << QByteArray("[Desktop Entry]\nType=Application\nName=A\n");
    QTest::newRow("program not installed")
        << QByteArray("[Desktop Entry]\nType=Application\nName=A\nExec=true\nTryExec=/no/such/program\n");
    QTest::newRow("deleted") << QByteArray("[Desktop Entry]\nType=Application\nName=A\nExec=true\nHidden=true\n");
    QTest::newRow("other group") << QByteArray("[Desktop Action]\nType=Application\nName=A\nExec=true\n");
}

void DesktopEntriesTest::what_is_no_application_is_none()
{
    QFETCH(const QByteArray, text);
    QFile file(folder->filePath(u"a.desktop"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
    file.close();
    QVERIFY(!readDesktopEntry(at(u"a.desktop"_s)));
}

void DesktopEntriesTest::a_pipe_is_never_opened()
{
    QCOMPARE(::mkfifo(at(u"a.desktop"_s).constData(), 0600), 0);
    QVERIFY(!readDesktopEntry(at(u"a.desktop"_s)));
    QVERIFY(!readDesktopEntry(at(u"missing.desktop"_s)));
    QVERIFY(!readDesktopEntry(QFile::encodeName(folder->path())));
    QVERIFY(QDir().mkpath(folder->filePath(u"user"_s)));
    QCOMPARE(::mkfifo(at(u"user/pipe.desktop"_s).constData(), 0600), 0);
    QVERIFY(!entries().identifierNamed(u"pipe"_s));
}

void DesktopEntriesTest::an_identifier_leads_to_its_file()
{
    QVERIFY(write(u"system/org.example.Editor.desktop"_s));
    QCOMPARE(entries().path(u"org.example.Editor"_s), at(u"system/org.example.Editor.desktop"_s));
    QVERIFY(!entries().path(u"org.example.editor"_s));
    QVERIFY(!entries().path(u"org.example.Editor.desktop"_s));
    QVERIFY(!entries().path(QString()));
}

void DesktopEntriesTest::a_subfolder_counts_as_a_dash()
{
    QVERIFY(write(u"system/kde/deep/my-editor.desktop"_s));
    QVERIFY(write(u"system/kde-more/viewer.desktop"_s));
    const DesktopEntries known = entries();
    QCOMPARE(known.path(u"kde-deep-my-editor"_s), at(u"system/kde/deep/my-editor.desktop"_s));
    QCOMPARE(known.path(u"kde-more-viewer"_s), at(u"system/kde-more/viewer.desktop"_s));
    QCOMPARE(known.identifier(at(u"system/kde/deep/my-editor.desktop"_s)), u"kde-deep-my-editor"_s);
    QCOMPARE(known.identifierNamed(u"KDE-deep-my-editor"_s), u"kde-deep-my-editor"_s);
    QVERIFY(!known.path(u"kde-deep-my"_s));
}

void DesktopEntriesTest::an_identifier_that_is_a_path_leads_nowhere()
{
    QVERIFY(write(u"system/sub/a.desktop"_s));
    QVERIFY(write(u"outside.desktop"_s));
    QVERIFY(!entries().path(u"sub/a"_s));
    QVERIFY(!entries().path(u"../outside"_s));
    QVERIFY(!entries().path(u"a"_s + QChar::Null));
}

void DesktopEntriesTest::an_earlier_folder_stands_in_for_a_later_one()
{
    QVERIFY(write(u"user/a.desktop"_s));
    QVERIFY(write(u"system/a.desktop"_s));
    QCOMPARE(entries().path(u"a"_s), at(u"user/a.desktop"_s));
    // An entry in the user's folder can also mark it as deleted.
    QVERIFY(write(u"user/b.desktop"_s, "Exec=true\nHidden=true\n"));
    QVERIFY(write(u"system/b.desktop"_s, "Exec=true\nStartupWMClass=bee\n"));
    QVERIFY(!entries().path(u"b"_s) || !readDesktopEntry(*entries().path(u"b"_s)));
    QVERIFY(!entries().identifierNamed(u"b"_s));
    QVERIFY(!entries().identifierForWindowClass(u"bee"_s));
}

void DesktopEntriesTest::a_files_identifier_is_its_path_below_the_folder()
{
    QVERIFY(write(u"user/a.desktop"_s));
    QVERIFY(write(u"elsewhere/b.desktop"_s));
    QCOMPARE(entries().identifier(at(u"user/a.desktop"_s)), u"a"_s);
    QCOMPARE(entries().identifier(at(u"user/../user//a.desktop"_s)), u"a"_s);
    QCOMPARE(entries().identifier(at(u"elsewhere/b.desktop"_s)), u"b"_s);
    QVERIFY(!entries().identifier(at(u"user/a.txt"_s)));
}

void DesktopEntriesTest::a_link_from_elsewhere_has_the_identifier_of_its_entry()
{
    QVERIFY(write(u"system/kde/a.desktop"_s));
    QCOMPARE(::symlink(at(u"system/kde/a.desktop"_s).constData(), at(u"Shortcut.desktop"_s).constData()), 0);
    QCOMPARE(entries().identifier(at(u"Shortcut.desktop"_s)), u"kde-a"_s);
    // A link in a folder of applications is an entry itself. Flatpak and Snap export entries in this way.
    QVERIFY(QDir().mkpath(folder->filePath(u"user"_s)));
    QCOMPARE(::symlink(at(u"system/kde/a.desktop"_s).constData(), at(u"user/exported.desktop"_s).constData()), 0);
    QCOMPARE(entries().identifier(at(u"user/exported.desktop"_s)), u"exported"_s);
}

void DesktopEntriesTest::a_loop_of_links_ends()
{
    QVERIFY(write(u"user/a.desktop"_s));
    QCOMPARE(::symlink("loop.desktop", at(u"user/loop.desktop"_s).constData()), 0);
    QCOMPARE(::symlink(".", at(u"user/again"_s).constData()), 0);
    const DesktopEntries known = entries();
    QVERIFY(!known.path(u"loop"_s));
    QVERIFY(!readDesktopEntry(at(u"user/loop.desktop"_s)));
    QVERIFY(!known.identifierNamed(u"loop"_s));
    QCOMPARE(known.identifierNamed(u"a"_s), u"a"_s);
}

void DesktopEntriesTest::a_window_class_leads_to_the_entry_that_states_it()
{
    QVERIFY(write(u"system/org.example.Editor.desktop"_s,
                  "Exec=true\nStartupWMClass = Example-Editor\n[Desktop Action new]\nStartupWMClass=other\n"));
    QCOMPARE(entries().identifierForWindowClass(u"Example-Editor"_s), u"org.example.Editor"_s);
    QCOMPARE(entries().identifierForWindowClass(u"example-editor"_s), u"org.example.Editor"_s);
    QVERIFY(!entries().identifierForWindowClass(u"other"_s));
    QVERIFY(!entries().identifierForWindowClass(QString()));
}

void DesktopEntriesTest::a_listed_entry_goes_before_one_that_no_menu_shows()
{
    QVERIFY(write(u"system/a-helper.desktop"_s, "Exec=true\nNoDisplay=true\nStartupWMClass=editor\n"));
    QVERIFY(write(u"system/editor.desktop"_s, "Exec=true\nStartupWMClass=editor\n"));
    QVERIFY(write(u"system/z-other.desktop"_s, "Exec=true\nStartupWMClass=editor\n"));
    QCOMPARE(entries().identifierForWindowClass(u"editor"_s), u"editor"_s);
}

void DesktopEntriesTest::an_entry_that_comes_or_goes_is_noticed()
{
    const DesktopEntries known = entries();
    QVERIFY(!known.identifierNamed(u"a"_s));
    QVERIFY(write(u"user/sub/b.desktop"_s));
    QCOMPARE(known.identifierNamed(u"sub-b"_s), u"sub-b"_s);
    QTest::qWait(20); // a file system's clock ticks in milliseconds
    QVERIFY(write(u"user/sub/a.desktop"_s));
    QCOMPARE(known.identifierNamed(u"sub-a"_s), u"sub-a"_s);
    QTest::qWait(20);
    QVERIFY(QFile::remove(folder->filePath(u"user/sub/a.desktop"_s)));
    QVERIFY(!known.identifierNamed(u"sub-a"_s));
}

void DesktopEntriesTest::the_standard_folders_include_those_of_flatpak_and_snap()
{
    const QStringList folders = DesktopEntries::standardFolders();
    QCOMPARE(folders.first(), qEnvironmentVariable("XDG_DATA_HOME") + u"/applications"_s);
    for (const QString &name : {u"/usr/share/applications"_s, u"/var/lib/flatpak/exports/share/applications"_s,
                                qEnvironmentVariable("XDG_DATA_HOME") + u"/flatpak/exports/share/applications"_s,
                                u"/var/lib/snapd/desktop/applications"_s})
        QCOMPARE(folders.count(name), 1);
}

void DesktopEntriesTest::what_a_window_says_outright_counts_first()
{
    for (const char *name : {"kde", "gtk", "sandbox", "instance", "class"})
        QVERIFY(write(u"system/%1.desktop"_s.arg(QLatin1String(name))));
    QVERIFY(write(u"system/stated.desktop"_s, "Exec=true\nStartupWMClass=class\n"));
    const DesktopEntries known = entries();
    WindowIdentity window{u"kde"_s, u"gtk"_s, u"sandbox"_s, u"class"_s, u"instance"_s};
    QCOMPARE(bundleIdentifier(window, known), u"kde"_s);
    window.desktopFile.clear();
    QCOMPARE(bundleIdentifier(window, known), u"gtk"_s);
    window.applicationId.clear();
    QCOMPARE(bundleIdentifier(window, known), u"sandbox"_s);
    window.sandboxId.clear();
    QCOMPARE(bundleIdentifier(window, known), u"stated"_s);
    QVERIFY(QFile::remove(folder->filePath(u"system/stated.desktop"_s)));
    QCOMPARE(bundleIdentifier(window, entries()), u"class"_s);
    window.className = u"unknown"_s;
    QCOMPARE(bundleIdentifier(window, entries()), u"instance"_s);
}

void DesktopEntriesTest::an_entry_may_be_named_by_its_file()
{
    QVERIFY(write(u"system/kde/editor.desktop"_s));
    const DesktopEntries known = entries();
    WindowIdentity window;
    window.desktopFile = u"kde-editor.desktop"_s;
    QCOMPARE(bundleIdentifier(window, known), u"kde-editor"_s);
    window.desktopFile = folder->filePath(u"system/kde/editor.desktop"_s);
    QCOMPARE(bundleIdentifier(window, known), u"kde-editor"_s);
}

void DesktopEntriesTest::a_window_class_is_compared_in_any_case()
{
    QVERIFY(write(u"system/thunar.desktop"_s));
    WindowIdentity window;
    window.className = u"Thunar"_s;
    QCOMPARE(bundleIdentifier(window, entries()), u"thunar"_s);
    // The application ID of a window may differ from the name of its entry.
    window.applicationId = u"org.xfce.Thunar"_s;
    QCOMPARE(bundleIdentifier(window, entries()), u"thunar"_s);
}

void DesktopEntriesTest::an_unknown_identifier_counts_when_nothing_else_leads_to_an_entry()
{
    WindowIdentity window;
    window.applicationId = u"org.example.Unknown"_s;
    window.className = u"unknown"_s;
    QCOMPARE(bundleIdentifier(window, entries()), u"org.example.Unknown"_s);
}

void DesktopEntriesTest::a_window_that_says_nothing_has_no_identifier()
{
    QVERIFY(write(u"system/a.desktop"_s));
    QVERIFY(!bundleIdentifier(WindowIdentity(), entries()));
    WindowIdentity window;
    window.className = u"XTerm"_s;
    window.instanceName = u"xterm"_s;
    QVERIFY(!bundleIdentifier(window, entries()));
}

void DesktopEntriesTest::a_process_in_a_sandbox_has_its_identifier_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("identifier");
    const QString groups = u"cgroup"_s;
    const QByteArray slice = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/";
    QTest::newRow("flatpak") << u"root/.flatpak-info"_s
                             << QByteArray("[Application]\nname=org.example.Editor\nruntime=runtime/x\n\n[Instance]\n")
                             << u"org.example.Editor"_s;
    QTest::newRow("snap") << groups << slice + "snap.fire-fox.fire-fox-0a1b2c3d-0123-4567-89ab-0123456789ab.scope\n"
                          << u"fire-fox_fire-fox"_s;
    QTest::newRow("snap of one run") << groups << slice + "snap.editor.viewer.scope\n" << u"editor_viewer"_s;
    QTest::newRow("snap service") << groups << QByteArray("0::/system.slice/snap.editor.daemon.service\n")
                                  << u"editor_daemon"_s;
    QTest::newRow("neither") << groups << slice + "app-org.example.scope\n" << QString();
    QTest::newRow("rubbish") << u"root/.flatpak-info"_s << QByteArray("\xff\0name=", 7) << QString();
}

void DesktopEntriesTest::a_process_in_a_sandbox_has_its_identifier()
{
    QFETCH(const QString, file);
    QFETCH(const QByteArray, text);
    QVERIFY(QDir(folder->path()).mkdir(u"root"_s));
    QFile info(folder->filePath(file));
    QVERIFY(info.open(QIODevice::WriteOnly));
    QCOMPARE(info.write(text), text.size());
    info.close();
    QTEST(sandboxIdentifier(QFile::encodeName(folder->path())), "identifier");
}

void DesktopEntriesTest::a_process_outside_of_a_sandbox_has_no_identifier_from_it()
{
    QCOMPARE(sandboxIdentifier("/proc/self"), QString());
    QCOMPARE(sandboxIdentifier("/proc/0"), QString());
    // Files in /proc have size 0.
    QVERIFY(!readRegularFile("/proc/self/status", 1 << 16)->isEmpty());
}

PARKLET_GUILESS_TEST(DesktopEntriesTest)
#include "DesktopEntriesTest.moc"
