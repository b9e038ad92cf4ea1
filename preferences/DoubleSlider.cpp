// SPDX-License-Identifier: MIT
#include "preferences/DoubleSlider.h"

#include "preferences/Controls.h"

#include <QAccessibleWidget>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int kStepsOfOneKey = 10;
constexpr int kPagesOfTheRange = 10;
constexpr double kNegligible = 1e-9; // part of the range: a value and its knob position differ by rounding only

// Gives a screen reader the value instead of the knob's position.
class AccessibleDoubleSlider : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleDoubleSlider(DoubleSlider &control)
        : QAccessibleWidget(&control, QAccessible::Slider)
        , slider(control)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QVariant currentValue() const override { return slider.doubleValue(); }
    void setCurrentValue(const QVariant &value) override { slider.chooseDoubleValue(value.toDouble()); }
    QVariant maximumValue() const override { return slider.maximumValue; }
    QVariant minimumValue() const override { return slider.minimumValue; }
    QVariant minimumStepSize() const override
    {
        return (slider.maximumValue - slider.minimumValue) * slider.singleStep() / slider.maximum();
    }

private:
    DoubleSlider &slider;
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *slider = qobject_cast<DoubleSlider *>(object);
    return slider ? new AccessibleDoubleSlider(*slider) : nullptr;
}

} // namespace

DoubleSlider::DoubleSlider(double lowest, double highest, int steps, QWidget *parent)
    : QSlider(Qt::Horizontal, parent)
    , minimumValue(lowest)
    , maximumValue(highest)
{
    static const bool kInstalled = [] {
        QAccessible::installFactory(makeAccessible);
        return true;
    }();
    Q_UNUSED(kInstalled)
    setRange(0, steps);
    setSingleStep(kStepsOfOneKey);
    setPageStep(steps / kPagesOfTheRange);
    guardFromWheel(*this);
    connect(this, &QSlider::valueChanged, this, [this] {
        isApproximate = false;
        emit reported();
    });
    connect(this, &QSlider::actionTriggered, this, [this] {
        if (sliderPosition() == value())
            reportShown();
    });
    connect(this, &QSlider::sliderReleased, this, &DoubleSlider::reportShown);
}

void DoubleSlider::reportShown()
{
    if (std::exchange(isApproximate, false))
        emit reported();
}

double DoubleSlider::doubleValue() const
{
    return minimumValue + (maximumValue - minimumValue) * value() / maximum();
}

int DoubleSlider::placeOf(double value) const
{
    const double place = (std::clamp(value, minimumValue, maximumValue) - minimumValue) / (maximumValue - minimumValue);
    return static_cast<int>(std::lround(place * maximum()));
}

void DoubleSlider::setDoubleValue(double value)
{
    if (std::isnan(value))
        return;
    setValue(placeOf(value));
    isApproximate = std::abs(value - doubleValue()) > (maximumValue - minimumValue) * kNegligible;
}

void DoubleSlider::chooseDoubleValue(double value)
{
    if (std::isnan(value))
        return;
    setValue(placeOf(value));
    reportShown();
}
