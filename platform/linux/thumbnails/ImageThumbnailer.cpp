// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnails/ImageThumbnailer.h"

#include <QColorSpace>
#include <QDeadlineTimer>
#include <QFile>
#include <QImageReader>
#include <QLoggingCategory>

#include <chrono>
#include <cmath>
#include <mutex>

namespace {

using namespace std::chrono_literals;

// A sequential JPEG costs 5 ns a pixel when it is decoded at an eighth, and hardly any memory.
constexpr qint64 kMostPixelsOfJpeg = 1'000'000'000;
// Whatever is decoded row by row at its full size costs up to 20 ns a pixel.
constexpr qint64 kMostPixelsOfRows = 100'000'000;
// Whatever is held whole costs up to 6 bytes a pixel.
constexpr qint64 kMostPixelsHeld = 64'000'000;
// From here on pictures that are held whole are decoded one at a time.
constexpr qint64 kManyPixels = 8'000'000;
constexpr auto kLongestDecode = 10s;

// A file that ends where the decoder is no longer wanted or has taken too long.
class DecoderInput : public QFile {
public:
    DecoderInput(int descriptor, const std::function<bool()> &cancelledNow)
        : cancelled(cancelledNow)
    {
        open(descriptor, QIODevice::ReadOnly, QFileDevice::DontCloseHandle);
        seek(0);
    }

    bool hasGivenUp() const { return givenUp; }

protected:
    qint64 readData(char *data, qint64 length) override
    {
        const qint64 count = deadline.hasExpired() || cancelled() ? -1 : QFile::readData(data, length);
        givenUp = givenUp || count < 0;
        return count;
    }

private:
    const std::function<bool()> &cancelled;
    QDeadlineTimer deadline{kLongestDecode};
    bool givenUp = false;
};

qint64 pixelCount(const QSize &size)
{
    return qint64(size.width()) * size.height();
}

// A JPEG whose end has not been written yet is decoded without an error, grey where it is missing.
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
        // While it is being installed it is asked already; the categories are then as the previous one left them.
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
    const qint64 most = !header.streamed          ? kMostPixelsHeld
                        : header.format == "jpeg" ? kMostPixelsOfJpeg
                                                  : kMostPixelsOfRows;
    return !header.size.isEmpty() && pixelCount(header.size) <= most;
}

Decoding decodeImage(const RegularFile &file, const ImageHeader &header, const QSize &bound,
                     const std::function<bool()> &cancelled)
{
    static std::mutex largePictures;
    if (!isWithinDecodingBounds(header))
        return {Decoding::Outcome::GivenUp, {}};
    std::unique_lock<std::mutex> turn(largePictures, std::defer_lock);
    if (!header.streamed && pixelCount(header.size) > kManyPixels)
        turn.lock();

    DecoderInput input(file.descriptor(), cancelled);
    QImageReader reader(&input, header.format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize stored = reader.size();
    if (!stored.isEmpty() && !isWithinDecodingBounds({header.format, stored, header.streamed}))
        return {Decoding::Outcome::GivenUp, {}};
    // The scaled size is of the picture as it is stored, the bound of the picture as it is shown.
    const bool turned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    const QSize fitted = fittedPixelSize(stored, turned ? bound.transposed() : bound);
    if (!stored.isEmpty() && fitted != stored)
        reader.setScaledSize(fitted);
    QImage image = reader.read();
    if (cancelled() || input.hasGivenUp())
        return {Decoding::Outcome::GivenUp, {}};
    if (image.isNull())
        return {Decoding::Outcome::Broken, {}};
    if (image.colorSpace().isValid() && image.colorSpace() != QColorSpace::SRgb)
        image.convertToColorSpace(QColorSpace::SRgb);
    return {endsAsItShould(file, header) ? Decoding::Outcome::Complete : Decoding::Outcome::Partial,
            fittedImage(image, bound)};
}
