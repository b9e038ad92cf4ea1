// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QApplication>
#include <QTest>
#include <QWidget>

using namespace Qt::StringLiterals;

class FloatingPanelsContract : public QObject {
    Q_OBJECT

public:
    explicit FloatingPanelsContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void a_panel_is_shown_and_hidden();
    void a_panel_does_not_become_the_active_window();
    void a_panel_keeps_its_place();
    void a_panel_may_be_deleted();

private:
    FloatingPanels &floatingPanels() const { return *world.platform().floatingPanels; }

    World &world;
};

void FloatingPanelsContract::a_panel_is_shown_and_hidden()
{
    QWidget panel;
    floatingPanels().make(panel, {u"shelf"_s, 14});
    QVERIFY(!panel.isVisible());
    floatingPanels().orderFront(panel);
    QVERIFY(panel.isVisible());
    floatingPanels().orderOut(panel);
    QVERIFY(!panel.isVisible());
    floatingPanels().orderFront(panel);
    QVERIFY(panel.isVisible());
    floatingPanels().orderOut(panel);
}

void FloatingPanelsContract::a_panel_does_not_become_the_active_window()
{
    QWidget panel;
    floatingPanels().make(panel, {u"cursor-shelf"_s, 14});
    floatingPanels().orderFront(panel);
    QVERIFY(world.waitFor([&panel] { return panel.isVisible(); }));
    QVERIFY(QApplication::activeWindow() != &panel);
    floatingPanels().orderOut(panel);
}

void FloatingPanelsContract::a_panel_keeps_its_place()
{
    QWidget panel;
    floatingPanels().make(panel, {u"shelf"_s, 14});
    const QRect frame(300, 200, 116, 164);
    panel.setGeometry(frame);
    floatingPanels().orderFront(panel);
    QVERIFY(world.waitFor([&] { return panel.geometry() == frame; }));
    floatingPanels().orderOut(panel);
    floatingPanels().orderFront(panel);
    QVERIFY(world.waitFor([&] { return panel.geometry() == frame; }));
    floatingPanels().orderOut(panel);
}

void FloatingPanelsContract::a_panel_may_be_deleted()
{
    {
        QWidget gone;
        floatingPanels().make(gone, {u"shelf"_s, 14});
        floatingPanels().orderFront(gone);
    }
    QWidget panel;
    floatingPanels().make(panel, {u"shelf"_s, 14});
    floatingPanels().orderFront(panel);
    QVERIFY(panel.isVisible());
    floatingPanels().orderOut(panel);
}

std::unique_ptr<QObject> floatingPanelsContract(World &world)
{
    return std::make_unique<FloatingPanelsContract>(world);
}

#include "FloatingPanelsContract.moc"
