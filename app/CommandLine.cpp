// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include "settings/BuildInfo.h"

#include <QCoreApplication>

#include <cstdio>
#include <string_view>

namespace {

constexpr int kFailure = 1;
constexpr int kUsageError = 2;

struct CommandLine {
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
};

QString help()
{
    //: The options and the columns of the list stay as they are; [OPTION] may be translated.
    return CommandLine::tr("Usage: parklet [OPTION]\n"
                           "A floating shelf for files: drag files onto it, and out of it again where you need them.\n"
                           "\n"
                           "  --help     print this help and exit\n"
                           "  --version  print the version and exit\n"
                           "\n"
                           "Without an option Parklet starts, or shows the shelf of the one that runs already.\n");
}

// An argument may be any bytes, also invalid UTF-8; print it unchanged.
std::string filled(const QString &text, const std::string &value)
{
    std::string result = text.toStdString();
    constexpr std::string_view marker = "%1";
    if (const auto place = result.find(marker); place != std::string::npos)
        result.replace(place, marker.size(), value);
    return result;
}

CommandLineAnswer failure(const std::string &what, int exitCode)
{
    return {{}, "parklet: " + what + '\n', exitCode};
}

CommandLineAnswer usageError(const std::string &what)
{
    return failure(what + '\n' + CommandLine::tr("Try 'parklet --help'.").toStdString(), kUsageError);
}

} // namespace

std::optional<CommandLineAnswer> answerCommandLine(const std::vector<std::string> &arguments)
{
    std::optional<CommandLineAnswer> answer;
    for (const std::string &argument : arguments) {
        CommandLineAnswer asked;
        if (argument == "--help")
            asked.output = help().toStdString();
        else if (argument == "--version")
            asked.output = "Parklet " + BuildInfo::builtVersion().toStdString() + "\n";
        else if (argument.starts_with('-'))
            return usageError(filled(CommandLine::tr("unknown option '%1'"), argument));
        else
            return usageError(filled(CommandLine::tr("unexpected argument '%1'"), argument));
        if (!answer)
            answer = asked;
    }
    return answer;
}

CommandLineAnswer cannotStart(const char *context, const char *reason, const std::string &detail)
{
    return failure(filled(QCoreApplication::translate(context, reason), detail), kFailure);
}

int give(const CommandLineAnswer &answer)
{
    std::fputs(answer.error.c_str(), stderr);
    if (std::fputs(answer.output.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
        std::perror("parklet");
        return kFailure;
    }
    return answer.exitCode;
}
