// SPDX-License-Identifier: MIT
#include "platform/linux/files/DefaultMode.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QThread>

bool isDefaultMode()
{
    return QThread::currentThread()->loopLevel() <= 1 && !QApplication::activePopupWidget();
}

std::unique_ptr<QObject> whenDefaultMode(std::function<void()> work)
{
    auto context = std::make_unique<QObject>();
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, context.get(),
                     [work = std::move(work)] {
                         if (isDefaultMode())
                             work();
                     });
    return context;
}
