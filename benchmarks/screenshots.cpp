// SPDX-License-Identifier: MIT
//
// Measures the way of a screenshot to the shelf: the time from closing its file until its tile is painted, the work of
// the main thread, the cost of a Desktop with many files, and wake-ups while nothing happens.

#include "platform/common/QtMainQueue.h"
#include "platform/linux/files/LinuxFileEventStreams.h"
#include "platform/linux/thumbnails/LinuxThumbnailGenerator.h"
#include "screenshots/NewScreenshots.h"
#include "screenshots/ScreenshotWatcher.h"
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfPanel.h"
#include "tests/support/VirtualPlatform.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kRuns = 11;
constexpr int kFiles = 1'000;
constexpr int kCrowd = 20'000;
constexpr int kListings = 21;
constexpr int kIdleTime = 10'000;  // milliseconds
constexpr int kSettleTime = 1'500; // milliseconds; the last thumbnail has arrived after them

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// The processor time of the calling thread, in milliseconds.
double workTime()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

void row(const char *name, double value, const char *unit, const char *bound)
{
    std::printf("%s\t%.3f\t%s\t\t\t%s\n", name, value, unit, bound);
}

void row(const char *name, double value, const char *unit, double floor, const char *bound)
{
    std::printf("%s\t%.3f\t%s\t%.3f\t%.3f\t%s\n", name, value, unit, floor, value / floor, bound);
}

void fill(const QString &folder, int count)
{
    for (int i = 0; i < count; ++i) {
        const QByteArray path = QFile::encodeName(QStringLiteral("%1/Screenshot %2.png").arg(folder).arg(i));
        close(open(path.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }
}

void turnLoopFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

// The number of wake-ups of the main loop while nothing happens.
int wakeUps()
{
    turnLoopFor(kSettleTime);
    int count = 0;
    const auto connection = QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake,
                                             qApp, [&count] { ++count; });
    turnLoopFor(kIdleTime);
    QObject::disconnect(connection);
    return count;
}

// Calls back when a widget was painted.
class PaintWatch : public QObject {
public:
    std::function<void()> onPaint;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const bool handled = QObject::eventFilter(watched, event);
        // The filter runs before the widget paints, and the next turn of the loop after it.
        if (event->type() == QEvent::Paint && onPaint)
            QTimer::singleShot(0, this, std::exchange(onPaint, nullptr));
        return handled;
    }
};

// The real objects from the folder to a shelf that paints into memory.
struct Road {
    explicit Road(const QString &desktop)
    {
        services.platform.mainQueue = std::make_unique<QtMainQueue>();
        services.platform.thumbnailGenerator = std::make_unique<LinuxThumbnailGenerator>(
            *services.platform.mainQueue, std::make_shared<FileHelpers>(*services.platform.mainQueue),
            QFile::encodeName(desktop + QStringLiteral("/../cache")));
        shelf = std::make_unique<ShelfPanel>(services.platform, settings, notifications);
        streams = std::make_unique<LinuxFileEventStreams>(*services.platform.mainQueue);
        watcher = std::make_unique<ScreenshotWatcher>(settings, *streams, *services.platform.mainQueue,
                                                      QUrl::fromLocalFile(desktop));
    }

    VirtualPlatform services;
    AppSettings settings{*services.platform.userDefaults, *services.platform.colorArchive,
                         *services.platform.appearance};
    NotificationCenter notifications;
    std::unique_ptr<ShelfPanel> shelf;
    std::unique_ptr<LinuxFileEventStreams> streams;
    std::unique_ptr<ScreenshotWatcher> watcher;
};

void measureArrival()
{
    const QTemporaryDir root;
    const QString desktop = root.filePath(QStringLiteral("Desktop"));
    QDir().mkpath(desktop);
    fill(desktop, kFiles);
    QImage image(1920, 1080, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    const QString picture = root.filePath(QStringLiteral("picture.png"));
    image.save(picture);

    Road road(desktop);
    PaintWatch painted;
    QEventLoop loop;
    road.watcher->onNewScreenshot = [&](const QUrl &file) {
        road.shelf->addItem(file);
        const auto tiles = road.shelf->findChildren<ShelfItemView *>();
        tiles.last()->installEventFilter(&painted);
    };
    road.shelf->show(Animated::No);
    road.watcher->start();

    std::vector<double> arrivals;
    std::vector<double> work;
    for (int run = 0; run < kRuns; ++run) {
        turnLoopFor(kSettleTime);
        QFile::copy(picture, QStringLiteral("%1/new %2.png").arg(desktop).arg(run));
        QElapsedTimer clock;
        clock.start();
        const double workBefore = workTime();
        painted.onPaint = [&] {
            arrivals.push_back(double(clock.nsecsElapsed()) / 1e6);
            work.push_back(workTime() - workBefore);
            loop.quit();
        };
        loop.exec();
    }
    row("screenshot closed to tile painted, 1,000 files there", median(arrivals), "ms", "517");
    row("of it, work of the main thread", median(work), "ms", "2");
}

void measureListing()
{
    const QTemporaryDir root;
    fill(root.path(), kCrowd);
    const QByteArray path = QFile::encodeName(root.path());
    std::vector<double> plain;
    std::vector<double> own;
    for (int run = 0; run < kListings; ++run) {
        double before = workTime();
        DIR *const directory = opendir(path.constData());
        int entries = 0;
        while (readdir(directory))
            ++entries;
        closedir(directory);
        plain.push_back(workTime() - before);

        before = workTime();
        const auto names = screenshotNames(path);
        own.push_back(workTime() - before);
        if (names.size() != kCrowd || entries < kCrowd)
            qFatal("The folder does not hold what was put there.");
    }
    row("listing of 20,000 names, all of them screenshots", median(own), "ms", median(plain), "16 ms");
}

void measureIdle()
{
    const QTemporaryDir root;
    const QString desktop = root.filePath(QStringLiteral("Desktop"));
    QDir().mkpath(desktop);
    const int bare = wakeUps(); // the wake-up that ends the time
    Road road(desktop);
    road.watcher->start();
    row("idle 10 s with the Desktop watched: wake-ups", wakeUps() - bare, "", "0");
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    HelperProcess::lookIn(PARKLET_HELPERS);
    measureArrival();
    measureListing();
    measureIdle();
}
