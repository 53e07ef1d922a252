// SPDX-License-Identifier: Apache-2.0
// CheckRun is what rules have at hand: the models one by one, merged and compiled.
#pragma once

#include "omt/check/check.h"
#include "omt/codec/codec.h"
#include "omt/model/classNames.h"
#include "omt/model/compare.h"
#include "omt/model/parts.h"
#include "omt/model/rows.h"

#include <span>
#include <string>
#include <type_traits>
#include <utility>

namespace omt
{

/// One run over a set of models. Rules visit what they look at and report.
class CheckRun
{
public:
    CheckRun(const std::vector<Model>& modules, const Model& merged, const Codec& codec,
             Findings& findings)
        : myModules(modules), myMerged(merged), myCodec(codec), myFindings(findings)
    {
    }

    /// All modules as one model.
    const Model& model() const { return myMerged; }
    const Codec& codec() const { return myCodec; }
    /// The model that the definition being visited belongs to.
    const Model& current() const { return *myModel; }

    void begin(const Rule& rule) { myRule = &rule; }
    /// What is reported from now on is a definition of the merged model.
    void begin() { myModel = &myMerged; }

    /// Calls `visit` for each definition of a table of the merged model that is not the built-in
    /// MIM's.
    template <typename T, typename Visit>
    void each(std::vector<T> Tables::*table, const Visit& visit)
    {
        myModel = &myMerged;
        for (const T& definition : myMerged.tables().*table)
            if (!isBuiltIn(definition)) visit(definition);
    }

    /// Calls `visit` for each definition of each module, parts, identification and tables included,
    /// with its kind as a type, as the module itself has it.
    template <typename Visit>
    void eachWritten(const Visit& visit)
    {
        for (const Model& model : myModules)
        {
            myModel = &model;
            for (const Module& module : model.modules())
            {
                if (module.isBuiltIn) continue;
                visitWhole(module.identification, visit);
                for (const Section& section : module.sections) visit(section);
            }
            forEachNamedTable(
                [&](auto table)
                {
                    for (const auto& definition : model.tables().*table)
                        if (!isBuiltIn(definition)) visitWhole(definition, visit);
                });
            for (const Note& note : model.tables().notes)
                if (!isBuiltIn(note)) visit(note);
        }
    }

    /// Calls `visit` for each module but the built-in MIM.
    template <typename Visit>
    void eachModule(const Visit& visit)
    {
        for (const Model& model : myModules)
        {
            myModel = &model;
            for (const Module& module : model.modules())
                if (!module.isBuiltIn) visit(module);
        }
    }

    /// Of the definition that is being visited.
    Edition edition(const Definition& definition) const
    {
        const std::vector<Module>& modules = myModel->modules();
        return definition.module < modules.size() ? modules[definition.module].edition
                                                  : Edition::ieee2010;
    }
    bool isBuiltIn(const Definition& definition) const
    {
        const std::vector<Module>& modules = myModel->modules();
        return definition.module < modules.size() && modules[definition.module].isBuiltIn;
    }

    /// Adds a finding of the rule at a property of the definition that is being visited, or of one
    /// of its parts.
    void report(const Definition& definition, const Text& property, std::string text,
                const Definition* other = nullptr)
    {
        myFindings.push_back({myRule->severity, std::string(myRule->name), std::move(text),
                              myModel->place(definition, property)});
        if (other) myFindings.back().other = myModel->place(*other, other->name);
    }

private:
    template <typename T, typename Visit>
    void visitWhole(const T& definition, const Visit& visit)
    {
        visit(definition);
        forEachPartList<T>(
            [&](auto list)
            {
                using Part = std::decay_t<decltype(*(definition.*list).begin())>;
                if constexpr (!std::is_same_v<Part, Text>)
                    for (const Part& part : definition.*list) visit(part);
            });
    }

    const std::vector<Model>& myModules;
    const Model& myMerged;
    const Codec& myCodec;
    Findings& myFindings;
    const Model* myModel = &myMerged;
    const Rule* myRule = nullptr;
};

/// A rule and what follows it; without a function for what reading, merging or compiling finds.
struct RuleRow
{
    Rule rule;
    void (*follow)(CheckRun&) = nullptr;
};

constexpr RuleRow rule(std::string_view name, Severity severity, std::string_view group,
                       std::string_view sentence, void (*follow)(CheckRun&) = nullptr)
{
    return {
        {name, severity, group, sentence},
        follow
    };
}

// One table for each file of rules.
std::span<const RuleRow> documentRules();
std::span<const RuleRow> identificationRules();
std::span<const RuleRow> nameRules();
std::span<const RuleRow> classRules();
std::span<const RuleRow> datatypeRules();
std::span<const RuleRow> recordRules();
std::span<const RuleRow> tableRules();
std::span<const RuleRow> mergingRules();
std::span<const RuleRow> layoutRules();
std::span<const RuleRow> lintRules();

/// A name as sentences have it.
inline std::string quoted(std::string_view name)
{
    return '`' + cutText(name) + '`';
}

/// "fixed record `Position`".
template <typename T>
std::string called(const T& definition)
{
    return std::string(nameOf(T::theKind)) + ' ' + quoted(definition.name);
}

/// "attribute `X` of object class `A.B`".
template <typename Part, typename Class>
std::string called(const Part& part, const std::vector<Class>& table, const Class& node)
{
    return called(part) + " of " + std::string(nameOf(Class::theKind)) + " `" +
           shortFullName(table, node, 200) + '`';
}

}  // namespace omt
