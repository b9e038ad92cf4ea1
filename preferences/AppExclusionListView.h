// SPDX-License-Identifier: MIT
#pragma once

#include <QListView>
#include <QStringList>
#include <QToolButton>
#include <QWidget>

#include <functional>

class AppExclusionModel;
struct Platform;

// A list of applications. The user adds one from the disk and removes the selected one.
class AppExclusionListView : public QWidget {
    Q_OBJECT

public:
    using OnChange = std::function<void(const QStringList &ids)>;

    // `changed` is called with the whole list after each change.
    AppExclusionListView(const QStringList &initialIds, OnChange changed, Platform &platform,
                         QWidget *parent = nullptr);

    // Asks for an application and appends it. Does nothing when the user cancels, picks a file that is no application
    // or one in the list, or is already being asked.
    void addApp();

    // Removes the selected application, if there is one, and selects the next one.
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
