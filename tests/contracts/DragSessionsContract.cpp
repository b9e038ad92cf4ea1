// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>
#include <QWidget>

using namespace Qt::StringLiterals;

class DragSessionsContract : public QObject {
    Q_OBJECT

public:
    explicit DragSessionsContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void a_drag_of_nothing_never_ends();
    void a_drag_that_offers_nothing_never_ends();

private:
    DragSessions &dragSessions() const { return *world.platform().dragSessions; }

    // Begins a drag, and returns whether it ends at once.
    bool ends(const QList<DraggingItem> &items, DragOperation offered)
    {
        QWidget source;
        const auto ended = std::make_shared<bool>(false);
        dragSessions().begin(source, items, offered, [ended](DragOperation) { *ended = true; });
        const auto later = std::make_shared<bool>(false);
        world.platform().mainQueue->after(0.1, [later] { *later = true; });
        return !world.waitFor([later] { return *later; }) || *ended;
    }

    World &world;
};

void DragSessionsContract::a_drag_of_nothing_never_ends()
{
    QVERIFY(!ends({}, DragOperation::Copy));
}

void DragSessionsContract::a_drag_that_offers_nothing_never_ends()
{
    const DraggingItem item{world.makeFile(u"dragged.txt"_s, "dragged"), QRectF(0, 0, 72, 72), QPixmap(72, 72)};
    QVERIFY(!ends({item}, DragOperation::None));
}

std::unique_ptr<QObject> dragSessionsContract(World &world)
{
    return std::make_unique<DragSessionsContract>(world);
}

#include "DragSessionsContract.moc"
