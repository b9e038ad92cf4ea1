// SPDX-License-Identifier: MIT
#include "preferences/AppExclusionModel.h"

#include "platform/SystemAppearance.h"
#include "platform/Workspace.h"

#include <algorithm>

namespace {

const QString kUnknownApp = QStringLiteral("questionmark.app");

} // namespace

AppLabel resolveApp(const QString &bundleIdentifier, const Workspace &workspace, const SystemAppearance &appearance,
                    const QColor &tint)
{
    const auto application = workspace.application(bundleIdentifier);
    if (!application)
        return {bundleIdentifier, appearance.symbol(kUnknownApp, tint)};
    // An application may have neither.
    return {application->name.isEmpty() ? bundleIdentifier : application->name,
            application->icon.isNull() ? appearance.symbol(kUnknownApp, tint) : application->icon};
}

AppExclusionModel::AppExclusionModel(const Workspace &sharedWorkspace, const SystemAppearance &systemAppearance,
                                     QObject *parent)
    : QAbstractListModel(parent)
    , workspace(sharedWorkspace)
    , appearance(systemAppearance)
{
}

void AppExclusionModel::setIds(const QStringList &newIds)
{
    const auto [oldEnd, newEnd] = std::mismatch(ids.cbegin(), ids.cend(), newIds.cbegin(), newIds.cend());
    const int first = static_cast<int>(oldEnd - ids.cbegin());
    const int kept = static_cast<int>(std::mismatch(ids.crbegin(), QStringList::const_reverse_iterator(oldEnd),
                                                    newIds.crbegin(), QStringList::const_reverse_iterator(newEnd))
                                          .first -
                                      ids.crbegin());
    const int oldLast = static_cast<int>(ids.size()) - kept - 1;
    const int newLast = static_cast<int>(newIds.size()) - kept - 1;
    if (oldLast >= first) {
        beginRemoveRows({}, first, oldLast);
        ids.erase(ids.begin() + first, ids.begin() + oldLast + 1);
        endRemoveRows();
    }
    if (newLast >= first) {
        beginInsertRows({}, first, newLast);
        ids = newIds;
        endInsertRows();
    }
}

void AppExclusionModel::setTint(const QColor &newTint)
{
    if (tint == newTint)
        return;
    tint = newTint;
    labels.clear();
    if (!ids.isEmpty())
        emit dataChanged(index(0), index(static_cast<int>(ids.size()) - 1), {Qt::DecorationRole});
}

int AppExclusionModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(ids.size());
}

QVariant AppExclusionModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return label(ids.at(index.row())).name;
    case Qt::DecorationRole:
        return label(ids.at(index.row())).icon;
    default:
        return {};
    }
}

const AppLabel &AppExclusionModel::label(const QString &id) const
{
    const auto known = labels.constFind(id);
    if (known != labels.constEnd())
        return *known;
    return *labels.insert(id, resolveApp(id, workspace, appearance, tint));
}
