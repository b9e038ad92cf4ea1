// SPDX-License-Identifier: MIT
#include "app/Translations.h"
#include "preferences/BasePane.h"
#include "preferences/PreferencesWindowController.h"
#include "preferences/SidebarViewController.h"
#include "shelf/ShelfPanel.h"
#include "tests/preferences/Fixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QDir>
#include <QListView>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kSmallestWindow(600, 420);
constexpr int kSidebarTitleWidth = 120;
constexpr double kSmallestItem = 48; // points; the smallest size in the preferences

// Describes which part of `view`'s text is cut off. Empty when all of it is visible.
QString cut(const QWidget &pane, const QWidget &view)
{
    QSize needed = view.sizeHint();
    if (const auto *label = qobject_cast<const QLabel *>(&view)) {
        if (label->text().trimmed().isEmpty())
            return {};
        if (label->wordWrap())
            needed = QSize(label->minimumSizeHint().width(), label->heightForWidth(view.width()));
    } else if (!qobject_cast<const QCheckBox *>(&view) && !qobject_cast<const QComboBox *>(&view) &&
               !qobject_cast<const QPushButton *>(&view)) {
        return {};
    }
    const QRect frame(view.mapTo(&pane, QPoint()), view.size());
    if (needed.width() <= frame.width() && needed.height() <= frame.height() && frame.left() >= 0 &&
        frame.right() < pane.width())
        return {};
    return u"%1 \"%2\" needs %3 x %4 and has %5 x %6 at %7"_s
        .arg(QString::fromUtf8(view.metaObject()->className()), view.property("text").toString())
        .arg(needed.width())
        .arg(needed.height())
        .arg(frame.width())
        .arg(frame.height())
        .arg(frame.left());
}

} // namespace

// Translations may be longer than the English texts for which the sizes were chosen.
class TranslatedTextsFitTest : public QObject {
    Q_OBJECT

private slots:
    void every_text_fits_into_the_smallest_preferences_window_data() { languages(); }
    void every_text_fits_into_the_smallest_preferences_window();
    void the_sidebar_shows_whole_titles_data() { languages(); }
    void the_sidebar_shows_whole_titles();
    void the_narrowest_shelf_has_room_for_its_text_data() { languages(); }
    void the_narrowest_shelf_has_room_for_its_text();

private:
    static void languages();
};

void TranslatedTextsFitTest::languages()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("en") << "en";
    const QStringList files = QDir(u":/i18n"_s).entryList();
    QVERIFY(!files.isEmpty());
    for (const QString &file : files) {
        const QString language = file.section(QLatin1Char('_'), 1).section(QLatin1Char('.'), 0, 0);
        QTest::newRow(qPrintable(language)) << language;
    }
}

void TranslatedTextsFitTest::every_text_fits_into_the_smallest_preferences_window()
{
    QFETCH(QString, language);
    const Translations translations({language});
    Fixture f;
    PreferencesWindowController controller(f.virtualPlatform.platform, f.settings, f.notifications);
    controller.window()->resize(kSmallestWindow);
    controller.window()->show();
    QStringList faults;
    int looked = 0;
    for (const SidebarViewController::Row &row : SidebarViewController::rows()) {
        controller.showPane(row.pane);
        QCoreApplication::processEvents();
        for (const QWidget *view : controller.pane()->findChildren<QWidget *>()) {
            if (!view->isVisible())
                continue;
            ++looked;
            if (const QString fault = cut(*controller.pane(), *view); !fault.isEmpty())
                faults.append(fault);
        }
    }
    QVERIFY(looked > 30);
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
}

void TranslatedTextsFitTest::the_sidebar_shows_whole_titles()
{
    QFETCH(QString, language);
    const Translations translations({language});
    Fixture f;
    const SidebarViewController sidebar(*f.virtualPlatform.platform.appearance);
    const QAbstractItemModel &model = *sidebar.tableView->model();
    for (int row = 0; row < model.rowCount(); ++row) {
        const QString title = model.index(row, 0).data().toString();
        QVERIFY2(sidebar.tableView->fontMetrics().horizontalAdvance(title) <= kSidebarTitleWidth, qPrintable(title));
    }
}

void TranslatedTextsFitTest::the_narrowest_shelf_has_room_for_its_text()
{
    QFETCH(QString, language);
    const Translations translations({language});
    Fixture f;
    f.values.insert(Settings::shelfItemSize.key, kSmallestItem);
    ShelfPanel shelf(f.virtualPlatform.platform, f.settings, f.notifications);
    shelf.show(Animated::No);
    const auto *label = shelf.findChild<QLabel *>();
    QVERIFY(label && label->isVisible());
    QVERIFY2(label->x() >= 0 && label->geometry().right() < shelf.width(), qPrintable(label->text()));
}

PARKLET_TEST(TranslatedTextsFitTest)
#include "TranslatedTextsFitTest.moc"
