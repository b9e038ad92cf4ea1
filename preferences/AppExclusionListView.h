// SPDX-License-Identifier: MIT
#pragma once

#include <QListView>
#include <QStringList>
#include <QToolButton>
#include <QWidget>

#include <functional>

class AppExclusionModel;
struct Platform;

// A list of applications, to which the user adds one from disk and from which he removes the selected one.
class AppExclusionListView : public QWidget {
    Q_OBJECT

public:
    using OnChange = std::function<void(const QStringList &ids)>;

    // `changed` is called with the whole list after each change.
    AppExclusionListView(const QStringList &initialIds, OnChange changed, Platform &platform,
                         QWidget *parent = nullptr);

    // Appends the application that the user picks. Nothing when he picks none, a file that is no application, or one
    // that is in the list, nor while he is picking already.
    void addApp();

    // Removes the selected application; nothing when none is selected. The next one is then selected, if there is one.
    void removeApp();

    QStringList ids; // bundle identifiers
    OnChange onChange;
    QListView *tableView;
    QToolButton *addBtn;
    QToolButton *removeBtn;

protected:
    void changeEvent(QEvent *event) override;

private:
    void changed();

    Platform &platform;
    AppExclusionModel *model;
    bool isChoosing = false; // the open panel is on screen
};
