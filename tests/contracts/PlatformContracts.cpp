// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QTest>

namespace {

constexpr int kPatience = 20'000; // milliseconds

// The desktop that this is run on.
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

private:
    const std::unique_ptr<Platform> services = createPlatform();
};

} // namespace

int main(int argc, char *argv[])
{
    if (const auto obstacle = preparePlatform())
        qFatal("%s", obstacle->text);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("parklet-contracts"));
    QApplication::setQuitOnLastWindowClosed(false);
    RealWorld world;
    return runContracts(world, argc, argv);
}
