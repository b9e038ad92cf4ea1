// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

using namespace Qt::StringLiterals;

class StatusBarContract : public QObject {
    Q_OBJECT

public:
    explicit StatusBarContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void an_item_can_get_another_menu_and_go();

private:
    StatusBar &statusBar() const { return *world.platform().statusBar; }

    World &world;
};

void StatusBarContract::an_item_can_get_another_menu_and_go()
{
    auto item = statusBar().createItem();
    QVERIFY(item);
    item->setSymbol(u"tray.and.arrow.down"_s, u"Parklet"_s);
    for (const QString &title : {u"one"_s, u"two"_s}) {
        auto menu = std::make_unique<QMenu>();
        menu->addAction(title);
        item->setMenu(std::move(menu));
    }
    item.reset();
    auto next = statusBar().createItem();
    QVERIFY(next);
}

std::unique_ptr<QObject> statusBarContract(World &world)
{
    return std::make_unique<StatusBarContract>(world);
}

#include "StatusBarContract.moc"
