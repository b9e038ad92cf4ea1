// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbKeyTap.h"
#include "tests/support/FakeInput.h"
#include "tests/support/ForeignWindow.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QProcess>
#include <QTest>

#include <xkbcommon/xkbcommon-keysyms.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 10'000; // milliseconds

class XcbKeyTapTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void control_a_is_heard_and_swallowed();
    void control_a_reaches_the_focused_program_after_removal();
    void the_tap_may_be_removed_by_its_handler();
    void lock_keys_do_not_matter_data();
    void lock_keys_do_not_matter();
    void other_modifiers_and_keys_pass();
    void a_key_that_another_program_has_taken_is_refused();
    void a_refused_tap_leaves_nothing_taken();
    void the_tap_follows_a_change_of_layout();
    void a_layout_without_latin_letters_is_tapped_at_the_usual_place();
    void without_a_server_the_tap_is_refused();

private:
    bool count()
    {
        ++presses;
        return true;
    }

    void tapKey(quint32 symbol)
    {
        hand.keyPressed(symbol);
        hand.keyReleased(symbol);
    }

    // Presses a key that is not tapped, and counts after it, so that all earlier keys have arrived.
    int seenByFocused(quint32 symbol)
    {
        const xcb_keycode_t last = hand.keyCode(XKB_KEY_F9);
        const int before = focused->keyPresses(last);
        tapKey(XKB_KEY_F9);
        if (!QTest::qWaitFor([&] { return focused->keyPresses(last) > before; }, kPatience))
            return -1;
        return focused->keyPresses(hand.keyCode(symbol));
    }

    static void setLayout(const QStringList &arguments) { QCOMPARE(QProcess::execute(u"setxkbmap"_s, arguments), 0); }

    FakeInput hand;
    std::unique_ptr<ForeignWindow> focused;
    std::unique_ptr<XcbKeyTap> tap;
    int presses = 0;
};

void XcbKeyTapTest::init()
{
    setLayout({u"us"_s});
    focused = std::make_unique<ForeignWindow>(QRect(100, 100, 300, 200), Qt::green);
    focused->show();
    QTRY_VERIFY_WITH_TIMEOUT(isActive(focused->connection(), focused->id()), kPatience);
    tap = std::make_unique<XcbKeyTap>(XcbConnection::open());
    presses = 0;
}

void XcbKeyTapTest::cleanup()
{
    tap.reset();
    focused.reset();
}

void XcbKeyTapTest::control_a_is_heard_and_swallowed()
{
    Qt::Key key{};
    Qt::KeyboardModifiers modifiers;
    QVERIFY(tap->install([&](Qt::Key pressed, Qt::KeyboardModifiers held) {
        key = pressed;
        modifiers = held;
        return count();
    }));
    hand.typeWithControl(XKB_KEY_a);
    QTRY_COMPARE_WITH_TIMEOUT(presses, 1, kPatience);
    QCOMPARE(key, Qt::Key_A);
    QCOMPARE(modifiers, Qt::ControlModifier);
    QCOMPARE(seenByFocused(XKB_KEY_a), 0);
    // The release of the key is not a press.
    QCOMPARE(presses, 1);
}

void XcbKeyTapTest::control_a_reaches_the_focused_program_after_removal()
{
    QVERIFY(tap->install([this](auto...) { return count(); }));
    tap->remove();
    hand.typeWithControl(XKB_KEY_a);
    QCOMPARE(seenByFocused(XKB_KEY_a), 1);
    QCOMPARE(presses, 0);
}

void XcbKeyTapTest::the_tap_may_be_removed_by_its_handler()
{
    QVERIFY(tap->install([this](auto...) {
        tap->remove();
        return count();
    }));
    hand.typeWithControl(XKB_KEY_a);
    QTRY_COMPARE_WITH_TIMEOUT(presses, 1, kPatience);
    hand.typeWithControl(XKB_KEY_a);
    QCOMPARE(seenByFocused(XKB_KEY_a), 1);
    QCOMPARE(presses, 1);
}

void XcbKeyTapTest::lock_keys_do_not_matter_data()
{
    QTest::addColumn<QList<quint32>>("locks");
    QTest::newRow("Caps Lock") << QList<quint32>{XKB_KEY_Caps_Lock};
    QTest::newRow("Num Lock") << QList<quint32>{XKB_KEY_Num_Lock};
    QTest::newRow("both") << QList<quint32>{XKB_KEY_Caps_Lock, XKB_KEY_Num_Lock};
}

void XcbKeyTapTest::lock_keys_do_not_matter()
{
    QFETCH(QList<quint32>, locks);
    QVERIFY(tap->install([this](auto...) { return count(); }));
    for (const quint32 lock : locks)
        tapKey(lock);
    hand.typeWithControl(XKB_KEY_a);
    const bool heard = QTest::qWaitFor([this] { return presses == 1; }, kPatience);
    const int seen = seenByFocused(XKB_KEY_a);
    for (const quint32 lock : locks)
        tapKey(lock);
    QVERIFY(heard);
    QCOMPARE(seen, 0);
}

void XcbKeyTapTest::other_modifiers_and_keys_pass()
{
    QVERIFY(tap->install([this](auto...) { return count(); }));
    for (const quint32 extra : {XKB_KEY_Shift_L, XKB_KEY_Alt_L, XKB_KEY_Super_L}) {
        hand.keyPressed(extra);
        hand.typeWithControl(XKB_KEY_a);
        hand.keyReleased(extra);
    }
    hand.typeWithControl(XKB_KEY_q);
    tapKey(XKB_KEY_a);
    QCOMPARE(seenByFocused(XKB_KEY_a), 4);
    QCOMPARE(seenByFocused(XKB_KEY_q), 1);
    QCOMPARE(presses, 0);
}

void XcbKeyTapTest::a_key_that_another_program_has_taken_is_refused()
{
    XcbKeyTap other(XcbConnection::open());
    QVERIFY(other.install([](auto...) { return true; }));
    QVERIFY(!tap->install([this](auto...) { return count(); }));
    other.remove();
    QVERIFY(tap->install([this](auto...) { return count(); }));
}

void XcbKeyTapTest::a_refused_tap_leaves_nothing_taken()
{
    const auto rival = XcbConnection::open();
    const auto take = [&](quint16 modifiers) {
        return rival->succeeded(xcb_grab_key_checked(rival->get(), 1, rival->root(), modifiers, hand.keyCode(XKB_KEY_a),
                                                     XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    };
    // Only the grab with Caps Lock is taken.
    QVERIFY(take(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK));
    QVERIFY(!tap->install([this](auto...) { return count(); }));
    QVERIFY(take(XCB_MOD_MASK_CONTROL));
}

void XcbKeyTapTest::the_tap_follows_a_change_of_layout()
{
    QVERIFY(tap->install([this](auto...) { return count(); }));
    const xcb_keycode_t before = hand.keyCode(XKB_KEY_a);
    setLayout({u"fr"_s});
    QVERIFY(hand.keyCode(XKB_KEY_a) != before);
    QTRY_VERIFY_WITH_TIMEOUT((hand.typeWithControl(XKB_KEY_a), presses > 0), kPatience);
    // The key that was "a" types "q" now, and is not tapped any more.
    hand.typeWithControl(XKB_KEY_q);
    QTRY_COMPARE_WITH_TIMEOUT(seenByFocused(XKB_KEY_q), 1, kPatience);
}

void XcbKeyTapTest::a_layout_without_latin_letters_is_tapped_at_the_usual_place()
{
    const xcb_keycode_t usual = hand.keyCode(XKB_KEY_a);
    setLayout({u"ru"_s});
    QCOMPARE(hand.keyCode(XKB_KEY_a), xcb_keycode_t{0});
    QVERIFY(tap->install([this](auto...) { return count(); }));
    QCOMPARE(hand.keyCode(XKB_KEY_Cyrillic_ef), usual);
    hand.typeWithControl(XKB_KEY_Cyrillic_ef);
    QTRY_COMPARE_WITH_TIMEOUT(presses, 1, kPatience);
    hand.typeWithControl(XKB_KEY_Cyrillic_ya);
    QCOMPARE(seenByFocused(XKB_KEY_Cyrillic_ya), 1);
}

void XcbKeyTapTest::without_a_server_the_tap_is_refused()
{
    XcbKeyTap none(nullptr);
    QVERIFY(!none.install([](auto...) { return true; }));
    none.remove();
}

} // namespace

PARKLET_TEST(XcbKeyTapTest)
#include "XcbKeyTapTest.moc"
