// SPDX-License-Identifier: MIT
#include "platform/common/QtAlerts.h"

#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

class QtAlertsTest : public QObject {
    Q_OBJECT

private slots:
    void the_texts_are_shown_as_they_are();
    void the_answer_is_the_chosen_button_data();
    void the_answer_is_the_chosen_button();
    void the_first_button_is_the_default_one();
    void closing_chooses_the_last_button();
    void the_check_box_starts_off_and_is_answered();
    void an_alert_comes_to_the_front_when_it_is_to();
    void an_alert_shows_its_own_icon();
    void an_alert_without_an_icon_shows_the_applications();
    void a_dark_alert_has_light_text_on_dark();
    void any_other_alert_has_the_colours_of_the_application();
    void a_text_of_any_length_leaves_the_buttons_in_reach_data();
    void a_text_of_any_length_leaves_the_buttons_in_reach();
    void a_second_alert_may_come_over_the_first();
};

namespace {

struct Fixture {
    Fixture()
    {
        alert.messageText = u"Shall it <b>be</b>?"_s;
        alert.informativeText = u"It & that.\n\n<i>Soon</i>."_s;
        alert.buttons = {u"First"_s, u"Second"_s, u"Third"_s};
    }

    // Shows the alert and calls `act` with it. Closes an alert that a failed check has left open.
    AlertAnswer run(std::function<void(QMessageBox &)> act)
    {
        QTimer::singleShot(0, [act = std::move(act)] {
            const QPointer<QMessageBox> shown = box();
            act(*shown);
            if (shown && shown->isVisible())
                shown->reject();
        });
        return alerts.runModal(alert);
    }

    static QMessageBox *box() { return qobject_cast<QMessageBox *>(QApplication::activeModalWidget()); }

    static QPushButton *button(const QMessageBox &box, const QString &title)
    {
        for (auto *button : box.findChildren<QPushButton *>()) {
            if (button->text() == title)
                return button;
        }
        return nullptr;
    }

    static QIcon icon(Qt::GlobalColor color)
    {
        QPixmap pixmap(64, 64);
        pixmap.fill(color);
        return QIcon(pixmap);
    }
    // The colour in the middle of the alert's icon.
    QColor shownIcon()
    {
        QColor color;
        run([&color](QMessageBox &box) {
            const QImage image = box.iconPixmap().toImage();
            color = image.pixelColor(image.rect().center());
            box.reject();
        });
        return color;
    }

    VirtualPlatform virtualPlatform;
    QtAlerts alerts{virtualPlatform.appearance, virtualPlatform.activationPolicy};
    Alert alert;
};

// The offscreen plugin warns about every window with a fixed size, such as an alert.
const bool kWarningsAreHarmless = qunsetenv("QT_FATAL_WARNINGS");

} // namespace

void QtAlertsTest::the_texts_are_shown_as_they_are()
{
    QVERIFY(kWarningsAreHarmless);
    Fixture f;
    f.run([](QMessageBox &box) {
        QCOMPARE(box.text(), u"Shall it <b>be</b>?"_s);
        QCOMPARE(box.informativeText(), u"It & that.\n\n<i>Soon</i>."_s);
        QCOMPARE(box.textFormat(), Qt::PlainText);
        QVERIFY(!box.iconPixmap().isNull());
        box.reject();
    });
}

void QtAlertsTest::the_answer_is_the_chosen_button_data()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < 3; ++index)
        QTest::addRow("%d", index) << index;
}

void QtAlertsTest::the_answer_is_the_chosen_button()
{
    QFETCH(const int, index);
    Fixture f;
    const AlertAnswer answer =
        f.run([&](QMessageBox &box) { Fixture::button(box, f.alert.buttons.at(index))->click(); });
    QCOMPARE(answer.button, index);
    QCOMPARE(answer.isFirstButton(), index == 0);
}

void QtAlertsTest::the_first_button_is_the_default_one()
{
    Fixture f;
    f.run([](QMessageBox &box) {
        QCOMPARE(box.defaultButton(), Fixture::button(box, u"First"_s));
        box.reject();
    });
}

void QtAlertsTest::closing_chooses_the_last_button()
{
    Fixture f;
    QCOMPARE(f.run([](QMessageBox &box) { box.close(); }).button, 2);
    QCOMPARE(f.run([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); }).button, 2);
    f.alert.buttons = {u"OK"_s};
    QCOMPARE(f.run([](QMessageBox &box) { box.close(); }).button, 0);
}

void QtAlertsTest::the_check_box_starts_off_and_is_answered()
{
    Fixture f;
    f.run([](QMessageBox &box) {
        QVERIFY(!box.checkBox());
        box.reject();
    });
    f.alert.checkboxTitle = u"Always"_s;
    QCOMPARE(f.run([](QMessageBox &box) {
                  QCOMPARE(box.checkBox()->text(), u"Always"_s);
                  box.reject();
              }).checkboxOn,
             false);
    QCOMPARE(f.run([](QMessageBox &box) {
                  box.checkBox()->click();
                  box.reject();
              }).checkboxOn,
             true);
}

void QtAlertsTest::an_alert_comes_to_the_front_when_it_is_to()
{
    Fixture f;
    qsizetype activated = 0;
    f.run([&](QMessageBox &box) {
        activated = f.virtualPlatform.activationPolicy.activated.size();
        box.reject();
    });
    QCOMPARE(activated, 1);
    f.alert.activates = false;
    f.run([](QMessageBox &box) { box.reject(); });
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.size(), 1);
}

void QtAlertsTest::an_alert_shows_its_own_icon()
{
    Fixture f;
    f.virtualPlatform.appearance.accent = Qt::green;
    f.alert.icon = Fixture::icon(Qt::red);
    QCOMPARE(f.shownIcon(), QColor(Qt::red));
}

void QtAlertsTest::an_alert_without_an_icon_shows_the_applications()
{
    Fixture f;
    f.virtualPlatform.appearance.accent = Qt::green;
    QApplication::setWindowIcon(Fixture::icon(Qt::blue));
    QCOMPARE(f.shownIcon(), QColor(Qt::green));
    // Without an image of the application, the alert has the icon by which the desktop knows it.
    f.virtualPlatform.appearance.missingSymbols = {u"AppIcon"_s};
    QCOMPARE(f.shownIcon(), QColor(Qt::blue));
    QApplication::setWindowIcon(QIcon());
    f.run([](QMessageBox &box) {
        QVERIFY(box.iconPixmap().isNull());
        box.reject();
    });
}

void QtAlertsTest::a_dark_alert_has_light_text_on_dark()
{
    Fixture f;
    f.alert.dark = true;
    f.alert.checkboxTitle = u"Always"_s;
    f.run([](QMessageBox &box) {
        const QList<QWidget *> views = {&box, box.checkBox(), Fixture::button(box, u"First"_s),
                                        box.findChild<QLabel *>(u"qt_msgbox_label"_s),
                                        box.findChild<QLabel *>(u"qt_msgbox_informativelabel"_s)};
        for (const QWidget *view : views) {
            QVERIFY(view);
            for (const auto group : {QPalette::Active, QPalette::Inactive}) {
                QVERIFY(view->palette().color(group, QPalette::Window).lightness() < 64);
                QVERIFY(view->palette().color(group, QPalette::Button).lightness() < 96);
                QVERIFY(view->palette().color(group, QPalette::WindowText).lightness() > 220);
                QVERIFY(view->palette().color(group, QPalette::ButtonText).lightness() > 220);
            }
        }
        box.reject();
    });
}

void QtAlertsTest::any_other_alert_has_the_colours_of_the_application()
{
    Fixture f;
    f.run([](QMessageBox &box) {
        QCOMPARE(box.palette(), QApplication::palette());
        QCOMPARE(Fixture::button(box, u"First"_s)->palette(), QApplication::palette());
        box.reject();
    });
}

void QtAlertsTest::a_text_of_any_length_leaves_the_buttons_in_reach_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("a sentence") << u"A sentence."_s;
    QTest::newRow("many lines") << u"A line.\n"_s.repeated(5'000);
    QTest::newRow("a long line") << u"some words "_s.repeated(5'000);
    QTest::newRow("a long word") << u"word"_s.repeated(5'000);
    QTest::newRow("a word of a few hundred letters") << u"word"_s.repeated(100);
    QTest::newRow("a megabyte") << u"some words in a line\n"_s.repeated(50'000);
}

void QtAlertsTest::a_text_of_any_length_leaves_the_buttons_in_reach()
{
    QFETCH(const QString, text);
    Fixture f;
    f.alert.informativeText = text;
    f.run([&text](QMessageBox &box) {
        QVERIFY2(box.width() < 600 && box.height() < 400, qPrintable(u"%1 x %2"_s.arg(box.width()).arg(box.height())));
        const auto *const area = box.findChild<QPlainTextEdit *>();
        if (area)
            QVERIFY(area->isVisible() && box.rect().contains(area->geometry()));
        for (const auto *button : box.findChildren<QPushButton *>()) {
            QVERIFY(button->isVisible());
            QVERIFY(!area || !area->geometry().intersects(QRect(button->mapTo(&box, QPoint()), button->size())));
            QVERIFY(box.rect().contains(QRect(button->mapTo(&box, QPoint()), button->size())));
        }
        QCOMPARE(area ? area->toPlainText() : box.informativeText(), text);
        box.reject();
    });
}

void QtAlertsTest::a_second_alert_may_come_over_the_first()
{
    Fixture f;
    const AlertAnswer first = f.run([&f](QMessageBox &box) {
        const AlertAnswer second = f.run([](QMessageBox &inner) { Fixture::button(inner, u"Second"_s)->click(); });
        QCOMPARE(second.button, 1);
        Fixture::button(box, u"First"_s)->click();
    });
    QCOMPARE(first.button, 0);
}

PARKLET_TEST(QtAlertsTest)
#include "QtAlertsTest.moc"
