// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbKeyTap.h"
#include "tests/support/TestProgram.h"

#include <QTest>

#include <xcb/xproto.h>

namespace {

constexpr xcb_keycode_t kQwertyA = 38;
constexpr xcb_keycode_t kAzertyA = 24;
constexpr xcb_keycode_t kNumLock = 77;
constexpr xcb_keycode_t kScrollLock = 78;
constexpr xcb_keycode_t kRightAlt = 108;

class KeyCodesTest : public QObject {
    Q_OBJECT

private slots:
    void the_key_that_types_a_is_found_data();
    void the_key_that_types_a_is_found();
    void the_lock_keys_modifiers_are_looked_up();
    void the_locks_of_shift_levels_are_looked_up_data();
    void the_locks_of_shift_levels_are_looked_up();
    void the_kana_lock_key_is_a_lock_key();

private:
    static xkb_keymap *compile(const QByteArray &layouts)
    {
        xkb_context *context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
        xkb_rule_names names = {"evdev", "pc105", layouts.constData(), "", ""};
        xkb_keymap *keymap = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
        xkb_context_unref(context);
        return keymap;
    }
};

void KeyCodesTest::the_key_that_types_a_is_found_data()
{
    QTest::addColumn<QByteArray>("layouts");
    QTest::addColumn<uint>("group");
    QTest::addColumn<uint>("code");
    QTest::newRow("QWERTY") << QByteArray("us") << 0u << uint{kQwertyA};
    QTest::newRow("AZERTY") << QByteArray("fr") << 0u << uint{kAzertyA};
    QTest::newRow("Dvorak") << QByteArray("us(dvorak)") << 0u << uint{kQwertyA};
    QTest::newRow("the first of two") << QByteArray("us,fr") << 0u << uint{kQwertyA};
    QTest::newRow("the second of two") << QByteArray("us,fr") << 1u << uint{kAzertyA};
    QTest::newRow("Cyrillic beside Latin") << QByteArray("us,ru") << 1u << uint{kQwertyA};
    QTest::newRow("Cyrillic beside AZERTY") << QByteArray("ru,fr") << 0u << uint{kAzertyA};
    QTest::newRow("Cyrillic alone") << QByteArray("ru") << 0u << uint{kQwertyA};
    QTest::newRow("Greek alone") << QByteArray("gr") << 0u << uint{kQwertyA};
}

void KeyCodesTest::the_key_that_types_a_is_found()
{
    QFETCH(QByteArray, layouts);
    QFETCH(uint, group);
    QFETCH(uint, code);
    xkb_keymap *keymap = compile(layouts);
    const auto codes = keyCodesOfA(keymap, group);
    xkb_keymap_unref(keymap);
    QCOMPARE(codes, std::vector<xcb_keycode_t>{static_cast<xcb_keycode_t>(code)});
}

void KeyCodesTest::the_lock_keys_modifiers_are_looked_up()
{
    xkb_keymap *keymap = compile("us");
    std::vector<std::vector<xcb_keycode_t>> keys(8);
    QCOMPARE(lockModifiers(keymap, keys), quint16{XCB_MOD_MASK_LOCK});
    keys[5] = {0, kNumLock};
    QCOMPARE(lockModifiers(keymap, keys), quint16{XCB_MOD_MASK_LOCK | XCB_MOD_MASK_3});
    keys[7] = {kScrollLock};
    QCOMPARE(lockModifiers(keymap, keys), quint16{XCB_MOD_MASK_LOCK | XCB_MOD_MASK_3 | XCB_MOD_MASK_5});
    xkb_keymap_unref(keymap);
}

void KeyCodesTest::the_locks_of_shift_levels_are_looked_up_data()
{
    QTest::addColumn<QByteArray>("layout");
    QTest::addColumn<uint>("bits");
    QTest::newRow("none, though keys shift levels") << QByteArray("de") << uint{XCB_MOD_MASK_LOCK};
    QTest::newRow("the third level") << QByteArray("ie(ogam_is434)") << uint{XCB_MOD_MASK_LOCK | XCB_MOD_MASK_5};
    QTest::newRow("the fifth level") << QByteArray("de(neo)") << uint{XCB_MOD_MASK_LOCK | XCB_MOD_MASK_3};
    QTest::newRow("in the second layout")
        << QByteArray("us,ie(ogam_is434)") << uint{XCB_MOD_MASK_LOCK | XCB_MOD_MASK_5};
}

void KeyCodesTest::the_locks_of_shift_levels_are_looked_up()
{
    QFETCH(QByteArray, layout);
    QFETCH(uint, bits);
    xkb_keymap *keymap = compile(layout);
    QVERIFY(keymap);
    const quint16 found = lockModifiers(keymap, std::vector<std::vector<xcb_keycode_t>>(8));
    xkb_keymap_unref(keymap);
    QCOMPARE(uint{found}, bits);
}

void KeyCodesTest::the_kana_lock_key_is_a_lock_key()
{
    xkb_keymap *keymap = compile("sun_vndr/jp");
    QVERIFY(keymap);
    std::vector<std::vector<xcb_keycode_t>> keys(8);
    keys[5] = {kRightAlt};
    const quint16 found = lockModifiers(keymap, keys);
    xkb_keymap_unref(keymap);
    QCOMPARE(found, quint16{XCB_MOD_MASK_LOCK | XCB_MOD_MASK_3});
}

} // namespace

PARKLET_APPLESS_TEST(KeyCodesTest)
#include "KeyCodesTest.moc"
