// SPDX-License-Identifier: MIT
#include "platform/linux/looks/LinuxColorArchive.h"

#include <QDataStream>
#include <QIODevice>
#include <QRgba64>

#include <array>
#include <cmath>

namespace {

constexpr quint32 kMark = 0x504b4331; // "PKC1"

enum class Kind : quint8 { Ordinary = 1, Extended = 2 };

constexpr qsizetype kHeaderSize = sizeof(quint32) + sizeof(quint8);
constexpr qsizetype kOrdinarySize = kHeaderSize + 4 * static_cast<qsizetype>(sizeof(quint16));
constexpr qsizetype kExtendedSize = kHeaderSize + 4 * static_cast<qsizetype>(sizeof(float));

template<typename Component>
std::array<Component, 4> readComponents(QDataStream &stream)
{
    std::array<Component, 4> components{};
    for (Component &component : components)
        stream >> component;
    return components;
}

} // namespace

std::optional<QByteArray> LinuxColorArchive::archive(const QColor &color) const
{
    if (!color.isValid())
        return {};
    QByteArray data;
    QDataStream stream(&data, QIODevice::WriteOnly);
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    stream << kMark;
    if (color.spec() == QColor::ExtendedRgb) {
        stream << static_cast<quint8>(Kind::Extended) << color.redF() << color.greenF() << color.blueF()
               << color.alphaF();
    } else {
        const QRgba64 rgba = color.rgba64();
        stream << static_cast<quint8>(Kind::Ordinary) << rgba.red() << rgba.green() << rgba.blue() << rgba.alpha();
    }
    return data;
}

std::optional<QColor> LinuxColorArchive::unarchive(const QByteArray &data) const
{
    QDataStream stream(data);
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    quint32 mark = 0;
    quint8 kind = 0;
    stream >> mark >> kind;
    if (mark != kMark)
        return {};

    QColor color;
    if (kind == static_cast<quint8>(Kind::Ordinary) && data.size() == kOrdinarySize) {
        const auto [red, green, blue, alpha] = readComponents<quint16>(stream);
        color = QColor::fromRgba64(red, green, blue, alpha);
    } else if (kind == static_cast<quint8>(Kind::Extended) && data.size() == kExtendedSize) {
        const auto components = readComponents<float>(stream);
        for (const float component : components) {
            if (!std::isfinite(component))
                return {};
        }
        const auto [red, green, blue, alpha] = components;
        if (alpha < 0.0F || alpha > 1.0F)
            return {};
        color = QColor::fromRgbF(red, green, blue, alpha);
        // Keep the stored precision, even of components that fit the ordinary range.
        color = color.toExtendedRgb();
    }
    if (!color.isValid())
        return {};
    return color;
}
