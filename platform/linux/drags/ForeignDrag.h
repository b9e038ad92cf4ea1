// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <functional>

// The state of the drag in another program, from its announcement to its end, one drag after another. Its owner reports
// what happens and asks the source what this class wants to know. A source may answer at once, late, in pieces, wrongly
// or never.
class ForeignDrag {
public:
    // The number of a question to a source. Only the answer to the newest question counts.
    using Question = quint64;

    // What a source is asked for: its list of URLs, the list of types that it offers, or the link that it carries.
    enum class Target { URIList, Offers, Link };

    // Asks the source for `target` with the time of a pointer event (milliseconds of the X server).
    std::function<void(Question question, Target target, quint32 time)> onAsk;
    // The pointer moved, or the source has told what the drag carries.
    std::function<void()> onDragged;
    std::function<void()> onEnded;

    bool isInProgress() const { return inProgress; }

    // Grows each time the source has told what a drag carries.
    qint64 changeCount() const { return count; }

    // Whether the source of the drag in progress has told what it carries, and there is no file in it.
    bool isWithoutFiles() const { return inProgress && isToldWithoutFiles; }

    // All files that the drag in progress carries. Empty when it carries anything else, and until the source has
    // answered.
    const QList<QUrl> &fileURLs() const { return files; }

    // A source has announced a drag at `time`. An earlier drag is over then.
    void begin(quint32 time);

    // The drag is over. Does nothing when no drag is in progress.
    void end();

    void pointerMoved(quint32 time);

    // Call it instead of pointerMoved() when the pointer is unknown: the drag is still in progress at `time`.
    void wentOn(quint32 time);

    // The source refused to answer. It is asked next which types it offers, because a browser may offer no list of URLs
    // but a link to a file. Some sources refuse every question that does not have the time of their latest pointer
    // event, so they are asked again at the next few events.
    void refused(Question question);

    struct Offers {
        bool uriList = false;
        bool link = false;
    };

    // The source has answered which of these types it offers.
    void offered(Question question, const Offers &offers);

    // The source has answered with the requested type, or with another one.
    void answered(Question question, const QByteArray &data);
    void answeredWrongly(Question question);

    // The answer arrives in pieces. An empty piece is the last.
    void answersInPieces(Question question);
    void pieceArrived(Question question, const QByteArray &piece);

    // The source has sent nothing for too long. The drag counts as one without files until a late answer arrives.
    void silent();

private:
    enum class State { Asking, Silent, Refused, Known };

    void ask(Target what, quint32 time);
    void refusedForNow();
    void know(const QList<QUrl> &urls);
    void tell(const QList<QUrl> &urls, bool withoutFiles);
    bool isCurrent(Question question) const { return inProgress && question == current; }
    bool isAsking() const { return state == State::Asking || state == State::Silent; }

    bool inProgress = false;
    State state = State::Known;
    Question current = 0;
    Target target = Target::URIList; // of the current question
    quint32 askedTime = 0;
    int retries = 0;
    QByteArray pieces;
    qint64 count = 0;
    bool isToldWithoutFiles = false; // by the source itself, and not after a timeout
    QList<QUrl> files;
};
