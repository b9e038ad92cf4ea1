// SPDX-License-Identifier: MIT
#include "shelf/ShelfAccessibility.h"

#include "shelf/DropViews.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfStackView.h"
#include "shelf/TileViews.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QVariant>

#include <algorithm>

namespace {

constexpr auto kRole = "accessibleRole";
const QString kOpen = QStringLiteral("open");
const QString kRemove = QStringLiteral("remove");

struct ShelfAccessibility {
    Q_DECLARE_TR_FUNCTIONS(ShelfAccessibility)
};

// A view of which a screen reader meets only some of the views in it.
class AccessibleView : public QAccessibleWidget {
public:
    AccessibleView(QWidget *view, QAccessible::Role role)
        : QAccessibleWidget(view, role)
    {
    }

    int childCount() const override { return static_cast<int>(children().size()); }

    QAccessibleInterface *child(int index) const override
    {
        return QAccessible::queryAccessibleInterface(children().value(index));
    }

    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return static_cast<int>(children().indexOf(qobject_cast<QWidget *>(child->object())));
    }

protected:
    // Those that have a role, unless a kind of view knows better.
    virtual QList<QWidget *> children() const
    {
        QList<QWidget *> met;
        for (QObject *child : widget()->children()) {
            if (child->isWidgetType() && (child->property(kRole).isValid() || hasOwnRole(child)))
                met.append(static_cast<QWidget *>(child));
        }
        return met;
    }

private:
    static bool hasOwnRole(const QObject *child)
    {
        return child->inherits("QAbstractButton") || child->inherits("QLabel") || child->inherits("ShelfScrollView");
    }
};

class AccessibleTile : public AccessibleView {
public:
    explicit AccessibleTile(ShelfItemView *view)
        : AccessibleView(view, QAccessible::ListItem)
        , tile(view)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Description)
            return tile->fileURL.toDisplayString(QUrl::PreferLocalFile);
        return AccessibleView::text(kind);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = AccessibleView::state();
        state.selectable = true;
        state.selected = tile->isSelected;
        return state;
    }

    QStringList actionNames() const override { return {pressAction(), kOpen, kRemove}; }

    QString localizedActionName(const QString &name) const override
    {
        if (name == kOpen)
            return ShelfAccessibility::tr("Open");
        return name == kRemove ? ShelfAccessibility::tr("Remove") : AccessibleView::localizedActionName(name);
    }

    void doAction(const QString &name) override
    {
        if (name == kOpen)
            tile->open();
        else if (name == kRemove)
            tile->removeBtn->click();
        else if (name == pressAction() && tile->onSelect)
            tile->onSelect();
    }

private:
    ShelfItemView *tile;
};

class AccessibleStack : public AccessibleView {
public:
    explicit AccessibleStack(ShelfStackView *view)
        : AccessibleView(view, QAccessible::List)
        , stack(view)
    {
    }

    // The view that scrolls it is one with its list, whatever lies between them.
    QAccessibleInterface *parent() const override
    {
        QWidget *view = stack->parentWidget();
        while (view && !qobject_cast<ShelfScrollView *>(view))
            view = view->parentWidget();
        return view ? QAccessible::queryAccessibleInterface(view) : AccessibleView::parent();
    }

protected:
    QList<QWidget *> children() const override
    {
        const auto &tiles = stack->arrangedSubviews();
        return {tiles.begin(), tiles.end()};
    }

private:
    ShelfStackView *stack;
};

class AccessibleScrollView : public AccessibleView {
public:
    explicit AccessibleScrollView(ShelfScrollView *scrollView)
        : AccessibleView(scrollView, QAccessible::Pane)
        , view(scrollView)
    {
    }

protected:
    QList<QWidget *> children() const override
    {
        return view->widget() ? QList<QWidget *>{view->widget()} : QList<QWidget *>();
    }

private:
    ShelfScrollView *view;
};

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    if (auto *tile = qobject_cast<ShelfItemView *>(object))
        return new AccessibleTile(tile);
    if (auto *stack = qobject_cast<ShelfStackView *>(object))
        return new AccessibleStack(stack);
    if (auto *scrollView = qobject_cast<ShelfScrollView *>(object))
        return new AccessibleScrollView(scrollView);
    const QVariant role = object ? object->property(kRole) : QVariant();
    if (object && role.isValid() && object->isWidgetType())
        return new AccessibleView(static_cast<QWidget *>(object), static_cast<QAccessible::Role>(role.toInt()));
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

void setAccessibleRole(QWidget &view, QAccessible::Role role)
{
    view.setProperty(kRole, static_cast<int>(role));
}
