// SPDX-License-Identifier: MIT
#include "platform/macos/MacKeyTap.h"

#include "platform/macos/MacConversions.h"
#include "tests/support/TestProgram.h"

#include <QTest>

#import <ApplicationServices/ApplicationServices.h>

// A tap with real key presses. Needs the permission.
class MacKeyTapTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void what_the_handler_takes_goes_no_further_and_all_else_passes();
    void a_removed_tap_takes_nothing();
};

namespace {

constexpr CGKeyCode kA = 0;
constexpr CGKeyCode kF13 = 105; // does nothing anywhere, unlike F14 and F15, which may be the brightness
constexpr CGKeyCode kF16 = 106;

// Hears what the taps before it have let pass.
class Listener {
public:
    Listener()
        : port(CGEventTapCreate(kCGSessionEventTap, kCGTailAppendEventTap, kCGEventTapOptionListenOnly,
                                CGEventMaskBit(kCGEventKeyDown), heard, &keys))
    {
        if (!port)
            return;
        source.reset(CFMachPortCreateRunLoopSource(kCFAllocatorDefault, port.get(), 0));
        CFRunLoopAddSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
    }
    Q_DISABLE_COPY_MOVE(Listener)
    ~Listener()
    {
        if (!port)
            return;
        CFRunLoopRemoveSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
        CFMachPortInvalidate(port.get());
    }

    bool listens() const { return port != nullptr; }

    QList<int64_t> keys;

private:
    static CGEventRef heard(CGEventTapProxy, CGEventType type, CGEventRef event, void *keys)
    {
        if (type == kCGEventKeyDown)
            static_cast<QList<int64_t> *>(keys)->append(CGEventGetIntegerValueField(event, kCGKeyboardEventKeycode));
        return event;
    }

    CFRef<CFMachPortRef> port;
    CFRef<CFRunLoopSourceRef> source;
};

void press(CGKeyCode key, CGEventFlags flags = CGEventFlags{})
{
    for (const bool down : {true, false}) {
        const CFRef<CGEventRef> event(CGEventCreateKeyboardEvent(nullptr, key, down));
        CGEventSetFlags(event.get(), flags);
        CGEventPost(kCGHIDEventTap, event.get());
    }
}

} // namespace

void MacKeyTapTest::init()
{
    if (!AXIsProcessTrusted())
        QSKIP("This process is not trusted");
}

void MacKeyTapTest::what_the_handler_takes_goes_no_further_and_all_else_passes()
{
    Listener listener;
    if (!listener.listens())
        QSKIP("This process may not listen to keys");
    MacKeyTap tap;
    QList<std::pair<Qt::Key, Qt::KeyboardModifiers>> asked;
    QVERIFY(tap.install([&asked](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        asked.append({key, modifiers});
        return key == Qt::Key_A;
    }));
    press(kA, kCGEventFlagMaskCommand);
    press(kF13);
    QVERIFY(QTest::qWaitFor([&listener] { return !listener.keys.isEmpty(); }));
    QCOMPARE(listener.keys, QList<int64_t>{kF13});
    QCOMPARE(asked.size(), 2);
    QCOMPARE(asked.at(0).first, Qt::Key_A);
    QCOMPARE(asked.at(0).second, Qt::KeyboardModifiers(Qt::ControlModifier));
    QCOMPARE(asked.at(1).first, Qt::Key_unknown);
}

void MacKeyTapTest::a_removed_tap_takes_nothing()
{
    Listener listener;
    if (!listener.listens())
        QSKIP("This process may not listen to keys");
    MacKeyTap tap;
    QVERIFY(tap.install([](Qt::Key, Qt::KeyboardModifiers) { return true; }));
    tap.remove();
    press(kF16);
    QVERIFY(QTest::qWaitFor([&listener] { return listener.keys == QList<int64_t>{kF16}; }));
}

PARKLET_TEST(MacKeyTapTest)

#include "MacKeyTapTest.moc"
