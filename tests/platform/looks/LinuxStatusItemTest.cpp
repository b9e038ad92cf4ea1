// SPDX-License-Identifier: MIT
#include "platform/linux/looks/LinuxStatusItem.h"

#include "platform/linux/looks/LinuxAppearance.h"
#include "platform/linux/looks/LinuxStatusBar.h"
#include "platform/linux/looks/OutlinedIconEngine.h"
#include "platform/linux/x11/XcbConnection.h"
#include "tests/support/Hand.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDir>
#include <QMenu>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

#include <unistd.h>
#include <xkbcommon/xkbcommon-keysyms.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 20'000; // milliseconds
constexpr QPoint kTrayCentre(124, 124);

const QString kWatcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString kWatcherPath = u"/StatusNotifierWatcher"_s;
const QString kItemInterface = u"org.kde.StatusNotifierItem"_s;

// The tray of an X server, as a panel provides it: it embeds the windows that ask for it.
class TrayManager {
public:
    TrayManager()
        : connection(XcbConnection::open())
    {
        xcb_connection_t *xcb = connection->get();
        window = xcb_generate_id(xcb);
        const quint32 values[] = {1, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
        xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, connection->root(), 100, 100, 48, 48, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(xcb, window);
        listening = connection->listen([this](const xcb_generic_event_t &event) { hear(event); });

        const xcb_atom_t selection = connection->atom("_NET_SYSTEM_TRAY_S0");
        xcb_set_selection_owner(xcb, window, selection, XCB_CURRENT_TIME);
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = connection->root();
        message.type = connection->atom("MANAGER");
        message.data.data32[0] = XCB_CURRENT_TIME;
        message.data.data32[1] = selection;
        message.data.data32[2] = window;
        xcb_send_event(xcb, 0, connection->root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char *>(&message));
        connection->flush();
    }

    // A manager that ends releases the embedded windows.
    ~TrayManager()
    {
        if (docked != XCB_NONE)
            xcb_reparent_window(connection->get(), docked, connection->root(), 0, 0);
        connection->flush();
    }
    TrayManager(const TrayManager &) = delete;
    TrayManager &operator=(const TrayManager &) = delete;

    // The last window that asked to be embedded.
    xcb_window_t docked = XCB_NONE;

    bool hasItem() const { return docked != XCB_NONE && isShown(); }

    bool isShown() const
    {
        const auto reply =
            connection->reply(xcb_get_window_attributes_reply, xcb_get_window_attributes(connection->get(), docked));
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }

private:
    void hear(const xcb_generic_event_t &event)
    {
        constexpr quint8 kSentByClient = 0x80;
        if ((event.response_type & ~kSentByClient) != XCB_CLIENT_MESSAGE)
            return;
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
        if (message.type != connection->atom("_NET_SYSTEM_TRAY_OPCODE") || message.data.data32[1] != 0)
            return;
        docked = message.data.data32[2];
        const quint32 size[] = {48, 48};
        xcb_connection_t *xcb = connection->get();
        xcb_reparent_window(xcb, docked, window, 0, 0);
        xcb_configure_window(xcb, docked, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
        xcb_map_window(xcb, docked);
        connection->flush();
    }

    std::shared_ptr<XcbConnection> connection;
    XcbConnection::Subscription listening;
    xcb_window_t window = XCB_NONE;
};

// The service that has the list of status notifier items, with or without a panel (a host) that shows them.
class NotifierWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER hosted)
    Q_PROPERTY(int ProtocolVersion MEMBER version)

public:
    explicit NotifierWatcher(bool hasHost)
        : hosted(hasHost)
    {
        bus.registerObject(kWatcherPath, this,
                           QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties |
                               QDBusConnection::ExportAllSignals);
        bus.registerService(kWatcherName);
    }
    ~NotifierWatcher() override
    {
        bus.unregisterService(kWatcherName);
        bus.unregisterObject(kWatcherPath);
    }

    void addHost()
    {
        hosted = true;
        emit StatusNotifierHostRegistered();
    }

    // The bus names of the items.
    QStringList items;

public slots:
    void RegisterStatusNotifierItem(const QString &service) { items.append(service); }

signals:
    void StatusNotifierHostRegistered();

private:
    QDBusConnection bus = QDBusConnection::sessionBus();
    bool hosted;
    int version = 0;
};

} // namespace

class LinuxStatusItemTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void an_item_appears_in_a_tray_that_is_there();
    void an_item_appears_once_a_tray_comes();
    void an_item_survives_a_restart_of_the_tray();
    void a_removed_item_leaves_the_tray();
    void a_click_opens_the_menu_of_now();
    void a_right_click_opens_it_too();
    void an_item_appears_once_a_notifier_host_comes();
    void an_item_survives_a_restart_of_the_notifier_watcher();
    void a_quick_second_click_opens_a_closed_menu_data();
    void a_quick_second_click_opens_a_closed_menu();
    void a_click_closes_an_open_menu_data();
    void a_click_closes_an_open_menu();
    void a_host_that_activates_the_item_opens_and_closes_its_menu();
    void a_host_reads_the_menu_of_now();
    void a_host_reads_what_the_item_is_for();
    void a_removed_item_leaves_the_bus();
    void a_panel_that_colours_icons_is_told_the_name_of_an_installed_one();
    void the_symbol_stands_out_on_light_and_dark();

private:
    // Starts a program with an item, which finds icons in `dataFolder` only.
    bool start(const QByteArray &dataFolder = "/nowhere");
    // The same, and waits until the item is in `tray`.
    bool startIn(const TrayManager &tray);
    bool say(const QByteArray &command);
    bool heard(const QByteArray &text)
    {
        output += item->readAllStandardOutput();
        return output.contains(text);
    }
    int count(const QByteArray &text)
    {
        output += item->readAllStandardOutput();
        return static_cast<int>(output.count(text));
    }
    QVariant property(const QString &service, const QString &name) const;
    // The menu as a host reads it: the properties of each item, in order.
    QList<QVariantMap> menuItems(const QString &service) const;

    std::unique_ptr<QProcess> item; // a program with an item
    QByteArray output;
};

void LinuxStatusItemTest::init()
{
    output.clear();
}

void LinuxStatusItemTest::cleanup()
{
    if (item) {
        item->closeWriteChannel();
        if (!item->waitForFinished(kPatience))
            item->kill();
        item->waitForFinished(kPatience);
        item.reset();
    }
}

bool LinuxStatusItemTest::start(const QByteArray &dataFolder)
{
    item = std::make_unique<QProcess>();
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_DATA_DIRS"_s, QFile::decodeName(dataFolder));
    item->setProcessEnvironment(environment);
    item->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    item->start(QCoreApplication::applicationFilePath(), {u"--item"_s});
    return QTest::qWaitFor([this] { return heard("ready\n"); }, kPatience);
}

bool LinuxStatusItemTest::startIn(const TrayManager &tray)
{
    return start() && QTest::qWaitFor([&tray] { return tray.hasItem(); }, kPatience);
}

bool LinuxStatusItemTest::say(const QByteArray &command)
{
    item->write(command + '\n');
    return QTest::qWaitFor([this, command] { return heard("did " + command + '\n'); }, kPatience);
}

QVariant LinuxStatusItemTest::property(const QString &service, const QString &name) const
{
    auto message = QDBusMessage::createMethodCall(service, u"/StatusNotifierItem"_s,
                                                  u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message.setArguments({kItemInterface, name});
    const QDBusMessage reply = QDBusConnection::sessionBus().call(message, QDBus::Block, kPatience);
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

QList<QVariantMap> LinuxStatusItemTest::menuItems(const QString &service) const
{
    const QString path = property(service, u"Menu"_s).value<QDBusObjectPath>().path();
    auto message = QDBusMessage::createMethodCall(service, path, u"com.canonical.dbusmenu"_s, u"GetLayout"_s);
    constexpr int kRoot = 0;
    constexpr int kWholeDepth = -1;
    message.setArguments({kRoot, kWholeDepth, QStringList()});
    const QDBusMessage reply = QDBusConnection::sessionBus().call(message, QDBus::Block, kPatience);
    if (reply.type() != QDBusMessage::ReplyMessage)
        return {};
    // The layout is (id, properties, children), and each child is a layout in a variant.
    const auto layout = reply.arguments().value(1).value<QDBusArgument>();
    QList<QVariantMap> items;
    int id = 0;
    QVariantMap properties;
    layout.beginStructure();
    layout >> id >> properties;
    layout.beginArray();
    while (!layout.atEnd()) {
        QDBusVariant child;
        layout >> child;
        const auto item = child.variant().value<QDBusArgument>();
        item.beginStructure();
        item >> id >> properties;
        items.append(properties);
    }
    return items;
}

void LinuxStatusItemTest::an_item_appears_in_a_tray_that_is_there()
{
    TrayManager tray;
    QVERIFY(startIn(tray));
}

void LinuxStatusItemTest::an_item_appears_once_a_tray_comes()
{
    QVERIFY(start());
    QVERIFY(say("wait"));
    TrayManager tray;
    QTRY_VERIFY_WITH_TIMEOUT(tray.hasItem(), kPatience);
}

void LinuxStatusItemTest::an_item_survives_a_restart_of_the_tray()
{
    auto tray = std::make_unique<TrayManager>();
    QVERIFY(start());
    for (int i = 0; i < 3; ++i) {
        QTRY_VERIFY_WITH_TIMEOUT(tray->hasItem(), kPatience);
        tray.reset();
        QVERIFY(say("wait"));
        tray = std::make_unique<TrayManager>();
    }
    QTRY_VERIFY_WITH_TIMEOUT(tray->hasItem(), kPatience);
}

void LinuxStatusItemTest::a_removed_item_leaves_the_tray()
{
    TrayManager tray;
    QVERIFY(startIn(tray));
    QVERIFY(say("remove"));
    QTRY_VERIFY_WITH_TIMEOUT(!tray.isShown(), kPatience);
    tray.docked = XCB_NONE;
    QVERIFY(say("create"));
    QTRY_VERIFY_WITH_TIMEOUT(tray.hasItem(), kPatience);
}

void LinuxStatusItemTest::a_click_opens_the_menu_of_now()
{
    TrayManager tray;
    QVERIFY(startIn(tray));
    Hand hand;
    hand.moveTo(kTrayCentre).press().release();
    QTRY_VERIFY_WITH_TIMEOUT(heard("menu 1\n"), kPatience);
    QVERIFY(say("menu"));
    QVERIFY(say("wait"));
    hand.moveTo(QPoint(600, 600)).moveTo(kTrayCentre).press().release();
    QTRY_VERIFY_WITH_TIMEOUT(heard("menu 2\n"), kPatience);
}

void LinuxStatusItemTest::a_quick_second_click_opens_a_closed_menu_data()
{
    QTest::addColumn<quint8>("button");
    QTest::newRow("left") << quint8{1};
    QTest::newRow("right") << quint8{3};
}

void LinuxStatusItemTest::a_quick_second_click_opens_a_closed_menu()
{
    QFETCH(quint8, button);
    TrayManager tray;
    QVERIFY(startIn(tray));
    Hand hand;
    hand.moveTo(kTrayCentre);
    for (int click = 1; click <= 3; ++click) {
        hand.press(button).release(button);
        QTRY_COMPARE_WITH_TIMEOUT(count("menu 1\n"), click, kPatience);
        hand.type(XKB_KEY_Escape);
        QTRY_COMPARE_WITH_TIMEOUT(count("closed 1\n"), click, kPatience);
    }
}

void LinuxStatusItemTest::a_click_closes_an_open_menu_data()
{
    a_quick_second_click_opens_a_closed_menu_data();
}

void LinuxStatusItemTest::a_click_closes_an_open_menu()
{
    QFETCH(quint8, button);
    TrayManager tray;
    QVERIFY(startIn(tray));
    Hand hand;
    hand.moveTo(kTrayCentre);
    for (int time = 1; time <= 2; ++time) {
        hand.press(button).release(button);
        QTRY_COMPARE_WITH_TIMEOUT(count("menu 1\n"), time, kPatience);
        hand.press(button).release(button);
        QTRY_COMPARE_WITH_TIMEOUT(count("closed 1\n"), time, kPatience);
        QVERIFY(say("wait"));
        QCOMPARE(count("menu 1\n"), time);
    }
}

void LinuxStatusItemTest::a_right_click_opens_it_too()
{
    TrayManager tray;
    QVERIFY(startIn(tray));
    Hand hand;
    hand.moveTo(kTrayCentre).press(3).release(3);
    QTRY_VERIFY_WITH_TIMEOUT(heard("menu 1\n"), kPatience);
}

void LinuxStatusItemTest::an_item_appears_once_a_notifier_host_comes()
{
    QVERIFY(start());
    QVERIFY(say("wait"));
    NotifierWatcher watcher(false);
    QVERIFY(say("wait"));
    QVERIFY(watcher.items.isEmpty());
    watcher.addHost();
    QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, kPatience);
}

void LinuxStatusItemTest::an_item_survives_a_restart_of_the_notifier_watcher()
{
    auto watcher = std::make_unique<NotifierWatcher>(true);
    QVERIFY(start());
    for (int i = 0; i < 3; ++i) {
        QTRY_COMPARE_WITH_TIMEOUT(watcher->items.size(), 1, kPatience);
        watcher.reset();
        QVERIFY(say("wait"));
        watcher = std::make_unique<NotifierWatcher>(true);
    }
    QTRY_COMPARE_WITH_TIMEOUT(watcher->items.size(), 1, kPatience);
}

void LinuxStatusItemTest::a_host_that_activates_the_item_opens_and_closes_its_menu()
{
    NotifierWatcher watcher(true);
    QVERIFY(start());
    QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, kPatience);
    auto message =
        QDBusMessage::createMethodCall(watcher.items.first(), u"/StatusNotifierItem"_s, kItemInterface, u"Activate"_s);
    message.setArguments({100, 100});
    for (int time = 1; time <= 2; ++time) {
        QDBusConnection::sessionBus().asyncCall(message);
        QTRY_COMPARE_WITH_TIMEOUT(count("menu 1\n"), time, kPatience);
        QDBusConnection::sessionBus().asyncCall(message);
        QTRY_COMPARE_WITH_TIMEOUT(count("closed 1\n"), time, kPatience);
    }
}

void LinuxStatusItemTest::a_host_reads_the_menu_of_now()
{
    NotifierWatcher watcher(true);
    QVERIFY(start());
    QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, kPatience);
    // Every other menu has a check mark.
    for (const int on : {0, 1, 0}) {
        const QList<QVariantMap> items = menuItems(watcher.items.first());
        QCOMPARE(items.size(), 2);
        QCOMPARE(items.at(0).value(u"label"_s).toString(), u"Show Shelf"_s);
        QCOMPARE(items.at(1).value(u"label"_s).toString(), u"Launch at Login"_s);
        QCOMPARE(items.at(1).value(u"toggle-type"_s).toString(), u"checkmark"_s);
        QCOMPARE(items.at(1).value(u"toggle-state"_s).toInt(), on);
        output.clear();
        QVERIFY(say("menu"));
    }
}

void LinuxStatusItemTest::a_host_reads_what_the_item_is_for()
{
    NotifierWatcher watcher(true);
    QVERIFY(start());
    QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, kPatience);
    // The value is (icon name, icon pictures, title, text).
    const auto toolTip = property(watcher.items.first(), u"ToolTip"_s).value<QDBusArgument>();
    QString text;
    toolTip.beginStructure();
    toolTip >> text;
    toolTip.beginArray();
    QVERIFY(toolTip.atEnd());
    toolTip.endArray();
    toolTip >> text;
    QCOMPARE(text, u"Parklet"_s);
}

void LinuxStatusItemTest::a_removed_item_leaves_the_bus()
{
    NotifierWatcher watcher(true);
    QVERIFY(start());
    QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, kPatience);
    const QString first = watcher.items.first();
    QCOMPARE(property(first, u"Status"_s).toString(), u"Active"_s);
    QVERIFY(say("remove"));
    QTRY_VERIFY_WITH_TIMEOUT(!QDBusConnection::sessionBus().interface()->isServiceRegistered(first), kPatience);
    QVERIFY(say("create"));
    QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 2, kPatience);
}

void LinuxStatusItemTest::a_panel_that_colours_icons_is_told_the_name_of_an_installed_one()
{
    const QString name = u"com.orvane.Parklet-symbolic"_s;
    QTemporaryDir data;
    const QString folder = data.filePath(u"icons/hicolor/symbolic/apps"_s);
    QVERIFY(QDir().mkpath(folder));
    for (const bool installed : {false, true}) {
        if (installed)
            QVERIFY(QFile::copy(QStringLiteral(PARKLET_SYMBOLIC_ICON), folder + u'/' + name + u".svg"_s));
        NotifierWatcher watcher(true);
        QVERIFY(start(QFile::encodeName(data.path())));
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, kPatience);
        QCOMPARE(property(watcher.items.first(), u"IconName"_s).toString() == name, installed);
        // A panel that does not find an icon of that name uses the picture.
        QVERIFY(!property(watcher.items.first(), u"IconPixmap"_s).value<QDBusArgument>().atEnd());
        cleanup();
    }
}

void LinuxStatusItemTest::the_symbol_stands_out_on_light_and_dark()
{
    const LinuxAppearance appearance;
    const QString name = u"tray.and.arrow.down"_s;
    const QIcon icon(new OutlinedIconEngine(appearance.symbol(name, Qt::white), appearance.symbol(name, Qt::black)));
    QVERIFY(icon.availableSizes().contains(QSize(22, 22)));
    for (const int size : {16, 22, 24, 32, 48}) {
        const QPixmap pixmap = icon.pixmap(QSize(size, size), 1.0);
        QCOMPARE(pixmap.size(), QSize(size, size));
        const QImage picture = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
        int light = 0;
        int dark = 0;
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                const QColor color = picture.pixelColor(x, y);
                light += color.alpha() > 150 && color.lightness() > 180;
                dark += color.alpha() > 100 && color.lightness() < 60;
            }
        }
        QVERIFY2(light > size && dark > size, QByteArray::number(size).constData());
    }
}

namespace {

// The process with an item. It executes commands from its input, line by line, and prints when each is done and when a
// menu is shown.
int runItem()
{
    // Two clicks count as a double click even on a slow machine.
    QApplication::setDoubleClickInterval(10 * kPatience);
    LinuxAppearance appearance;
    LinuxStatusBar bar(XcbConnection::open(), appearance);
    std::unique_ptr<StatusItem> item;
    int menus = 0;
    const auto print = [](const QByteArray &text) {
        std::fputs(text.constData(), stdout);
        std::fflush(stdout);
    };
    const auto setMenu = [&] {
        auto menu = std::make_unique<QMenu>();
        menu->addAction(u"Show Shelf"_s);
        QAction *launchAtLogin = menu->addAction(u"Launch at Login"_s);
        launchAtLogin->setCheckable(true);
        launchAtLogin->setChecked(menus % 2 == 1);
        ++menus;
        QObject::connect(menu.get(), &QMenu::aboutToShow, menu.get(), [shown = menu.get(), number = menus, print] {
            QTimer::singleShot(0, shown, [shown, number, print] {
                if (shown->isVisible())
                    print("menu " + QByteArray::number(number) + '\n');
            });
        });
        QObject::connect(menu.get(), &QMenu::aboutToHide, menu.get(),
                         [number = menus, print] { print("closed " + QByteArray::number(number) + '\n'); });
        item->setMenu(std::move(menu));
    };
    const auto create = [&] {
        item = bar.createItem();
        item->setSymbol(u"tray.and.arrow.down"_s, u"Parklet"_s);
        setMenu();
    };
    create();
    QTimer::singleShot(0, qApp, [&] { print("ready\n"); });
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&] {
        char line[64];
        if (!std::fgets(line, sizeof line, stdin)) {
            QCoreApplication::quit();
            return;
        }
        const QByteArray command = QByteArray(line).trimmed();
        if (command == "remove")
            item.reset();
        else if (command == "create")
            create();
        else if (command == "menu")
            setMenu();
        // Leave time for errors to appear.
        QTimer::singleShot(command == "wait" ? 200 : 0, qApp, [&, command] { print("did " + command + '\n'); });
    });
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (QCoreApplication::arguments().contains(u"--item"_s))
        return runItem();
    LinuxStatusItemTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "LinuxStatusItemTest.moc"
