// SPDX-License-Identifier: MIT
#include "platform/FileURLs.h"
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

using namespace Qt::StringLiterals;

class PasteboardContract : public QObject {
    Q_OBJECT

public:
    explicit PasteboardContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void copied_files_are_read_in_their_order();
    void copied_words_are_no_files();
    void a_copied_file_is_the_one_that_its_folder_lists();

private:
    World &world;
};

void PasteboardContract::copied_files_are_read_in_their_order()
{
    const QList<QUrl> files = {QUrl::fromLocalFile(u"/tmp/second b.txt"_s), QUrl::fromLocalFile(u"/tmp/first.txt"_s)};
    world.copy(files);
    QVERIFY(world.waitForCopied(files));
}

void PasteboardContract::copied_words_are_no_files()
{
    world.copy(u"/tmp/first.txt"_s);
    QVERIFY(world.waitForCopied({}));
}

void PasteboardContract::a_copied_file_is_the_one_that_its_folder_lists()
{
    // The name of a screenshot on a Mac: its accents are separate characters.
    const QByteArray path = "/tmp/Capture d\xe2\x80\x99"
                            "e\xcc\x81"
                            "cran.png";
    world.copy({QUrl::fromLocalFile(QString::fromUtf8(path))});
    QVERIFY(world.waitForCopied({fileURL(path)}));
}

std::unique_ptr<QObject> pasteboardContract(World &world)
{
    return std::make_unique<PasteboardContract>(world);
}

#include "PasteboardContract.moc"
