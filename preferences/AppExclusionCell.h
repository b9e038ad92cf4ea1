// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

// Draws one row of the list of excluded applications: icon, name, and a thin line below.
class AppExclusionCell : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
