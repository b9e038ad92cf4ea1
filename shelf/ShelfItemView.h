// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragSessions.h"
#include "platform/ThumbnailGenerator.h"
#include "settings/SettingsTable.h"
#include "shelf/Fader.h"

#include <QPointer>
#include <QUrl>
#include <QWidget>

#include <functional>
#include <optional>

class AppSettings;
class TileImageView;
class TileLabel;
class TileRemoveButton;
struct Platform;

// Whether a tile shows the extension of a file's name.
enum class Extension { Shown, Hidden };

// One tile on the shelf: a file's thumbnail, its name, and a remove button while the pointer is over it. It does not
// know the other tiles, and reports what the user did through its callbacks.
class ShelfItemView : public QWidget {
    Q_OBJECT

public:
    // The name may be wider than the tile, so its label is a child of the tile's parent and moves with the tile.
    ShelfItemView(const QUrl &fileURL, Platform &platform, AppSettings &settings, QWidget *parent = nullptr);
    ~ShelfItemView() override;

    const QUrl fileURL;

    std::function<void()> onRemove;    // the remove button was pressed
    std::function<void()> onDragOut;   // a drag of this file alone ended with a real operation
    std::function<void()> onSelect;    // the tile was clicked
    std::function<void()> onSelectAll; // a double click, when the setting is to select all
    // Called when a drag starts. Returns all files to drag, or nothing for this file alone.
    std::function<std::optional<QList<DraggingItem>>()> getDragItems;
    std::function<void()> onMultiDragOut; // a drag of several files ended with a real operation
    std::function<void()> onDragStarted;  // a drag out of this tile starts; called before getDragItems

    // Code that sets this also sets the border width.
    bool isSelected = false;

    TileImageView *imageView;
    QPointer<TileLabel> nameLabel;
    TileRemoveButton *removeBtn;

    // The item size, in points, with which the last thumbnail was requested.
    double lastLoadedSize = 0;

    // Points; 0 hides the border.
    double borderWidth() const { return layerBorderWidth; }
    void setBorderWidth(double width);

    // The opacity of the whole tile, its name included.
    double alpha() const { return tileFader.alpha(); }
    void fadeOut(double seconds);
    bool isFadingOut() const { return fadesOut; }

    // The alpha, 0 to 1, of the white background while the pointer is over the tile.
    double hoverBackgroundAlpha() const { return hoverAlpha; }

    // Where the picture of a drag out of this tile starts, in points with the origin at the tile's top left: a square
    // of the item size at the bottom left of the tile.
    QRectF draggingFrame() const;

    // Opens the file in its application.
    void open() const;

    // Requests a new thumbnail of the current item size. Earlier requests continue, and the tile shows the thumbnail
    // that arrives last.
    void loadThumbnail();

    // Sets the label's text and visibility from the settings.
    void updateNameLabel();

    // Whether the pointer is over the tile is known from enter and leave events, except when the list scrolls.
    void setUnderPointer(bool under);

    // Lays out the tile's views. Call it after a change of fileNameDisplay; a change of size does it by itself.
    void layoutTile();

    // The operation that a drag out of a tile offers for a value of the dragMode setting.
    static DragOperation sourceOperation(DragMode dragMode);

    // The name a tile shows for a file.
    static QString displayName(const QUrl &fileURL, Extension extension);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void setupSubviews();
    void updateTrackingAreas();
    void showThumbnail(const std::optional<Thumbnail> &thumbnail);
    void showIcon();
    void mouseEntered();
    void mouseExited();
    void applyHoverAppearance(double removeButtonAlpha, double backgroundAlpha);
    void mouseDragged();
    bool continuesDoubleClick(const QMouseEvent &event) const;
    void beginDraggingSession(const QList<DraggingItem> &items);
    void didTapRemove();
    void placeNameLabel();

    Platform &platform;
    AppSettings &settings;
    QColor borderColor; // the accent colour when the tile was made
    double layerBorderWidth = 0;
    QRect nameLabelFrame; // points, with the origin at the tile's top left
    double hoverAlpha = 0;
    Fader tileFader;
    Fader removeFader;
    Fader hoverFader;
    QPointF pressPosition;
    ulong lastMultiClick = 0;  // timestamp of the last press of a double or triple click, milliseconds; 0 for none
    quint64 pictureNumber = 0; // of the last thumbnail or icon requested for the image view
    bool fadesOut = false;
    bool isUnderPointer = false;
    bool isPressed = false;
    bool wasSelectedOnMouseDown = false;
    bool isDraggingMultiple = false;
};
