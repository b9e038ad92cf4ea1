// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QHash>
#include <QIcon>

class SystemAppearance;
class Workspace;

// How a list shows one application.
struct AppLabel {
    QString name;
    QIcon icon;
};

// The name and icon of the application with that identifier. One that is not installed has its identifier as name, and
// a question mark in `tint`.
AppLabel resolveApp(const QString &bundleIdentifier, const Workspace &workspace, const SystemAppearance &appearance,
                    const QColor &tint);

// The rows of a list of applications. It looks up an application when its row is first requested, so a long list costs
// only its visible rows.
class AppExclusionModel : public QAbstractListModel {
    Q_OBJECT

public:
    AppExclusionModel(const Workspace &workspace, const SystemAppearance &appearance, QObject *parent = nullptr);

    // Shows `ids`. Unchanged rows keep their name, icon and selection.
    void setIds(const QStringList &ids);

    // Makes every shown symbol again, in `tint`.
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
