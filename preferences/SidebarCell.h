// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

// Draws one row of the sidebar: a symbol and a title on the style's own selection.
class SidebarCell : public QStyledItemDelegate {
    Q_OBJECT

public:
    // The model's role for the symbol on a selected row; the symbol on any other is the decoration.
    static constexpr int kSelectedSymbolRole = Qt::UserRole;

    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
