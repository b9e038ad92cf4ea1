// SPDX-License-Identifier: MIT
#include "app/MainMenu.h"

#include <QAction>
#include <QApplication>
#include <QCoreApplication>
#include <QMetaMethod>

namespace {

struct MainMenu {
    Q_DECLARE_TR_FUNCTIONS(MainMenu)
};

// Invokes the slot `action` of the first object that has it, from the view with the focus outwards. The name may end in
// a colon, as on the Mac for actions with a sender.
void sendAction(const char *action)
{
    QObject *responder = QApplication::focusWidget();
    if (!responder)
        responder = QApplication::activeWindow();
    const QByteArray name = QByteArray(action).replace(':', QByteArray());
    const QByteArray signature = name + "()";
    for (; responder; responder = responder->parent()) {
        if (responder->metaObject()->indexOfMethod(signature.constData()) >= 0) {
            QMetaObject::invokeMethod(responder, name.constData());
            return;
        }
    }
}

void addItem(QMenu *menu, const QString &title, const char *action, const QKeySequence &key)
{
    QAction *item = menu->addAction(title);
    item->setObjectName(QLatin1String(action));
    item->setShortcut(key);
    QObject::connect(item, &QAction::triggered, menu, [action] { sendAction(action); });
}

} // namespace

std::unique_ptr<QMenu> buildMainMenu()
{
    auto mainMenu = std::make_unique<QMenu>();
    //: This menu is shown on macOS only, so please use Apple's words in it.
    QMenu *edit = mainMenu->addMenu(MainMenu::tr("Edit"));
    addItem(edit, MainMenu::tr("Undo"), "undo", Qt::CTRL | Qt::Key_Z);
    addItem(edit, MainMenu::tr("Redo"), "redo", Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
    edit->addSeparator();
    addItem(edit, MainMenu::tr("Cut"), "cut:", Qt::CTRL | Qt::Key_X);
    addItem(edit, MainMenu::tr("Copy"), "copy:", Qt::CTRL | Qt::Key_C);
    addItem(edit, MainMenu::tr("Paste"), "paste:", Qt::CTRL | Qt::Key_V);
    addItem(edit, MainMenu::tr("Select All"), "selectAll:", Qt::CTRL | Qt::Key_A);
    return mainMenu;
}
