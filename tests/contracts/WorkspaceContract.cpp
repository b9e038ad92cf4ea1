// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class WorkspaceContract : public QObject {
    Q_OBJECT

public:
    explicit WorkspaceContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void every_file_has_an_icon();
    void an_application_that_is_not_installed_is_not_found();
    void a_file_that_is_no_application_has_no_identifier();
    void there_is_a_folder_of_applications();

private:
    Workspace &workspace() const { return *world.platform().workspace; }

    World &world;
};

void WorkspaceContract::every_file_has_an_icon()
{
    const QUrl gone = QUrl::fromLocalFile(world.folder.filePath(u"gone.png"_s));
    for (const QUrl &file : {world.makeFile(u"words.txt"_s, "words"), QUrl::fromLocalFile(world.folder.path()), gone}) {
        const auto found = std::make_shared<QIcon>();
        workspace().icon(file, [found](const QIcon &icon) { *found = icon; });
        QVERIFY(world.waitFor([&found] { return !found->isNull(); }));
    }
}

void WorkspaceContract::an_application_that_is_not_installed_is_not_found()
{
    QVERIFY(!workspace().application(u"com.orvane.nosuchapplication"_s));
    QVERIFY(!workspace().application(QString()));
}

void WorkspaceContract::a_file_that_is_no_application_has_no_identifier()
{
    QVERIFY(!workspace().bundleIdentifier(world.makeFile(u"letters.txt"_s, "letters")));
    QVERIFY(!workspace().bundleIdentifier(QUrl(u"https://orvane.example/"_s)));
}

void WorkspaceContract::there_is_a_folder_of_applications()
{
    QVERIFY(!workspace().applicationsFolders().isEmpty());
    for (const QUrl &folder : workspace().applicationsFolders())
        QVERIFY(folder.isLocalFile());
}

std::unique_ptr<QObject> workspaceContract(World &world)
{
    return std::make_unique<WorkspaceContract>(world);
}

#include "WorkspaceContract.moc"
