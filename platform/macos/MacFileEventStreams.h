// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileEventStreams.h"

#include <set>

// File-system event streams on the main run loop, in its default mode: changes wait while the user drags in one of our
// own windows.
class MacFileEventStreams : public FileEventStreams {
public:
    MacFileEventStreams();
    ~MacFileEventStreams() override;

    std::shared_ptr<FileEventStream> create(const QString &folder, double latency,
                                            std::function<void()> handler) override;
    std::optional<QDateTime> creationDate(const QUrl &file) const override;

private:
    class Stream;
    using Running = std::set<std::shared_ptr<Stream>>;

    // The started streams, which run on when nobody else holds them.
    std::shared_ptr<Running> running;
};
