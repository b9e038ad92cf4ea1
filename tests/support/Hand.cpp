// SPDX-License-Identifier: MIT
#include "Hand.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int kStepMilliseconds = 8;
constexpr int kStepPixels = 20;

} // namespace

Hand::Hand()
    : connection(XcbConnection::open(nullptr))
{
    timer.setInterval(kStepMilliseconds);
    connect(&timer, &QTimer::timeout, this, [this] { step(); });
}

Hand::~Hand() = default;

Hand &Hand::moveTo(const QPoint &target)
{
    return waitUntil([this, target] {
        const QPoint from = position();
        const QPoint way = target - from;
        if (way.isNull())
            return true;
        input.pointerMotion(from + QPoint(std::clamp(way.x(), -kStepPixels, kStepPixels),
                                          std::clamp(way.y(), -kStepPixels, kStepPixels)));
        return false;
    });
}

Hand &Hand::moveAboutUntil(std::function<bool()> condition)
{
    return waitUntil([this, condition = std::move(condition), way = QPoint(kStepPixels, kStepPixels)]() mutable {
        if (condition())
            return true;
        input.pointerMotion(position() + way);
        way = -way;
        return false;
    });
}

Hand &Hand::press(quint8 button)
{
    return then([this, button] { input.pointerButtonPressed(button); });
}

Hand &Hand::release(quint8 button)
{
    return then([this, button] { input.pointerButtonReleased(button); });
}

Hand &Hand::type(quint32 symbol)
{
    return then([this, symbol] {
        input.keyPressed(symbol);
        input.keyReleased(symbol);
    });
}

Hand &Hand::waitUntil(std::function<bool()> condition)
{
    steps.push_back(std::move(condition));
    timer.start();
    return *this;
}

Hand &Hand::then(std::function<void()> work)
{
    return waitUntil([work = std::move(work)] {
        work();
        return true;
    });
}

QPoint Hand::position() const
{
    const auto pointer =
        connection->reply(xcb_query_pointer_reply, xcb_query_pointer(connection->get(), connection->root()));
    return pointer ? QPoint(pointer->root_x, pointer->root_y) : QPoint();
}

void Hand::step()
{
    if (steps.empty()) {
        timer.stop();
        return;
    }
    // A step may add other steps, and run a nested loop that calls this function again.
    auto current = std::move(steps.front());
    steps.pop_front();
    if (!current())
        steps.push_front(std::move(current));
}
