// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbPanel.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <utility>

namespace {

// Instance and class, each with a terminating null.
constexpr char kWindowClass[] = "parklet\0Parklet";

constexpr quint32 kAllDesktops = 0xffffffff;
constexpr quint32 kAdd = 1;             // the action of a _NET_WM_STATE message
constexpr quint32 kFromApplication = 1; // the source of a request to the window manager
constexpr quint32 kWithdrawn = 0;       // WM_STATE of a window that is not managed

// Milliseconds to wait for the window manager to withdraw a window before going on.
constexpr int kWithdrawalLimit = 250;

// Requests about our own windows use Qt's connection, so that the server sees them in order.
xcb_connection_t *qtConnection()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

void sendToRoot(xcb_window_t root, xcb_window_t window, xcb_atom_t type, const std::array<quint32, 5> &data)
{
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = type;
    std::copy(data.begin(), data.end(), event.data.data32);
    xcb_send_event(qtConnection(), 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&event));
}

} // namespace

XcbPanel::XcbPanel(QWidget &panelWindow, const PanelStyle &panelStyle, std::shared_ptr<XcbConnection> connection)
    : window(&panelWindow)
    , style(panelStyle)
    , xcb(std::move(connection))
{
    panelWindow.setAttribute(Qt::WA_TranslucentBackground);
    panelWindow.setAttribute(Qt::WA_ShowWithoutActivating);
    panelWindow.setWindowRole(style.role);
    applyFlags();
    panelWindow.installEventFilter(this);
    withdrawalLimit.setSingleShot(true);
    withdrawalLimit.setInterval(kWithdrawalLimit);
    connect(&withdrawalLimit, &QTimer::timeout, this, [this] { finishWithdrawal(); });
}

void XcbPanel::prepare()
{
    if (!window || window->isVisible() || nativeWindow() != XCB_NONE)
        return;
    window->winId();
    window->grab();
}

void XcbPanel::orderFront(const Desktop &desktop)
{
    if (!window)
        return;
    if (window->isVisible()) {
        // Not during a drag: its source would lose the panel under the pointer.
        if (!desktop.isDragInProgress)
            setOverridesManager(desktop.isFullScreen);
        if (!withdrawal)
            window->raise();
        return;
    }
    cameInDrag = desktop.isDragInProgress;
    if (overrides != (desktop.isFullScreen || cameInDrag)) {
        overrides = !overrides;
        applyFlags();
    }
    window->show();
    window->raise();
    requestAllDesktops();
}

void XcbPanel::orderOut()
{
    if (window)
        window->hide();
    if (withdrawal)
        finishWithdrawal();
}

void XcbPanel::setAlpha(double alpha)
{
    if (!window)
        return;
    window->setWindowOpacity(alpha);
    // Qt sends what it has written only when the next event comes; the last step of a fade would wait for it.
    if (nativeWindow() != XCB_NONE)
        xcb_flush(qtConnection());
}

void XcbPanel::setOverridesManager(bool overridesManager)
{
    if (!window || !window->isVisible() || nativeWindow() == XCB_NONE)
        return;
    if (overrides != (overridesManager || cameInDrag)) {
        overrides = !overrides;
        withdraw();
    } else if (overrides && !withdrawal) {
        window->raise();
    }
}

void XcbPanel::setBlends(bool canBlend)
{
    if (blends == canBlend)
        return;
    blends = canBlend;
    updateOutline();
    if (window)
        window->update();
}

bool XcbPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == window) {
        switch (event->type()) {
        case QEvent::WinIdChange:
            identify();
            updateOutline();
            break;
        case QEvent::Show:
            // Before the window is mapped: the window manager forgets the state of an unmapped window.
            if (!event->spontaneous())
                writeState();
            break;
        case QEvent::Resize:
            updateOutline();
            break;
        default:
            break;
        }
    }
    return QObject::eventFilter(watched, event);
}

xcb_window_t XcbPanel::nativeWindow() const
{
    return xcb && window && window->internalWinId() ? static_cast<xcb_window_t>(window->internalWinId()) : XCB_NONE;
}

void XcbPanel::identify()
{
    if (nativeWindow() != XCB_NONE)
        xcb_change_property(qtConnection(), XCB_PROP_MODE_REPLACE, nativeWindow(), XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
                            8, sizeof kWindowClass, kWindowClass);
}

void XcbPanel::writeState()
{
    if (nativeWindow() == XCB_NONE)
        return;
    const std::array<xcb_atom_t, 4> state = {
        xcb->atom("_NET_WM_STATE_ABOVE"),
        xcb->atom("_NET_WM_STATE_STICKY"),
        xcb->atom("_NET_WM_STATE_SKIP_TASKBAR"),
        xcb->atom("_NET_WM_STATE_SKIP_PAGER"),
    };
    xcb_change_property(qtConnection(), XCB_PROP_MODE_REPLACE, nativeWindow(), xcb->atom("_NET_WM_STATE"),
                        XCB_ATOM_ATOM, 32, state.size(), state.data());
}

void XcbPanel::requestAllDesktops()
{
    // After the window is mapped: otherwise some window managers put it on the last desktop.
    if (nativeWindow() == XCB_NONE || overrides)
        return;
    sendToRoot(xcb->root(), nativeWindow(), xcb->atom("_NET_WM_STATE"),
               {kAdd, xcb->atom("_NET_WM_STATE_STICKY"), XCB_ATOM_NONE, kFromApplication, 0});
    sendToRoot(xcb->root(), nativeWindow(), xcb->atom("_NET_WM_DESKTOP"), {kAllDesktops, kFromApplication, 0, 0, 0});
    xcb_flush(qtConnection());
}

void XcbPanel::updateOutline()
{
    if (!window)
        return;
    if (blends) {
        if (!window->mask().isEmpty())
            window->clearMask();
    } else {
        window->setMask(roundedRegion(window->size(), style.cornerRadius));
    }
    if (nativeWindow() == XCB_NONE)
        return;
    // A compositor that blurs behind windows should do so behind the panel only.
    const double scale = window->devicePixelRatio();
    const QRegion blurred = roundedRegion((QSizeF(window->size()) * scale).toSize(), style.cornerRadius * scale);
    std::vector<quint32> values;
    for (const QRect &part : blurred) {
        for (const int value : {part.x(), part.y(), part.width(), part.height()})
            values.push_back(static_cast<quint32>(value));
    }
    xcb_change_property(qtConnection(), XCB_PROP_MODE_REPLACE, nativeWindow(),
                        xcb->atom("_KDE_NET_WM_BLUR_BEHIND_REGION"), XCB_ATOM_CARDINAL, 32,
                        static_cast<quint32>(values.size()), values.data());
}

void XcbPanel::applyFlags()
{
    Qt::WindowFlags flags =
        Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus;
    flags.setFlag(Qt::X11BypassWindowManagerHint, overrides);
    // QWidget::setWindowFlags() would hide a visible panel.
    window->overrideWindowFlags(flags);
    if (window->windowHandle())
        window->windowHandle()->setFlags(flags);
}

// Unmaps the window, unnoticed by its widget, to map it again as the other kind.
void XcbPanel::withdraw()
{
    const xcb_window_t native = nativeWindow();
    const bool managed = overrides; // the kind until now
    if (withdrawal)
        return;
    withdrawalLimit.start();
    // Wait until the window manager has withdrawn the window; otherwise it would manage the next mapping.
    withdrawal = xcb->listen([this, native](const xcb_generic_event_t &event) {
        if (eventType(event) != XCB_PROPERTY_NOTIFY)
            return;
        const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        const xcb_atom_t state = xcb->atom("WM_STATE");
        if (change.window != native || change.atom != state)
            return;
        const std::vector<quint32> values = xcb->values(native, state, state);
        if (values.empty() || values.front() == kWithdrawn)
            finishWithdrawal();
    });
    if (managed) {
        const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb->succeeded(xcb_change_window_attributes_checked(xcb->get(), native, XCB_CW_EVENT_MASK, &mask));
    }
    xcb_unmap_window(qtConnection(), native);
    if (managed) {
        xcb_unmap_notify_event_t event = {};
        event.response_type = XCB_UNMAP_NOTIFY;
        event.event = xcb->root();
        event.window = native;
        xcb_send_event(qtConnection(), 0, xcb->root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char *>(&event));
    } else {
        finishWithdrawal();
    }
    xcb_flush(qtConnection());
}

void XcbPanel::finishWithdrawal()
{
    const auto keep = std::exchange(withdrawal, nullptr);
    withdrawalLimit.stop();
    if (nativeWindow() == XCB_NONE)
        return;
    const quint32 mask = 0;
    xcb_change_window_attributes(xcb->get(), nativeWindow(), XCB_CW_EVENT_MASK, &mask);
    xcb->flush();
    applyFlags();
    if (!window->isVisible())
        return;
    writeState();
    xcb_map_window(qtConnection(), nativeWindow());
    window->raise();
    requestAllDesktops();
    xcb_flush(qtConnection());
}

QRegion roundedRegion(const QSize &size, double radius)
{
    const double r = std::min({radius, size.width() / 2.0, size.height() / 2.0});
    const int rows = static_cast<int>(std::ceil(r));
    QRegion region(0, rows, size.width(), size.height() - 2 * rows);
    for (int y = 0; y < rows; ++y) {
        const double height = r - (y + 0.5);
        const int inset = static_cast<int>(std::lround(r - std::sqrt(r * r - height * height)));
        region += QRect(inset, y, size.width() - 2 * inset, 1);
        region += QRect(inset, size.height() - 1 - y, size.width() - 2 * inset, 1);
    }
    return region;
}
