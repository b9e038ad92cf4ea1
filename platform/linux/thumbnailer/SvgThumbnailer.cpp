// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnailer/SvgThumbnailer.h"

#include <QBuffer>
#include <QHash>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <cmath>
#include <vector>

namespace {

constexpr int kDeepest = 200;
constexpr qint64 kMostElementsDrawn = 200'000;
constexpr qint64 kMostEmbeddedPixels = 16'000'000;

const QString kXLink = QStringLiteral("http://www.w3.org/1999/xlink");

// One element of a drawing, with its children and the elements that it references.
struct Node {
    std::vector<size_t> children;
    QString reference;
    qint64 drawn = 0; // the number of elements drawn for it, including itself; 0 until known
    int depth = 0;
    bool visiting = false;
};

struct Tree {
    std::vector<Node> nodes;
    QHash<QString, size_t> ids;
};

// Counts the elements that `index` draws, through references too. False when that is endless, too deep or too much.
bool measure(Tree &tree, size_t index, int level)
{
    Node &node = tree.nodes[index];
    if (node.drawn > 0)
        return level + node.depth <= kDeepest;
    if (node.visiting || level > kDeepest)
        return false;
    node.visiting = true;
    qint64 drawn = 1;
    int depth = 0;
    std::vector<size_t> parts = node.children;
    if (const auto target = tree.ids.constFind(node.reference); !node.reference.isEmpty() && target != tree.ids.cend())
        parts.push_back(*target);
    for (const size_t part : parts) {
        if (!measure(tree, part, level + 1))
            return false;
        drawn += tree.nodes[part].drawn;
        depth = std::max(depth, tree.nodes[part].depth + 1);
        if (drawn > kMostElementsDrawn)
            return false;
    }
    node.visiting = false;
    node.drawn = drawn;
    node.depth = depth;
    return true;
}

// The number of pixels of the embedded picture that `link` contains. Nothing when it contains none. An embedded drawing
// does not count, because it could have links itself.
std::optional<qint64> embeddedPixels(QStringView link)
{
    const auto comma = link.indexOf(QLatin1Char(','));
    if (!link.startsWith(QLatin1String("data:")) || comma < 0 || !link.left(comma).endsWith(QLatin1String(";base64")))
        return {};
    QByteArray bytes = QByteArray::fromBase64(link.mid(comma + 1).toLatin1());
    QBuffer buffer(&bytes);
    const auto format = bytes.startsWith("\x89PNG") ? "png" : bytes.startsWith("\xff\xd8\xff") ? "jpeg" : nullptr;
    if (!format)
        return {};
    const QSize size = QImageReader(&buffer, format).size();
    return size.isEmpty() ? std::nullopt : std::optional(qint64(size.width()) * size.height());
}

QString linkOf(const QXmlStreamAttributes &attributes)
{
    return (attributes.hasAttribute(kXLink, QStringLiteral("href")) ? attributes.value(kXLink, QStringLiteral("href"))
                                                                    : attributes.value(QStringLiteral("href")))
        .toString();
}

} // namespace

QByteArray harmlessSvg(const QByteArray &svg)
{
    Tree tree;
    std::vector<size_t> open;
    qint64 embedded = 0;
    QByteArray result;
    QXmlStreamReader reader(svg);
    QXmlStreamWriter writer(&result);
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::StartElement) {
            const QString link = linkOf(reader.attributes());
            if (reader.name() == QLatin1String("image")) {
                const auto pixels = embeddedPixels(link);
                if (!pixels || *pixels > kMostEmbeddedPixels - embedded) {
                    reader.skipCurrentElement();
                    continue;
                }
                embedded += *pixels;
            }
            if (open.empty() && reader.name() != QLatin1String("svg"))
                return {};
            if (open.size() >= size_t(kDeepest) || tree.nodes.size() >= size_t(kMostElementsDrawn))
                return {};
            const size_t index = tree.nodes.size();
            tree.nodes.emplace_back();
            if (!open.empty())
                tree.nodes[open.back()].children.push_back(index);
            if (reader.name() == QLatin1String("use") && link.startsWith(QLatin1Char('#')))
                tree.nodes[index].reference = link.mid(1);
            if (const QString id = reader.attributes().value(QStringLiteral("id")).toString(); !id.isEmpty())
                tree.ids.insert(id, index);
            open.push_back(index);
            writer.writeCurrentToken(reader);
        } else if (token == QXmlStreamReader::EndElement) {
            open.pop_back();
            writer.writeCurrentToken(reader);
        } else if (token == QXmlStreamReader::Characters) {
            writer.writeCurrentToken(reader);
        }
    }
    if (reader.hasError() || tree.nodes.empty() || !measure(tree, 0, 0))
        return {};
    return result;
}

std::optional<QImage> renderSvg(const QByteArray &svg, const QSize &bound)
{
    QSvgRenderer renderer;
    const QByteArray harmless = harmlessSvg(svg);
    if (harmless.isEmpty() || bound.isEmpty() || !renderer.load(harmless))
        return {};
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    // A drawing scales without loss, so it fills the bound whatever size it states.
    QSizeF size = renderer.viewBoxF().size();
    if (size.isEmpty())
        size = renderer.defaultSize();
    if (size.isEmpty() || !std::isfinite(size.width()) || !std::isfinite(size.height()))
        return {};
    size.scale(bound, Qt::KeepAspectRatio);
    const QSize pixels =
        QSize(static_cast<int>(std::lround(size.width())), static_cast<int>(std::lround(size.height())))
            .expandedTo(QSize(1, 1))
            .boundedTo(bound);
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    renderer.render(&painter, QRectF(QPointF(), QSizeF(pixels)));
    return image;
}
