// SPDX-License-Identifier: MIT
#pragma once

#include "preferences/BasePane.h"

#include <QRect>

#include <functional>

class AppExclusionListView;
class AppSettings;
class QCheckBox;
class QComboBox;
class QLabel;
struct Platform;

// How large the Behavior pane's views are by themselves, in points.
struct BehaviorSizes {
    QSize autoShowLabel;
    QSize autoShowBox;
    int triggerHeight = 0;
    QSize doubleClickLabel;
    QSize doubleClickPopUp;
    QSize excludeModePopUp;
    std::function<int(int width)> excludeLabelHeight;
};

// Where they are, in points with the origin at the top left.
struct BehaviorFrames {
    QRect autoShowLabel;
    QRect autoShowBox;
    QRect separatorA;
    QRect trigger;
    QRect separatorB;
    QRect doubleClickLabel;
    QRect doubleClickPopUp;
    QRect separatorC;
    QRect excludeModePopUp;
    QRect excludeLabel;
    QRect excludeList;
};

BehaviorFrames behaviorFrames(const QSize &pane, const BehaviorSizes &sizes);

// When the shelf shows by itself, what a double click on a file does, and in which applications the shelf stays away.
// It posts nothing: who needs these settings reads them when acting.
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
