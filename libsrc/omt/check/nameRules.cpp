// SPDX-License-Identifier: Apache-2.0
// Rules on names: what they may be made of, which are reserved, and which stand twice.
#include "omt/base/character.h"
#include "omt/base/nameHash.h"
#include "omt/check/checkRun.h"

namespace omt
{

namespace
{

/// Kinds whose names are identifiers of the standard.
constexpr bool isIdentifier(Kind kind)
{
    switch (kind)
    {
        case Kind::objectClass:
        case Kind::interactionClass:
        case Kind::attribute:
        case Kind::parameter:
        case Kind::dimension:
        case Kind::transportation:
        case Kind::updateRate:
        case Kind::synchronizationPoint:
        case Kind::enumerator:
        case Kind::field:
        case Kind::alternative:
            return true;
        default:
            return isDatatype(kind) && kind != Kind::complexRecord;
    }
}

/// Whether a character may be in a name of XML that has no colon, and whether at its begin.
bool mayBeInName(std::uint32_t code, bool isFirst)
{
    if (code >= 0x80)
        return code != 0xD7 && code != 0xF7 && (code >= 0xC0 || (!isFirst && code == 0xB7)) &&
               (code < 0x2000 || code > 0x206F) && (code < 0x2190 || code > 0x2BFF);
    const bool isLetter = (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z');
    const bool isDigit = code >= '0' && code <= '9';
    return isLetter || code == '_' || (!isFirst && (isDigit || code == '-'));
}

/// What is wrong with a name, as half a sentence; empty where nothing is. One of another document
/// kind than XML may hold more.
std::string complaint(std::string_view name)
{
    if (name == "NA") return "is NA, which stands for what is not there";
    if (name.find('.') != std::string_view::npos)
        return "has a period, which separates the names of classes";
    bool isFirst = true;
    for (std::string_view rest = name; !rest.empty(); isFirst = false)
    {
        const Character next = firstCharacter(rest);
        const std::size_t octets = std::max<std::size_t>(next.octets, 1);
        if (!mayBeInName(next.code, isFirst))
            return (isFirst ? "begins with " : "has ") +
                   (next.code == ' ' ? std::string("a blank") : quoted(rest.substr(0, octets))) +
                   ", which no name of XML " + (isFirst ? "begins with" : "has");
        rest.remove_prefix(octets);
    }
    return {};
}

void findInvalidNames(CheckRun& run)
{
    run.eachWritten(
        [&](const auto& definition)
        {
            using T = std::decay_t<decltype(definition)>;
            if constexpr (isIdentifier(T::theKind))
            {
                if (run.edition(definition) == Edition::hla13 || definition.name.empty()) return;
                // An alternative without a value is called NA, and its enumerator may be.
                constexpr bool mayBeNa =
                    T::theKind == Kind::alternative || T::theKind == Kind::enumerator;
                if (mayBeNa && definition.name == "NA") return;
                const std::string text = complaint(definition.name);
                if (!text.empty())
                    run.report(definition, definition.name,
                               "the name of " + called(definition) + ' ' + text);
            }
        });
}

bool isReserved(std::string_view name)
{
    const auto is = [](char c, char lower) { return (c | 0x20) == lower; };
    return name.size() > 3 && is(name[0], 'h') && is(name[1], 'l') && is(name[2], 'a');
}

/// Every name of the tables of a model, of its attributes and of its parameters.
void addNames(const Model& model, NameSet& names)
{
    forEachNamedTable(
        [&](auto table)
        {
            for (const auto& definition : model.tables().*table)
            {
                using T = std::decay_t<decltype(definition)>;
                names.insert(definition.name);
                if constexpr (std::is_same_v<T, ObjectClass>)
                    for (const Attribute& attribute : definition.attributes)
                        names.insert(attribute.name);
                if constexpr (std::is_same_v<T, InteractionClass>)
                    for (const Parameter& parameter : definition.parameters)
                        names.insert(parameter.name);
            }
        });
}

/// The names of both standard MIMs, read where a name is in question at all.
struct MimNames
{
    bool has(std::string_view name)
    {
        if (models.empty())
            for (const Edition edition : {Edition::ieee2010, Edition::ieee2025})
            {
                Findings ignored;
                models.push_back(readModule({"MIM", standardMim(edition)}, ignored));
                addNames(models.back(), names);
            }
        return names.count(name) != 0;
    }
    std::vector<Model> models;
    NameSet names;
};

void findReservedNames(CheckRun& run)
{
    MimNames mim;
    const auto look = [&](const auto& definition)
    {
        const Edition edition = run.edition(definition);
        if (edition != Edition::ieee2010 && edition != Edition::ieee2025) return;
        if (!isReserved(definition.name) || definition.name == "HLAobjectRoot" ||
            definition.name == "HLAinteractionRoot" || mim.has(definition.name))
            return;
        run.report(definition, definition.name,
                   "the name of " + called(definition) +
                       " begins with HLA, which is reserved for the standard");
    };
    forEachNamedTable(
        [&](auto table)
        {
            run.each(table,
                     [&](const auto& definition)
                     {
                         using T = std::decay_t<decltype(definition)>;
                         if constexpr (isIdentifier(T::theKind)) look(definition);
                         if constexpr (std::is_same_v<T, ObjectClass>)
                             for (const Attribute& attribute : definition.attributes)
                                 look(attribute);
                         if constexpr (std::is_same_v<T, InteractionClass>)
                             for (const Parameter& parameter : definition.parameters)
                                 look(parameter);
                     });
        });
}

constexpr Severity error = Severity::error;
constexpr std::string_view theGroup = "names";

constexpr RuleRow theRules[] = {
    rule("no-name", error, theGroup, "a definition without a name"),
    rule("invalid-name", error, theGroup, "a name that is no name of XML, has a period, or is NA",
         findInvalidNames),
    rule("reserved-name", error, theGroup, "a name that begins with HLA outside of the MIM",
         findReservedNames),
};

}  // namespace

std::span<const RuleRow> nameRules()
{
    return theRules;
}

}  // namespace omt
