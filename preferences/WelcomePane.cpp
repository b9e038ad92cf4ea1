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

// Centres the label's lines and breaks those that are too long for the stack.
void wrap(QLabel &label)
{
    label.setWordWrap(true);
    label.setAlignment(Qt::AlignHCenter);
    // A wrapping label prefers to be narrow, so set its width: that of its longest line, up to the limit.
    label.setFixedWidth(std::min(label.fontMetrics().size(0, label.text()).width(), kMaximumWidth));
}

} // namespace

WelcomePane::WelcomePane(const SystemAppearance &systemAppearance, QWidget *parent)
    : BasePane(parent)
    , appearance(systemAppearance)
{
}

void WelcomePane::loadView()
{
    BasePane::loadView();

    auto *view = new QWidget(this);
    view->setMaximumWidth(kMaximumWidth);
    auto *icon = new ImageView(appearance.applicationIcon(), kIconSize, view);
    auto *name = fieldLabel(QStringLiteral("Parklet"), view, kNameSize);
    auto *tagline = secondaryLabel(tr("Lightweight drag & drop file shelf for macOS"), view);
    wrap(*tagline);
    auto *description =
        secondaryLabel(tr("Drop files onto the floating shelf panel to temporarily\nstore them, then drag to their "
                          "destination whenever\nyou're ready."),
                       view, kDescriptionSize);
    wrap(*description);
    description->setMaximumHeight(kDescriptionLines * description->fontMetrics().lineSpacing());

    auto *stack = new QVBoxLayout(view);
    stack->setSpacing(kSpacing);
    stack->setContentsMargins(0, 0, 0, 0);
    for (QWidget *part : QList<QWidget *>{icon, name, tagline, description})
        stack->addWidget(part, 0, Qt::AlignHCenter);

    auto *middle = new QVBoxLayout(this);
    middle->setContentsMargins(0, 0, 0, 0);
    middle->addStretch();
    middle->addWidget(view, 0, Qt::AlignHCenter);
    middle->addStretch();
}
