// SPDX-License-Identifier: MIT
#include "platform/FileURLs.h"
#include "tests/contracts/Contracts.h"
#include "tests/contracts/ForeignDrags.h"
#include "tests/contracts/World.h"
#include "tests/support/DragEvents.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QMimeData>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

constexpr double kPatience = 20; // virtual seconds
constexpr double kStep = 0.01;

// The platform of the unit tests.
class VirtualWorld : public World {
public:
    VirtualWorld()
    {
        virtualPlatform.appearance.missingSymbols = {u"no.such.symbol"_s};
        const auto turn = [this] { virtualPlatform.mainQueue.runPending(); };
        virtualPlatform.alerts.whileShown = turn;
        virtualPlatform.openPanels.whileShown = turn;
    }

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

    void copy(const QList<QUrl> &files) override
    {
        QMimeData data;
        data.setUrls(files);
        virtualPlatform.generalPasteboard.urls = fileURLs(&data);
    }

    void copy(const QString &) override { virtualPlatform.generalPasteboard.urls.clear(); }

    void answerAlert(const Alert &, const AlertAnswer &answer) override
    {
        virtualPlatform.alerts.answers.append(answer);
    }

    void cancelOpenPanel() override { virtualPlatform.openPanels.choice.reset(); }

    void addFile(const QString &watched, const QString &name) override
    {
        VirtualFileEventStreams &streams = virtualPlatform.fileEventStreams;
        streams.creationDates.insert(QUrl::fromLocalFile(watched + QLatin1Char('/') + name),
                                     virtualPlatform.mainQueue.currentDate());
        for (const auto &stream : streams.streams) {
            if (!stream->isRunning() || changed.contains(stream.get()))
                continue;
            changed.insert(stream.get());
            virtualPlatform.mainQueue.after(stream->latency, [this, stream] {
                changed.remove(stream.get());
                if (stream->isRunning())
                    stream->handler();
            });
        }
    }

private:
    VirtualPlatform virtualPlatform;
    QSet<const FileEventStream *> changed; // changed since their last call
};

} // namespace

std::unique_ptr<ForeignDragUnderWay> dragInAnotherProgram(Platform &platform, const QList<QUrl> &urls)
{
    QMimeData data;
    data.setUrls(urls);
    auto &pasteboard = static_cast<VirtualDragPasteboard &>(*platform.dragPasteboard);
    ++pasteboard.count;
    pasteboard.urls = fileURLs(&data);
    return std::make_unique<ForeignDragUnderWay>();
}

std::unique_ptr<ForeignDragUnderWay> dropFromAnotherProgram(QWidget &window, const QList<QUrl> &urls)
{
    QMimeData data;
    data.setUrls(urls);
    sendDragEnter(window, data);
    sendDrop(window, data);
    return std::make_unique<ForeignDragUnderWay>();
}

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    VirtualWorld world;
    return runContracts(world, argc, argv);
}
