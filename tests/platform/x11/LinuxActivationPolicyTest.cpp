// SPDX-License-Identifier: MIT
#include "platform/linux/x11/LinuxActivationPolicy.h"

#include "platform/linux/x11/XcbConnection.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include <algorithm>

#include <signal.h>

using namespace Qt::StringLiterals;

class LinuxActivationPolicyTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void a_window_of_an_accessory_is_in_no_task_list();
    void a_change_of_policy_reaches_windows_on_screen();
    void the_same_policy_again_asks_the_window_manager_for_nothing();
    void windows_shown_later_follow_the_policy();
    void a_window_keeps_the_policy_when_it_is_shown_again();
    void a_late_window_manager_forgets_no_policy();
    void dialogs_follow_and_panels_do_not();
    void a_window_is_activated_over_another_programs();
    void a_minimised_window_comes_back();
    void a_minimised_window_of_an_accessory_is_in_the_task_list();
    void a_hidden_window_is_shown_and_activated();

private:
    bool isSkipped(const QWidget &window) const;
    QList<quint32> state(const QWidget &window) const;
    xcb_window_t active() const;
    bool focusOther();

    std::unique_ptr<LinuxActivationPolicy> policy;
    std::shared_ptr<XcbConnection> connection;
    std::shared_ptr<XcbConnection> other; // another program
};

namespace {

constexpr int kPatience = 20'000; // milliseconds

xcb_window_t id(const QWidget &window)
{
    return static_cast<xcb_window_t>(window.winId());
}

} // namespace

void LinuxActivationPolicyTest::init()
{
    policy = std::make_unique<LinuxActivationPolicy>();
    connection = XcbConnection::open();
    other = XcbConnection::open();
    QVERIFY(connection && other);
}

void LinuxActivationPolicyTest::cleanup()
{
    other.reset();
    connection.reset();
    policy.reset();
}

QList<quint32> LinuxActivationPolicyTest::state(const QWidget &window) const
{
    const auto values = connection->values(id(window), connection->atom("_NET_WM_STATE"), XCB_ATOM_ATOM);
    return {values.begin(), values.end()};
}

bool LinuxActivationPolicyTest::isSkipped(const QWidget &window) const
{
    const auto now = state(window);
    return now.contains(connection->atom("_NET_WM_STATE_SKIP_TASKBAR")) &&
           now.contains(connection->atom("_NET_WM_STATE_SKIP_PAGER"));
}

xcb_window_t LinuxActivationPolicyTest::active() const
{
    const auto values = connection->values(connection->root(), connection->atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    return values.empty() ? XCB_NONE : values.front();
}

// Shows a window of another program, which gets the focus.
bool LinuxActivationPolicyTest::focusOther()
{
    const xcb_window_t window = xcb_generate_id(other->get());
    xcb_create_window(other->get(), XCB_COPY_FROM_PARENT, window, other->root(), 0, 0, 400, 300, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(other->get(), window);
    other->flush();
    return QTest::qWaitFor([this, window] { return active() == window; }, kPatience);
}

void LinuxActivationPolicyTest::a_window_of_an_accessory_is_in_no_task_list()
{
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, kPatience));
    QTRY_VERIFY_WITH_TIMEOUT(isSkipped(window), kPatience);
}

void LinuxActivationPolicyTest::a_change_of_policy_reaches_windows_on_screen()
{
    QWidget window;
    window.showMaximized();
    QVERIFY(QTest::qWaitForWindowExposed(&window, kPatience));
    for (int i = 0; i < 2; ++i) {
        policy->set(ActivationPolicy::Policy::Regular);
        QTRY_VERIFY_WITH_TIMEOUT(!isSkipped(window), kPatience);
        policy->set(ActivationPolicy::Policy::Accessory);
        QTRY_VERIFY_WITH_TIMEOUT(isSkipped(window), kPatience);
    }
    // The window's other states do not change.
    QVERIFY(state(window).contains(connection->atom("_NET_WM_STATE_MAXIMIZED_VERT")));
}

void LinuxActivationPolicyTest::the_same_policy_again_asks_the_window_manager_for_nothing()
{
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, kPatience));
    QTRY_VERIFY_WITH_TIMEOUT(isSkipped(window), kPatience);
    QStringList wishes;
    const auto subscription = other->listen([&](const xcb_generic_event_t &event) {
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
        if (eventType(event) == XCB_CLIENT_MESSAGE && message.type == other->atom("_NET_WM_STATE"))
            wishes.append(QString::number(message.data.data32[0]));
    });
    other->addRootEvents(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    // After this reply, the server has handled all earlier requests.
    other->values(other->root(), other->atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW);
    policy->set(ActivationPolicy::Policy::Accessory);
    policy->set(ActivationPolicy::Policy::Regular);
    policy->set(ActivationPolicy::Policy::Regular);
    policy->set(ActivationPolicy::Policy::Accessory);
    QTRY_VERIFY_WITH_TIMEOUT(wishes.size() >= 2, kPatience);
    QCOMPARE(wishes, QStringList({u"0"_s, u"1"_s}));
}

void LinuxActivationPolicyTest::windows_shown_later_follow_the_policy()
{
    policy->set(ActivationPolicy::Policy::Regular);
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, kPatience));
    QVERIFY(!isSkipped(window));
}

void LinuxActivationPolicyTest::a_window_keeps_the_policy_when_it_is_shown_again()
{
    QWidget window;
    for (int i = 0; i < 3; ++i) {
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, kPatience));
        QTRY_VERIFY_WITH_TIMEOUT(isSkipped(window), kPatience);
        window.hide();
        QTRY_VERIFY_WITH_TIMEOUT(!window.windowHandle()->isExposed(), kPatience);
        // The window manager forgets the state of a hidden window.
        QTRY_VERIFY_WITH_TIMEOUT(state(window).isEmpty(), kPatience);
    }
    policy->set(ActivationPolicy::Policy::Regular);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, kPatience));
    QVERIFY(!isSkipped(window));
}

void LinuxActivationPolicyTest::a_late_window_manager_forgets_no_policy()
{
    bool isProcess = false;
    const pid_t windowManager = qEnvironmentVariableIntValue("PARKLET_TEST_WM", &isProcess);
    QVERIFY(isProcess);
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, kPatience));
    QTRY_VERIFY_WITH_TIMEOUT(isSkipped(window), kPatience);

    // The window manager learns that the window was hidden, and forgets its state, only after the window is shown
    // again.
    QCOMPARE(::kill(windowManager, SIGSTOP), 0);
    window.hide();
    const bool isHidden = QTest::qWaitFor([&] { return !window.windowHandle()->isExposed(); }, kPatience);
    window.show();
    QCOMPARE(::kill(windowManager, SIGCONT), 0);
    QVERIFY(isHidden);
    QVERIFY(QTest::qWaitForWindowExposed(&window, kPatience));
    QTRY_VERIFY_WITH_TIMEOUT(isSkipped(window), kPatience);
}

void LinuxActivationPolicyTest::dialogs_follow_and_panels_do_not()
{
    QDialog dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog, kPatience));
    QTRY_VERIFY_WITH_TIMEOUT(isSkipped(dialog), kPatience);

    QWidget panel(nullptr, Qt::Tool | Qt::FramelessWindowHint);
    QWidget shelf;
    shelf.setWindowRole(u"shelf"_s);
    for (QWidget *window : {&panel, &shelf}) {
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window, kPatience));
        const auto before = state(*window);
        QVERIFY(!isSkipped(*window));
        policy->set(ActivationPolicy::Policy::Accessory);
        // The dialog's messages arrive after any message to the panel.
        policy->set(ActivationPolicy::Policy::Regular);
        QTRY_VERIFY_WITH_TIMEOUT(!isSkipped(dialog), kPatience);
        policy->set(ActivationPolicy::Policy::Accessory);
        QTRY_VERIFY_WITH_TIMEOUT(isSkipped(dialog), kPatience);
        QCOMPARE(state(*window), before);
    }
}

void LinuxActivationPolicyTest::a_window_is_activated_over_another_programs()
{
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, kPatience));
    QVERIFY(focusOther());
    policy->activate(window);
    QTRY_COMPARE_WITH_TIMEOUT(active(), id(window), kPatience);
    QVERIFY(QTest::qWaitForWindowActive(&window, kPatience));
    QCOMPARE(QApplication::activeWindow(), &window);
}

void LinuxActivationPolicyTest::a_minimised_window_comes_back()
{
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, kPatience));
    window.showMinimized();
    QTRY_VERIFY_WITH_TIMEOUT(state(window).contains(connection->atom("_NET_WM_STATE_HIDDEN")), kPatience);
    QVERIFY(focusOther());
    policy->activate(window);
    QTRY_COMPARE_WITH_TIMEOUT(active(), id(window), kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(!state(window).contains(connection->atom("_NET_WM_STATE_HIDDEN")), kPatience);
}

void LinuxActivationPolicyTest::a_minimised_window_of_an_accessory_is_in_the_task_list()
{
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, kPatience));
    QTRY_VERIFY_WITH_TIMEOUT(isSkipped(window), kPatience);
    for (int i = 0; i < 2; ++i) {
        window.showMinimized();
        QTRY_VERIFY_WITH_TIMEOUT(state(window).contains(connection->atom("_NET_WM_STATE_HIDDEN")), kPatience);
        QTRY_VERIFY_WITH_TIMEOUT(!isSkipped(window), kPatience);
        policy->activate(window);
        QTRY_VERIFY_WITH_TIMEOUT(!state(window).contains(connection->atom("_NET_WM_STATE_HIDDEN")), kPatience);
        QTRY_VERIFY_WITH_TIMEOUT(isSkipped(window), kPatience);
    }
}

void LinuxActivationPolicyTest::a_hidden_window_is_shown_and_activated()
{
    QVERIFY(focusOther());
    QWidget window;
    for (int i = 0; i < 5; ++i) {
        policy->activate(window);
        QTRY_COMPARE_WITH_TIMEOUT(active(), id(window), kPatience);
        QTRY_VERIFY_WITH_TIMEOUT(isSkipped(window), kPatience);
        window.hide();
        QTRY_VERIFY_WITH_TIMEOUT(active() != id(window), kPatience);
    }
}

PARKLET_TEST(LinuxActivationPolicyTest)
#include "LinuxActivationPolicyTest.moc"
