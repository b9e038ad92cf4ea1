// SPDX-License-Identifier: MIT
#pragma once

#include "preferences/AppExclusionListView.h"
#include "preferences/AppExclusionModel.h"
#include "tests/preferences/Fixture.h"

#include <QIcon>
#include <QPixmap>
#include <QTest>

using namespace Qt::StringLiterals;

// The list of excluded applications in a window of its own.
struct ListFixture : Fixture {
    AppExclusionListView &load(const QStringList &ids)
    {
        window = std::make_unique<QWidget>();
        window->resize(471, 280);
        view = new AppExclusionListView(
            ids, [this](const QStringList &changed) { changes.append(changed); }, virtualPlatform.platform,
            window.get());
        view->resize(471, 280);
        window->show();
        return *view;
    }

    // The user picks the application with this identifier.
    void pick(const QString &id)
    {
        const QUrl file = QUrl::fromLocalFile(u"/Applications/"_s + id);
        virtualPlatform.workspace.identifiers.insert(file, id);
        virtualPlatform.openPanels.choice = file;
        pressAdd();
    }

    void pressAdd()
    {
        view->addBtn->click();
        QCoreApplication::sendPostedEvents(view, QEvent::MetaCall);
    }

    void select(int row) { view->tableView->setCurrentIndex(view->tableView->model()->index(row, 0)); }

    QList<int> selectedRows() const
    {
        QList<int> rows;
        for (const QModelIndex &index : view->tableView->selectionModel()->selectedRows())
            rows.append(index.row());
        return rows;
    }

    QStringList names() const
    {
        QStringList list;
        for (int i = 0; i < view->tableView->model()->rowCount(); ++i)
            list.append(view->tableView->model()->index(i, 0).data().toString());
        return list;
    }

    AppExclusionListView *view = nullptr;
    QList<QStringList> changes;
};

inline const QString kFirst = u"org.first"_s;
inline const QString kSecond = u"org.second"_s;
inline const QString kThird = u"org.third"_s;

inline QIcon square(const QColor &color)
{
    QPixmap pixmap(64, 64);
    pixmap.fill(color);
    return QIcon(pixmap);
}
