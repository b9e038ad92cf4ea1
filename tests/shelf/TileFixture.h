// SPDX-License-Identifier: MIT
#pragma once

#include "settings/AppSettings.h"
#include "shelf/ShelfItemView.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

inline QUrl file(const QString &name)
{
    return QUrl::fromLocalFile(u"/files/"_s + name);
}

// A tile on a virtual platform, with the user's mouse.
struct TileFixture {
    explicit TileFixture(const QString &name = u"picture.png"_s)
        : url(file(name))
    {
    }

    // Makes a tile of the usual size in a parent, and records its callbacks.
    ShelfItemView &make()
    {
        tile = std::make_unique<ShelfItemView>(url, virtualPlatform.platform, settings, &parent);
        parent.resize(200, 200);
        parent.show();
        tile->setGeometry(14, 6, 88, 102);
        tile->show();
        tile->onRemove = [this] { calls.append(u"remove"_s); };
        tile->onSelect = [this] { calls.append(u"select"_s); };
        tile->onSelectAll = [this] { calls.append(u"selectAll"_s); };
        tile->onDragStarted = [this] { calls.append(u"dragStarted"_s); };
        tile->onDragOut = [this] { calls.append(u"dragOut"_s); };
        tile->onMultiDragOut = [this] { calls.append(u"multiDragOut"_s); };
        return *tile;
    }

    void press(QPoint position = QPoint(40, 40)) { QTest::mousePress(tile.get(), Qt::LeftButton, {}, position); }
    void release(QPoint position = QPoint(40, 40)) { QTest::mouseRelease(tile.get(), Qt::LeftButton, {}, position); }

    // QTest::mouseMove sends no buttons, so this makes the event itself.
    void move(QPointF position)
    {
        QMouseEvent event(QEvent::MouseMove, position, tile->mapToGlobal(position), Qt::NoButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(tile.get(), &event);
    }

    void drag()
    {
        press();
        move(QPointF(80, 80));
    }

    void enter()
    {
        QEnterEvent event(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
        QApplication::sendEvent(tile.get(), &event);
    }

    void leave()
    {
        QEvent event(QEvent::Leave);
        QApplication::sendEvent(tile.get(), &event);
    }

    void completeThumbnail(std::optional<QImage> image)
    {
        virtualPlatform.thumbnailGenerator.completeFirst(std::move(image));
        virtualPlatform.mainQueue.runPending();
    }

    void set(const QString &key, const QVariant &value) { virtualPlatform.userDefaults.values.insert(key, value); }

    QUrl url;
    VirtualPlatform virtualPlatform;
    AppSettings settings{virtualPlatform.userDefaults, virtualPlatform.colorArchive, virtualPlatform.appearance};
    QWidget parent;
    QStringList calls;
    std::unique_ptr<ShelfItemView> tile;
};

inline QImage picture()
{
    QImage image(72, 41, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

// The area that `view` itself covers, in pixels of full opacity.
inline double opacity(QWidget &view)
{
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += image.pixelColor(x, y).alphaF();
    }
    return sum;
}
