// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/wayland/WaylandConnection.h"

#include <QByteArray>

#include <memory>
#include <optional>
#include <vector>

struct zwlr_foreign_toplevel_handle_v1;

// The windows of all programs, as far as it takes to know which program has the focus.
class ForeignToplevels {
public:
    // `connection` offers foreign toplevel management.
    explicit ForeignToplevels(std::shared_ptr<WaylandConnection> connection);
    ~ForeignToplevels();

    ForeignToplevels(const ForeignToplevels &) = delete;
    ForeignToplevels &operator=(const ForeignToplevels &) = delete;

    // What the window with the focus says its program is called: a desktop entry's identifier, or the class of a window
    // on XWayland. Nothing when no window has the focus, or it is one of ours.
    std::optional<QByteArray> activeApplication() const;

private:
    struct Toplevel;

    void added(zwlr_foreign_toplevel_handle_v1 *handle);

    std::shared_ptr<WaylandConnection> wayland;
    std::vector<std::unique_ptr<Toplevel>> toplevels;
};
