// SPDX-License-Identifier: MIT
#include "app/MainMenu.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QVBoxLayout>

class MainMenuTest : public QObject {
    Q_OBJECT

private slots:
    void the_main_menu_holds_an_edit_menu_and_nothing_else();
    void the_edit_menu_holds_its_items_in_their_order();
    void an_item_has_the_name_of_its_action();
    void an_item_goes_to_the_view_with_the_focus_data() { actions(); }
    void an_item_goes_to_the_view_with_the_focus();
    void an_item_goes_on_to_the_first_view_around_that_answers_to_it();
    void an_item_goes_to_the_window_when_no_view_has_the_focus();
    void an_item_that_nobody_answers_to_does_nothing_data() { actions(); }
    void an_item_that_nobody_answers_to_does_nothing();
    void a_text_field_is_edited();

private:
    static void actions();
};

// A view that answers to every action of the Edit menu.
class Responder : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    QStringList calls;

public slots:
    void undo() { calls.append(QStringLiteral("undo")); }
    void redo() { calls.append(QStringLiteral("redo")); }
    void cut() { calls.append(QStringLiteral("cut")); }
    void copy() { calls.append(QStringLiteral("copy")); }
    void paste() { calls.append(QStringLiteral("paste")); }
    void selectAll() { calls.append(QStringLiteral("selectAll")); }
};

// A view that answers to one of them.
class Copier : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    int copies = 0;

public slots:
    void copy() { ++copies; }
};

namespace {

QMenu *editMenu(const QMenu &mainMenu)
{
    return mainMenu.actions().constFirst()->menu();
}

void trigger(const QMenu &mainMenu, const QString &title)
{
    for (QAction *item : editMenu(mainMenu)->actions()) {
        if (item->text() == title)
            item->trigger();
    }
}

// Shows `window` and gives `view` the focus.
bool focus(QWidget &window, QWidget &view)
{
    view.setFocusPolicy(Qt::StrongFocus);
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        return false;
    view.setFocus();
    return QApplication::focusWidget() == &view;
}

} // namespace

void MainMenuTest::actions()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("action");
    QTest::newRow("Undo") << QStringLiteral("Undo") << QStringLiteral("undo");
    QTest::newRow("Redo") << QStringLiteral("Redo") << QStringLiteral("redo");
    QTest::newRow("Cut") << QStringLiteral("Cut") << QStringLiteral("cut");
    QTest::newRow("Copy") << QStringLiteral("Copy") << QStringLiteral("copy");
    QTest::newRow("Paste") << QStringLiteral("Paste") << QStringLiteral("paste");
    QTest::newRow("Select All") << QStringLiteral("Select All") << QStringLiteral("selectAll");
}

void MainMenuTest::the_main_menu_holds_an_edit_menu_and_nothing_else()
{
    const auto mainMenu = buildMainMenu();
    QCOMPARE(mainMenu->actions().size(), 1);
    const QAction *item = mainMenu->actions().constFirst();
    QCOMPARE(item->text(), QStringLiteral("Edit"));
    QVERIFY(item->shortcut().isEmpty());
    QVERIFY(item->menu());
    QCOMPARE(item->menu()->title(), QStringLiteral("Edit"));
}

void MainMenuTest::the_edit_menu_holds_its_items_in_their_order()
{
    const auto mainMenu = buildMainMenu();
    QStringList items;
    for (const QAction *item : editMenu(*mainMenu)->actions()) {
        items.append(item->isSeparator()
                         ? QStringLiteral("-")
                         : item->text() + QLatin1Char('|') + item->shortcut().toString(QKeySequence::PortableText));
        QVERIFY(item->isSeparator() || item->isEnabled());
        QVERIFY(!item->isCheckable());
    }
    QCOMPARE(items, QStringList({QStringLiteral("Undo|Ctrl+Z"), QStringLiteral("Redo|Ctrl+Shift+Z"),
                                 QStringLiteral("-"), QStringLiteral("Cut|Ctrl+X"), QStringLiteral("Copy|Ctrl+C"),
                                 QStringLiteral("Paste|Ctrl+V"), QStringLiteral("Select All|Ctrl+A")}));
}

void MainMenuTest::an_item_has_the_name_of_its_action()
{
    const auto mainMenu = buildMainMenu();
    QStringList names;
    for (const QAction *item : editMenu(*mainMenu)->actions())
        names.append(item->objectName());
    const QStringList expected = {QStringLiteral("undo"),      QStringLiteral("redo"),  QString(),
                                  QStringLiteral("cut:"),      QStringLiteral("copy:"), QStringLiteral("paste:"),
                                  QStringLiteral("selectAll:")};
    QCOMPARE(names, expected);
}

void MainMenuTest::an_item_goes_to_the_view_with_the_focus()
{
    QFETCH(QString, title);
    QFETCH(QString, action);
    const auto mainMenu = buildMainMenu();
    Responder window;
    Responder view(&window);
    QVERIFY(focus(window, view));
    trigger(*mainMenu, title);
    QCOMPARE(view.calls, QStringList{action});
    QVERIFY(window.calls.isEmpty());
}

void MainMenuTest::an_item_goes_on_to_the_first_view_around_that_answers_to_it()
{
    const auto mainMenu = buildMainMenu();
    Responder window;
    Copier copier(&window);
    QWidget view(&copier);
    QVERIFY(focus(window, view));
    trigger(*mainMenu, QStringLiteral("Copy"));
    QCOMPARE(copier.copies, 1);
    QVERIFY(window.calls.isEmpty());
    trigger(*mainMenu, QStringLiteral("Paste"));
    QCOMPARE(copier.copies, 1);
    QCOMPARE(window.calls, QStringList{QStringLiteral("paste")});
}

void MainMenuTest::an_item_goes_to_the_window_when_no_view_has_the_focus()
{
    const auto mainMenu = buildMainMenu();
    Responder window;
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(!QApplication::focusWidget());
    trigger(*mainMenu, QStringLiteral("Select All"));
    QCOMPARE(window.calls, QStringList{QStringLiteral("selectAll")});
}

void MainMenuTest::an_item_that_nobody_answers_to_does_nothing()
{
    QFETCH(QString, title);
    const auto mainMenu = buildMainMenu();
    // With no window at all, and with one that knows no such action.
    trigger(*mainMenu, title);
    Responder elsewhere;
    QWidget window;
    QWidget view(&window);
    QVERIFY(focus(window, view));
    trigger(*mainMenu, title);
    QVERIFY(elsewhere.calls.isEmpty());
    QCOMPARE(QApplication::focusWidget(), &view);
}

void MainMenuTest::a_text_field_is_edited()
{
    const auto mainMenu = buildMainMenu();
    QWidget window;
    QLineEdit field(&window);
    QVERIFY(focus(window, field));
    field.insert(QStringLiteral("abc"));
    trigger(*mainMenu, QStringLiteral("Select All"));
    QCOMPARE(field.selectedText(), QStringLiteral("abc"));
    trigger(*mainMenu, QStringLiteral("Cut"));
    QCOMPARE(field.text(), QString());
    trigger(*mainMenu, QStringLiteral("Undo"));
    QCOMPARE(field.text(), QStringLiteral("abc"));
    trigger(*mainMenu, QStringLiteral("Redo"));
    QCOMPARE(field.text(), QString());
    trigger(*mainMenu, QStringLiteral("Paste"));
    trigger(*mainMenu, QStringLiteral("Paste"));
    QCOMPARE(field.text(), QStringLiteral("abcabc"));
    trigger(*mainMenu, QStringLiteral("Select All"));
    trigger(*mainMenu, QStringLiteral("Copy"));
    QCOMPARE(field.text(), QStringLiteral("abcabc"));
    field.clear();
    trigger(*mainMenu, QStringLiteral("Paste"));
    QCOMPARE(field.text(), QStringLiteral("abcabc"));
}

PARKLET_TEST(MainMenuTest)
#include "MainMenuTest.moc"
