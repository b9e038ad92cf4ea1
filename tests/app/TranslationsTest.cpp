// SPDX-License-Identifier: MIT
#include "app/Translations.h"

#include "app/CommandLine.h"
#include "platform/Alerts.h"
#include "shelf/ShelfPanel.h"
#include "tests/support/TestProgram.h"
#include "updates/UpdateAlerts.h"
#include "updates/VersionRecord.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>

#include <map>

using namespace Qt::StringLiterals;

namespace {

const QString kFolder = QStringLiteral(PARKLET_TRANSLATIONS_FOLDER);

QString showShelf()
{
    return QCoreApplication::translate("StatusMenu", "Show Shelf");
}

// The placeholders in a text. %L1 counts as %1.
QStringList markers(const QString &text)
{
    static const QRegularExpression marker(u"%L?(\\d{1,2}|n)"_s);
    QStringList found;
    for (auto matches = marker.globalMatch(text); matches.hasNext();)
        found.append(matches.next().captured(1));
    found.sort();
    return found;
}

} // namespace

class TranslationsTest : public QObject {
    Q_OBJECT

private slots:
    void the_first_language_that_there_is_speaks_data();
    void the_first_language_that_there_is_speaks();
    void the_c_locale_has_no_language_data();
    void the_c_locale_has_no_language();
    void it_speaks_as_long_as_it_lives();
    void numbers_and_values_take_their_places();
    void the_terminal_is_told_in_the_same_language();
    void every_translation_is_in_the_program_data();
    void every_translation_is_in_the_program();
    void every_translated_text_takes_the_same_arguments_data();
    void every_translated_text_takes_the_same_arguments();
};

void TranslationsTest::the_first_language_that_there_is_speaks_data()
{
    const QString english = u"Show Shelf"_s;
    const QString german = u"Ablage anzeigen"_s;
    QTest::addColumn<QString>("languages");
    QTest::addColumn<QString>("expected");
    QTest::newRow("German") << "de-DE de-Latn-DE de" << german;
    QTest::newRow("German in Austria") << "de-AT de-Latn-AT" << german;
    QTest::newRow("an English text, though there is a German one") << "en-GB en-Latn-GB de" << english;
    QTest::newRow("German before English") << "de en-US" << german;
    QTest::newRow("a language without a translation, then German") << "is de en" << german;
    QTest::newRow("a language without a translation, then English") << "is en de" << english;
    QTest::newRow("a language without a translation") << "is" << english;
    QTest::newRow("a language that does not exist") << "xx-YY C" << english;
    QTest::newRow("a language that does not exist, then German") << "xx-YY C de" << german;
    QTest::newRow("no language") << "C" << english;
    QTest::newRow("nothing") << "" << english;
    QTest::newRow("nonsense") << "../de %1 \n" << english;
}

void TranslationsTest::the_first_language_that_there_is_speaks()
{
    QFETCH(QString, languages);
    const Translations translations(languages.split(QLatin1Char(' ')));
    QTEST(showShelf(), "expected");
}

void TranslationsTest::the_c_locale_has_no_language_data()
{
    QTest::addColumn<QByteArray>("all");
    QTest::addColumn<QByteArray>("messages");
    QTest::addColumn<QByteArray>("lang");
    QTest::addColumn<bool>("expected");
    const QByteArray none;
    const QByteArray german("de_DE.UTF-8");
    QTest::newRow("nothing") << none << none << none << false;
    QTest::newRow("German") << none << none << german << false;
    QTest::newRow("C") << none << none << QByteArray("C") << true;
    QTest::newRow("POSIX") << none << none << QByteArray("POSIX") << true;
    QTest::newRow("C with an encoding") << none << none << QByteArray("C.UTF-8") << true;
    QTest::newRow("another that begins so") << none << none << QByteArray("CS_CZ") << false;
    QTest::newRow("C for messages") << none << QByteArray("C") << german << true;
    QTest::newRow("German messages") << none << german << QByteArray("C") << false;
    QTest::newRow("C for all") << QByteArray("C.UTF-8") << german << german << true;
    QTest::newRow("German for all") << german << QByteArray("C") << QByteArray("C") << false;
}

void TranslationsTest::the_c_locale_has_no_language()
{
    QFETCH(QByteArray, all);
    QFETCH(QByteArray, messages);
    QFETCH(QByteArray, lang);
    QFETCH(bool, expected);
    const std::map<const char *, QByteArray> wanted{{"LC_ALL", all}, {"LC_MESSAGES", messages}, {"LANG", lang}};
    std::map<const char *, QByteArray> before;
    for (const auto &[name, value] : wanted) {
        before[name] = qgetenv(name);
        qputenv(name, value);
    }
    const bool isC = Translations::isCLocale();
    const QStringList languages = Translations::languagesOfUser();
    for (const auto &[name, value] : before)
        qputenv(name, value);
    QCOMPARE(isC, expected);
    QCOMPARE(languages.isEmpty(), expected);
}

void TranslationsTest::it_speaks_as_long_as_it_lives()
{
    {
        const Translations translations({u"de"_s});
        QCOMPARE(showShelf(), u"Ablage anzeigen"_s);
    }
    QCOMPARE(showShelf(), u"Show Shelf"_s);
}

void TranslationsTest::numbers_and_values_take_their_places()
{
    const auto question = [](int count) {
        return ShelfPanel::tr("This will remove all %n files from the shelf.", nullptr, count);
    };
    QCOMPARE(question(2), u"This will remove all 2 files from the shelf."_s);
    const VersionRecord record{u"2.0 %2"_s, {}, u"100 %1 better"_s};
    QCOMPARE(updateAlert(record).informativeText, u"Version 2.0 %2 is available.\n\nRelease notes: 100 %1 better"_s);

    const Translations translations({u"de"_s});
    QCOMPARE(question(50), u"Damit werden alle 50 Dateien aus der Ablage entfernt."_s);
    QCOMPARE(updateAlert(record).informativeText,
             u"Version 2.0 %2 ist verfügbar.\n\nVersionshinweise: 100 %1 better"_s);
}

void TranslationsTest::the_terminal_is_told_in_the_same_language()
{
    const Translations translations({u"de"_s});
    // The argument is printed unchanged, although it is not valid text in any encoding.
    QCOMPARE(answerCommandLine({"-\xff%1"})->error,
             std::string("parklet: unbekannte Option „-\xff%1“\nMehr dazu mit „parklet --help“.\n"));
    QVERIFY(answerCommandLine({"--help"})->output.starts_with("Aufruf: parklet [OPTION]\n"));
    QCOMPARE(cannotStart("Obstacle", "cannot connect to the X server \"%1\" that DISPLAY names", ":7").error,
             std::string("parklet: keine Verbindung zum X-Server „:7“, den DISPLAY nennt\n"));
}

void TranslationsTest::every_translation_is_in_the_program_data()
{
    QTest::addColumn<QString>("name");
    const QStringList files = QDir(kFolder).entryList({u"*.ts"_s});
    QVERIFY(!files.isEmpty());
    for (const QString &file : files)
        QTest::newRow(qPrintable(file)) << file;
}

void TranslationsTest::every_translation_is_in_the_program()
{
    QFETCH(QString, name);
    const QString base = name.chopped(3);
    QVERIFY(QFile::exists(u":/i18n/"_s + base + u".qm"_s));
    const QString language = base.mid(base.indexOf(QLatin1Char('_')) + 1);
    QVERIFY(QLocale(language).language() != QLocale::C);
    const Translations translations({QLocale(language).bcp47Name()});
    QVERIFY(showShelf() != u"Show Shelf"_s);
}

void TranslationsTest::every_translated_text_takes_the_same_arguments_data()
{
    every_translation_is_in_the_program_data();
}

void TranslationsTest::every_translated_text_takes_the_same_arguments()
{
    QFETCH(QString, name);
    QFile file(kFolder + QLatin1Char('/') + name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&file);
    QString source;
    bool isPlural = false;
    int texts = 0;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == QLatin1String("message")) {
            isPlural = reader.attributes().hasAttribute(QLatin1String("numerus"));
        } else if (reader.name() == QLatin1String("source")) {
            source = reader.readElementText();
        } else if (reader.name() == (isPlural ? QLatin1String("numerusform") : QLatin1String("translation"))) {
            const QString text = reader.readElementText();
            ++texts;
            QVERIFY2(!text.isEmpty(), qPrintable(source));
            QVERIFY2(markers(text) == markers(source), qPrintable(source + u" -> "_s + text));
        }
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QVERIFY(texts > 50);
}

PARKLET_GUILESS_TEST(TranslationsTest)
#include "TranslationsTest.moc"
