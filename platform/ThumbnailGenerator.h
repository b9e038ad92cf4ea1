// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSizeF>
#include <QUrl>

#include <functional>
#include <optional>

// A small picture of a file: its pixels, and the points that it is to be shown at.
struct Thumbnail {
    QImage image; // its device pixel ratio is 1
    QSizeF size;
};

// The points of a picture that fits a square of `edge`, the longer side filling it; the square itself where the file's
// header states no size. The orientation is not applied.
QSizeF fittedThumbnailSize(double edge, const std::optional<QSizeF> &pixelSize);

// Makes small pictures of files, off the main thread.
class ThumbnailGenerator {
public:
    // Called on any thread, later: the picture, at most its points x `scale` pixels with its aspect kept, or nothing
    // when none can be made. A picture smaller than that is not blown up. Called exactly once, but for a file that is
    // still being written: then with what there is so far, and with the picture once it can be made. What is still open
    // when the generator is destroyed is answered with nothing.
    using Completion = std::function<void(std::optional<Thumbnail>)>;

    // Called on the main thread, at most once and before the completion, where that takes longer than one blink.
    using Delayed = std::function<void()>;

    virtual ~ThumbnailGenerator() = default;

    // Requests a thumbnail of `file` for a square of `edge` points at `scale` pixels a point. Returns at once, also
    // where the file's file system does not answer; the completion may then never come before the end. Main thread
    // only.
    virtual void generate(const QUrl &file, double edge, double scale, Completion completion,
                          Delayed delayed = nullptr) = 0;
};
