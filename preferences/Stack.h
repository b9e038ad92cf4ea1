// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QMargins;
class QVBoxLayout;
class QWidget;

// Lays out a view as a column of controls, each at the side where the language begins.
class Stack {
public:
    Stack(QWidget &view, const QMargins &margins, int spacing);

    void add(QWidget *control);

    // Adds `control` below a label, which also names it for a screen reader ...
    void addLabelled(const QString &title, QWidget *control);
    // ... over the whole width.
    void addLabelledWide(const QString &title, QWidget *control);

    void addSeparator();

    // Keeps what was added at the top.
    void addStretch();

private:
    void addLabelOf(QWidget &control, const QString &title);

    QWidget &view;
    QVBoxLayout *layout;
};
