// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/WaylandScreens.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <utility>

WaylandScreens::WaylandScreens(std::shared_ptr<WorkAreas> workAreas)
    : areas(std::move(workAreas))
{
    reportSoon.setSingleShot(true);
    QObject::connect(&reportSoon, &QTimer::timeout, &context, [this] { report(); });
    const auto changed = [this] { reportSoon.start(0); };
    for (QScreen *screen : QGuiApplication::screens())
        follow(screen);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &context, [this, changed](QScreen *screen) {
        follow(screen);
        changed();
    });
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &context, changed);
    QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &context, changed);
    areas->onChange = changed;
    reported = WaylandScreens::all();
    if (!reported.isEmpty())
        lastPointer = reported.constFirst().frame.center();
}

WaylandScreens::~WaylandScreens()
{
    areas->onChange = nullptr;
}

std::optional<Screen> WaylandScreens::main() const
{
    const QList<Screen> screens = all();
    if (screens.isEmpty())
        return {};
    if (screens.size() > 1) {
        const WorkArea *focused = areas->focused();
        const auto found = std::ranges::find_if(screens, [focused](const Screen &screen) {
            return focused && screen.frame.topLeft().toPoint() == focused->output().frame.topLeft();
        });
        if (found != screens.end())
            return *found;
    }
    return screens.constFirst();
}

QList<Screen> WaylandScreens::all() const
{
    QList<Screen> screens;
    for (const QScreen *screen : QGuiApplication::screens()) {
        if (screen->geometry().isEmpty())
            continue;
        Screen result{screen->geometry(), screen->geometry(), screen->devicePixelRatio()};
        const auto area = std::ranges::find_if(areas->all(), [screen](const auto &each) {
            return each->output().frame.topLeft() == screen->geometry().topLeft();
        });
        if (area != areas->all().end()) {
            const QRectF free = result.frame & QRectF((*area)->frame());
            if (!free.isEmpty())
                result.visibleFrame = free;
        }
        screens.append(result);
    }
    return screens;
}

void WaylandScreens::follow(QScreen *screen)
{
    const auto changed = [this] { reportSoon.start(0); };
    QObject::connect(screen, &QScreen::geometryChanged, &context, changed);
    QObject::connect(screen, &QScreen::physicalDotsPerInchChanged, &context, changed);
    QObject::connect(screen, &QScreen::logicalDotsPerInchChanged, &context, changed);
}

void WaylandScreens::report()
{
    const QList<Screen> before = std::exchange(reported, all());
    if (onChange && before != reported)
        onChange();
}
