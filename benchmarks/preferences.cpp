// SPDX-License-Identifier: MIT
// Measures the preferences window: opening it, switching its panes, and dragging the size slider with a full shelf.

#include "app/AppDelegate.h"
#include "app/SharedInstances.h"
#include "platform/Platform.h"
#include "preferences/BasePane.h"
#include "preferences/DoubleSlider.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QListView>
#include <QSplitter>
#include <QVBoxLayout>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr PrefPane kPanes[] = {PrefPane::welcome, PrefPane::general, PrefPane::behavior, PrefPane::appearance,
                               PrefPane::about};
constexpr int kSwitches = 200;
constexpr int kItems = 50;
constexpr QSize kPhoto(1200, 900);
constexpr int kSliderSteps = 200;

// Runs `work` and everything that it queues, including painting. Returns milliseconds of the main thread.
template<typename Work>
double milliseconds(const Work &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values.at(values.size() / 2);
}

void row(const char *name, double value, const char *unit, double floor, const char *bound)
{
    if (floor > 0)
        std::printf("%s\t%g\t%s\t%g\t%g\t%s\n", name, value, unit, floor, value / floor, bound);
    else
        std::printf("%s\t%g\t%s\t\t\t%s\n", name, value, unit, bound);
}

// Measures a bare Qt window of the same size, with an empty list beside an empty pane.
double bareWindow()
{
    std::unique_ptr<QSplitter> window;
    const double time = milliseconds([&window] {
        window = std::make_unique<QSplitter>();
        window->addWidget(new QListView);
        window->addWidget(new QWidget);
        window->resize(700, 500);
        window->show();
    });
    window.reset();
    return time;
}

// Fills the shelf: half of the files have pictures.
bool fillShelf(ShelfPanel &shelf)
{
    QImage photo(kPhoto, QImage::Format_RGB32);
    photo.fill(Qt::darkCyan);
    for (int i = 0; i < kItems; ++i) {
        const bool isPicture = i % 2 == 0;
        const QString path = QDir::home().filePath(
            QStringLiteral("file %1.%2").arg(i).arg(isPicture ? QStringLiteral("jpg") : QStringLiteral("txt")));
        QFile file(path);
        if (isPicture ? !photo.save(path) : !file.open(QIODevice::WriteOnly))
            return false;
        shelf.addItem(QUrl::fromLocalFile(path));
    }
    return true;
}

// Moves the slider step by step, and measures everything that each step causes in the program.
void dragSlider(PreferencesWindowController &preferences, const QString &key, const QString &name)
{
    auto *slider = preferences.pane()->findChild<DoubleSlider *>(key);
    milliseconds([slider] { slider->setValue(0); });
    std::vector<double> times;
    for (int i = 1; i <= kSliderSteps; ++i)
        times.push_back(milliseconds([slider, i] { slider->setValue(slider->maximum() * i / kSliderSteps); }));
    row(qPrintable(name + QStringLiteral(" with 50 items: a step, median")), median(times), "ms", 0, "< 16 ms");
    row(qPrintable(name + QStringLiteral(" with 50 items: longest gap")), *std::max_element(times.begin(), times.end()),
        "ms", 0, "< 16 ms");
}

} // namespace

int main(int argc, char *argv[])
{
    // The display plugin without a screen prints a warning at every step.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const auto platform = createPlatform();
    SharedInstances shared(*platform);
    AppDelegate delegate(shared);
    // These are the parts of a launch that matter for the preferences.
    NotificationCenter &notifications = shared.notifications();
    notifications.observe(Notifications::settingsChanged, &delegate,
                          [&delegate](const QVariantMap &) { delegate.handleSettingsChanged(); });
    notifications.observe(Notifications::appearancePaneActive, &delegate,
                          [&delegate](const QVariantMap &userInfo) { delegate.handleAppearancePaneActive(userInfo); });

    // The first window also loads fonts and the style. Neither figure contains that.
    bareWindow();
    const double bare = bareWindow();

    const double opening = milliseconds([&delegate] { delegate.openPreferences(); });
    row("preferences: first opening", opening, "ms", bare, "< 32 ms");

    PreferencesWindowController &preferences = shared.preferences();
    std::vector<double> times;
    const auto switchPanes = [&](int count) {
        for (int i = 0; i < count; ++i)
            times.push_back(milliseconds([&] { preferences.showPane(kPanes[i % std::size(kPanes)]); }));
    };
    switchPanes(10);
    const double early = residentMegabytes();
    row("preferences: first round of the panes, worst", *std::max_element(times.begin(), times.end()), "ms", 0,
        "< 32 ms");
    times.clear();
    switchPanes(kSwitches);
    row("preferences: switching a pane, median", median(times), "ms", 0, "< 32 ms");
    row("preferences: switching a pane, worst of 200", *std::max_element(times.begin(), times.end()), "ms", 0,
        "< 32 ms");
    switchPanes(1000 - kSwitches - 10);
    row("preferences: memory after 1,000 switches", residentMegabytes(), "MB", early, "ratio 1");

    if (!fillShelf(delegate.shelf))
        return 1;
    preferences.showPane(PrefPane::appearance);
    dragSlider(preferences, Settings::shelfItemSize.key, QStringLiteral("size slider"));
    dragSlider(preferences, Settings::tintIntensity.key, QStringLiteral("intensity slider"));
    return 0;
}
