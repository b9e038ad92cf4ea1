// SPDX-License-Identifier: MIT
#include "platform/SessionInstance.h"
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

class SessionInstanceContract : public QObject {
    Q_OBJECT

public:
    explicit SessionInstanceContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void a_second_process_is_refused_and_the_first_is_told();
    void the_session_is_free_again_when_the_first_has_gone();

private:
    // Lets another process claim the session, and returns its result; -1 if it has none. This process continues to
    // answer it meanwhile.
    int claimElsewhere()
    {
        QProcess other;
        other.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(kClaimArgument)});
        if (!other.waitForStarted())
            return -1;
        const bool ended = world.waitFor([&other] { return other.state() == QProcess::NotRunning; });
        return ended && other.error() == QProcess::UnknownError ? other.exitCode() : -1;
    }

    World &world;
};

void SessionInstanceContract::a_second_process_is_refused_and_the_first_is_told()
{
    const auto session = createSessionInstance();
    int activations = 0;
    session->onActivate = [&activations] { ++activations; };
    const bool isFirst = session->claim();
    if (kMayRefuse && !isFirst)
        QSKIP("A Parklet runs in this session");
    QVERIFY(isFirst);
    QCOMPARE(claimElsewhere(), kRefused);
    QVERIFY(world.waitFor([&activations] { return activations > 0; }));
    QCOMPARE(activations, 1);
}

void SessionInstanceContract::the_session_is_free_again_when_the_first_has_gone()
{
    {
        const auto session = createSessionInstance();
        const bool isFirst = session->claim();
        if (kMayRefuse && !isFirst)
            QSKIP("A Parklet runs in this session");
        QVERIFY(isFirst);
    }
    QCOMPARE(claimElsewhere(), kClaimed);
}

std::unique_ptr<QObject> sessionInstanceContract(World &world)
{
    return std::make_unique<SessionInstanceContract>(world);
}

#include "SessionInstanceContract.moc"
