// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ThumbnailGenerator.h"
#include "platform/common/OpenThumbnails.h"

#include <QObject>
#include <QSize>

#include <memory>

// Quick Look's thumbnails; no icons and no previews of lower quality. Completions come on a thread of Quick Look.
class MacThumbnailGenerator : public ThumbnailGenerator {
public:
    MacThumbnailGenerator();
    ~MacThumbnailGenerator() override;

    // The pixel size that an image file's header states, its orientation not applied; nothing for what is no image.
    // Waits for the file's file system, so it is asked on threads of its own.
    static std::optional<QSize> imagePixelSize(const QUrl &file);

    void generate(const QUrl &file, double edge, double scale, Completion completion,
                  Delayed delayed = nullptr) override;

private:
    std::shared_ptr<OpenThumbnails> open;
    QObject receiver; // of what comes after a blink
};
