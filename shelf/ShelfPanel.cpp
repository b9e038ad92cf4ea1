// SPDX-License-Identifier: MIT
// The panel itself: its views, its frame and how it looks.
#include "shelf/ShelfPanel.h"

#include "platform/Platform.h"
#include "platform/WhileAlive.h"
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/DropViews.h"
#include "shelf/ShelfAccessibility.h"
#include "shelf/ShelfGeometry.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfMetrics.h"
#include "shelf/ShelfStackView.h"
#include "shelf/ShelfViews.h"
#include "shelf/TileViews.h"

#include <QContextMenuEvent>
#include <QLabel>
#include <QScrollBar>

#include <algorithm>

using namespace ShelfMetrics;

ShelfPanel::ShelfPanel(Platform &services, AppSettings &appSettings, NotificationCenter &center)
    : platform(services)
    , settings(appSettings)
    , notifications(center)
    , fader(
          *services.mainQueue, [this](double value) { platform.floatingPanels->setAlpha(*this, value); }, 1.0)
{
    installShelfAccessibility();
    setAccessibleRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("Parklet"));
    setGeometry(0, 0, 0, 0);
    // Qt shows tool tips in the active program only, and a panel never activates its program.
    setAttribute(Qt::WA_AlwaysShowToolTips);
    platform.floatingPanels->make(*this, PanelStyle{QStringLiteral("shelf"), kPanelCornerRadius});
    buildInterface();
}

HeaderButton *ShelfPanel::makeHeaderButton(const QString &symbol, const QString &label)
{
    return new HeaderButton(platform.appearance->symbol(symbol, white(kSymbolAlpha)), label, headerBar);
}

void ShelfPanel::buildInterface()
{
    const auto drop = whileAlive(this, [this](const QList<QUrl> &urls) { handleDrop(urls); });
    const auto highlightDrop = whileAlive(this, [this](bool on) { setHighlighted(on); });

    const auto readDrop = [this](const QMimeData *data) { return platform.dropPasteboard->fileURLs(data); };
    const auto hasNoFiles = [this] { return platform.dropPasteboard->isDragWithoutFiles(); };

    container = new DroppableView(this);
    setAccessibleRole(*container, QAccessible::Pane);
    container->readFileURLs = readDrop;
    container->isWithoutFiles = hasNoFiles;
    container->onDrop = drop;
    container->onHighlight = highlightDrop;

    visualFX = new VisualEffectView(*platform.floatingPanels, container);
    tintOverlay = new ColorView(kPanelCornerRadius, container);
    tintOverlay->hide();
    applyTint();

    notifications.observe(Notifications::settingsChanged, this, [this](const QVariantMap &) { settingsDidChange(); });

    headerBar = new QWidget(container);
    setAccessibleRole(*headerBar, QAccessible::ToolBar);
    gearBtn = makeHeaderButton(QStringLiteral("gearshape"), tr("Preferences"));
    selectAllBtn = makeHeaderButton(QStringLiteral("square.stack.3d.down.right"), tr("Select all"));
    trashBtn = makeHeaderButton(QStringLiteral("trash"), tr("Clear all"));
    connect(gearBtn, &QAbstractButton::clicked, this, &ShelfPanel::openPrefs);
    connect(selectAllBtn, &QAbstractButton::clicked, this, &ShelfPanel::selectAllAction);
    connect(trashBtn, &QAbstractButton::clicked, this, &ShelfPanel::clearAll);
    selectAllBtn->hide();

    sepLine = new ColorView(0, container);
    sepLine->setColor(white(kSeparatorAlpha));

    //: The shelf may be as narrow as 92 points: please use two short words or three.
    dropLabel = new QLabel(tr("Drop files here"), container);
    dropLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    dropLabel->setAlignment(Qt::AlignCenter);
    QPalette palette = dropLabel->palette();
    palette.setColor(QPalette::WindowText, white(kDropLabelAlpha));
    dropLabel->setPalette(palette);
    QFont font = dropLabel->font();
    font.setPixelSize(kDropLabelFontSize);
    dropLabel->setFont(font);

    scrollView = new ShelfScrollView(platform.appearance->legacyScrollerWidth(), container);
    scrollView->readFileURLs = readDrop;
    scrollView->isWithoutFiles = hasNoFiles;
    scrollView->onDrop = drop;
    scrollView->onHighlight = highlightDrop;
    stackView = new ShelfStackView;
    stackView->setAccessibleName(tr("Files"));
    scrollView->setWidget(stackView);
    for (const QScrollBar *bar : {scrollView->verticalScrollBar(), scrollView->horizontalScrollBar()})
        connect(bar, &QScrollBar::valueChanged, this, &ShelfPanel::tilesDidScroll);
}

void ShelfPanel::resizeEvent(QResizeEvent *)
{
    layoutViews();
}

void ShelfPanel::changeEvent(QEvent *event)
{
    // Without a stored tint the shelf uses the accent colour, which may have changed.
    if (event->type() == QEvent::PaletteChange && tintOverlay)
        applyTint();
    QWidget::changeEvent(event);
}

void ShelfPanel::contextMenuEvent(QContextMenuEvent *event)
{
    if (onContextMenu)
        onContextMenu(event->globalPos());
}

void ShelfPanel::layoutViews()
{
    const ShelfLayout layout = shelfLayout(size(), stackView->isHorizontal() ? Qt::Horizontal : Qt::Vertical);
    container->setGeometry(rect());
    visualFX->setGeometry(rect());
    tintOverlay->setGeometry(rect());
    headerBar->setGeometry(wholePoints(layout.headerBar));
    gearBtn->setGeometry(wholePoints(layout.gearBtn));
    selectAllBtn->setGeometry(wholePoints(layout.selectAllBtn));
    trashBtn->setGeometry(wholePoints(layout.trashBtn));
    sepLine->setGeometry(wholePoints(layout.sepLine));
    scrollView->setGeometry(wholePoints(layout.scrollView));
    const QSize label = dropLabel->sizeHint();
    dropLabel->setGeometry((width() - label.width()) / 2, (height() - label.height()) / 2 + kDropLabelOffset,
                           label.width(), label.height());
}

void ShelfPanel::updateFrame()
{
    const auto screen = platform.screens->main();
    if (!screen)
        return;
    const double flip = platform.screens->flipHeight();
    const WindowEdge edge = settings.get(Settings::windowEdge);
    const double reserve = labelReserve(settings.get(Settings::fileNameDisplay));
    setHorizontal(isHorizontal(edge));
    currentFrame = shelfFrame(flipped(screen->visibleFrame, flip), edge, settings.get(Settings::windowAlignment),
                              settings.get(Settings::shelfItemSize), reserve, items.size(),
                              platform.appearance->legacyScrollerWidth());
    setGeometry(wholePoints(flipped(currentFrame, flip)));
    scrollIntoView(screen->visibleFrame);
}

// A clamped panel reaches beyond the visible frame, where its tiles would be out of reach.
void ShelfPanel::scrollIntoView(const QRectF &visibleFrame)
{
    const bool isRow = stackView->isHorizontal();
    const QRectF list =
        shelfLayout(size(), isRow ? Qt::Horizontal : Qt::Vertical).scrollView.translated(geometry().topLeft());
    const double atStart = isRow ? visibleFrame.left() - list.left() : visibleFrame.top() - list.top();
    const double atEnd = isRow ? list.right() - visibleFrame.right() : list.bottom() - visibleFrame.bottom();
    stackView->setOffScreen(std::max(0.0, atStart), std::max(0.0, atEnd));
    scrollView->setOffScreen(std::max(0.0, atEnd));
}

void ShelfPanel::setHorizontal(bool horizontal)
{
    if (stackView->isHorizontal() == horizontal)
        return;
    stackView->setHorizontal(horizontal);
    scrollView->setHorizontal(horizontal);
    layoutViews();
}

void ShelfPanel::applySettings()
{
    const UserDefaults::ReadsOfOneMoment moment(settings.defaults);
    refreshTiles();
    stackView->setTileHeight(settings.get(Settings::shelfItemSize) +
                             labelReserve(settings.get(Settings::fileNameDisplay)));
    updateFrame();
}

void ShelfPanel::settingsDidChange()
{
    const UserDefaults::ReadsOfOneMoment moment(settings.defaults);
    applyTint();
    refreshTiles();
}

void ShelfPanel::refreshTiles()
{
    const double itemSize = settings.get(Settings::shelfItemSize);
    for (ShelfItemView *tile : stackView->arrangedSubviews()) {
        tile->updateNameLabel();
        if (tile->lastLoadedSize != itemSize)
            tile->loadThumbnail();
        tile->layoutTile();
    }
}

void ShelfPanel::applyTint()
{
    const double intensity = settings.get(Settings::tintIntensity);
    if (intensity > kTintThreshold) {
        QColor tint = settings.tintColor();
        tint.setAlphaF(static_cast<float>(std::min(intensity * kTintStrength, 1.0)));
        tintOverlay->setColor(tint);
    }
    tintOverlay->setVisible(intensity > kTintThreshold);
}

void ShelfPanel::updateHeader()
{
    dropLabel->setVisible(items.isEmpty());
    selectAllBtn->setVisible(items.size() >= 2);
}

// Qt tells a tile that moves under a resting pointer nothing before the pointer moves.
void ShelfPanel::tilesDidScroll()
{
    const std::optional<QPointF> pointer = platform.screens->pointer();
    if (!pointer)
        return;
    const auto isOver = [&pointer](const QWidget *view) {
        return QRectF(view->rect()).contains(view->mapFromGlobal(*pointer));
    };
    const bool isOverList = isOver(scrollView->viewport());
    for (ShelfItemView *tile : stackView->arrangedSubviews())
        tile->setUnderPointer(isOverList && isOver(tile));
}

void ShelfPanel::openPrefs()
{
    notifications.post(Notifications::openPreferences);
}
