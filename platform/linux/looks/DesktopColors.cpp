// SPDX-License-Identifier: MIT
#include "platform/linux/looks/DesktopColors.h"

#include <QDBusArgument>

#include <array>
#include <cmath>

namespace {

// Controls are lighter than their background: the dark outlines of Qt's own style are invisible on it.
const QColor kWindow(42, 42, 46);
const QColor kButton(72, 72, 78);
const QColor kBase(64, 64, 70);
const QColor kAlternateBase(70, 70, 76);
const QColor kText(238, 238, 240);
const QColor kFaintText(148, 148, 152); // disabled text and placeholders
const QColor kToolTip(66, 66, 71);
const QColor kLink(120, 174, 255);
const QColor kVisitedLink(196, 160, 255);

std::array<double, 3> parts(const QVariant &value)
{
    std::array<double, 3> found{-1, -1, -1};
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return found;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QStringLiteral("(ddd)"))
        return found;
    argument.beginStructure();
    for (double &part : found)
        argument >> part;
    argument.endStructure();
    return found;
}

// The relative luminance by WCAG 2, from 0 for black to 1 for white.
double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor readableOn(const QColor &color)
{
    // White if its contrast is at least 3 to 1, as desktops do on their accent colours.
    constexpr double kBrightestUnderWhite = 0.3;
    return luminance(color) > kBrightestUnderWhite ? Qt::black : Qt::white;
}

void setDark(QPalette &palette)
{
    // Qt derives the lighter and darker shades of bevels from these two.
    const QPalette shades(kButton, kWindow);
    for (const auto role : {QPalette::Light, QPalette::Midlight, QPalette::Dark, QPalette::Mid, QPalette::Shadow}) {
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            palette.setColor(group, role, shades.color(group, role));
    }
    palette.setColor(QPalette::Window, kWindow);
    palette.setColor(QPalette::Button, kButton);
    palette.setColor(QPalette::Base, kBase);
    palette.setColor(QPalette::AlternateBase, kAlternateBase);
    palette.setColor(QPalette::ToolTipBase, kToolTip);
    palette.setColor(QPalette::Link, kLink);
    palette.setColor(QPalette::LinkVisited, kVisitedLink);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, kText);
        palette.setColor(QPalette::Disabled, role, kFaintText);
    }
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, kFaintText);
}

} // namespace

void DesktopColors::update(const QVariantMap &changed)
{
    if (const auto found = changed.constFind(QStringLiteral("color-scheme")); found != changed.constEnd()) {
        const uint number = found->toUInt();
        scheme = number == 1 ? Scheme::Dark : number == 2 ? Scheme::Light : Scheme::NoPreference;
    }
    if (const auto found = changed.constFind(QStringLiteral("accent-color")); found != changed.constEnd()) {
        const auto [red, green, blue] = parts(*found);
        const auto isPart = [](double part) { return part >= 0 && part <= 1; };
        accent = isPart(red) && isPart(green) && isPart(blue) ? QColor::fromRgbF(float(red), float(green), float(blue))
                                                              : QColor();
    }
}

QPalette desktopPalette(const QPalette &standard, const DesktopColors &colors)
{
    QPalette palette;
    const bool isDark = luminance(standard.color(QPalette::Window)) < luminance(standard.color(QPalette::WindowText));
    if (colors.scheme == DesktopColors::Scheme::Dark && !isDark)
        setDark(palette);
    if (colors.accent.isValid()) {
        for (const auto group : {QPalette::Active, QPalette::Inactive}) {
            palette.setColor(group, QPalette::Highlight, colors.accent);
            palette.setColor(group, QPalette::HighlightedText, readableOn(colors.accent));
        }
    }
    return palette;
}
