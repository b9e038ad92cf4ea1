// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/FrontmostApplication.h"

#include "platform/linux/desktop/LinuxWorkspace.h"
#include "platform/linux/x11/XcbConnection.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <QWidget>
#include <cstdlib>

#include <map>

using namespace Qt::StringLiterals;

class FrontmostApplicationTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void the_focused_window_leads_to_its_application();
    void what_the_window_states_is_read();
    void a_window_without_a_class_has_no_identifier();
    void a_window_of_our_own_counts_as_nobody();
    void a_window_that_dies_meanwhile_is_tolerated();

private:
    using Properties = std::map<QByteArray, QByteArray>;
    xcb_window_t show(const Properties &properties);
    xcb_window_t active() const;

    std::unique_ptr<QTemporaryDir> folder;
    std::shared_ptr<XcbConnection> other; // another program
    std::shared_ptr<XcbConnection> connection;
    std::unique_ptr<LinuxWorkspace> workspace;
};

namespace {

constexpr int kPatience = 20'000; // milliseconds

} // namespace

void FrontmostApplicationTest::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QFile entry(folder->filePath(u"org.example.Editor.desktop"_s));
    QVERIFY(entry.open(QIODevice::WriteOnly));
    entry.write("[Desktop Entry]\nType=Application\nName=Editor\nExec=true\nStartupWMClass=example-editor\n");
    entry.close();
    other = XcbConnection::open();
    connection = XcbConnection::open();
    QVERIFY(other && connection);
    workspace = std::make_unique<LinuxWorkspace>([this] { return frontmostWindow(*connection); }, nullptr,
                                                 DesktopEntries({folder->path()}));
}

void FrontmostApplicationTest::cleanup()
{
    workspace.reset();
    connection.reset();
    other.reset();
    folder.reset();
}

// Shows a window of another program with these properties, and waits until it has the focus.
xcb_window_t FrontmostApplicationTest::show(const Properties &properties)
{
    xcb_connection_t *xcb = other->get();
    const xcb_window_t window = xcb_generate_id(xcb);
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, other->root(), 100, 100, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    for (const auto &[name, value] : properties)
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, other->atom(name), XCB_ATOM_STRING, 8,
                            static_cast<quint32>(value.size()), value.constData());
    xcb_map_window(xcb, window);
    other->flush();
    const auto focused = [this, window] {
        if (active() == window)
            return true;
        // A window manager that is busy with an earlier window may leave the focus there unless it is asked to move it.
        xcb_client_message_event_t request = {};
        request.response_type = XCB_CLIENT_MESSAGE;
        request.format = 32;
        request.window = window;
        request.type = other->atom("_NET_ACTIVE_WINDOW");
        request.data.data32[0] = 2; // the source of the request: a pager, which acts for its user
        xcb_send_event(other->get(), false, other->root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char *>(&request));
        other->flush();
        return false;
    };
    return QTest::qWaitFor(focused, kPatience) ? window : XCB_NONE;
}

xcb_window_t FrontmostApplicationTest::active() const
{
    const auto values = connection->values(connection->root(), connection->atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    return values.empty() ? XCB_NONE : values.front();
}

void FrontmostApplicationTest::the_focused_window_leads_to_its_application()
{
    QVERIFY(show({{"WM_CLASS", QByteArray("other\0Example-Editor\0", 21)}}) != XCB_NONE);
    QCOMPARE(workspace->frontmostBundleIdentifier(), u"org.example.Editor"_s);
}

void FrontmostApplicationTest::what_the_window_states_is_read()
{
    QVERIFY(show({{"WM_CLASS", QByteArray("in\0Class\0", 9)},
                  {"_KDE_NET_WM_DESKTOP_FILE", "org.example.Kde"},
                  {"_GTK_APPLICATION_ID", "org.example.Gtk"}}) != XCB_NONE);
    const auto window = frontmostWindow(*connection);
    QVERIFY(window);
    QCOMPARE(window->desktopFile, u"org.example.Kde"_s);
    QCOMPARE(window->applicationId, u"org.example.Gtk"_s);
    QCOMPARE(window->instanceName, u"in"_s);
    QCOMPARE(window->className, u"Class"_s);
    QCOMPARE(workspace->frontmostBundleIdentifier(), u"org.example.Kde"_s);
}

void FrontmostApplicationTest::a_window_without_a_class_has_no_identifier()
{
    QVERIFY(show({}) != XCB_NONE);
    QVERIFY(frontmostWindow(*connection));
    QVERIFY(!workspace->frontmostBundleIdentifier());
}

void FrontmostApplicationTest::a_window_of_our_own_counts_as_nobody()
{
    QVERIFY(show({{"WM_CLASS", QByteArray("a\0Example-Editor\0", 17)}}) != XCB_NONE);
    QWidget window;
    window.show();
    window.activateWindow();
    QTRY_COMPARE_WITH_TIMEOUT(active(), static_cast<xcb_window_t>(window.winId()), kPatience);
    QVERIFY(!workspace->frontmostBundleIdentifier());
}

void FrontmostApplicationTest::a_window_that_dies_meanwhile_is_tolerated()
{
    const xcb_window_t window = show({{"WM_CLASS", QByteArray("a\0Example-Editor\0", 17)}});
    QVERIFY(window != XCB_NONE);
    // A window manager may take a while to remove it from the root window.
    xcb_connection_t *xcb = other->get();
    xcb_destroy_window(xcb, window);
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, other->root(), other->atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW,
                        32, 1, &window);
    // The reply arrives after the server has handled all earlier requests.
    free(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    for (int i = 0; i < 100; ++i)
        QVERIFY(!workspace->frontmostBundleIdentifier());
}

PARKLET_TEST(FrontmostApplicationTest)
#include "FrontmostApplicationTest.moc"
