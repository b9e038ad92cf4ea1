// SPDX-License-Identifier: MIT
#include "platform/macos/MacColorArchive.h"

#include "platform/macos/MacConversions.h"
#include "tests/support/TestProgram.h"

#include <QTest>

#import <AppKit/AppKit.h>

// The archive as other programs of the system write and read it.
class MacColorArchiveTest : public QObject {
    Q_OBJECT

private slots:
    void an_archive_holds_a_colour_of_the_systems();
    void an_archive_of_another_class_is_refused();
};

void MacColorArchiveTest::an_archive_holds_a_colour_of_the_systems()
{
    const auto data = MacColorArchive().archive(QColor(10, 200, 30, 128));
    QVERIFY(data);
    NSColor *color = [NSKeyedUnarchiver unarchivedObjectOfClass:[NSColor class] fromData:data->toNSData() error:nil];
    QVERIFY(color);
    QCOMPARE(fromNSColor(color)->rgba(), QColor(10, 200, 30, 128).rgba());
}

void MacColorArchiveTest::an_archive_of_another_class_is_refused()
{
    NSData *data = [NSKeyedArchiver archivedDataWithRootObject:@"red" requiringSecureCoding:YES error:nil];
    QVERIFY(data);
    QVERIFY(!MacColorArchive().unarchive(QByteArray::fromNSData(data)));
}

PARKLET_GUILESS_TEST(MacColorArchiveTest)

#include "MacColorArchiveTest.moc"
