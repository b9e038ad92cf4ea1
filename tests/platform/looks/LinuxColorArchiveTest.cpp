// SPDX-License-Identifier: MIT
#include "platform/linux/looks/LinuxColorArchive.h"
#include "tests/support/TestProgram.h"

#include <QRandomGenerator>
#include <QRgba64>
#include <QTest>

#include <cstring>
#include <limits>

class LinuxColorArchiveTest : public QObject {
    Q_OBJECT

private slots:
    void a_colour_comes_back_with_its_alpha();
    void sixteen_bits_a_component_are_kept();
    void a_colour_outside_the_ordinary_range_comes_back();
    void another_colour_model_comes_back_as_the_same_colour();
    void an_invalid_colour_is_not_archived();
    void an_archive_is_short();
    void anything_but_exactly_one_colour_is_refused();
    void rubbish_is_refused_or_gives_a_valid_colour();
};

namespace {

std::optional<QColor> roundTrip(const QColor &color)
{
    const LinuxColorArchive archive;
    const auto data = archive.archive(color);
    return data ? archive.unarchive(*data) : std::nullopt;
}

} // namespace

void LinuxColorArchiveTest::a_colour_comes_back_with_its_alpha()
{
    for (const QColor &color : {QColor(10, 200, 30, 128), QColor(0, 0, 0, 0), QColor(255, 255, 255), QColor(Qt::red)})
        QCOMPARE(roundTrip(color), color);
}

void LinuxColorArchiveTest::sixteen_bits_a_component_are_kept()
{
    const QColor color = QColor::fromRgba64(1, 0x1234, 0xfffe, 0x8001);
    QCOMPARE(roundTrip(color), color);
    QCOMPARE(roundTrip(color)->rgba64(), color.rgba64());
}

void LinuxColorArchiveTest::a_colour_outside_the_ordinary_range_comes_back()
{
    const QColor color = QColor::fromRgbF(1.5F, -0.25F, 0.125F, 0.5F);
    QCOMPARE(color.spec(), QColor::ExtendedRgb);
    QCOMPARE(roundTrip(color), color);
    const QColor inside = QColor(1, 2, 3).toExtendedRgb();
    QCOMPARE(roundTrip(inside), inside);
}

void LinuxColorArchiveTest::another_colour_model_comes_back_as_the_same_colour()
{
    const QColor color = QColor::fromHsv(200, 100, 150, 77);
    QCOMPARE(roundTrip(color), color.toRgb());
    QCOMPARE(roundTrip(QColor::fromCmyk(10, 20, 30, 40)), QColor::fromCmyk(10, 20, 30, 40).toRgb());
}

void LinuxColorArchiveTest::an_invalid_colour_is_not_archived()
{
    QVERIFY(!LinuxColorArchive().archive(QColor()));
}

void LinuxColorArchiveTest::an_archive_is_short()
{
    QCOMPARE(LinuxColorArchive().archive(Qt::red)->size(), 13);
}

void LinuxColorArchiveTest::anything_but_exactly_one_colour_is_refused()
{
    const LinuxColorArchive archive;
    for (const QColor &color : {QColor(1, 2, 3, 4), QColor::fromRgbF(2.0F, 0.0F, 0.0F)}) {
        const QByteArray data = *archive.archive(color);
        for (qsizetype size = 0; size < data.size(); ++size)
            QVERIFY2(!archive.unarchive(data.left(size)), QByteArray::number(size).constData());
        QVERIFY(!archive.unarchive(data + '\0'));
        QVERIFY(!archive.unarchive(data + data));
        QVERIFY(!archive.unarchive('\0' + data));
        QByteArray otherKind = data;
        otherKind[4] = '\x03';
        QVERIFY(!archive.unarchive(otherKind));
    }
    const QByteArray extended = *archive.archive(QColor::fromRgbF(2.0F, 0.0F, 0.0F));
    const auto withAlpha = [&extended](float alpha) {
        QByteArray data = extended;
        quint32 bits = 0;
        std::memcpy(&bits, &alpha, sizeof bits);
        for (int i = 0; i < 4; ++i)
            data[data.size() - 1 - i] = static_cast<char>(bits >> (8 * i));
        return data;
    };
    QVERIFY(archive.unarchive(withAlpha(0.5F)));
    for (const float alpha :
         {-0.1F, 1.1F, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()})
        QVERIFY(!archive.unarchive(withAlpha(alpha)));
}

void LinuxColorArchiveTest::rubbish_is_refused_or_gives_a_valid_colour()
{
    const LinuxColorArchive archive;
    QRandomGenerator random(1);
    const QByteArray ordinary = *archive.archive(Qt::red);
    const QByteArray extended = *archive.archive(QColor::fromRgbF(2.0F, 0.0F, 0.0F));
    for (int round = 0; round < 20'000; ++round) {
        QByteArray data = round % 3 == 0 ? ordinary : extended;
        if (round % 3 == 2)
            data.resize(random.bounded(40));
        const int changes = random.bounded(1, 6);
        for (int i = 0; i < changes && !data.isEmpty(); ++i)
            data[static_cast<qsizetype>(random.bounded(static_cast<int>(data.size())))] =
                static_cast<char>(random.bounded(256));
        const auto color = archive.unarchive(data);
        QVERIFY(!color || color->isValid());
    }
}

PARKLET_GUILESS_TEST(LinuxColorArchiveTest)
#include "LinuxColorArchiveTest.moc"
