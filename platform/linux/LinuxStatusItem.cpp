// SPDX-License-Identifier: MIT
#include "platform/linux/LinuxStatusItem.h"

#include "platform/SystemAppearance.h"

#include <QCursor>
#include <QPainter>
#include <QPixmap>

namespace {

const QColor kSymbolColor(0xf5, 0xf5, 0xf7);
const QColor kOutlineColor(0x20, 0x20, 0x24);
constexpr double kOutlineOpacity = 0.75;

// The sizes that trays show, in pixels.
constexpr int kSizes[] = {16, 22, 24, 32, 44, 48, 64};
constexpr double kPixelsOfOutline = 22.0; // pixels of the icon for one of the outline

} // namespace

QIcon outlinedIcon(const QIcon &symbol, const QIcon &outline)
{
    QIcon icon;
    for (const int size : kSizes) {
        const int width = qMax(1, qRound(size / kPixelsOfOutline));
        const QSize inner(size - 2 * width, size - 2 * width);
        QPixmap dark(size, size);
        dark.fill(Qt::transparent);
        QPainter darkPainter(&dark);
        const QPixmap shape = outline.pixmap(inner, 1.0);
        for (int x = 0; x <= 2 * width; ++x) {
            for (int y = 0; y <= 2 * width; ++y)
                darkPainter.drawPixmap(x, y, shape);
        }
        darkPainter.end();

        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setOpacity(kOutlineOpacity);
        painter.drawPixmap(0, 0, dark);
        painter.setOpacity(1.0);
        painter.drawPixmap(width, width, symbol.pixmap(inner, 1.0));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
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
    // It may be destroyed by an action of its own menu.
    if (menu)
        menu.release()->deleteLater();
}

void LinuxStatusItem::setSymbol(const QString &name, const QString &accessibilityDescription)
{
    icon = outlinedIcon(appearance.symbol(name, kSymbolColor), appearance.symbol(name, kOutlineColor));
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
                         if (reason == QSystemTrayIcon::Trigger && menu)
                             menu->popup(QCursor::pos());
                     });
    tray->show();
}
