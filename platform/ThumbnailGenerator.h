// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSize>
#include <QSizeF>
#include <QUrl>

#include <functional>
#include <optional>

// Makes small pictures of files, off the main thread.
class ThumbnailGenerator {
public:
    // Called on any thread: the picture, at most `size` x `scale` pixels with its aspect kept and its device pixel
    // ratio 1, or nothing when none can be made. A picture smaller than that is not blown up. Called exactly once, but
    // for a file that is still being written: then with what there is so far, and with the picture once it can be made.
    // What is still open when the generator is destroyed is answered with nothing.
    using Completion = std::function<void(std::optional<QImage>)>;

    virtual ~ThumbnailGenerator() = default;

    // The pixel size that an image file's header states, its orientation not applied; nothing for what is no image.
    // Reads the header only and never blocks on what is no regular file.
    virtual std::optional<QSize> imagePixelSize(const QUrl &file) const = 0;

    // Requests a thumbnail of `file` that fits `size` points at `scale` pixels a point. Returns at once.
    virtual void generate(const QUrl &file, const QSizeF &size, double scale, Completion completion) = 0;
};
