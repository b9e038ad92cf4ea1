// SPDX-License-Identifier: MIT
#include "platform/common/QtPasteboard.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

class QtPasteboardTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QGuiApplication::clipboard()->clear(); }

    void files_come_in_their_order();
    void an_empty_clipboard_holds_no_files();
    void plain_text_is_no_file();
    void a_web_address_is_no_file();
    void one_web_address_beside_files_makes_the_whole_count_as_empty_data();
    void one_web_address_beside_files_makes_the_whole_count_as_empty();
};

namespace {

const QUrl kWebAddress(u"https://example.com/a.txt"_s);

void copy(const QList<QUrl> &urls)
{
    auto *const data = new QMimeData;
    data->setUrls(urls);
    QGuiApplication::clipboard()->setMimeData(data); // which takes it over
}

QList<QUrl> readFiles()
{
    std::optional<QList<QUrl>> files;
    QtPasteboard().readFileURLs([&files](const QList<QUrl> &urls) { files = urls; });
    return files.value();
}

QUrl file(const char *path)
{
    return QUrl::fromLocalFile(QString::fromLatin1(path));
}

} // namespace

void QtPasteboardTest::files_come_in_their_order()
{
    const QList<QUrl> urls = {file("/z.txt"), file("/a folder/b.txt"), file("/m.txt")};
    copy(urls);
    QCOMPARE(readFiles(), urls);
    // Each call reads it again.
    copy(urls.mid(1));
    QCOMPARE(readFiles(), urls.mid(1));
}

void QtPasteboardTest::an_empty_clipboard_holds_no_files()
{
    QGuiApplication::clipboard()->clear();
    QCOMPARE(readFiles(), QList<QUrl>());
    copy({});
    QCOMPARE(readFiles(), QList<QUrl>());
}

void QtPasteboardTest::plain_text_is_no_file()
{
    for (const char *text : {"some words", "/a.txt", "file:///a.txt"}) {
        QGuiApplication::clipboard()->setText(QString::fromLatin1(text));
        QCOMPARE(readFiles(), QList<QUrl>());
    }
}

void QtPasteboardTest::a_web_address_is_no_file()
{
    copy({kWebAddress});
    QCOMPARE(readFiles(), QList<QUrl>());
}

void QtPasteboardTest::one_web_address_beside_files_makes_the_whole_count_as_empty_data()
{
    QTest::addColumn<QList<QUrl>>("urls");
    QTest::newRow("first") << QList<QUrl>{kWebAddress, file("/a.txt"), file("/b.txt")};
    QTest::newRow("between") << QList<QUrl>{file("/a.txt"), kWebAddress, file("/b.txt")};
    QTest::newRow("last") << QList<QUrl>{file("/a.txt"), file("/b.txt"), kWebAddress};
}

void QtPasteboardTest::one_web_address_beside_files_makes_the_whole_count_as_empty()
{
    QFETCH(const QList<QUrl>, urls);
    copy(urls);
    QCOMPARE(readFiles(), QList<QUrl>());
}

PARKLET_TEST(QtPasteboardTest)
#include "QtPasteboardTest.moc"
