// SPDX-License-Identifier: MIT
#include "tests/contracts/Dialogs.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>

bool pressButton(const QString &title)
{
    const QWidget *dialog = QApplication::activeModalWidget();
    if (!dialog)
        return false;
    for (QAbstractButton *button : dialog->findChildren<QAbstractButton *>()) {
        if (button->text().remove(QLatin1Char('&')) == title) {
            button->click();
            return true;
        }
    }
    return false;
}

bool cancelDialog()
{
    auto *const dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (dialog)
        dialog->reject();
    return dialog != nullptr;
}
