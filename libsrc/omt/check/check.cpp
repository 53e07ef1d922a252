// SPDX-License-Identifier: Apache-2.0
#include "omt/check/check.h"

#include "omt/base/nameHash.h"
#include "omt/base/nearestNames.h"
#include "omt/check/checkRun.h"
#include "omt/model/moduleNames.h"
#include "omt/model/references.h"

#include <algorithm>
#include <stdexcept>

namespace omt
{

namespace
{

constexpr std::string_view theLints = "lint";

const std::vector<RuleRow>& rows()
{
    static const std::vector<RuleRow> theRows = []
    {
        std::vector<RuleRow> all;
        for (const auto& some :
             {documentRules(), identificationRules(), nameRules(), classRules(), datatypeRules(),
              recordRules(), tableRules(), mergingRules(), layoutRules(), lintRules()})
            all.insert(all.end(), some.begin(), some.end());
        return all;
    }();
    return theRows;
}

const Rule* findRule(std::string_view name)
{
    const auto found = std::find_if(rows().begin(), rows().end(),
                                    [&](const RuleRow& row) { return row.rule.name == name; });
    return found == rows().end() ? nullptr : &found->rule;
}

bool isAmong(const std::vector<std::string>& names, const Rule& rule)
{
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& name)
                       { return name == rule.name || name == rule.group; });
}

bool isEnabled(const Rule& rule, const CheckOptions& options)
{
    if (isAmong(options.disable, rule)) return false;
    return rule.group != theLints || isAmong(options.enable, rule);
}

void requireKnown(const CheckOptions& options)
{
    std::vector<std::string_view> known;
    for (const RuleRow& row : rows()) known.insert(known.end(), {row.rule.name, row.rule.group});
    for (const auto& names : {options.enable, options.disable})
        for (const std::string& name : names)
            if (std::find(known.begin(), known.end(), name) == known.end())
                throw std::invalid_argument(unknownName("rule or group", name, known));
}

/// What compiling finds, and reading, checking references or a rule has found already.
constexpr std::string_view theKnownOtherwise[] = {"unknown-datatype", "enumerator-value",
                                                  "unknown-enumerator", "discriminant"};

/// What compiling alone finds.
void addCodecFindings(const Codec& codec, const Model& model, Findings& findings)
{
    OwnNameSet builtIn;
    for (const Module& module : model.modules())
        if (module.isBuiltIn) builtIn.insert(module.file.str());
    for (const Finding& finding : codec.findings())
        if (std::find(std::begin(theKnownOtherwise), std::end(theKnownOtherwise), finding.name) ==
                std::end(theKnownOtherwise) &&
            builtIn.count(finding.place.file) == 0)
            findings.push_back(finding);
}

}  // namespace

const std::vector<Rule>& rules()
{
    static const std::vector<Rule> theRules = []
    {
        std::vector<Rule> all;
        for (const RuleRow& row : rows()) all.push_back(row.rule);
        return all;
    }();
    return theRules;
}

bool isEnabled(std::string_view rule, const CheckOptions& options)
{
    const Rule* const known = findRule(rule);
    return !known || isEnabled(*known, options);
}

Findings check(const std::vector<Model>& modules, const CheckOptions& options)
{
    requireKnown(options);
    Findings findings;
    const Model merged = merge(modules, findings);
    checkReferences(merged, findings);
    const Codec codec(merged);
    addCodecFindings(codec, merged, findings);
    findings.erase(
        std::remove_if(findings.begin(), findings.end(),
                       [&](const Finding& finding) { return !isEnabled(finding.name, options); }),
        findings.end());
    CheckRun run(modules, merged, codec, findings);
    for (const RuleRow& row : rows())
    {
        if (!row.follow || !isEnabled(row.rule, options)) continue;
        run.begin(row.rule);
        row.follow(run);
    }
    return findings;
}

Findings check(const std::vector<Document>& documents, const CheckOptions& options,
               const ReadOptions& reading)
{
    requireKnown(options);
    Findings found;
    const std::vector<Model> modules = readModules(documents, found, reading);
    Findings findings;
    for (Finding& finding : found)
        if (isEnabled(finding.name, options)) findings.push_back(std::move(finding));
    Findings more = check(modules, options);
    std::move(more.begin(), more.end(), std::back_inserter(findings));
    return findings;
}

namespace
{

/// The models that one depends on, as indices.
std::vector<std::size_t> dependencies(const Model& user, ModuleNames& names)
{
    std::vector<std::size_t> found;
    for (const Module& module : user.modules())
        for (const Reference& reference : module.identification.references)
        {
            if (!isDependency(reference)) continue;
            const std::vector<std::size_t>& named = names.find(reference.identification);
            found.insert(found.end(), named.begin(), named.end());
        }
    return found;
}

}  // namespace

std::vector<std::size_t> dependencyOrder(const std::vector<Model>& modules)
{
    struct Frame
    {
        std::size_t user;
        std::vector<std::size_t> left;
    };
    std::vector<std::size_t> order;
    std::vector<bool> isSeen(modules.size());
    std::vector<Frame> open;
    ModuleNames names;
    for (std::size_t i = 0; i < modules.size(); ++i)
        if (!modules[i].modules().empty()) names.add(modules[i].modules().front(), i);
    const auto enter = [&](std::size_t user)
    {
        if (isSeen[user]) return;
        isSeen[user] = true;
        std::vector<std::size_t> left = dependencies(modules[user], names);
        std::reverse(left.begin(), left.end());
        open.push_back({user, std::move(left)});
    };
    for (std::size_t first = 0; first < modules.size(); ++first)
    {
        enter(first);
        while (!open.empty())
        {
            if (open.back().left.empty())
            {
                order.push_back(open.back().user);
                open.pop_back();
                continue;
            }
            const std::size_t next = open.back().left.back();
            open.back().left.pop_back();
            enter(next);
        }
    }
    return order;
}

}  // namespace omt
