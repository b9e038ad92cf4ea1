// SPDX-License-Identifier: MIT
#pragma once

#include "FakeInput.h"

#include <QObject>
#include <QPoint>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>

// Input that happens by and by. What it is told is queued and done step by step while the main loop turns, nested loops
// too; the pointer moves in small steps, as a hand moves it.
class Hand : public QObject {
public:
    Hand();
    ~Hand() override;

    Hand &moveTo(const QPoint &position);
    // Moves to and fro until the condition holds.
    Hand &moveAboutUntil(std::function<bool()> condition);
    Hand &press(quint8 button = 1);
    Hand &release(quint8 button = 1);
    Hand &type(quint32 symbol);
    Hand &waitUntil(std::function<bool()> condition);
    Hand &then(std::function<void()> work);

    // Whether everything has been done.
    bool isIdle() const { return steps.empty(); }

    // The pointer now, in pixels on the root window.
    QPoint position() const;

private:
    void step();

    FakeInput input;
    std::shared_ptr<XcbConnection> connection;
    QTimer timer;
    std::deque<std::function<bool()>> steps; // each is called until it answers that it is done
};
