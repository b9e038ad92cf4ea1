// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>
#include <QWidget>

using namespace Qt::StringLiterals;

class OpenPanelsContract : public QObject {
    Q_OBJECT

public:
    explicit OpenPanelsContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void a_cancelled_panel_chooses_nothing();
    void a_panel_needs_no_folder_and_no_window();
    void one_panel_may_follow_the_other_at_once();
    void the_main_loop_turns_meanwhile();

private:
    OpenPanels &openPanels() const { return *world.platform().openPanels; }

    OpenPanel applications() const
    {
        return {u"Goes away by itself"_s, u"Add"_s, world.platform().workspace->applicationsFolders()};
    }

    World &world;
};

void OpenPanelsContract::a_cancelled_panel_chooses_nothing()
{
    QWidget window;
    world.cancelOpenPanel();
    QVERIFY(!openPanels().runModal(applications(), &window));
}

void OpenPanelsContract::a_panel_needs_no_folder_and_no_window()
{
    OpenPanel panel = applications();
    panel.folders.clear();
    world.cancelOpenPanel();
    QVERIFY(!openPanels().runModal(panel, nullptr));
}

void OpenPanelsContract::one_panel_may_follow_the_other_at_once()
{
    for (int i = 0; i < 2; ++i) {
        world.cancelOpenPanel();
        QVERIFY(!openPanels().runModal(applications(), nullptr));
    }
}

void OpenPanelsContract::the_main_loop_turns_meanwhile()
{
    bool turned = false;
    world.platform().mainQueue->async([&turned] { turned = true; });
    world.cancelOpenPanel();
    openPanels().runModal(applications(), nullptr);
    QVERIFY(turned);
}

std::unique_ptr<QObject> openPanelsContract(World &world)
{
    return std::make_unique<OpenPanelsContract>(world);
}

#include "OpenPanelsContract.moc"
