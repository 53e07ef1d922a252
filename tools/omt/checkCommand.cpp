// SPDX-License-Identifier: Apache-2.0
#include "checkCommand.h"

#include "baseline.h"
#include "checkSet.h"
#include "findingReport.h"
#include "outputFile.h"
#include "schemaCheck.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <memory>

namespace
{

struct CheckChoice
{
    std::vector<std::string> arguments;
    bool withMim = false;
    omt::CheckOptions rules;
    bool listsRules = false;
    bool asJson = false;
    bool asSarif = false;
    bool asAnnotations = false;
    bool isStrict = false;
    bool showsAll = false;
    std::string baseline;
    std::string newBaseline;
    std::string schemas;
};

void append(std::vector<std::string>& list, const std::vector<std::string>& more)
{
    list.insert(list.end(), more.begin(), more.end());
}

omt::CheckOptions rulesOf(const CheckChoice& choice, const CheckedSet& set)
{
    omt::CheckOptions options = set.rules;
    append(options.enable, choice.rules.enable);
    append(options.disable, choice.rules.disable);
    return options;
}

/// Findings of reading, merging and rules, by file and line.
omt::Findings findingsOf(const CheckChoice& choice, const CheckedSet& set)
{
    const omt::CheckOptions options = rulesOf(choice, set);
    omt::Findings findings;
    for (const omt::Finding& finding : set.findings)
        if (omt::isEnabled(finding.name, options)) findings.push_back(finding);
    std::vector<omt::Model> models;
    std::map<std::string, std::size_t> places;
    for (const CheckedFile& file : set.files)
    {
        models.push_back(file.model);
        places.try_emplace(file.name, places.size() + 1);
    }
    if (choice.withMim || set.withMim) models.insert(models.begin(), omt::readMim(models));
    omt::Findings more = omt::check(models, options);
    std::move(more.begin(), more.end(), std::back_inserter(findings));
    if (!choice.schemas.empty())
    {
        more = checkBySchemas(set, choice.schemas);
        std::move(more.begin(), more.end(), std::back_inserter(findings));
    }

    const auto place = [&](const omt::Finding& finding)
    {
        const auto found = places.find(finding.place.file);
        return std::pair(found == places.end() ? 0 : found->second, finding.place.line);
    };
    std::stable_sort(findings.begin(), findings.end(),
                     [&](const omt::Finding& one, const omt::Finding& two)
                     { return place(one) < place(two); });
    return findings;
}

Result check(const CheckChoice& choice)
{
    Result result;
    result.isPainted = true;
    if (choice.listsRules)
    {
        result.text = ruleTable(choice.asJson);
        return result;
    }
    const CheckedSet set = readCheckedSet(choice.arguments);
    FindingReport report;
    report.files = set.files.size();
    report.findings = findingsOf(choice, set);
    if (!choice.showsAll)
    {
        report.known = removeShipped(set, report.findings);
        const std::string& baseline = choice.baseline.empty() ? set.baseline : choice.baseline;
        // A new baseline takes over what the old one lists and is still there.
        if (!baseline.empty() && choice.newBaseline.empty())
            report.known += removeListed(baseline, report.findings);
    }
    if (!choice.newBaseline.empty())
    {
        writeOutputFile(choice.newBaseline, baselineOf(report.findings));
        return result;
    }
    if (choice.asJson)
        result.text = findingJson(report);
    else if (choice.asSarif)
        result.text = findingSarif(report);
    else if (choice.asAnnotations)
        result.text = findingAnnotations(report);
    else
    {
        writeFindingLines(report);
        result.text = summaryOf(report);
    }
    result.isFailure = report.count(omt::Severity::error) != 0 ||
                       (choice.isStrict && report.count(omt::Severity::warning) != 0);
    return result;
}

/// What the library and the parser of arguments cannot tell by themselves.
void requireSense(CheckChoice& choice)
{
    std::error_code ignored;
    if (choice.arguments.empty() && std::filesystem::is_regular_file("omt.json", ignored))
        choice.arguments = {"omt.json"};
    if (!choice.listsRules && choice.arguments.empty())
        throw CLI::ValidationError(
            "MODEL", "no file, folder or set is named, and there is no omt.json in this folder");
    if (std::count(choice.arguments.begin(), choice.arguments.end(), "-") > 1)
        throw CLI::ValidationError("MODEL", "standard input can be read only once");
    try
    {
        omt::check(std::vector<omt::Model>(), choice.rules);
    }
    catch (const std::invalid_argument& error)
    {
        throw CLI::ValidationError("--enable, --disable",
                                   error.what() + std::string(" (--rules lists all)"));
    }
}

void addRuleOptions(CLI::App& command, CheckChoice& choice)
{
    command.add_flag("--rules", choice.listsRules, "List all rules and check nothing");
    command
        .add_option("--enable", choice.rules.enable,
                    "A rule, or a group such as lint, that is to be followed too")
        ->type_name("RULE")
        ->allow_extra_args(false);
    command.add_option("--disable", choice.rules.disable, "A rule or a group not to follow")
        ->type_name("RULE")
        ->allow_extra_args(false);
    command.add_flag("--as-error", choice.isStrict, "Exit status 1 for warnings too");
    command.add_flag("--all", choice.showsAll,
                     "Show known findings too: those of published files, and of a baseline");
    command
        .add_option("--baseline", choice.baseline,
                    "Do not show what this file lists; it was made by --write-baseline")
        ->type_name("FILE");
    command
        .add_option("--schema", choice.schemas,
                    "Validate each file by the DIF schema of its edition, and the whole set with "
                    "the standard MIM by the OMT schema; the folder holds these schemas")
        ->type_name("FOLDER");
    command
        .add_option("--write-baseline", choice.newBaseline,
                    "Write what is found to a file, as known from now on, and show nothing")
        ->type_name("FILE");
}

void addFormOptions(CLI::App& command, CheckChoice& choice)
{
    CLI::Option* const jsonFlag = command.add_flag("--json", choice.asJson, "As a JSON object");
    CLI::Option* const sarif =
        command.add_flag("--sarif", choice.asSarif, "As SARIF 2.1.0")->excludes(jsonFlag);
    command.add_flag("--github", choice.asAnnotations, "As annotations of a workflow on GitHub")
        ->excludes(jsonFlag)
        ->excludes(sarif);
}

}  // namespace

Command addCheckCommand(CLI::App& app)
{
    CLI::App* const command =
        app.add_subcommand("check", "Find what is wrong with models that are loaded together");
    auto choice = std::make_shared<CheckChoice>();
    command->add_option(
        "MODEL", choice->arguments,
        "Files of the set in order, a folder of them, or a set in JSON; without any, "
        "omt.json of this folder");
    command->add_flag("--mim", choice->withMim,
                      "Load the standard MIM of the newest edition before the files");
    addRuleOptions(*command, *choice);
    addFormOptions(*command, *choice);
    command->callback([choice] { requireSense(*choice); });
    command->footer(
        "Findings go to standard error, FILE:LINE: severity: text [rule]. The exit status is 1\n"
        "where there is an error.\n"
        "\n"
        "Examples:\n"
        "  omt check HarbourBase.xml HarbourTraffic.xml --mim\n"
        "  omt check HarbourBase.xml --mim --enable lint\n"
        "  omt check check/omt.json --sarif");
    return {command, [choice] { return check(*choice); }};
}
