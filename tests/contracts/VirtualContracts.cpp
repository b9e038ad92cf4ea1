// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>

namespace {

constexpr double kPatience = 20; // virtual seconds
constexpr double kStep = 0.01;

// The platform that the unit tests run on.
class VirtualWorld : public World {
public:
    VirtualWorld() { virtualPlatform.appearance.missingSymbols = {QStringLiteral("no.such.symbol")}; }

    Platform &platform() override { return virtualPlatform.platform; }

    bool waitFor(const std::function<bool()> &condition) override
    {
        const double end = virtualPlatform.mainQueue.now() + kPatience;
        while (!condition() && virtualPlatform.mainQueue.now() < end) {
            virtualPlatform.mainQueue.advance(kStep);
            virtualPlatform.thumbnailGenerator.completeAll({});
        }
        return condition();
    }

    void copy(const QList<QUrl> &files) override { virtualPlatform.generalPasteboard.urls = files; }

    void copy(const QString &) override { virtualPlatform.generalPasteboard.urls.clear(); }

    void addFile(const QString &, const QString &) override { virtualPlatform.fileEventStreams.send(); }

private:
    VirtualPlatform virtualPlatform;
};

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    VirtualWorld world;
    return runContracts(world, argc, argv);
}
