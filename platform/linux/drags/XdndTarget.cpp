// SPDX-License-Identifier: MIT
#include "platform/linux/drags/XdndTarget.h"

#include "platform/linux/x11/XcbConnection.h"

#include <QRect>

#include <xcb/shape.h>

#include <algorithm>
#include <vector>

namespace {

// Qt searches so many levels below the root window.
constexpr int kDeepest = 6;

using Ignored = std::function<bool(xcb_window_t)>;

// The window that receives the messages for `window`: its proxy, which must name itself as its own proxy, or itself.
xcb_window_t receiverFor(XcbConnection &connection, xcb_window_t window)
{
    const auto property = connection.atom("XdndProxy");
    const auto proxy = connection.values(window, property, XCB_ATOM_WINDOW);
    if (proxy.empty() || proxy.front() == XCB_NONE)
        return window;
    const auto confirmed = connection.values(proxy.front(), property, XCB_ATOM_WINDOW);
    return !confirmed.empty() && confirmed.front() == proxy.front() ? proxy.front() : window;
}

std::optional<XdndTarget> targetOf(XcbConnection &connection, xcb_window_t window)
{
    const xcb_window_t receiver = receiverFor(connection, window);
    const auto version = connection.values(receiver, connection.atom("XdndAware"), XCB_ATOM_ATOM);
    if (version.empty())
        return {};
    return XdndTarget{window, receiver, version.front()};
}

bool shapeContains(XcbConnection &connection, xcb_window_t window, xcb_shape_kind_t kind, const QPoint &position)
{
    const auto shape =
        connection.reply(xcb_shape_get_rectangles_reply, xcb_shape_get_rectangles(connection.get(), window, kind));
    if (!shape)
        return true; // the server has no Shape extension
    const xcb_rectangle_t *first = xcb_shape_get_rectangles_rectangles(shape.get());
    return std::any_of(first, first + xcb_shape_get_rectangles_rectangles_length(shape.get()),
                       [&position](const xcb_rectangle_t &part) {
                           return QRect(part.x, part.y, part.width, part.height).contains(position);
                       });
}

// A child of the searched window, and the requests about it.
struct Child {
    xcb_window_t window;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
    xcb_get_property_cookie_t aware;
};

// The topmost window below `parent` that accepts drops at `position`, in pixels of the parent.
xcb_window_t takerBelow(XcbConnection &connection, xcb_window_t parent, const QPoint &position, int depth,
                        const Ignored &ignored)
{
    const auto tree = connection.reply(xcb_query_tree_reply, xcb_query_tree(connection.get(), parent));
    if (!tree || depth == 0)
        return XCB_NONE;
    const xcb_window_t *first = xcb_query_tree_children(tree.get());
    const auto property = connection.atom("XdndAware");
    // All requests are sent before the first answer is read, so they take one round trip.
    std::vector<Child> children;
    for (int i = xcb_query_tree_children_length(tree.get()); i-- > 0;)
        children.push_back({first[i], xcb_get_window_attributes(connection.get(), first[i]),
                            xcb_get_geometry(connection.get(), first[i]),
                            xcb_get_property(connection.get(), 0, first[i], property, XCB_ATOM_ANY, 0, 1)});
    xcb_window_t found = XCB_NONE;
    for (const Child &child : children) {
        // Every answer must be taken from the queue, also those after the one that matters.
        const auto attributes = connection.reply(xcb_get_window_attributes_reply, child.attributes);
        const auto geometry = connection.reply(xcb_get_geometry_reply, child.geometry);
        const auto aware = connection.reply(xcb_get_property_reply, child.aware);
        if (found != XCB_NONE || !attributes || !geometry || !aware || attributes->map_state != XCB_MAP_STATE_VIEWABLE)
            continue;
        const QRect area(geometry->x, geometry->y, geometry->width, geometry->height);
        const QPoint inside = position - area.topLeft();
        if (!area.contains(position) || ignored(child.window))
            continue;
        if (aware->type != XCB_ATOM_NONE && shapeContains(connection, child.window, XCB_SHAPE_SK_INPUT, inside) &&
            shapeContains(connection, child.window, XCB_SHAPE_SK_BOUNDING, inside))
            found = child.window;
        else
            found = takerBelow(connection, child.window, inside, depth - 1, ignored);
    }
    return found;
}

} // namespace

std::optional<XdndTarget> xdndTargetAt(XcbConnection &connection, const QPoint &position, const Ignored &ignored)
{
    const xcb_window_t taker = takerBelow(connection, connection.root(), position, kDeepest, ignored);
    return targetOf(connection, taker != XCB_NONE ? taker : connection.root());
}
