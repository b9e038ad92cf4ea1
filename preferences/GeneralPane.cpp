// SPDX-License-Identifier: MIT
#include "preferences/GeneralPane.h"

#include "platform/LoginItem.h"
#include "preferences/Announcement.h"
#include "preferences/Controls.h"
#include "preferences/Stack.h"
#include "settings/AppSettings.h"

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

    Stack stack(*this, QMargins(kMargin, kMargin, kMargin, 0), kSpacing);
    stack.add(fieldLabel(tr("General"), this));
    stack.addSeparator();
    stack.add(boundCheckBox(tr("Start at login"), Settings::launchAtLogin));
    stack.add(boundCheckBox(tr("Show menu bar icon"), Settings::showMenuBarIcon));
    stack.add(boundCheckBox(tr("Show Dock icon"), Settings::showDockIcon));

    stack.addSeparator();
    stack.add(boundCheckBox(tr("Remove items when dragged out"), Settings::removeItemsWhenDraggedOut));
    QComboBox *dragMode =
        popUp({tr("Copy files"), tr("Move files"), tr("Create alias")}, indexOf(s.get(Settings::dragMode)), this);
    dragMode->setObjectName(Settings::dragMode.key);
    connect(dragMode, &QComboBox::activated, this, [this, dragMode] { dragModeChanged(dragMode); });
    stack.addLabelled(tr("Drag mode"), dragMode);

    stack.addSeparator();
    stack.add(boundCheckBox(tr("Automatically add new screenshots"), Settings::autoAddScreenshots));
    stack.addStretch();
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
