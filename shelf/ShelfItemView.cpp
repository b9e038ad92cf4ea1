// SPDX-License-Identifier: MIT
#include "shelf/ShelfItemView.h"

#include "platform/FileURLs.h"
#include "platform/Platform.h"
#include "settings/AppSettings.h"
#include "shelf/ShelfGeometry.h"
#include "shelf/ShelfMetrics.h"
#include "shelf/TileViews.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

using namespace ShelfMetrics;

namespace {

constexpr double kScaleWithoutScreen = 2.0;

} // namespace

ShelfItemView::ShelfItemView(const QUrl &url, Platform &services, AppSettings &appSettings, QWidget *parent)
    : QWidget(parent)
    , fileURL(url)
    , imageView(new TileImageView(this))
    , nameLabel(new TileLabel(parent ? parent : this))
    , removeBtn(new TileRemoveButton(services.appearance->symbol(QStringLiteral("xmark"), Qt::white), this))
    , platform(services)
    , settings(appSettings)
    , borderColor(services.appearance->accentColor())
    , tileFader(
          *services.mainQueue,
          [this](double value) {
              update();
              imageView->setAlpha(value);
              removeBtn->setAlpha(value * removeFader.alpha());
              if (nameLabel)
                  nameLabel->setAlpha(value);
          },
          1.0)
    , removeFader(
          *services.mainQueue, [this](double value) { removeBtn->setAlpha(value * alpha()); }, 0.0)
    , hoverFader(
          *services.mainQueue,
          [this](double value) {
              hoverAlpha = value;
              update();
          },
          0.0)
{
    setupSubviews();
    loadThumbnail();
    updateNameLabel();
}

ShelfItemView::~ShelfItemView()
{
    delete nameLabel;
}

void ShelfItemView::setupSubviews()
{
    connect(removeBtn, &QAbstractButton::clicked, this, &ShelfItemView::didTapRemove);
    setAccessibleName(displayName(fileURL, Extension::Shown));
    // Scrolling can move the tile under a pointer that does not move. Hover follows the widget's enter and leave
    // events.
    setAttribute(Qt::WA_Hover);
}

void ShelfItemView::setBorderWidth(double width)
{
    layerBorderWidth = width;
    update();
}

void ShelfItemView::fadeOut(double seconds)
{
    fadesOut = true;
    tileFader.fade(0.0, seconds, FadeCurve::Standard);
}

QRectF ShelfItemView::draggingFrame() const
{
    const double itemSize = settings.get(Settings::shelfItemSize);
    return flipped(QRectF(0, 0, itemSize, itemSize), height());
}

void ShelfItemView::open() const
{
    platform.workspace->open(fileURL);
}

void ShelfItemView::loadThumbnail()
{
    const double itemSize = settings.get(Settings::shelfItemSize);
    lastLoadedSize = itemSize;
    const auto screen = platform.screens->main();
    MainQueue &mainQueue = *platform.mainQueue;
    const auto show = whileAlive(this, [this](const std::optional<Thumbnail> &thumbnail) { showThumbnail(thumbnail); });
    platform.thumbnailGenerator->generate(
        fileURL, itemSize, screen ? screen->scale : kScaleWithoutScreen,
        [show, &mainQueue](std::optional<Thumbnail> thumbnail) {
            // The generator may call this on any thread. The tile is used on the main thread only.
            mainQueue.async([show, thumbnail = std::move(thumbnail)] { show(thumbnail); });
        },
        whileAlive(this, [this] {
            if (!imageView->hasImage())
                showIcon();
        }));
}

void ShelfItemView::showThumbnail(const std::optional<Thumbnail> &thumbnail)
{
    if (!thumbnail || thumbnail->image.isNull()) {
        showIcon();
        return;
    }
    ++pictureNumber;
    imageView->setImage(QPixmap::fromImage(thumbnail->image), thumbnail->size);
}

void ShelfItemView::showIcon()
{
    // A thumbnail may arrive before the icon does; then the thumbnail stays.
    platform.workspace->icon(fileURL, whileAlive(this, [this, wanted = ++pictureNumber](const QIcon &icon) {
                                 if (pictureNumber == wanted)
                                     imageView->setImage(icon);
                             }));
}

// Characters that change the direction of text can make the name of a program look like that of a picture. The tile
// shows a replacement character in their place.
static QString withoutDirectionMarks(QString name)
{
    for (QChar &c : name) {
        if ((c >= QChar(u'\u202a') && c <= QChar(u'\u202e')) || (c >= QChar(u'\u2066') && c <= QChar(u'\u2069')))
            c = QChar::ReplacementCharacter;
    }
    return name;
}

QString ShelfItemView::displayName(const QUrl &fileURL, Extension extension)
{
    QString name = withoutDirectionMarks(lastPathComponent(fileURL));
    // Only the last extension is hidden. A name whose only dot is its first character has no extension.
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (extension == Extension::Shown || dot <= 0 || dot == name.size() - 1)
        return name;
    return name.left(dot);
}

void ShelfItemView::updateNameLabel()
{
    const FileNameDisplay display = settings.get(Settings::fileNameDisplay);
    nameLabel->setVisible(display != FileNameDisplay::Hidden && display != FileNameDisplay::OnHover);
    if (display == FileNameDisplay::Hidden)
        return;
    nameLabel->setText(
        displayName(fileURL, settings.get(Settings::hideFileExtensions) ? Extension::Hidden : Extension::Shown));
}

void ShelfItemView::layoutTile()
{
    const TileLayout layout = tileLayout(size(), settings.get(Settings::fileNameDisplay));
    imageView->setGeometry(wholePoints(flipped(layout.imageView, height())));
    removeBtn->setGeometry(wholePoints(flipped(layout.removeBtn, height())));
    nameLabelFrame = wholePoints(flipped(layout.nameLabel, height()));
    placeNameLabel();
}

void ShelfItemView::placeNameLabel()
{
    if (!nameLabel)
        return;
    nameLabel->setGeometry(nameLabel->parentWidget() == this ? nameLabelFrame : nameLabelFrame.translated(pos()));
}

bool ShelfItemView::event(QEvent *event)
{
    if (event->type() == QEvent::ParentChange && nameLabel) {
        const bool hidden = nameLabel->isHidden();
        nameLabel->setParent(parentWidget() ? parentWidget() : this);
        nameLabel->setVisible(!hidden);
        placeNameLabel();
    }
    return QWidget::event(event);
}

void ShelfItemView::resizeEvent(QResizeEvent *)
{
    layoutTile();
    updateTrackingAreas();
}

void ShelfItemView::moveEvent(QMoveEvent *)
{
    placeNameLabel();
}

void ShelfItemView::updateTrackingAreas()
{
    removeFader.setAlpha(0);
    hoverFader.setAlpha(0);
}

void ShelfItemView::applyHoverAppearance(double removeButtonAlpha, double backgroundAlpha)
{
    removeFader.fade(removeButtonAlpha, kHoverFade, FadeCurve::Standard);
    hoverFader.fade(backgroundAlpha, kHoverFade, FadeCurve::Standard);
}

void ShelfItemView::setUnderPointer(bool under)
{
    if (isUnderPointer == under)
        return;
    if (under) {
        mouseEntered();
    } else {
        mouseExited();
        updateTrackingAreas();
    }
}

void ShelfItemView::enterEvent(QEnterEvent *)
{
    mouseEntered();
}

void ShelfItemView::leaveEvent(QEvent *)
{
    mouseExited();
}

void ShelfItemView::mouseEntered()
{
    isUnderPointer = true;
    applyHoverAppearance(1.0, kHoverAlpha);
    if (settings.get(Settings::fileNameDisplay) == FileNameDisplay::OnHover)
        nameLabel->show();
}

void ShelfItemView::mouseExited()
{
    isUnderPointer = false;
    applyHoverAppearance(0.0, 0.0);
    if (settings.get(Settings::fileNameDisplay) == FileNameDisplay::OnHover)
        nameLabel->hide();
}

void ShelfItemView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(alpha());
    if (hoverAlpha > 0) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(white(static_cast<float>(hoverAlpha)));
        painter.drawRoundedRect(rect(), kTileCornerRadius, kTileCornerRadius);
    }
    if (layerBorderWidth > 0) {
        // A stroke is centred on its path, so the path lies half a border inside the tile's edge.
        const double inset = layerBorderWidth / 2;
        painter.setPen(QPen(borderColor, layerBorderWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kTileCornerRadius - inset,
                                kTileCornerRadius - inset);
    }
}

void ShelfItemView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    // Qt reports the third click of a triple click as a first one. Here it counts as another double click.
    if (continuesDoubleClick(*event)) {
        mouseDoubleClickEvent(event);
        return;
    }
    lastMultiClick = 0;
    isPressed = true;
    pressPosition = event->position();
    wasSelectedOnMouseDown = isSelected;
    if (!isSelected && onSelect)
        onSelect();
}

bool ShelfItemView::continuesDoubleClick(const QMouseEvent &event) const
{
    return lastMultiClick != 0 &&
           event.timestamp() - lastMultiClick < static_cast<ulong>(QApplication::doubleClickInterval()) &&
           (event.position() - pressPosition).manhattanLength() < QApplication::startDragDistance();
}

void ShelfItemView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    isPressed = true;
    pressPosition = event->position();
    lastMultiClick = event->timestamp();
    wasSelectedOnMouseDown = false;
    if (settings.get(Settings::doubleClickAction) == DoubleClickAction::OpenFile)
        open();
    else if (onSelectAll)
        onSelectAll();
}

void ShelfItemView::mouseMoveEvent(QMouseEvent *event)
{
    if (!isPressed || !(event->buttons() & Qt::LeftButton))
        return;
    if ((event->position() - pressPosition).manhattanLength() >= QApplication::startDragDistance())
        mouseDragged();
}

void ShelfItemView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    isPressed = false;
    if (!wasSelectedOnMouseDown)
        return;
    wasSelectedOnMouseDown = false;
    if (onSelect)
        onSelect();
}

void ShelfItemView::didTapRemove()
{
    if (onRemove)
        onRemove();
}

void ShelfItemView::mouseDragged()
{
    wasSelectedOnMouseDown = false;
    if (onDragStarted)
        onDragStarted();

    const auto items = getDragItems ? getDragItems() : std::nullopt;
    if (items && !items->isEmpty()) {
        isDraggingMultiple = true;
        beginDraggingSession(*items);
        return;
    }
    isDraggingMultiple = false;
    if (!imageView->hasImage())
        return;
    beginDraggingSession(
        {DraggingItem{fileURL, draggingFrame(), imageView->image(settings.get(Settings::shelfItemSize))}});
}

void ShelfItemView::beginDraggingSession(const QList<DraggingItem> &items)
{
    // The drag session grabs the pointer, so the tile does not receive the release.
    isPressed = false;
    const DragOperation operation = sourceOperation(settings.get(Settings::dragMode));
    // A destination may answer after the next drag has begun or the tile has been deleted, so each session has its own
    // callback.
    const auto report = isDraggingMultiple ? onMultiDragOut : onDragOut;
    const auto forget = whileAlive(this, [this] { isDraggingMultiple = false; });
    platform.dragSessions->begin(*this, items, operation, [forget, report, &store = settings](DragOperation done) {
        forget();
        if (done != DragOperation::None && store.get(Settings::removeItemsWhenDraggedOut) && report)
            report();
    });
}

DragOperation ShelfItemView::sourceOperation(DragMode dragMode)
{
    switch (dragMode) {
    case DragMode::Move:
        return DragOperation::Move;
    case DragMode::Link:
        return DragOperation::Link;
    default:
        return DragOperation::Copy;
    }
}
