// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnailer/CacheEntry.h"

#include "platform/linux/thumbnailer/ImageHeader.h"

#include <QBuffer>
#include <QImageReader>

#include <cstdlib>

namespace {

// Whether `text` is the modification time of `state`. Entries have whole seconds, but those of the thumbnailer tumbler
// have microseconds.
bool isModificationTime(const QString &text, const FileState &state)
{
    constexpr qint64 kNanosecondsPerMicrosecond = 1000;
    const auto point = std::max(text.indexOf(QLatin1Char('.')), text.indexOf(QLatin1Char(',')));
    if (point < 0)
        return text == QString::number(state.modifiedSeconds);
    constexpr qsizetype kDigits = 6;
    const qint64 microseconds = text.mid(point + 1, kDigits).leftJustified(kDigits, QLatin1Char('0')).toLongLong();
    // tumbler computes the time as a double, which is exact to a quarter of a microsecond, and rounds it.
    return text.left(point) == QString::number(state.modifiedSeconds) &&
           std::abs(microseconds - state.modifiedNanoseconds / kNanosecondsPerMicrosecond) <= 1;
}

bool isOf(const QImage &entry, const QByteArray &uri, const FileState &original)
{
    const QString size = entry.text(QStringLiteral("Thumb::Size"));
    return entry.text(QStringLiteral("Thumb::URI")).toUtf8() == uri &&
           isModificationTime(entry.text(QStringLiteral("Thumb::MTime")), original) &&
           (size.isEmpty() || size == QString::number(original.size));
}

} // namespace

std::optional<QImage> readCacheEntry(const RegularFile &entry, int pixels, const QByteArray &uri,
                                     const FileState &original)
{
    // The uncompressed pixels of the largest entry are smaller, and no program adds that much text.
    constexpr qint64 kMostBytes = 8'000'000;
    const auto header = readImageHeader(entry);
    if (!header || header->format != "png" || header->size.width() > pixels || header->size.height() > pixels ||
        entry.state().size > kMostBytes)
        return {};
    QByteArray bytes = entry.read(0, entry.state().size);
    QBuffer input(&bytes);
    const QImage image = QImageReader(&input, "png").read();
    if (image.isNull() || !isOf(image, uri, original))
        return {};
    return image;
}
