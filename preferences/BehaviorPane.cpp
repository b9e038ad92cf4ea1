// SPDX-License-Identifier: MIT
#include "preferences/BehaviorPane.h"

#include "platform/Platform.h"
#include "platform/WhileAlive.h"
#include "preferences/AppExclusionListView.h"
#include "preferences/Controls.h"
#include "preferences/Rows.h"
#include "settings/AppSettings.h"

#include <QEvent>
#include <QStyle>

namespace {

// Points.
constexpr int kMargin = 24;
constexpr int kBoxGap = 8; // minimum between the first label and its check box
constexpr int kAboveFirstSeparator = 12;
constexpr int kAroundSeparator = 14;
constexpr int kDoubleClickGap = 8;
constexpr int kExcludeLabelGap = 6;
constexpr int kAboveList = 8;
constexpr double kSmallControlSize = 11;
constexpr int kExcludeLabelLines = 2;

} // namespace

BehaviorPane::BehaviorPane(AppSettings &settings, Platform &services, QWidget *parent)
    : BasePane(parent)
    , s(settings)
    , platform(services)
{
}

void BehaviorPane::loadView()
{
    BasePane::loadView();

    autoShowLabel = fieldLabel(tr("Automatically show the drop window"), this);
    autoShowBox = checkBox(QString(), s.get(Settings::autoShowDropWindow), this);
    autoShowBox->setObjectName(Settings::autoShowDropWindow.key);
    setLabel(*autoShowLabel, *autoShowBox);
    connect(autoShowBox, &QCheckBox::toggled, this, [this] { autoShowChanged(autoShowBox); });

    separatorA = new Separator(this);
    triggerPop = popUp({tr("When you start dragging"), tr("Near cursor position when you start dragging"),
                        tr("When dragging towards Parklet's location")},
                       indexOf(s.get(Settings::autoShowTrigger)), this);
    triggerPop->setObjectName(Settings::autoShowTrigger.key);
    triggerPop->setEnabled(s.get(Settings::autoShowDropWindow));
    setSpokenLabel(tr("When to show the drop window"), *triggerPop);
    connect(triggerPop, &QComboBox::activated, this, [this] { triggerChanged(triggerPop); });

    separatorB = new Separator(this);
    doubleClickLabel = fieldLabel(tr("When double-clicking a shelf file:"), this);
    doubleClickPop = popUp({tr("Open file"), tr("Select all")}, indexOf(s.get(Settings::doubleClickAction)), this);
    doubleClickPop->setObjectName(Settings::doubleClickAction.key);
    setLabel(*doubleClickLabel, *doubleClickPop);
    connect(doubleClickPop, &QComboBox::activated, this, [this] { doubleClickChanged(doubleClickPop); });

    separatorC = new Separator(this);
    //: Goes on with "The Parklet window in the following applications:".
    const QString hide = tr("Hide");
    //: Goes on with "The Parklet window in the following applications:".
    const QString showOnlyIn = tr("Show only in");
    excludeModePop = popUp({hide, showOnlyIn}, indexOf(s.get(Settings::excludeMode)), this);
    excludeModePop->setObjectName(Settings::excludeMode.key);
    excludeModePop->setAttribute(Qt::WA_MacSmallSize);
    excludeModePop->setFont(systemFont(kSmallControlSize));
    connect(excludeModePop, &QComboBox::activated, this, [this] { excludeModeChanged(excludeModePop); });
    excludeLabel = fieldLabel(tr("The Parklet window in the following applications:"), this);
    excludeLabel->setWordWrap(true);
    setLabel(*excludeLabel, *excludeModePop);

    excludeList = new AppExclusionListView(
        s.get(Settings::excludedBundleIDs),
        whileAlive(this, [this](const QStringList &ids) { s.set(Settings::excludedBundleIDs, ids); }), platform, this);
    excludeList->tableView->setAccessibleName(excludeLabel->text());
    layOut();
}

void BehaviorPane::layOut()
{
    if (!excludeList)
        return;
    Rows rows(*this, kMargin);
    rows.begin(*autoShowLabel, 0, rows.width() - kBoxGap - autoShowBox->sizeHint().width());
    rows.end(*autoShowBox);
    rows.fill(*separatorA, kAboveFirstSeparator);
    rows.fill(*triggerPop, kAboveFirstSeparator);
    rows.fill(*separatorB, kAroundSeparator);

    rows.begin(*doubleClickLabel, kAroundSeparator);
    rows.next(*doubleClickPop, kDoubleClickGap);
    rows.fill(*separatorC, kAroundSeparator);

    rows.begin(*excludeModePop, kAroundSeparator);
    rows.nextWrapped(*excludeLabel, kExcludeLabelGap, kExcludeLabelLines * excludeLabel->fontMetrics().lineSpacing());
    // By itself a label aligns by the direction of its text; this one continues the pop-up before it.
    excludeLabel->setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter) |
                               Qt::AlignAbsolute);
    rows.fillRest(*excludeList, kAboveList);
}

void BehaviorPane::resizeEvent(QResizeEvent *event)
{
    BasePane::resizeEvent(event);
    layOut();
}

bool BehaviorPane::event(QEvent *event)
{
    // A control has another size now, for instance in another style, or the layout direction has changed.
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::LayoutDirectionChange)
        layOut();
    return BasePane::event(event);
}

void BehaviorPane::autoShowChanged(QCheckBox *sender)
{
    s.set(Settings::autoShowDropWindow, sender->isChecked());
    if (triggerPop)
        triggerPop->setEnabled(sender->isChecked());
}

void BehaviorPane::triggerChanged(QComboBox *sender)
{
    s.set(Settings::autoShowTrigger, static_cast<AutoShowTrigger>(sender->currentIndex()));
}

void BehaviorPane::doubleClickChanged(QComboBox *sender)
{
    s.set(Settings::doubleClickAction, static_cast<DoubleClickAction>(sender->currentIndex()));
}

void BehaviorPane::excludeModeChanged(QComboBox *sender)
{
    s.set(Settings::excludeMode, static_cast<ExcludeMode>(sender->currentIndex()));
}
