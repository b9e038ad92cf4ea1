// SPDX-License-Identifier: MIT
#include "platform/common/OpenThumbnails.h"

#include <utility>

// A completion is called without the lock, because it may request the next thumbnail.

quint64 OpenThumbnails::add(Completion completion)
{
    const std::lock_guard lock(mutex);
    requests.emplace(++last, std::move(completion));
    return last;
}

bool OpenThumbnails::isOpen(quint64 request)
{
    const std::lock_guard lock(mutex);
    return requests.contains(request);
}

void OpenThumbnails::answer(quint64 request, std::optional<Thumbnail> image)
{
    std::unique_lock lock(mutex);
    auto open = requests.extract(request);
    lock.unlock();
    if (open)
        open.mapped()(std::move(image));
}

void OpenThumbnails::answerAll()
{
    std::unique_lock lock(mutex);
    const auto left = std::exchange(requests, {});
    lock.unlock();
    for (const auto &[request, completion] : left)
        completion({});
}
