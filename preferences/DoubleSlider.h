// SPDX-License-Identifier: MIT
#pragma once

#include <QSlider>

// A slider over a range of doubles. It reports while it is dragged.
class DoubleSlider : public QSlider {
    Q_OBJECT

public:
    // `steps` is how many places the knob can take between the two ends.
    DoubleSlider(double minimum, double maximum, int steps, QWidget *parent);

    const double minimumValue;
    const double maximumValue;

    double doubleValue() const;

    // Moves the knob to the place nearest to `value`; one outside the range goes to its nearer end.
    void setDoubleValue(double value);

    // Does the same for the user, as a screen reader asks for it: the value is then the one that is shown.
    void chooseDoubleValue(double value);

signals:
    // doubleValue() is another one. Also when the user chose the place where the knob stands for a value that has no
    // place of its own: what is shown is from here on what he wants.
    void reported();

private:
    int placeOf(double value) const;
    void reportShown();

    bool isApproximate = false; // the value that was set last is not the one that is shown
};
