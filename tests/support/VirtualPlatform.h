// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileURLs.h"
#include "platform/Platform.h"

#include <QHash>
#include <QMap>
#include <QPointer>

#include <mutex>
#include <vector>

using namespace Qt::StringLiterals;

// A platform for tests. The test decides the time, the pasteboards, the screens and all answers, and every call is
// recorded.

// The calls to several services, in their common order.
class CallLog {
public:
    void note(const QString &call);

    QStringList calls;
    std::function<void(const QString &call)> onCall; // called at the beginning of each call
};

class VirtualMainQueue : public MainQueue {
public:
    void async(std::function<void()> work) override;
    std::shared_ptr<Timer> after(double seconds, std::function<void()> work) override;
    std::shared_ptr<Timer> every(double seconds, std::function<void()> work) override;
    double now() const override { return time; }
    QDateTime currentDate() const override { return startDate.addMSecs(qRound64(time * 1000.0)); }

    // Runs the queued work, and the work that it queues.
    void runPending();

    // Advances the time by `seconds`. Runs the timers that are due, in their order, and then the queued work.
    void advance(double seconds);

    // The number of queued calls of async().
    qsizetype pendingCount() const;

    // The number of active timers.
    qsizetype timerCount() const;

    QDateTime startDate = QDateTime::fromSecsSinceEpoch(1'700'000'000);

private:
    struct Entry;
    class Handle;
    std::shared_ptr<Timer> arm(double seconds, double interval, std::function<void()> work);

    double time = 0;
    quint64 serial = 0;
    mutable std::mutex queueMutex; // async() is called from other threads too
    QList<std::function<void()>> queue;
    std::vector<std::shared_ptr<Entry>> timers;
};

class VirtualUserDefaults : public UserDefaults {
public:
    QVariant object(const QString &key) const override { return values.value(key); }
    bool set(const QString &key, const QVariant &value) override;
    bool remove(const QString &key) override;
    void synchronize() override
    {
        if (log)
            log->note(u"synchronize"_s);
    }

    QMap<QString, QVariant> values;
    QStringList writes; // the keys written or removed, in order
    bool writable = true;
    CallLog *log = nullptr;
};

class VirtualColorArchive : public ColorArchive {
public:
    std::optional<QByteArray> archive(const QColor &color) const override;
    std::optional<QColor> unarchive(const QByteArray &data) const override;
};

class VirtualSystemAppearance : public SystemAppearance {
public:
    QColor accentColor() const override { return accent; }
    QIcon symbol(const QString &name, const QColor &tint) const override;
    QIcon applicationIcon() const override;
    bool colorPanelTakesBack() const override { return panelTakesBack; }
    double legacyScrollerWidth() const override
    {
        return scrollerWidth.value_or(SystemAppearance::legacyScrollerWidth());
    }

    QColor accent = QColor(0, 122, 255);
    QStringList missingSymbols;
    QIcon installedIcon; // the application's icon while "AppIcon" is missing
    bool panelTakesBack = false;
    std::optional<double> scrollerWidth; // without a value, the style decides
    mutable QList<std::pair<QString, QColor>> symbolRequests;
};

class VirtualPasteboard : public Pasteboard {
public:
    void readFileURLs(Done done) override
    {
        if (isMute)
            asked.append(std::move(done));
        else
            done(urls);
    }

    QList<QUrl> urls;
    bool isMute = false; // nobody answers until the test calls those that have asked
    QList<Done> asked;
};

class VirtualDropPasteboard : public DropPasteboard {
public:
    QList<QUrl> fileURLs(const QMimeData *data) const override { return ::fileURLs(data); }
    bool isDragWithoutFiles() const override { return withoutFiles; }
    bool isReading() const override { return reading; }

    bool withoutFiles = false;
    bool reading = false;
};

class VirtualDragPasteboard : public DragPasteboard {
public:
    qint64 changeCount() const override { return count; }
    QList<QUrl> fileURLs() const override
    {
        ++reads;
        return urls;
    }

    qint64 count = 0;
    QList<QUrl> urls;
    mutable int reads = 0;
};

class VirtualEventMonitors : public EventMonitors {
public:
    std::optional<Token> add(quint32 mask, std::function<void()> handler) override;
    std::optional<Token> addNear(const QRectF &frame, std::function<void()> handler) override;
    void remove(Token token) override;

    QRectF nearFrame; // of the last monitor with a frame

    // Sends one event to the monitors whose mask has it.
    void send(EventMask event);
    qsizetype count(quint32 mask) const;

    bool refuses = false;
    CallLog *log = nullptr;

private:
    struct Monitor {
        quint32 mask;
        std::function<void()> handler;
    };
    QMap<Token, Monitor> monitors;
    Token lastToken = 0;
};

class VirtualAccessibilityTrust : public AccessibilityTrust {
public:
    bool isProcessTrusted() const override
    {
        ++checks;
        if (log)
            log->note(u"isProcessTrusted"_s);
        return trusted;
    }
    void openAccessibilitySettings() override { ++settingsOpened; }

    bool trusted = true;
    mutable int checks = 0;
    int settingsOpened = 0;
    CallLog *log = nullptr;
};

class VirtualWorkspace : public Workspace {
public:
    std::optional<QString> frontmostBundleIdentifier() const override { return frontmost; }
    bool open(const QUrl &url) override;
    void icon(const QUrl &file, IconFound found) override;
    std::optional<Application> application(const QString &bundleIdentifier) const override;
    std::optional<QString> bundleIdentifier(const QUrl &chosenFile) const override;
    QList<QUrl> applicationsFolders() const override { return folders; }

    std::optional<QString> frontmost;
    QList<QUrl> opened;
    bool openSucceeds = true;
    QMap<QString, Application> applications;
    QMap<QUrl, QString> identifiers;
    mutable QStringList applicationLookups;
    QList<QUrl> folders = {QUrl::fromLocalFile(u"/Applications"_s), QUrl::fromLocalFile(u"/Users/me/Applications"_s)};
    QList<QUrl> iconRequests;
    bool holdsIcons = false; // the test then completes the requests for icons
    QList<IconFound> heldIcons;
};

class VirtualLoginItem : public LoginItem {
public:
    bool isEnabled() const override;
    bool enable() override;
    bool disable() override;

    bool enabled = false;
    bool fails = false;
    QStringList calls;
    CallLog *log = nullptr;
};

class VirtualKeyTap : public KeyTap {
public:
    bool install(Handler tapHandler) override;
    void remove() override;

    // Presses a key in any program. True when the tap swallows it.
    bool press(Qt::Key key, Qt::KeyboardModifiers modifiers);

    Handler handler;
    bool refuses = false;
    int installs = 0;
    int removals = 0;
};

class VirtualFileEventStreams : public FileEventStreams {
public:
    struct Stream;

    std::shared_ptr<FileEventStream> create(const QString &folder, double latency,
                                            std::function<void()> handler) override;
    std::optional<QDateTime> creationDate(const QUrl &file) const override;

    // Calls every started stream's callback.
    void send();

    QList<std::shared_ptr<Stream>> streams;
    bool refuses = false;
    CallLog *log = nullptr;
    QMap<QUrl, QDateTime> creationDates;
    std::function<void()> whenAsked; // called before a creation date is returned
};

struct VirtualFileEventStreams::Stream : FileEventStream {
    void start() override { calls.append(u"start"_s); }
    void stop() override { calls.append(u"stop"_s); }
    void invalidate() override { calls.append(u"invalidate"_s); }
    bool isRunning() const { return calls == QStringList{u"start"_s}; }

    QString folder;
    double latency = 0;
    std::function<void()> handler;
    QStringList calls;
};

class VirtualThumbnailGenerator : public ThumbnailGenerator {
public:
    struct Request {
        QUrl file;
        QSizeF size; // the size in points
        double scale;
        std::function<void(std::optional<QImage>)> completion;
        Delayed delayed;
    };

    void generate(const QUrl &file, double edge, double scale, Completion completion, Delayed delayed) override;

    // Answers the oldest open request, or all of them, with a picture of one colour or with nothing.
    void completeFirst(std::optional<QImage> image);
    void completeAll(const std::optional<QImage> &image);

    QMap<QUrl, QSize> pixelSizes;
    QList<Request> requests; // the open requests
    int requestCount = 0;
};

class VirtualFloatingPanels : public FloatingPanels {
public:
    void make(QWidget &window, const PanelStyle &style) override;
    void orderFront(QWidget &window) override;
    void orderOut(QWidget &window) override;
    void setAlpha(QWidget &window, double alpha) override { alphas.insert(&window, alpha); }
    bool canBlend() const override { return blends; }
    bool drawsBackground() const override { return hasMaterial; }

    QMap<QString, QPointer<QWidget>> panels; // by role
    QList<PanelStyle> styles;
    QMap<const QWidget *, double> alphas; // the last opacity of each window
    std::function<void(QWidget &window)> whenOrderedFront;
    std::function<void(QWidget &window)> whenOrderedOut;
    int ordersFront = 0;
    int ordersOut = 0;
    bool blends = true;
    bool hasMaterial = false; // whether the platform draws the background of panels
    CallLog *log = nullptr;
};

class VirtualDragSessions : public DragSessions {
public:
    struct Session {
        QPointer<QWidget> source;
        QList<DraggingItem> items;
        DragOperation offered;
        Ended ended;
    };

    void begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended) override;

    // Ends the oldest running session.
    void end(DragOperation operation);

    QList<Session> sessions; // the running sessions
    int begun = 0;
};

class VirtualScreens : public Screens {
public:
    std::optional<Screen> main() const override;
    QList<Screen> all() const override { return screens; }
    std::optional<QPointF> pointer() const override { return pointerPosition; }

    // One screen of 1280 x 800 points without reserved space, unless the test says otherwise.
    QList<Screen> screens = {Screen{QRectF(0, 0, 1280, 800), QRectF(0, 0, 1280, 800), 1.0}};
    qsizetype mainIndex = 0;
    std::optional<QPointF> pointerPosition = QPointF(640, 400);
};

class VirtualActivationPolicy : public ActivationPolicy {
public:
    void set(Policy policy) override;
    void activate(QWidget &window) override;

    QList<Policy> policies;
    QList<QPointer<QWidget>> activated;
    CallLog *log = nullptr;
};

class VirtualMenuBar : public MenuBar {
public:
    void setMainMenu(std::unique_ptr<QMenu> menu) override { mainMenu = std::move(menu); }

    std::unique_ptr<QMenu> mainMenu;
};

class VirtualStatusBar : public StatusBar {
public:
    struct Item;

    std::unique_ptr<StatusItem> createItem() override;

    // The current item in the status bar, or null.
    Item *item = nullptr;
    int created = 0;
    CallLog *log = nullptr;
};

struct VirtualStatusBar::Item : StatusItem {
    explicit Item(VirtualStatusBar &statusBar);
    ~Item() override;
    void setSymbol(const QString &name, const QString &accessibilityDescription) override;
    void setMenu(std::unique_ptr<QMenu> newMenu) override { menu = std::move(newMenu); }

    VirtualStatusBar &bar;
    QString symbol;
    QString description;
    std::unique_ptr<QMenu> menu;
};

class VirtualAlerts : public Alerts {
public:
    AlertAnswer runModal(const Alert &alert) override;

    QList<Alert> shown;
    QList<AlertAnswer> answers;       // used from the front; when none is left, the last button without a check
    std::function<void()> whileShown; // runs while an alert is on screen
    CallLog *log = nullptr;
};

class VirtualOpenPanels : public OpenPanels {
public:
    std::optional<QUrl> runModal(const OpenPanel &panel, QWidget *window) override;

    QList<OpenPanel> shown;
    QList<QPointer<QWidget>> windows; // the windows above which each was shown
    std::optional<QUrl> choice;       // without a value, the user cancels
    std::function<void()> whileShown; // runs while a panel is on screen
};

// A Platform that consists of the virtual services, with each one accessible by its own type.
class VirtualPlatform {
public:
    VirtualPlatform();

    // The calls of a launch and of a change of settings: "makeStatusItem", "isProcessTrusted", "addMonitor MASK",
    // "openStream", "isLoginItemEnabled", "synchronize", "setPolicy", "activate", "orderFront" and "alert".
    CallLog log;

    Platform platform;
    VirtualMainQueue &mainQueue;
    VirtualUserDefaults &userDefaults;
    VirtualColorArchive &colorArchive;
    VirtualSystemAppearance &appearance;
    VirtualPasteboard &generalPasteboard;
    VirtualDragPasteboard &dragPasteboard;
    VirtualDropPasteboard &dropPasteboard;
    VirtualEventMonitors &eventMonitors;
    VirtualAccessibilityTrust &accessibilityTrust;
    VirtualWorkspace &workspace;
    VirtualLoginItem &loginItem;
    VirtualKeyTap &keyTap;
    VirtualFileEventStreams &fileEventStreams;
    VirtualThumbnailGenerator &thumbnailGenerator;
    VirtualFloatingPanels &floatingPanels;
    VirtualDragSessions &dragSessions;
    VirtualScreens &screens;
    VirtualActivationPolicy &activationPolicy;
    VirtualMenuBar &menuBar;
    VirtualStatusBar &statusBar;
    VirtualAlerts &alerts;
    VirtualOpenPanels &openPanels;
};
