// SPDX-License-Identifier: MIT
// The least that a Qt Widgets program with an icon in the tray can be: what Parklet's start and memory are compared
// with.
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
