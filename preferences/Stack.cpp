// SPDX-License-Identifier: MIT
#include "preferences/Stack.h"

#include "preferences/Controls.h"

#include <QVBoxLayout>

Stack::Stack(QWidget &viewToFill, const QMargins &margins, int spacing)
    : view(viewToFill)
    , layout(new QVBoxLayout(&view))
{
    layout->setContentsMargins(margins);
    layout->setSpacing(spacing);
}

void Stack::add(QWidget *control)
{
    layout->addWidget(control, 0, Qt::AlignLeft);
}

void Stack::addLabelled(const QString &title, QWidget *control)
{
    addLabelOf(*control, title);
    add(control);
}

void Stack::addLabelledWide(const QString &title, QWidget *control)
{
    addLabelOf(*control, title);
    layout->addWidget(control);
}

void Stack::addLabelOf(QWidget &control, const QString &title)
{
    QLabel *label = fieldLabel(title, &view);
    setLabel(*label, control);
    add(label);
}

void Stack::addSeparator()
{
    layout->addWidget(new Separator(&view));
}

void Stack::addStretch()
{
    layout->addStretch();
}
