// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

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

private:
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

std::unique_ptr<QObject> dragPasteboardContract(World &world)
{
    return std::make_unique<DragPasteboardContract>(world);
}

#include "DragPasteboardContract.moc"
