// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnailer/ImageThumbnailer.h"

#include <QColorSpace>
#include <QDeadlineTimer>
#include <QIODevice>
#include <QImageReader>
#include <QLoggingCategory>
#include <QtEndian>

#include <chrono>
#include <cmath>
#include <ctime>

#include <unistd.h>

namespace {

using namespace std::chrono_literals;

// A sequential JPEG takes 5 ns a pixel when it is decoded at an eighth of its size, and hardly any memory.
constexpr qint64 kMostPixelsOfJpeg = 1'000'000'000;
// Formats that are decoded row by row at full size take up to 20 ns a pixel.
constexpr qint64 kMostPixelsOfRows = 100'000'000;
// The decoder of a progressive JPEG holds 3 bytes a pixel until the last scan.
constexpr qint64 kMostPixelsInScans = 24'000'000;
// All other formats hold 4 bytes a pixel.
constexpr qint64 kMostPixelsHeld = 16'000'000;
// No format has more bytes a pixel in its file, apart from metadata.
constexpr qint64 kMostBytesOfAPixel = 8;
constexpr qint64 kMostBytesBesides = 16'000'000;
constexpr qint64 kMostBytes = 512'000'000;
// Some readers hold the whole file too.
constexpr qint64 kMostBytesHeld = 24'000'000;
// What decoding may cost, and how long it may take where the machine or the file's storage is slow.
constexpr double kMostProcessorSeconds = 8.0;
constexpr auto kLongestDecode = 60s;

double processorSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

// The file as the image readers see it. It ends where a picture of its size must have ended, and when reading takes too
// long.
class DecoderInput : public QIODevice {
public:
    DecoderInput(const RegularFile &original, qint64 most)
        : file(original)
        , end(std::min(most, original.state().size))
    {
        open(QIODevice::ReadOnly);
    }

    qint64 size() const override { return end; }
    bool hasGivenUp() const { return givenUp; }

    bool seek(qint64 position) override
    {
        offset = position;
        return QIODevice::seek(position);
    }

protected:
    qint64 readData(char *data, qint64 length) override
    {
        const auto wanted = static_cast<size_t>(std::clamp<qint64>(end - offset, 0, length));
        const bool isOver = deadline.hasExpired() || processorSeconds() >= processorEnd;
        const qint64 count = isOver ? -1 : ::pread(file.descriptor(), data, wanted, offset);
        givenUp = givenUp || count < 0;
        offset += std::max<qint64>(count, 0);
        return count;
    }

    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const RegularFile &file;
    const qint64 end;
    qint64 offset = 0;
    const QDeadlineTimer deadline{kLongestDecode};
    const double processorEnd = processorSeconds() + kMostProcessorSeconds;
    bool givenUp = false;
};

qint64 pixelCount(const QSize &size)
{
    return qint64(size.width()) * size.height();
}

// The last position in the file that its picture can reach. Nothing when that is too far.
std::optional<qint64> lastByte(const RegularFile &file, const ImageHeader &header)
{
    if (header.format == "webp") {
        // A WebP file states its length and is read as a whole.
        constexpr qint64 kBeforeTheSize = 8;
        const QByteArray size = file.read(4, sizeof(quint32));
        const qint64 end = kBeforeTheSize + qFromLittleEndian<quint32>(size.constData());
        return std::min(end, file.state().size) > kMostBytesHeld ? std::nullopt : std::optional(end);
    }
    if (header.format == "heif" || header.format == "avif" || header.format == "jp2")
        return file.state().size > kMostBytesHeld ? std::nullopt : std::optional(file.state().size);
    return std::min(kMostBytes, kMostBytesBesides + kMostBytesOfAPixel * pixelCount(header.size));
}

// Qt decodes a JPEG whose end is missing without an error, and the missing part is grey.
bool endsAsItShould(const RegularFile &file, const ImageHeader &header)
{
    return header.format != "jpeg" || file.read(file.currentState().size - 2, 2) == "\xff\xd9";
}

} // namespace

QSize fittedPixelSize(const QSize &size, const QSize &bound)
{
    if (size.width() <= bound.width() && size.height() <= bound.height())
        return size;
    const double ratio =
        std::min(double(bound.width()) / double(size.width()), double(bound.height()) / double(size.height()));
    const auto side = [ratio](int full, int most) {
        return std::clamp(static_cast<int>(std::lround(full * ratio)), 1, std::max(1, most));
    };
    return {side(size.width(), bound.width()), side(size.height(), bound.height())};
}

QImage fittedImage(const QImage &image, const QSize &bound)
{
    const auto format = image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    const QSize size = fittedPixelSize(image.size(), bound);
    QImage fitted = image.convertToFormat(format);
    if (size != fitted.size())
        fitted = fitted.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).convertToFormat(format);
    return QImage(fitted.constBits(), fitted.width(), fitted.height(), fitted.bytesPerLine(), format).copy();
}

void silenceImageReaders()
{
    static QLoggingCategory::CategoryFilter previous = nullptr;
    static bool silenced = false;
    if (std::exchange(silenced, true))
        return;
    previous = QLoggingCategory::installFilter([](QLoggingCategory *category) {
        // Qt calls the new filter while it is being installed. The categories are then as the previous filter left
        // them.
        if (previous)
            previous(category);
        const QLatin1String name(category->categoryName());
        if (name.startsWith(QLatin1String("qt.gui.imageio")) || name.startsWith(QLatin1String("qt.gui.icc")) ||
            name.startsWith(QLatin1String("qt.svg"))) {
            category->setEnabled(QtWarningMsg, false);
            category->setEnabled(QtInfoMsg, false);
        }
    });
}

bool canDecode(const QByteArray &format)
{
    static const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    return formats.contains(format);
}

bool isWithinDecodingBounds(const ImageHeader &header)
{
    const bool isJpeg = header.format == "jpeg";
    const qint64 most = header.streamed ? (isJpeg ? kMostPixelsOfJpeg : kMostPixelsOfRows)
                                        : (isJpeg ? kMostPixelsInScans : kMostPixelsHeld);
    return !header.size.isEmpty() && pixelCount(header.size) <= most;
}

Decoding decodeImage(const RegularFile &file, const ImageHeader &header, const QSize &bound)
{
    const auto end = lastByte(file, header);
    if (!end || !isWithinDecodingBounds(header))
        return {Decoding::Outcome::TooLarge, {}};
    DecoderInput input(file, *end);
    QImageReader reader(&input, header.format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize stored = reader.size();
    if (!stored.isEmpty() && !isWithinDecodingBounds({header.format, stored, header.streamed}))
        return {Decoding::Outcome::TooLarge, {}};
    // The scaled size applies before the orientation, the bound after it.
    const bool turned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    const QSize fitted = fittedPixelSize(stored, turned ? bound.transposed() : bound);
    if (!stored.isEmpty() && fitted != stored)
        reader.setScaledSize(fitted);
    QImage image = reader.read();
    if (input.hasGivenUp())
        return {Decoding::Outcome::GivenUp, {}};
    if (image.isNull())
        return {Decoding::Outcome::Broken, {}};
    if (image.colorSpace().isValid() && image.colorSpace() != QColorSpace::SRgb)
        image.convertToColorSpace(QColorSpace::SRgb);
    return {endsAsItShould(file, header) ? Decoding::Outcome::Complete : Decoding::Outcome::Partial,
            fittedImage(image, bound)};
}
