// SPDX-License-Identifier: MIT
#include "preferences/WelcomePane.h"

#include "preferences/Controls.h"
#include "tests/preferences/Fixture.h"

#include <QTest>

class WelcomePaneTest : public QObject {
    Q_OBJECT

private slots:
    void the_views_stand_centred_with_10_points_between_them();
    void the_texts_have_their_sizes_and_colours();
    void the_icon_is_128_points_wide_and_high();
    void the_description_breaks_into_three_lines_and_never_more_than_four();
    void the_stack_is_at_most_380_points_wide();
    void the_pane_touches_no_setting();
};

namespace {

const QString kName = QStringLiteral("Parklet");
const QString kTagline = QStringLiteral("Lightweight drag & drop file shelf for macOS");
const QString kDescription = QStringLiteral("Drop files onto the floating shelf panel to temporarily\nstore them, then "
                                            "drag to their destination whenever\nyou're ready.");

struct PaneFixture : Fixture {
    WelcomePane &load(const QSize &size = QSize(519, 500))
    {
        return show(std::make_unique<WelcomePane>(virtualPlatform.appearance), size);
    }
};

} // namespace

void WelcomePaneTest::the_views_stand_centred_with_10_points_between_them()
{
    PaneFixture f;
    for (const QSize &size : {QSize(519, 500), QSize(399, 420)}) {
        const WelcomePane &pane = f.load(size);
        const QList<QWidget *> views = {pane.findChild<ImageView *>(), labelWith(pane, kName),
                                        labelWith(pane, kTagline), labelWith(pane, kDescription)};
        QCOMPARE(pane.findChildren<QWidget *>().size(), 4);
        for (int i = 0; i < 4; ++i) {
            QVERIFY(views.at(i));
            QVERIFY(qAbs(2 * views.at(i)->x() + views.at(i)->width() - size.width()) <= 1);
            if (i > 0)
                QCOMPARE(views.at(i)->y() - views.at(i - 1)->geometry().bottom() - 1, 10);
        }
        const int above = views.first()->y();
        const int below = size.height() - views.last()->geometry().bottom() - 1;
        QVERIFY(qAbs(above - below) <= 1);
    }
}

void WelcomePaneTest::the_texts_have_their_sizes_and_colours()
{
    PaneFixture f;
    const WelcomePane &pane = f.load();
    QCOMPARE(labelWith(pane, kName)->font().pixelSize(), 24);
    QCOMPARE(labelWith(pane, kTagline)->font().pixelSize(), 13);
    QCOMPARE(labelWith(pane, kDescription)->font().pixelSize(), 12);
    QCOMPARE(labelWith(pane, kName)->foregroundRole(), QPalette::WindowText);
    for (const QString &text : {kTagline, kDescription}) {
        const QLabel *label = labelWith(pane, text);
        QCOMPARE(label->palette().color(label->foregroundRole()), secondaryLabelColor(pane.palette()));
    }
}

void WelcomePaneTest::the_icon_is_128_points_wide_and_high()
{
    PaneFixture f;
    const WelcomePane &pane = f.load();
    auto *icon = pane.findChild<ImageView *>();
    QCOMPARE(icon->size(), QSize(128, 128));
    QVERIFY(f.virtualPlatform.appearance.symbolRequests.contains(
        std::pair(QStringLiteral("AppIcon"), f.virtualPlatform.appearance.accent)));
    // A small picture is scaled up to fill it.
    const QImage drawn = icon->grab().toImage();
    QCOMPARE(drawn.pixelColor(2, 2), f.virtualPlatform.appearance.accent);
    QCOMPARE(drawn.pixelColor(125, 125), f.virtualPlatform.appearance.accent);
}

void WelcomePaneTest::the_description_breaks_into_three_lines_and_never_more_than_four()
{
    PaneFixture f;
    const QLabel *description = labelWith(f.load(), kDescription);
    const int line = description->fontMetrics().lineSpacing();
    QVERIFY(description->wordWrap());
    QVERIFY(description->height() >= 3 * line);
    QVERIFY(description->height() <= 4 * line);
    QCOMPARE(description->maximumHeight(), 4 * line);
}

void WelcomePaneTest::the_stack_is_at_most_380_points_wide()
{
    PaneFixture f;
    const WelcomePane &pane = f.load(QSize(1500, 500));
    for (const QWidget *view : pane.findChildren<QWidget *>())
        QVERIFY(view->width() <= 380);
}

void WelcomePaneTest::the_pane_touches_no_setting()
{
    PaneFixture f;
    f.load();
    QVERIFY(f.virtualPlatform.userDefaults.writes.isEmpty());
    QVERIFY(f.posts.isEmpty());
}

QTEST_MAIN(WelcomePaneTest)
#include "WelcomePaneTest.moc"
