// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ThumbnailGenerator.h"

#include <memory>

// Quick Look's thumbnails; no icons and no previews of lower quality. Completions come on a thread of Quick Look.
class MacThumbnailGenerator : public ThumbnailGenerator {
public:
    MacThumbnailGenerator();
    ~MacThumbnailGenerator() override;

    std::optional<QSize> imagePixelSize(const QUrl &file) const override;
    void generate(const QUrl &file, const QSizeF &size, double scale, Completion completion) override;

private:
    struct OpenJobs;

    std::shared_ptr<OpenJobs> open;
};
