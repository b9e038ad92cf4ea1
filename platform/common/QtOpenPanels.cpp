// SPDX-License-Identifier: MIT
#include "platform/common/QtOpenPanels.h"

#include <QFileDialog>
#include <QPointer>

std::optional<QUrl> QtOpenPanels::runModal(const OpenPanel &panel, QWidget *window)
{
    // Quitting during the dialog may delete the window, and the dialog with it.
    const QPointer<QFileDialog> dialog = new QFileDialog(window, panel.title);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setLabelText(QFileDialog::Accept, panel.prompt);
    // An application's entry is often a link, and the name of the link is the identifier.
    dialog->setOption(QFileDialog::DontResolveSymlinks);
    if (!panel.folders.isEmpty())
        dialog->setDirectoryUrl(panel.folders.first());
    const QList<QUrl> usualPlaces = dialog->sidebarUrls();
    dialog->setSidebarUrls(usualPlaces + panel.folders);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    const QList<QUrl> chosen = dialog && accepted ? dialog->selectedUrls() : QList<QUrl>();
    // Qt saves the sidebar of a dialog for all programs of the user. Restore it: our folders make no sense elsewhere.
    if (dialog)
        dialog->setSidebarUrls(usualPlaces);
    else
        QFileDialog().setSidebarUrls(usualPlaces);
    delete dialog;
    return chosen.isEmpty() ? std::nullopt : std::optional(chosen.first());
}
