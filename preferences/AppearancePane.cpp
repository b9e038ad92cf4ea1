// SPDX-License-Identifier: MIT
#include "preferences/AppearancePane.h"

#include "platform/SystemAppearance.h"
#include "preferences/ColorWell.h"
#include "preferences/Controls.h"
#include "preferences/DoubleSlider.h"
#include "settings/AppSettings.h"
#include "settings/Notifications.h"

#include <QResizeEvent>
#include <QScrollArea>
#include <QVBoxLayout>

namespace {

// Points.
constexpr int kMargin = 8;
constexpr int kSpacing = 8;
constexpr int kScrollerWidth = 20; // what the stack leaves to the scroller
constexpr double kSmallestItem = 48.0;
constexpr double kLargestItem = 120.0;

constexpr int kIntensitySteps = 1000; // of a thousandth
constexpr int kSizeSteps = 720;       // of a tenth of a point

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
    // No background of its own: the pane's shows through.
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
    const auto addPopUp = [this, view, &addTitled](const QString &title, const QStringList &titles, qint64 index,
                                                   const QString &key, void (AppearancePane::*action)(QComboBox *)) {
        QComboBox *box = popUp(titles, index, view);
        box->setObjectName(key);
        connect(box, &QComboBox::activated, this, [this, box, action] { (this->*action)(box); });
        addTitled(title, box, Qt::AlignLeft);
    };
    const auto addSlider = [this, &addTitled](const QString &title, DoubleSlider *slider, double value,
                                              const QString &key, void (AppearancePane::*action)(DoubleSlider *)) {
        slider->setObjectName(key);
        slider->setAttribute(Qt::WA_MacSmallSize);
        slider->setDoubleValue(value);
        connect(slider, &DoubleSlider::reported, this, [this, slider, action] { (this->*action)(slider); });
        addTitled(title, slider, {});
    };

    stack->addWidget(fieldLabel(tr("Appearance"), view), 0, Qt::AlignLeft);
    addSeparator();

    auto *well = new ColorWell(view);
    well->setObjectName(SettingsKey::tintColorData);
    well->setColor(s.tintColor());
    well->panelTakesBack = appearance.colorPanelTakesBack();
    well->onChange = [this, well] { colorChanged(well); };
    addTitled(tr("Tint colour"), well, Qt::AlignLeft);
    addSlider(tr("Tint intensity"), new DoubleSlider(0.0, 1.0, kIntensitySteps, view), s.tintIntensity(),
              SettingsKey::tintIntensity, &AppearancePane::intensityChanged);
    addSeparator();

    addSlider(tr("Shelf item size"), new DoubleSlider(kSmallestItem, kLargestItem, kSizeSteps, view), s.shelfItemSize(),
              SettingsKey::shelfItemSize, &AppearancePane::sizeChanged);
    addSeparator();

    addPopUp(tr("Window edge"), {tr("Left"), tr("Right"), tr("Top"), tr("Bottom")}, s.windowEdge(),
             SettingsKey::windowEdge, &AppearancePane::edgeChanged);
    //: Along the edge of the screen: its upper or left end.
    const QString start = tr("Start");
    //: Along the edge of the screen: its middle.
    const QString center = tr("Center");
    //: Along the edge of the screen: its lower or right end.
    const QString end = tr("End");
    addPopUp(tr("Alignment"), {start, center, end}, s.windowAlignment(), SettingsKey::windowAlignment,
             &AppearancePane::alignChanged);
    addSeparator();

    addPopUp(tr("File names"), {tr("Show under icon"), tr("Hide"), tr("Show on hover")},
             s.defaults.integer(SettingsKey::fileNameDisplay), SettingsKey::fileNameDisplay,
             &AppearancePane::nameDisplayChanged);
    QCheckBox *hideExtensions =
        checkBox(tr("Hide file extensions"), s.defaults.boolean(SettingsKey::hideFileExtensions), view);
    hideExtensions->setObjectName(SettingsKey::hideFileExtensions);
    connect(hideExtensions, &QCheckBox::toggled, this, [this, hideExtensions] { hideExtChanged(hideExtensions); });
    stack->addWidget(hideExtensions, 0, Qt::AlignLeft);
    stack->addWidget(fieldLabel(QStringLiteral(" "), view));
    stack->addStretch();
    return view;
}

void AppearancePane::postSettingsChanged()
{
    notifications.post(Notifications::settingsChanged);
}

void AppearancePane::colorChanged(ColorWell *sender)
{
    s.setTintColor(sender->color());
    postSettingsChanged();
}

void AppearancePane::intensityChanged(DoubleSlider *sender)
{
    s.setTintIntensity(sender->doubleValue());
    postSettingsChanged();
}

void AppearancePane::sizeChanged(DoubleSlider *sender)
{
    s.setShelfItemSize(sender->doubleValue());
    postSettingsChanged();
}

void AppearancePane::edgeChanged(QComboBox *sender)
{
    s.setWindowEdge(sender->currentIndex());
    postSettingsChanged();
}

void AppearancePane::alignChanged(QComboBox *sender)
{
    s.setWindowAlignment(sender->currentIndex());
    postSettingsChanged();
}

void AppearancePane::nameDisplayChanged(QComboBox *sender)
{
    s.defaults.set(SettingsKey::fileNameDisplay, sender->currentIndex());
    postSettingsChanged();
}

void AppearancePane::hideExtChanged(QCheckBox *sender)
{
    s.defaults.set(SettingsKey::hideFileExtensions, sender->isChecked());
    postSettingsChanged();
}

void AppearancePane::noAnimChanged(QCheckBox *sender)
{
    s.defaults.set(SettingsKey::disableAnimations, sender->isChecked());
}
