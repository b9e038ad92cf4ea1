// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include "settings/BuildInfo.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

namespace {

constexpr int kFailure = 1;
constexpr int kUsageError = 2;
constexpr std::string_view kShow = "--show";

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
                           "  --show     show the shelf, also when Parklet starts\n"
                           "\n"
                           "Without an option Parklet starts, or shows the shelf of the one that runs already.\n");
}

// An argument may contain any bytes, even invalid UTF-8. It is printed unchanged.
std::string filled(const QString &text, const std::string &value)
{
    std::string result = text.toStdString();
    constexpr std::string_view marker = "%1";
    if (const auto place = result.find(marker); place != std::string::npos)
        result.replace(place, marker.size(), value);
    return result;
}

// The name of an option, without its dashes and without "=VALUE".
std::string_view nameOf(std::string_view argument)
{
    argument.remove_prefix(argument.starts_with("--") ? 2 : 1);
    return argument.substr(0, argument.find('='));
}

// The number of arguments from `first` on that belong to Qt, the session manager or macOS.
std::size_t foreignArguments(const std::vector<std::string> &arguments, std::size_t first)
{
    // The options of Qt, of all its platforms: those with a value, and those without.
    constexpr std::array valued = {
        "platform", "platformpluginpath", "platformtheme", "plugin",       "style", "stylesheet",
        "session",  "qmljsdebugger",      "qwindowicon",   "qwindowtitle", "icon",  "qwindowgeometry",
        "title",    "geometry",           "display",       "name",         "visual"};
    constexpr std::array alone = {"reverse", "widgetcount", "nograb", "dograb"};
    const std::string_view argument = arguments[first];
    if (!argument.starts_with('-'))
        return 0;
    // macOS passes a process serial number, and system settings for this start.
    if (argument.starts_with("-psn_"))
        return 1;
    const std::string_view name = nameOf(argument);
    if (std::ranges::find(alone, name) != alone.end())
        return 1;
    if (std::ranges::find(valued, name) == valued.end() && !argument.starts_with("-Apple") &&
        !argument.starts_with("-NS"))
        return 0;
    const bool isFollowed = argument.find('=') == std::string_view::npos && first + 1 < arguments.size();
    return isFollowed ? 2 : 1;
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
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (const std::size_t foreign = foreignArguments(arguments, i); foreign > 0) {
            i += foreign - 1;
            continue;
        }
        const std::string &argument = arguments[i];
        CommandLineAnswer asked;
        if (argument == kShow)
            continue;
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

bool asksForShelf(const std::vector<std::string> &arguments)
{
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (const std::size_t foreign = foreignArguments(arguments, i); foreign > 0)
            i += foreign - 1;
        else if (arguments[i] == kShow)
            return true;
    }
    return false;
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
