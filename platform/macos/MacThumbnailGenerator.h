// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ThumbnailGenerator.h"
#include "platform/common/OpenThumbnails.h"

#include <QObject>
#include <QSize>

#include <memory>

// Thumbnails from Quick Look, without icons and without previews of lower quality. Completions are called on a thread
// of Quick Look.
class MacThumbnailGenerator : public ThumbnailGenerator {
public:
    MacThumbnailGenerator();
    ~MacThumbnailGenerator() override;

    // The pixel size in an image file's header, before the orientation is applied. Nothing for a file that is no image.
    // Blocks on the file system, so it is called on other threads.
    static std::optional<QSize> imagePixelSize(const QUrl &file);

    void generate(const QUrl &file, double edge, double scale, Completion completion,
                  Delayed delayed = nullptr) override;

private:
    std::shared_ptr<OpenThumbnails> open;
    QObject receiver; // the context of the calls after a delay
};
