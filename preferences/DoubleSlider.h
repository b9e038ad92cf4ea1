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

signals:
    // doubleValue() is another one, or stands from here on for a value outside the range, at whose end the knob was put
    // where it was already.
    void reported();

private:
    void reportEnd();

    bool isOutside = false; // the value that was set last lies outside the range
};
