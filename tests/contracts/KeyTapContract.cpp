// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

class KeyTapContract : public QObject {
    Q_OBJECT

public:
    explicit KeyTapContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void removing_without_a_tap_does_nothing();
    void a_tap_can_be_installed_again_after_its_removal();

private:
    KeyTap &keyTap() const { return *world.platform().keyTap; }

    World &world;
};

void KeyTapContract::removing_without_a_tap_does_nothing()
{
    keyTap().remove();
    keyTap().remove();
}

void KeyTapContract::a_tap_can_be_installed_again_after_its_removal()
{
    const auto handler = [](Qt::Key, Qt::KeyboardModifiers) { return false; };
    const bool granted = keyTap().install(handler);
    keyTap().remove();
    QCOMPARE(keyTap().install(handler), granted);
    keyTap().remove();
}

std::unique_ptr<QObject> keyTapContract(World &world)
{
    return std::make_unique<KeyTapContract>(world);
}

#include "KeyTapContract.moc"
