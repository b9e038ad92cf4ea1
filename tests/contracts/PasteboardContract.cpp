// SPDX-License-Identifier: MIT
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

private:
    Pasteboard &generalPasteboard() const { return *world.platform().generalPasteboard; }

    World &world;
};

void PasteboardContract::copied_files_are_read_in_their_order()
{
    const QList<QUrl> files = {QUrl::fromLocalFile(u"/tmp/second b.txt"_s), QUrl::fromLocalFile(u"/tmp/first.txt"_s)};
    world.copy(files);
    QVERIFY(world.waitFor([&] { return generalPasteboard().fileURLs() == files; }));
}

void PasteboardContract::copied_words_are_no_files()
{
    world.copy(u"/tmp/first.txt"_s);
    QVERIFY(world.waitFor([&] { return generalPasteboard().fileURLs().isEmpty(); }));
}

std::unique_ptr<QObject> pasteboardContract(World &world)
{
    return std::make_unique<PasteboardContract>(world);
}

#include "PasteboardContract.moc"
