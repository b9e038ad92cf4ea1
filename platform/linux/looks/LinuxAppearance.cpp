// SPDX-License-Identifier: MIT
#include "platform/linux/looks/LinuxAppearance.h"

#include "platform/linux/looks/PortalColors.h"
#include "platform/linux/looks/SymbolIconEngine.h"

#include <QFile>
#include <QGuiApplication>
#include <QPalette>

namespace {

const QString kUnknownApplication = QStringLiteral(":/fallback/application.svg");

QIcon svgIcon(const QString &path, const QColor &tint)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QIcon(new SymbolIconEngine(file.readAll(), tint));
}

} // namespace

LinuxAppearance::LinuxAppearance(const QString &artwork)
    : folder(artwork)
{
}

LinuxAppearance::~LinuxAppearance() = default;

void LinuxAppearance::followPortal(const QDBusConnection &sessionBus)
{
    portal = std::make_unique<PortalColors>(sessionBus);
}

QColor LinuxAppearance::accentColor() const
{
    return QGuiApplication::palette().color(QPalette::Active, QPalette::Highlight);
}

QIcon LinuxAppearance::symbol(const QString &name, const QColor &tint) const
{
    return svgIcon(folder + QStringLiteral("/symbols/") + name + QStringLiteral(".svg"), tint);
}

QIcon LinuxAppearance::applicationIcon() const
{
    QIcon own = svgIcon(folder + QStringLiteral("/AppIcon.svg"), QColor());
    if (!own.isNull())
        return own;
    const QIcon installed = QIcon::fromTheme(QGuiApplication::desktopFileName());
    return installed.isNull() ? svgIcon(kUnknownApplication, QColor()) : installed;
}
