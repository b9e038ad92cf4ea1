// SPDX-License-Identifier: MIT
#include "preferences/AboutPane.h"

#include "preferences/Controls.h"
#include "settings/BuildInfo.h"
#include "tests/preferences/Fixture.h"
#include "tests/support/InChild.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

class AboutPaneTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCoreApplication::setApplicationVersion(QString()); }

    void the_views_stand_centred_with_10_points_between_them();
    void without_its_artwork_the_applications_own_icon_shows_at_128_points();
    void the_version_is_the_applications_own();
    void a_missing_version_shows_as_1_0();
    void the_texts_have_their_sizes_and_colours();
    void the_button_is_a_link_in_the_accent_colour();
    void the_button_follows_the_accent_colour();
    void the_button_opens_the_makers_page_once();
    void a_malformed_page_of_the_maker_stops_the_program_data();
    void a_malformed_page_of_the_maker_stops_the_program();
    void a_browser_that_does_not_start_is_not_reported();
    void the_button_works_by_keyboard();
    void the_stack_is_as_wide_as_the_pane_lets_it();
};

namespace {

struct PaneFixture : Fixture {
    AboutPane &load(const QSize &size = QSize(519, 500))
    {
        return show(std::make_unique<AboutPane>(virtualPlatform.appearance, virtualPlatform.workspace), size);
    }
};

QPushButton &moreApps(const AboutPane &pane)
{
    return *pane.findChild<QPushButton *>();
}

} // namespace

void AboutPaneTest::the_views_stand_centred_with_10_points_between_them()
{
    PaneFixture f;
    for (const QSize &size : {QSize(519, 500), QSize(399, 420)}) {
        const AboutPane &pane = f.load(size);
        const QList<QWidget *> views = {pane.findChild<ImageView *>(), labelWith(pane, u"Parklet 1.0"_s),
                                        labelWith(pane, BuildInfo::makerLine()), &moreApps(pane)};
        for (int i = 0; i < 4; ++i) {
            QVERIFY(views.at(i));
            QVERIFY(qAbs(2 * views.at(i)->x() + views.at(i)->width() - size.width()) <= 1);
            if (i > 0)
                QCOMPARE(views.at(i)->y() - views.at(i - 1)->geometry().bottom() - 1, 10);
        }
        QCOMPARE(views.first()->size(), QSize(128, 128));
        const int above = views.first()->y();
        const int below = size.height() - views.last()->geometry().bottom() - 1;
        QVERIFY(qAbs(above - below) <= 1);
    }
}

void AboutPaneTest::without_its_artwork_the_applications_own_icon_shows_at_128_points()
{
    PaneFixture f;
    f.virtualPlatform.appearance.missingSymbols = {u"AppIcon"_s};
    QPixmap small(48, 48);
    small.fill(QColor(10, 200, 90));
    f.virtualPlatform.appearance.installedIcon = QIcon(small);
    auto *icon = f.load().findChild<ImageView *>();
    QCOMPARE(icon->size(), QSize(128, 128));
    const QImage drawn = icon->grab().toImage();
    for (const QPoint &corner : {QPoint(0, 0), QPoint(127, 0), QPoint(0, 127), QPoint(127, 127)})
        QCOMPARE(drawn.pixelColor(corner), QColor(10, 200, 90));
}

void AboutPaneTest::the_version_is_the_applications_own()
{
    QCoreApplication::setApplicationVersion(u"2.7.1"_s);
    PaneFixture f;
    QVERIFY(labelWith(f.load(), u"Parklet 2.7.1"_s));
}

void AboutPaneTest::a_missing_version_shows_as_1_0()
{
    PaneFixture f;
    QVERIFY(labelWith(f.load(), u"Parklet 1.0"_s));
}

void AboutPaneTest::the_texts_have_their_sizes_and_colours()
{
    PaneFixture f;
    const AboutPane &pane = f.load();
    const QLabel *name = labelWith(pane, u"Parklet 1.0"_s);
    QCOMPARE(name->font().pixelSize(), 18);
    QCOMPARE(name->foregroundRole(), QPalette::WindowText);
    const QLabel *maker = labelWith(pane, BuildInfo::makerLine());
    QCOMPARE(maker->font().pixelSize(), 12);
    QCOMPARE(maker->palette().color(maker->foregroundRole()), secondaryLabelColor(pane.palette()));
}

void AboutPaneTest::the_button_is_a_link_in_the_accent_colour()
{
    PaneFixture f;
    f.virtualPlatform.appearance.accent = QColor(200, 100, 50);
    const QPushButton &button = moreApps(f.load());
    QCOMPARE(button.text(), u"More from Orvane"_s);
    QVERIFY(button.isFlat());
    QCOMPARE(button.palette().color(QPalette::ButtonText), QColor(200, 100, 50));
}

void AboutPaneTest::the_button_follows_the_accent_colour()
{
    PaneFixture f;
    const AboutPane &pane = f.load();
    f.virtualPlatform.appearance.accent = QColor(3, 150, 60);
    QPalette palette = f.window->palette();
    palette.setColor(QPalette::Highlight, QColor(3, 150, 60));
    f.window->setPalette(palette);
    QCOMPARE(moreApps(pane).palette().color(QPalette::ButtonText), QColor(3, 150, 60));
}

void AboutPaneTest::the_button_opens_the_makers_page_once()
{
    PaneFixture f;
    moreApps(f.load()).click();
    QCOMPARE(f.virtualPlatform.workspace.opened, QList<QUrl>{BuildInfo::moreAppsURL()});
}

void AboutPaneTest::a_malformed_page_of_the_maker_stops_the_program_data()
{
    QTest::addColumn<QUrl>("address");
    QTest::addColumn<bool>("stops");
    QTest::newRow("none") << QUrl() << true;
    QTest::newRow("malformed") << QUrl(u"https://orvane.example:port/"_s, QUrl::StrictMode) << true;
    QTest::newRow("whole") << QUrl(u"https://orvane.example/"_s) << false;
}

void AboutPaneTest::a_malformed_page_of_the_maker_stops_the_program()
{
    QFETCH(const QUrl, address);
    QFETCH(const bool, stops);
    PaneFixture f;
    AboutPane &pane = f.load();
    pane.moreAppsURL = address;
    const ChildEnd end = inChild([&pane] { moreApps(pane).click(); });
    QCOMPARE(end.stopped, stops);
    QCOMPARE(end.finished, !stops);
}

void AboutPaneTest::a_browser_that_does_not_start_is_not_reported()
{
    PaneFixture f;
    f.virtualPlatform.workspace.openSucceeds = false;
    moreApps(f.load()).click();
    QVERIFY(f.virtualPlatform.alerts.shown.isEmpty());
    QVERIFY(f.posts.isEmpty());
}

void AboutPaneTest::the_button_works_by_keyboard()
{
    PaneFixture f;
    const QPushButton &button = moreApps(f.load());
    f.window->activateWindow();
    QTest::keyClick(f.window.get(), Qt::Key_Tab);
    QCOMPARE(f.window->focusWidget(), &button);
    QTest::keyClick(f.window->focusWidget(), Qt::Key_Space);
    QCOMPARE(f.virtualPlatform.workspace.opened.size(), 1);
}

void AboutPaneTest::the_stack_is_as_wide_as_the_pane_lets_it()
{
    PaneFixture f;
    const AboutPane &pane = f.load();
    QCOMPARE(pane.maximumWidth(), QWIDGETSIZE_MAX);
    for (const QWidget *view : pane.findChildren<QLabel *>())
        QCOMPARE(view->maximumWidth(), QWIDGETSIZE_MAX);
}

PARKLET_TEST(AboutPaneTest)
#include "AboutPaneTest.moc"
