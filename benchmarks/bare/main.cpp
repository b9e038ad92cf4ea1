// SPDX-License-Identifier: MIT
// The smallest Qt Widgets program with an icon in the tray. Parklet's start and memory are compared with it.
#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QPixmap square(32, 32);
    square.fill(Qt::darkCyan);
    QSystemTrayIcon icon{QIcon(square)};
    icon.show();
    return QApplication::exec();
}
