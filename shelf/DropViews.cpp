// SPDX-License-Identifier: MIT
#include "shelf/DropViews.h"

#include "shelf/ShelfMetrics.h"
#include "shelf/ShelfScroller.h"

#include <QApplication>
#include <QWheelEvent>

using namespace ShelfMetrics;

DroppableView::DroppableView(QWidget *parent)
    : QWidget(parent)
{
    setAcceptDrops(true);
}

ShelfScrollView::ShelfScrollView(double scrollerWidth, QWidget *parent)
    : QScrollArea(parent)
    , overlay(new ShelfScroller(Qt::Vertical, this))
{
    setAcceptDrops(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    auto *const below = new ShelfScroller(Qt::Horizontal, this);
    below->takeRoom(qRound(scrollerWidth));
    setHorizontalScrollBar(below);
    viewport()->setAutoFillBackground(false);
    QPalette clear = palette();
    clear.setBrush(QPalette::Window, Qt::transparent);
    setPalette(clear);

    // The overlay mirrors the real scroll bar, which stays hidden because it would take room.
    QScrollBar *bar = verticalScrollBar();
    connect(bar, &QScrollBar::rangeChanged, this, &ShelfScrollView::placeOverlay);
    connect(bar, &QScrollBar::valueChanged, overlay, &QScrollBar::setValue);
    connect(overlay, &QScrollBar::valueChanged, bar, &QScrollBar::setValue);
    setHorizontal(false);
}

void ShelfScrollView::setHorizontal(bool horizontal)
{
    isRow = horizontal;
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(horizontal ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    placeOverlay();
}

void ShelfScrollView::setOffScreen(double atEnd)
{
    offScreen = qRound(atEnd);
    placeOverlay();
}

void ShelfScrollView::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    placeOverlay();
}

void ShelfScrollView::placeOverlay()
{
    const QScrollBar *bar = verticalScrollBar();
    overlay->setPageStep(bar->pageStep() - offScreen);
    overlay->setSingleStep(bar->singleStep());
    overlay->setRange(bar->minimum(), bar->maximum());
    overlay->setValue(bar->value());
    overlay->setGeometry(width() - kOverlayScrollerWidth, 0, kOverlayScrollerWidth, height() - offScreen);
    overlay->setVisible(!isRow && bar->maximum() > bar->minimum());
    overlay->raise();
}

void ShelfScrollView::wheelEvent(QWheelEvent *event)
{
    // A wheel with one axis only must scroll a row too.
    if (isRow && event->angleDelta().x() == 0)
        QApplication::sendEvent(horizontalScrollBar(), event);
    else
        QScrollArea::wheelEvent(event);
}
