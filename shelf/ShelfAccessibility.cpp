// SPDX-License-Identifier: MIT
#include "shelf/ShelfAccessibility.h"

#include "shelf/ShelfItemView.h"
#include "shelf/ShelfStackView.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace {

class AccessibleTile : public QAccessibleWidget {
public:
    explicit AccessibleTile(ShelfItemView *view)
        : QAccessibleWidget(view, QAccessible::ListItem)
        , tile(view)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Description)
            return tile->fileURL.toDisplayString(QUrl::PreferLocalFile);
        return QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = tile->isSelected;
        return state;
    }

    QStringList actionNames() const override { return {pressAction()}; }

    void doAction(const QString &name) override
    {
        if (name == pressAction() && tile->onSelect)
            tile->onSelect();
    }

private:
    ShelfItemView *tile;
};

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    if (auto *tile = qobject_cast<ShelfItemView *>(object))
        return new AccessibleTile(tile);
    if (auto *stack = qobject_cast<ShelfStackView *>(object))
        return new QAccessibleWidget(stack, QAccessible::List, stack->accessibleName());
    return nullptr;
}

} // namespace

void installShelfAccessibility()
{
    // Qt would ask a factory twice that is installed twice.
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(installed)
}
