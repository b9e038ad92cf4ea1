// SPDX-License-Identifier: MIT
#pragma once

#include "preferences/BasePane.h"
#include "settings/SettingsTable.h"

class AppSettings;
class ColorWell;
class DoubleSlider;
class NotificationCenter;
class QCheckBox;
class QComboBox;
class SystemAppearance;

// The look and place of the shelf. The pane stores each change at once and posts settingsChanged, so that the shelf,
// which shows as a live preview, follows.
class AppearancePane : public BasePane {
    Q_OBJECT

public:
    AppearancePane(AppSettings &settings, const SystemAppearance &appearance, NotificationCenter &notifications,
                   QWidget *parent = nullptr);

    void loadView() override;

    void colorChanged(ColorWell *sender);
    void intensityChanged(DoubleSlider *sender);
    void sizeChanged(DoubleSlider *sender);
    void edgeChanged(QComboBox *sender);
    void alignChanged(QComboBox *sender);
    void nameDisplayChanged(QComboBox *sender);
    void hideExtChanged(QCheckBox *sender);
    // Stores disableAnimations and posts nothing. No control of this pane does this.
    void noAnimChanged(QCheckBox *sender);

private:
    QWidget *makeStack();
    ColorWell *makeColorWell(QWidget &view);
    DoubleSlider *makeSlider(const Setting<double> &setting, double step, QWidget &view,
                             void (AppearancePane::*action)(DoubleSlider *));
    template<typename Choice>
    QComboBox *makePopUp(const QStringList &titles, const Setting<Choice> &setting, QWidget &view,
                         void (AppearancePane::*action)(QComboBox *));

    AppSettings &s;
    const SystemAppearance &appearance;
    NotificationCenter &notifications;
};
