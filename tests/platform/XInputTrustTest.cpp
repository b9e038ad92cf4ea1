// SPDX-License-Identifier: MIT
#include "platform/linux/XInputTrust.h"

#include "platform/linux/XcbConnection.h"

#include <QGuiApplication>
#include <QTest>

class XInputTrustTest : public QObject {
    Q_OBJECT

private slots:
    void a_server_with_both_extensions_is_trusted() { QVERIFY(XInputTrust(XcbConnection::open()).isProcessTrusted()); }
    void without_a_server_nothing_is_trusted() { QVERIFY(!XInputTrust(nullptr).isProcessTrusted()); }
};

QTEST_MAIN(XInputTrustTest)
#include "XInputTrustTest.moc"
