// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QStringList>

// One of the test clients in clients/, which prints what happens to it line by line.
class ClientProcess {
public:
    explicit ClientProcess(const QString &program, const QStringList &arguments)
    {
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QObject::connect(&process, &QProcess::readyReadStandardOutput, &process, [this] {
            while (process.canReadLine())
                lines.append(QString::fromLatin1(process.readLine()).trimmed());
        });
        process.start(QStringLiteral(PARKLET_TEST_CLIENTS "/") + program, arguments);
    }

    ~ClientProcess()
    {
        process.kill();
        process.waitForFinished();
    }

    bool said(const char *line) const { return lines.contains(QLatin1String(line)); }
    // Waits for more lines without running the main loop. False when none arrives for a long time.
    bool readLines() { return process.waitForReadyRead(); }

    bool isRunning() const { return process.state() != QProcess::NotRunning; }
    void kill() { process.kill(); }
    qint64 pid() const { return process.processId(); }

    QStringList lines;

private:
    QProcess process;
};
