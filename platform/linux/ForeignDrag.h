// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <functional>

// What is known of the drag in another application, from the moment its source announces it until it ends. It is fed
// with what happens, one drag after another, and says what to ask the source for; a source may answer at once, late,
// in pieces, wrongly or never.
class ForeignDrag {
public:
    // Names one question to a source; answers to any but the newest are dropped.
    using Question = quint64;

    // Asks the source what it carries, in the name of the pointer event at `time` (milliseconds of the server).
    std::function<void(Question question, quint32 time)> onAsk;
    // The pointer moved, or what the drag carries became known.
    std::function<void()> onDragged;
    std::function<void()> onEnded;

    bool isInProgress() const { return inProgress; }

    // Moves each time that it becomes known what a drag carries.
    qint64 changeCount() const { return count; }

    // All files that the drag in progress carries; empty when it carries anything else or that is not known (yet).
    const QList<QUrl> &fileURLs() const { return files; }

    // A source announced a drag at `time`. One that is in progress has then ended.
    void begin(quint32 time);

    // The drag is over; nothing when there is none.
    void end();

    void pointerMoved(quint32 time);

    // The source refused to answer. Some do so for every question but one that bears the time of their latest pointer
    // event, so it is asked again with the next few.
    void refused(Question question);

    // The source answered with a list of URLs, or with something else.
    void answered(Question question, const QByteArray &uriList);
    void answeredWrongly(Question question);

    // The answer comes in pieces; an empty one is the last.
    void answersInPieces(Question question);
    void pieceArrived(Question question, const QByteArray &piece);

    // Nothing came for too long. The drag counts as one without files, unless the answer comes after all.
    void silent();

private:
    enum class State { Asking, Refused, Known };

    void ask(quint32 time);
    void know(const QList<QUrl> &urls);
    bool isCurrent(Question question) const { return inProgress && question == current; }

    bool inProgress = false;
    State state = State::Known;
    Question current = 0;
    int retries = 0;
    QByteArray pieces;
    qint64 count = 0;
    QList<QUrl> files;
};
