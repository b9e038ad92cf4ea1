// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/BusSessionInstance.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;

class BusSessionInstanceTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup();

    void the_first_one_holds_the_name();
    void a_later_one_asks_the_first_to_show_itself();
    void a_launcher_reaches_it_as_an_application();
    void a_killed_holder_does_not_block_the_next_one();
    void a_hung_holder_does_not_hang_a_later_one();
    void a_stranger_with_the_name_is_left_to_it();

private:
    bool startHolder();

    std::unique_ptr<QProcess> holder;
};

namespace {

constexpr int kPatience = 20'000; // milliseconds

const QString kName = u"com.orvane.Parklet"_s;
const QString kPath = u"/com/orvane/Parklet"_s;
const QString kInterface = u"org.freedesktop.Application"_s;

} // namespace

void BusSessionInstanceTest::cleanup()
{
    if (holder) {
        holder->kill();
        holder->waitForFinished(kPatience);
        holder.reset();
    }
}

// Starts another process of this program, which owns the name and never runs its main loop.
bool BusSessionInstanceTest::startHolder()
{
    holder = std::make_unique<QProcess>();
    holder->start(QCoreApplication::applicationFilePath(), {u"--hold"_s});
    return holder->waitForReadyRead(kPatience) && holder->readAll() == "held\n";
}

void BusSessionInstanceTest::the_first_one_holds_the_name()
{
    BusSessionInstance first(QDBusConnection::sessionBus());
    QVERIFY(first.claim());
    QVERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(kName));
}

void BusSessionInstanceTest::a_later_one_asks_the_first_to_show_itself()
{
    BusSessionInstance first(QDBusConnection::sessionBus());
    int activations = 0;
    first.onActivate = [&activations] { ++activations; };
    QVERIFY(first.claim());
    for (int i = 1; i <= 3; ++i) {
        QProcess later;
        later.start(QCoreApplication::applicationFilePath(), {u"--claim"_s});
        QTRY_COMPARE_WITH_TIMEOUT(later.state(), QProcess::NotRunning, kPatience);
        QCOMPARE(later.readAllStandardOutput(), QByteArray("other\n"));
        QCOMPARE(activations, i);
    }
}

void BusSessionInstanceTest::a_launcher_reaches_it_as_an_application()
{
    BusSessionInstance first(QDBusConnection::sessionBus());
    QStringList heard;
    first.onActivate = [&heard] { heard.append(u"activate"_s); };
    first.onAction = [&heard](const QString &name) { heard.append(name); };
    QVERIFY(first.claim());
    const QList<std::pair<QString, QVariantList>> calls = {
        {u"Activate"_s, {QVariantMap{{u"desktop-startup-id"_s, u"x"_s}}}},
        {u"Open"_s, {QStringList{u"file:///tmp"_s}, QVariantMap()}},
        {u"ActivateAction"_s, {u"preferences"_s, QVariantList(), QVariantMap()}},
    };
    for (const auto &[method, arguments] : calls) {
        auto message = QDBusMessage::createMethodCall(kName, kPath, kInterface, method);
        message.setArguments(arguments);
        QDBusPendingCall call =
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"launcher"_s).asyncCall(message);
        QTRY_VERIFY_WITH_TIMEOUT(call.isFinished(), kPatience);
        QVERIFY2(!call.isError(), qPrintable(call.error().message()));
    }
    QCOMPARE(heard, QStringList({u"activate"_s, u"activate"_s, u"preferences"_s}));
    QDBusConnection::disconnectFromBus(u"launcher"_s);
}

void BusSessionInstanceTest::a_killed_holder_does_not_block_the_next_one()
{
    QVERIFY(startHolder());
    holder->kill();
    QVERIFY(holder->waitForFinished(kPatience));
    BusSessionInstance next(QDBusConnection::sessionBus());
    QVERIFY(next.claim());
}

void BusSessionInstanceTest::a_hung_holder_does_not_hang_a_later_one()
{
    QVERIFY(startHolder());
    BusSessionInstance later(QDBusConnection::sessionBus());
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!later.claim());
    QVERIFY(later.isUnanswered());
    QVERIFY2(clock.elapsed() < 10'000, QByteArray::number(clock.elapsed()).constData());
}

void BusSessionInstanceTest::a_stranger_with_the_name_is_left_to_it()
{
    // It owns the name, but has no object that answers.
    auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"stranger"_s);
    QVERIFY(bus.registerService(kName));
    BusSessionInstance later(QDBusConnection::sessionBus());
    QVERIFY(!later.claim());
    QVERIFY(later.isUnanswered());
    bus.unregisterService(kName);
    QDBusConnection::disconnectFromBus(u"stranger"_s);
    QVERIFY(later.claim());
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 2 && arguments.at(1).startsWith(u"--"_s)) {
        BusSessionInstance instance(QDBusConnection::sessionBus());
        std::fputs(instance.claim() ? "held\n" : "other\n", stdout);
        std::fflush(stdout);
        if (arguments.at(1) == QLatin1String("--hold"))
            ::pause();
        return 0;
    }
    BusSessionInstanceTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "BusSessionInstanceTest.moc"
