// SPDX-License-Identifier: MIT
#include "shelf/CursorShelf.h"

#include "platform/Platform.h"
#include "platform/WhileAlive.h"
#include "shelf/ShelfAccessibility.h"
#include "shelf/ShelfGeometry.h"
#include "shelf/ShelfMetrics.h"
#include "shelf/ShelfViews.h"

#include <QPainter>

using namespace ShelfMetrics;

namespace {

// Whether `point` is on the screen. Its right and bottom edges belong to the screens beside and below it.
bool contains(const Screen &screen, const QPointF &point)
{
    const QRectF &frame = screen.frame;
    return point.x() >= frame.left() && point.x() < frame.right() && point.y() >= frame.top() &&
           point.y() < frame.bottom();
}

// A symbol in the middle of a view, with a screen reader's name for it.
class SymbolView : public QWidget {
public:
    SymbolView(QIcon shownSymbol, const QString &description, QWidget *parent)
        : QWidget(parent)
        , symbol(std::move(shownSymbol))
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAccessibleRole(*this, QAccessible::Graphic);
        setAccessibleName(description);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        symbol.paint(&painter, rect());
    }

private:
    QIcon symbol;
};

} // namespace

CursorDropZone::CursorDropZone(Platform &platform, QWidget *parent)
    : QWidget(parent)
    , visualFX(new VisualEffectView(*platform.floatingPanels, this))
    , iconView(new SymbolView(platform.appearance->symbol(QStringLiteral("tray.and.arrow.down"), white(kSymbolAlpha)),
                              tr("Drop here"), this))
{
    setAcceptDrops(true);
    setAccessibleRole(*this, QAccessible::Pane);
    readFileURLs = [&platform](const QMimeData *data) { return platform.dropPasteboard->fileURLs(data); };
    isWithoutFiles = [&platform] { return platform.dropPasteboard->isDragWithoutFiles(); };
    onHighlight = [this, &platform](bool on) {
        visualFX->setBorder(on ? kHighlightBorder : 0, platform.appearance->accentColor());
    };
}

void CursorDropZone::resizeEvent(QResizeEvent *)
{
    visualFX->setGeometry(rect());
    iconView->setGeometry((width() - kCursorSymbolSize) / 2, (height() - kCursorSymbolSize) / 2, kCursorSymbolSize,
                          kCursorSymbolSize);
}

CursorShelf::CursorShelf(Platform &services)
    : dropZone(new CursorDropZone(services, this))
    , platform(services)
    , fader(
          *services.mainQueue, [this](double value) { platform.floatingPanels->setAlpha(*this, value); }, 1.0)
{
    installShelfAccessibility();
    setAccessibleRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("Parklet"));
    platform.floatingPanels->make(*this, PanelStyle{QStringLiteral("cursor-shelf"), kPanelCornerRadius});
    dropZone->onDrop = whileAlive(this, [this](const QList<QUrl> &urls) {
        if (onDrop)
            onDrop(urls);
    });
    resize(QSizeF(kCursorShelfSize, kCursorShelfSize).toSize());
}

void CursorShelf::resizeEvent(QResizeEvent *)
{
    dropZone->setGeometry(rect());
}

void CursorShelf::showNearCursor()
{
    const std::optional<QPointF> pointer = platform.screens->pointer();
    if (!pointer)
        return;
    std::optional<Screen> screen;
    for (const Screen &candidate : platform.screens->all()) {
        if (contains(candidate, *pointer)) {
            screen = candidate;
            break;
        }
    }
    if (!screen)
        screen = platform.screens->main();
    if (!screen)
        qFatal("There is no screen to show the cursor shelf on");

    const double flip = platform.screens->flipHeight();
    const QRectF frame = cursorShelfFrame(flipped(*pointer, flip), flipped(screen->visibleFrame, flip));
    setGeometry(wholePoints(flipped(frame, flip)));
    hiding = false;
    fader.setAlpha(0);
    platform.floatingPanels->orderFront(*this);
    fader.fade(1.0, kCursorFadeIn, FadeCurve::EaseOut);
}

void CursorShelf::hide()
{
    if (!isVisible() || hiding)
        return;
    hiding = true;
    fader.fade(0.0, kCursorFadeOut, FadeCurve::Standard, [this] {
        hiding = false;
        platform.floatingPanels->orderOut(*this);
        fader.setAlpha(1.0);
    });
}
