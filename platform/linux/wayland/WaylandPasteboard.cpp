// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/WaylandPasteboard.h"

#include "platform/FileURLs.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <data-control-client-protocol.h>

namespace {

// Reading the clipboard fails when its owner takes longer than this, in milliseconds.
constexpr int kPatience = 1000;
constexpr qsizetype kMostData = qsizetype(16) * 1024 * 1024;
const char *const kURIList = "text/uri-list";

// Reads until the writer closes the pipe. Empty when that takes too long.
QByteArray readAll(int descriptor)
{
    QElapsedTimer waited;
    waited.start();
    QByteArray data;
    QByteArray piece(qsizetype(64) * 1024, Qt::Uninitialized);
    while (data.size() <= kMostData) {
        pollfd ready = {descriptor, POLLIN, 0};
        const int left = kPatience - int(waited.elapsed());
        if (left <= 0 || ::poll(&ready, 1, left) <= 0)
            return {};
        const ssize_t length = ::read(descriptor, piece.data(), size_t(piece.size()));
        if (length == 0)
            return data;
        if (length < 0)
            return {};
        data.append(piece.constData(), length);
    }
    return {};
}

} // namespace

struct WaylandPasteboard::Offer {
    explicit Offer(zwlr_data_control_offer_v1 *offered)
        : proxy(offered)
    {
        static constexpr zwlr_data_control_offer_v1_listener kListener = {
            .offer = [](void *self, zwlr_data_control_offer_v1 *,
                        const char *type) { static_cast<Offer *>(self)->hasURIs |= qstrcmp(type, kURIList) == 0; },
        };
        zwlr_data_control_offer_v1_add_listener(proxy, &kListener, this);
    }
    ~Offer() { zwlr_data_control_offer_v1_destroy(proxy); }

    Offer(const Offer &) = delete;
    Offer &operator=(const Offer &) = delete;

    zwlr_data_control_offer_v1 *proxy;
    bool hasURIs = false;
};

WaylandPasteboard::WaylandPasteboard(std::shared_ptr<WaylandConnection> connection, std::unique_ptr<Pasteboard> own)
    : wayland(std::move(connection))
    , ownPasteboard(std::move(own))
    , device(zwlr_data_control_manager_v1_get_data_device(wayland->dataControlManager(), wayland->seat()))
{
    static constexpr zwlr_data_control_device_v1_listener kListener = {
        .data_offer =
            [](void *self, zwlr_data_control_device_v1 *, zwlr_data_control_offer_v1 *offer) {
                static_cast<WaylandPasteboard *>(self)->latest = std::make_unique<Offer>(offer);
            },
        .selection =
            [](void *self, zwlr_data_control_device_v1 *, zwlr_data_control_offer_v1 *offer) {
                auto *pasteboard = static_cast<WaylandPasteboard *>(self);
                pasteboard->copied = offer ? std::move(pasteboard->latest) : nullptr;
            },
        .finished = [](void *self,
                       zwlr_data_control_device_v1 *) { static_cast<WaylandPasteboard *>(self)->copied.reset(); },
    };
    zwlr_data_control_device_v1_add_listener(device, &kListener, this);
}

WaylandPasteboard::~WaylandPasteboard()
{
    latest.reset();
    copied.reset();
    zwlr_data_control_device_v1_destroy(device);
}

void WaylandPasteboard::readFileURLs(Done done)
{
    // Qt would have to send its own data while this call waits for it.
    if (QGuiApplication::clipboard()->ownsClipboard())
        ownPasteboard->readFileURLs(std::move(done));
    else
        done(read());
}

QList<QUrl> WaylandPasteboard::read() const
{
    // After this, the newest contents of the clipboard are known.
    wayland->roundtrip();
    if (!copied || !copied->hasURIs)
        return {};
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return {};
    zwlr_data_control_offer_v1_receive(copied->proxy, kURIList, ends[1]);
    ::close(ends[1]);
    wl_display_flush(wayland->display());
    const QByteArray list = readAll(ends[0]);
    ::close(ends[0]);
    return fileURLs(list);
}
