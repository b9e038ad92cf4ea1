// SPDX-License-Identifier: MIT
#include "shelf/Fader.h"

#include "platform/MainQueue.h"

#include <QEasingCurve>
#include <QPointF>

#include <algorithm>

namespace {

constexpr double kFrame = 1.0 / 60.0; // seconds between two steps

QEasingCurve easing(FadeCurve curve)
{
    QEasingCurve easing(QEasingCurve::BezierSpline);
    switch (curve) {
    case FadeCurve::Standard:
        easing.addCubicBezierSegment(QPointF(0.25, 0.1), QPointF(0.25, 1), QPointF(1, 1));
        break;
    case FadeCurve::EaseOut:
        easing.addCubicBezierSegment(QPointF(0, 0), QPointF(0.58, 1), QPointF(1, 1));
        break;
    }
    return easing;
}

} // namespace

struct Fader::Run {
    double from;
    double to;
    double start;
    double seconds;
    QEasingCurve easing;
    std::function<void()> completion;
};

Fader::Fader(MainQueue &queue, std::function<void(double)> setAlpha, double alpha)
    : mainQueue(queue)
    , onAlpha(std::move(setAlpha))
    , currentAlpha(alpha)
{
}

Fader::~Fader()
{
    if (timer)
        timer->invalidate();
}

void Fader::setAlpha(double alpha)
{
    if (timer)
        timer->invalidate();
    run.reset();
    apply(alpha);
}

void Fader::fade(double alpha, double seconds, FadeCurve curve, std::function<void()> completion)
{
    if (timer)
        timer->invalidate();
    run =
        std::make_unique<Run>(Run{currentAlpha, alpha, mainQueue.now(), seconds, easing(curve), std::move(completion)});
    timer = mainQueue.after(std::min(kFrame, seconds), [this] { step(); });
}

void Fader::step()
{
    // A step that is due within a rounding error of the end is the last one.
    constexpr double kTolerance = 1e-6;
    const double elapsed = mainQueue.now() - run->start;
    const double left = run->seconds - elapsed;
    if (left > kTolerance) {
        timer = mainQueue.after(std::min(kFrame, left), [this] { step(); });
        apply(run->from + (run->to - run->from) * run->easing.valueForProgress(elapsed / run->seconds));
        return;
    }
    const std::unique_ptr<Run> finished = std::move(run);
    apply(finished->to);
    // Call the completion last: it may destroy this fader.
    if (finished->completion)
        finished->completion();
}

void Fader::apply(double alpha)
{
    currentAlpha = alpha;
    onAlpha(alpha);
}
