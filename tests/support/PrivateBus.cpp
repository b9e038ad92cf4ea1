// SPDX-License-Identifier: MIT
#include "tests/support/PrivateBus.h"

#include <QTemporaryFile>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 20'000; // milliseconds

const QByteArray kConfiguration = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

PrivateBus::PrivateBus()
{
    QTemporaryFile configuration;
    if (!configuration.open() || configuration.write(kConfiguration) < 0 || !configuration.flush())
        return;
    daemon.start(u"dbus-daemon"_s,
                 {u"--nofork"_s, u"--print-address"_s, u"--config-file="_s + configuration.fileName()});
    while (!daemon.canReadLine() && daemon.waitForReadyRead(kPatience)) {
    }
    address = QString::fromUtf8(daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus()
{
    daemon.terminate();
    if (!daemon.waitForFinished(kPatience))
        daemon.kill();
    daemon.waitForFinished();
}

QDBusConnection PrivateBus::connect(const QString &name) const
{
    return QDBusConnection::connectToBus(address, name);
}
