// SPDX-License-Identifier: MIT
#include "platform/linux/drags/ForeignDrag.h"

#include "platform/FileURLs.h"

#include <utility>

namespace {

// A source that refuses is asked again at most so many times.
constexpr int kRetries = 10;

} // namespace

void ForeignDrag::begin(quint32 time)
{
    end();
    inProgress = true;
    isToldWithoutFiles = false;
    retries = 0;
    ask(Target::URIList, time);
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
    wentOn(time);
    if (onDragged)
        onDragged();
}

void ForeignDrag::wentOn(quint32 time)
{
    if (inProgress && state == State::Refused)
        ask(Target::URIList, time);
}

void ForeignDrag::refused(Question question)
{
    if (!isCurrent(question) || !isAsking())
        return;
    switch (target) {
    case Target::URIList:
        ask(Target::Offers, askedTime);
        break;
    case Target::Offers:
        refusedForNow();
        break;
    case Target::Link:
        know({});
        break;
    }
}

void ForeignDrag::offered(Question question, const Offers &offers)
{
    if (!isCurrent(question) || !isAsking() || target != Target::Offers)
        return;
    if (offers.uriList)
        refusedForNow();
    else if (offers.link)
        ask(Target::Link, askedTime);
    else
        tell({}, true);
}

void ForeignDrag::answered(Question question, const QByteArray &data)
{
    if (!isCurrent(question))
        return;
    switch (target) {
    case Target::URIList:
        // Of files and other things together it tells no files either, but it is not without any.
        tell(::fileURLs(data), !data.contains("file:"));
        break;
    case Target::Offers:
        answeredWrongly(question);
        break;
    case Target::Link: {
        const QList<QUrl> linked = linkedFileURLs(data);
        tell(linked, linked.isEmpty());
        break;
    }
    }
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
        return;
    }
    pieces += piece;
    if (pieces.size() <= kLongestAddressList)
        return;
    // What has arrived so far decides, and later pieces are ignored.
    answered(question, std::exchange(pieces, {}));
    if (isCurrent(question))
        ++current;
}

void ForeignDrag::silent()
{
    if (!inProgress || state != State::Asking)
        return;
    know({});
    state = State::Silent;
}

void ForeignDrag::ask(Target what, quint32 time)
{
    state = State::Asking;
    ++current;
    target = what;
    askedTime = time;
    pieces.clear();
    if (onAsk)
        onAsk(current, target, time);
}

void ForeignDrag::refusedForNow()
{
    if (retries++ < kRetries)
        state = State::Refused;
    else
        know({});
}

void ForeignDrag::tell(const QList<QUrl> &urls, bool withoutFiles)
{
    isToldWithoutFiles = withoutFiles;
    know(urls);
}

void ForeignDrag::know(const QList<QUrl> &urls)
{
    // A late answer without files changes nothing.
    const bool isNews = (state != State::Known && state != State::Silent) || !urls.isEmpty();
    state = State::Known;
    files = urls;
    if (!isNews)
        return;
    ++count;
    if (onDragged)
        onDragged();
}
