// SPDX-License-Identifier: MIT
#include "platform/common/HoverEvents.h"
#include "tests/support/TestProgram.h"

#include <QCursor>
#include <QTest>
#include <QWidget>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

// Records the pointer events that it receives.
class View : public QWidget {
public:
    using QWidget::QWidget;

    QStringList told;
    std::function<void()> onEnter;

protected:
    bool event(QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::Enter:
            told.append(u"enter"_s);
            if (onEnter)
                onEnter();
            return true;
        case QEvent::Leave:
            told.append(u"leave"_s);
            return true;
        case QEvent::MouseMove:
            told.append(u"move"_s);
            return true;
        default:
            return QWidget::event(event);
        }
    }
};

// A window with two views beside each other.
struct Desk {
    Desk()
    {
        window->setGeometry(100, 100, 200, 100);
        left->setGeometry(0, 0, 100, 100);
        right->setGeometry(100, 0, 100, 100);
        left->setMouseTracking(true);
        right->setMouseTracking(true);
        // Otherwise the window would receive events of a pointer that is over it while it is made.
        QCursor::setPos(700, 500);
        window->show();
    }

    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    View *const left = new View(window.get());
    View *const right = new View(window.get());
    std::unique_ptr<HoverEvents> hover = std::make_unique<HoverEvents>(*window);
};

} // namespace

class HoverEventsTest : public QObject {
    Q_OBJECT

private slots:
    void the_view_under_the_pointer_is_entered_once_and_told_of_each_move();
    void the_pointer_leaves_one_view_for_the_next();
    void a_pointer_that_leaves_the_window_leaves_its_view_once();
    void what_was_forgotten_is_not_left_and_is_entered_anew();
    void a_window_may_go_while_it_is_told();
    void a_window_that_was_never_shown_is_told_nothing();
};

void HoverEventsTest::the_view_under_the_pointer_is_entered_once_and_told_of_each_move()
{
    Desk desk;
    QCursor::setPos(150, 150);
    desk.hover->move();
    desk.hover->move();
    QCOMPARE(desk.left->told.count(u"enter"_s), 1);
    QCOMPARE(desk.left->told.count(u"move"_s), 2);
    QCOMPARE(desk.right->told, QStringList());
}

void HoverEventsTest::the_pointer_leaves_one_view_for_the_next()
{
    Desk desk;
    QCursor::setPos(150, 150);
    desk.hover->move();
    QCursor::setPos(250, 150);
    desk.hover->move();
    QCOMPARE(desk.left->told.last(), u"leave"_s);
    QCOMPARE(desk.right->told, (QStringList{u"enter"_s, u"move"_s}));
}

void HoverEventsTest::a_pointer_that_leaves_the_window_leaves_its_view_once()
{
    Desk desk;
    desk.hover->leave();
    QCOMPARE(desk.left->told, QStringList());
    QCursor::setPos(150, 150);
    desk.hover->move();
    desk.hover->leave();
    desk.hover->leave();
    QCOMPARE(desk.left->told.count(u"leave"_s), 1);
}

void HoverEventsTest::what_was_forgotten_is_not_left_and_is_entered_anew()
{
    Desk desk;
    QCursor::setPos(150, 150);
    desk.hover->move();
    desk.hover->forget();
    desk.hover->leave();
    QCOMPARE(desk.left->told.count(u"leave"_s), 0);
    desk.hover->move();
    QCOMPARE(desk.left->told.last(), u"move"_s);
    desk.hover->leave();
    QCOMPARE(desk.left->told.count(u"leave"_s), 1);
}

void HoverEventsTest::a_window_may_go_while_it_is_told()
{
    Desk desk;
    QCursor::setPos(150, 150);
    QPointer<QWidget> window = desk.window.get();
    desk.left->onEnter = [&desk] {
        desk.hover.reset();
        desk.window.release()->deleteLater();
    };
    desk.hover->move();
    QVERIFY(!desk.hover);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!window);
}

void HoverEventsTest::a_window_that_was_never_shown_is_told_nothing()
{
    View view;
    HoverEvents hover(view);
    hover.move();
    hover.leave();
    QCOMPARE(view.told, QStringList());
}

PARKLET_TEST(HoverEventsTest)

#include "HoverEventsTest.moc"
