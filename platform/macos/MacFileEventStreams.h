// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileEventStreams.h"

#include <set>

// File-system event streams (FSEvents) on the main run loop in its default mode, so changes wait while the user drags
// in a window of this program.
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

    // The started streams. They keep running even if nobody else has a reference to them.
    std::shared_ptr<Running> running;
};
