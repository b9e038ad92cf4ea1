// SPDX-License-Identifier: MIT
#include "preferences/Controls.h"

#include "preferences/ColorWell.h"
#include "preferences/DoubleSlider.h"
#include "tests/preferences/WellFixture.h"
#include "tests/support/TestProgram.h"

#include <QAccessible>
#include <QApplication>
#include <QPainter>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

class ControlsTest : public QObject {
    Q_OBJECT

private slots:
    void an_image_is_scaled_up_or_down_to_fit_and_keeps_its_proportions_data();
    void an_image_is_scaled_up_or_down_to_fit_and_keeps_its_proportions();
    void no_image_draws_nothing();
    void a_label_shows_its_text_as_it_is();
    void a_label_is_in_the_windows_text_colour();
    void the_system_font_is_the_applications_at_that_size();
    void a_secondary_label_steps_back();
    void a_secondary_label_can_be_read_on_light_and_on_dark_data();
    void a_secondary_label_can_be_read_on_light_and_on_dark();
    void a_separator_is_one_point_high_in_the_separator_colour();
    void a_separator_is_drawn_from_end_to_end_data();
    void a_separator_is_drawn_from_end_to_end();
    void a_pop_up_shows_nothing_for_an_index_without_a_title();
    void the_wheel_changes_a_control_only_while_it_has_the_focus();
    void a_slider_maps_its_places_to_doubles();
    void a_slider_goes_to_its_nearer_end_for_a_value_outside();
    void a_slider_reports_the_end_that_it_showed_for_a_value_outside();
    void a_slider_reports_the_place_that_it_showed_for_a_value_between_two();
    void a_slider_ignores_what_is_no_number();
    void a_slider_tells_a_screen_reader_its_value();
    void a_screen_reader_can_set_a_slider();
    void a_screen_reader_sets_a_slider_to_its_end_with_a_value_outside();
    void a_colour_well_shows_its_colour();
    void a_translucent_colour_is_shown_over_a_checker();
    void a_colour_set_from_outside_calls_nobody_back();
};

namespace {

QIcon picture(const QSize &size)
{
    QPixmap pixmap(size);
    pixmap.fill(Qt::red);
    return QIcon(pixmap);
}

QRect redPart(const QImage &image)
{
    QRect part;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).red() > 128 && image.pixelColor(x, y).green() < 128)
                part |= QRect(x, y, 1, 1);
        }
    }
    return part;
}

double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

// How a translucent colour looks on an opaque background.
QColor drawnOn(const QColor &background, const QColor &color)
{
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(background);
    QPainter painter(&image);
    painter.fillRect(image.rect(), color);
    painter.end();
    return image.pixelColor(0, 0);
}

// The contrast ratio as WCAG, the accessibility guidelines for the web, defines it.
double contrast(const QColor &text, const QColor &background)
{
    const double one = luminance(drawnOn(background, text)) + 0.05;
    const double other = luminance(background) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

// A visible slider from 48 to 120, and its reports.
struct ShownSlider {
    ShownSlider()
    {
        slider.resize(300, 20);
        window.resize(300, 20);
        window.show();
        QObject::connect(&slider, &DoubleSlider::reported, &window, [this] { ++reports; });
    }

    QWidget window;
    DoubleSlider slider{48.0, 120.0, 720, &window};
    int reports = 0;
};

} // namespace

void ControlsTest::an_image_is_scaled_up_or_down_to_fit_and_keeps_its_proportions_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("up") << QSize(16, 16) << QRect(4, 4, 32, 32);
    QTest::newRow("down") << QSize(200, 200) << QRect(4, 4, 32, 32);
    QTest::newRow("wide") << QSize(64, 32) << QRect(4, 12, 32, 16);
    QTest::newRow("high") << QSize(10, 20) << QRect(12, 4, 16, 32);
}

void ControlsTest::an_image_is_scaled_up_or_down_to_fit_and_keeps_its_proportions()
{
    QFETCH(const QSize, size);
    QFETCH(const QRect, expected);
    QImage image(40, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    drawImage(painter, picture(size), QRect(4, 4, 32, 32));
    painter.end();
    QCOMPARE(redPart(image), expected);
}

void ControlsTest::no_image_draws_nothing()
{
    QImage image(40, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    const QImage before = image;
    QPainter painter(&image);
    drawImage(painter, QIcon(), QRect(4, 4, 32, 32));
    painter.end();
    QCOMPARE(image, before);
}

void ControlsTest::a_label_shows_its_text_as_it_is()
{
    QWidget window;
    const QLabel *label = fieldLabel(u"<b>A & B</b>"_s, &window, 24);
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QCOMPARE(label->text(), u"<b>A & B</b>"_s);
    QCOMPARE(label->font().pixelSize(), 24);
    QCOMPARE(label->textInteractionFlags() & Qt::TextEditable, Qt::NoTextInteraction);
}

void ControlsTest::a_label_is_in_the_windows_text_colour()
{
    QWidget window;
    QPalette palette;
    palette.setColor(QPalette::WindowText, Qt::blue);
    window.setPalette(palette);
    const QLabel *label = fieldLabel(u"text"_s, &window);
    QCOMPARE(label->palette().color(label->foregroundRole()), QColor(Qt::blue));
}

void ControlsTest::the_system_font_is_the_applications_at_that_size()
{
    const QFont before = QApplication::font();
    QFont font = before;
    font.setFamily(u"Monospace"_s);
    font.setWeight(QFont::DemiBold);
    font.setItalic(true);
    QApplication::setFont(font);
    const QFont made = systemFont(24);
    QWidget window;
    const QFont ofLabel = fieldLabel(u"text"_s, &window, 24)->font();
    QApplication::setFont(before);
    font.setPixelSize(24);
    QCOMPARE(made, font);
    QCOMPARE(ofLabel, font);
}

void ControlsTest::a_secondary_label_steps_back()
{
    QWidget window;
    const QLabel *label = secondaryLabel(u"text"_s, &window);
    const QColor color = label->palette().color(label->foregroundRole());
    QCOMPARE(color, secondaryLabelColor(window.palette()));
    QVERIFY(color.alpha() < 255);
    QCOMPARE(label->font().pixelSize(), 13);
}

void ControlsTest::a_secondary_label_can_be_read_on_light_and_on_dark_data()
{
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("background");
    QTest::newRow("light") << QColor(Qt::black) << QColor(239, 239, 239);
    QTest::newRow("white") << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("dark") << QColor(Qt::white) << QColor(53, 53, 53);
    QTest::newRow("black") << QColor(252, 252, 252) << QColor(27, 30, 32);
}

void ControlsTest::a_secondary_label_can_be_read_on_light_and_on_dark()
{
    QFETCH(const QColor, text);
    QFETCH(const QColor, background);
    QWidget window;
    const QLabel *label = secondaryLabel(u"text"_s, &window);
    // A palette as a simple desktop sets it: the placeholder colour stays black.
    QPalette palette;
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Window, background);
    window.setPalette(palette);
    const QColor color = label->palette().color(label->foregroundRole());
    QCOMPARE(color, secondaryLabelColor(palette));
    // Text of this size needs a ratio of 4.5, and must differ more than the placeholder.
    QVERIFY2(contrast(color, background) > 4.5, qPrintable(QString::number(contrast(color, background))));
    QVERIFY(contrast(color, background) < contrast(text, background) / 1.5);
}

void ControlsTest::a_separator_is_one_point_high_in_the_separator_colour()
{
    QWidget window;
    Separator separator(&window);
    separator.resize(50, 10);
    QCOMPARE(separator.height(), 1);
    QPalette palette;
    palette.setColor(QPalette::WindowText, QColor(10, 20, 30));
    const QColor color = separatorColor(palette);
    QCOMPARE(QColor(color.red(), color.green(), color.blue()), QColor(10, 20, 30));
    QVERIFY(color.alphaF() > 0.1 && color.alphaF() < 0.3);
}

void ControlsTest::a_separator_is_drawn_from_end_to_end_data()
{
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("background");
    QTest::newRow("light") << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("dark") << QColor(Qt::white) << QColor(53, 53, 53);
}

void ControlsTest::a_separator_is_drawn_from_end_to_end()
{
    QFETCH(const QColor, text);
    QFETCH(const QColor, background);
    QWidget window;
    QPalette palette;
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Window, background);
    window.setPalette(palette);
    Separator separator(&window);
    separator.resize(50, 1);
    const QImage image = separator.grab().toImage();
    QCOMPARE(image.size(), QSize(50, 1));
    for (const int x : {0, 25, 49})
        QCOMPARE(image.pixelColor(x, 0), drawnOn(background, separatorColor(palette)));
}

void ControlsTest::a_pop_up_shows_nothing_for_an_index_without_a_title()
{
    QWidget window;
    const QStringList titles = {u"a"_s, u"b"_s};
    for (const auto &[index, shown] : {std::pair<qint64, int>(0, 0), {1, 1}, {2, -1}, {-1, -1}, {1LL << 40, -1}})
        QCOMPARE(popUp(titles, index, &window)->currentIndex(), shown);
}

void ControlsTest::the_wheel_changes_a_control_only_while_it_has_the_focus()
{
    QWidget window;
    QComboBox *box = popUp({u"a"_s, u"b"_s}, 0, &window);
    QWidget other(&window);
    other.setFocusPolicy(Qt::StrongFocus);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const auto turnWheel = [box] {
        const QPointF middle = box->rect().center();
        QWheelEvent event(middle, box->mapToGlobal(middle), {}, QPoint(0, -120), Qt::NoButton, {}, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(box, &event);
        return event.isAccepted();
    };
    other.setFocus();
    turnWheel();
    QCOMPARE(box->currentIndex(), 0);
    QVERIFY(!box->hasFocus());
    box->setFocus();
    QVERIFY(turnWheel());
    QCOMPARE(box->currentIndex(), 1);
}

void ControlsTest::a_slider_maps_its_places_to_doubles()
{
    QWidget window;
    DoubleSlider slider(48.0, 120.0, 720, &window);
    QCOMPARE(slider.doubleValue(), 48.0);
    for (const double value : {48.0, 72.0, 72.1, 100.5, 119.9, 120.0}) {
        slider.setDoubleValue(value);
        QCOMPARE(slider.doubleValue(), value);
    }
    // A value between two positions is rounded to the nearer one.
    slider.setDoubleValue(72.04);
    QCOMPARE(slider.doubleValue(), 72.0);
    slider.setDoubleValue(72.06);
    QCOMPARE(slider.doubleValue(), 72.1);
}

void ControlsTest::a_slider_goes_to_its_nearer_end_for_a_value_outside()
{
    QWidget window;
    DoubleSlider slider(0.0, 1.0, 1000, &window);
    slider.setDoubleValue(1e300);
    QCOMPARE(slider.doubleValue(), 1.0);
    slider.setDoubleValue(-7.0);
    QCOMPARE(slider.doubleValue(), 0.0);
}

void ControlsTest::a_slider_reports_the_end_that_it_showed_for_a_value_outside()
{
    ShownSlider f;
    DoubleSlider &slider = f.slider;
    int &reports = f.reports;
    const auto reported = [&reports] { return std::exchange(reports, 0); };
    const auto putOutside = [&] {
        slider.setDoubleValue(9000);
        reported();
    };
    const QPoint knob(slider.width() - 5, slider.height() / 2);

    putOutside();
    QTest::keyClick(&slider, Qt::Key_End);
    QCOMPARE(reported(), 1);
    QTest::keyClick(&slider, Qt::Key_End);
    QCOMPARE(reported(), 0);

    putOutside();
    QTest::mouseClick(&slider, Qt::LeftButton, {}, knob);
    QCOMPARE(reported(), 1);
    QTest::mouseClick(&slider, Qt::LeftButton, {}, knob);
    QCOMPARE(reported(), 0);

    putOutside();
    QAccessible::queryAccessibleInterface(&slider)->valueInterface()->setCurrentValue(120.0);
    QCOMPARE(reported(), 1);
    QCOMPARE(slider.doubleValue(), 120.0);

    // One step gives one report, wherever it begins.
    putOutside();
    QTest::keyClick(&slider, Qt::Key_Left);
    QCOMPARE(reported(), 1);
    QTest::keyClick(&slider, Qt::Key_Left);
    QCOMPARE(reported(), 1);
}

void ControlsTest::a_slider_reports_the_place_that_it_showed_for_a_value_between_two()
{
    ShownSlider f;
    DoubleSlider &slider = f.slider;
    int &reports = f.reports;
    const auto pressedAtEnd = [&] {
        reports = 0;
        QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(slider.width() - 5, slider.height() / 2));
        return reports;
    };
    slider.setDoubleValue(119.96);
    QCOMPARE(slider.doubleValue(), 120.0);
    QCOMPARE(pressedAtEnd(), 1);
    QCOMPARE(pressedAtEnd(), 0);
    // A value at a position is shown there, whatever the rounding error.
    for (const double value : {120.0, 120.0 + 1e-12, 120.0 - 1e-12}) {
        slider.setDoubleValue(value);
        QCOMPARE(pressedAtEnd(), 0);
    }

    reports = 0;
    slider.setDoubleValue(72.04);
    QCOMPARE(reports, 1);
    QAccessible::queryAccessibleInterface(&slider)->valueInterface()->setCurrentValue(72.0);
    QCOMPARE(reports, 2);
}

void ControlsTest::a_slider_ignores_what_is_no_number()
{
    QWidget window;
    DoubleSlider slider(0.0, 1.0, 1000, &window);
    slider.setDoubleValue(0.5);
    slider.setDoubleValue(qQNaN());
    QCOMPARE(slider.doubleValue(), 0.5);
    int reports = 0;
    connect(&slider, &DoubleSlider::reported, this, [&reports] { ++reports; });
    slider.chooseDoubleValue(qQNaN());
    QCOMPARE(slider.doubleValue(), 0.5);
    QCOMPARE(reports, 0);
}

void ControlsTest::a_slider_tells_a_screen_reader_its_value()
{
    QWidget window;
    DoubleSlider slider(48.0, 120.0, 720, &window);
    QLabel *label = fieldLabel(u"Shelf item size"_s, &window);
    setLabel(*label, slider);
    slider.setDoubleValue(72.0);
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&slider);
    QCOMPARE(accessible->role(), QAccessible::Slider);
    QCOMPARE(accessible->text(QAccessible::Name), u"Shelf item size"_s);
    const QAccessibleValueInterface *value = accessible->valueInterface();
    QVERIFY(value);
    QCOMPARE(value->currentValue().toDouble(), 72.0);
    QCOMPARE(value->minimumValue().toDouble(), 48.0);
    QCOMPARE(value->maximumValue().toDouble(), 120.0);
    QCOMPARE(value->minimumStepSize().toDouble(), 1.0);
}

void ControlsTest::a_screen_reader_can_set_a_slider()
{
    QWidget window;
    DoubleSlider slider(48.0, 120.0, 720, &window);
    int changes = 0;
    connect(&slider, &DoubleSlider::reported, this, [&changes] { ++changes; });
    QAccessible::queryAccessibleInterface(&slider)->valueInterface()->setCurrentValue(90.0);
    QCOMPARE(slider.doubleValue(), 90.0);
    QCOMPARE(changes, 1);
}

void ControlsTest::a_screen_reader_sets_a_slider_to_its_end_with_a_value_outside()
{
    QWidget window;
    DoubleSlider slider(48.0, 120.0, 720, &window);
    int reports = 0;
    connect(&slider, &DoubleSlider::reported, this, [&reports] { ++reports; });
    const auto reported = [&reports] { return std::exchange(reports, 0); };
    QAccessibleValueInterface &value = *QAccessible::queryAccessibleInterface(&slider)->valueInterface();

    slider.setDoubleValue(72.0);
    reported();
    value.setCurrentValue(500.0);
    QCOMPARE(reported(), 1);
    QCOMPARE(slider.doubleValue(), 120.0);
    // The end has already been reported.
    QTest::keyClick(&slider, Qt::Key_End);
    QCOMPARE(reported(), 0);

    slider.setDoubleValue(9000.0);
    reported();
    value.setCurrentValue(500.0);
    QCOMPARE(reported(), 1);
    QCOMPARE(slider.doubleValue(), 120.0);
    value.setCurrentValue(-1.0);
    QCOMPARE(reported(), 1);
    QCOMPARE(slider.doubleValue(), 48.0);
}

void ControlsTest::a_colour_well_shows_its_colour()
{
    WellFixture f;
    const QImage image = f.well.grab().toImage();
    QCOMPARE(image.pixelColor(image.rect().center()), QColor(20, 40, 60));
    QCOMPARE(f.well.accessibleDescription(), u"#ff14283c"_s);
}

void ControlsTest::a_translucent_colour_is_shown_over_a_checker()
{
    WellFixture f;
    f.well.setColor(QColor(0, 0, 0, 0));
    const QImage image = f.well.grab().toImage();
    QSet<QRgb> colors;
    for (int x = image.width() / 2 - 8; x < image.width() / 2 + 8; ++x)
        colors.insert(image.pixel(x, image.height() / 2));
    QCOMPARE(colors, QSet<QRgb>({QColor(Qt::white).rgb(), QColor(Qt::lightGray).rgb()}));
}

void ControlsTest::a_colour_set_from_outside_calls_nobody_back()
{
    WellFixture f;
    f.well.setColor(Qt::green);
    QVERIFY(f.chosen.isEmpty());
}

PARKLET_TEST(ControlsTest)
#include "ControlsTest.moc"
