// SPDX-License-Identifier: MIT
#include "preferences/WelcomePane.h"

#include "platform/SystemAppearance.h"
#include "preferences/Controls.h"

#include <QVBoxLayout>

#include <algorithm>

namespace {

// Points.
constexpr QSize kIconSize(128, 128);
constexpr int kSpacing = 10;
constexpr int kMaximumWidth = 380;
constexpr double kNameSize = 24;
constexpr double kDescriptionSize = 12;
constexpr int kDescriptionLines = 4;

} // namespace

WelcomePane::WelcomePane(const SystemAppearance &systemAppearance, QWidget *parent)
    : BasePane(parent)
    , appearance(systemAppearance)
{
}

void WelcomePane::loadView()
{
    BasePane::loadView();

    auto *icon = new ImageView(appearance.applicationIcon(), kIconSize, this);
    auto *name = fieldLabel(QStringLiteral("Parklet"), this, kNameSize);
    auto *tagline = secondaryLabel(QStringLiteral("Lightweight drag & drop file shelf for macOS"), this);
    auto *description = secondaryLabel(
        QStringLiteral("Drop files onto the floating shelf panel to temporarily\nstore them, then drag to their "
                       "destination whenever\nyou're ready."),
        this, kDescriptionSize);

    // A wrapping label prefers to be narrow, so its width is stated: its longest line, as far as that may go.
    const QFontMetrics metrics(description->font());
    description->setWordWrap(true);
    description->setAlignment(Qt::AlignHCenter);
    description->setFixedWidth(std::min(metrics.size(0, description->text()).width(), kMaximumWidth));
    description->setMaximumHeight(kDescriptionLines * metrics.lineSpacing());

    auto *stack = new QVBoxLayout(this);
    stack->setSpacing(kSpacing);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->addStretch();
    for (QWidget *view : QList<QWidget *>{icon, name, tagline, description})
        stack->addWidget(view, 0, Qt::AlignHCenter);
    stack->addStretch();
}
