// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnailer/PictureMaker.h"

#include "platform/ThumbnailGenerator.h"
#include "platform/linux/helpers/CacheClasses.h"
#include "platform/linux/thumbnailer/CacheEntry.h"
#include "platform/linux/thumbnailer/ImageHeader.h"
#include "platform/linux/thumbnailer/ImageThumbnailer.h"
#include "platform/linux/thumbnailer/SvgThumbnailer.h"

#include <cmath>

namespace {

// A file that was changed so recently may still be in writing, and another change may not alter its modification time.
constexpr double kSettlingTime = 1.0; // seconds
// Smaller pictures are decoded about as fast as their cache entry is read.
constexpr qint64 kPixelsWorthKeeping = 262'144;
constexpr qint64 kSvgWorthKeeping = 100'000; // bytes
constexpr qint64 kLargestSvg = 10'000'000;

MadePicture made(PictureOutcome outcome, const QImage &image, const QSize &bound, bool worthKeeping)
{
    return {outcome, {}, fittedImage(image, bound), worthKeeping ? image : QImage()};
}

// The picture from the cache, or the failure that the cache notes.
std::optional<MadePicture> cached(const PictureOrder &order, const FileState &state, const QSize &bound, bool isImage)
{
    for (const CachedEntry &entry : order.entries) {
        if (entry.pixels > 0 && (bound.width() > entry.pixels || bound.height() > entry.pixels))
            continue;
        const auto image = readCacheEntry(entry.file, std::max(entry.pixels, 1), order.uri, state);
        if (image && entry.pixels > 0)
            return made(PictureOutcome::Made, *image, bound, false);
        if (image && isImage)
            return MadePicture{PictureOutcome::Failed, {}, {}, {}};
    }
    return {};
}

MadePicture drawn(const PictureOrder &order, const RegularFile &file, const QSize &bound, bool settled)
{
    if (file.state().size > kLargestSvg)
        return {PictureOutcome::TooLarge, {}, {}, {}};
    const bool worthKeeping = settled && order.kept > 0 && file.state().size >= kSvgWorthKeeping;
    const auto image = renderSvg(file.read(0, file.state().size), worthKeeping ? QSize(order.kept, order.kept) : bound);
    if (!image)
        return {PictureOutcome::Broken, {}, {}, {}};
    return made(PictureOutcome::Made, *image, bound, worthKeeping && file.currentState() == file.state());
}

MadePicture decoded(const PictureOrder &order, const RegularFile &file, const ImageHeader &header, const QSize &bound,
                    bool settled)
{
    const bool worthKeeping =
        order.kept > 0 && qint64(header.size.width()) * header.size.height() >= kPixelsWorthKeeping;
    const Decoding decoding = decodeImage(file, header, worthKeeping ? QSize(order.kept, order.kept) : bound);
    switch (decoding.outcome) {
    case Decoding::Outcome::Complete:
        return made(PictureOutcome::Made, decoding.image, bound,
                    worthKeeping && settled && file.currentState() == file.state());
    case Decoding::Outcome::Partial:
        return made(PictureOutcome::Partial, decoding.image, bound, false);
    case Decoding::Outcome::Broken:
        return {PictureOutcome::Broken, {}, {}, {}};
    case Decoding::Outcome::TooLarge:
        return {PictureOutcome::TooLarge, {}, {}, {}};
    case Decoding::Outcome::GivenUp:
        break;
    }
    return {PictureOutcome::GivenUp, {}, {}, {}};
}

MadePicture madeFor(const PictureOrder &order, const RegularFile &file, const std::optional<ImageHeader> &header)
{
    const bool settled = std::abs(order.now - file.state().modified()) >= kSettlingTime;
    const QSizeF size = fittedThumbnailSize(order.edge, header ? std::optional<QSizeF>(header->size) : std::nullopt);
    const QSize bound(pixelSide(size.width(), order.scale, kLongestSide),
                      pixelSide(size.height(), order.scale, kLongestSide));
    if (bound.isEmpty())
        return {PictureOutcome::GivenUp, {}, {}, {}};
    const bool isImage = header && canDecode(header->format);
    if (settled || order.task == PictureTask::CacheOnly) {
        if (auto found = cached(order, file.state(), bound, isImage))
            return *found;
    }
    if (order.task == PictureTask::CacheOnly)
        return {PictureOutcome::GivenUp, {}, {}, {}};
    if (order.task == PictureTask::Drawing)
        return drawn(order, file, bound, settled);
    if (isImage)
        return decoded(order, file, *header, bound, settled);
    return {PictureOutcome::Foreign, {}, {}, {}};
}

} // namespace

MadePicture makePicture(const PictureOrder &order, const RegularFile &file)
{
    const auto header = order.task == PictureTask::Drawing ? std::nullopt : readImageHeader(file);
    MadePicture picture = madeFor(order, file, header);
    if (header)
        picture.pixelSize = header->size;
    return picture;
}
