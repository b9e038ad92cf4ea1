// SPDX-License-Identifier: MIT
#pragma once

#include "FakeInput.h"

#include <QObject>
#include <QPoint>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>

// Simulates input over time. Queues what it is told and does it step by step while the main loop runs, in nested loops
// too. The pointer moves in small steps, as a user moves it.
class Hand : public QObject {
public:
    Hand();
    ~Hand() override;

    Hand &moveTo(const QPoint &position);
    // Moves the pointer back and forth until the condition is true.
    Hand &moveAboutUntil(std::function<bool()> condition);
    Hand &press(quint8 button = 1);
    Hand &release(quint8 button = 1);
    Hand &type(quint32 symbol);
    Hand &waitUntil(std::function<bool()> condition);
    Hand &then(std::function<void()> work);

    // Whether all steps are done.
    bool isIdle() const { return steps.empty(); }

    // The position of the pointer, in pixels on the root window.
    QPoint position() const;

private:
    void step();

    FakeInput input;
    std::shared_ptr<XcbConnection> connection;
    QTimer timer;
    std::deque<std::function<bool()>> steps; // each is called until it returns true
};
