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
    for (const char *option : {"--help", "--version"})
        QVERIFY2(answer->output.find(option) != std::string::npos, option);
}

void CommandLineTest::the_first_question_is_answered()
{
    QCOMPARE(answerCommandLine({"--version", "--help"}), answerCommandLine({"--version"}));
    QCOMPARE(answerCommandLine({"--help", "--version"}), answerCommandLine({"--help"}));
}

void CommandLineTest::everything_else_is_an_error_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("message");
    QTest::newRow("long") << "--shelf"
                          << "parklet: unknown option '--shelf'";
    QTest::newRow("short") << "-v"
                           << "parklet: unknown option '-v'";
    // The toolkit would take these for its own.
    QTest::newRow("toolkit") << "-platform"
                             << "parklet: unknown option '-platform'";
    QTest::newRow("session") << "-session"
                             << "parklet: unknown option '-session'";
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
