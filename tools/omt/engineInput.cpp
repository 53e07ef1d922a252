// SPDX-License-Identifier: Apache-2.0
#include "engineInput.h"

#include "checkSet.h"
#include "errors.h"
#include "inputFile.h"
#include "messages.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <sstream>

namespace
{

namespace fs = std::filesystem;

/// A device may never end; pipes and standard input do.
void refuseDevice(const std::string& name)
{
    std::error_code ignored;
    const fs::file_status status = fs::status(name, ignored);
    const bool isDevice = fs::is_block_file(status) || fs::is_character_file(status);
    if (isDevice && name != "/dev/stdin")
        throw InputError(name + ": a device, which may have no end");
}

/// Looks for what names refer to once more, with the standard MIM at hand.
void checkBesideMim(omt::Reading& reading)
{
    constexpr std::string_view theNames[] = {"unknown-datatype", "unknown-dimension",
                                             "unknown-note",     "unknown-transportation",
                                             "unknown-class",    "missing-dependency"};
    omt::Findings& findings = reading.findings;
    findings.erase(std::remove_if(findings.begin(), findings.end(),
                                  [&](const omt::Finding& finding)
                                  {
                                      return std::find(std::begin(theNames), std::end(theNames),
                                                       finding.name) != std::end(theNames);
                                  }),
                   findings.end());
    omt::Findings known;
    const omt::Model whole = omt::merge({omt::readMim({reading.model}), reading.model}, known);
    omt::checkReferences(whole, findings);
}

bool isAmong(const std::vector<omt::Module>& modules, const std::string& file)
{
    return std::any_of(modules.begin(), modules.end(),
                       [&](const omt::Module& module) { return module.file == file; });
}

}  // namespace

std::string placeOfModel(const std::string& name)
{
    if (name.empty()) throw InputError("the name of a file is empty");
    if (name == "-") return name;
    refuseDevice(name);
    std::error_code ignored;
    const char* const folder = std::getenv("RTI_CONFIG");
    if (!folder || !*folder || fs::exists(name, ignored)) return name;
    const std::string elsewhere = folder + ('/' + name);
    return fs::is_regular_file(elsewhere, ignored) ? elsewhere : name;
}

void addMimArgument(CLI::App& command, EngineChoice& choice)
{
    command.add_flag("--mim", choice.withMim,
                     "Merge the standard MIM of the newest edition in, before the files");
}

void addEngineArguments(CLI::App& command, EngineChoice& choice)
{
    addMimArgument(command, choice);
    command.add_flag(
        "--strict", choice.isStrict,
        "Exit status 1 where a definition contradicts another or a finding is an error");
    command
        .add_option("MODEL", choice.files,
                    "Files of the model, a folder of them, a set in JSON, or - for standard input; "
                    "modules are merged in order")
        ->required();
}

namespace
{

constexpr std::size_t theMostOfARule = 1000;

}  // namespace

bool FindingLimit::takes(const omt::Finding& finding)
{
    return ++myCounts[finding.name] <= theMostOfARule;
}

std::vector<std::string> FindingLimit::rest() const
{
    std::vector<std::string> lines;
    for (const auto& [name, count] : myCounts)
        if (count > theMostOfARule)
            lines.push_back("and " + std::to_string(count - theMostOfARule) + " more [" + name +
                            ']');
    return lines;
}

void writeFindings(const omt::Findings& findings)
{
    const bool isQuiet = messageLevel() == MessageLevel::errors;
    FindingLimit limit;
    for (const omt::Finding& finding : findings)
    {
        if ((isQuiet && finding.severity != omt::Severity::error) || !limit.takes(finding))
            continue;
        std::ostringstream line;
        line << finding;
        writeLine(line.str());
    }
    for (const std::string& line : limit.rest()) writeLine(line);
}

void checkStandardInput(const EngineChoice& choice, bool isTaken)
{
    const auto count = std::count(choice.files.begin(), choice.files.end(), "-");
    if (count + (isTaken ? 1 : 0) > 1 && count > 0)
        throw UsageError("standard input can be read only once");
}

bool hasError(const omt::Findings& findings)
{
    return std::any_of(findings.begin(), findings.end(),
                       [](const omt::Finding& finding)
                       { return finding.severity == omt::Severity::error; });
}

EngineInput readEngine(const EngineChoice& choice)
{
    checkStandardInput(choice);
    bool withMim = choice.withMim;
    std::vector<std::string> files = filesOfSets(choice.files, withMim);
    for (std::string& name : files) name = placeOfModel(name);
    omt::Reading reading = omt::read(files, omt::ReadOptions().withMim(withMim));
    if (choice.isMimKnown && !withMim) checkBesideMim(reading);
    omt::Findings shown = reading.findings;
    if (choice.hidesNotes && messageLevel() != MessageLevel::all)
        shown.erase(std::remove_if(shown.begin(), shown.end(),
                                   [](const omt::Finding& finding)
                                   { return finding.severity == omt::Severity::note; }),
                    shown.end());
    writeFindings(shown);

    EngineInput input;
    input.model = reading.model;
    input.isWhole = std::all_of(files.begin(), files.end(),
                                [&](const std::string& file)
                                { return isAmong(reading.model.modules(), file); });
    input.isFailure = !input.isWhole || (choice.isStrict && !reading.isSound());
    return input;
}

EngineInput readModule(const std::string& name)
{
    EngineInput input;
    omt::Findings findings;
    if (name == "-")
        input.model = omt::readModule({name, contentOf(stdin, name)}, findings);
    else
    {
        const std::string place = placeOfModel(name);
        input.model = omt::readModule({place, contentOf(place)}, findings);
    }
    writeFindings(findings);
    input.isWhole = !input.model.modules().empty();
    input.isFailure = !input.isWhole;
    return input;
}
