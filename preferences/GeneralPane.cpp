// SPDX-License-Identifier: MIT
#include "preferences/GeneralPane.h"

#include "platform/LoginItem.h"
#include "preferences/Announcement.h"
#include "preferences/Controls.h"
#include "settings/AppSettings.h"

#include <QVBoxLayout>

namespace {

// Points.
constexpr int kMargin = 24;
constexpr int kSpacing = 10;

} // namespace

GeneralPane::GeneralPane(AppSettings &settings, LoginItem &mainLoginItem, NotificationCenter &center, QWidget *parent)
    : BasePane(parent)
    , s(settings)
    , loginItem(mainLoginItem)
    , notifications(center)
{
}

void GeneralPane::loadView()
{
    BasePane::loadView();

    auto *stack = new QVBoxLayout(this);
    stack->setContentsMargins(kMargin, kMargin, kMargin, 0);
    stack->setSpacing(kSpacing);

    stack->addWidget(fieldLabel(tr("General"), this), 0, Qt::AlignLeft);
    stack->addWidget(new Separator(this));
    stack->addWidget(boundCheckBox(tr("Start at login"), Settings::launchAtLogin), 0, Qt::AlignLeft);
    stack->addWidget(boundCheckBox(tr("Show menu bar icon"), Settings::showMenuBarIcon), 0, Qt::AlignLeft);
    stack->addWidget(boundCheckBox(tr("Show Dock icon"), Settings::showDockIcon), 0, Qt::AlignLeft);

    stack->addWidget(new Separator(this));
    stack->addWidget(boundCheckBox(tr("Remove items when dragged out"), Settings::removeItemsWhenDraggedOut), 0,
                     Qt::AlignLeft);
    auto *dragModeLabel = fieldLabel(tr("Drag mode"), this);
    auto *dragMode =
        popUp({tr("Copy files"), tr("Move files"), tr("Create alias")}, indexOf(s.get(Settings::dragMode)), this);
    dragMode->setObjectName(Settings::dragMode.key);
    setLabel(*dragModeLabel, *dragMode);
    connect(dragMode, &QComboBox::activated, this, [this, dragMode] { dragModeChanged(dragMode); });
    stack->addWidget(dragModeLabel, 0, Qt::AlignLeft);
    stack->addWidget(dragMode, 0, Qt::AlignLeft);

    stack->addWidget(new Separator(this));
    stack->addWidget(boundCheckBox(tr("Automatically add new screenshots"), Settings::autoAddScreenshots), 0,
                     Qt::AlignLeft);
    stack->addStretch();
}

QCheckBox *GeneralPane::boundCheckBox(const QString &title, const Setting<bool> &setting)
{
    QCheckBox *box = checkBox(title, s.get(setting), this);
    box->setObjectName(setting.key);
    bindings.insert(box, &setting);
    connect(box, &QCheckBox::toggled, this, [this, box] { toggleChanged(box); });
    return box;
}

void GeneralPane::toggleChanged(QCheckBox *sender)
{
    const Setting<bool> *setting = bindings.value(sender);
    if (!setting)
        return;
    s.set(*setting, sender->isChecked());
    if (setting == &Settings::launchAtLogin)
        applyStartAtLogin();
    announce(*setting, notifications);
}

void GeneralPane::applyStartAtLogin()
{
    // Ignore a failure: the setting says what the user wants.
    if (s.get(Settings::launchAtLogin))
        loginItem.enable();
    else
        loginItem.disable();
}

void GeneralPane::dragModeChanged(QComboBox *sender)
{
    s.set(Settings::dragMode, static_cast<DragMode>(sender->currentIndex()));
}
