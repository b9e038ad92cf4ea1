// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

class LoginItemContract : public QObject {
    Q_OBJECT

public:
    explicit LoginItemContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void what_enabling_answers_is_what_it_is_afterwards();
    void enabling_what_is_enabled_succeeds();
    void disabling_what_is_not_enabled_succeeds();

private:
    LoginItem &loginItem() const { return *world.platform().loginItem; }

    World &world;
};

void LoginItemContract::what_enabling_answers_is_what_it_is_afterwards()
{
    const bool done = loginItem().enable();
    QCOMPARE(loginItem().isEnabled(), done);
    QVERIFY(loginItem().disable());
    QVERIFY(!loginItem().isEnabled());
}

void LoginItemContract::enabling_what_is_enabled_succeeds()
{
    const bool done = loginItem().enable();
    if (kMayRefuse && !done) {
        QVERIFY(loginItem().disable());
        QSKIP("The system does not let it be enabled at once");
    }
    QVERIFY(done);
    QVERIFY(loginItem().enable());
    QVERIFY(loginItem().isEnabled());
    QVERIFY(loginItem().disable());
    QVERIFY(!loginItem().isEnabled());
}

void LoginItemContract::disabling_what_is_not_enabled_succeeds()
{
    QVERIFY(loginItem().disable());
    QVERIFY(loginItem().disable());
    QVERIFY(!loginItem().isEnabled());
}

std::unique_ptr<QObject> loginItemContract(World &world)
{
    return std::make_unique<LoginItemContract>(world);
}

#include "LoginItemContract.moc"
