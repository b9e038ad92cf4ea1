// SPDX-License-Identifier: MIT
#include "platform/macos/MacDragPasteboard.h"

#include "platform/macos/MacConversions.h"
#include "tests/support/TestProgram.h"

#include <QTest>

#import <AppKit/AppKit.h>

// The pasteboard with something on it, as another application's drag puts it there.
class MacDragPasteboardTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { [pasteboard() clearContents]; }
    void files_that_are_put_there_are_read_in_their_order();
    void words_and_web_addresses_are_no_files();
    void a_file_beside_a_web_address_is_none();
    void what_was_there_before_is_no_drag();
    void what_is_to_be_ignored_is_ignored_until_the_next_drag();

private:
    static NSPasteboard *pasteboard() { return [NSPasteboard pasteboardWithName:NSPasteboardNameDrag]; }
    static void put(NSArray<id<NSPasteboardWriting>> *objects)
    {
        [pasteboard() clearContents];
        [pasteboard() writeObjects:objects];
    }
    static NSURL *native(const char *path) { return toNSURL(url(path)); }
    static QUrl url(const char *path) { return QUrl::fromLocalFile(QString::fromUtf8(path)); }
};

void MacDragPasteboardTest::files_that_are_put_there_are_read_in_their_order()
{
    const MacDragPasteboard drags;
    const qint64 before = drags.changeCount();
    put(@[ native("/tmp/second b.txt"), native("/tmp/first.txt") ]);
    QVERIFY(drags.changeCount() != before);
    const QList<QUrl> expected = {url("/tmp/second b.txt"), url("/tmp/first.txt")};
    QCOMPARE(drags.fileURLs(), expected);
}

void MacDragPasteboardTest::words_and_web_addresses_are_no_files()
{
    const MacDragPasteboard drags;
    put(@[ @"words" ]);
    QVERIFY(drags.fileURLs().isEmpty());
    put(@[ toNSURL(QUrl(QStringLiteral("https://orvane.example/"))) ]);
    QVERIFY(drags.fileURLs().isEmpty());
}

void MacDragPasteboardTest::a_file_beside_a_web_address_is_none()
{
    const MacDragPasteboard drags;
    NSURL *address = toNSURL(QUrl(QStringLiteral("https://orvane.example/")));
    put(@[ native("/tmp/first.txt"), address ]);
    QVERIFY(drags.fileURLs().isEmpty());
    put(@[ address, native("/tmp/first.txt") ]);
    QVERIFY(drags.fileURLs().isEmpty());
}

void MacDragPasteboardTest::what_was_there_before_is_no_drag()
{
    put(@[ native("/tmp/first.txt") ]);
    const MacDragPasteboard drags;
    QVERIFY(drags.fileURLs().isEmpty());
}

void MacDragPasteboardTest::what_is_to_be_ignored_is_ignored_until_the_next_drag()
{
    MacDragPasteboard drags;
    const qint64 before = drags.changeCount();
    put(@[ native("/tmp/first.txt") ]);
    drags.ignoreContents();
    QCOMPARE(drags.changeCount(), before);
    QVERIFY(drags.fileURLs().isEmpty());
    put(@[ native("/tmp/first.txt") ]);
    QVERIFY(drags.changeCount() != before);
    QCOMPARE(drags.fileURLs(), QList<QUrl>{url("/tmp/first.txt")});
}

PARKLET_TEST(MacDragPasteboardTest)

#include "MacDragPasteboardTest.moc"
