// SPDX-License-Identifier: Apache-2.0
#include "diffCommand.h"

#include "checkSet.h"
#include "diffReport.h"
#include "engineInput.h"
#include "errors.h"
#include "gitFile.h"
#include "inputFile.h"
#include "messages.h"
#include "paint.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string_view>

namespace
{

constexpr std::string_view theSeparator = "--";
constexpr std::string_view theGit = "git:";

struct DiffChoice
{
    std::vector<std::string> words;
    WordsAfter wordsAfter;
    std::string against;
    bool withMim = false;
    bool asJson = false;
    DiffView view;
};

/// The files of one of the two models, what those hold that were read already, and the revision of
/// git that they are taken from, if any.
struct Side
{
    std::vector<std::string> files;
    FileContents contents;
    std::string revision = {};
};

Side sideOf(const std::vector<std::string>& words, bool& withMim)
{
    Side side;
    side.files = filesOfSets(words, withMim, &side.contents);
    return side;
}

/// What a file of a side holds; nothing where its revision does not have it.
std::optional<std::string> readFile(const Side& side, const std::string& name)
{
    if (!side.revision.empty()) return contentInGit(side.revision, name);
    if (const auto found = side.contents.find(name); found != side.contents.end())
        return found->second;
    return name == "-" ? contentOf(stdin, "standard input") : contentOf(placeOfModel(name));
}

/// Reads one side, and writes what is an error in it. Throws InputError where a file of it is no
/// object model, or there is none.
omt::Model readSide(const Side& side, bool withMim)
{
    std::vector<std::string> texts;
    std::vector<omt::Document> documents;
    for (const std::string& name : side.files)
    {
        std::optional<std::string> content = readFile(side, name);
        if (!content)
        {
            writeMessage(name + " is not in " + side.revision);
            continue;
        }
        texts.push_back(std::move(*content));
        documents.push_back(
            {side.revision.empty() ? name : side.revision + ':' + name, std::string_view()});
    }
    for (std::size_t i = 0; i < texts.size(); ++i) documents[i].octets = texts[i];
    omt::Findings findings;
    const std::vector<omt::Model> models =
        omt::readModules(documents, findings, omt::ReadOptions().withMim(withMim));
    omt::Model merged = omt::merge(models, findings);
    findings.erase(std::remove_if(findings.begin(), findings.end(),
                                  [](const omt::Finding& one)
                                  { return one.severity != omt::Severity::error; }),
                   findings.end());
    writeFindings(findings);
    if (documents.empty() || models.size() != documents.size() + (withMim ? 1 : 0))
        throw InputError("a model that cannot be read cannot be compared");
    return merged;
}

Result diff(const DiffChoice& choice)
{
    bool withMim = choice.withMim;
    Side before = sideOf(choice.words, withMim);
    const Side after = choice.wordsAfter ? sideOf(*choice.wordsAfter, withMim) : before;
    if (!choice.against.empty()) before.revision = choice.against.substr(theGit.size());
    const omt::Model modelBefore = readSide(before, withMim);
    const omt::Model modelAfter = readSide(after, withMim);
    const omt::Differences differences = omt::diff(modelBefore, modelAfter);
    Result result;
    result.isPainted = !choice.asJson;
    result.text = choice.asJson ? diffJson(differences, choice.view)
                                : painted(diffPage(differences, choice.view));
    const auto count = [&](omt::Wire wire)
    { return differences.octets[static_cast<std::size_t>(wire)]; };
    result.isFailure = choice.view.isOnlyWire
                           ? count(omt::Wire::different) + count(omt::Wire::unknown) != 0
                           : !differences.isEmpty();
    return result;
}

/// Two models are needed, or one and a revision.
void requireSense(DiffChoice& choice)
{
    std::error_code ignored;
    if (!choice.against.empty() && choice.words.empty() &&
        std::filesystem::is_regular_file("omt.json", ignored))
        choice.words = {"omt.json"};
    if (choice.against.empty())
    {
        if (!choice.wordsAfter || choice.wordsAfter->empty() || choice.words.empty())
            throw CLI::ValidationError(
                "MODEL", "the files of the model before, --, and those of the model after");
    }
    else if (choice.against.compare(0, theGit.size(), theGit) != 0 ||
             choice.against.size() == theGit.size())
        throw CLI::ValidationError("--against",
                                   '"' + choice.against + "\" is not of the form git:REVISION");
    else if (choice.wordsAfter || choice.words.empty())
        throw CLI::ValidationError("--against", "takes the files of one model, without --");
    std::ptrdiff_t streams = std::count(choice.words.begin(), choice.words.end(), "-");
    if (!choice.against.empty() && streams > 0)
        throw CLI::ValidationError("--against", "needs files by name");
    if (choice.wordsAfter)
        streams += std::count(choice.wordsAfter->begin(), choice.wordsAfter->end(), "-");
    if (streams > 1) throw CLI::ValidationError("MODEL", "standard input can be read only once");
}

void addArguments(CLI::App& command, DiffChoice& choice)
{
    command.add_option(
        "MODEL", choice.words,
        "Files of the model before, --, and files of the model after; a folder, or a set "
        "in JSON, stands for its files");
    command
        .add_option(
            "--against", choice.against,
            "Compare files with what they were in a revision of git; without files, the set of "
            "omt.json in this folder")
        ->type_name("git:REVISION");
    command.add_flag("--mim", choice.withMim,
                     "Load the standard MIM of the newest edition on each side before the files");
    command.add_flag("--wire", choice.view.isOnlyWire,
                     "Octets only; exit status 0 where none differ and all are known");
    CLI::Option* const jsonFlag = command.add_flag("--json", choice.asJson, "As a JSON object");
    command
        .add_flag("--all", choice.view.isWhole, "All that changed in a definition, not ten things")
        ->excludes(jsonFlag);
}

}  // namespace

WordsAfter takeWordsAfter(int& argumentCount, char** arguments)
{
    char** const end = arguments + argumentCount;
    char** const command = std::find_if(std::min(arguments + 1, end), end,
                                        [](const char* word) { return *word != '-'; });
    char** const separator = std::find(command, end, theSeparator);
    if (command == end || std::string_view(*command) != "diff" || separator == end)
        return std::nullopt;
    argumentCount = static_cast<int>(separator - arguments);
    return std::vector<std::string>(separator + 1, end);
}

Command addDiffCommand(CLI::App& app, WordsAfter wordsAfter)
{
    CLI::App* const command =
        app.add_subcommand("diff", "Say what changed between two models, and whether octets did");
    auto choice = std::make_shared<DiffChoice>();
    choice->wordsAfter = std::move(wordsAfter);
    addArguments(*command, *choice);
    command->callback([choice] { requireSense(*choice); });
    command->footer(
        "Options stand before the files. The exit status is 0 without differences, 1 with some, 2\n"
        "where a model cannot be read.\n"
        "\n"
        "Examples:\n"
        "  omt diff HarbourBase.xml -- HarbourBase.xml HarbourTraffic.xml || echo different\n"
        "  omt diff --wire HarbourBase.xml -- HarbourBase.xml HarbourTraffic.xml\n"
        "  omt diff --against git:HEAD HarbourBase.xml HarbourTraffic.xml");
    return {command, [choice] { return diff(*choice); }, 2};
}
