// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

class MainQueue;
class Timer;

// The pace of a fade over its time.
enum class FadeCurve {
    Standard, // slow at both ends, cubic Bezier (0.25, 0.1) (0.25, 1)
    EaseOut,  // slow at the end, cubic Bezier (0, 0) (0.58, 1)
};

// Animates one alpha value. A new fade starts from the current value and ends the last one without its completion;
// destroying the fader does so too.
class Fader {
public:
    Fader(MainQueue &mainQueue, std::function<void(double)> setAlpha, double alpha);
    ~Fader();

    double alpha() const { return currentAlpha; }

    // Sets the value at once and ends any fade.
    void setAlpha(double alpha);

    // Fades to `alpha` over `seconds`, then calls `completion`.
    void fade(double alpha, double seconds, FadeCurve curve, std::function<void()> completion = {});

private:
    struct Run;
    void step();
    void apply(double alpha);

    MainQueue &mainQueue;
    std::function<void(double)> onAlpha;
    double currentAlpha;
    std::unique_ptr<Run> run;
    std::shared_ptr<Timer> timer;
};
