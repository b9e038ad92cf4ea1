// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

class SystemAppearanceContract : public QObject {
    Q_OBJECT

public:
    explicit SystemAppearanceContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void there_is_an_accent_colour();
    void every_symbol_of_the_interface_is_there_data();
    void every_symbol_of_the_interface_is_there();
    void a_symbol_that_is_not_there_is_null();
    void the_application_has_an_icon();

private:
    SystemAppearance &appearance() const { return *world.platform().appearance; }

    World &world;
};

void SystemAppearanceContract::there_is_an_accent_colour()
{
    QVERIFY(appearance().accentColor().isValid());
}

void SystemAppearanceContract::every_symbol_of_the_interface_is_there_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"gearshape", "hand.wave", "info.circle", "paintpalette", "questionmark.app", "rectangle.on.rectangle",
          "square.stack.3d.down.right", "trash", "tray.and.arrow.down", "xmark"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void SystemAppearanceContract::every_symbol_of_the_interface_is_there()
{
    QFETCH(QString, name);
    const QIcon icon = appearance().symbol(name, Qt::red);
    QVERIFY(!icon.isNull());
    const QImage image = icon.pixmap(QSize(32, 32), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
    int drawn = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() < 128)
                continue;
            ++drawn;
            QVERIFY(pixel.red() > 250 && pixel.green() < 5 && pixel.blue() < 5);
        }
    }
    QVERIFY(drawn > 0);
}

void SystemAppearanceContract::a_symbol_that_is_not_there_is_null()
{
    QVERIFY(appearance().symbol(u"no.such.symbol"_s, Qt::red).isNull());
}

void SystemAppearanceContract::the_application_has_an_icon()
{
    QVERIFY(!appearance().applicationIcon().isNull());
}

std::unique_ptr<QObject> systemAppearanceContract(World &world)
{
    return std::make_unique<SystemAppearanceContract>(world);
}

#include "SystemAppearanceContract.moc"
