// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

class MainQueue;
class Timer;

// The pace of a fade: how the way from start to end is spread over its time.
enum class FadeCurve {
    Standard, // slow at both ends, cubic Bezier (0.25, 0.1) (0.25, 1)
    EaseOut,  // slow at the end, cubic Bezier (0, 0) (0.58, 1)
};

// Moves one alpha value over time. A new fade takes over from where the last one stands, whose completion is then
// not called; destroying the fader ends its fade the same way.
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
