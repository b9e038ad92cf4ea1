// SPDX-License-Identifier: MIT
#include "preferences/WelcomePane.h"

#include "preferences/Controls.h"
#include "tests/preferences/Fixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

class WelcomePaneTest : public QObject {
    Q_OBJECT

private slots:
    void the_views_stand_centred_with_10_points_between_them();
    void the_texts_have_their_sizes_and_colours();
    void the_icon_is_128_points_wide_and_high();
    void without_its_artwork_the_applications_own_icon_shows_at_128_points();
    void the_description_breaks_into_three_lines_and_never_more_than_four();
    void the_stack_is_at_most_380_points_wide();
    void the_pane_touches_no_setting();
};

namespace {

const QString kName = u"Parklet"_s;
const QString kTagline = u"Lightweight drag & drop file shelf for macOS"_s;
const QString kDescription = u"Drop files onto the floating shelf panel to temporarily\nstore them, then "
                             "drag to their destination whenever\nyou're ready."_s;

struct PaneFixture : Fixture {
    WelcomePane &load(const QSize &size = QSize(519, 500))
    {
        return show(std::make_unique<WelcomePane>(virtualPlatform.appearance), size);
    }
};

const QWidget &stack(const WelcomePane &pane)
{
    return *pane.findChild<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
}

// The number of lines that a label shows.
int lines(const QLabel &label)
{
    const QFontMetrics metrics(label.font());
    const QRect room(0, 0, label.width(), QWIDGETSIZE_MAX);
    const int height = metrics.boundingRect(room, Qt::TextWordWrap, label.text()).height();
    return qRound(double(height) / metrics.lineSpacing());
}

} // namespace

void WelcomePaneTest::the_views_stand_centred_with_10_points_between_them()
{
    PaneFixture f;
    for (const QSize &size : {QSize(519, 500), QSize(399, 420)}) {
        const WelcomePane &pane = f.load(size);
        const QList<QWidget *> views = {pane.findChild<ImageView *>(), labelWith(pane, kName),
                                        labelWith(pane, kTagline), labelWith(pane, kDescription)};
        QCOMPARE(stack(pane).findChildren<QWidget *>().size(), 4);
        for (int i = 0; i < 4; ++i) {
            QVERIFY(views.at(i));
            const QRect frame = frameIn(pane, *views.at(i));
            QVERIFY(qAbs(2 * frame.x() + frame.width() - size.width()) <= 2);
            if (i > 0)
                QCOMPARE(frame.y() - frameIn(pane, *views.at(i - 1)).bottom() - 1, 10);
        }
        const int above = frameIn(pane, *views.first()).y();
        const int below = size.height() - frameIn(pane, *views.last()).bottom() - 1;
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
        QVERIFY(label->alignment().testFlag(Qt::AlignHCenter));
    }
}

void WelcomePaneTest::the_icon_is_128_points_wide_and_high()
{
    PaneFixture f;
    const WelcomePane &pane = f.load();
    auto *icon = pane.findChild<ImageView *>();
    QCOMPARE(icon->size(), QSize(128, 128));
    QVERIFY(f.virtualPlatform.appearance.symbolRequests.contains(
        std::pair(u"AppIcon"_s, f.virtualPlatform.appearance.accent)));
    // A small picture is scaled up to the size of the view.
    const QImage drawn = icon->grab().toImage();
    QCOMPARE(drawn.pixelColor(2, 2), f.virtualPlatform.appearance.accent);
    QCOMPARE(drawn.pixelColor(125, 125), f.virtualPlatform.appearance.accent);
}

void WelcomePaneTest::without_its_artwork_the_applications_own_icon_shows_at_128_points()
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

void WelcomePaneTest::the_description_breaks_into_three_lines_and_never_more_than_four()
{
    PaneFixture f;
    const QLabel *description = labelWith(f.load(), kDescription);
    const int line = description->fontMetrics().lineSpacing();
    QVERIFY(description->wordWrap());
    QCOMPARE(lines(*description), 3);
    QVERIFY(description->height() >= 3 * line - 1 && description->height() < 4 * line);
    // Each line of the text fits one line of the label.
    for (const QString &part : kDescription.split(QLatin1Char('\n')))
        QVERIFY(description->fontMetrics().horizontalAdvance(part) <= description->width());
    QCOMPARE(description->maximumHeight(), 4 * line);
}

void WelcomePaneTest::the_stack_is_at_most_380_points_wide()
{
    // With letters this wide, every text would be wider than its view.
    const QFont before = QApplication::font();
    QFont wide = before;
    wide.setLetterSpacing(QFont::AbsoluteSpacing, 6);
    QApplication::setFont(wide);
    PaneFixture f;
    const WelcomePane &pane = f.load(QSize(1500, 500));
    QApplication::setFont(before);
    QVERIFY(QFontMetrics(labelWith(pane, kTagline)->font()).horizontalAdvance(kTagline) > 380);
    QCOMPARE(stack(pane).width(), 380);
    QCOMPARE(frameIn(pane, stack(pane)).x(), (1500 - 380) / 2);
    for (const QString &text : {kName, kTagline, kDescription}) {
        const QLabel *label = labelWith(pane, text);
        QVERIFY(stack(pane).rect().contains(label->geometry()));
        QVERIFY(label->height() <= 4 * label->fontMetrics().lineSpacing());
    }
    QCOMPARE(lines(*labelWith(pane, kTagline)), 2);
    QVERIFY(labelWith(pane, kTagline)->height() >= 2 * labelWith(pane, kTagline)->fontMetrics().lineSpacing() - 1);
}

void WelcomePaneTest::the_pane_touches_no_setting()
{
    PaneFixture f;
    f.load();
    QVERIFY(f.virtualPlatform.userDefaults.writes.isEmpty());
    QVERIFY(f.posts.isEmpty());
}

PARKLET_TEST(WelcomePaneTest)
#include "WelcomePaneTest.moc"
