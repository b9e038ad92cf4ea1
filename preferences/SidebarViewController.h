// SPDX-License-Identifier: MIT
#pragma once

#include "preferences/PrefPane.h"

#include <QListView>
#include <QStandardItemModel>
#include <QWidget>

#include <functional>

class SystemAppearance;

// The list of panes at the left of the preferences window.
class SidebarViewController : public QWidget {
    Q_OBJECT

public:
    struct Row {
        const char *title; // in the sources' language
        QString icon;      // a symbol's name
        PrefPane pane;
    };

    static const QList<Row> &rows();

    explicit SidebarViewController(const SystemAppearance &appearance, QWidget *parent = nullptr);

    // Reads every row's title and symbol again.
    void reload();

    // Selects the row of `pane` without calling back; does nothing when no row has it.
    void selectSilently(PrefPane pane);

    // Called when the user has selected a pane.
    std::function<void(PrefPane pane)> onSelect;

    QListView *tableView;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void selectionChanged();

    const SystemAppearance &appearance;
    QStandardItemModel *model;
    bool suppressSelectionCallback = false;
};
