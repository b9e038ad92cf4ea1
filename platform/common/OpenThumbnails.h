// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ThumbnailGenerator.h"

#include <map>
#include <mutex>

// The open requests, so that each is answered exactly once, on any thread.
class OpenThumbnails {
public:
    using Completion = ThumbnailGenerator::Completion;

    // Returns the number of a new request.
    quint64 add(Completion completion);

    bool isOpen(quint64 request);

    // Answers a request if it is open.
    void answer(quint64 request, std::optional<Thumbnail> image);

    // Answers all open requests with nothing.
    void answerAll();

private:
    std::mutex mutex;
    std::map<quint64, Completion> requests;
    quint64 last = 0;
};
