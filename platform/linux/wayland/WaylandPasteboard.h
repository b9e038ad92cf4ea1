// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Pasteboard.h"
#include "platform/linux/wayland/WaylandConnection.h"

#include <QByteArray>

#include <memory>

struct zwlr_data_control_device_v1;
struct zwlr_data_control_offer_v1;

// The clipboard, read with the protocol wlr-data-control. Qt can read the clipboard only while one of its windows has
// the keyboard focus, and the panels never have it.
class WaylandPasteboard : public Pasteboard {
public:
    // `connection` must offer data control. `own` reads the clipboard while Qt owns it.
    WaylandPasteboard(std::shared_ptr<WaylandConnection> connection, std::unique_ptr<Pasteboard> own);
    ~WaylandPasteboard() override;

    void readFileURLs(Done done) override;

private:
    struct Offer;

    QList<QUrl> read() const;

    std::shared_ptr<WaylandConnection> wayland;
    std::unique_ptr<Pasteboard> ownPasteboard;
    zwlr_data_control_device_v1 *device;
    std::unique_ptr<Offer> latest; // announced; the next event tells what it belongs to
    std::unique_ptr<Offer> copied;
};
