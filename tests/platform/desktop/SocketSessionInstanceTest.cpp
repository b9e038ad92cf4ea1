// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/SocketSessionInstance.h"

#include <QElapsedTimer>
#include <QFile>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class SocketSessionInstanceTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void the_first_one_holds_the_session();
    void a_later_one_asks_the_first_to_show_itself();
    void another_name_is_another_session();
    void the_session_is_free_once_its_holder_has_gone();
    void a_killed_holder_does_not_block_the_next_one();
    void a_hung_holder_does_not_hang_a_later_one();
    void a_peer_that_asks_for_nothing_is_let_go();
    void rubbish_on_the_socket_does_nothing();
    void without_a_folder_everybody_may_start();
    void the_folder_is_private();

private:
    bool startHolder();

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<QProcess> holder;
};

namespace {

constexpr int kPatience = 20'000; // milliseconds
const QString kName = u"parklet_test"_s;

} // namespace

void SocketSessionInstanceTest::init()
{
    folder = std::make_unique<QTemporaryDir>();
}

void SocketSessionInstanceTest::cleanup()
{
    if (holder) {
        holder->kill();
        holder->waitForFinished(kPatience);
        holder.reset();
    }
    folder.reset();
}

// Starts another process of this program, which owns the session and never runs its main loop.
bool SocketSessionInstanceTest::startHolder()
{
    holder = std::make_unique<QProcess>();
    holder->start(QCoreApplication::applicationFilePath(), {u"--hold"_s, folder->path()});
    return holder->waitForReadyRead(kPatience) && holder->readAll() == "held\n";
}

void SocketSessionInstanceTest::the_first_one_holds_the_session()
{
    SocketSessionInstance first(folder->path(), kName);
    QVERIFY(first.claim());
}

void SocketSessionInstanceTest::a_later_one_asks_the_first_to_show_itself()
{
    SocketSessionInstance first(folder->path(), kName);
    int activations = 0;
    first.onActivate = [&activations] { ++activations; };
    QVERIFY(first.claim());
    // The call blocks until the answer, so another process makes it.
    for (int i = 1; i <= 3; ++i) {
        QProcess later;
        later.start(QCoreApplication::applicationFilePath(), {u"--claim"_s, folder->path()});
        QTRY_COMPARE_WITH_TIMEOUT(later.state(), QProcess::NotRunning, kPatience);
        QCOMPARE(later.readAllStandardOutput(), QByteArray("other\n"));
        QTRY_COMPARE_WITH_TIMEOUT(activations, i, kPatience);
    }
}

void SocketSessionInstanceTest::another_name_is_another_session()
{
    SocketSessionInstance first(folder->path(), kName);
    SocketSessionInstance second(folder->path(), u"parklet_other"_s);
    QVERIFY(first.claim());
    QVERIFY(second.claim());
}

void SocketSessionInstanceTest::the_session_is_free_once_its_holder_has_gone()
{
    {
        SocketSessionInstance first(folder->path(), kName);
        QVERIFY(first.claim());
    }
    SocketSessionInstance second(folder->path(), kName);
    QVERIFY(second.claim());
}

void SocketSessionInstanceTest::a_peer_that_asks_for_nothing_is_let_go()
{
    SocketSessionInstance first(folder->path(), kName);
    int activations = 0;
    first.onActivate = [&activations] { ++activations; };
    QVERIFY(first.claim());
    QLocalSocket flood;
    flood.connectToServer(folder->path() + u'/' + kName + u".socket"_s);
    flood.write(QByteArray(10'000'000, 'x'));
    QTRY_COMPARE_WITH_TIMEOUT(flood.state(), QLocalSocket::UnconnectedState, kPatience);
    // Nearly nothing of it was read.
    QVERIFY(flood.bytesToWrite() > 9'000'000 || flood.error() == QLocalSocket::PeerClosedError);
    QLocalSocket silent;
    silent.connectToServer(folder->path() + u'/' + kName + u".socket"_s);
    QTRY_COMPARE_WITH_TIMEOUT(silent.state(), QLocalSocket::UnconnectedState, kPatience);
    QCOMPARE(activations, 0);
}

void SocketSessionInstanceTest::a_killed_holder_does_not_block_the_next_one()
{
    QVERIFY(startHolder());
    holder->kill();
    QVERIFY(holder->waitForFinished(kPatience));
    SocketSessionInstance next(folder->path(), kName);
    int activations = 0;
    next.onActivate = [&activations] { ++activations; };
    QVERIFY(next.claim());
    // It can be reached at the place where the killed one has left its socket.
    QProcess later;
    later.start(QCoreApplication::applicationFilePath(), {u"--claim"_s, folder->path()});
    QTRY_COMPARE_WITH_TIMEOUT(activations, 1, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(later.state(), QProcess::NotRunning, kPatience);
}

void SocketSessionInstanceTest::a_hung_holder_does_not_hang_a_later_one()
{
    QVERIFY(startHolder());
    SocketSessionInstance later(folder->path(), kName);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!later.claim());
    QVERIFY(later.isUnanswered());
    QVERIFY2(clock.elapsed() < 10'000, QByteArray::number(clock.elapsed()).constData());
}

void SocketSessionInstanceTest::rubbish_on_the_socket_does_nothing()
{
    SocketSessionInstance first(folder->path(), kName);
    int activations = 0;
    first.onActivate = [&activations] { ++activations; };
    QVERIFY(first.claim());
    QLocalSocket socket;
    socket.connectToServer(folder->filePath(kName + u".socket"_s));
    QVERIFY(socket.waitForConnected(kPatience));
    socket.write(QByteArray(10'000, '\xff') + "\nactivat\n");
    socket.flush();
    QTest::qWait(50);
    QCOMPARE(activations, 0);
    socket.abort();
    QLocalSocket good;
    good.connectToServer(folder->filePath(kName + u".socket"_s));
    QVERIFY(good.waitForConnected(kPatience));
    good.write("activate\n");
    QTRY_COMPARE_WITH_TIMEOUT(activations, 1, kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(good.canReadLine(), kPatience);
    QCOMPARE(good.readLine(), QByteArray("ok\n"));
}

void SocketSessionInstanceTest::without_a_folder_everybody_may_start()
{
    QVERIFY(SocketSessionInstance(QString(), kName).claim());
    QVERIFY(SocketSessionInstance(u"/no/such/folder"_s, kName).claim());
}

void SocketSessionInstanceTest::the_folder_is_private()
{
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(folder->path()));
    QCOMPARE(SocketSessionInstance::privateFolder(), folder->path());
    // A folder that others may read is not used.
    QCOMPARE(::chmod(QFile::encodeName(folder->path()).constData(), 0755), 0);
    const QString other = SocketSessionInstance::privateFolder();
    QVERIFY(other != folder->path());
    // A folder without write permission is not used either, except by root.
    QCOMPARE(::chmod(QFile::encodeName(folder->path()).constData(), 0500), 0);
    QCOMPARE(SocketSessionInstance::privateFolder() == folder->path(), ::geteuid() == 0);
    QCOMPARE(::chmod(QFile::encodeName(folder->path()).constData(), 0700), 0);
    qputenv("XDG_RUNTIME_DIR", before);
    struct stat status {};
    QCOMPARE(::stat(QFile::encodeName(other).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, mode_t{0700});
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1).startsWith(u"--"_s)) {
        SocketSessionInstance instance(arguments.at(2), kName);
        const bool first = instance.claim();
        std::fputs(!first ? "other\n" : "held\n", stdout);
        std::fflush(stdout);
        if (arguments.at(1) == QLatin1String("--hold"))
            ::pause();
        return 0;
    }
    SocketSessionInstanceTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "SocketSessionInstanceTest.moc"
