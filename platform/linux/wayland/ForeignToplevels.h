// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/wayland/WaylandConnection.h"

#include <QByteArray>

#include <memory>
#include <optional>
#include <vector>

struct zwlr_foreign_toplevel_handle_v1;

// Follows the windows of all programs to find out which program has the focus.
class ForeignToplevels {
public:
    // `connection` must offer foreign toplevel management.
    explicit ForeignToplevels(std::shared_ptr<WaylandConnection> connection);
    ~ForeignToplevels();

    ForeignToplevels(const ForeignToplevels &) = delete;
    ForeignToplevels &operator=(const ForeignToplevels &) = delete;

    // The application ID of the focused window: the identifier of a desktop entry, or the window class of a program
    // under XWayland. Nothing when no window has the focus, or a window of this program has it.
    std::optional<QByteArray> activeApplication() const;

private:
    struct Toplevel;

    void added(zwlr_foreign_toplevel_handle_v1 *handle);

    std::shared_ptr<WaylandConnection> wayland;
    std::vector<std::unique_ptr<Toplevel>> toplevels;
};
