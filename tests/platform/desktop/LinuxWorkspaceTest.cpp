// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/LinuxWorkspace.h"

#include "platform/common/QtMainQueue.h"
#include "platform/linux/helpers/FileHelpers.h"
#include "platform/linux/x11/XcbConnection.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class LinuxWorkspaceTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void every_file_has_an_icon_data();
    void every_file_has_an_icon();
    void a_file_without_any_theme_has_a_drawn_icon();
    void a_folder_has_another_icon_than_a_file();
    void an_icon_of_a_pipe_or_of_a_name_that_is_no_text_does_not_block();
    void the_icon_is_by_the_name_alone();
    void a_full_theme_steps_in_for_the_empty_one();

    void an_application_has_its_name_and_icon();
    void an_application_without_a_name_is_called_by_its_identifier();
    void a_broken_icon_gives_the_one_of_all_applications();
    void an_uninstalled_application_is_none();
    void a_chosen_file_that_is_no_application_is_none();
    void a_chosen_entry_leads_back_to_its_application();
    void the_applications_folder_is_the_fullest();

    void a_file_is_opened_by_its_types_application();
    void a_file_is_opened_by_its_contents_where_the_name_says_nothing();
    void a_name_that_is_no_text_reaches_the_application();
    void an_address_is_opened_by_its_schemes_application();
    void what_nothing_opens_is_not_opened();
    void without_a_server_nothing_is_frontmost();

private:
    QUrl make(const QString &name, const QByteArray &contents) const;
    bool addEntry(const QString &identifier, const QByteArray &keys) const;
    QString at(const QString &name) const { return folder->filePath(name); }
    QByteArray opened() const;

    // Requests the icon of `file`, and returns the last one that was reported.
    QIcon iconOf(const QUrl &file) const;

    std::unique_ptr<QTemporaryDir> folder;
    QtMainQueue queue;
    std::shared_ptr<FileHelpers> files = std::make_shared<FileHelpers>(queue);
    std::unique_ptr<LinuxWorkspace> workspace;
    QStringList themePaths;
};

namespace {

constexpr int kPatience = 20'000; // milliseconds

QImage picture(const QIcon &icon)
{
    return icon.pixmap(QSize(48, 48), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
}

QString dataHome()
{
    return qEnvironmentVariable("XDG_DATA_HOME");
}

} // namespace

void LinuxWorkspaceTest::initTestCase()
{
    // The test's folders contain an application that writes down what it is asked to open.
    QVERIFY(QDir().mkpath(dataHome() + u"/applications"_s));
    QVERIFY(QDir().mkpath(qEnvironmentVariable("XDG_CONFIG_HOME")));
    QFile associations(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/mimeapps.list"_s);
    QVERIFY(associations.open(QIODevice::WriteOnly));
    associations.write("[Default Applications]\ntext/plain=org.example.Recorder.desktop\n"
                       "application/pdf=org.example.Recorder.desktop\n"
                       "x-scheme-handler/example=org.example.Recorder.desktop\n");
    associations.close();
    QFile entry(dataHome() + u"/applications/org.example.Recorder.desktop"_s);
    QVERIFY(entry.open(QIODevice::WriteOnly));
    const QByteArray home = QFile::encodeName(dataHome());
    entry.write("[Desktop Entry]\nType=Application\nName=Recorder\nExec=\"" + home + "/record\" %u\n");
    entry.close();
    QFile record(dataHome() + u"/record"_s);
    QVERIFY(record.open(QIODevice::WriteOnly));
    // The file appears under its name once it is complete.
    record.write("#!/bin/sh\ncd '" + home + "' && printf %s \"$1\" >new && mv new opened\n");
    record.close();
    QVERIFY(record.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    themePaths = QIcon::themeSearchPaths();
}

void LinuxWorkspaceTest::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QFile::remove(dataHome() + u"/opened"_s);
    QIcon::setThemeSearchPaths({at(u"icons"_s)});
    workspace = std::make_unique<LinuxWorkspace>(nullptr, files, DesktopEntries({at(u"user"_s), at(u"system"_s)}));
}

void LinuxWorkspaceTest::cleanup()
{
    workspace.reset();
    QIcon::setThemeSearchPaths(themePaths);
    folder.reset();
}

QUrl LinuxWorkspaceTest::make(const QString &name, const QByteArray &contents) const
{
    QFile file(at(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        return {};
    return QUrl::fromLocalFile(at(name));
}

bool LinuxWorkspaceTest::addEntry(const QString &identifier, const QByteArray &keys) const
{
    QDir().mkpath(at(u"user"_s));
    return make(u"user/"_s + identifier + u".desktop"_s, "[Desktop Entry]\nType=Application\nExec=true\n" + keys)
        .isValid();
}

// The argument with which the recording application was started.
QByteArray LinuxWorkspaceTest::opened() const
{
    QFile file(dataHome() + u"/opened"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QIcon LinuxWorkspaceTest::iconOf(const QUrl &file) const
{
    QIcon found;
    workspace->icon(file, [&found](const QIcon &icon) { found = icon; });
    [&found] { QTRY_VERIFY_WITH_TIMEOUT(!found.isNull(), kPatience); }();
    return found;
}

void LinuxWorkspaceTest::every_file_has_an_icon_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("text") << u"/tmp/a.txt"_s;
    QTest::newRow("picture") << u"/tmp/a.png"_s;
    QTest::newRow("unknown") << u"/tmp/a.unknown-suffix"_s;
    QTest::newRow("no suffix") << u"/tmp/README"_s;
    QTest::newRow("no name") << u"/"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("folder") << u"/usr/"_s;
    QTest::newRow("device") << u"/dev/null"_s;
    QTest::newRow("gone") << u"/no/such/file.pdf"_s;
    QTest::newRow("dots") << u"/tmp/..."_s;
    QTest::newRow("new line") << u"/tmp/a\nb.txt"_s;
}

void LinuxWorkspaceTest::every_file_has_an_icon()
{
    QFETCH(const QString, path);
    for (const QStringList &paths : {QStringList{at(u"icons"_s)}, themePaths}) {
        QIcon::setThemeSearchPaths(paths);
        const QIcon icon = iconOf(QUrl::fromLocalFile(path));
        QVERIFY(!icon.isNull());
        for (const int size : {16, 72, 240})
            QCOMPARE(icon.pixmap(QSize(size, size), 1.0).isNull(), false);
    }
}

void LinuxWorkspaceTest::a_file_without_any_theme_has_a_drawn_icon()
{
    const QImage drawn = picture(iconOf(QUrl(u"file:///tmp/a.txt"_s)));
    QCOMPARE(drawn.size(), QSize(48, 48));
    QCOMPARE(drawn.pixelColor(24, 40).alpha(), 255);
    QCOMPARE(drawn.pixelColor(0, 0).alpha(), 0);
}

void LinuxWorkspaceTest::a_folder_has_another_icon_than_a_file()
{
    QVERIFY(picture(iconOf(QUrl::fromLocalFile(folder->path()))) != picture(iconOf(QUrl(u"file:///tmp/a.txt"_s))));
    QCOMPARE(picture(iconOf(QUrl::fromLocalFile(folder->path() + QLatin1Char('/')))),
             picture(iconOf(QUrl::fromLocalFile(folder->path()))));
}

void LinuxWorkspaceTest::an_icon_of_a_pipe_or_of_a_name_that_is_no_text_does_not_block()
{
    const QString pipe = at(u"pipe"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!iconOf(QUrl::fromLocalFile(pipe)).isNull());
    QCOMPARE(mimeTypeByName(QFile::encodeName(pipe), FileKind::Fifo), u"inode/fifo"_s);

    // A folder whose name is not UTF-8 is still found.
    const QByteArray name = QFile::encodeName(folder->path()) + "/na\xefve";
    QCOMPARE(::mkdir(name.constData(), 0700), 0);
    const QUrl url = QUrl::fromEncoded("file://" + name.toPercentEncoding("/"));
    QCOMPARE(picture(iconOf(url)), picture(iconOf(QUrl::fromLocalFile(folder->path()))));
    QCOMPARE(::rmdir(name.constData()), 0); // Qt cannot remove it
}

void LinuxWorkspaceTest::the_icon_is_by_the_name_alone()
{
    const QUrl file = make(u"picture.png"_s, "%PDF-1.4 not a picture");
    QCOMPARE(::chmod(QFile::encodeName(file.toLocalFile()).constData(), 0), 0);
    QCOMPARE(mimeTypeByName(QFile::encodeName(file.toLocalFile()), FileKind::Regular), u"image/png"_s);
    QCOMPARE(mimeTypeByName("/no/such/a.pdf", FileKind::Missing), u"application/pdf"_s);
    QCOMPARE(mimeTypeByName("/no/such/a", FileKind::Missing), u"application/octet-stream"_s);
}

void LinuxWorkspaceTest::a_full_theme_steps_in_for_the_empty_one()
{
    // Two icon themes have one icon each: that of a broken file, and that of a picture.
    QVERIFY(QDir().mkpath(at(u"icons/breeze/32x32/mimetypes"_s)));
    QVERIFY(make(u"icons/breeze/index.theme"_s,
                 "[Icon Theme]\nName=breeze\nDirectories=32x32/mimetypes\n[32x32/mimetypes]\nSize=32\n")
                .isValid());
    QImage red(32, 32, QImage::Format_ARGB32);
    red.fill(Qt::red);
    QVERIFY(red.save(at(u"icons/breeze/32x32/mimetypes/image-x-generic.png"_s)));
    QVERIFY(make(u"icons/breeze/32x32/mimetypes/text-x-generic.png"_s, "broken").isValid());

    const QString before = QIcon::themeName();
    QIcon::setThemeSearchPaths({at(u"icons"_s)});
    chooseFallbackIconTheme();
    const FileIcons icons;
    QCOMPARE(picture(icons.file(QUrl(u"file:///tmp/a.png"_s), FileKind::Missing)).pixelColor(24, 24), QColor(Qt::red));
    QVERIFY(picture(icons.file(QUrl(u"file:///tmp/a.txt"_s), FileKind::Missing)).pixelColor(24, 40).alpha() == 255);
    QIcon::setThemeName(before);
}

void LinuxWorkspaceTest::an_application_has_its_name_and_icon()
{
    QImage green(32, 32, QImage::Format_ARGB32);
    green.fill(Qt::green);
    QVERIFY(green.save(at(u"editor.png"_s)));
    QVERIFY(
        addEntry(u"org.example.Editor"_s, "Name=Text Editor\nIcon=" + QFile::encodeName(at(u"editor.png"_s)) + "\n"));
    const auto application = workspace->application(u"org.example.Editor"_s);
    QVERIFY(application);
    QCOMPARE(application->bundleIdentifier, u"org.example.Editor"_s);
    QCOMPARE(application->name, u"Text Editor"_s);
    QCOMPARE(application->icon.pixmap(QSize(32, 32), 1.0).toImage().pixelColor(16, 16), QColor(Qt::green));
}

void LinuxWorkspaceTest::an_application_without_a_name_is_called_by_its_identifier()
{
    QVERIFY(addEntry(u"nameless"_s, ""));
    QCOMPARE(workspace->application(u"nameless"_s)->name, u"nameless"_s);
}

void LinuxWorkspaceTest::a_broken_icon_gives_the_one_of_all_applications()
{
    QVERIFY(make(u"broken.png"_s, "no picture").isValid());
    const QByteArray pipe = QFile::encodeName(at(u"pipe.png"_s));
    QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
    QVERIFY(addEntry(u"none"_s, "Name=A\n"));
    const QImage usual = picture(workspace->application(u"none"_s)->icon);
    QCOMPARE(usual.size(), QSize(48, 48));
    for (const QByteArray &icon : {QFile::encodeName(at(u"broken.png"_s)), pipe, QByteArray("/no/such/icon.png"),
                                   QByteArray("no-such-icon-name"), QByteArray(".png")}) {
        QVERIFY(addEntry(u"broken"_s, "Name=A\nIcon=" + icon + "\n"));
        QCOMPARE(picture(workspace->application(u"broken"_s)->icon), usual);
    }
}

void LinuxWorkspaceTest::an_uninstalled_application_is_none()
{
    QVERIFY(!workspace->application(u"org.example.Gone"_s));
    QVERIFY(!workspace->application(QString()));
    QVERIFY(addEntry(u"hidden"_s, "Name=A\nHidden=true\n"));
    QVERIFY(!workspace->application(u"hidden"_s));
}

void LinuxWorkspaceTest::a_chosen_file_that_is_no_application_is_none()
{
    QVERIFY(!workspace->bundleIdentifier(QUrl()));
    QVERIFY(!workspace->bundleIdentifier(QUrl(u"https://example.org/a.desktop"_s)));
    QVERIFY(!workspace->bundleIdentifier(QUrl::fromLocalFile(folder->path())));
    QVERIFY(!workspace->bundleIdentifier(QUrl::fromLocalFile(u"/bin/sh"_s)));
    QVERIFY(!workspace->bundleIdentifier(make(u"a.desktop"_s, "text")));
    QVERIFY(!workspace->bundleIdentifier(make(u"a.txt"_s, "[Desktop Entry]\nType=Application\nExec=true\n")));
}

void LinuxWorkspaceTest::a_chosen_entry_leads_back_to_its_application()
{
    QVERIFY(QDir().mkpath(at(u"user/kde"_s)));
    QVERIFY(addEntry(u"kde/editor"_s, "Name=Editor\n"));
    const auto identifier = workspace->bundleIdentifier(QUrl::fromLocalFile(at(u"user/kde/editor.desktop"_s)));
    QCOMPARE(identifier, u"kde-editor"_s);
    QCOMPARE(workspace->application(*identifier)->name, u"Editor"_s);
}

void LinuxWorkspaceTest::the_applications_folder_is_the_fullest()
{
    QVERIFY(addEntry(u"a"_s, "Name=A\n"));
    QCOMPARE(workspace->applicationsFolders().first(), QUrl::fromLocalFile(at(u"user"_s)));
    QVERIFY(QDir().mkpath(at(u"system"_s)));
    QVERIFY(make(u"system/b.desktop"_s, "x").isValid());
    QVERIFY(make(u"system/c.desktop"_s, "x").isValid());
    QCOMPARE(workspace->applicationsFolders(),
             QList<QUrl>({QUrl::fromLocalFile(at(u"system"_s)), QUrl::fromLocalFile(at(u"user"_s))}));
}

void LinuxWorkspaceTest::a_file_is_opened_by_its_types_application()
{
    const QUrl file = make(u"a b.txt"_s, "text");
    QVERIFY(workspace->open(file));
    QTRY_COMPARE_WITH_TIMEOUT(opened(), QFile::encodeName(file.toLocalFile()), kPatience);
}

void LinuxWorkspaceTest::a_file_is_opened_by_its_contents_where_the_name_says_nothing()
{
    const QUrl file = make(u"document"_s, "%PDF-1.4\n");
    QVERIFY(workspace->open(file));
    QTRY_COMPARE_WITH_TIMEOUT(opened(), QFile::encodeName(file.toLocalFile()), kPatience);
}

void LinuxWorkspaceTest::a_name_that_is_no_text_reaches_the_application()
{
    const QByteArray path = QFile::encodeName(folder->path()) + "/na\xefve.txt";
    const int file = ::creat(path.constData(), 0600);
    QVERIFY(file >= 0);
    ::close(file);
    const QByteArray url = "file://" + path.toPercentEncoding("/");
    QVERIFY(workspace->open(QUrl::fromEncoded(url)));
    QTRY_COMPARE_WITH_TIMEOUT(opened(), path, kPatience);
    QCOMPARE(::unlink(path.constData()), 0); // Qt cannot remove it
}

void LinuxWorkspaceTest::an_address_is_opened_by_its_schemes_application()
{
    QVERIFY(workspace->open(QUrl(u"example://host/path?a=b&c=%20d"_s)));
    QTRY_COMPARE_WITH_TIMEOUT(opened(), QByteArray("example://host/path?a=b&c=%20d"), kPatience);
}

void LinuxWorkspaceTest::what_nothing_opens_is_not_opened()
{
    const QString pipe = at(u"pipe.txt"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    workspace->open(QUrl::fromLocalFile(pipe));
    workspace->open(QUrl::fromLocalFile(at(u"gone.txt"_s)));
    workspace->open(make(u"a.unknown-suffix"_s, QByteArray("\x01\x02\0\x03", 4)));
    QVERIFY(!workspace->open(QUrl()));
    QVERIFY(!workspace->open(QUrl(u"no-such-scheme:address"_s)));
    QVERIFY(!workspace->open(QUrl(u"relative"_s)));
    // Files are examined one after the other.
    const QUrl file = make(u"last.txt"_s, "text");
    QVERIFY(workspace->open(file));
    QTRY_VERIFY_WITH_TIMEOUT(!opened().isEmpty(), kPatience);
    QCOMPARE(opened(), QFile::encodeName(file.toLocalFile()));
}

void LinuxWorkspaceTest::without_a_server_nothing_is_frontmost()
{
    QVERIFY(!workspace->frontmostBundleIdentifier());
}

PARKLET_TEST(LinuxWorkspaceTest)
#include "LinuxWorkspaceTest.moc"
