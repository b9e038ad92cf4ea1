// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

class ColorArchiveContract : public QObject {
    Q_OBJECT

public:
    explicit ColorArchiveContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void a_colour_comes_back_with_its_alpha();
    void an_invalid_colour_is_not_archived();
    void anything_but_a_colour_is_refused();

private:
    ColorArchive &colorArchive() const { return *world.platform().colorArchive; }

    World &world;
};

void ColorArchiveContract::a_colour_comes_back_with_its_alpha()
{
    for (const QColor &color : {QColor(10, 200, 30, 128), QColor(0, 0, 0, 0), QColor(255, 255, 255), QColor(Qt::red)}) {
        const auto data = colorArchive().archive(color);
        QVERIFY(data);
        const auto back = colorArchive().unarchive(*data);
        QVERIFY(back);
        QCOMPARE(back->rgba(), color.rgba());
    }
}

void ColorArchiveContract::an_invalid_colour_is_not_archived()
{
    QVERIFY(!colorArchive().archive(QColor()));
}

void ColorArchiveContract::anything_but_a_colour_is_refused()
{
    QVERIFY(!colorArchive().unarchive(QByteArray()));
    QVERIFY(!colorArchive().unarchive(QByteArrayLiteral("#rubbish")));
    const auto data = colorArchive().archive(Qt::red);
    QVERIFY(data);
    QVERIFY(!colorArchive().unarchive(data->left(data->size() - 1)));
}

std::unique_ptr<QObject> colorArchiveContract(World &world)
{
    return std::make_unique<ColorArchiveContract>(world);
}

#include "ColorArchiveContract.moc"
