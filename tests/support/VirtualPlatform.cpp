// SPDX-License-Identifier: MIT
#include "tests/support/VirtualPlatform.h"

#include <QPixmap>
#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

void CallLog::note(const QString &call)
{
    calls.append(call);
    if (onCall)
        onCall(call);
}

struct VirtualMainQueue::Entry {
    double due;
    double interval; // 0 for a timer that fires once
    quint64 serial;
    std::function<void()> work;
    bool valid = true;
};

class VirtualMainQueue::Handle : public Timer {
public:
    explicit Handle(std::shared_ptr<Entry> armed)
        : entry(std::move(armed))
    {
    }
    void invalidate() override { entry->valid = false; }
    bool isValid() const override { return entry->valid; }

private:
    std::shared_ptr<Entry> entry;
};

void VirtualMainQueue::async(std::function<void()> work)
{
    const std::lock_guard lock(queueMutex);
    queue.append(std::move(work));
}

std::shared_ptr<Timer> VirtualMainQueue::arm(double seconds, double interval, std::function<void()> work)
{
    auto entry = std::make_shared<Entry>(Entry{time + seconds, interval, serial++, std::move(work)});
    timers.push_back(entry);
    return std::make_shared<Handle>(entry);
}

std::shared_ptr<Timer> VirtualMainQueue::after(double seconds, std::function<void()> work)
{
    return arm(seconds, 0.0, std::move(work));
}

std::shared_ptr<Timer> VirtualMainQueue::every(double seconds, std::function<void()> work)
{
    return arm(seconds, seconds, std::move(work));
}

void VirtualMainQueue::runPending()
{
    while (true) {
        std::function<void()> work;
        {
            const std::lock_guard lock(queueMutex);
            if (queue.isEmpty())
                return;
            work = queue.takeFirst();
        }
        work();
    }
}

qsizetype VirtualMainQueue::pendingCount() const
{
    const std::lock_guard lock(queueMutex);
    return queue.size();
}

void VirtualMainQueue::advance(double seconds)
{
    // Sums of decimal fractions are inexact, and a timer that is due exactly at the end must still fire.
    constexpr double kTolerance = 1e-9;
    const double end = time + seconds;
    runPending();
    while (true) {
        std::erase_if(timers, [](const auto &entry) { return !entry->valid; });
        const auto next = std::min_element(timers.begin(), timers.end(), [](const auto &a, const auto &b) {
            return std::tie(a->due, a->serial) < std::tie(b->due, b->serial);
        });
        if (next == timers.end() || (*next)->due > end + kTolerance)
            break;
        const auto entry = *next;
        time = std::max(time, entry->due);
        if (entry->interval > 0) {
            entry->due += entry->interval;
            entry->serial = serial++;
        } else {
            entry->valid = false;
        }
        entry->work();
        runPending();
    }
    time = std::max(time, end);
}

qsizetype VirtualMainQueue::timerCount() const
{
    return std::count_if(timers.begin(), timers.end(), [](const auto &entry) { return entry->valid; });
}

bool VirtualUserDefaults::set(const QString &key, const QVariant &value)
{
    if (!writable)
        return false;
    if (!value.isValid())
        return remove(key);
    writes.append(key);
    values.insert(key, value);
    return true;
}

bool VirtualUserDefaults::remove(const QString &key)
{
    if (!writable)
        return false;
    writes.append(key);
    values.remove(key);
    return true;
}

std::optional<QByteArray> VirtualColorArchive::archive(const QColor &color) const
{
    if (!color.isValid())
        return {};
    return color.name(QColor::HexArgb).toLatin1();
}

std::optional<QColor> VirtualColorArchive::unarchive(const QByteArray &data) const
{
    const QColor color(QString::fromLatin1(data));
    if (!color.isValid())
        return {};
    return color;
}

QIcon VirtualSystemAppearance::symbol(const QString &name, const QColor &tint) const
{
    symbolRequests.append({name, tint});
    if (missingSymbols.contains(name))
        return {};
    QPixmap pixmap(16, 16);
    pixmap.fill(tint);
    return QIcon(pixmap);
}

QIcon VirtualSystemAppearance::applicationIcon() const
{
    const QIcon artwork = symbol(u"AppIcon"_s, accent);
    return artwork.isNull() ? installedIcon : artwork;
}

std::optional<EventMonitors::Token> VirtualEventMonitors::add(quint32 mask, std::function<void()> handler)
{
    if (log)
        log->note(u"addMonitor %1"_s.arg(mask));
    if (refuses)
        return {};
    monitors.insert(++lastToken, Monitor{mask, std::move(handler)});
    return lastToken;
}

std::optional<EventMonitors::Token> VirtualEventMonitors::addNear(const QRectF &frame, std::function<void()> handler)
{
    nearFrame = frame;
    return add(LeftMouseDragged, std::move(handler));
}

void VirtualEventMonitors::remove(Token token)
{
    monitors.remove(token);
}

void VirtualEventMonitors::send(EventMask event)
{
    for (const Token token : monitors.keys()) {
        const auto monitor = monitors.constFind(token);
        if (monitor == monitors.constEnd() || !(monitor->mask & event))
            continue;
        const auto handler = monitor->handler;
        handler();
    }
}

qsizetype VirtualEventMonitors::count(quint32 mask) const
{
    return std::count_if(monitors.begin(), monitors.end(), [mask](const Monitor &m) { return m.mask & mask; });
}

bool VirtualWorkspace::open(const QUrl &url)
{
    opened.append(url);
    return openSucceeds;
}

void VirtualWorkspace::icon(const QUrl &file, IconFound found)
{
    iconRequests.append(file);
    if (holdsIcons) {
        heldIcons.append(std::move(found));
        return;
    }
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::gray);
    found(QIcon(pixmap));
}

std::optional<Application> VirtualWorkspace::application(const QString &bundleIdentifier) const
{
    applicationLookups.append(bundleIdentifier);
    if (!applications.contains(bundleIdentifier))
        return {};
    return applications.value(bundleIdentifier);
}

std::optional<QString> VirtualWorkspace::bundleIdentifier(const QUrl &chosenFile) const
{
    if (!identifiers.contains(chosenFile))
        return {};
    return identifiers.value(chosenFile);
}

bool VirtualLoginItem::isEnabled() const
{
    if (log)
        log->note(u"isLoginItemEnabled"_s);
    return enabled;
}

bool VirtualLoginItem::enable()
{
    calls.append(u"enable"_s);
    if (fails)
        return false;
    enabled = true;
    return true;
}

bool VirtualLoginItem::disable()
{
    calls.append(u"disable"_s);
    if (fails)
        return false;
    enabled = false;
    return true;
}

bool VirtualKeyTap::install(Handler tapHandler)
{
    ++installs;
    if (refuses)
        return false;
    handler = std::move(tapHandler);
    return true;
}

void VirtualKeyTap::remove()
{
    ++removals;
    handler = nullptr;
}

bool VirtualKeyTap::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    return handler && handler(key, modifiers);
}

std::shared_ptr<FileEventStream> VirtualFileEventStreams::create(const QString &folder, double latency,
                                                                 std::function<void()> handler)
{
    if (log)
        log->note(u"openStream"_s);
    if (refuses)
        return nullptr;
    auto stream = std::make_shared<Stream>();
    stream->folder = folder;
    stream->latency = latency;
    stream->handler = std::move(handler);
    streams.append(stream);
    return stream;
}

std::optional<QDateTime> VirtualFileEventStreams::creationDate(const QUrl &file) const
{
    // The callback may replace itself.
    if (const auto callback = whenAsked)
        callback();
    if (!creationDates.contains(file))
        return {};
    return creationDates.value(file);
}

void VirtualFileEventStreams::send()
{
    const auto current = streams;
    for (const auto &stream : current) {
        if (stream->isRunning())
            stream->handler();
    }
}

void VirtualThumbnailGenerator::generate(const QUrl &file, double edge, double scale, Completion completion,
                                         Delayed delayed)
{
    ++requestCount;
    const QSizeF size = fittedThumbnailSize(
        edge, pixelSizes.contains(file) ? std::optional<QSizeF>(pixelSizes.value(file)) : std::nullopt);
    requests.append(Request{file, size, scale,
                            [size, completion = std::move(completion)](std::optional<QImage> image) {
                                completion(image ? std::optional(Thumbnail{std::move(*image), size}) : std::nullopt);
                            },
                            std::move(delayed)});
}

void VirtualThumbnailGenerator::completeFirst(std::optional<QImage> image)
{
    const Request request = requests.takeFirst();
    request.completion(std::move(image));
}

void VirtualThumbnailGenerator::completeAll(const std::optional<QImage> &image)
{
    while (!requests.isEmpty())
        completeFirst(image);
}

void VirtualFloatingPanels::make(QWidget &window, const PanelStyle &style)
{
    panels.insert(style.role, &window);
    styles.append(style);
}

void VirtualFloatingPanels::orderFront(QWidget &window)
{
    if (log)
        log->note(u"orderFront"_s);
    ++ordersFront;
    if (whenOrderedFront)
        whenOrderedFront(window);
    window.show();
}

void VirtualFloatingPanels::orderOut(QWidget &window)
{
    ++ordersOut;
    if (whenOrderedOut)
        whenOrderedOut(window);
    window.hide();
}

void VirtualDragSessions::begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended)
{
    ++begun;
    sessions.append(Session{&source, items, offered, std::move(ended)});
}

void VirtualDragSessions::end(DragOperation operation)
{
    const Session session = sessions.takeFirst();
    session.ended(operation);
}

std::optional<Screen> VirtualScreens::main() const
{
    if (mainIndex < 0 || mainIndex >= screens.size())
        return {};
    return screens.at(mainIndex);
}

void VirtualActivationPolicy::set(Policy policy)
{
    if (log)
        log->note(u"setPolicy"_s);
    policies.append(policy);
}

void VirtualActivationPolicy::activate(QWidget &window)
{
    if (log)
        log->note(u"activate"_s);
    activated.append(&window);
    window.show();
}

std::unique_ptr<StatusItem> VirtualStatusBar::createItem()
{
    if (log)
        log->note(u"makeStatusItem"_s);
    ++created;
    return std::make_unique<Item>(*this);
}

VirtualStatusBar::Item::Item(VirtualStatusBar &statusBar)
    : bar(statusBar)
{
    bar.item = this;
}

VirtualStatusBar::Item::~Item()
{
    if (bar.item == this)
        bar.item = nullptr;
}

void VirtualStatusBar::Item::setSymbol(const QString &name, const QString &accessibilityDescription)
{
    symbol = name;
    description = accessibilityDescription;
}

AlertAnswer VirtualAlerts::runModal(const Alert &alert)
{
    if (log)
        log->note(u"alert"_s);
    shown.append(alert);
    if (whileShown)
        whileShown();
    if (!answers.isEmpty())
        return answers.takeFirst();
    return AlertAnswer{static_cast<int>(alert.buttons.size()) - 1, false};
}

std::optional<QUrl> VirtualOpenPanels::runModal(const OpenPanel &panel, QWidget *window)
{
    shown.append(panel);
    windows.append(window);
    if (whileShown)
        whileShown();
    return choice;
}

namespace {

template<typename T, typename Slot>
T &fill(Slot &slot)
{
    auto made = std::make_unique<T>();
    T &reference = *made;
    slot = std::move(made);
    return reference;
}

} // namespace

VirtualPlatform::VirtualPlatform()
    : mainQueue(fill<VirtualMainQueue>(platform.mainQueue))
    , userDefaults(fill<VirtualUserDefaults>(platform.userDefaults))
    , colorArchive(fill<VirtualColorArchive>(platform.colorArchive))
    , appearance(fill<VirtualSystemAppearance>(platform.appearance))
    , generalPasteboard(fill<VirtualPasteboard>(platform.generalPasteboard))
    , dragPasteboard(fill<VirtualDragPasteboard>(platform.dragPasteboard))
    , dropPasteboard(fill<VirtualDropPasteboard>(platform.dropPasteboard))
    , eventMonitors(fill<VirtualEventMonitors>(platform.eventMonitors))
    , accessibilityTrust(fill<VirtualAccessibilityTrust>(platform.accessibilityTrust))
    , workspace(fill<VirtualWorkspace>(platform.workspace))
    , loginItem(fill<VirtualLoginItem>(platform.loginItem))
    , keyTap(fill<VirtualKeyTap>(platform.keyTap))
    , fileEventStreams(fill<VirtualFileEventStreams>(platform.fileEventStreams))
    , thumbnailGenerator(fill<VirtualThumbnailGenerator>(platform.thumbnailGenerator))
    , floatingPanels(fill<VirtualFloatingPanels>(platform.floatingPanels))
    , dragSessions(fill<VirtualDragSessions>(platform.dragSessions))
    , screens(fill<VirtualScreens>(platform.screens))
    , activationPolicy(fill<VirtualActivationPolicy>(platform.activationPolicy))
    , menuBar(fill<VirtualMenuBar>(platform.menuBar))
    , statusBar(fill<VirtualStatusBar>(platform.statusBar))
    , alerts(fill<VirtualAlerts>(platform.alerts))
    , openPanels(fill<VirtualOpenPanels>(platform.openPanels))
{
    userDefaults.log = &log;
    eventMonitors.log = &log;
    accessibilityTrust.log = &log;
    loginItem.log = &log;
    fileEventStreams.log = &log;
    floatingPanels.log = &log;
    activationPolicy.log = &log;
    statusBar.log = &log;
    alerts.log = &log;
}
