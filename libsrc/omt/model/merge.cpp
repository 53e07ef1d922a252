// SPDX-License-Identifier: Apache-2.0
// Merges models: equal definitions stand once, what IEEE 1516.2-2025 lets a module add is added,
// and everything else that differs is a finding; the first definition stands.
//
// One table of names serves all kinds. A definition whose parts grow keeps them in a Growth until
// all models are merged, so that time and memory stay linear in the size of the models.
#include "omt/model/compare.h"
#include "omt/model/modelBuilder.h"
#include "omt/model/parts.h"
#include "omt/model/read.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace omt
{

namespace
{

/// What a name is looked up by. Datatypes of all kinds share one group; classes have one for each
/// parent.
struct Key
{
    std::uint64_t group = 0;
    std::string_view name;

    bool operator==(const Key& other) const { return group == other.group && name == other.name; }
};

struct KeyHash
{
    std::size_t operator()(const Key& key) const
    {
        return std::hash<std::string_view>()(key.name) ^ (key.group * 0x9E3779B97F4A7C15U);
    }
};

/// A definition of the merged model.
struct Slot
{
    Kind kind = Kind::section;
    std::uint32_t index = 0;
};

constexpr std::uint64_t groupOf(Kind kind, std::uint32_t parent = 0)
{
    const Kind group = isDatatype(kind) ? Kind::basicData : kind;
    return (static_cast<std::uint64_t>(group) << 32) | parent;
}

/// What a part is known by within its definition.
std::string_view keyOf(const Text& dimension)
{
    return dimension;
}
std::string_view keyOf(const Definition& part)
{
    return part.name;
}
std::string_view keyOf(const Alternative& alternative)
{
    return saysSomething(alternative.name.view()) ? alternative.name : alternative.enumerator;
}

/// What a part claims for itself besides its name: the numbers of an enumerator, the enumerators of
/// an alternative.
template <typename Part>
void forEachClaim(const Part& part, const std::function<void(std::string)>& visit)
{
    if constexpr (std::is_same_v<Part, Enumerator>)
        for (const Text& value : part.values) visit(comparableNumber(value));
    if constexpr (std::is_same_v<Part, Alternative>)
    {
        std::string_view rest = part.enumerator;
        while (!rest.empty())
        {
            std::string_view token = rest.substr(0, rest.find(','));
            rest.remove_prefix(std::min(token.size() + 1, rest.size()));
            while (token.starts_with(' ')) token.remove_prefix(1);
            while (token.ends_with(' ')) token.remove_suffix(1);
            if (!token.empty()) visit(std::string(token));
        }
    }
}

/// Parts whose order is their meaning.
template <typename Part>
constexpr bool isOrdered = std::is_same_v<Part, RecordField> || std::is_same_v<Part, Component> ||
                           std::is_same_v<Part, RoutingDimension>;

template <typename Part>
constexpr Kind kindOfPart()
{
    if constexpr (std::is_same_v<Part, Text>)
        return Kind::dimension;
    else
        return Part::theKind;
}

/// Whether a part is an attribute or a parameter by its name alone, which mentions the one that
/// another module defines.
template <typename Part>
bool isMention([[maybe_unused]] const Part& part)
{
    if constexpr (std::is_base_of_v<Member, Part>)
        return !saysSomething(part, Part::theKind);
    else
        return false;
}

/// Whether a part is the NA of a class without dimensions.
template <typename Part>
bool isNone([[maybe_unused]] const Part& part)
{
    if constexpr (std::is_same_v<Part, Text>)
        return !saysSomething(part.view());
    else
        return false;
}

/// The parts of a definition that several modules have, with what finds them.
template <typename Part>
struct Growth
{
    std::vector<Part> parts;
    std::unordered_map<std::string_view, std::uint32_t> byKey;
    std::unordered_map<std::string, std::uint32_t> byClaim;
    /// How many parts came with the definition itself; these are the first.
    std::size_t own = 0;
    bool isChanged = false;

    void add(const Part& part)
    {
        const auto index = static_cast<std::uint32_t>(parts.size());
        byKey.try_emplace(keyOf(part), index);
        forEachClaim(part,
                     [&](std::string claim) { byClaim.try_emplace(std::move(claim), index); });
        parts.push_back(part);
    }
};

template <typename Part>
using Growths = std::unordered_map<std::uint64_t, Growth<Part>>;

/// A definition of a later model, beside the one of its name that stands.
struct Repetition
{
    /// "object class `A.B`".
    std::string what;
    std::uint32_t firstModule = 0;
    std::uint32_t firstLine = 0;
    /// The line of the later one, in the model that is being added.
    std::uint32_t laterModule = 0;
    std::uint32_t laterLine = 0;
    /// Whether it may add parts, and whether it may leave out what the first one has.
    bool mayAdd = false;
    bool mayLeaveOut = false;
    /// Whether the first one did not say what it is, so that this one does.
    bool isCompletion = false;
};

/// A text as findings show it.
std::string shown(std::string_view text)
{
    return text.empty() ? "not given" : '`' + cutText(text) + '`';
}

/// The line of a property, that of its definition where the property has none.
std::uint32_t lineOf(const Definition& definition, const Row& row)
{
    const std::uint32_t line = textOf(definition, row).line();
    return line != 0 ? line : definition.line;
}

std::string inWords(const Place& place)
{
    std::string text = place.file.empty() ? "the first definition" : place.file;
    if (place.line != 0) text += ':' + std::to_string(place.line);
    return text;
}

std::string describePart(Kind kind, std::string_view name, const Repetition& repetition)
{
    return std::string(nameOf(kind)) + ' ' + shown(name) + " of " + repetition.what;
}

bool isExtendable(const VariantRecord& record)
{
    return record.encoding == "HLAextendableVariantRecord";
}

template <typename T>
bool hasAnyPart(const T& definition)
{
    bool isAny = false;
    forEachPartList<T>([&](auto list) { isAny = isAny || !(definition.*list).empty(); });
    return isAny;
}

/// Kinds of which a module may say the name alone, because another one defines them.
template <typename T>
constexpr bool isScaffoldable =
    std::is_base_of_v<ClassDefinition, T> || std::is_same_v<T, Time> || std::is_same_v<T, Tag>;
/// Kinds whose definition may come after a module that adds to it, or says nothing of it.
template <typename T>
constexpr bool isCompletable =
    isScaffoldable<T> || std::is_same_v<T, EnumeratedData> || std::is_same_v<T, VariantRecord>;

template <typename T>
constexpr std::uint64_t growthKey(std::uint32_t index)
{
    return (static_cast<std::uint64_t>(T::theKind) << 32) | index;
}

class Merger
{
public:
    explicit Merger(Findings& findings) : myFindings(findings) {}

    void reserve(const std::vector<Model>& models);
    void add(const Model& model);
    void reportMixedEditions();
    Model build();

private:
    void addModules(const Tables& from);
    void addNotes(const Tables& from);
    template <typename T>
    void addTable(std::vector<T> Tables::*table, const Tables& from);
    template <typename T>
    void addDefinition(std::vector<T> Tables::*table, const T& later, std::uint32_t parent);
    template <typename T>
    T inThisModel(T definition);
    template <typename T>
    T withModuleOfParts(T definition);

    template <typename T>
    Repetition judge(const T& first, std::uint32_t index, const T& later) const;
    template <typename T>
    bool hasParts(const T& definition, std::uint32_t index) const;
    template <typename T>
    void mergeInto(std::vector<T> Tables::*table, std::uint32_t index, const T& later);
    template <typename T>
    void complete(T& first, std::uint32_t index, const T& later);
    void keepAsides(const Definition& scaffold, Definition& whole);
    void reportMovedNotes();
    template <typename T, typename Owner, typename Part>
    void mergeParts(const T& first, std::uint32_t index, const T& later, List<Part> Owner::*list,
                    const Repetition& repetition);
    template <typename Part>
    void mergeByName(Growth<Part>& growth, const List<Part>& theirs, const Repetition& repetition);
    template <typename Part>
    void addPart(Growth<Part>& growth, const Part& part, const Repetition& repetition);
    template <typename Part>
    void compareInOrder(const List<Part>& ours, const List<Part>& theirs,
                        const Repetition& repetition);
    template <typename T>
    void keepGrowths(std::vector<T>& table);

    bool isEqual(const Definition& first, const Definition& later, Kind kind) const;
    template <typename Part>
    bool isEqual(const List<Part>& first, const List<Part>& later) const;
    void compareRows(const Definition& first, const Definition& later, Kind kind,
                     const std::string& what, bool mayLeaveOut);

    template <typename T>
    std::string describe(std::vector<T> Tables::*table, std::uint32_t index) const;
    void report(Severity severity, std::string_view name, std::string text, Place place,
                Place other);
    template <typename Part>
    void reportMissing(const Growth<Part>& growth, std::vector<std::uint32_t> matched,
                       const Repetition& repetition);
    void reportOtherKind(Kind kind, const Definition& later, const Slot& first);
    void reportDuplicate(const std::string& what, const Definition& first, const Definition& later);
    void reportAddition(Kind kind, std::string_view name, std::uint32_t line,
                        const Repetition& repetition);
    void reportTakenClaim(const std::string& what, const std::string& claim, Place place,
                          std::string_view owner, Place other);

    Edition editionOf(std::uint32_t module) const
    {
        return module < tables().modules.size() ? tables().modules[module].edition
                                                : Edition::ieee2010;
    }
    Place place(std::uint32_t module, std::uint32_t line) const
    {
        if (module >= tables().modules.size()) return {};
        return {tables().modules[module].file.str(), line};
    }
    Tables& tables() { return myBuilder.tables(); }
    const Tables& tables() const { return myBuilder.tables(); }

    ModelBuilder myBuilder;
    Findings& myFindings;
    std::unordered_map<Key, Slot, KeyHash> myNames;
    std::unordered_map<std::string_view, std::uint32_t> myNotes;
    std::tuple<Growths<Text>, Growths<DirectedInteraction>, Growths<Attribute>, Growths<Parameter>,
               Growths<Enumerator>, Growths<Alternative>>
        myGrowths;
    /// Of the model that is being added: the number that its first module has now, and the places
    /// of its classes.
    std::uint32_t myFirstModule = 0;
    std::vector<std::uint32_t> myClasses;
    /// References to notes that went to a definition of another module, and their own module.
    std::vector<std::pair<Text, std::uint32_t>> myMovedNotes;
};

void Merger::reserve(const std::vector<Model>& models)
{
    std::size_t names = 0;
    forEachNamedTable(
        [&](auto table)
        {
            std::size_t count = 0;
            for (const Model& model : models) count += (model.tables().*table).size();
            (tables().*table).reserve(count);
            names += count;
        });
    myNames.reserve(names);
}

void Merger::add(const Model& model)
{
    myBuilder.share(model);
    myFirstModule = static_cast<std::uint32_t>(tables().modules.size());
    const Tables& from = model.tables();
    addModules(from);
    forEachNamedTable([&](auto table) { addTable(table, from); });
    addNotes(from);
}

void Merger::addModules(const Tables& from)
{
    for (Module module : from.modules)
    {
        module.identification = inThisModel(module.identification);
        if (myFirstModule != 0)
            for (Section& section : module.sections) section.module += myFirstModule;
        tables().modules.push_back(std::move(module));
    }
}

/// A note stays with its module; one that says the same by the same label stands once.
void Merger::addNotes(const Tables& from)
{
    for (const Note& note : from.notes)
    {
        const auto [first, isNew] =
            myNotes.try_emplace(note.name, static_cast<std::uint32_t>(tables().notes.size()));
        if (!isNew && tables().notes[first->second].module < myFirstModule &&
            isSameText(tables().notes[first->second].semantics, note.semantics))
            continue;
        tables().notes.push_back(inThisModel(note));
    }
}

template <typename T>
void Merger::addTable(std::vector<T> Tables::*table, const Tables& from)
{
    if constexpr (std::is_base_of_v<ClassDefinition, T>)
    {
        myClasses.clear();
        myClasses.reserve((from.*table).size());
        for (const T& node : from.*table)
            addDefinition(table, node,
                          node.parent == T::theNone ? T::theNone : myClasses[node.parent]);
    }
    else
        for (const T& definition : from.*table) addDefinition(table, definition, 0);
}

template <typename T>
void Merger::addDefinition(std::vector<T> Tables::*table, const T& later, std::uint32_t parent)
{
    const auto index = static_cast<std::uint32_t>((tables().*table).size());
    const auto [first, isNew] =
        myNames.try_emplace({groupOf(T::theKind, parent), later.name}, Slot{T::theKind, index});
    const Slot slot = first->second;
    // Definitions without a name cannot be told apart, and are all kept.
    const bool isAdded = isNew || later.name.empty();
    if constexpr (std::is_base_of_v<ClassDefinition, T>)
        myClasses.push_back(isAdded ? index : slot.index);
    if (isAdded)
    {
        T& added = (tables().*table).emplace_back(inThisModel(later));
        if constexpr (std::is_base_of_v<ClassDefinition, T>) added.parent = parent;
        return;
    }
    if (slot.kind == T::theKind) return mergeInto(table, slot.index, later);
    reportOtherKind(T::theKind, later, slot);
}

/// A definition of the model that is being added, its parts included, with its module's number in
/// the merged model.
template <typename T>
T Merger::inThisModel(T definition)
{
    definition.module += myFirstModule;
    return withModuleOfParts(definition);
}

template <typename T>
T Merger::withModuleOfParts(T definition)
{
    if (myFirstModule == 0) return definition;
    forEachPartList<T>(
        [&](auto list)
        {
            using Part = std::decay_t<decltype(*(definition.*list).begin())>;
            if constexpr (!std::is_same_v<Part, Text>)
            {
                definition.*list =
                    myBuilder.list((definition.*list).begin(), (definition.*list).size());
                for (Part& part : definition.*list) part.module += myFirstModule;
            }
        });
    return definition;
}

/// What there is to know about a definition of a name that another one has already.
template <typename T>
Repetition Merger::judge(const T& first, std::uint32_t index, const T& later) const
{
    constexpr Kind theKind = T::theKind;
    Repetition repetition;
    repetition.laterModule = later.module + myFirstModule;
    repetition.laterLine = later.line;
    const bool isNewest = editionOf(repetition.laterModule) == Edition::ieee2025;
    const bool isSilent = !saysSomething(first, theKind);
    repetition.isCompletion =
        isCompletable<T> && isSilent &&
        (saysSomething(later, theKind) || (!hasParts(first, index) && hasAnyPart(later)));
    repetition.mayLeaveOut = isNewest || repetition.isCompletion;
    repetition.mayAdd = isNewest || repetition.isCompletion;
    if constexpr (theKind == Kind::variantRecord)
        if (!repetition.isCompletion && !isExtendable(first)) repetition.mayAdd = false;
    return repetition;
}

/// Merges a definition with the one of its name that stands.
template <typename T>
void Merger::mergeInto(std::vector<T> Tables::*table, std::uint32_t index, const T& later)
{
    constexpr bool isClass = std::is_base_of_v<ClassDefinition, T>;
    T& first = (tables().*table)[index];
    Repetition repetition = judge(first, index, later);
    const bool isOneModule = first.module == repetition.laterModule;
    const std::size_t findings = myFindings.size();
    if (repetition.isCompletion)
        complete(first, index, later);
    else if (!isEqual(first, later, T::theKind) &&
             (saysSomething(later, T::theKind) || !isScaffoldable<T>))
        compareRows(first, later, T::theKind, describe(table, index),
                    isClass || (isCompletable<T> && repetition.mayLeaveOut));

    repetition.firstModule = first.module;
    repetition.firstLine = first.line;
    forEachPartList<T>(
        [&](auto list)
        {
            if ((isClass && (later.*list).empty()) || isEqual(first.*list, later.*list)) return;
            if (repetition.what.empty()) repetition.what = describe(table, index);
            mergeParts(first, index, later, list, repetition);
        });
    if (!isClass && isOneModule && myFindings.size() == findings)
        reportDuplicate(describe(table, index), first, later);
}

/// Puts the definition itself in the place of one that was only a scaffold, or of which only
/// additions were known; these stay.
template <typename T>
void Merger::complete(T& first, std::uint32_t index, const T& later)
{
    T whole = later;
    whole.module += myFirstModule;
    if constexpr (std::is_base_of_v<ClassDefinition, T>) whole.parent = first.parent;
    if (hasParts(first, index))
        forEachPartList<T>([&](auto list) { whole.*list = first.*list; });
    else
        whole = withModuleOfParts(whole);
    keepAsides(first, whole);
    first = whole;
}

/// What stands beside a scaffold stays beside the definition that takes its place.
void Merger::keepAsides(const Definition& scaffold, Definition& whole)
{
    if (scaffold.asides.empty()) return;
    std::vector<Aside> asides(scaffold.asides.begin(), scaffold.asides.end());
    for (const Aside& aside : std::as_const(asides))
        if (aside.what == Aside::What::notes) myMovedNotes.push_back({aside.text, scaffold.module});
    asides.insert(asides.end(), whole.asides.begin(), whole.asides.end());
    whole.asides = myBuilder.list(asides);
}

/// A label belongs to its module; beside a definition of another one it may mean another note.
void Merger::reportMovedNotes()
{
    if (myMovedNotes.empty()) return;
    std::unordered_map<std::string_view, std::size_t> counts;
    for (const Note& note : tables().notes) ++counts[note.name];
    for (const auto& [labels, module] : myMovedNotes)
    {
        std::istringstream words(labels.str());
        for (std::string label; words >> label;)
            if (const auto found = counts.find(label); found != counts.end() && found->second > 1)
                myFindings.push_back({Severity::warning, "note-label",
                                      "the note " + shown(label) +
                                          " that a scaffold refers to has its label from several "
                                          "modules",
                                      place(module, labels.line())});
    }
}

/// Whether a definition that stands has parts, those included that wait to be kept.
template <typename T>
bool Merger::hasParts(const T& definition, std::uint32_t index) const
{
    bool isAny = hasAnyPart(definition);
    forEachPartList<T>(
        [&](auto list)
        {
            using Part = std::decay_t<decltype(*(definition.*list).begin())>;
            if constexpr (!isOrdered<Part>)
                isAny = isAny || std::get<Growths<Part>>(myGrowths).count(growthKey<T>(index)) != 0;
        });
    return isAny;
}

template <typename T, typename Owner, typename Part>
void Merger::mergeParts(const T& first, std::uint32_t index, const T& later,
                        List<Part> Owner::*list, const Repetition& repetition)
{
    if constexpr (isOrdered<Part>)
        compareInOrder(first.*list, later.*list, repetition);
    else
    {
        auto [place, isNew] = std::get<Growths<Part>>(myGrowths).try_emplace(growthKey<T>(index));
        Growth<Part>& growth = place->second;
        if (isNew)
        {
            for (const Part& part : first.*list)
                if (!isNone(part)) growth.add(part);
            growth.own = growth.parts.size();
        }
        mergeByName(growth, later.*list, repetition);
    }
}

template <typename Part>
void Merger::mergeByName(Growth<Part>& growth, const List<Part>& theirs,
                         const Repetition& repetition)
{
    std::vector<std::uint32_t> matched;
    bool isDefinition = false;
    for (const Part& part : theirs)
    {
        const bool isOnlyName = isMention(part);
        isDefinition = isDefinition || !isOnlyName;
        if (isNone(part)) continue;
        const auto found = growth.byKey.find(keyOf(part));
        if (found == growth.byKey.end())
        {
            isDefinition = true;
            addPart(growth, part, repetition);
            continue;
        }
        matched.push_back(found->second);
        if constexpr (!std::is_same_v<Part, Text>)
        {
            Part& ours = growth.parts[found->second];
            if (isMention(ours) && !isOnlyName)
            {
                Part whole = part;
                whole.module += myFirstModule;
                keepAsides(ours, whole);
                ours = whole;
                growth.isChanged = true;
            }
            else if (!isOnlyName && !isEqual(ours, part, Part::theKind))
                compareRows(ours, part, Part::theKind,
                            describePart(Part::theKind, keyOf(part), repetition), false);
        }
    }
    if (isDefinition && !repetition.mayLeaveOut)
        reportMissing(growth, std::move(matched), repetition);
}

template <typename Part>
void Merger::addPart(Growth<Part>& growth, const Part& part, const Repetition& repetition)
{
    constexpr Kind theKind = kindOfPart<Part>();
    std::uint32_t line = repetition.laterLine;
    if constexpr (std::is_same_v<Part, Text>)
        line = part.line() != 0 ? part.line() : line;
    else
        line = part.line != 0 ? part.line : line;
    if (!repetition.mayAdd) reportAddition(theKind, keyOf(part), line, repetition);
    if constexpr (!std::is_same_v<Part, Text>)
        forEachClaim(part,
                     [&](const std::string& claim)
                     {
                         const auto taken = growth.byClaim.find(claim);
                         if (taken == growth.byClaim.end()) return;
                         const Part& owner = growth.parts[taken->second];
                         reportTakenClaim(describePart(theKind, keyOf(part), repetition), claim,
                                          place(repetition.laterModule, line), keyOf(owner),
                                          place(owner.module, owner.line));
                     });
    Part added = part;
    if constexpr (!std::is_same_v<Part, Text>) added.module += myFirstModule;
    growth.add(added);
    growth.isChanged = true;
}

/// Names parts that came with the definition itself and that its repetition lacks.
template <typename Part>
void Merger::reportMissing(const Growth<Part>& growth, std::vector<std::uint32_t> matched,
                           const Repetition& repetition)
{
    constexpr std::size_t theMost = 3;
    // Names that are there twice are not missing; that many of them are looked at and no more.
    const std::size_t end = std::min(growth.own, matched.size() + 1000);
    std::sort(matched.begin(), matched.end());
    std::string names;
    std::size_t count = 0;
    auto next = matched.begin();
    for (std::uint32_t i = 0; i < end && count < theMost; ++i)
    {
        while (next != matched.end() && *next < i) ++next;
        if (next != matched.end() && *next == i) continue;
        if constexpr (!std::is_same_v<Part, Text>)
            if (growth.parts[i].module != repetition.firstModule) continue;
        // A name that the definition has twice was matched by the first of the two.
        if (growth.byKey.find(keyOf(growth.parts[i]))->second != i) continue;
        names += (count == 0 ? "" : ", ") + shown(keyOf(growth.parts[i]));
        ++count;
    }
    if (count == 0) return;
    const Place other = place(repetition.firstModule, repetition.firstLine);
    report(Severity::error, "conflict",
           repetition.what + " lacks the " + std::string(nameOf(kindOfPart<Part>())) + ' ' + names +
               " that it has in " + inWords(other),
           place(repetition.laterModule, repetition.laterLine), other);
}

/// Fields and components make up octets one after the other, so that nothing can be added.
template <typename Part>
void Merger::compareInOrder(const List<Part>& ours, const List<Part>& theirs,
                            const Repetition& repetition)
{
    const std::string kind(nameOf(Part::theKind));
    const std::size_t count = std::min(ours.size(), theirs.size());
    for (std::size_t i = 0; i < count; ++i)
    {
        const Place here = place(repetition.laterModule, theirs[i].line);
        const Place other = place(ours[i].module, ours[i].line);
        if (ours[i].name != theirs[i].name)
            return report(Severity::error, "conflict",
                          kind + ' ' + std::to_string(i + 1) + " of " + repetition.what + " is " +
                              shown(theirs[i].name) + ", but " + shown(ours[i].name) + " in " +
                              inWords(other),
                          here, other);
        if (!isEqual(ours[i], theirs[i], Part::theKind))
            compareRows(ours[i], theirs[i], Part::theKind,
                        describePart(Part::theKind, theirs[i].name, repetition), false);
    }
    if (ours.size() == theirs.size()) return;
    const std::uint32_t line = theirs.size() > count ? theirs[count].line : repetition.laterLine;
    const Place other = place(repetition.firstModule,
                              ours.size() > count ? ours[count].line : repetition.firstLine);
    report(Severity::error, "conflict",
           repetition.what + " has " + std::to_string(theirs.size()) + " parts, but " +
               std::to_string(ours.size()) + " in " + inWords(other),
           place(repetition.laterModule, line), other);
}

// Comparing
// -----------------------------------------------------------------------------------------

bool Merger::isEqual(const Definition& first, const Definition& later, Kind kind) const
{
    const Edition left = editionOf(first.module);
    const Edition right = editionOf(later.module + myFirstModule);
    for (const Row& row : rowsOf(kind))
        if (isCompared(kind, row, left, right) && !isSame(first, later, kind, row)) return false;
    return true;
}

template <typename Part>
bool Merger::isEqual(const List<Part>& first, const List<Part>& later) const
{
    if (first.size() != later.size()) return false;
    for (std::size_t i = 0; i < first.size(); ++i)
    {
        if (keyOf(first[i]) != keyOf(later[i])) return false;
        if constexpr (!std::is_same_v<Part, Text>)
            if (!isEqual(first[i], later[i], Part::theKind)) return false;
    }
    return true;
}

/// One finding for each property that differs. `later` is of the model that is being added.
void Merger::compareRows(const Definition& first, const Definition& later, Kind kind,
                         const std::string& what, bool mayLeaveOut)
{
    const std::uint32_t laterModule = later.module + myFirstModule;
    for (const Row& row : rowsOf(kind))
    {
        if (!isCompared(kind, row, editionOf(first.module), editionOf(laterModule))) continue;
        const std::string theirs = valueOf(later, row);
        if ((mayLeaveOut && !saysSomething(theirs)) || isSame(first, later, kind, row)) continue;
        const Place other = place(first.module, lineOf(first, row));
        const bool isSwitch = kind == Kind::switchSetting;
        const bool isWording =
            kind == Kind::basicData && isSameNumber(static_cast<const BasicData&>(first),
                                                    static_cast<const BasicData&>(later));
        report(isSwitch || isWording ? Severity::warning : Severity::error,
               isSwitch    ? "switch"
               : isWording ? "wording"
                           : "conflict",
               std::string(row.key) + " of " + what + " is " + shown(theirs) + ", but " +
                   shown(valueOf(first, row)) + " in " + inWords(other) +
                   (isSwitch    ? ", which counts"
                    : isWording ? "; octets are the same"
                                : ""),
               place(laterModule, lineOf(later, row)), other);
    }
}

// Findings
// ------------------------------------------------------------------------------------------

template <typename T>
std::string Merger::describe(std::vector<T> Tables::*table, std::uint32_t index) const
{
    const T& definition = (tables().*table)[index];
    std::string name = cutText(definition.name);
    if constexpr (std::is_base_of_v<ClassDefinition, T>)
    {
        constexpr std::size_t theEnough = 200;
        std::uint32_t at = definition.parent;
        for (; at != T::theNone && name.size() < theEnough; at = (tables().*table)[at].parent)
            name.insert(0, cutText((tables().*table)[at].name) + '.');
        if (at != T::theNone) name.insert(0, "...");
    }
    return std::string(nameOf(T::theKind)) + " `" + name + '`';
}

void Merger::report(Severity severity, std::string_view name, std::string text, Place place,
                    Place other)
{
    myFindings.push_back(
        {severity, std::string(name), std::move(text), std::move(place), std::move(other)});
}

/// A datatype that is defined already, as one of another kind.
void Merger::reportOtherKind(Kind kind, const Definition& later, const Slot& first)
{
    Place other;
    forEachNamedTable(
        [&](auto table)
        {
            using T = typename std::decay_t<decltype(tables().*table)>::value_type;
            if (T::theKind != first.kind) return;
            const Definition& definition = (tables().*table)[first.index];
            other = place(definition.module, definition.line);
        });
    report(Severity::error, "conflict",
           shown(later.name) + " is defined as " + std::string(nameOf(kind)) + ", but as " +
               std::string(nameOf(first.kind)) + " in " + inWords(other),
           place(later.module + myFirstModule, later.line), other);
}

void Merger::reportDuplicate(const std::string& what, const Definition& first,
                             const Definition& later)
{
    const Place other = place(first.module, first.line);
    report(Severity::warning, "duplicate", what + " stands a second time, after " + inWords(other),
           place(later.module + myFirstModule, later.line), other);
}

void Merger::reportAddition(Kind kind, std::string_view name, std::uint32_t line,
                            const Repetition& repetition)
{
    const Place other = place(repetition.firstModule, repetition.firstLine);
    const bool isNewest = editionOf(repetition.laterModule) == Edition::ieee2025;
    report(Severity::error, "addition",
           describePart(kind, name, repetition) + " is not in " + inWords(other) +
               (isNewest ? "; only HLAextendableVariantRecord may be added to"
                         : "; only a module of 1516-2025 may add it"),
           place(repetition.laterModule, line), other);
}

void Merger::reportTakenClaim(const std::string& what, const std::string& claim, Place place,
                              std::string_view owner, Place other)
{
    std::string text =
        what + " takes " + shown(claim) + ", which is " + shown(owner) + " in " + inWords(other);
    report(Severity::error, "conflict", std::move(text), std::move(place), std::move(other));
}

/// Says once which module is of which edition, where there are several. The built-in MIM has the
/// edition of the others.
void Merger::reportMixedEditions()
{
    constexpr std::size_t theMost = 10;
    struct Files
    {
        std::string list;
        std::size_t count = 0;
    };
    std::map<Edition, Files, std::greater<>> editions;
    for (const Module& module : tables().modules)
    {
        if (module.isBuiltIn) continue;
        Files& files = editions[module.edition];
        if (++files.count <= theMost)
            files.list += (files.count == 1 ? "" : ", ") + module.file.str();
    }
    if (editions.size() < 2) return;
    std::string text = "modules of several editions:";
    const char* between = " ";
    for (const auto& [edition, files] : editions)
    {
        text += between + std::string(nameOf(edition)) + " (" + files.list;
        if (files.count > theMost)
            text += " and " + std::to_string(files.count - theMost) + " more";
        text += ')';
        between = ", ";
    }
    myFindings.push_back({Severity::note, "mixed-editions", std::move(text), {}, {}});
}

// The end
// ------------------------------------------------------------------------------------------------

template <typename T>
void Merger::keepGrowths(std::vector<T>& table)
{
    forEachPartList<T>(
        [&](auto list)
        {
            using Part = std::decay_t<decltype(*(std::declval<T&>().*list).begin())>;
            if constexpr (!isOrdered<Part>)
                for (const auto& [key, growth] : std::get<Growths<Part>>(myGrowths))
                    if (growth.isChanged && key >> 32 == growthKey<T>(0) >> 32)
                        table[key & 0xFFFFFFFFU].*list = myBuilder.list(growth.parts);
        });
}

Model Merger::build()
{
    forEachNamedTable([&](auto table) { keepGrowths(tables().*table); });
    reportMovedNotes();
    return myBuilder.build();
}

}  // namespace

Model merge(const std::vector<Model>& models, Findings& findings)
{
    Merger merger(findings);
    merger.reserve(models);
    for (const Model& model : models) merger.add(model);
    merger.reportMixedEditions();
    // One model alone stays as it is, with definitions that it repeats.
    return models.size() == 1 ? models.front() : merger.build();
}

}  // namespace omt
