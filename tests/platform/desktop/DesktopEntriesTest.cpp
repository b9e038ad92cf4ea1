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
        return DesktopEntries({folder->filePath(QStringLiteral("user")), folder->filePath(QStringLiteral("system"))});
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

// An entry below the test's folder with what every entry has, and `keys`.
bool DesktopEntriesTest::write(const QString &name, const QByteArray &keys) const
{
    const QString path = folder->filePath(name);
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write("[Desktop Entry]\nType=Application\nName=Text Editor\nIcon=accessories-text-editor\n" + keys) > 0;
}

void DesktopEntriesTest::an_entry_states_its_name_and_icon()
{
    QVERIFY(write(QStringLiteral("a.desktop")));
    const auto entry = readDesktopEntry(at(QStringLiteral("a.desktop")));
    QVERIFY(entry);
    QCOMPARE(entry->name, QStringLiteral("Text Editor"));
    QCOMPARE(entry->icon, QStringLiteral("accessories-text-editor"));

    QFile file(folder->filePath(QStringLiteral("bare.desktop")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Desktop Entry]\nType=Application\nExec=true\n");
    file.close();
    const auto bare = readDesktopEntry(at(QStringLiteral("bare.desktop")));
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
    QFile file(folder->filePath(QStringLiteral("a.desktop")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
    file.close();
    QVERIFY(!readDesktopEntry(at(QStringLiteral("a.desktop"))));
}

void DesktopEntriesTest::a_pipe_is_never_opened()
{
    QCOMPARE(::mkfifo(at(QStringLiteral("a.desktop")).constData(), 0600), 0);
    QVERIFY(!readDesktopEntry(at(QStringLiteral("a.desktop"))));
    QVERIFY(!readDesktopEntry(at(QStringLiteral("missing.desktop"))));
    QVERIFY(!readDesktopEntry(QFile::encodeName(folder->path())));
    QVERIFY(QDir().mkpath(folder->filePath(QStringLiteral("user"))));
    QCOMPARE(::mkfifo(at(QStringLiteral("user/pipe.desktop")).constData(), 0600), 0);
    QVERIFY(!entries().identifierNamed(QStringLiteral("pipe")));
}

void DesktopEntriesTest::an_identifier_leads_to_its_file()
{
    QVERIFY(write(QStringLiteral("system/org.example.Editor.desktop")));
    QCOMPARE(entries().path(QStringLiteral("org.example.Editor")),
             at(QStringLiteral("system/org.example.Editor.desktop")));
    QVERIFY(!entries().path(QStringLiteral("org.example.editor")));
    QVERIFY(!entries().path(QStringLiteral("org.example.Editor.desktop")));
    QVERIFY(!entries().path(QString()));
}

void DesktopEntriesTest::a_subfolder_counts_as_a_dash()
{
    QVERIFY(write(QStringLiteral("system/kde/deep/my-editor.desktop")));
    QVERIFY(write(QStringLiteral("system/kde-more/viewer.desktop")));
    const DesktopEntries known = entries();
    QCOMPARE(known.path(QStringLiteral("kde-deep-my-editor")), at(QStringLiteral("system/kde/deep/my-editor.desktop")));
    QCOMPARE(known.path(QStringLiteral("kde-more-viewer")), at(QStringLiteral("system/kde-more/viewer.desktop")));
    QCOMPARE(known.identifier(at(QStringLiteral("system/kde/deep/my-editor.desktop"))),
             QStringLiteral("kde-deep-my-editor"));
    QCOMPARE(known.identifierNamed(QStringLiteral("KDE-deep-my-editor")), QStringLiteral("kde-deep-my-editor"));
    QVERIFY(!known.path(QStringLiteral("kde-deep-my")));
}

void DesktopEntriesTest::an_identifier_that_is_a_path_leads_nowhere()
{
    QVERIFY(write(QStringLiteral("system/sub/a.desktop")));
    QVERIFY(write(QStringLiteral("outside.desktop")));
    QVERIFY(!entries().path(QStringLiteral("sub/a")));
    QVERIFY(!entries().path(QStringLiteral("../outside")));
    QVERIFY(!entries().path(QStringLiteral("a") + QChar::Null));
}

void DesktopEntriesTest::an_earlier_folder_stands_in_for_a_later_one()
{
    QVERIFY(write(QStringLiteral("user/a.desktop")));
    QVERIFY(write(QStringLiteral("system/a.desktop")));
    QCOMPARE(entries().path(QStringLiteral("a")), at(QStringLiteral("user/a.desktop")));
    // Also to make it count as deleted.
    QVERIFY(write(QStringLiteral("user/b.desktop"), "Exec=true\nHidden=true\n"));
    QVERIFY(write(QStringLiteral("system/b.desktop"), "Exec=true\nStartupWMClass=bee\n"));
    QVERIFY(!entries().path(QStringLiteral("b")) || !readDesktopEntry(*entries().path(QStringLiteral("b"))));
    QVERIFY(!entries().identifierNamed(QStringLiteral("b")));
    QVERIFY(!entries().identifierForWindowClass(QStringLiteral("bee")));
}

void DesktopEntriesTest::a_files_identifier_is_its_path_below_the_folder()
{
    QVERIFY(write(QStringLiteral("user/a.desktop")));
    QVERIFY(write(QStringLiteral("elsewhere/b.desktop")));
    QCOMPARE(entries().identifier(at(QStringLiteral("user/a.desktop"))), QStringLiteral("a"));
    QCOMPARE(entries().identifier(at(QStringLiteral("user/../user//a.desktop"))), QStringLiteral("a"));
    QCOMPARE(entries().identifier(at(QStringLiteral("elsewhere/b.desktop"))), QStringLiteral("b"));
    QVERIFY(!entries().identifier(at(QStringLiteral("user/a.txt"))));
}

void DesktopEntriesTest::a_link_from_elsewhere_has_the_identifier_of_its_entry()
{
    QVERIFY(write(QStringLiteral("system/kde/a.desktop")));
    QCOMPARE(::symlink(at(QStringLiteral("system/kde/a.desktop")).constData(),
                       at(QStringLiteral("Shortcut.desktop")).constData()),
             0);
    QCOMPARE(entries().identifier(at(QStringLiteral("Shortcut.desktop"))), QStringLiteral("kde-a"));
    // A link inside a folder of applications is an entry itself: this is how Flatpak and Snap export them.
    QVERIFY(QDir().mkpath(folder->filePath(QStringLiteral("user"))));
    QCOMPARE(::symlink(at(QStringLiteral("system/kde/a.desktop")).constData(),
                       at(QStringLiteral("user/exported.desktop")).constData()),
             0);
    QCOMPARE(entries().identifier(at(QStringLiteral("user/exported.desktop"))), QStringLiteral("exported"));
}

void DesktopEntriesTest::a_loop_of_links_ends()
{
    QVERIFY(write(QStringLiteral("user/a.desktop")));
    QCOMPARE(::symlink("loop.desktop", at(QStringLiteral("user/loop.desktop")).constData()), 0);
    QCOMPARE(::symlink(".", at(QStringLiteral("user/again")).constData()), 0);
    const DesktopEntries known = entries();
    QVERIFY(!known.path(QStringLiteral("loop")));
    QVERIFY(!readDesktopEntry(at(QStringLiteral("user/loop.desktop"))));
    QVERIFY(!known.identifierNamed(QStringLiteral("loop")));
    QCOMPARE(known.identifierNamed(QStringLiteral("a")), QStringLiteral("a"));
}

void DesktopEntriesTest::a_window_class_leads_to_the_entry_that_states_it()
{
    QVERIFY(write(QStringLiteral("system/org.example.Editor.desktop"),
                  "Exec=true\nStartupWMClass = Example-Editor\n[Desktop Action new]\nStartupWMClass=other\n"));
    QCOMPARE(entries().identifierForWindowClass(QStringLiteral("Example-Editor")),
             QStringLiteral("org.example.Editor"));
    QCOMPARE(entries().identifierForWindowClass(QStringLiteral("example-editor")),
             QStringLiteral("org.example.Editor"));
    QVERIFY(!entries().identifierForWindowClass(QStringLiteral("other")));
    QVERIFY(!entries().identifierForWindowClass(QString()));
}

void DesktopEntriesTest::a_listed_entry_goes_before_one_that_no_menu_shows()
{
    QVERIFY(write(QStringLiteral("system/a-helper.desktop"), "Exec=true\nNoDisplay=true\nStartupWMClass=editor\n"));
    QVERIFY(write(QStringLiteral("system/editor.desktop"), "Exec=true\nStartupWMClass=editor\n"));
    QVERIFY(write(QStringLiteral("system/z-other.desktop"), "Exec=true\nStartupWMClass=editor\n"));
    QCOMPARE(entries().identifierForWindowClass(QStringLiteral("editor")), QStringLiteral("editor"));
}

void DesktopEntriesTest::an_entry_that_comes_or_goes_is_noticed()
{
    const DesktopEntries known = entries();
    QVERIFY(!known.identifierNamed(QStringLiteral("a")));
    QVERIFY(write(QStringLiteral("user/sub/b.desktop")));
    QCOMPARE(known.identifierNamed(QStringLiteral("sub-b")), QStringLiteral("sub-b"));
    QTest::qWait(20); // a file system's clock ticks in milliseconds
    QVERIFY(write(QStringLiteral("user/sub/a.desktop")));
    QCOMPARE(known.identifierNamed(QStringLiteral("sub-a")), QStringLiteral("sub-a"));
    QTest::qWait(20);
    QVERIFY(QFile::remove(folder->filePath(QStringLiteral("user/sub/a.desktop"))));
    QVERIFY(!known.identifierNamed(QStringLiteral("sub-a")));
}

void DesktopEntriesTest::the_standard_folders_include_those_of_flatpak_and_snap()
{
    const QStringList folders = DesktopEntries::standardFolders();
    QCOMPARE(folders.first(), qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/applications"));
    for (const QString &name :
         {QStringLiteral("/usr/share/applications"), QStringLiteral("/var/lib/flatpak/exports/share/applications"),
          qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/flatpak/exports/share/applications"),
          QStringLiteral("/var/lib/snapd/desktop/applications")})
        QCOMPARE(folders.count(name), 1);
}

void DesktopEntriesTest::what_a_window_says_outright_counts_first()
{
    for (const char *name : {"kde", "gtk", "sandbox", "instance", "class"})
        QVERIFY(write(QStringLiteral("system/%1.desktop").arg(QLatin1String(name))));
    QVERIFY(write(QStringLiteral("system/stated.desktop"), "Exec=true\nStartupWMClass=class\n"));
    const DesktopEntries known = entries();
    WindowIdentity window{QStringLiteral("kde"), QStringLiteral("gtk"), QStringLiteral("sandbox"),
                          QStringLiteral("class"), QStringLiteral("instance")};
    QCOMPARE(bundleIdentifier(window, known), QStringLiteral("kde"));
    window.desktopFile.clear();
    QCOMPARE(bundleIdentifier(window, known), QStringLiteral("gtk"));
    window.applicationId.clear();
    QCOMPARE(bundleIdentifier(window, known), QStringLiteral("sandbox"));
    window.sandboxId.clear();
    QCOMPARE(bundleIdentifier(window, known), QStringLiteral("stated"));
    QVERIFY(QFile::remove(folder->filePath(QStringLiteral("system/stated.desktop"))));
    QCOMPARE(bundleIdentifier(window, entries()), QStringLiteral("class"));
    window.className = QStringLiteral("unknown");
    QCOMPARE(bundleIdentifier(window, entries()), QStringLiteral("instance"));
}

void DesktopEntriesTest::an_entry_may_be_named_by_its_file()
{
    QVERIFY(write(QStringLiteral("system/kde/editor.desktop")));
    const DesktopEntries known = entries();
    WindowIdentity window;
    window.desktopFile = QStringLiteral("kde-editor.desktop");
    QCOMPARE(bundleIdentifier(window, known), QStringLiteral("kde-editor"));
    window.desktopFile = folder->filePath(QStringLiteral("system/kde/editor.desktop"));
    QCOMPARE(bundleIdentifier(window, known), QStringLiteral("kde-editor"));
}

void DesktopEntriesTest::a_window_class_is_compared_in_any_case()
{
    QVERIFY(write(QStringLiteral("system/thunar.desktop")));
    WindowIdentity window;
    window.className = QStringLiteral("Thunar");
    QCOMPARE(bundleIdentifier(window, entries()), QStringLiteral("thunar"));
    // What the program says of itself may not be the name of its entry.
    window.applicationId = QStringLiteral("org.xfce.Thunar");
    QCOMPARE(bundleIdentifier(window, entries()), QStringLiteral("thunar"));
}

void DesktopEntriesTest::an_unknown_identifier_counts_when_nothing_else_leads_to_an_entry()
{
    WindowIdentity window;
    window.applicationId = QStringLiteral("org.example.Unknown");
    window.className = QStringLiteral("unknown");
    QCOMPARE(bundleIdentifier(window, entries()), QStringLiteral("org.example.Unknown"));
}

void DesktopEntriesTest::a_window_that_says_nothing_has_no_identifier()
{
    QVERIFY(write(QStringLiteral("system/a.desktop")));
    QVERIFY(!bundleIdentifier(WindowIdentity(), entries()));
    WindowIdentity window;
    window.className = QStringLiteral("XTerm");
    window.instanceName = QStringLiteral("xterm");
    QVERIFY(!bundleIdentifier(window, entries()));
}

void DesktopEntriesTest::a_process_in_a_sandbox_has_its_identifier_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("identifier");
    const QString groups = QStringLiteral("cgroup");
    const QByteArray slice = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/";
    QTest::newRow("flatpak") << QStringLiteral("root/.flatpak-info")
                             << QByteArray("[Application]\nname=org.example.Editor\nruntime=runtime/x\n\n[Instance]\n")
                             << QStringLiteral("org.example.Editor");
    QTest::newRow("snap") << groups << slice + "snap.fire-fox.fire-fox-0a1b2c3d-0123-4567-89ab-0123456789ab.scope\n"
                          << QStringLiteral("fire-fox_fire-fox");
    QTest::newRow("snap of one run") << groups << slice + "snap.editor.viewer.scope\n"
                                     << QStringLiteral("editor_viewer");
    QTest::newRow("snap service") << groups << QByteArray("0::/system.slice/snap.editor.daemon.service\n")
                                  << QStringLiteral("editor_daemon");
    QTest::newRow("neither") << groups << slice + "app-org.example.scope\n" << QString();
    QTest::newRow("rubbish") << QStringLiteral("root/.flatpak-info") << QByteArray("\xff\0name=", 7) << QString();
}

void DesktopEntriesTest::a_process_in_a_sandbox_has_its_identifier()
{
    QFETCH(const QString, file);
    QFETCH(const QByteArray, text);
    QVERIFY(QDir(folder->path()).mkdir(QStringLiteral("root")));
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
    // The system's files state no size.
    QVERIFY(!readRegularFile("/proc/self/status", 1 << 16)->isEmpty());
}

PARKLET_GUILESS_TEST(DesktopEntriesTest)
#include "DesktopEntriesTest.moc"
