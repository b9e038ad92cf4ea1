// SPDX-License-Identifier: MIT
#include "platform/common/QtOpenPanels.h"

#include <QFileDialog>
#include <QPointer>

std::optional<QUrl> QtOpenPanels::runModal(const OpenPanel &panel, QWidget *window)
{
    // Quitting can take the window away, and the dialog with it, while the dialog is open.
    const QPointer<QFileDialog> dialog = new QFileDialog(window, panel.title);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setLabelText(QFileDialog::Accept, panel.prompt);
    // An application's entry is often a link; what it is called is the link's name.
    dialog->setOption(QFileDialog::DontResolveSymlinks);
    if (!panel.folders.isEmpty())
        dialog->setDirectoryUrl(panel.folders.first());
    const QList<QUrl> usualPlaces = dialog->sidebarUrls();
    dialog->setSidebarUrls(usualPlaces + panel.folders);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    const QList<QUrl> chosen = dialog && accepted ? dialog->selectedUrls() : QList<QUrl>();
    // A dialog that goes leaves its places to every program of this user, whom these would only puzzle elsewhere.
    if (dialog)
        dialog->setSidebarUrls(usualPlaces);
    else
        QFileDialog().setSidebarUrls(usualPlaces);
    delete dialog;
    return chosen.isEmpty() ? std::nullopt : std::optional(chosen.first());
}
