// SPDX-License-Identifier: MIT
// A tool of the build: RenderIcon PICTURE.svg SIZE OUT.png draws the picture at that size in pixels.
#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QStringList>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4)
        return 2;
    QSvgRenderer picture(arguments.at(1));
    const int size = arguments.at(2).toInt();
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    if (!picture.isValid() || image.isNull()) {
        std::fputs("RenderIcon: no picture or no size\n", stderr);
        return 1;
    }
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    picture.render(&painter);
    painter.end();
    if (!image.save(arguments.at(3), "PNG")) {
        std::fputs("RenderIcon: the file cannot be written\n", stderr);
        return 1;
    }
    return 0;
}
