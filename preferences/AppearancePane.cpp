// SPDX-License-Identifier: MIT
#include "preferences/AppearancePane.h"

#include "platform/SystemAppearance.h"
#include "preferences/Announcement.h"
#include "preferences/ColorWell.h"
#include "preferences/Controls.h"
#include "preferences/DoubleSlider.h"
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
    auto *stack = new QVBoxLayout(view);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(kSpacing);

    const auto addTitled = [view, stack](const QString &title, QWidget *control, Qt::Alignment alignment) {
        QLabel *label = fieldLabel(title, view);
        setLabel(*label, *control);
        stack->addWidget(label, 0, Qt::AlignLeft);
        stack->addWidget(control, 0, alignment);
    };
    const auto addSeparator = [view, stack] { stack->addWidget(new Separator(view)); };
    const auto addPopUp = [this, view, &addTitled](const QString &title, const QStringList &titles, const auto &setting,
                                                   void (AppearancePane::*action)(QComboBox *)) {
        QComboBox *box = popUp(titles, indexOf(s.get(setting)), view);
        box->setObjectName(setting.key);
        connect(box, &QComboBox::activated, this, [this, box, action] { (this->*action)(box); });
        addTitled(title, box, Qt::AlignLeft);
    };
    const auto addSlider = [this, view, &addTitled](const QString &title, const Setting<double> &setting, double step,
                                                    void (AppearancePane::*action)(DoubleSlider *)) {
        const auto [lowest, highest] = setting.range;
        auto *slider = new DoubleSlider(lowest, highest, qRound((highest - lowest) / step), view);
        slider->setObjectName(setting.key);
        slider->setAttribute(Qt::WA_MacSmallSize);
        slider->setDoubleValue(s.get(setting));
        connect(slider, &DoubleSlider::reported, this, [this, slider, action] { (this->*action)(slider); });
        addTitled(title, slider, {});
    };

    stack->addWidget(fieldLabel(tr("Appearance"), view), 0, Qt::AlignLeft);
    addSeparator();

    auto *well = new ColorWell(view);
    well->setObjectName(Settings::tintColorData.key);
    well->setColor(s.tintColor());
    well->panelTakesBack = appearance.colorPanelTakesBack();
    well->onChange = [this, well] { colorChanged(well); };
    addTitled(tr("Tint colour"), well, Qt::AlignLeft);
    addSlider(tr("Tint intensity"), Settings::tintIntensity, kIntensityStep, &AppearancePane::intensityChanged);
    addSeparator();

    addSlider(tr("Shelf item size"), Settings::shelfItemSize, kSizeStep, &AppearancePane::sizeChanged);
    addSeparator();

    addPopUp(tr("Window edge"), {tr("Left"), tr("Right"), tr("Top"), tr("Bottom")}, Settings::windowEdge,
             &AppearancePane::edgeChanged);
    //: Along the edge of the screen: its upper or left end.
    const QString start = tr("Start");
    //: Along the edge of the screen: its middle.
    const QString center = tr("Center");
    //: Along the edge of the screen: its lower or right end.
    const QString end = tr("End");
    addPopUp(tr("Alignment"), {start, center, end}, Settings::windowAlignment, &AppearancePane::alignChanged);
    addSeparator();

    addPopUp(tr("File names"), {tr("Show under icon"), tr("Hide"), tr("Show on hover")}, Settings::fileNameDisplay,
             &AppearancePane::nameDisplayChanged);
    QCheckBox *hideExtensions = checkBox(tr("Hide file extensions"), s.get(Settings::hideFileExtensions), view);
    hideExtensions->setObjectName(Settings::hideFileExtensions.key);
    connect(hideExtensions, &QCheckBox::toggled, this, [this, hideExtensions] { hideExtChanged(hideExtensions); });
    stack->addWidget(hideExtensions, 0, Qt::AlignLeft);
    stack->addWidget(fieldLabel(QStringLiteral(" "), view));
    stack->addStretch();
    return view;
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
