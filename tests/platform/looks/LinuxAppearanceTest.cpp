// SPDX-License-Identifier: MIT
#include "platform/linux/looks/LinuxAppearance.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QFile>
#include <QPainter>
#include <QPalette>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class LinuxAppearanceTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void the_accent_colour_is_the_palettes_highlight_of_now();
    void an_unknown_symbol_is_a_null_icon();
    void a_symbol_has_its_tint();
    void a_translucent_tint_does_not_add_up();
    void a_symbol_fills_the_pixels_asked_for_at_every_scale();
    void a_symbol_keeps_its_proportions();
    void a_painted_symbol_is_drawn_at_the_devices_pixels();
    void a_disabled_symbol_is_fainter();
    void a_broken_picture_is_a_null_icon();
    void the_applications_icon_keeps_its_own_colours();
    void without_artwork_the_icon_is_the_one_the_desktop_shows_for_the_application();
    void an_application_that_the_desktop_does_not_know_has_an_icon_too();
    void every_symbol_of_the_program_draws();

private:
    QTemporaryDir folder;
};

namespace {

QImage image(const QIcon &icon, int size, double scale = 1.0, QIcon::Mode mode = QIcon::Normal)
{
    return icon.pixmap(QSize(size, size), scale, mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

bool near(int value, int expected)
{
    return std::abs(value - expected) <= 2;
}

} // namespace

void LinuxAppearanceTest::initTestCase()
{
    QVERIFY(QDir(folder.path()).mkdir(u"symbols"_s));
    const auto write = [this](const QString &name, const QByteArray &text) {
        QFile file(folder.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
    };
    const QByteArray head = "<svg xmlns='http://www.w3.org/2000/svg' fill='currentColor' viewBox=";
    // The symbol covers the left half, with two overlapping shapes.
    QVERIFY(write(u"symbols/half.svg"_s,
                  head + "'0 0 16 16'><rect width='8' height='16'/><rect width='8' height='16'/></svg>"));
    QVERIFY(write(u"symbols/wide.svg"_s, head + "'0 0 20 10'><rect width='20' height='10'/></svg>"));
    QVERIFY(write(u"symbols/broken.svg"_s, "<svg"));
    QVERIFY(write(u"AppIcon.svg"_s, head + "'0 0 16 16'><rect width='16' height='16' fill='#0000ff'/></svg>"));
}

void LinuxAppearanceTest::the_accent_colour_is_the_palettes_highlight_of_now()
{
    const LinuxAppearance appearance;
    const QPalette before = QApplication::palette();
    QPalette palette = before;
    palette.setColor(QPalette::Active, QPalette::Highlight, QColor(200, 10, 20));
    palette.setColor(QPalette::Inactive, QPalette::Highlight, Qt::gray);
    QApplication::setPalette(palette);
    QCOMPARE(appearance.accentColor(), QColor(200, 10, 20));
    palette.setColor(QPalette::Active, QPalette::Highlight, Qt::green);
    QApplication::setPalette(palette);
    QCOMPARE(appearance.accentColor(), QColor(Qt::green));
    QApplication::setPalette(before);
}

void LinuxAppearanceTest::an_unknown_symbol_is_a_null_icon()
{
    QVERIFY(LinuxAppearance().symbol(u"no.such.symbol"_s, Qt::white).isNull());
    QVERIFY(LinuxAppearance().symbol(QString(), Qt::white).isNull());
}

void LinuxAppearanceTest::a_symbol_has_its_tint()
{
    const QImage picture = image(LinuxAppearance(folder.path()).symbol(u"half"_s, QColor(10, 200, 30)), 16);
    QCOMPARE(picture.pixelColor(3, 8), QColor(10, 200, 30));
    QCOMPARE(picture.pixelColor(12, 8).alpha(), 0);
}

void LinuxAppearanceTest::a_translucent_tint_does_not_add_up()
{
    const QColor tint = QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.65F);
    const QImage picture = image(LinuxAppearance(folder.path()).symbol(u"half"_s, tint), 16);
    QVERIFY(near(picture.pixelColor(3, 8).alpha(), 166));
    QVERIFY(near(picture.pixelColor(3, 8).red(), 255));
}

void LinuxAppearanceTest::a_symbol_fills_the_pixels_asked_for_at_every_scale()
{
    const QIcon icon = LinuxAppearance(folder.path()).symbol(u"half"_s, Qt::white);
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        const QPixmap pixmap = icon.pixmap(QSize(26, 26), scale);
        QCOMPARE(pixmap.size(), QSize(26, 26) * scale);
        QCOMPARE(pixmap.devicePixelRatio(), scale);
        // The edge in the middle is sharp: no pixel is blurred.
        const QImage picture = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
        const int middle = picture.width() / 2;
        if (picture.width() % 2 != 0)
            continue;
        QCOMPARE(picture.pixelColor(middle - 1, middle).alpha(), 255);
        QCOMPARE(picture.pixelColor(middle, middle).alpha(), 0);
    }
}

void LinuxAppearanceTest::a_symbol_keeps_its_proportions()
{
    const QImage picture = image(LinuxAppearance(folder.path()).symbol(u"wide"_s, Qt::white), 20);
    QCOMPARE(picture.pixelColor(10, 1).alpha(), 0);
    QCOMPARE(picture.pixelColor(1, 10).alpha(), 255);
    QCOMPARE(picture.pixelColor(18, 10).alpha(), 255);
}

void LinuxAppearanceTest::a_painted_symbol_is_drawn_at_the_devices_pixels()
{
    const QIcon icon = LinuxAppearance(folder.path()).symbol(u"half"_s, Qt::red);
    QPixmap canvas(40, 40);
    canvas.setDevicePixelRatio(2.0);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    icon.paint(&painter, QRect(0, 0, 20, 20));
    painter.end();
    const QImage picture = canvas.toImage().convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(picture.pixelColor(19, 20), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(20, 20).alpha(), 0);
    QCOMPARE(picture.pixelColor(0, 39), QColor(Qt::red));
}

void LinuxAppearanceTest::a_disabled_symbol_is_fainter()
{
    const QIcon icon = LinuxAppearance(folder.path()).symbol(u"half"_s, Qt::white);
    QVERIFY(near(image(icon, 16, 1.0, QIcon::Disabled).pixelColor(3, 8).alpha(), 102));
    QCOMPARE(image(icon, 16, 1.0, QIcon::Active).pixelColor(3, 8).alpha(), 255);
}

void LinuxAppearanceTest::a_broken_picture_is_a_null_icon()
{
    QVERIFY(LinuxAppearance(folder.path()).symbol(u"broken"_s, Qt::white).isNull());
}

void LinuxAppearanceTest::the_applications_icon_keeps_its_own_colours()
{
    QCOMPARE(image(LinuxAppearance(folder.path()).applicationIcon(), 64).pixelColor(32, 32), QColor(Qt::blue));
}

void LinuxAppearanceTest::without_artwork_the_icon_is_the_one_the_desktop_shows_for_the_application()
{
    QTemporaryDir themes;
    QVERIFY(QDir(themes.path()).mkpath(u"hicolor/64x64/apps"_s));
    QFile index(themes.filePath(u"hicolor/index.theme"_s));
    QVERIFY(index.open(QIODevice::WriteOnly));
    index.write("[Icon Theme]\nName=Hicolor\nDirectories=64x64/apps\n\n[64x64/apps]\nSize=64\nType=Fixed\n");
    index.close();
    QImage picture(64, 64, QImage::Format_ARGB32);
    picture.fill(QColor(200, 100, 0));
    QVERIFY(picture.save(themes.filePath(u"hicolor/64x64/apps/org.example.Installed.png"_s)));

    QIcon::setThemeSearchPaths({themes.path()});
    QIcon::setThemeName(u"hicolor"_s);
    QGuiApplication::setDesktopFileName(u"org.example.Installed"_s);
    const LinuxAppearance appearance(folder.filePath(u"nowhere"_s));
    QCOMPARE(image(appearance.applicationIcon(), 64).pixelColor(32, 32), QColor(200, 100, 0));
    // The program's own icon is preferred to an installed one.
    QCOMPARE(image(LinuxAppearance(folder.path()).applicationIcon(), 64).pixelColor(32, 32), QColor(Qt::blue));
}

void LinuxAppearanceTest::an_application_that_the_desktop_does_not_know_has_an_icon_too()
{
    QGuiApplication::setDesktopFileName(u"org.example.NowhereInstalled"_s);
    const LinuxAppearance appearance(folder.filePath(u"nowhere"_s));
    QCOMPARE(image(appearance.applicationIcon(), 64).pixelColor(32, 32).alpha(), 255);
}

void LinuxAppearanceTest::every_symbol_of_the_program_draws()
{
    const LinuxAppearance appearance;
    const QStringList files = QDir(u":/symbols"_s).entryList({u"*.svg"_s});
    QVERIFY(files.contains(u"tray.and.arrow.down.svg"_s));
    for (const QString &file : files) {
        const QIcon icon = appearance.symbol(file.chopped(4), QColor(255, 0, 255));
        QVERIFY2(!icon.isNull(), qPrintable(file));
        const QImage picture = image(icon, 32);
        int drawn = 0;
        for (int y = 0; y < 32; ++y) {
            for (int x = 0; x < 32; ++x)
                drawn += picture.pixelColor(x, y) == QColor(255, 0, 255);
        }
        QVERIFY2(drawn > 20, qPrintable(file));
    }
    QVERIFY(!appearance.applicationIcon().isNull());
    QCOMPARE(image(appearance.applicationIcon(), 64).pixelColor(32, 32).alpha(), 255);
}

PARKLET_TEST(LinuxAppearanceTest)
#include "LinuxAppearanceTest.moc"
