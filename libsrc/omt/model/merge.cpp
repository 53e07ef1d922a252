// SPDX-License-Identifier: Apache-2.0
// Merges models: finds which definition meets which. What IEEE 1516.2-2025 lets a module add is
// added, everything else that differs is a finding, and the first definition stands.
#include "omt/base/nameHash.h"
#include "omt/model/mergeReport.h"
#include "omt/model/partGrowth.h"
#include "omt/model/read.h"

#include <unordered_map>

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
        return NameHash()(key.name) ^ (key.group * 0x9E3779B97F4A7C15U);
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

/// One table of names serves all kinds.
class Merger
{
public:
    explicit Merger(Findings& findings) : myReport(myMerging, findings) {}

    void reserve(const std::vector<Model>& models);
    void add(const Model& model);
    void reportMixedEditions() { myReport.reportMixedEditions(); }
    Model build();

private:
    void addModules(const Tables& from);
    void addNotes(const Tables& from);
    template <typename T>
    void addTable(std::vector<T> Tables::*table, const Tables& from);
    template <typename T>
    void addDefinition(std::vector<T>& table, const T& later, std::uint32_t parent);
    template <typename T>
    void mergeInto(std::vector<T>& table, std::uint32_t index, const T& later);
    template <typename T>
    Repetition judge(const T& first, std::uint32_t index, const T& later) const;
    template <typename T>
    void complete(T& first, std::uint32_t index, const T& later);
    void reportOtherKind(Kind kind, const Definition& later, const Slot& first);

    Tables& tables() { return myMerging.tables(); }

    Merging myMerging;
    MergeReport myReport;
    PartGrowth myGrowth{myMerging, myReport};
    std::unordered_map<Key, Slot, KeyHash> myNames;
    NameMap<std::uint32_t> myNotes;
    /// The places of the classes of the model that is being added.
    std::vector<std::uint32_t> myClasses;
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
    myMerging.builder.share(model);
    myMerging.firstModule = static_cast<std::uint32_t>(tables().modules.size());
    const Tables& from = model.tables();
    addModules(from);
    forEachNamedTable([&](auto table) { addTable(table, from); });
    addNotes(from);
}

void Merger::addModules(const Tables& from)
{
    for (Module module : from.modules)
    {
        module.identification = myMerging.adopted(module.identification);
        if (myMerging.firstModule != 0)
            for (Section& section : module.sections) section.module += myMerging.firstModule;
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
        if (!isNew && tables().notes[first->second].module < myMerging.firstModule &&
            isSameText(tables().notes[first->second].semantics, note.semantics))
            continue;
        tables().notes.push_back(myMerging.adopted(note));
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
            addDefinition(tables().*table, node,
                          node.parent == T::theNone ? T::theNone : myClasses[node.parent]);
    }
    else
        for (const T& definition : from.*table) addDefinition(tables().*table, definition, 0);
}

template <typename T>
void Merger::addDefinition(std::vector<T>& table, const T& later, std::uint32_t parent)
{
    const auto index = static_cast<std::uint32_t>(table.size());
    const auto [first, isNew] =
        myNames.try_emplace({groupOf(T::theKind, parent), later.name}, Slot{T::theKind, index});
    const Slot slot = first->second;
    // Definitions without a name cannot be told apart, and are all kept.
    const bool isAdded = isNew || later.name.empty();
    if constexpr (std::is_base_of_v<ClassDefinition, T>)
        myClasses.push_back(isAdded ? index : slot.index);
    if (isAdded)
    {
        T& added = table.emplace_back(myMerging.adopted(later));
        if constexpr (std::is_base_of_v<ClassDefinition, T>) added.parent = parent;
        return;
    }
    if (slot.kind == T::theKind) return mergeInto(table, slot.index, later);
    reportOtherKind(T::theKind, later, slot);
}

/// What there is to know about a definition of a name that another one has already.
template <typename T>
Repetition Merger::judge(const T& first, std::uint32_t index, const T& later) const
{
    constexpr Kind theKind = T::theKind;
    Repetition repetition;
    repetition.laterModule = later.module + myMerging.firstModule;
    repetition.laterLine = later.line;
    const bool isNewest = myMerging.editionOf(repetition.laterModule) == Edition::ieee2025;
    const bool isSilent = !saysSomething(first, theKind);
    repetition.isCompletion =
        isCompletable<T> && isSilent &&
        (saysSomething(later, theKind) || (!myGrowth.hasParts(first, index) && hasAnyPart(later)));
    repetition.mayLeaveOut = isNewest || repetition.isCompletion;
    repetition.mayAdd = isNewest || repetition.isCompletion;
    if constexpr (theKind == Kind::variantRecord)
        if (!repetition.isCompletion && !isExtendable(first)) repetition.mayAdd = false;
    return repetition;
}

/// Merges a definition with the one of its name that stands.
template <typename T>
void Merger::mergeInto(std::vector<T>& table, std::uint32_t index, const T& later)
{
    constexpr bool isClass = std::is_base_of_v<ClassDefinition, T>;
    T& first = table[index];
    Repetition repetition = judge(first, index, later);
    const bool isOneModule = first.module == repetition.laterModule;
    const std::size_t findings = myReport.size();
    if (repetition.isCompletion)
        complete(first, index, later);
    else if (!myReport.isEqual(first, later, T::theKind) &&
             (saysSomething(later, T::theKind) || !isScaffoldable<T>))
        myReport.compareRows(first, later, T::theKind, describe(table, index),
                             isClass || (isCompletable<T> && repetition.mayLeaveOut));

    repetition.firstModule = first.module;
    repetition.firstLine = first.line;
    forEachPartList<T>(
        [&](auto list)
        {
            if ((isClass && (later.*list).empty()) || myReport.isEqual(first.*list, later.*list))
                return;
            if (repetition.what.empty()) repetition.what = describe(table, index);
            myGrowth.merge<T>(index, first.*list, later.*list, repetition);
        });
    if (!isClass && isOneModule && myReport.size() == findings)
        myReport.reportDuplicate(describe(table, index), first, later);
}

/// Puts the definition itself in the place of one that was only a scaffold, or of which only
/// additions were known; these stay.
template <typename T>
void Merger::complete(T& first, std::uint32_t index, const T& later)
{
    T whole = later;
    whole.module += myMerging.firstModule;
    if constexpr (std::is_base_of_v<ClassDefinition, T>) whole.parent = first.parent;
    if (myGrowth.hasParts(first, index))
        forEachPartList<T>([&](auto list) { whole.*list = first.*list; });
    else
        whole = myMerging.withPartsAdopted(whole);
    myMerging.keepAsides(first, whole);
    first = whole;
}

void Merger::reportOtherKind(Kind kind, const Definition& later, const Slot& first)
{
    forEachNamedTable(
        [&](auto table)
        {
            using T = typename std::decay_t<decltype(tables().*table)>::value_type;
            if (T::theKind == first.kind)
                myReport.reportOtherKind(kind, later, first.kind, (tables().*table)[first.index]);
        });
}

Model Merger::build()
{
    forEachNamedTable([&](auto table) { myGrowth.keep(tables().*table); });
    myReport.reportMovedNotes();
    return myMerging.builder.build();
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
