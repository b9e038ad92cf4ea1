// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

#include <memory>

struct Platform;

// A drag of another program, of these addresses, for as long as this lives.
class ForeignDragUnderWay {
public:
    virtual ~ForeignDragUnderWay() = default;
};

// Begins one that `platform` sees; what it carries may become known only a while later. Null when none could begin.
std::unique_ptr<ForeignDragUnderWay> dragInAnotherProgram(Platform &platform, const QList<QUrl> &urls);
