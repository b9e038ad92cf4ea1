// SPDX-License-Identifier: MIT
#include "platform/linux/looks/LinuxStatusItem.h"

#include "platform/SystemAppearance.h"
#include "platform/linux/looks/OutlinedIconEngine.h"

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QStandardPaths>

namespace {

const QColor kSymbolColor(0xf5, 0xf5, 0xf7);
const QColor kOutlineColor(0x20, 0x20, 0x24);

const QString kThemeName = QStringLiteral("com.orvane.Parklet-symbolic");
const QString kThemeFile = QStringLiteral("icons/hicolor/symbolic/apps/") + kThemeName + QStringLiteral(".svg");

// A panel that receives a name shows nothing when it does not find this icon.
QString nameIfInstalled()
{
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation, kThemeFile).isEmpty() ? QString() : kThemeName;
}

} // namespace

bool SingleClicks::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::MouseButtonDblClick)
        return false;
    const auto *second = static_cast<QMouseEvent *>(event);
    QMouseEvent press(QEvent::MouseButtonPress, second->position(), second->globalPosition(), second->button(),
                      second->buttons(), second->modifiers(), second->pointingDevice());
    QCoreApplication::sendEvent(watched, &press);
    return true;
}

LinuxStatusItem::LinuxStatusItem(std::shared_ptr<XcbConnection> xcb, const SystemAppearance &systemAppearance)
    : appearance(systemAppearance)
    , watch(std::move(xcb), [this] {
        trayIsThere = true;
        showWhenPossible();
    })
{
}

LinuxStatusItem::~LinuxStatusItem()
{
    tray.reset();
    // An action of its own menu may destroy this item.
    if (menu)
        menu.release()->deleteLater();
}

void LinuxStatusItem::setSymbol(const QString &name, const QString &accessibilityDescription)
{
    icon = QIcon(new OutlinedIconEngine(appearance.symbol(name, kSymbolColor), appearance.symbol(name, kOutlineColor),
                                        nameIfInstalled()));
    description = accessibilityDescription;
    if (tray) {
        tray->setIcon(icon);
        tray->setToolTip(description);
    } else {
        showWhenPossible();
    }
}

void LinuxStatusItem::setMenu(std::unique_ptr<QMenu> newMenu)
{
    const auto old = std::exchange(menu, std::move(newMenu)).release();
    if (tray)
        tray->setContextMenu(menu.get());
    if (old)
        old->deleteLater();
}

void LinuxStatusItem::showWhenPossible()
{
    if (!trayIsThere || icon.isNull())
        return;
    tray = std::make_unique<QSystemTrayIcon>(icon);
    tray->setToolTip(description);
    tray->setContextMenu(menu.get());
    QObject::connect(tray.get(), &QSystemTrayIcon::activated, tray.get(),
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger)
                             toggleMenu();
                     });
    tray->show();
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->inherits("QSystemTrayIconSys"))
            window->installEventFilter(&singleClicks);
    }
}

void LinuxStatusItem::toggleMenu()
{
    if (!menu)
        return;
    if (menu->isVisible())
        menu->close();
    else
        menu->popup(QCursor::pos());
}
