// SPDX-License-Identifier: MIT
#include "preferences/AppExclusionListView.h"

#include "platform/Platform.h"
#include "preferences/AppExclusionCell.h"
#include "preferences/AppExclusionModel.h"
#include "preferences/Controls.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPointer>
#include <QVBoxLayout>

namespace {

// Points.
constexpr int kButtonSize = 24;
constexpr int kButtonSpacing = 2;
constexpr int kButtonGap = 4; // between the list and the buttons

QToolButton *squareButton(const QString &title, const QString &description, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setText(title);
    button->setFixedSize(kButtonSize, kButtonSize);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setAccessibleDescription(description);
    return button;
}

} // namespace

AppExclusionListView::AppExclusionListView(const QStringList &initialIds, OnChange changeCallback, Platform &services,
                                           QWidget *parent)
    : QWidget(parent)
    , ids(initialIds)
    , onChange(std::move(changeCallback))
    , tableView(new QListView(this))
    , addBtn(squareButton(QStringLiteral("+"), tr("Add application"), this))
    , removeBtn(squareButton(QStringLiteral("\u2212"), tr("Remove application"), this))
    , platform(services)
    , model(new AppExclusionModel(*platform.workspace, *platform.appearance, this))
{
    model->setTint(secondaryLabelColor(palette(), QPalette::Text));
    model->setIds(ids);
    tableView->setModel(model);
    tableView->setItemDelegate(new AppExclusionCell(this));
    tableView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // Otherwise the view would ask every row for its size, and so look up every application.
    tableView->setUniformItemSizes(true);
    tableView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tableView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    tableView->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    tableView->setFont(systemFont(kLabelSize));

    // Open the panel in a later turn: a screen reader waits until its press has returned.
    connect(addBtn, &QToolButton::clicked, this, &AppExclusionListView::addApp, Qt::QueuedConnection);
    connect(removeBtn, &QToolButton::clicked, this, &AppExclusionListView::removeApp);

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(kButtonSpacing);
    buttons->addWidget(addBtn);
    buttons->addWidget(removeBtn);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kButtonGap);
    layout->addWidget(tableView);
    layout->addLayout(buttons);
}

void AppExclusionListView::addApp()
{
    if (isChoosing)
        return;
    isChoosing = true;
    const QPointer<AppExclusionListView> self = this;
    const auto chosen = platform.openPanels->runModal(
        {.title = tr("Add application"), .prompt = tr("Add"), .folders = platform.workspace->applicationsFolders()},
        window());
    if (!self)
        return;
    isChoosing = false;
    if (!chosen)
        return;
    const auto id = platform.workspace->bundleIdentifier(*chosen);
    if (!id || id->isEmpty() || ids.contains(*id))
        return;
    ids.append(*id);
    changed();
}

void AppExclusionListView::removeApp()
{
    const QModelIndexList selected = tableView->selectionModel()->selectedRows();
    if (selected.isEmpty())
        return;
    const int row = selected.first().row();
    ids.removeAt(row);
    changed();
    // After the last row was removed, select none: otherwise another press would remove an application above that the
    // user did not select.
    if (row >= ids.size())
        tableView->clearSelection();
}

void AppExclusionListView::changed()
{
    if (onChange)
        onChange(ids);
    model->setIds(ids);
}

void AppExclusionListView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        model->setTint(secondaryLabelColor(palette(), QPalette::Text));
}
