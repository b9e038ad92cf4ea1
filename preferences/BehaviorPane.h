// SPDX-License-Identifier: MIT
#pragma once

#include "preferences/BasePane.h"

class AppExclusionListView;
class AppSettings;
class QCheckBox;
class QComboBox;
class QLabel;
struct Platform;

// When the shelf shows by itself, what a double click on a file does, and in which applications the shelf does not
// show. The pane posts nothing: these settings are read when they are needed.
class BehaviorPane : public BasePane {
    Q_OBJECT

public:
    BehaviorPane(AppSettings &settings, Platform &platform, QWidget *parent = nullptr);

    void loadView() override;

    void autoShowChanged(QCheckBox *sender);
    void triggerChanged(QComboBox *sender);
    void doubleClickChanged(QComboBox *sender);
    void excludeModeChanged(QComboBox *sender);

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool event(QEvent *event) override;

private:
    void layOut();

    AppSettings &s;
    Platform &platform;
    QLabel *autoShowLabel = nullptr;
    QCheckBox *autoShowBox = nullptr;
    QWidget *separatorA = nullptr;
    QComboBox *triggerPop = nullptr;
    QWidget *separatorB = nullptr;
    QLabel *doubleClickLabel = nullptr;
    QComboBox *doubleClickPop = nullptr;
    QWidget *separatorC = nullptr;
    QComboBox *excludeModePop = nullptr;
    QLabel *excludeLabel = nullptr;
    AppExclusionListView *excludeList = nullptr;
};
