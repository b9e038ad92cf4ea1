// SPDX-License-Identifier: MIT
// The preferences window: opening it, switching its panes, and a drag of the size slider with a full shelf.

#include "platform/Platform.h"
#include "preferences/BasePane.h"
#include "preferences/DoubleSlider.h"
#include "preferences/PreferencesWindowController.h"
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/ShelfPanel.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
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
constexpr int kSliderSteps = 200;

// Runs `work` and everything it queues, down to the pixels; milliseconds of the main thread.
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

// A window of the same size with an empty list beside an empty pane, as bare Qt shows it.
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

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const auto platform = createPlatform();
    AppSettings settings(*platform->userDefaults, *platform->colorArchive, *platform->appearance);
    NotificationCenter notifications;

    // The first window of all also pays for fonts and style, whosever it is; that is no part of either figure.
    bareWindow();
    const double bare = bareWindow();

    std::unique_ptr<PreferencesWindowController> controller;
    const double opening = milliseconds([&] {
        controller = std::make_unique<PreferencesWindowController>(*platform, settings, notifications);
        controller->showWindow();
    });
    row("preferences: first opening", opening, "ms", bare, "< 32 ms");

    std::vector<double> times;
    const auto switchPanes = [&](int count) {
        for (int i = 0; i < count; ++i)
            times.push_back(milliseconds([&] { controller->showPane(kPanes[i % std::size(kPanes)]); }));
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

    ShelfPanel shelf(*platform, settings, notifications);
    for (int i = 0; i < kItems; ++i) {
        const QString path = QDir::home().filePath(QStringLiteral("file %1.txt").arg(i));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return 1;
        shelf.addItem(QUrl::fromLocalFile(path));
    }
    shelf.show(false);
    QObject::connect(&notifications, &NotificationCenter::posted, &shelf, [&shelf](const QString &name) {
        if (name == Notifications::settingsChanged)
            shelf.applySettings();
    });
    controller->showPane(PrefPane::appearance);
    auto *slider = controller->pane()->findChild<DoubleSlider *>(SettingsKey::shelfItemSize);
    milliseconds([slider] { slider->setDoubleValue(slider->minimumValue); });
    times.clear();
    for (int i = 1; i <= kSliderSteps; ++i)
        times.push_back(milliseconds([slider, i] { slider->setValue(slider->maximum() * i / kSliderSteps); }));
    row("size slider with 50 items: a step, median", median(times), "ms", 0, "< 16 ms");
    row("size slider with 50 items: longest gap", *std::max_element(times.begin(), times.end()), "ms", 0, "< 16 ms");
    return 0;
}
