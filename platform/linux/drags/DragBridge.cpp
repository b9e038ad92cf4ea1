// SPDX-License-Identifier: MIT
#include "platform/linux/drags/DragBridge.h"

#include <xcb/xinput.h>

#include <string_view>
#include <utility>

namespace {

// Newer XWayland servers have an extension of this name. Older ones are recognised by the names of their devices.
constexpr std::string_view kExtension = "XWAYLAND";
constexpr std::string_view kDevicePrefix = "xwayland-";

} // namespace

DragBridge::DragBridge(std::shared_ptr<XcbConnection> xcb)
    : connection(std::move(xcb))
{
}

bool DragBridge::owns(xcb_window_t window)
{
    if (!connection || window == XCB_NONE || !isOnXwayland())
        return false;
    const auto manager =
        connection->values(connection->root(), connection->atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW);
    if (manager.empty() || manager.front() == XCB_NONE)
        return false;
    // All resources of one client have the same bits outside this mask.
    const quint32 ofClient = ~xcb_get_setup(connection->get())->resource_id_mask;
    return (window & ofClient) == (manager.front() & ofClient);
}

bool DragBridge::isOnXwayland()
{
    if (onXwayland)
        return *onXwayland;
    const auto extension =
        connection->reply(xcb_query_extension_reply,
                          xcb_query_extension(connection->get(), quint16{kExtension.size()}, kExtension.data()));
    if (extension && extension->present != 0)
        return *(onXwayland = true);
    const auto devices =
        connection->reply(xcb_input_xi_query_device_reply,
                          xcb_input_xi_query_device(connection->get(), xcb_input_device_id_t{XCB_INPUT_DEVICE_ALL}));
    if (!devices)
        return false;
    for (auto each = xcb_input_xi_query_device_infos_iterator(devices.get()); each.rem != 0;
         xcb_input_xi_device_info_next(&each)) {
        const std::string_view name(xcb_input_xi_device_info_name(each.data),
                                    static_cast<std::size_t>(xcb_input_xi_device_info_name_length(each.data)));
        if (name.starts_with(kDevicePrefix))
            return *(onXwayland = true);
    }
    // The next call asks again, because devices come and go with those of the session.
    return false;
}
