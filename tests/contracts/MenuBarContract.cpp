// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QPointer>
#include <QTest>

using namespace Qt::StringLiterals;

class MenuBarContract : public QObject {
    Q_OBJECT

public:
    explicit MenuBarContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void a_menu_stays_until_another_takes_its_place();
    void the_items_still_do_what_they_did();
    void the_menu_can_be_taken_away();

private:
    MenuBar &menuBar() const { return *world.platform().menuBar; }

    World &world;
};

namespace {

std::unique_ptr<QMenu> editMenu()
{
    auto menu = std::make_unique<QMenu>();
    QMenu *edit = menu->addMenu(u"Edit"_s);
    edit->addAction(u"Copy"_s)->setObjectName(u"copy:"_s);
    edit->addSeparator();
    edit->addAction(u"Plain"_s);
    return menu;
}

} // namespace

void MenuBarContract::a_menu_stays_until_another_takes_its_place()
{
    auto menu = editMenu();
    const QPointer<QMenu> first = menu.get();
    menuBar().setMainMenu(std::move(menu));
    QVERIFY(first);
    menuBar().setMainMenu(editMenu());
    QVERIFY(!first);
}

void MenuBarContract::the_items_still_do_what_they_did()
{
    auto menu = editMenu();
    const QPointer<QAction> item = menu->actions().constFirst()->menu()->actions().constFirst();
    int calls = 0;
    QObject::connect(item, &QAction::triggered, item, [&calls] { ++calls; });
    menuBar().setMainMenu(std::move(menu));
    QVERIFY(item);
    item->trigger();
    QCOMPARE(calls, 1);
}

void MenuBarContract::the_menu_can_be_taken_away()
{
    auto menu = editMenu();
    const QPointer<QMenu> gone = menu.get();
    menuBar().setMainMenu(std::move(menu));
    menuBar().setMainMenu(nullptr);
    QVERIFY(!gone);
}

std::unique_ptr<QObject> menuBarContract(World &world)
{
    return std::make_unique<MenuBarContract>(world);
}

#include "MenuBarContract.moc"
