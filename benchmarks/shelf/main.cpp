// SPDX-License-Identifier: MIT
// Measures the cost of one more item, by the number of items that the shelf holds.
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/ShelfPanel.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int kRounds = 60;
constexpr double kNanosecondsPerMicrosecond = 1000.0;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    std::vector<double> fifth;
    std::vector<double> fiftieth;
    for (int round = 0; round < kRounds; ++round) {
        VirtualPlatform virtualPlatform;
        AppSettings settings(virtualPlatform.userDefaults, virtualPlatform.colorArchive, virtualPlatform.appearance);
        NotificationCenter notifications;
        ShelfPanel panel(virtualPlatform.platform, settings, notifications);
        panel.show(Animated::No);
        for (int i = 1; i <= 50; ++i) {
            QElapsedTimer clock;
            clock.start();
            panel.addItem(QUrl::fromLocalFile(QStringLiteral("/files/%1.jpg").arg(i)));
            QApplication::processEvents();
            const double cost = static_cast<double>(clock.nsecsElapsed()) / kNanosecondsPerMicrosecond;
            if (i == 5)
                fifth.push_back(cost);
            if (i == 50)
                fiftieth.push_back(cost);
        }
    }
    const double floor = median(fifth);
    const double cost = median(fiftieth);
    std::printf("adding the 50th item, shown, against the 5th\t%.0f\tus\t%.0f\t%.2f\t2.0\n", cost, floor, cost / floor);
    return 0;
}
