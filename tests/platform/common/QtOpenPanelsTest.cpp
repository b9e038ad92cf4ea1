// SPDX-License-Identifier: MIT
#include "platform/common/QtOpenPanels.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;

class QtOpenPanelsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();

    void the_panel_has_its_title_prompt_and_folders();
    void the_named_file_is_chosen();
    void a_file_of_any_kind_can_be_chosen();
    void one_file_is_chosen_at_a_time();
    void a_link_is_chosen_as_the_link_it_is();
    void a_folder_is_entered_and_not_chosen();
    void a_cancelled_panel_chooses_nothing();
    void escape_cancels();
    void a_panel_whose_window_goes_chooses_nothing();
    void the_places_of_the_users_other_dialogs_stay_as_they_were();
    void the_main_loop_turns_meanwhile();

private:
    // Shows the panel and calls `work` with its dialog once that is visible. Returns the choice.
    std::optional<QUrl> run(const std::function<void(QFileDialog &dialog)> &work);

    QString path(const QString &name) const { return folder.filePath(name); }

    QTemporaryDir folder;
    std::unique_ptr<QWidget> window;
};

namespace {

constexpr int kPatience = 20'000; // milliseconds
constexpr int kGlance = 10;       // milliseconds between two looks for the dialog

QPushButton *button(const QFileDialog &dialog, const QString &title)
{
    for (QPushButton *candidate : dialog.findChildren<QPushButton *>()) {
        if (candidate->text().remove(QLatin1Char('&')) == title)
            return candidate;
    }
    return nullptr;
}

void name(const QFileDialog &dialog, const QString &file)
{
    dialog.findChild<QLineEdit *>()->setText(file);
}

} // namespace

void QtOpenPanelsTest::initTestCase()
{
    QVERIFY(QDir(folder.path()).mkdir(u"applications"_s));
    QVERIFY(QDir(folder.path()).mkdir(u"more"_s));
    QFile file(path(u"applications/editor.desktop"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QFile notes(path(u"applications/notes.txt"_s));
    QVERIFY(notes.open(QIODevice::WriteOnly));
    QVERIFY(QFile::link(u"editor.desktop"_s, path(u"applications/link.desktop"_s)));
    QVERIFY(QDir(path(u"applications"_s)).mkdir(u"folder"_s));
}

std::optional<QUrl> QtOpenPanelsTest::run(const std::function<void(QFileDialog &dialog)> &work)
{
    window = std::make_unique<QWidget>();
    window->show();
    bool isDone = false;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible() || !dialog->isActiveWindow() || std::exchange(isDone, true))
            return;
        work(*dialog);
    });
    // Even after a failure, the panel is closed.
    QTimer::singleShot(kPatience, &timer, [] {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
            dialog->reject();
    });
    timer.start(kGlance);
    const OpenPanel panel{
        .title = u"Add application"_s,
        .prompt = u"Add"_s,
        .folders = {QUrl::fromLocalFile(path(u"applications"_s)), QUrl::fromLocalFile(path(u"more"_s))}};
    QtOpenPanels panels;
    const auto chosen = panels.runModal(panel, window.get());
    if (!isDone)
        qWarning("The panel did not come up.");
    return chosen;
}

void QtOpenPanelsTest::the_panel_has_its_title_prompt_and_folders()
{
    QString title;
    QUrl start;
    QList<QUrl> places;
    bool hasPrompt = false;
    const QWidget *parent = nullptr;
    (void)run([&](QFileDialog &dialog) {
        title = dialog.windowTitle();
        start = dialog.directoryUrl();
        places = dialog.sidebarUrls();
        // The button "Open" gets the text of the prompt once there is a file to pick.
        name(dialog, u"editor.desktop"_s);
        hasPrompt = button(dialog, u"Add"_s);
        parent = dialog.parentWidget();
        dialog.reject();
    });
    QCOMPARE(title, u"Add application"_s);
    QCOMPARE(start, QUrl::fromLocalFile(path(u"applications"_s)));
    QVERIFY(places.contains(QUrl::fromLocalFile(path(u"more"_s))));
    QVERIFY(hasPrompt);
    QCOMPARE(parent, window.get());
}

void QtOpenPanelsTest::the_named_file_is_chosen()
{
    const auto chosen = run([](QFileDialog &dialog) {
        name(dialog, u"editor.desktop"_s);
        button(dialog, u"Add"_s)->click();
    });
    QCOMPARE(chosen, QUrl::fromLocalFile(path(u"applications/editor.desktop"_s)));
}

void QtOpenPanelsTest::a_file_of_any_kind_can_be_chosen()
{
    bool isListed = false;
    const auto chosen = run([&isListed](QFileDialog &dialog) {
        const auto *list = dialog.findChild<QListView *>(u"listView"_s);
        isListed = QTest::qWaitFor([list] {
            for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row) {
                if (list->model()->index(row, 0, list->rootIndex()).data() == u"notes.txt"_s)
                    return true;
            }
            return false;
        });
        name(dialog, u"notes.txt"_s);
        button(dialog, u"Add"_s)->click();
    });
    QVERIFY(isListed);
    QCOMPARE(chosen, QUrl::fromLocalFile(path(u"applications/notes.txt"_s)));
}

void QtOpenPanelsTest::one_file_is_chosen_at_a_time()
{
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    auto selection = QAbstractItemView::NoSelection;
    (void)run([&](QFileDialog &dialog) {
        mode = dialog.fileMode();
        selection = dialog.findChild<QListView *>(u"listView"_s)->selectionMode();
        dialog.reject();
    });
    QCOMPARE(mode, QFileDialog::ExistingFile);
    QCOMPARE(selection, QAbstractItemView::SingleSelection);
}

void QtOpenPanelsTest::a_link_is_chosen_as_the_link_it_is()
{
    const auto chosen = run([](QFileDialog &dialog) {
        name(dialog, u"link.desktop"_s);
        button(dialog, u"Add"_s)->click();
    });
    QCOMPARE(chosen, QUrl::fromLocalFile(path(u"applications/link.desktop"_s)));
}

void QtOpenPanelsTest::a_folder_is_entered_and_not_chosen()
{
    bool stayed = false;
    const auto chosen = run([&stayed](QFileDialog &dialog) {
        name(dialog, u"folder"_s);
        QTest::keyClick(dialog.findChild<QLineEdit *>(), Qt::Key_Return);
        stayed = dialog.isVisible() && dialog.directory().dirName() == QLatin1String("folder");
        dialog.reject();
    });
    QVERIFY(stayed);
    QVERIFY(!chosen);
}

void QtOpenPanelsTest::a_cancelled_panel_chooses_nothing()
{
    const auto chosen = run([](QFileDialog &dialog) {
        name(dialog, u"editor.desktop"_s);
        button(dialog, u"Cancel"_s)->click();
    });
    QVERIFY(!chosen);
}

void QtOpenPanelsTest::escape_cancels()
{
    const auto chosen = run([](QFileDialog &dialog) {
        name(dialog, u"editor.desktop"_s);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QVERIFY(!chosen);
}

void QtOpenPanelsTest::a_panel_whose_window_goes_chooses_nothing()
{
    const QList<QUrl> places = QFileDialog().sidebarUrls();
    const auto chosen = run([this](QFileDialog &dialog) {
        name(dialog, u"editor.desktop"_s);
        window.reset();
    });
    QVERIFY(!window);
    QVERIFY(!chosen);
    QCOMPARE(QFileDialog().sidebarUrls(), places);
}

void QtOpenPanelsTest::the_places_of_the_users_other_dialogs_stay_as_they_were()
{
    const QList<QUrl> before = QFileDialog().sidebarUrls();
    QList<QUrl> meanwhile;
    (void)run([&meanwhile](QFileDialog &dialog) {
        meanwhile = dialog.sidebarUrls();
        dialog.reject();
    });
    QVERIFY(meanwhile.size() > before.size());
    QCOMPARE(QFileDialog().sidebarUrls(), before);
}

void QtOpenPanelsTest::the_main_loop_turns_meanwhile()
{
    bool turned = false;
    QTimer::singleShot(0, this, [&turned] { turned = true; });
    (void)run([&turned](QFileDialog &dialog) {
        QVERIFY(turned);
        dialog.reject();
    });
    QVERIFY(turned);
}

PARKLET_TEST(QtOpenPanelsTest)
#include "QtOpenPanelsTest.moc"
