// SPDX-License-Identifier: MIT
#include "platform/linux/drags/EdgeStrip.h"

#include <QDragEnterEvent>

#include <algorithm>

namespace {

constexpr int kThickness = 4;    // points
constexpr double kBeyond = 120;  // points
constexpr double kEqually = 0.5; // points by which two distances may differ

} // namespace

EdgeStrip::EdgeStrip(const QRect &place)
{
    // The compositor forwards drags of native programs only to translucent windows.
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
    setWindowRole(QStringLiteral("edge-strip"));
    setAcceptDrops(true);
    setGeometry(place);
}

void EdgeStrip::dragEnterEvent(QDragEnterEvent *event)
{
    dragMoveEvent(event);
}

void EdgeStrip::dragMoveEvent(QDragMoveEvent *event)
{
    // A drop here must fail. After any other answer its source may consider the file moved.
    event->ignore();
    if (onPointer)
        onPointer(mapToGlobal(event->position()));
}

void EdgeStrip::dragLeaveEvent(QDragLeaveEvent *)
{
    if (onPointer)
        onPointer({});
}

QList<QRect> edgeStrips(const QRectF &frame, const QRectF &visible)
{
    struct Edge {
        double distance;
        QRectF strip;
    };
    const QRectF reach = frame.adjusted(-kBeyond, -kBeyond, kBeyond, kBeyond);
    const QList<Edge> edges = {
        {frame.left() - visible.left(), QRectF(visible.left(), reach.top(), kThickness, reach.height())},
        {visible.right() - frame.right(),
         QRectF(visible.right() - kThickness, reach.top(), kThickness, reach.height())},
        {frame.top() - visible.top(), QRectF(reach.left(), visible.top(), reach.width(), kThickness)},
        {visible.bottom() - frame.bottom(),
         QRectF(reach.left(), visible.bottom() - kThickness, reach.width(), kThickness)},
    };
    const double nearest = std::ranges::min(edges, {}, &Edge::distance).distance;
    QList<QRect> strips;
    for (const Edge &edge : edges) {
        const QRect strip = (edge.strip & visible).toRect();
        if (edge.distance <= nearest + kEqually && !strip.isEmpty())
            strips.append(strip);
    }
    return strips;
}
