// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include "settings/BuildInfo.h"
#include "tests/support/TestProgram.h"

#include <QTest>

class CommandLineTest : public QObject {
    Q_OBJECT

private slots:
    void without_arguments_the_program_starts();
    void the_version_is_that_of_the_build();
    void the_help_names_every_option();
    void the_first_question_is_answered();
    void the_shelf_is_asked_for_by_its_option();
    void what_the_toolkit_or_the_system_adds_is_passed_over_data();
    void what_the_toolkit_or_the_system_adds_is_passed_over();
    void everything_else_is_an_error_data();
    void everything_else_is_an_error();
};

void CommandLineTest::without_arguments_the_program_starts()
{
    QVERIFY(!answerCommandLine({}));
}

void CommandLineTest::the_version_is_that_of_the_build()
{
    const std::string line = "Parklet " + BuildInfo::builtVersion().toStdString() + "\n";
    QCOMPARE(answerCommandLine({"--version"}), CommandLineAnswer({line, {}, 0}));
}

void CommandLineTest::the_help_names_every_option()
{
    const auto answer = answerCommandLine({"--help"});
    QVERIFY(answer);
    QCOMPARE(answer->exitCode, 0);
    QVERIFY(answer->error.empty());
    for (const char *option : {"--help", "--version", "--show"})
        QVERIFY2(answer->output.find(option) != std::string::npos, option);
}

void CommandLineTest::the_first_question_is_answered()
{
    QCOMPARE(answerCommandLine({"--version", "--help"}), answerCommandLine({"--version"}));
    QCOMPARE(answerCommandLine({"--help", "--version"}), answerCommandLine({"--help"}));
}

void CommandLineTest::the_shelf_is_asked_for_by_its_option()
{
    QVERIFY(!answerCommandLine({"--show"}));
    QVERIFY(asksForShelf({"-platform", "xcb", "--show"}));
    QVERIFY(!asksForShelf({}));
    QVERIFY(!asksForShelf({"-title", "--show"}));
    QCOMPARE(answerCommandLine({"--show", "--version"}), answerCommandLine({"--version"}));
    QCOMPARE(answerCommandLine({"--show", "--hide"})->exitCode, 2);
}

void CommandLineTest::what_the_toolkit_or_the_system_adds_is_passed_over_data()
{
    using Arguments = std::vector<std::string>;
    QTest::addColumn<Arguments>("arguments");
    QTest::newRow("platform") << Arguments{"-platform", "xcb"};
    QTest::newRow("two dashes") << Arguments{"--platform", "xcb"};
    QTest::newRow("in one") << Arguments{"-style=Fusion"};
    QTest::newRow("a value like an option") << Arguments{"-geometry", "-0+0"};
    QTest::newRow("without its value") << Arguments{"-display"};
    QTest::newRow("alone") << Arguments{"-reverse", "-widgetcount"};
    QTest::newRow("session manager") << Arguments{"-session", "10c7_3_9", "-name", "parklet"};
    QTest::newRow("process serial number") << Arguments{"-psn_0_1234567"};
    QTest::newRow("languages") << Arguments{"-AppleLanguages", "(de)", "-AppleLocale", "de_DE"};
    QTest::newRow("Xcode") << Arguments{"-NSDocumentRevisionsDebugMode", "YES"};
}

void CommandLineTest::what_the_toolkit_or_the_system_adds_is_passed_over()
{
    QFETCH(std::vector<std::string>, arguments);
    QVERIFY(!answerCommandLine(arguments));
    // Our own options are still answered, and unknown ones still refused.
    std::vector<std::string> more = arguments;
    more.insert(more.begin(), "--version");
    QCOMPARE(answerCommandLine(more), answerCommandLine({"--version"}));
    more.insert(more.begin(), "words.txt");
    QCOMPARE(answerCommandLine(more)->exitCode, 2);
}

void CommandLineTest::everything_else_is_an_error_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("message");
    QTest::newRow("long") << "--shelf"
                          << "parklet: unknown option '--shelf'";
    QTest::newRow("short") << "-v"
                           << "parklet: unknown option '-v'";
    QTest::newRow("longer than the toolkit's") << "-platforms"
                                               << "parklet: unknown option '-platforms'";
    QTest::newRow("not the system's") << "--NSQuitAlwaysKeepsWindows"
                                      << "parklet: unknown option '--NSQuitAlwaysKeepsWindows'";
    QTest::newRow("prefix") << "--versions"
                            << "parklet: unknown option '--versions'";
    QTest::newRow("dash") << "-"
                          << "parklet: unknown option '-'";
    QTest::newRow("file") << "words.txt"
                          << "parklet: unexpected argument 'words.txt'";
    QTest::newRow("empty") << ""
                           << "parklet: unexpected argument ''";
}

void CommandLineTest::everything_else_is_an_error()
{
    QFETCH(QString, argument);
    QFETCH(QString, message);
    const std::string text = message.toStdString() + "\nTry 'parklet --help'.\n";
    QCOMPARE(answerCommandLine({argument.toStdString()}), CommandLineAnswer({{}, text, 2}));
    QCOMPARE(answerCommandLine({"--version", argument.toStdString()}), CommandLineAnswer({{}, text, 2}));
}

PARKLET_APPLESS_TEST(CommandLineTest)
#include "CommandLineTest.moc"
