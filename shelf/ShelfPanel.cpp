// SPDX-License-Identifier: MIT
#include "shelf/ShelfPanel.h"

#include "platform/Platform.h"
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/DropViews.h"
#include "shelf/SelectAllKey.h"
#include "shelf/ShelfAccessibility.h"
#include "shelf/ShelfGeometry.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfStackView.h"
#include "shelf/ShelfViews.h"
#include "shelf/TileViews.h"

#include <QEvent>
#include <QLabel>
#include <QPointer>

namespace {

constexpr double kFadeIn = 0.22;         // seconds
constexpr double kFadeOut = 0.18;        // seconds
constexpr double kEmptyShelfDelay = 1.5; // seconds an emptied shelf stays

constexpr float kHeaderTint = 0.65F; // alpha of the white of the header's symbols
constexpr float kSeparatorAlpha = 0.12F;
constexpr float kDropLabelAlpha = 0.35F;
constexpr int kDropLabelFontSize = 11;
constexpr int kDropLabelOffset = 10; // below the middle

constexpr double kTintThreshold = 0.01; // a weaker tint is not drawn at all
constexpr double kTintStrength = 0.6;   // alpha of the tint at full intensity

QColor white(float alpha)
{
    return QColor::fromRgbF(1, 1, 1, alpha);
}

} // namespace

ShelfPanel::ShelfPanel(Platform &services, AppSettings &appSettings, NotificationCenter &center)
    : platform(services)
    , settings(appSettings)
    , notifications(center)
    , fader(
          *services.mainQueue, [this](double value) { platform.floatingPanels->setAlpha(*this, value); }, 1.0)
{
    setWindowTitle(QStringLiteral("Parklet"));
    setGeometry(0, 0, 0, 0);
    // Else only the windows of the active program have tool tips, and a panel never makes its program that one.
    setAttribute(Qt::WA_AlwaysShowToolTips);
    platform.floatingPanels->make(*this, PanelStyle{QStringLiteral("shelf"), VisualEffectView::kCornerRadius});
    buildInterface();
}

HeaderButton *ShelfPanel::makeHeaderButton(const QString &symbol, const QString &label)
{
    return new HeaderButton(platform.appearance->symbol(symbol, white(kHeaderTint)), label, headerBar);
}

void ShelfPanel::buildInterface()
{
    const QPointer<ShelfPanel> self(this);
    const auto drop = [self](const QList<QUrl> &urls) {
        if (self)
            self->handleDrop(urls);
    };
    const auto highlightDrop = [self](bool on) {
        if (self)
            self->highlight(on);
    };

    container = new DroppableView(this);
    container->onDrop = drop;
    container->onHighlight = highlightDrop;

    visualFX = new VisualEffectView(*platform.floatingPanels, container);
    tintOverlay = new ColorView(VisualEffectView::kCornerRadius, container);
    tintOverlay->hide();
    applyTint();

    notifications.observe(Notifications::settingsChanged, this, [this](const QVariantMap &) { settingsDidChange(); });

    headerBar = new QWidget(container);
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
    scrollView->onDrop = drop;
    scrollView->onHighlight = highlightDrop;
    stackView = new ShelfStackView;
    stackView->setAccessibleName(tr("Files"));
    installShelfAccessibility();
    scrollView->setWidget(stackView);
}

void ShelfPanel::resizeEvent(QResizeEvent *)
{
    layoutViews();
}

void ShelfPanel::changeEvent(QEvent *event)
{
    // Without a stored tint the shelf has the accent colour, which may have changed.
    if (event->type() == QEvent::PaletteChange && tintOverlay)
        applyTint();
    QWidget::changeEvent(event);
}

void ShelfPanel::layoutViews()
{
    const ShelfLayout layout = shelfLayout(size(), stackView->isHorizontal());
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
    applyOrientation(isHorizontal(edge));
    currentFrame = shelfFrame(flipped(screen->visibleFrame, flip), edge, settings.get(Settings::windowAlignment),
                              settings.get(Settings::shelfItemSize), reserve, items.size(),
                              platform.appearance->legacyScrollerWidth());
    setGeometry(wholePoints(flipped(currentFrame, flip)));
}

void ShelfPanel::applyOrientation(bool horizontal)
{
    if (stackView->isHorizontal() == horizontal)
        return;
    stackView->setHorizontal(horizontal);
    scrollView->setHorizontal(horizontal);
    layoutViews();
}

void ShelfPanel::show(bool animated)
{
    hiding = false;
    updateFrame();
    if (animated && !settings.get(Settings::disableAnimations)) {
        fader.setAlpha(0);
        platform.floatingPanels->orderFront(*this);
        fader.fade(1.0, kFadeIn, FadeCurve::EaseOut);
        restartAutoHideTimer();
    } else {
        // Without the fade the timer is not armed again.
        fader.setAlpha(1.0);
        platform.floatingPanels->orderFront(*this);
    }
}

void ShelfPanel::hide(bool animated)
{
    if (!isVisible())
        return;
    if (autoHideTimer)
        autoHideTimer->invalidate();
    hidesOnlyEmpty = false;
    if (!animated || settings.get(Settings::disableAnimations))
        vanish();
    else if (!hiding)
        fadeOut();
}

void ShelfPanel::fadeOut()
{
    hiding = true;
    fader.fade(0.0, kFadeOut, FadeCurve::Standard, [this] {
        if (!hidesOnlyEmpty || items.isEmpty()) {
            vanish();
            return;
        }
        hiding = false;
        fader.fade(1.0, kFadeIn, FadeCurve::EaseOut);
    });
}

void ShelfPanel::vanish()
{
    hiding = false;
    platform.floatingPanels->orderOut(*this);
    fader.setAlpha(1.0);
}

void ShelfPanel::applySettings()
{
    const UserDefaults::ReadsOfOneMoment moment(settings.defaults);
    const double itemSize = settings.get(Settings::shelfItemSize);
    const double reserve = labelReserve(settings.get(Settings::fileNameDisplay));
    for (ShelfItemView *tile : stackView->arrangedSubviews()) {
        tile->updateNameLabel();
        if (tile->lastLoadedSize != itemSize)
            tile->loadThumbnail();
        tile->layoutTile();
    }
    stackView->setTileHeight(itemSize + reserve);
    updateFrame();
}

void ShelfPanel::settingsDidChange()
{
    const UserDefaults::ReadsOfOneMoment moment(settings.defaults);
    applyTint();
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

void ShelfPanel::restartAutoHideTimer()
{
    if (autoHideTimer)
        autoHideTimer->invalidate();
    const double timeout = settings.get(Settings::autoHideTimeout);
    if (timeout > 0) {
        autoHideTimer = platform.mainQueue->after(timeout, [panel = QPointer<ShelfPanel>(this)] {
            if (panel)
                panel->hideIfEmpty();
        });
    }
}

void ShelfPanel::scheduleHideIfEmpty()
{
    if (autoHideTimer)
        autoHideTimer->invalidate();
    autoHideTimer = platform.mainQueue->after(kEmptyShelfDelay, [panel = QPointer<ShelfPanel>(this)] {
        if (panel)
            panel->hideIfEmpty();
    });
}

void ShelfPanel::hideIfEmpty()
{
    if (!items.isEmpty() || hiding)
        return;
    hide(true);
    // What arrives while an empty shelf fades out brings it back.
    hidesOnlyEmpty = hiding;
}

void ShelfPanel::installCmdATap()
{
    if (isTapInstalled)
        return;
    MainQueue &mainQueue = *platform.mainQueue;
    isTapInstalled = platform.keyTap->install(
        [panel = QPointer<ShelfPanel>(this), &mainQueue](Qt::Key key, Qt::KeyboardModifiers modifiers) {
            if (!isSelectAllKey(key, modifiers))
                return false;
            // The key press is answered at once and never waits for the tiles.
            mainQueue.async([panel] {
                if (panel)
                    panel->selectAll();
            });
            return true;
        });
}

void ShelfPanel::removeCmdATap()
{
    if (!isTapInstalled)
        return;
    platform.keyTap->remove();
    isTapInstalled = false;
}

void ShelfPanel::openPrefs()
{
    notifications.post(Notifications::openPreferences);
}
