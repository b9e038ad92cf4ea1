// SPDX-License-Identifier: MIT
#include "preferences/AppearancePane.h"

#include "platform/SystemAppearance.h"
#include "preferences/Announcement.h"
#include "preferences/ColorWell.h"
#include "preferences/Controls.h"
#include "preferences/DoubleSlider.h"
#include "preferences/Stack.h"
#include "settings/AppSettings.h"

#include <QResizeEvent>
#include <QScrollArea>
#include <QVBoxLayout>

namespace {

// Points.
constexpr int kMargin = 8;
constexpr int kSpacing = 8;
constexpr int kScrollerWidth = 20; // room that the stack leaves for the scroller

constexpr double kIntensityStep = 0.001;
constexpr double kSizeStep = 0.1; // points

// A scroll view whose content keeps a fixed distance from its right edge.
class StackScrollArea : public QScrollArea {
public:
    using QScrollArea::QScrollArea;

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        if (widget())
            widget()->setFixedWidth(width() - kScrollerWidth);
        QScrollArea::resizeEvent(event);
    }
};

} // namespace

AppearancePane::AppearancePane(AppSettings &settings, const SystemAppearance &systemAppearance,
                               NotificationCenter &center, QWidget *parent)
    : BasePane(parent)
    , s(settings)
    , appearance(systemAppearance)
    , notifications(center)
{
}

void AppearancePane::loadView()
{
    BasePane::loadView();

    auto *scroll = new StackScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    scroll->setWidgetResizable(true);
    scroll->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    scroll->setWidget(makeStack());
    // Without a background of their own they show the pane's.
    scroll->viewport()->setAutoFillBackground(false);
    scroll->widget()->setAutoFillBackground(false);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->addWidget(scroll);
}

QWidget *AppearancePane::makeStack()
{
    auto *view = new QWidget(this);
    Stack stack(*view, QMargins(), kSpacing);
    stack.add(fieldLabel(tr("Appearance"), view));
    stack.addSeparator();

    stack.addLabelled(tr("Tint colour"), makeColorWell(*view));
    stack.addLabelledWide(tr("Tint intensity"), makeSlider(Settings::tintIntensity, kIntensityStep, *view,
                                                           &AppearancePane::intensityChanged));
    stack.addSeparator();

    stack.addLabelledWide(tr("Shelf item size"),
                          makeSlider(Settings::shelfItemSize, kSizeStep, *view, &AppearancePane::sizeChanged));
    stack.addSeparator();

    stack.addLabelled(tr("Window edge"), makePopUp({tr("Left"), tr("Right"), tr("Top"), tr("Bottom")},
                                                   Settings::windowEdge, *view, &AppearancePane::edgeChanged));
    //: Along the edge of the screen: its upper or left end.
    const QString start = tr("Start");
    //: Along the edge of the screen: its middle.
    const QString center = tr("Center");
    //: Along the edge of the screen: its lower or right end.
    const QString end = tr("End");
    stack.addLabelled(tr("Alignment"),
                      makePopUp({start, center, end}, Settings::windowAlignment, *view, &AppearancePane::alignChanged));
    stack.addSeparator();

    stack.addLabelled(tr("File names"),
                      makePopUp({tr("Show under icon"), tr("Hide"), tr("Show on hover")}, Settings::fileNameDisplay,
                                *view, &AppearancePane::nameDisplayChanged));
    QCheckBox *hideExtensions = checkBox(tr("Hide file extensions"), s.get(Settings::hideFileExtensions), view);
    hideExtensions->setObjectName(Settings::hideFileExtensions.key);
    connect(hideExtensions, &QCheckBox::toggled, this, [this, hideExtensions] { hideExtChanged(hideExtensions); });
    stack.add(hideExtensions);
    stack.add(fieldLabel(QStringLiteral(" "), view));
    stack.addStretch();
    return view;
}

ColorWell *AppearancePane::makeColorWell(QWidget &view)
{
    auto *well = new ColorWell(&view);
    well->setObjectName(Settings::tintColorData.key);
    well->setColor(s.tintColor());
    well->panelTakesBack = appearance.colorPanelTakesBack();
    well->onChange = [this, well] { colorChanged(well); };
    return well;
}

DoubleSlider *AppearancePane::makeSlider(const Setting<double> &setting, double step, QWidget &view,
                                         void (AppearancePane::*action)(DoubleSlider *))
{
    const auto [lowest, highest] = setting.range;
    auto *slider = new DoubleSlider(lowest, highest, qRound((highest - lowest) / step), &view);
    slider->setObjectName(setting.key);
    slider->setAttribute(Qt::WA_MacSmallSize);
    slider->setDoubleValue(s.get(setting));
    connect(slider, &DoubleSlider::reported, this, [this, slider, action] { (this->*action)(slider); });
    return slider;
}

template<typename Choice>
QComboBox *AppearancePane::makePopUp(const QStringList &titles, const Setting<Choice> &setting, QWidget &view,
                                     void (AppearancePane::*action)(QComboBox *))
{
    QComboBox *box = popUp(titles, indexOf(s.get(setting)), &view);
    box->setObjectName(setting.key);
    connect(box, &QComboBox::activated, this, [this, box, action] { (this->*action)(box); });
    return box;
}

void AppearancePane::colorChanged(ColorWell *sender)
{
    s.setTintColor(sender->color());
    announce(Settings::tintColorData, notifications);
}

void AppearancePane::intensityChanged(DoubleSlider *sender)
{
    s.set(Settings::tintIntensity, sender->doubleValue());
    announce(Settings::tintIntensity, notifications);
}

void AppearancePane::sizeChanged(DoubleSlider *sender)
{
    s.set(Settings::shelfItemSize, sender->doubleValue());
    announce(Settings::shelfItemSize, notifications);
}

void AppearancePane::edgeChanged(QComboBox *sender)
{
    s.set(Settings::windowEdge, static_cast<WindowEdge>(sender->currentIndex()));
    announce(Settings::windowEdge, notifications);
}

void AppearancePane::alignChanged(QComboBox *sender)
{
    s.set(Settings::windowAlignment, static_cast<WindowAlignment>(sender->currentIndex()));
    announce(Settings::windowAlignment, notifications);
}

void AppearancePane::nameDisplayChanged(QComboBox *sender)
{
    s.set(Settings::fileNameDisplay, static_cast<FileNameDisplay>(sender->currentIndex()));
    announce(Settings::fileNameDisplay, notifications);
}

void AppearancePane::hideExtChanged(QCheckBox *sender)
{
    s.set(Settings::hideFileExtensions, sender->isChecked());
    announce(Settings::hideFileExtensions, notifications);
}

void AppearancePane::noAnimChanged(QCheckBox *sender)
{
    s.set(Settings::disableAnimations, sender->isChecked());
}
