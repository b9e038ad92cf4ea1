// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

#include <functional>

// The clipboard: what the user last copied.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    using Done = std::function<void(const QList<QUrl> &files)>;

    // Answers all its file URLs, in their order; none when it holds anything else, cannot be read, or is in the hands
    // of a program that does not answer. Calls `done` once, at once or later, unless the pasteboard has gone by then.
    virtual void readFileURLs(Done done) = 0;
};
