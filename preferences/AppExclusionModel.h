// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QHash>
#include <QIcon>

class SystemAppearance;
class Workspace;

// What stands for one application in a list.
struct AppLabel {
    QString name;
    QIcon icon;
};

// The name and icon of the application with that identifier; one that is not installed is shown with its identifier
// and a question mark in `tint`.
AppLabel resolveApp(const QString &bundleIdentifier, const Workspace &workspace, const SystemAppearance &appearance,
                    const QColor &tint);

// The rows of a list of applications. An application is looked up when its row is first asked for, so that a long list
// costs what is seen of it.
class AppExclusionModel : public QAbstractListModel {
    Q_OBJECT

public:
    AppExclusionModel(const Workspace &workspace, const SystemAppearance &appearance, QObject *parent = nullptr);

    // Shows `ids`; rows that stay where they are keep what they were looked up as, and their selection.
    void setIds(const QStringList &ids);

    // Asks for every shown symbol again, in `tint`.
    void setTint(const QColor &tint);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    const AppLabel &label(const QString &id) const;

    const Workspace &workspace;
    const SystemAppearance &appearance;
    QStringList ids;
    QColor tint;
    mutable QHash<QString, AppLabel> labels;
};
