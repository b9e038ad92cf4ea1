// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XInputTrust.h"

#include "platform/linux/x11/XcbConnection.h"

#include <xcb/xinput.h>

#include <utility>

namespace {

// Since 2.1 a client gets button events while another client grabs the pointer. The server replies with the lower of
// its version and ours.
constexpr quint16 kMajor = 2;
constexpr quint16 kMinor = 2;
constexpr std::pair<quint16, quint16> kLeast(2, 1);

bool hasXInput(XcbConnection &xcb)
{
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(xcb.get(), &xcb_input_id);
    if (!extension || extension->present == 0)
        return false;
    const auto version =
        xcb.reply(xcb_input_xi_query_version_reply, xcb_input_xi_query_version(xcb.get(), kMajor, kMinor));
    return version && std::pair(version->major_version, version->minor_version) >= kLeast;
}

} // namespace

XInputTrust::XInputTrust(const std::shared_ptr<XcbConnection> &xcb)
    : trusted(xcb && xcb->xfixesFirstEvent() && hasXInput(*xcb))
{
}
