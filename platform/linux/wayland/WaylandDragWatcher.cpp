// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/WaylandDragWatcher.h"

#include "platform/FileURLs.h"
#include "platform/common/DragSources.h"

#include <xcb/xfixes.h>

#include <array>
#include <chrono>
#include <utility>

#include <unistd.h>

using namespace std::chrono_literals;

namespace {

// A compositor reports a drag only when it moves. A drag that does not enter an area within this time carries nothing
// that can be dropped here.
constexpr auto kProbing = 5s;
// A drag counts as in progress for so long after the last report of it. Nothing reports the end of a drag that is
// elsewhere, so an empty shelf stays visible for this time.
constexpr auto kUnseen = 10s;
// The same while an area waits for the drag. There the pointer without a drag shows that it has ended.
constexpr auto kAttended = 60s;

constexpr quint8 kSentByClient = 0x80;
constexpr qsizetype kMostData = qsizetype(16) * 1024 * 1024;

const char *const kURIList = "text/uri-list";

} // namespace

WaylandDragWatcher::WaylandDragWatcher(std::shared_ptr<WaylandConnection> connection,
                                       std::shared_ptr<WorkAreas> workAreas, std::shared_ptr<XcbConnection> xConnection)
    : wayland(std::move(connection))
    , areas(std::move(workAreas))
    , xcb(std::move(xConnection))
{
    limit.setSingleShot(true);
    connect(&limit, &QTimer::timeout, this, [this] {
        if (state == State::Reading)
            finishReading({});
        else
            end();
    });
}

WaylandDragWatcher::~WaylandDragWatcher()
{
    forget();
    if (seatOpener != XCB_NONE)
        xcb_destroy_window(xcb->get(), seatOpener);
}

void WaylandDragWatcher::start()
{
    if (seat)
        return;
    seat = std::make_unique<SeatDrags>(*wayland);
    seat->onEnter = [this](wl_surface *surface, const QPointF &position, DragOffer *offer) {
        entered(surface, position, offer);
    };
    seat->onMotion = [this](const QPointF &position) { moved(position); };
    seat->onLeave = [this] { left(); };
    seat->onDrop = [this] { end(); };
    seat->onPointer = [this](wl_surface *, const QPointF &) { pointerEntered(); };
    if (!xcb || !xcb->isAlive() || !xcb->xfixesFirstEvent())
        return;
    selection = xcb->atom("XdndSelection");
    announceSelf();
    subscription = xcb->listen([this](const xcb_generic_event_t &event) { handle(event); });
    xcb_xfixes_select_selection_input(xcb->get(), xcb->root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    xcb->flush();
}

// Compositors with wlroots announce drags to an X server only after a window has been shown there. This window is never
// visible to the user.
void WaylandDragWatcher::announceSelf()
{
    constexpr qint16 kOffScreen = -16;
    constexpr quint16 kSide = 4;
    // A window without a background is not drawn and does not count as shown.
    constexpr std::array<quint32, 2> values = {0, 1};
    seatOpener = xcb_generate_id(xcb->get());
    xcb_create_window(xcb->get(), XCB_COPY_FROM_PARENT, seatOpener, xcb->root(), kOffScreen, kOffScreen, kSide, kSide,
                      0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
    xcb_map_window(xcb->get(), seatOpener);
}

void WaylandDragWatcher::handle(const xcb_generic_event_t &event)
{
    const int type = event.response_type & ~kSentByClient;
    if (type != *xcb->xfixesFirstEvent() + XCB_XFIXES_SELECTION_NOTIFY)
        return;
    const auto &change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
    if (change.selection == selection && change.owner != XCB_NONE)
        dragBegins();
}

void WaylandDragWatcher::dragBegins()
{
    if (ownDrag)
        return;
    end();
    state = State::Probing;
    limit.start(kProbing);
    QRegion everywhere;
    for (const auto &area : areas->all())
        everywhere += area->frame();
    areas->open(everywhere);
}

void WaylandDragWatcher::entered(wl_surface *surface, const QPointF &position, DragOffer *offer)
{
    hovered = surface;
    if (onPointer)
        onPointer(onDesktop(position));
    if (state == State::Dragging) {
        moved(position);
        return;
    }
    if (state != State::Probing)
        return;
    areas->close();
    const int descriptor = offer && offer->offers(kURIList) ? offer->receive(kURIList) : -1;
    if (descriptor < 0) {
        forget();
        return;
    }
    wl_display_flush(wayland->display());
    state = State::Reading;
    limit.start(kLongestSilence);
    data.clear();
    pipe = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    connect(pipe.get(), &QSocketNotifier::activated, this, [this] { readMore(); });
}

void WaylandDragWatcher::moved(const QPointF &position)
{
    if (onPointer)
        onPointer(onDesktop(position));
    if (state != State::Dragging)
        return;
    waitForEnd();
    if (onDragged)
        onDragged();
}

void WaylandDragWatcher::left()
{
    hovered = nullptr;
}

// The pointer enters a surface only when no drag is in progress.
void WaylandDragWatcher::pointerEntered()
{
    if (!ownDrag)
        end();
}

void WaylandDragWatcher::readMore()
{
    constexpr qsizetype kPiece = qsizetype(64) * 1024;
    QByteArray piece(kPiece, Qt::Uninitialized);
    for (;;) {
        const ssize_t length = ::read(int(pipe->socket()), piece.data(), size_t(piece.size()));
        if (length > 0) {
            data.append(piece.constData(), length);
            if (data.size() > kMostData) {
                finishReading({});
                return;
            }
            limit.start(kLongestSilence);
        } else if (length < 0 && errno == EINTR) {
            continue;
        } else if (length < 0 && errno == EAGAIN) {
            return;
        } else {
            finishReading(length == 0 ? ::fileURLs(data) : QList<QUrl>());
            return;
        }
    }
}

void WaylandDragWatcher::finishReading(const QList<QUrl> &urls)
{
    forget();
    if (!urls.isEmpty())
        know(urls);
}

void WaylandDragWatcher::know(const QList<QUrl> &urls)
{
    files = urls;
    ++count;
    state = State::Dragging;
    waitForEnd();
    if (onDragged)
        onDragged();
}

void WaylandDragWatcher::end()
{
    const bool wasDragging = state == State::Dragging;
    forget();
    if (wasDragging && onEnded)
        onEnded();
}

// Undoes everything that the drag has caused.
void WaylandDragWatcher::forget()
{
    if (pipe) {
        const int descriptor = int(pipe->socket());
        // The notifier may be the caller.
        pipe->setEnabled(false);
        pipe.release()->deleteLater();
        ::close(descriptor);
    }
    data.clear();
    limit.stop();
    if (state != State::Idle)
        areas->close();
    state = State::Idle;
    attended = QRect();
    isOverPanel = false;
    files.clear();
}

void WaylandDragWatcher::waitForEnd()
{
    if (isOverPanel)
        limit.stop();
    else if (attended.isEmpty())
        limit.start(kUnseen);
    else
        limit.start(kAttended);
}

void WaylandDragWatcher::setOwnDrag(bool isInProgress)
{
    ownDrag = isInProgress;
    if (ownDrag)
        end();
}

void WaylandDragWatcher::attend(const QRectF &area)
{
    if (state != State::Dragging)
        return;
    attended = area.toAlignedRect();
    areas->open(attended);
    waitForEnd();
}

void WaylandDragWatcher::panelShown()
{
    if (state != State::Dragging || attended.isEmpty())
        return;
    attended = QRect();
    areas->close();
    waitForEnd();
}

void WaylandDragWatcher::draggedOverPanel()
{
    if (ownDrag)
        return;
    isOverPanel = true;
    if (state == State::Dragging)
        waitForEnd();
}

void WaylandDragWatcher::leftPanel()
{
    isOverPanel = false;
    if (state == State::Dragging)
        waitForEnd();
}

void WaylandDragWatcher::droppedOnPanel()
{
    isOverPanel = false;
    if (!ownDrag)
        end();
}

void WaylandDragWatcher::pointerOverPanel()
{
    pointerEntered();
}

QPointF WaylandDragWatcher::onDesktop(const QPointF &position) const
{
    const WorkArea *area = areas->areaOf(hovered);
    return area ? QPointF(area->frame().topLeft()) + position : position;
}
