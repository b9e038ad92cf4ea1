// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QIcon>
#include <QPixmap>
#include <QSizeF>
#include <QWidget>

// The picture of a tile: as large as fits the view, at its top, with rounded corners. It ignores mouse events.
class TileImageView : public QWidget {
    Q_OBJECT

public:
    explicit TileImageView(QWidget *parent);

    bool hasImage() const { return !pixmap.isNull() || !icon.isNull(); }

    // A bitmap, shown as an image of `size` points.
    void setImage(const QPixmap &bitmap, const QSizeF &size);
    void setImage(const QIcon &fileIcon);

    // The image as a pixmap that fits a square of `edge` points.
    QPixmap image(double edge) const;

    // The size of the image in points; a file icon is square.
    QSizeF imageSize() const { return size; }

    // Opacity from 0 to 1.
    void setAlpha(double value);

    // Where an image of `size` is drawn in a view of `bounds`.
    static QRectF fittedRect(const QSizeF &size, const QRectF &bounds);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap pixmap;
    QIcon icon;
    QSizeF size;
    double alpha = 1;
};

// The name of a tile on at most two centred lines, elided in the middle. It ignores mouse events.
class TileLabel : public QWidget {
    Q_OBJECT

public:
    explicit TileLabel(QWidget *parent);

    QString text() const { return content; }
    void setText(const QString &text);

    // Opacity from 0 to 1.
    void setAlpha(double value);

    // How `text` breaks into lines of at most `width`, measured by `font`.
    static QStringList lines(const QString &text, const QFont &font, double width);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QString content;
    QStringList broken; // the content in lines, computed when it is drawn
    double alpha = 1;
};

// The round remove button in the corner of a tile. It can be pressed even while it is invisible.
class TileRemoveButton : public QAbstractButton {
    Q_OBJECT

public:
    TileRemoveButton(const QIcon &symbol, QWidget *parent);

    // Opacity from 0 to 1.
    double alpha() const { return opacity; }
    void setAlpha(double value);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double opacity = 0;
};
