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

// One tile on the shelf: a file's thumbnail, its name, and a remove button while the pointer is over it. It knows
// nothing of the other tiles; it reports what the user did through its callbacks.
class ShelfItemView : public QWidget {
    Q_OBJECT

public:
    // The tile's name hangs out of the tile, so its label is a child of the tile's parent and follows the tile.
    ShelfItemView(const QUrl &fileURL, Platform &platform, AppSettings &settings, QWidget *parent = nullptr);
    ~ShelfItemView() override;

    const QUrl fileURL;

    std::function<void()> onRemove;    // the remove button was pressed
    std::function<void()> onDragOut;   // a drag of this file alone ended with a real operation
    std::function<void()> onSelect;    // the tile was clicked
    std::function<void()> onSelectAll; // a double click, while that selects all
    std::function<std::optional<QList<DraggingItem>>()> getDragItems; // asked at drag start for what goes along
    std::function<void()> onMultiDragOut; // a drag of several files ended with a real operation
    std::function<void()> onDragStarted;  // before anything else of a drag out of this tile

    // A plain flag; whoever sets it also sets the border width.
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

    // White at this alpha lies over the tile while the pointer is on it.
    double hoverBackgroundAlpha() const { return hoverAlpha; }

    // Where the picture of a drag out of this tile starts from, in the tile's coordinates as Qt has them: the item size
    // square at the bottom left.
    QRectF draggingFrame() const;

    // Requests a new thumbnail of the current item size. Requests under way go on; the last to complete is shown.
    void loadThumbnail();

    // Sets the label's text and visibility from the settings.
    void updateNameLabel();

    // Places the tile's views after a change of its size or of how names are shown.
    void layoutTile();

    // What a drag out of this tile may do, by the dragMode setting.
    static DragOperation sourceOperation(DragMode dragMode);

    // The name a tile shows for a file.
    static QString displayName(const QUrl &fileURL, bool hideExtension);

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
    QRect nameLabelFrame; // in the tile's coordinates as Qt has them
    double hoverAlpha = 0;
    Fader tileFader;
    Fader removeFader;
    Fader hoverFader;
    QPointF pressPosition;
    ulong lastMultiClick = 0;  // timestamp of the last press of a double or triple click, milliseconds; 0 for none
    quint64 pictureNumber = 0; // of what was last wanted for the image view
    bool fadesOut = false;
    bool isPressed = false;
    bool wasSelectedOnMouseDown = false;
    bool isDraggingMultiple = false;
};
