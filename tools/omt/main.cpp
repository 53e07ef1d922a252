// SPDX-License-Identifier: Apache-2.0
// The command line tool omt: which subcommand, with what result and which exit status.
#include "checkCommand.h"
#include "convertCommand.h"
#include "decodeCommand.h"
#include "diffCommand.h"
#include "encodeCommand.h"
#include "entityCommand.h"
#include "errors.h"
#include "fmtCommand.h"
#include "layoutCommand.h"
#include "messages.h"
#include "omt/base/nearestNames.h"
#include "omt/c.h"
#include "plainText.h"
#include "showCommand.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <sstream>
#include <system_error>

namespace
{

enum ExitStatus
{
    theDone = 0,
    theBadInput = 1,
    theWrongUsage = 2
};

/// What holds for all subcommands, and may stand before or after their names.
struct GeneralChoice
{
    bool isVerbose = false;
    bool isQuiet = false;

    MessageLevel level() const
    {
        if (isQuiet) return MessageLevel::errors;
        return isVerbose ? MessageLevel::all : MessageLevel::usual;
    }
};

void addGeneralArguments(CLI::App& app, GeneralChoice& choice)
{
    app.set_version_flag("--version",
                         std::string("omt ") + OMT_VERSION + ", libomt " + omt_version());
    CLI::Option* const verbose =
        app.add_flag("-v,--verbose", choice.isVerbose,
                     "Say all that was found, also of datatypes that are not asked for");
    app.add_flag("-q,--quiet", choice.isQuiet, "Show errors only, no warnings")->excludes(verbose);
    app.fallthrough();
    app.footer(
        "Results go to standard output, messages to standard error. The exit status is 0 when all\n"
        "went well, 1 for bad input, 2 for wrong usage.\n"
        "\n"
        "Examples:\n"
        "  omt show HarbourBase.xml HarbourTraffic.xml --mim\n"
        "  omt check HarbourBase.xml HarbourTraffic.xml --mim\n"
        "  omt diff --wire HarbourBase.xml -- HarbourBase.xml HarbourTraffic.xml\n"
        "  omt decode HarbourBase.xml --mim --type SignalKind 10\n"
        "  omt encode HarbourBase.xml --mim --type SignalKind GaleWarning\n"
        "  omt layout HarbourBase.xml --mim BerthIdentifier\n"
        "  omt convert Harbour.omd -o Harbour.xml\n"
        "  omt entity entity-types.csv 1:3:999:1:1:2:0\n"
        "\n"
        "Their files come with the library; see the manual page.");
}

/// The text as it may go to a terminal, which would obey some of what a model can hold.
std::string forTerminal(std::string_view text)
{
    std::string result;
    for (std::size_t end; !text.empty(); text.remove_prefix(std::min(end + 1, text.size())))
    {
        end = std::min(text.find('\n'), text.size());
        result += visible(text.substr(0, end));
        if (end < text.size()) result += '\n';
    }
    return result;
}

ExitStatus writeResult(const std::string& result, bool isPainted = false)
{
    const std::string text = !isPainted && ::isatty(STDOUT_FILENO) ? forTerminal(result) : result;
    const bool isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (isWritten && std::fflush(stdout) == 0) return theDone;
    if (errno != EPIPE)  // whoever closed the pipe has seen enough
        writeMessage("standard output: " + std::generic_category().message(errno));
    return theBadInput;
}

/// The names of all commands, or of all options that may stand where a command was chosen.
std::vector<std::string> namesInPlace(const CLI::App& app, bool areOptions)
{
    std::vector<std::string> names;
    const std::function<void(const CLI::App&)> addOptions = [&](const CLI::App& one)
    {
        for (const CLI::Option* option : one.get_options())
            for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
        for (const CLI::App* group : one.get_subcommands(nullptr))
            if (group->get_name().empty()) addOptions(*group);
    };
    if (areOptions) addOptions(app);
    for (const CLI::App* command : app.get_subcommands(nullptr))
    {
        if (!areOptions) names.push_back(command->get_name());
        if (areOptions && *command) addOptions(*command);
    }
    return names;
}

/// Where to read on: the help of the command that was chosen, if there is one.
std::string helpOf(const CLI::App& app)
{
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    return "omt " + (chosen.empty() ? "" : chosen.front()->get_name() + ' ') + "--help";
}

/// What is wrong with the arguments; for a command or an option that there is not, the nearest.
std::string whyWrong(const CLI::App& app, const CLI::ParseError& error)
{
    for (const std::string& word : app.remaining(true))
    {
        const bool isOption = word.size() > 2 && word.compare(0, 2, "--") == 0;
        if (!isOption && !app.get_subcommands().empty()) continue;
        return omt::unknownName(isOption ? "option" : "command", word,
                                namesInPlace(app, isOption)) +
               " See " + helpOf(app);
    }
    return error.what() + ("; see " + helpOf(app));
}

/// Help and the version are results; anything else that ends parsing is wrong usage.
ExitStatus endParsing(const CLI::App& app, const CLI::ParseError& error)
{
    std::ostringstream result;
    std::ostringstream ignored;
    if (app.exit(error, result, ignored) == 0) return writeResult(result.str());
    writeMessage(whyWrong(app, error));
    return theWrongUsage;
}

int run(const CLI::App& app, const Command& command)
{
    try
    {
        const Result result = command.run();
        const ExitStatus status = writeResult(result.text, result.isPainted);
        for (const std::string& complaint : result.complaints) writeMessage(complaint);
        return result.complaints.empty() && !result.isFailure ? status : theBadInput;
    }
    catch (const UsageError& error)
    {
        writeMessage(error.what() + ("; see " + helpOf(app)));
        return theWrongUsage;
    }
    catch (const std::exception& error)
    {
        writeMessage(error.what());
        return command.statusWithoutResult;
    }
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    CLI::App app("Reads HLA object models and the values that they describe.", "omt");
    GeneralChoice choice;
    addGeneralArguments(app, choice);
    WordsAfter wordsAfter = takeWordsAfter(argumentCount, arguments);
    const Command commands[] = {
        addShowCommand(app),   addDecodeCommand(app),  addEncodeCommand(app),
        addLayoutCommand(app), addConvertCommand(app), addFmtCommand(app),
        addEntityCommand(app), addCheckCommand(app),   addDiffCommand(app, std::move(wordsAfter))};
    try
    {
        app.parse(argumentCount, arguments);
    }
    catch (const CLI::ParseError& error)
    {
        return endParsing(app, error);
    }

    setMessageLevel(choice.level());
    for (const Command& command : commands)
        if (*command.app) return run(app, command);
    writeMessage("a subcommand is needed; see omt --help");
    return theWrongUsage;
}
