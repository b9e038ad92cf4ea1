// SPDX-License-Identifier: MIT
#pragma once

#include <QSlider>

// A slider over a range of doubles. It reports while it is dragged.
class DoubleSlider : public QSlider {
    Q_OBJECT

public:
    // `steps` is the number of knob positions between the two ends.
    DoubleSlider(double minimum, double maximum, int steps, QWidget *parent);

    const double minimumValue;
    const double maximumValue;

    double doubleValue() const;

    // Moves the knob to the position nearest to `value`, which is clamped to the range.
    void setDoubleValue(double value);

    // The same, on behalf of the user, for a screen reader: the shown value becomes the chosen one, and is reported.
    void chooseDoubleValue(double value);

signals:
    // doubleValue() is another one. Also when the user chose the place where the knob stands for a value that has no
    // place of its own: what is shown is from here on what he wants.
    void reported();

private:
    int placeOf(double value) const;
    void reportShown();

    bool isApproximate = false; // the knob cannot show the value that was set last
};
