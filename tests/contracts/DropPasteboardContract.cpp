// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/ForeignDrags.h"
#include "tests/contracts/World.h"

#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QWidget>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QList<QUrl> kFiles = {QUrl::fromLocalFile(u"/tmp/second b.txt"_s), QUrl::fromLocalFile(u"/tmp/first.txt"_s)};

// A window that reads what is dropped on it as the shelf does.
class Target : public QWidget {
public:
    explicit Target(const DropPasteboard &pasteboard)
        : dropPasteboard(pasteboard)
    {
        setAcceptDrops(true);
        setWindowFlag(Qt::BypassWindowManagerHint);
        setGeometry(0, 0, 100, 100);
        show();
    }

    std::optional<QList<QUrl>> dropped;

protected:
    void dragEnterEvent(QDragEnterEvent *event) override { event->acceptProposedAction(); }
    void dropEvent(QDropEvent *event) override
    {
        dropped = dropPasteboard.fileURLs(event->mimeData());
        event->acceptProposedAction();
    }

private:
    const DropPasteboard &dropPasteboard;
};

} // namespace

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
    void what_another_program_drops_is_delivered_with_its_files();
    void what_another_program_drops_beside_a_web_address_is_delivered_without();

private:
    DropPasteboard &dropPasteboard() const { return *world.platform().dropPasteboard; }

    // The files of a drop within this program, which needs no other program.
    QList<QUrl> filesOf(const QList<QUrl> &dropped) const
    {
        QMimeData data;
        data.setUrls(dropped);
        return dropPasteboard().fileURLs(&data);
    }

    // What a drop of another program carries, once it has been delivered.
    std::optional<QList<QUrl>> filesFromElsewhere(const QList<QUrl> &urls)
    {
        Target target(dropPasteboard());
        if (!QTest::qWaitForWindowExposed(&target))
            return {};
        const auto drop = dropFromAnotherProgram(target, urls);
        if (!drop || !world.waitFor([&] { return target.dropped.has_value() && !dropPasteboard().isReading(); }))
            return {};
        return target.dropped;
    }

    World &world;
};

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

void DropPasteboardContract::what_another_program_drops_is_delivered_with_its_files()
{
    QCOMPARE(filesFromElsewhere(kFiles), std::optional(kFiles));
}

void DropPasteboardContract::what_another_program_drops_beside_a_web_address_is_delivered_without()
{
    const QUrl address(u"https://orvane.example/"_s);
    QCOMPARE(filesFromElsewhere(kFiles + QList<QUrl>{address}), std::optional(QList<QUrl>()));
    QCOMPARE(filesFromElsewhere(QList<QUrl>{address} + kFiles), std::optional(QList<QUrl>()));
}

std::unique_ptr<QObject> dropPasteboardContract(World &world)
{
    return std::make_unique<DropPasteboardContract>(world);
}

#include "DropPasteboardContract.moc"
