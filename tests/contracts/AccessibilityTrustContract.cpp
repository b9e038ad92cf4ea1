// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

class AccessibilityTrustContract : public QObject {
    Q_OBJECT

public:
    explicit AccessibilityTrustContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void asking_does_not_change_the_answer();
    void monitors_can_be_added_where_it_is_granted();

private:
    AccessibilityTrust &accessibilityTrust() const { return *world.platform().accessibilityTrust; }

    World &world;
};

void AccessibilityTrustContract::asking_does_not_change_the_answer()
{
    const bool trusted = accessibilityTrust().isProcessTrusted();
    QCOMPARE(accessibilityTrust().isProcessTrusted(), trusted);
    QCOMPARE(accessibilityTrust().isProcessTrusted(), trusted);
}

void AccessibilityTrustContract::monitors_can_be_added_where_it_is_granted()
{
    if (kMayRefuse && !accessibilityTrust().isProcessTrusted())
        QSKIP("This process is not trusted");
    QVERIFY(accessibilityTrust().isProcessTrusted());
    const auto monitor = world.platform().eventMonitors->add(LeftMouseDragged, [] {});
    QVERIFY(monitor);
    world.platform().eventMonitors->remove(*monitor);
}

std::unique_ptr<QObject> accessibilityTrustContract(World &world)
{
    return std::make_unique<AccessibilityTrustContract>(world);
}

#include "AccessibilityTrustContract.moc"
