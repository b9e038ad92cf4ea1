// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QMimeData>
#include <QTest>

using namespace Qt::StringLiterals;

class DropPasteboardContract : public QObject {
    Q_OBJECT

public:
    explicit DropPasteboardContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void dropped_files_are_read_in_their_order();
    void dropped_words_are_no_files();
    void files_beside_a_web_address_are_none();
    void nothing_is_read_while_nobody_drops();

private:
    DropPasteboard &dropPasteboard() const { return *world.platform().dropPasteboard; }

    // The files of a drop within this program, which needs nobody else.
    QList<QUrl> filesOf(const QList<QUrl> &dropped) const
    {
        QMimeData data;
        data.setUrls(dropped);
        return dropPasteboard().fileURLs(&data);
    }

    World &world;
};

namespace {

const QList<QUrl> kFiles = {QUrl::fromLocalFile(u"/tmp/second b.txt"_s), QUrl::fromLocalFile(u"/tmp/first.txt"_s)};

} // namespace

void DropPasteboardContract::dropped_files_are_read_in_their_order()
{
    QCOMPARE(filesOf(kFiles), kFiles);
}

void DropPasteboardContract::dropped_words_are_no_files()
{
    QMimeData words;
    words.setText(u"/tmp/first.txt"_s);
    QCOMPARE(dropPasteboard().fileURLs(&words), QList<QUrl>());
}

void DropPasteboardContract::files_beside_a_web_address_are_none()
{
    const QUrl address(u"https://orvane.example/"_s);
    QCOMPARE(filesOf(kFiles + QList<QUrl>{address}), QList<QUrl>());
    QCOMPARE(filesOf(QList<QUrl>{address} + kFiles), QList<QUrl>());
}

void DropPasteboardContract::nothing_is_read_while_nobody_drops()
{
    QVERIFY(!dropPasteboard().isReading());
}

std::unique_ptr<QObject> dropPasteboardContract(World &world)
{
    return std::make_unique<DropPasteboardContract>(world);
}

#include "DropPasteboardContract.moc"
