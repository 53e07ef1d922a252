// SPDX-License-Identifier: Apache-2.0
// Rules of taste, which are followed when asked for.
#include "omt/base/nameHash.h"
#include "omt/check/checkRun.h"
#include "omt/model/datatypeReferences.h"
#include "omt/model/moduleCheck.h"

#include <algorithm>
#include <unordered_set>

namespace omt
{

namespace
{

std::string lowerCase(std::string_view name)
{
    std::string lower(name);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

/// Names that have been seen, without case.
class Twins
{
public:
    /// The definition seen first whose name differs in case alone.
    const Definition* add(const Definition& definition)
    {
        const auto [place, isNew] = myFirst.try_emplace(lowerCase(definition.name), &definition);
        return isNew || place->second->name == definition.name ? nullptr : place->second;
    }

private:
    OwnNameMap<const Definition*> myFirst;
};

void findTwins(CheckRun& run)
{
    const auto look = [&](Twins& twins, const auto& definition, const std::string& where)
    {
        if (const Definition* const first = twins.add(definition))
            run.report(definition, definition.name,
                       called(definition) + where + " differs from " + quoted(first->name) +
                           " in case alone",
                       first);
    };
    Twins datatypes;
    forEachNamedTable(
        [&](auto table)
        {
            run.each(table,
                     [&](const auto& definition)
                     {
                         using T = std::decay_t<decltype(definition)>;
                         if constexpr (isDatatype(T::theKind)) look(datatypes, definition, "");
                         forEachPartList<T>(
                             [&](auto list)
                             {
                                 using Part = std::decay_t<decltype(*(definition.*list).begin())>;
                                 Twins parts;
                                 if constexpr (!std::is_same_v<Part, Text>)
                                     for (const Part& part : definition.*list)
                                         look(parts, part, " of " + quoted(definition.name));
                             });
                     });
        });
}

/// Numbers missing within a row of consecutive ones.
void findGaps(CheckRun& run)
{
    run.each(&Tables::enumeratedData,
             [&](const EnumeratedData& data)
             {
                 std::vector<std::int64_t> numbers;
                 for (const Enumerator& enumerator : data.enumerators)
                     for (const Text& value : enumerator.values)
                         if (const auto number = enumeratorNumber(value))
                             numbers.push_back(*number);
                 std::sort(numbers.begin(), numbers.end());
                 for (std::size_t i = 1; i < numbers.size(); ++i)
                 {
                     const auto before = static_cast<std::uint64_t>(numbers[i - 1]);
                     const auto gap = static_cast<std::uint64_t>(numbers[i]) - before;
                     if (gap <= 1) continue;
                     run.report(data, data.name,
                                called(data) + " has no enumerator for " +
                                    std::to_string(numbers[i - 1] + 1) +
                                    (gap > 2 ? " to " + std::to_string(numbers[i] - 1) : ""));
                     return;
                 }
             });
}

/// Units of the SI and those that are used with it, without prefixes, and words for them.
constexpr std::string_view theUnits[] = {
    "%",           "A",       "Bq",      "C",       "Gy",     "H",       "Hz",      "J",
    "K",           "N",       "Pa",      "S",       "Sv",     "T",       "V",       "W",
    "Wb",          "ampere",  "amperes", "bar",     "bit",    "bits",    "cd",      "celsius",
    "d",           "dB",      "dBm",     "day",     "days",   "deg",     "decibel", "decibels",
    "micron",      "microns", "year",    "years",   "degree", "degrees", "foot",    "feet",
    "ft",          "g",       "gram",    "grams",   "h",      "hertz",   "hour",    "hours",
    "joule",       "joules",  "kat",     "kelvin",  "knot",   "knots",   "kt",      "l",
    "liter",       "litre",   "liters",  "litres",  "lm",     "lx",      "m",       "meter",
    "meters",      "metre",   "metres",  "mile",    "miles",  "min",     "minute",  "minutes",
    "mol",         "n.mi",    "newton",  "newtons", "nm",     "octet",   "octets",  "byte",
    "bytes",       "ohm",     "pascal",  "percent", "rad",    "radian",  "radians", "revolution",
    "revolutions", "rpm",     "s",       "sec",     "second", "seconds", "sr",      "t",
    "tonne",       "tonnes",  "volt",    "volts",   "watt",   "watts"};
constexpr std::string_view thePrefixes[] = {
    "da", "micro", "milli", "centi", "kilo", "mega", "deci", "giga", "nano", "u",
    "m",  "c",     "d",     "k",     "M",    "G",    "T",    "n",    "p",    "h"};

bool isUnit(std::string_view word)
{
    const auto isKnown = [](std::string_view unit)
    {
        const std::string lower = lowerCase(unit);
        return std::find(std::begin(theUnits), std::end(theUnits), unit) != std::end(theUnits) ||
               (unit.size() > 2 &&
                std::find(std::begin(theUnits), std::end(theUnits), lower) != std::end(theUnits));
    };
    if (word == "per" || word == "squared" || word == "cubed" || isKnown(word)) return true;
    const std::string lower = lowerCase(word);
    for (const std::string_view prefix : thePrefixes)
        if ((word.starts_with(prefix) && isKnown(word.substr(prefix.size()))) ||
            (prefix.size() > 2 && lower.starts_with(prefix) &&
             isKnown(std::string_view(lower).substr(prefix.size()))))
            return true;
    return false;
}

void findUnknownUnits(CheckRun& run)
{
    run.each(&Tables::simpleData,
             [&](const SimpleData& data)
             {
                 if (!saysSomething(data.units.view())) return;
                 constexpr std::string_view theBetween = " \t\r\n/*^().,-+0123456789";
                 for (std::string_view rest = data.units; !rest.empty();)
                 {
                     const std::size_t begin = rest.find_first_not_of(theBetween);
                     if (begin == std::string_view::npos) return;
                     rest.remove_prefix(begin);
                     const std::string_view word = rest.substr(0, rest.find_first_of(theBetween));
                     rest.remove_prefix(word.size());
                     if (isUnit(word)) continue;
                     return run.report(data, data.units,
                                       "the units of " + called(data) + " are " +
                                           quoted(data.units) + "; " + quoted(word) +
                                           " is no known unit");
                 }
             });
}

/// The words of a normalization, which may be names of datatypes.
void addWords(std::string_view text, NameSet& words)
{
    constexpr std::string_view theBetween = " \t\r\n(),[]";
    while (true)
    {
        text.remove_prefix(std::min(text.find_first_not_of(theBetween), text.size()));
        if (text.empty()) return;
        const std::string_view word = text.substr(0, text.find_first_of(theBetween));
        words.insert(word);
        text.remove_prefix(word.size());
    }
}

/// The datatypes that something refers to by name.
NameSet usedDatatypes(const Model& model)
{
    NameSet used;
    forEachNamedTable(
        [&](auto table)
        {
            for (const auto& definition : model.tables().*table)
            {
                using T = std::decay_t<decltype(definition)>;
                if constexpr (requires { definition.normalization; })
                    addWords(definition.normalization, used);
                if constexpr (isDatatype(T::theKind))
                    forEachReference(Datatype(definition), [&](const Text& name, const Definition&,
                                                               Kind) { used.insert(name); });
                else if constexpr (requires { definition.dataType; })
                    used.insert(definition.dataType);
                if constexpr (requires { definition.dataTypes; })
                    for (const Text& name : definition.dataTypes) used.insert(name);
            }
        });
    for (const ObjectClass& node : model.objectClasses())
        for (const Attribute& attribute : node.attributes) used.insert(attribute.dataType);
    for (const InteractionClass& node : model.interactionClasses())
        for (const Parameter& parameter : node.parameters) used.insert(parameter.dataType);
    return used;
}

void findUnusedDatatypes(CheckRun& run)
{
    const NameSet used = usedDatatypes(run.model());
    forEachNamedTable(
        [&](auto table)
        {
            run.each(table,
                     [&](const auto& definition)
                     {
                         using T = std::decay_t<decltype(definition)>;
                         if constexpr (isDatatype(T::theKind))
                             if (used.count(definition.name) == 0)
                                 run.report(definition, definition.name,
                                            called(definition) + " is used by nothing");
                     });
        });
}

void findUnusedDimensions(CheckRun& run)
{
    NameSet used;
    const auto addAll = [&](const List<Text>& names) { used.insert(names.begin(), names.end()); };
    for (const ObjectClass& node : run.model().objectClasses())
    {
        addAll(node.dimensions);
        for (const Attribute& attribute : node.attributes) addAll(attribute.dimensions);
    }
    for (const InteractionClass& node : run.model().interactionClasses()) addAll(node.dimensions);
    run.each(&Tables::dimensions,
             [&](const Dimension& dimension)
             {
                 if (used.count(dimension.name) == 0)
                     run.report(dimension, dimension.name,
                                called(dimension) + " is used by nothing");
             });
}

void findUnusedNotes(CheckRun& run)
{
    std::unordered_set<const Note*> used;
    const auto add = [&](const Definition& definition)
    {
        for (const Aside& aside : definition.asides)
            if (aside.what == Aside::What::notes)
                for (const std::string_view label :
                     run.current().noteLabels(definition, aside.property))
                    used.insert(run.current().findNote(label, definition));
    };
    run.eachWritten(add);
    run.eachWritten(
        [&](const auto& definition)
        {
            if constexpr (std::is_same_v<std::decay_t<decltype(definition)>, Note>)
                if (used.count(&definition) == 0)
                    run.report(definition, definition.name,
                               called(definition) + " is referred to by nothing");
        });
}

constexpr Severity note = Severity::note;
constexpr std::string_view theGroup = "lint";

constexpr RuleRow theRules[] = {
    rule("name-case", note, theGroup, "names that differ in case alone", findTwins),
    rule("enumerator-gap", note, theGroup, "an enumeration whose numbers have a gap", findGaps),
    rule("unknown-unit", note, theGroup, "a unit that is none of the usual ones", findUnknownUnits),
    rule("unused-datatype", note, theGroup, "a datatype that nothing uses", findUnusedDatatypes),
    rule("unused-dimension", note, theGroup, "a dimension that nothing uses", findUnusedDimensions),
    rule("unused-note", note, theGroup, "a note that nothing refers to", findUnusedNotes),
};

}  // namespace

std::span<const RuleRow> lintRules()
{
    return theRules;
}

}  // namespace omt
