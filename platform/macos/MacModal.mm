// SPDX-License-Identifier: MIT
#include "platform/macos/MacModal.h"

#include <QEventLoop>
#include <QTimer>

void runModally(const std::function<void()> &modal)
{
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
        modal();
        loop.quit();
    });
    loop.exec();
}
