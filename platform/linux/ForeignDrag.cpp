// SPDX-License-Identifier: MIT
#include "platform/linux/ForeignDrag.h"

#include "platform/FileURLs.h"

#include <utility>

namespace {

// How often a source that refuses is asked again.
constexpr int kRetries = 10;
// The longest answer that is taken, in bytes: some hundred thousand files.
constexpr qsizetype kLongestAnswer = qsizetype(64) * 1024 * 1024;

} // namespace

void ForeignDrag::begin(quint32 time)
{
    end();
    inProgress = true;
    retries = 0;
    ask(time);
}

void ForeignDrag::end()
{
    if (!std::exchange(inProgress, false))
        return;
    files.clear();
    pieces.clear();
    if (onEnded)
        onEnded();
}

void ForeignDrag::pointerMoved(quint32 time)
{
    if (!inProgress)
        return;
    if (state == State::Refused)
        ask(time);
    if (onDragged)
        onDragged();
}

void ForeignDrag::refused(Question question)
{
    if (!isCurrent(question) || state != State::Asking)
        return;
    if (retries++ < kRetries)
        state = State::Refused;
    else
        know({});
}

void ForeignDrag::answered(Question question, const QByteArray &uriList)
{
    if (isCurrent(question))
        know(::fileURLs(uriList));
}

void ForeignDrag::answeredWrongly(Question question)
{
    if (isCurrent(question))
        know({});
}

void ForeignDrag::answersInPieces(Question question)
{
    if (isCurrent(question))
        pieces.clear();
}

void ForeignDrag::pieceArrived(Question question, const QByteArray &piece)
{
    if (!isCurrent(question))
        return;
    if (piece.isEmpty()) {
        answered(question, std::exchange(pieces, {}));
    } else if (pieces.size() + piece.size() > kLongestAnswer) {
        pieces.clear();
        // No further piece is taken.
        ++current;
        know({});
    } else {
        pieces += piece;
    }
}

void ForeignDrag::silent()
{
    if (inProgress && state == State::Asking)
        know({});
}

void ForeignDrag::ask(quint32 time)
{
    state = State::Asking;
    ++current;
    pieces.clear();
    if (onAsk)
        onAsk(current, time);
}

void ForeignDrag::know(const QList<QUrl> &urls)
{
    // A late answer without files tells nothing new.
    const bool isNews = state != State::Known || !urls.isEmpty();
    state = State::Known;
    files = urls;
    if (!isNews)
        return;
    ++count;
    if (onDragged)
        onDragged();
}
