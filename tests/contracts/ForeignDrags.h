// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

#include <memory>

class QWidget;
struct Platform;

// A drag of these addresses in another program. It ends with this object.
class ForeignDragUnderWay {
public:
    virtual ~ForeignDragUnderWay() = default;
};

// Begins a drag that `platform` can see. Its contents may become known a while later. Null when no drag could begin.
std::unique_ptr<ForeignDragUnderWay> dragInAnotherProgram(Platform &platform, const QList<QUrl> &urls);

// Has another program drop these on a window of this one, as the desktop does it. It is delivered then or later.
std::unique_ptr<ForeignDragUnderWay> dropFromAnotherProgram(QWidget &window, const QList<QUrl> &urls);
