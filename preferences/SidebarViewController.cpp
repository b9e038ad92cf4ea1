// SPDX-License-Identifier: MIT
#include "preferences/SidebarViewController.h"

#include "platform/SystemAppearance.h"
#include "preferences/Controls.h"
#include "preferences/SidebarCell.h"

#include <QEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr float kBackgroundAlpha = 0.045F; // applied to the text colour

} // namespace

const QList<SidebarViewController::Row> &SidebarViewController::rows()
{
    static const QList<Row> kRows = {
        //: The rows of the sidebar have room for about 18 letters.
        {QT_TR_NOOP("Welcome"), QStringLiteral("hand.wave"), PrefPane::welcome},
        {QT_TR_NOOP("General"), QStringLiteral("gearshape"), PrefPane::general},
        {QT_TR_NOOP("Behavior"), QStringLiteral("rectangle.on.rectangle"), PrefPane::behavior},
        {QT_TR_NOOP("Appearance"), QStringLiteral("paintpalette"), PrefPane::appearance},
        {QT_TR_NOOP("About"), QStringLiteral("info.circle"), PrefPane::about},
    };
    return kRows;
}

SidebarViewController::SidebarViewController(const SystemAppearance &systemAppearance, QWidget *parent)
    : QWidget(parent)
    , tableView(new QListView(this))
    , appearance(systemAppearance)
    , model(new QStandardItemModel(static_cast<int>(rows().size()), 1, this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tableView);

    tableView->setModel(model);
    tableView->setItemDelegate(new SidebarCell(this));
    tableView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tableView->setUniformItemSizes(true);
    tableView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tableView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tableView->setFrameShape(QFrame::NoFrame);
    tableView->viewport()->setAutoFillBackground(false);
    tableView->setFont(systemFont(kLabelSize));
    tableView->setAccessibleName(tr("Panes"));
    reload();
    selectSilently(PrefPane::welcome);
    connect(tableView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &SidebarViewController::selectionChanged);
}

void SidebarViewController::reload()
{
    const QColor normal = secondaryLabelColor(palette());
    const QColor selected = palette().color(QPalette::HighlightedText);
    for (int i = 0; i < rows().size(); ++i) {
        const Row &row = rows().at(i);
        QStandardItem *item = model->item(i);
        if (!item) {
            item = new QStandardItem;
            model->setItem(i, item);
        }
        item->setText(tr(row.title));
        item->setIcon(appearance.symbol(row.icon, normal));
        item->setData(appearance.symbol(row.icon, selected), SidebarCell::kSelectedSymbolRole);
    }
}

void SidebarViewController::selectSilently(PrefPane pane)
{
    const auto row = std::find_if(rows().begin(), rows().end(), [pane](const Row &r) { return r.pane == pane; });
    if (row == rows().end())
        return;
    const QModelIndex index = model->index(static_cast<int>(row - rows().begin()), 0);
    suppressSelectionCallback = true;
    tableView->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    suppressSelectionCallback = false;
}

void SidebarViewController::selectionChanged()
{
    if (suppressSelectionCallback)
        return;
    const QModelIndexList selected = tableView->selectionModel()->selectedRows();
    if (selected.isEmpty() || !onSelect)
        return;
    onSelect(rows().at(selected.first().row()).pane);
}

bool SidebarViewController::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    // Symbols use the palette's colours, which differ between active and inactive windows.
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::WindowActivate ||
        event->type() == QEvent::WindowDeactivate)
        reload();
    return handled;
}

void SidebarViewController::paintEvent(QPaintEvent *)
{
    // Slightly different from the panes, in light and in dark colours.
    QColor shade = palette().color(QPalette::WindowText);
    shade.setAlphaF(kBackgroundAlpha);
    QPainter painter(this);
    painter.fillRect(rect(), shade);
}
