// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

#include <memory>

class QWidget;
struct Platform;

// A drag of another program, of these addresses, for as long as this lives.
class ForeignDragUnderWay {
public:
    virtual ~ForeignDragUnderWay() = default;
};

// Begins one that `platform` sees; what it carries may become known only a while later. Null when none could begin.
std::unique_ptr<ForeignDragUnderWay> dragInAnotherProgram(Platform &platform, const QList<QUrl> &urls);

// Has another program drop these on a window of this one, as the desktop does it. It is delivered then or later.
std::unique_ptr<ForeignDragUnderWay> dropFromAnotherProgram(QWidget &window, const QList<QUrl> &urls);
