// SPDX-License-Identifier: MIT
#include "platform/SessionInstance.h"
#include "tests/contracts/Contracts.h"
#include "tests/contracts/Dialogs.h"
#include "tests/contracts/World.h"
#include "tests/support/BuiltHelpers.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 20'000; // milliseconds
constexpr int kGlance = 20;       // milliseconds between two searches for a dialog

// The real desktop.
class RealWorld : public World {
public:
    Platform &platform() override { return *services; }

    bool waitFor(const std::function<bool()> &condition) override { return QTest::qWaitFor(condition, kPatience); }

    void copy(const QList<QUrl> &files) override
    {
        auto *data = new QMimeData;
        data->setUrls(files);
        QGuiApplication::clipboard()->setMimeData(data);
    }

    void copy(const QString &words) override { QGuiApplication::clipboard()->setText(words); }

    void addFile(const QString &watched, const QString &name) override
    {
        QFile file(watched + QLatin1Char('/') + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    void answerAlert(const Alert &alert, const AlertAnswer &answer) override
    {
        QStringList titles;
        if (answer.checkboxOn)
            titles.append(alert.checkboxTitle);
        titles.append(alert.buttons.at(answer.button));
        once([titles]() mutable {
            while (!titles.isEmpty() && pressButton(titles.constFirst()))
                titles.removeFirst();
            return titles.isEmpty();
        });
    }

    void cancelOpenPanel() override { once(cancelDialog); }

private:
    // Tries again until `act` returns true, or until the next action.
    void once(std::function<bool()> act)
    {
        hand = std::make_unique<QTimer>();
        QObject::connect(hand.get(), &QTimer::timeout, hand.get(), [timer = hand.get(), act = std::move(act)] {
            // The action runs the main loop.
            timer->stop();
            if (!act())
                timer->start(kGlance);
        });
        hand->start(kGlance);
    }

    std::unique_ptr<QTimer> hand;
    const std::unique_ptr<Platform> services = createPlatform();
};

} // namespace

int main(int argc, char *argv[])
{
    if (const auto obstacle = preparePlatform())
        qFatal("%s", qPrintable(QString::fromUtf8(obstacle->text)
                                    .replace(QLatin1String("%1"), QString::fromStdString(obstacle->detail))));
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"parklet-contracts"_s);
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc > 1 && qstrcmp(argv[1], kClaimArgument) == 0)
        return createSessionInstance()->claim() ? kClaimed : kRefused;
    useBuiltHelpers();
    RealWorld world;
    return runContracts(world, argc, argv) + QTest::qExec(sessionInstanceContract(world).get(), argc, argv);
}
