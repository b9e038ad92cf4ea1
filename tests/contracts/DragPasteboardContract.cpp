// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/ForeignDrags.h"
#include "tests/contracts/World.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QList<QUrl> kFiles = {QUrl::fromLocalFile(u"/tmp/second b.txt"_s), QUrl::fromLocalFile(u"/tmp/first.txt"_s)};

} // namespace

class DragPasteboardContract : public QObject {
    Q_OBJECT

public:
    explicit DragPasteboardContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void there_are_no_files_while_nobody_drags();
    void the_change_count_stays_while_nobody_drags();
    void the_files_of_a_drag_are_read_in_their_order();
    void files_beside_a_web_address_are_none_to_a_drag_and_none_to_a_drop();

private:
    // Lets another program drag these files, and returns the files on the pasteboard once they are known.
    QList<QUrl> filesOf(const QList<QUrl> &dragged)
    {
        QList<QUrl> files;
        const auto monitor = world.platform().eventMonitors->add(LeftMouseDragged, [] {});
        const qint64 before = dragPasteboard().changeCount();
        const auto drag = dragInAnotherProgram(world.platform(), dragged);
        if (!drag || !world.waitFor([&] { return dragPasteboard().changeCount() != before; }))
            QTest::qFail("There is no drag", __FILE__, __LINE__);
        files = dragPasteboard().fileURLs();
        if (monitor)
            world.platform().eventMonitors->remove(*monitor);
        return files;
    }

    DragPasteboard &dragPasteboard() const { return *world.platform().dragPasteboard; }

    World &world;
};

void DragPasteboardContract::there_are_no_files_while_nobody_drags()
{
    QVERIFY(dragPasteboard().fileURLs().isEmpty());
}

void DragPasteboardContract::the_change_count_stays_while_nobody_drags()
{
    const qint64 count = dragPasteboard().changeCount();
    QVERIFY(dragPasteboard().fileURLs().isEmpty());
    QCOMPARE(dragPasteboard().changeCount(), count);
}

void DragPasteboardContract::the_files_of_a_drag_are_read_in_their_order()
{
    QCOMPARE(filesOf(kFiles), kFiles);
}

void DragPasteboardContract::files_beside_a_web_address_are_none_to_a_drag_and_none_to_a_drop()
{
    const QUrl address(u"https://orvane.example/"_s);
    for (const QList<QUrl> &mixed : {kFiles + QList<QUrl>{address}, QList<QUrl>{address} + kFiles}) {
        QCOMPARE(filesOf(mixed), QList<QUrl>());
        // A drop reads its contents in the same way as the clipboard.
        world.copy(kFiles);
        QVERIFY(world.waitForCopied(kFiles));
        world.copy(mixed);
        QVERIFY(world.waitForCopied({}));
    }
}

std::unique_ptr<QObject> dragPasteboardContract(World &world)
{
    return std::make_unique<DragPasteboardContract>(world);
}

#include "DragPasteboardContract.moc"
