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

    // What a source is asked for: its list of URLs, what it offers at all, or the link that it carries.
    enum class Target { URIList, Offers, Link };

    // Asks the source for `target`, in the name of the pointer event at `time` (milliseconds of the server).
    std::function<void(Question question, Target target, quint32 time)> onAsk;
    // The pointer moved, or what the drag carries became known.
    std::function<void()> onDragged;
    std::function<void()> onEnded;

    bool isInProgress() const { return inProgress; }

    // Moves each time that it becomes known what a drag carries.
    qint64 changeCount() const { return count; }

    // Whether the drag in progress has told what it carries, and there is no file in it.
    bool isWithoutFiles() const { return inProgress && isToldWithoutFiles; }

    // All files that the drag in progress carries; empty when it carries anything else or that is not known (yet).
    const QList<QUrl> &fileURLs() const { return files; }

    // A source announced a drag at `time`. One that is in progress has then ended.
    void begin(quint32 time);

    // The drag is over; nothing when there is none.
    void end();

    void pointerMoved(quint32 time);

    // The same where the pointer cannot be followed: the drag goes on.
    void wentOn(quint32 time);

    // The source refused to answer. One that has no list of URLs may still offer the link to a file, as browsers do, so
    // it is asked what it offers. Some refuse every question but one that bears the time of their latest pointer event;
    // they are asked again with the next few.
    void refused(Question question);

    // The source told whether it offers a list of URLs and a link.
    void offered(Question question, bool hasURIList, bool hasLink);

    // The source answered with what it was asked for, or with something else.
    void answered(Question question, const QByteArray &data);
    void answeredWrongly(Question question);

    // The answer comes in pieces; an empty one is the last.
    void answersInPieces(Question question);
    void pieceArrived(Question question, const QByteArray &piece);

    // Nothing came for too long. The drag counts as one without files, unless the answer comes after all.
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
    bool isToldWithoutFiles = false; // by the source, and not only given up
    QList<QUrl> files;
};
