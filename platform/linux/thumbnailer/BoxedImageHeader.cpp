// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnailer/BoxedImageHeader.h"

#include <QtEndian>

#include <algorithm>
#include <vector>

namespace {

// A photo has about ten boxes on each level. A file with more than this is hostile.
constexpr int kMostBoxes = 256;
constexpr qint64 kMostBytesOfAssociations = 65'536;
constexpr qint64 kBoxHeader = 8;
constexpr qint64 kLongBoxHeader = 16;
constexpr qint64 kVersionAndFlags = 4; // bytes; a "full box" of the format begins with these fields

struct Box {
    QByteArray type;
    qint64 begin = 0; // of the content
    qint64 end = 0;
};

// Reads big-endian numbers one after the other. Past the end they are 0, and the reader has failed.
class Numbers {
public:
    explicit Numbers(QByteArray content)
        : bytes(std::move(content))
    {
    }

    template<typename Int>
    Int take()
    {
        failed = failed || position + qsizetype(sizeof(Int)) > bytes.size();
        if (failed)
            return 0;
        const auto value = qFromBigEndian<Int>(bytes.constData() + position);
        position += qsizetype(sizeof(Int));
        return value;
    }

    bool hasFailed() const { return failed; }

private:
    QByteArray bytes;
    qsizetype position = 0;
    bool failed = false;
};

std::optional<Box> boxAt(const RegularFile &file, qint64 offset, qint64 end)
{
    constexpr quint64 kToTheEnd = 0;
    constexpr quint64 kSizeFollows = 1;
    const QByteArray header = file.read(offset, std::min(kLongBoxHeader, end - offset));
    if (header.size() < kBoxHeader)
        return {};
    Numbers numbers(header);
    quint64 size = numbers.take<quint32>();
    qint64 begin = offset + kBoxHeader;
    numbers.take<quint32>();
    if (size == kSizeFollows) {
        size = numbers.take<quint64>();
        begin = offset + kLongBoxHeader;
    } else if (size == kToTheEnd) {
        size = quint64(end - offset);
    }
    if (numbers.hasFailed() || size < quint64(begin - offset) || size > quint64(end - offset))
        return {};
    return Box{header.mid(4, 4), begin, offset + qint64(size)};
}

// The complete boxes from `begin` to `end`.
std::vector<Box> boxes(const RegularFile &file, qint64 begin, qint64 end)
{
    std::vector<Box> found;
    while (begin < end && found.size() < kMostBoxes) {
        const auto box = boxAt(file, begin, end);
        if (!box)
            break;
        found.push_back(*box);
        begin = box->end;
    }
    return found;
}

std::optional<Box> find(const std::vector<Box> &among, const char *type)
{
    const auto found = std::ranges::find(among, QByteArray(type), &Box::type);
    return found == among.end() ? std::nullopt : std::optional(*found);
}

std::optional<Box> find(const RegularFile &file, const std::optional<Box> &parent, const char *type, qint64 skipped = 0)
{
    return parent ? find(boxes(file, parent->begin + skipped, parent->end), type) : std::nullopt;
}

// Up to `most` bytes of a box's content, after its first `skipped` bytes.
Numbers content(const RegularFile &file, const Box &box, qint64 most, qint64 skipped = 0)
{
    return Numbers(file.read(box.begin + skipped, std::clamp<qint64>(box.end - box.begin - skipped, 0, most)));
}

// The number of a HEIF file's main item. Other items are thumbnails, or tiles of the main one.
std::optional<quint32> primaryItem(const RegularFile &file, const Box &pitm)
{
    Numbers numbers = content(file, pitm, kVersionAndFlags + 4);
    const auto version = numbers.take<quint8>();
    numbers.take<quint8>();
    numbers.take<quint16>();
    const quint32 item = version == 0 ? numbers.take<quint16>() : numbers.take<quint32>();
    return numbers.hasFailed() ? std::nullopt : std::optional(item);
}

// The numbers of the properties of `item`: 1 is the first property in the file.
std::vector<unsigned> propertiesOf(quint32 item, const RegularFile &file, const Box &ipma)
{
    constexpr unsigned kLongIndices = 1;
    constexpr unsigned kShortIndex = 0x7f; // the highest bit tells whether the property is essential
    constexpr unsigned kLongIndex = 0x7fff;
    Numbers numbers = content(file, ipma, kMostBytesOfAssociations);
    const auto version = numbers.take<quint8>();
    numbers.take<quint8>();
    const unsigned flags = numbers.take<quint16>();
    const auto entries = numbers.take<quint32>();
    for (quint32 entry = 0; entry < entries && !numbers.hasFailed(); ++entry) {
        const quint32 owner = version == 0 ? numbers.take<quint16>() : numbers.take<quint32>();
        std::vector<unsigned> indices(numbers.take<quint8>());
        for (unsigned &index : indices)
            index = (flags & kLongIndices) != 0 ? numbers.take<quint16>() & kLongIndex
                                                : numbers.take<quint8>() & kShortIndex;
        if (owner == item && !numbers.hasFailed())
            return indices;
    }
    return {};
}

std::optional<QSize> heifSize(const RegularFile &file)
{
    const auto meta = find(boxes(file, 0, file.state().size), "meta");
    const auto pitm = find(file, meta, "pitm", kVersionAndFlags);
    const auto iprp = find(file, meta, "iprp", kVersionAndFlags);
    const auto ipco = find(file, iprp, "ipco");
    const auto ipma = find(file, iprp, "ipma");
    if (!pitm || !ipco || !ipma)
        return {};
    const auto item = primaryItem(file, *pitm);
    if (!item)
        return {};
    const std::vector<Box> properties = boxes(file, ipco->begin, ipco->end);
    for (const unsigned index : propertiesOf(*item, file, *ipma)) {
        if (index < 1 || index > properties.size() || properties[index - 1].type != "ispe")
            continue;
        Numbers numbers = content(file, properties[index - 1], 8, kVersionAndFlags);
        const auto width = numbers.take<quint32>();
        const auto height = numbers.take<quint32>();
        return numbers.hasFailed() ? std::nullopt : pixelSize(width, height);
    }
    return {};
}

std::optional<QSize> jpeg2000Size(const RegularFile &file)
{
    const auto ihdr = find(file, find(boxes(file, 0, file.state().size), "jp2h"), "ihdr");
    if (!ihdr)
        return {};
    Numbers numbers = content(file, *ihdr, 8);
    const auto height = numbers.take<quint32>();
    const auto width = numbers.take<quint32>();
    return numbers.hasFailed() ? std::nullopt : pixelSize(width, height);
}

std::optional<ImageHeader> header(const char *format, const std::optional<QSize> &size)
{
    return size ? std::optional(ImageHeader{format, *size}) : std::nullopt;
}

} // namespace

std::optional<ImageHeader> readBoxedImageHeader(const RegularFile &file, const QByteArray &first)
{
    if (first.startsWith(QByteArray("\0\0\0\x0cjP  \r\n\x87\n", 12)))
        return header("jp2", jpeg2000Size(file));
    if (first.mid(4, 4) != "ftyp")
        return {};
    // The content is the major brand, a version, and a list of further brands.
    constexpr qsizetype kVersion = 12;
    const qsizetype end = std::min<qsizetype>(qFromBigEndian<quint32>(first.constData()), first.size());
    bool isHeif = false;
    for (qsizetype at = kBoxHeader; at + 4 <= end; at += 4) {
        const QByteArray brand = at == kVersion ? QByteArray() : first.mid(at, 4);
        if (brand == "avif" || brand == "avis")
            return header("avif", heifSize(file));
        isHeif = isHeif || brand == "mif1" || brand == "heic" || brand == "heix" || brand == "heim" || brand == "heis";
    }
    return isHeif ? header("heif", heifSize(file)) : std::nullopt;
}
