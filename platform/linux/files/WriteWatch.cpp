// SPDX-License-Identifier: MIT
#include "platform/linux/files/WriteWatch.h"

#include <QSocketNotifier>

#include <array>
#include <cstring>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace {

// A file that another one is renamed over loses a link, which is a change of its attributes.
constexpr quint32 kEvents = IN_CLOSE_WRITE | IN_ATTRIB | IN_MOVE_SELF | IN_DELETE_SELF;
constexpr size_t kReadSize = 4'096; // bytes

} // namespace

WriteWatch::WriteWatch() = default;

WriteWatch::~WriteWatch()
{
    notifier.reset();
    if (queue >= 0)
        close(queue);
}

bool WriteWatch::await(const QByteArray &path, const std::function<void()> &onEvent)
{
    if (queue < 0) {
        queue = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        if (queue < 0)
            return false;
        notifier = std::make_unique<QSocketNotifier>(queue, QSocketNotifier::Read);
        QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this] { readEvents(); });
    }
    const int watch = inotify_add_watch(queue, path.constData(), kEvents | IN_ONESHOT | IN_MASK_ADD);
    if (watch < 0)
        return false;
    awaited.insert(watch, onEvent);
    return true;
}

void WriteWatch::readEvents()
{
    QList<std::function<void()>> due;
    alignas(inotify_event) std::array<char, kReadSize> buffer;
    ssize_t size = 0;
    while ((size = read(queue, buffer.data(), buffer.size())) > 0) {
        for (ssize_t offset = 0; offset < size;) {
            inotify_event event;
            std::memcpy(&event, buffer.data() + offset, sizeof event);
            offset += static_cast<ssize_t>(sizeof event + event.len);
            // Each watch ends with its first event.
            due.append(awaited.values(event.wd));
            awaited.remove(event.wd);
        }
    }
    for (const auto &onEvent : std::as_const(due))
        onEvent();
}
