// SPDX-License-Identifier: MIT
#include "platform/linux/files/WriteWatch.h"

#include <QSocketNotifier>

#include <array>
#include <cstring>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace {

constexpr size_t kReadSize = 4'096; // bytes

} // namespace

WriteWatch::WriteWatch() = default;

WriteWatch::~WriteWatch()
{
    notifier.reset();
    if (events >= 0)
        close(events);
}

int WriteWatch::queue()
{
    if (events >= 0)
        return events;
    events = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (events < 0)
        return events;
    notifier = std::make_unique<QSocketNotifier>(events, QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this] { readEvents(); });
    return events;
}

void WriteWatch::await(int watch, const std::function<void()> &onEvent)
{
    if (unclaimed.remove(watch))
        onEvent();
    else
        awaited.insert(watch, onEvent);
}

void WriteWatch::readEvents()
{
    QList<std::function<void()>> due;
    alignas(inotify_event) std::array<char, kReadSize> buffer;
    ssize_t size = 0;
    while ((size = read(events, buffer.data(), buffer.size())) > 0) {
        for (ssize_t offset = 0; offset < size;) {
            inotify_event event;
            std::memcpy(&event, buffer.data() + offset, sizeof event);
            offset += static_cast<ssize_t>(sizeof event + event.len);
            // Each watch ends with its first event, and this event reports that.
            if ((event.mask & IN_IGNORED) != 0)
                continue;
            if (!awaited.contains(event.wd))
                unclaimed.insert(event.wd);
            due.append(awaited.values(event.wd));
            awaited.remove(event.wd);
        }
    }
    for (const auto &onEvent : std::as_const(due))
        onEvent();
}
