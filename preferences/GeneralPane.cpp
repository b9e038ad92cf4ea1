// SPDX-License-Identifier: MIT
#include "preferences/GeneralPane.h"

#include "platform/LoginItem.h"
#include "preferences/Controls.h"
#include "settings/AppSettings.h"
#include "settings/Notifications.h"

#include <QVBoxLayout>

namespace {

// Points.
constexpr int kMargin = 24;
constexpr int kSpacing = 10;

const GeneralPane::Setting kLaunchAtLogin{SettingsKey::launchAtLogin,
                                          QT_TRANSLATE_NOOP("GeneralPane", "Start at login"),
                                          &AppSettings::launchAtLogin, &AppSettings::setLaunchAtLogin};
const GeneralPane::Setting kShowMenuBarIcon{SettingsKey::showMenuBarIcon,
                                            QT_TRANSLATE_NOOP("GeneralPane", "Show menu bar icon"),
                                            &AppSettings::showMenuBarIcon, &AppSettings::setShowMenuBarIcon};
const GeneralPane::Setting kShowDockIcon{SettingsKey::showDockIcon, QT_TRANSLATE_NOOP("GeneralPane", "Show Dock icon"),
                                         &AppSettings::showDockIcon, &AppSettings::setShowDockIcon};
const GeneralPane::Setting kRemoveItemsWhenDraggedOut{
    SettingsKey::removeItemsWhenDraggedOut, QT_TRANSLATE_NOOP("GeneralPane", "Remove items when dragged out"),
    &AppSettings::removeItemsWhenDraggedOut, &AppSettings::setRemoveItemsWhenDraggedOut};
const GeneralPane::Setting kAutoAddScreenshots{SettingsKey::autoAddScreenshots,
                                               QT_TRANSLATE_NOOP("GeneralPane", "Automatically add new screenshots"),
                                               &AppSettings::autoAddScreenshots, &AppSettings::setAutoAddScreenshots};

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
    for (const Setting &setting : {kLaunchAtLogin, kShowMenuBarIcon, kShowDockIcon})
        stack->addWidget(boundCheckBox(setting), 0, Qt::AlignLeft);

    stack->addWidget(new Separator(this));
    stack->addWidget(boundCheckBox(kRemoveItemsWhenDraggedOut), 0, Qt::AlignLeft);
    auto *dragModeLabel = fieldLabel(tr("Drag mode"), this);
    auto *dragMode = popUp({tr("Copy files"), tr("Move files"), tr("Create alias")},
                           s.defaults.integer(SettingsKey::dragMode), this);
    dragMode->setObjectName(SettingsKey::dragMode);
    setLabel(*dragModeLabel, *dragMode);
    connect(dragMode, &QComboBox::activated, this, [this, dragMode] { dragModeChanged(dragMode); });
    stack->addWidget(dragModeLabel, 0, Qt::AlignLeft);
    stack->addWidget(dragMode, 0, Qt::AlignLeft);

    stack->addWidget(new Separator(this));
    stack->addWidget(boundCheckBox(kAutoAddScreenshots), 0, Qt::AlignLeft);
    stack->addStretch();
}

QCheckBox *GeneralPane::boundCheckBox(const Setting &setting)
{
    QCheckBox *box = checkBox(tr(setting.title), (s.*setting.read)(), this);
    box->setObjectName(setting.key);
    bindings.insert(box, setting);
    connect(box, &QCheckBox::toggled, this, [this, box] { toggleChanged(box); });
    return box;
}

void GeneralPane::toggleChanged(QCheckBox *sender)
{
    const auto setting = bindings.constFind(sender);
    if (setting == bindings.constEnd())
        return;
    (s.*setting->write)(sender->isChecked());
    if (setting->key == SettingsKey::launchAtLogin)
        applyStartAtLogin();
    if (setting->key == SettingsKey::showMenuBarIcon || setting->key == SettingsKey::showDockIcon)
        notifications.post(Notifications::settingsChanged);
}

void GeneralPane::applyStartAtLogin()
{
    // A registration that fails changes nothing here: the setting says what the user wants.
    if (s.launchAtLogin())
        loginItem.enable();
    else
        loginItem.disable();
}

void GeneralPane::dragModeChanged(QComboBox *sender)
{
    s.defaults.set(SettingsKey::dragMode, sender->currentIndex());
}
