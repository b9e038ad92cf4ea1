// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XInputTrust.h"

#include "platform/linux/x11/XcbConnection.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QGuiApplication>
#include <QTest>

class XInputTrustTest : public QObject {
    Q_OBJECT

private slots:
    void a_server_with_both_extensions_is_trusted() { QVERIFY(XInputTrust(XcbConnection::open()).isProcessTrusted()); }
    void without_a_server_nothing_is_trusted() { QVERIFY(!XInputTrust(nullptr).isProcessTrusted()); }
};

PARKLET_TEST(XInputTrustTest)
#include "XInputTrustTest.moc"
