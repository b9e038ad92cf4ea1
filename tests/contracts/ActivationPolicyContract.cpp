// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>
#include <QWidget>

class ActivationPolicyContract : public QObject {
    Q_OBJECT

public:
    explicit ActivationPolicyContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void an_activated_window_is_shown();
    void a_window_stays_through_a_change_of_policy();
    void a_hidden_window_comes_back();

private:
    ActivationPolicy &activationPolicy() const { return *world.platform().activationPolicy; }

    World &world;
};

void ActivationPolicyContract::an_activated_window_is_shown()
{
    QWidget window;
    activationPolicy().activate(window);
    QVERIFY(window.isVisible());
}

void ActivationPolicyContract::a_window_stays_through_a_change_of_policy()
{
    QWidget window;
    activationPolicy().activate(window);
    activationPolicy().set(ActivationPolicy::Policy::Regular);
    QVERIFY(window.isVisible());
    activationPolicy().set(ActivationPolicy::Policy::Accessory);
    QVERIFY(window.isVisible());
}

void ActivationPolicyContract::a_hidden_window_comes_back()
{
    QWidget window;
    activationPolicy().activate(window);
    window.hide();
    activationPolicy().activate(window);
    QVERIFY(window.isVisible());
    QVERIFY(!window.isMinimized());
}

std::unique_ptr<QObject> activationPolicyContract(World &world)
{
    return std::make_unique<ActivationPolicyContract>(world);
}

#include "ActivationPolicyContract.moc"
