// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include "settings/BuildInfo.h"

#include <cstdio>

namespace {

constexpr int kOutputFailed = 1;
constexpr int kUsageError = 2;

constexpr char kHelp[] = "Usage: parklet [OPTION]\n"
                         "A floating shelf for files: drag files onto it, and out of it again where you need them.\n"
                         "\n"
                         "  --help     print this help and exit\n"
                         "  --version  print the version and exit\n"
                         "\n"
                         "Without an option Parklet starts, or shows the shelf of the one that runs already.\n";

CommandLineAnswer usageError(const std::string &what)
{
    return {{}, "parklet: " + what + "\nTry 'parklet --help'.\n", kUsageError};
}

} // namespace

std::optional<CommandLineAnswer> answerCommandLine(const std::vector<std::string> &arguments)
{
    std::optional<CommandLineAnswer> answer;
    for (const std::string &argument : arguments) {
        CommandLineAnswer asked;
        if (argument == "--help")
            asked.output = kHelp;
        else if (argument == "--version")
            asked.output = "Parklet " + BuildInfo::builtVersion().toStdString() + "\n";
        else if (argument.starts_with('-'))
            return usageError("unknown option '" + argument + "'");
        else
            return usageError("unexpected argument '" + argument + "'");
        if (!answer)
            answer = asked;
    }
    return answer;
}

int give(const CommandLineAnswer &answer)
{
    std::fputs(answer.error.c_str(), stderr);
    if (std::fputs(answer.output.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
        std::perror("parklet");
        return kOutputFailed;
    }
    return answer.exitCode;
}
