// SPDX-License-Identifier: MIT
#include "app/MainMenu.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

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

// A view that implements all actions of the Edit menu.
class Responder : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    QStringList calls;

public slots:
    void undo() { calls.append(u"undo"_s); }
    void redo() { calls.append(u"redo"_s); }
    void cut() { calls.append(u"cut"_s); }
    void copy() { calls.append(u"copy"_s); }
    void paste() { calls.append(u"paste"_s); }
    void selectAll() { calls.append(u"selectAll"_s); }
};

// A view that implements one of them.
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
    QTest::newRow("Undo") << u"Undo"_s << u"undo"_s;
    QTest::newRow("Redo") << u"Redo"_s << u"redo"_s;
    QTest::newRow("Cut") << u"Cut"_s << u"cut"_s;
    QTest::newRow("Copy") << u"Copy"_s << u"copy"_s;
    QTest::newRow("Paste") << u"Paste"_s << u"paste"_s;
    QTest::newRow("Select All") << u"Select All"_s << u"selectAll"_s;
}

void MainMenuTest::the_main_menu_holds_an_edit_menu_and_nothing_else()
{
    const auto mainMenu = buildMainMenu();
    QCOMPARE(mainMenu->actions().size(), 1);
    const QAction *item = mainMenu->actions().constFirst();
    QCOMPARE(item->text(), u"Edit"_s);
    QVERIFY(item->shortcut().isEmpty());
    QVERIFY(item->menu());
    QCOMPARE(item->menu()->title(), u"Edit"_s);
}

void MainMenuTest::the_edit_menu_holds_its_items_in_their_order()
{
    const auto mainMenu = buildMainMenu();
    QStringList items;
    for (const QAction *item : editMenu(*mainMenu)->actions()) {
        items.append(item->isSeparator()
                         ? u"-"_s
                         : item->text() + QLatin1Char('|') + item->shortcut().toString(QKeySequence::PortableText));
        QVERIFY(item->isSeparator() || item->isEnabled());
        QVERIFY(!item->isCheckable());
    }
    QCOMPARE(items, QStringList({u"Undo|Ctrl+Z"_s, u"Redo|Ctrl+Shift+Z"_s, u"-"_s, u"Cut|Ctrl+X"_s, u"Copy|Ctrl+C"_s,
                                 u"Paste|Ctrl+V"_s, u"Select All|Ctrl+A"_s}));
}

void MainMenuTest::an_item_has_the_name_of_its_action()
{
    const auto mainMenu = buildMainMenu();
    QStringList names;
    for (const QAction *item : editMenu(*mainMenu)->actions())
        names.append(item->objectName());
    const QStringList expected = {u"undo"_s, u"redo"_s, QString(), u"cut:"_s, u"copy:"_s, u"paste:"_s, u"selectAll:"_s};
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
    trigger(*mainMenu, u"Copy"_s);
    QCOMPARE(copier.copies, 1);
    QVERIFY(window.calls.isEmpty());
    trigger(*mainMenu, u"Paste"_s);
    QCOMPARE(copier.copies, 1);
    QCOMPARE(window.calls, QStringList{u"paste"_s});
}

void MainMenuTest::an_item_goes_to_the_window_when_no_view_has_the_focus()
{
    const auto mainMenu = buildMainMenu();
    Responder window;
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(!QApplication::focusWidget());
    trigger(*mainMenu, u"Select All"_s);
    QCOMPARE(window.calls, QStringList{u"selectAll"_s});
}

void MainMenuTest::an_item_that_nobody_answers_to_does_nothing()
{
    QFETCH(QString, title);
    const auto mainMenu = buildMainMenu();
    // Without any window, and with a window that does not implement the action.
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
    field.insert(u"abc"_s);
    trigger(*mainMenu, u"Select All"_s);
    QCOMPARE(field.selectedText(), u"abc"_s);
    trigger(*mainMenu, u"Cut"_s);
    QCOMPARE(field.text(), QString());
    trigger(*mainMenu, u"Undo"_s);
    QCOMPARE(field.text(), u"abc"_s);
    trigger(*mainMenu, u"Redo"_s);
    QCOMPARE(field.text(), QString());
    trigger(*mainMenu, u"Paste"_s);
    trigger(*mainMenu, u"Paste"_s);
    QCOMPARE(field.text(), u"abcabc"_s);
    trigger(*mainMenu, u"Select All"_s);
    trigger(*mainMenu, u"Copy"_s);
    QCOMPARE(field.text(), u"abcabc"_s);
    field.clear();
    trigger(*mainMenu, u"Paste"_s);
    QCOMPARE(field.text(), u"abcabc"_s);
}

PARKLET_TEST(MainMenuTest)
#include "MainMenuTest.moc"
