// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/SeatDrags.h"

#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

QPointF pointOf(wl_fixed_t x, wl_fixed_t y)
{
    return {wl_fixed_to_double(x), wl_fixed_to_double(y)};
}

} // namespace

DragOffer::DragOffer(wl_data_offer *offered)
    : offer(offered)
{
    static constexpr wl_data_offer_listener kListener = {
        .offer = [](void *self, wl_data_offer *,
                    const char *type) { static_cast<DragOffer *>(self)->types.append(type); },
        .source_actions = [](void *, wl_data_offer *, quint32) {},
        .action = [](void *, wl_data_offer *, quint32) {},
    };
    wl_data_offer_add_listener(offer, &kListener, this);
}

DragOffer::~DragOffer()
{
    wl_data_offer_destroy(offer);
}

void DragOffer::refuse(quint32 serial)
{
    wl_data_offer_accept(offer, serial, nullptr);
}

int DragOffer::receive(const char *type)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return -1;
    // Only our end of the pipe is non-blocking.
    ::fcntl(ends[1], F_SETFL, 0);
    wl_data_offer_receive(offer, type, ends[1]);
    ::close(ends[1]);
    return ends[0];
}

SeatDrags::SeatDrags(WaylandConnection &connection)
    : device(wl_data_device_manager_get_data_device(connection.dataDeviceManager(), connection.seat()))
    , pointer(wl_seat_get_pointer(connection.seat()))
{
    static constexpr wl_data_device_listener kDeviceListener = {
        .data_offer = [](void *self, wl_data_device *,
                         wl_data_offer *offer) { static_cast<SeatDrags *>(self)->offered(offer); },
        .enter =
            [](void *self, wl_data_device *, quint32 serial, wl_surface *surface, wl_fixed_t x, wl_fixed_t y,
               wl_data_offer *offer) {
                static_cast<SeatDrags *>(self)->entered(serial, surface, pointOf(x, y), offer);
            },
        .leave =
            [](void *self, wl_data_device *) {
                auto *drags = static_cast<SeatDrags *>(self);
                drags->dragged.reset();
                if (drags->onLeave)
                    drags->onLeave();
            },
        .motion =
            [](void *self, wl_data_device *, quint32, wl_fixed_t x, wl_fixed_t y) {
                auto *drags = static_cast<SeatDrags *>(self);
                if (drags->onMotion)
                    drags->onMotion(pointOf(x, y));
            },
        .drop =
            [](void *self, wl_data_device *) {
                auto *drags = static_cast<SeatDrags *>(self);
                drags->dragged.reset();
                if (drags->onDrop)
                    drags->onDrop();
            },
        .selection =
            [](void *self, wl_data_device *, wl_data_offer *) {
                auto *drags = static_cast<SeatDrags *>(self);
                drags->copied = std::move(drags->latest);
            },
    };
    static constexpr wl_pointer_listener kPointerListener = {
        .enter =
            [](void *self, wl_pointer *, quint32, wl_surface *surface, wl_fixed_t x, wl_fixed_t y) {
                auto *drags = static_cast<SeatDrags *>(self);
                if (drags->onPointer)
                    drags->onPointer(surface, pointOf(x, y));
            },
        .leave = [](void *, wl_pointer *, quint32, wl_surface *) {},
        .motion = [](void *, wl_pointer *, quint32, wl_fixed_t, wl_fixed_t) {},
        .button = [](void *, wl_pointer *, quint32, quint32, quint32, quint32) {},
        .axis = [](void *, wl_pointer *, quint32, quint32, wl_fixed_t) {},
        .frame = [](void *, wl_pointer *) {},
        .axis_source = [](void *, wl_pointer *, quint32) {},
        .axis_stop = [](void *, wl_pointer *, quint32, quint32) {},
        .axis_discrete = [](void *, wl_pointer *, quint32, qint32) {},
#ifdef WL_POINTER_AXIS_VALUE120_SINCE_VERSION
        .axis_value120 = [](void *, wl_pointer *, quint32, qint32) {},
#endif
    };
    wl_data_device_add_listener(device, &kDeviceListener, this);
    wl_pointer_add_listener(pointer, &kPointerListener, this);
}

SeatDrags::~SeatDrags()
{
    latest.reset();
    dragged.reset();
    copied.reset();
    wl_pointer_destroy(pointer);
    if (wl_data_device_get_version(device) >= WL_DATA_DEVICE_RELEASE_SINCE_VERSION)
        wl_data_device_release(device);
    else
        wl_data_device_destroy(device);
}

void SeatDrags::offered(wl_data_offer *offer)
{
    latest = std::make_unique<DragOffer>(offer);
}

void SeatDrags::entered(quint32 serial, wl_surface *surface, const QPointF &position, wl_data_offer *offer)
{
    dragged = offer ? std::move(latest) : nullptr;
    if (dragged)
        dragged->refuse(serial);
    if (onEnter)
        onEnter(surface, position, dragged.get());
}
