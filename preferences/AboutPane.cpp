// SPDX-License-Identifier: MIT
#include "preferences/AboutPane.h"

#include "platform/SystemAppearance.h"
#include "platform/Workspace.h"
#include "preferences/Controls.h"
#include "settings/BuildInfo.h"

#include <QEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// Points.
constexpr QSize kIconSize(128, 128);
constexpr int kSpacing = 10;
constexpr double kNameSize = 18;
constexpr double kMakerSize = 12;

} // namespace

AboutPane::AboutPane(const SystemAppearance &systemAppearance, Workspace &sharedWorkspace, QWidget *parent)
    : BasePane(parent)
    , moreAppsURL(BuildInfo::moreAppsURL())
    , appearance(systemAppearance)
    , workspace(sharedWorkspace)
{
}

void AboutPane::loadView()
{
    BasePane::loadView();

    auto *icon = new ImageView(appearance.applicationIcon(), kIconSize, this);
    auto *name = fieldLabel(QStringLiteral("Parklet ") + BuildInfo::runningVersion(), this, kNameSize);
    auto *maker = secondaryLabel(BuildInfo::makerLine(), this, kMakerSize);

    moreApps = new QPushButton(tr("More from Orvane"), this);
    moreApps->setFlat(true);
    tint();
    connect(moreApps, &QPushButton::clicked, this, &AboutPane::openMoreApps);

    auto *stack = new QVBoxLayout(this);
    stack->setSpacing(kSpacing);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->addStretch();
    for (QWidget *view : QList<QWidget *>{icon, name, maker, moreApps})
        stack->addWidget(view, 0, Qt::AlignHCenter);
    stack->addStretch();
}

void AboutPane::tint()
{
    QPalette tinted;
    tinted.setColor(QPalette::ButtonText, appearance.accentColor());
    moreApps->setPalette(tinted);
}

void AboutPane::changeEvent(QEvent *event)
{
    BasePane::changeEvent(event);
    // The accent colour is the desktop's, as the palette is.
    if (event->type() == QEvent::PaletteChange && moreApps)
        tint();
}

void AboutPane::openMoreApps()
{
    workspace.open(BuildInfo::checkedMoreAppsURL(moreAppsURL));
}
