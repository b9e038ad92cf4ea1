// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbPasteboard.h"

#include "platform/FileURLs.h"

#include <utility>

XcbPasteboard::XcbPasteboard(std::shared_ptr<XcbConnection> xcb, std::chrono::milliseconds patience)
    : connection(std::move(xcb))
    , reader(connection, patience)
{
}

void XcbPasteboard::readFileURLs(Done done)
{
    askers.push_back(std::move(done));
    if (!connection || !connection->isAlive()) {
        answer({});
        return;
    }
    const xcb_atom_t clipboard = connection->atom("CLIPBOARD");
    const auto silent = [this] { answer({}); };
    // Who has no list refuses, and may have a link as browsers copy it.
    const auto readLink = [this, clipboard, silent] {
        reader.read(
            clipboard, connection->atom("text/x-moz-url"), XCB_CURRENT_TIME,
            [this](const QByteArray &link) { answer(linkedFileURLs(link)); }, silent);
    };
    reader.read(
        clipboard, connection->atom("text/uri-list"), XCB_CURRENT_TIME,
        [this, readLink](const QByteArray &list) {
            if (list.isEmpty())
                readLink();
            else
                answer(fileURLs(list));
        },
        silent);
}

void XcbPasteboard::answer(const QList<QUrl> &files)
{
    for (const Done &done : std::exchange(askers, {}))
        done(files);
}
