// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbScreens.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace {

constexpr quint32 kStrutValues = 12;

// Qt scales the size of a screen, but keeps the origin in the server's pixels.
QRect pixelsOf(const QScreen &screen)
{
    return {screen.geometry().topLeft(), (QSizeF(screen.geometry().size()) * screen.devicePixelRatio()).toSize()};
}

QRectF pointsOf(const QRect &pixels, const QScreen &screen)
{
    const QPointF origin = screen.geometry().topLeft();
    const double scale = screen.devicePixelRatio();
    return {origin + (QPointF(pixels.topLeft()) - origin) / scale, QSizeF(pixels.size()) / scale};
}

QList<QScreen *> usableScreens()
{
    QList<QScreen *> screens = QGuiApplication::screens();
    screens.removeIf([](const QScreen *screen) { return screen->geometry().isEmpty(); });
    return screens;
}

bool isFloatingPanel(xcb_window_t window)
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(), [window](const QWindow *each) {
        return each->handle() && each->winId() == window && each->flags().testFlag(Qt::WindowDoesNotAcceptFocus);
    });
}

} // namespace

XcbScreens::XcbScreens(std::shared_ptr<XcbConnection> connection)
    : xcb(std::move(connection))
{
    reportSoon.setSingleShot(true);
    QObject::connect(&reportSoon, &QTimer::timeout, &context, [this] { report(); });
    for (QScreen *screen : QGuiApplication::screens())
        follow(screen);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &context, [this](QScreen *screen) {
        follow(screen);
        invalidate();
    });
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &context, [this] { invalidate(); });
    QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &context, [this] { invalidate(); });
    if (xcb) {
        subscription = xcb->listen([this](const xcb_generic_event_t &event) { handle(event); });
        xcb->addRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    }
}

std::optional<Screen> XcbScreens::main() const
{
    const QList<Screen> screens = all();
    if (screens.isEmpty())
        return {};
    if (screens.size() == 1)
        return screens.first();
    if (const auto window = activeWindow()) {
        QList<QRect> frames;
        for (const QScreen *screen : usableScreens())
            frames.append(pixelsOf(*screen));
        const auto index = screenShowing(*window, frames);
        if (index && *index < screens.size())
            return screens.at(*index);
    }
    const std::optional<QPointF> position = pointer();
    const auto under = std::find_if(screens.begin(), screens.end(),
                                    [&](const Screen &screen) { return position && screen.frame.contains(*position); });
    return under == screens.end() ? screens.first() : *under;
}

QList<Screen> XcbScreens::all() const
{
    if (known)
        return *known;
    const QList<Strut> reserved = readStruts();
    const auto root = xcb ? xcb->reply(xcb_get_geometry_reply, xcb_get_geometry(xcb->get(), xcb->root())) : nullptr;
    const QList<QRect> areas = readWorkAreas();
    const QList<QScreen *> qtScreens = usableScreens();
    // Qt limits every screen to the single work area, which is right for one screen only.
    const bool qtKnows = qtScreens.size() == 1 && !qtScreens.first()->availableGeometry().isEmpty();
    QList<Screen> screens;
    for (const QScreen *screen : qtScreens) {
        Screen result{screen->geometry(), qtKnows ? screen->availableGeometry() : screen->geometry(),
                      screen->devicePixelRatio()};
        if (root) {
            const QRect visible = visiblePixels(pixelsOf(*screen), QSize(root->width, root->height), reserved, areas);
            const QRectF free = result.visibleFrame & pointsOf(visible, *screen);
            if (!free.isEmpty())
                result.visibleFrame = free;
        }
        screens.append(result);
    }
    known = screens;
    if (reported.isEmpty())
        reported = screens;
    return screens;
}

std::optional<QPointF> XcbScreens::pointer() const
{
    return onPointer ? onPointer() : QPointF(QCursor::pos());
}

void XcbScreens::follow(QScreen *screen)
{
    QObject::connect(screen, &QScreen::geometryChanged, &context, [this] { invalidate(); });
    QObject::connect(screen, &QScreen::availableGeometryChanged, &context, [this] { invalidate(); });
    QObject::connect(screen, &QScreen::physicalDotsPerInchChanged, &context, [this] { invalidate(); });
    QObject::connect(screen, &QScreen::logicalDotsPerInchChanged, &context, [this] { invalidate(); });
}

void XcbScreens::handle(const xcb_generic_event_t &event)
{
    if (eventType(event) != XCB_PROPERTY_NOTIFY)
        return;
    const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
    const bool ofRoot = change.window == xcb->root();
    // A window that reserves space later changes the work area, even if we get no event of the window itself.
    if (ofRoot ? change.atom == xcb->atom("_NET_CLIENT_LIST") || change.atom == xcb->atom("_NET_WORKAREA")
               : change.atom == xcb->atom("_NET_WM_STRUT_PARTIAL") || change.atom == xcb->atom("_NET_WM_STRUT")) {
        strutsChanged = true;
        invalidate();
    } else if (ofRoot && (change.atom == workAreas || change.atom == xcb->atom("_NET_CURRENT_DESKTOP"))) {
        invalidate();
    }
}

void XcbScreens::invalidate()
{
    known.reset();
    reportSoon.start(0);
}

void XcbScreens::report()
{
    // Nobody has read the screens yet, so there is no old value to update.
    if (reported.isEmpty())
        return;
    const QList<Screen> before = std::exchange(reported, all());
    if (onChange && before != reported)
        onChange();
}

QList<Strut> XcbScreens::readStruts() const
{
    if (!xcb || !strutsChanged)
        return struts;
    struct Query {
        xcb_window_t window;
        xcb_get_property_cookie_t partial;
        xcb_get_property_cookie_t whole;
        xcb_get_property_cookie_t type;
    };
    // Send all requests before waiting for the first reply.
    std::vector<Query> queries;
    for (const xcb_window_t window : xcb->values(xcb->root(), xcb->atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW)) {
        const auto ask = [&](const char *property, xcb_atom_t type) {
            return xcb_get_property(xcb->get(), 0, window, xcb->atom(property), type, 0, kStrutValues);
        };
        queries.push_back({window, ask("_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL),
                           ask("_NET_WM_STRUT", XCB_ATOM_CARDINAL), ask("_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM)});
    }
    struts.clear();
    for (const Query &query : queries) {
        const auto valuesOf = [&](xcb_get_property_cookie_t cookie) {
            return propertyValues(xcb->reply(xcb_get_property_reply, cookie).get());
        };
        const std::vector<quint32> partial = valuesOf(query.partial);
        const Strut strut = strutOf(partial, valuesOf(query.whole));
        const std::vector<quint32> types = valuesOf(query.type);
        if (!strut.isEmpty())
            struts.append(strut);
        // Select events only on windows that may reserve space: others change properties all day.
        const bool isDock = std::find(types.begin(), types.end(), xcb->atom("_NET_WM_WINDOW_TYPE_DOCK")) != types.end();
        if (!strut.isEmpty() || isDock) {
            const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_change_window_attributes(xcb->get(), query.window, XCB_CW_EVENT_MASK, &mask);
        }
    }
    strutsChanged = false;
    return struts;
}

// GNOME draws its bar without a window. Its desktop states the work area of each screen instead.
QList<QRect> XcbScreens::readWorkAreas() const
{
    if (!xcb)
        return {};
    const std::vector<quint32> desktop = xcb->values(xcb->root(), xcb->atom("_NET_CURRENT_DESKTOP"), XCB_ATOM_CARDINAL);
    workAreas = xcb->atom("_GTK_WORKAREAS_D" + QByteArray::number(desktop.empty() ? 0 : desktop.front()));
    const std::vector<quint32> values = xcb->values(xcb->root(), workAreas, XCB_ATOM_CARDINAL);
    QList<QRect> areas;
    for (std::size_t i = 0; i + 3 < values.size(); i += 4)
        areas.append({static_cast<int>(values[i]), static_cast<int>(values[i + 1]), static_cast<int>(values[i + 2]),
                      static_cast<int>(values[i + 3])});
    return areas;
}

std::optional<QRect> XcbScreens::activeWindow() const
{
    if (!xcb)
        return {};
    const std::vector<quint32> active = xcb->values(xcb->root(), xcb->atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    if (active.empty() || active.front() == XCB_NONE || isFloatingPanel(active.front()))
        return {};
    const auto geometryQuery = xcb_get_geometry(xcb->get(), active.front());
    const auto originQuery = xcb_translate_coordinates(xcb->get(), active.front(), xcb->root(), 0, 0);
    const auto geometry = xcb->reply(xcb_get_geometry_reply, geometryQuery);
    const auto origin = xcb->reply(xcb_translate_coordinates_reply, originQuery);
    if (!geometry || !origin)
        return {};
    return QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height);
}
