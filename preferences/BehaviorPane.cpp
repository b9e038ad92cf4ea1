// SPDX-License-Identifier: MIT
#include "preferences/BehaviorPane.h"

#include "platform/Platform.h"
#include "platform/WhileAlive.h"
#include "preferences/AppExclusionListView.h"
#include "preferences/Controls.h"
#include "settings/AppSettings.h"

#include <QEvent>
#include <QStyle>

#include <algorithm>

namespace {

// Points.
constexpr int kMargin = 24;
constexpr int kBoxGap = 8; // at least, between the first label and its check box
constexpr int kAboveFirstSeparator = 12;
constexpr int kAroundSeparator = 14;
constexpr int kDoubleClickGap = 8;
constexpr int kExcludeLabelGap = 6;
constexpr int kAboveList = 8;
constexpr int kSeparatorHeight = 1;
constexpr double kSmallControlSize = 11;
constexpr int kExcludeLabelLines = 2;

// The rectangle of `size` at `x` whose middle is at the height of `other`'s.
QRect centeredOn(const QRect &other, int x, const QSize &size)
{
    return {QPoint(x, other.y() + (other.height() - size.height()) / 2), size};
}

} // namespace

BehaviorFrames behaviorFrames(const QSize &pane, const BehaviorSizes &sizes)
{
    const int trailing = pane.width() - kMargin;
    const int width = trailing - kMargin;
    const auto below = [](const QRect &frame, int distance) { return frame.y() + frame.height() + distance; };
    const auto separator = [width](int y) { return QRect(kMargin, y, width, kSeparatorHeight); };

    BehaviorFrames frames;
    const int boxX = trailing - sizes.autoShowBox.width();
    frames.autoShowLabel = QRect(kMargin, kMargin, std::min(sizes.autoShowLabel.width(), boxX - kBoxGap - kMargin),
                                 sizes.autoShowLabel.height());
    frames.autoShowBox = centeredOn(frames.autoShowLabel, boxX, sizes.autoShowBox);
    frames.separatorA = separator(below(frames.autoShowLabel, kAboveFirstSeparator));
    frames.trigger = QRect(kMargin, below(frames.separatorA, kAboveFirstSeparator), width, sizes.triggerHeight);
    frames.separatorB = separator(below(frames.trigger, kAroundSeparator));

    frames.doubleClickLabel =
        QRect(QPoint(kMargin, below(frames.separatorB, kAroundSeparator)), sizes.doubleClickLabel);
    frames.doubleClickPopUp = centeredOn(
        frames.doubleClickLabel, kMargin + sizes.doubleClickLabel.width() + kDoubleClickGap, sizes.doubleClickPopUp);
    frames.separatorC = separator(below(frames.doubleClickLabel, kAroundSeparator));

    frames.excludeModePopUp =
        QRect(QPoint(kMargin, below(frames.separatorC, kAroundSeparator)), sizes.excludeModePopUp);
    const int labelX = kMargin + sizes.excludeModePopUp.width() + kExcludeLabelGap;
    const int labelWidth = std::max(0, trailing - labelX);
    frames.excludeLabel =
        centeredOn(frames.excludeModePopUp, labelX, QSize(labelWidth, sizes.excludeLabelHeight(labelWidth)));
    const int listY = below(frames.excludeModePopUp, kAboveList);
    frames.excludeList = QRect(kMargin, listY, width, std::max(0, pane.height() - kMargin - listY));
    return frames;
}

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
    const auto place = [this](QWidget *view, const QRect &frame) {
        view->setGeometry(QStyle::visualRect(layoutDirection(), rect(), frame));
    };
    const BehaviorFrames frames =
        behaviorFrames(size(), {.autoShowLabel = autoShowLabel->sizeHint(),
                                .autoShowBox = autoShowBox->sizeHint(),
                                .triggerHeight = triggerPop->sizeHint().height(),
                                .doubleClickLabel = doubleClickLabel->sizeHint(),
                                .doubleClickPopUp = doubleClickPop->sizeHint(),
                                .excludeModePopUp = excludeModePop->sizeHint(),
                                .excludeLabelHeight = [this](int width) {
                                    return std::min(excludeLabel->heightForWidth(width),
                                                    kExcludeLabelLines * excludeLabel->fontMetrics().lineSpacing());
                                }});
    place(autoShowLabel, frames.autoShowLabel);
    place(autoShowBox, frames.autoShowBox);
    place(separatorA, frames.separatorA);
    place(triggerPop, frames.trigger);
    place(separatorB, frames.separatorB);
    place(doubleClickLabel, frames.doubleClickLabel);
    place(doubleClickPop, frames.doubleClickPopUp);
    place(separatorC, frames.separatorC);
    place(excludeModePop, frames.excludeModePopUp);
    place(excludeLabel, frames.excludeLabel);
    // A label aligns itself by the letters of its text; this one goes on from the pop-up, at whichever side that is.
    excludeLabel->setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter) |
                               Qt::AlignAbsolute);
    place(excludeList, frames.excludeList);
}

void BehaviorPane::resizeEvent(QResizeEvent *event)
{
    BasePane::resizeEvent(event);
    layOut();
}

bool BehaviorPane::event(QEvent *event)
{
    // A control wants another size, for instance in another style, or the language begins at the other end.
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
