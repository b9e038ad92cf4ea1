// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnailer/ImageHeader.h"

#include "platform/linux/thumbnailer/BoxedImageHeader.h"

#include <QtEndian>

#include <limits>

namespace {

constexpr qint64 kFirstBytes = 64;
// A photo has about twenty segments before its size. A file with more than this is hostile.
constexpr int kMostSegments = 512;
constexpr int kMostDirectoryEntries = 512;

template<typename Int>
Int little(const QByteArray &bytes, qsizetype offset)
{
    return offset + qsizetype(sizeof(Int)) <= bytes.size() ? qFromLittleEndian<Int>(bytes.constData() + offset)
                                                           : Int(0);
}

template<typename Int>
Int big(const QByteArray &bytes, qsizetype offset)
{
    return offset + qsizetype(sizeof(Int)) <= bytes.size() ? qFromBigEndian<Int>(bytes.constData() + offset) : Int(0);
}

std::optional<ImageHeader> header(const char *format, std::optional<QSize> size, bool streamed = false)
{
    if (!size)
        return {};
    return ImageHeader{format, *size, streamed};
}

std::optional<ImageHeader> pngHeader(const QByteArray &first)
{
    constexpr qsizetype kHeaderEnd = 29;
    constexpr qsizetype kInterlace = 28;
    if (first.size() < kHeaderEnd || first.mid(12, 4) != "IHDR")
        return {};
    return header("png", pixelSize(big<quint32>(first, 16), big<quint32>(first, 20)), first.at(kInterlace) == 0);
}

std::optional<ImageHeader> jpegHeader(const RegularFile &file)
{
    std::optional<ImageHeader> found;
    bool sequential = false;
    int components = 0;
    qint64 offset = 2;
    for (int segment = 0; segment < kMostSegments; ++segment) {
        const QByteArray bytes = file.read(offset, 10);
        if (bytes.size() < 10 || quint8(bytes.at(0)) != 0xff)
            break;
        const auto marker = quint8(bytes.at(1));
        if (marker == 0xff) { // fill byte
            ++offset;
            continue;
        }
        const auto length = big<quint16>(bytes, 2);
        if (marker == 0xda) { // start of scan
            // The decoder can work row by row only if the first scan holds all components.
            if (found)
                found->streamed = sequential && quint8(bytes.at(4)) == components;
            break;
        }
        if (marker == 0xd9 || length < 2)
            break;
        if (marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc) {
            sequential = marker == 0xc0 || marker == 0xc1 || marker == 0xc9;
            components = quint8(bytes.at(9));
            found = header("jpeg", pixelSize(big<quint16>(bytes, 7), big<quint16>(bytes, 5)));
        }
        offset += 2 + length;
    }
    return found;
}

std::optional<ImageHeader> bmpHeader(const QByteArray &first)
{
    constexpr quint32 kOldHeaderSize = 12;
    if (first.size() < 26)
        return {};
    if (little<quint32>(first, 14) == kOldHeaderSize)
        return header("bmp", pixelSize(little<quint16>(first, 18), little<quint16>(first, 20)));
    const qint64 width = little<qint32>(first, 18);
    const qint64 height =
        std::abs(qint64(little<qint32>(first, 22))); // negative when the rows are stored from top to bottom
    return width < 0 ? std::nullopt : header("bmp", pixelSize(quint64(width), quint64(height)));
}

std::optional<ImageHeader> webpHeader(const QByteArray &first)
{
    if (first.size() < 30)
        return {};
    const QByteArray kind = first.mid(12, 4);
    if (kind == "VP8 ") {
        constexpr int kSizeBits = 0x3fff;
        return header("webp", QSize(little<quint16>(first, 26) & kSizeBits, little<quint16>(first, 28) & kSizeBits));
    }
    if (kind == "VP8L") {
        const auto bits = little<quint32>(first, 21);
        return header("webp", QSize(int(bits & 0x3fff) + 1, int((bits >> 14) & 0x3fff) + 1));
    }
    if (kind == "VP8X") {
        constexpr quint32 kThreeBytes = 0xffffff;
        return header("webp", QSize(int(little<quint32>(first, 24) & kThreeBytes) + 1,
                                    int((little<quint32>(first, 26) >> 8) & kThreeBytes) + 1));
    }
    return {};
}

std::optional<ImageHeader> tiffHeader(const RegularFile &file, const QByteArray &first)
{
    constexpr quint16 kWidthTag = 256;
    constexpr quint16 kHeightTag = 257;
    constexpr quint16 kShort = 3;
    constexpr qsizetype kEntrySize = 12;
    const bool isLittle = first.startsWith("II");
    const auto u16 = [isLittle](const QByteArray &b, qsizetype at) {
        return isLittle ? little<quint16>(b, at) : big<quint16>(b, at);
    };
    const auto u32 = [isLittle](const QByteArray &b, qsizetype at) {
        return isLittle ? little<quint32>(b, at) : big<quint32>(b, at);
    };
    const qint64 directory = u32(first, 4);
    const int count = std::min<int>(u16(file.read(directory, 2), 0), kMostDirectoryEntries);
    const QByteArray entries = file.read(directory + 2, count * kEntrySize);
    std::optional<quint32> width;
    std::optional<quint32> height;
    for (qsizetype at = 0; at + kEntrySize <= entries.size(); at += kEntrySize) {
        const auto tag = u16(entries, at);
        const auto value = u16(entries, at + 2) == kShort ? u16(entries, at + 8) : u32(entries, at + 8);
        if (tag == kWidthTag)
            width = value;
        else if (tag == kHeightTag)
            height = value;
    }
    return width && height ? header("tiff", pixelSize(*width, *height)) : std::nullopt;
}

std::optional<ImageHeader> iconHeader(const QByteArray &first)
{
    constexpr quint16 kMostPictures = 64;
    constexpr int kSizeOfZero = 256;
    const auto count = little<quint16>(first, 4);
    if (first.size() < 22 || count < 1 || count > kMostPictures || first.at(9) != 0)
        return {};
    const auto side = [&first](qsizetype at) { return first.at(at) == 0 ? kSizeOfZero : int(quint8(first.at(at))); };
    return header("ico", QSize(side(6), side(7)));
}

} // namespace

std::optional<QSize> pixelSize(quint64 width, quint64 height)
{
    constexpr quint64 most = std::numeric_limits<int>::max();
    if (width > most || height > most)
        return {};
    return QSize(static_cast<int>(width), static_cast<int>(height));
}

std::optional<ImageHeader> readImageHeader(const RegularFile &file)
{
    // Files of size 0, such as those in /proc, are not read.
    if (file.state().size <= 0)
        return {};
    const QByteArray first = file.read(0, kFirstBytes);
    if (first.startsWith("\x89PNG\r\n\x1a\n"))
        return pngHeader(first);
    if (first.startsWith("\xff\xd8\xff"))
        return jpegHeader(file);
    if (first.startsWith("GIF87a") || first.startsWith("GIF89a"))
        return first.size() < 10 ? std::nullopt
                                 : header("gif", QSize(little<quint16>(first, 6), little<quint16>(first, 8)));
    if (first.startsWith("BM"))
        return bmpHeader(first);
    if (first.startsWith("RIFF") && first.mid(8, 4) == "WEBP")
        return webpHeader(first);
    if (first.startsWith(QByteArray("II*\0", 4)) || first.startsWith(QByteArray("MM\0*", 4)))
        return tiffHeader(file, first);
    if (first.startsWith(QByteArray("\0\0\1\0", 4)))
        return iconHeader(first);
    return readBoxedImageHeader(file, first);
}
