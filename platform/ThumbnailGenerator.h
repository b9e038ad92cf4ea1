// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSizeF>
#include <QUrl>

#include <functional>
#include <optional>

// A small picture of a file.
struct Thumbnail {
    QImage image; // its device pixel ratio is 1
    QSizeF size;
};

// The size in points at which a picture of `pixelSize` fits a square of `edge` points: its longer side is `edge`.
// Without a pixel size it is the square itself. The orientation is not applied.
QSizeF fittedThumbnailSize(double edge, const std::optional<QSizeF> &pixelSize);

// Makes small pictures of files without blocking the main thread.
class ThumbnailGenerator {
public:
    // Called later, on any thread. The picture has at most its size in points x `scale` pixels, keeps its aspect ratio
    // and is never enlarged; nothing when no picture can be made. Called exactly once, with one exception: for a file
    // that is still being written it is called with the present result, and again with the picture once one can be
    // made. The destructor answers all open requests with nothing.
    using Completion = std::function<void(std::optional<Thumbnail>)>;

    // Called on the main thread, at most once and before the completion, when the completion takes longer than about
    // 0.1 seconds.
    using Delayed = std::function<void()>;

    virtual ~ThumbnailGenerator() = default;

    // Requests a thumbnail of `file` for a square of `edge` points, with `scale` pixels a point. Returns at once, even
    // if the file system does not answer; then the completion may be called only by the destructor. Main thread only.
    virtual void generate(const QUrl &file, double edge, double scale, Completion completion,
                          Delayed delayed = nullptr) = 0;
};
