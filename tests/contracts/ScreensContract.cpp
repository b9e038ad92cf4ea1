// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

class ScreensContract : public QObject {
    Q_OBJECT

public:
    explicit ScreensContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void the_main_screen_is_one_of_all();
    void the_visible_frame_is_within_the_screen();
    void the_primary_screen_begins_at_the_origin();
    void the_pointer_is_on_a_screen();

private:
    Screens &screens() const { return *world.platform().screens; }

    World &world;
};

void ScreensContract::the_main_screen_is_one_of_all()
{
    const auto main = screens().main();
    QVERIFY(main);
    QVERIFY(screens().all().contains(*main));
}

void ScreensContract::the_visible_frame_is_within_the_screen()
{
    QVERIFY(!screens().all().isEmpty());
    for (const Screen &screen : screens().all()) {
        QVERIFY(!screen.visibleFrame.isEmpty());
        QVERIFY(screen.frame.contains(screen.visibleFrame));
        QVERIFY(screen.scale >= 1);
    }
}

void ScreensContract::the_primary_screen_begins_at_the_origin()
{
    QCOMPARE(screens().all().constFirst().frame.topLeft(), QPointF());
    QCOMPARE(screens().flipHeight(), screens().all().constFirst().frame.height());
}

void ScreensContract::the_pointer_is_on_a_screen()
{
    const std::optional<QPointF> pointer = screens().pointer();
    QVERIFY(pointer);
    bool found = false;
    for (const Screen &screen : screens().all())
        found = found || screen.frame.adjusted(-1, -1, 1, 1).contains(*pointer);
    QVERIFY(found);
}

std::unique_ptr<QObject> screensContract(World &world)
{
    return std::make_unique<ScreensContract>(world);
}

#include "ScreensContract.moc"
