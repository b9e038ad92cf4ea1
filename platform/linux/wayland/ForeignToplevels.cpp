// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/ForeignToplevels.h"

#include <QGuiApplication>

#include <algorithm>
#include <span>
#include <utility>

#include <foreign-toplevels-client-protocol.h>

struct ForeignToplevels::Toplevel {
    Toplevel(zwlr_foreign_toplevel_handle_v1 *handle, ForeignToplevels &all)
        : proxy(handle)
        , owner(all)
    {
    }
    ~Toplevel() { zwlr_foreign_toplevel_handle_v1_destroy(proxy); }

    Toplevel(const Toplevel &) = delete;
    Toplevel &operator=(const Toplevel &) = delete;

    zwlr_foreign_toplevel_handle_v1 *proxy;
    ForeignToplevels &owner;
    QByteArray application;
    bool isActive = false;
};

ForeignToplevels::ForeignToplevels(std::shared_ptr<WaylandConnection> connection)
    : wayland(std::move(connection))
{
    static constexpr zwlr_foreign_toplevel_manager_v1_listener kListener = {
        .toplevel =
            [](void *self, zwlr_foreign_toplevel_manager_v1 *, zwlr_foreign_toplevel_handle_v1 *handle) {
                static_cast<ForeignToplevels *>(self)->added(handle);
            },
        .finished = [](void *, zwlr_foreign_toplevel_manager_v1 *) {},
    };
    zwlr_foreign_toplevel_manager_v1_add_listener(wayland->foreignToplevelManager(), &kListener, this);
}

ForeignToplevels::~ForeignToplevels() = default;

void ForeignToplevels::added(zwlr_foreign_toplevel_handle_v1 *handle)
{
    static constexpr zwlr_foreign_toplevel_handle_v1_listener kListener = {
        .title = [](void *, zwlr_foreign_toplevel_handle_v1 *, const char *) {},
        .app_id = [](void *toplevel, zwlr_foreign_toplevel_handle_v1 *,
                     const char *name) { static_cast<Toplevel *>(toplevel)->application = name; },
        .output_enter = [](void *, zwlr_foreign_toplevel_handle_v1 *, wl_output *) {},
        .output_leave = [](void *, zwlr_foreign_toplevel_handle_v1 *, wl_output *) {},
        .state =
            [](void *toplevel, zwlr_foreign_toplevel_handle_v1 *, wl_array *array) {
                const std::span states(static_cast<const quint32 *>(array->data), array->size / sizeof(quint32));
                static_cast<Toplevel *>(toplevel)->isActive =
                    std::ranges::find(states, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED) != states.end();
            },
        .done = [](void *, zwlr_foreign_toplevel_handle_v1 *) {},
        .closed =
            [](void *data, zwlr_foreign_toplevel_handle_v1 *) {
                auto *closed = static_cast<Toplevel *>(data);
                std::erase_if(closed->owner.toplevels,
                              [closed](const auto &toplevel) { return toplevel.get() == closed; });
            },
    };
    toplevels.push_back(std::make_unique<Toplevel>(handle, *this));
    zwlr_foreign_toplevel_handle_v1_add_listener(handle, &kListener, toplevels.back().get());
}

std::optional<QByteArray> ForeignToplevels::activeApplication() const
{
    const auto active = std::ranges::find_if(toplevels, [](const auto &toplevel) { return toplevel->isActive; });
    if (active == toplevels.end() || (*active)->application.isEmpty() ||
        QString::fromUtf8((*active)->application) == QGuiApplication::desktopFileName())
        return {};
    return (*active)->application;
}
