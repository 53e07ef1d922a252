// SPDX-License-Identifier: Apache-2.0
// Rules on fixed records, variant records and the records of HLA 1.3.
#include "omt/base/nameHash.h"
#include "omt/check/checkRun.h"
#include "omt/codec/typeText.h"
#include "omt/model/datatypeReferences.h"

#include <algorithm>
#include <unordered_map>

namespace omt
{

namespace
{

// Arrays to the end ------------------------------------------------------------------------------

bool isLengthless(const ArrayData& data)
{
    const Encoding how = encoding(data.encoding);
    return how == Encoding::lengthlessArray || how == Encoding::unpaddedLengthlessArray;
}

/// Whether a note on a field says how many elements it has.
bool hasLength(const Model& model, const RecordField& field)
{
    constexpr std::string_view theWord = "RPRlengthlessArrayLength=";
    for (const Aside& aside : field.asides)
    {
        if (aside.what != Aside::What::notes) continue;
        for (const std::string_view label : model.noteLabels(field, aside.property))
            if (const Note* const note = model.findNote(label, field))
                if (note->semantics.view().find(theWord) != std::string_view::npos) return true;
    }
    return false;
}

/// The names of all datatypes whose values end where the octets do, found from lengthless arrays
/// upwards, each once.
class OpenEnds
{
public:
    explicit OpenEnds(const Model& model)
    {
        std::vector<std::string_view> left;
        for (const ArrayData& array : model.tables().arrayData)
            if (isLengthless(array)) left.push_back(array.name);
        if (left.empty()) return;
        for (const FixedRecord& record : model.tables().fixedRecords)
            if (!record.fields.empty())
            {
                const RecordField& last = record.fields[record.fields.size() - 1];
                if (!hasLength(model, last)) myUsers.emplace(last.dataType, record.name);
            }
        for (const VariantRecord& record : model.tables().variantRecords)
            if (encoding(record.encoding) == Encoding::variantRecord)
                for (const Alternative& alternative : record.alternatives)
                    myUsers.emplace(alternative.dataType, record.name);
        while (!left.empty())
        {
            const std::string_view name = left.back();
            left.pop_back();
            if (!myNames.insert(name).second) continue;
            const auto [begin, end] = myUsers.equal_range(name);
            for (auto user = begin; user != end; ++user) left.push_back(user->second);
        }
    }

    bool has(std::string_view name) const { return myNames.count(name) != 0; }

private:
    std::unordered_multimap<std::string_view, std::string_view> myUsers;
    NameSet myNames;
};

void findLostEnds(CheckRun& run)
{
    const OpenEnds ends(run.model());
    run.each(&Tables::fixedRecords,
             [&](const FixedRecord& record)
             {
                 for (std::size_t i = 0; i + 1 < record.fields.size(); ++i)
                 {
                     const RecordField& field = record.fields[i];
                     if (ends.has(field.dataType) && !hasLength(run.model(), field))
                         run.report(field, field.dataType,
                                    called(field) + " of " + quoted(record.name) +
                                        " goes on to the end of the value, and fields follow it");
                 }
             });
    run.each(&Tables::arrayData,
             [&](const ArrayData& array)
             {
                 if (ends.has(array.dataType))
                     run.report(array, array.dataType,
                                "elements of " + called(array) +
                                    " go on to the end of the value, so that there can be one");
             });
}

// Variant records --------------------------------------------------------------------------------

/// Enumerators that alternatives name, as places in the order of declaration.
class Discriminants
{
public:
    explicit Discriminants(CheckRun& run) : myRun(run) {}

    struct Claim
    {
        std::size_t first = 0;
        std::size_t last = 0;
        const Alternative* alternative = nullptr;
    };

    /// The enumerators of the discriminant; null where it is none.
    const EnumeratedData* enumeration(const VariantRecord& record) const
    {
        return myRun.model().findDatatype(record.dataType).as<EnumeratedData>();
    }

    /// Calls `visit` for each name or range of the alternatives, HLAother apart: the range, the
    /// places of both ends (or theNowhere) and the alternative.
    template <typename Visit>
    void each(const VariantRecord& record, const Visit& visit)
    {
        const EnumeratedData* const data = enumeration(record);
        if (!data) return;
        const Places& places = placesOf(*data);
        for (const Alternative& alternative : record.alternatives)
            for (const EnumeratorRange& range : enumeratorRanges(alternative.enumerator))
                if (range.first != "HLAother")
                    visit(range, find(places, range.first), find(places, range.last), alternative);
    }

    static constexpr std::size_t theNowhere = static_cast<std::size_t>(-1);

private:
    using Places = NameMap<std::size_t>;

    static std::size_t find(const Places& places, std::string_view name)
    {
        const auto found = places.find(name);
        return found == places.end() ? theNowhere : found->second;
    }

    const Places& placesOf(const EnumeratedData& data)
    {
        const auto [places, isNew] = myPlaces.try_emplace(&data);
        if (isNew)
            for (std::size_t i = 0; i < data.enumerators.size(); ++i)
                places->second.try_emplace(data.enumerators[i].name, i);
        return places->second;
    }

    CheckRun& myRun;
    std::unordered_map<const EnumeratedData*, Places> myPlaces;
};

void findOddDiscriminants(CheckRun& run)
{
    run.each(&Tables::variantRecords,
             [&](const VariantRecord& record)
             {
                 const Datatype datatype = run.model().findDatatype(record.dataType);
                 if (datatype && datatype.kind() != Kind::enumeratedData)
                     run.report(record, record.dataType,
                                "the discriminant of " + called(record) + " is of " +
                                    quoted(record.dataType) + ", which is no enumeration");
             });
}

std::string called(const Alternative& alternative, const VariantRecord& record)
{
    return "alternative " +
           quoted(saysSomething(alternative.name.view()) ? alternative.name.view()
                                                         : alternative.enumerator.view()) +
           " of " + quoted(record.name);
}

void findUnknownEnumerators(CheckRun& run)
{
    Discriminants discriminants(run);
    run.each(
        &Tables::variantRecords,
        [&](const VariantRecord& record)
        {
            discriminants.each(
                record,
                [&](const EnumeratorRange& range, std::size_t first, std::size_t last,
                    const Alternative& alternative)
                {
                    if (first != Discriminants::theNowhere && last != Discriminants::theNowhere)
                        return;
                    run.report(
                        alternative, alternative.enumerator,
                        called(alternative, record) + " names " +
                            quoted(first == Discriminants::theNowhere ? range.first : range.last) +
                            ", which " + quoted(record.dataType) + " does not have");
                });
        });
}

void findReversedRanges(CheckRun& run)
{
    Discriminants discriminants(run);
    run.each(&Tables::variantRecords,
             [&](const VariantRecord& record)
             {
                 discriminants.each(record,
                                    [&](const EnumeratorRange& range, std::size_t first,
                                        std::size_t last, const Alternative& alternative)
                                    {
                                        if (first == Discriminants::theNowhere ||
                                            last == Discriminants::theNowhere || first <= last)
                                            return;
                                        run.report(alternative, alternative.enumerator,
                                                   called(alternative, record) +
                                                       " has a range from " + quoted(range.first) +
                                                       " to " + quoted(range.last) +
                                                       ", which is declared before it");
                                    });
             });
}

/// Alternatives that take an enumerator of one before them: ranges, sorted, that overlap.
void findTakenEnumerators(CheckRun& run)
{
    Discriminants discriminants(run);
    run.each(&Tables::variantRecords,
             [&](const VariantRecord& record)
             {
                 const EnumeratedData* const names = discriminants.enumeration(record);
                 std::vector<Discriminants::Claim> claims;
                 discriminants.each(record,
                                    [&](const EnumeratorRange&, std::size_t first, std::size_t last,
                                        const Alternative& alternative)
                                    {
                                        if (first != Discriminants::theNowhere &&
                                            last != Discriminants::theNowhere && first <= last)
                                            claims.push_back({first, last, &alternative});
                                    });
                 std::stable_sort(claims.begin(), claims.end(),
                                  [](const auto& a, const auto& b) { return a.first < b.first; });
                 const Discriminants::Claim* widest = nullptr;
                 for (const Discriminants::Claim& claim : claims)
                 {
                     if (widest && claim.first <= widest->last)
                     {
                         // Alternatives stand in one list: the one declared later is the wrong one.
                         const auto [first, later] =
                             std::minmax(claim.alternative, widest->alternative);
                         run.report(*later, later->enumerator,
                                    called(*later, record) + " takes " +
                                        quoted(names->enumerators[claim.first].name) + ", as " +
                                        called(*first, record) + " does",
                                    first);
                     }
                     if (!widest || claim.last > widest->last) widest = &claim;
                 }
             });
}

void findRepeatedOthers(CheckRun& run)
{
    run.each(&Tables::variantRecords,
             [&](const VariantRecord& record)
             {
                 const Alternative* first = nullptr;
                 for (const Alternative& alternative : record.alternatives)
                     for (const EnumeratorRange& range : enumeratorRanges(alternative.enumerator))
                     {
                         if (range.first != "HLAother") continue;
                         if (first)
                             run.report(
                                 alternative, alternative.enumerator,
                                 called(alternative, record) + " takes HLAother a second time",
                                 first);
                         else
                             first = &alternative;
                     }
             });
}

constexpr Severity error = Severity::error;
constexpr Severity warning = Severity::warning;
constexpr std::string_view theRecords = "records";
constexpr std::string_view theVariants = "variants";

constexpr RuleRow theRules[] = {
    rule("record-encoding", error, theRecords, "a record or variant record of an unknown encoding"),
    rule("repeated-field", warning, theRecords, "a field or alternative whose name is taken"),
    rule("endless-datatype", error, theRecords, "a datatype that holds itself without an array"),
    rule("too-large", error, theRecords,
         "a datatype of more octets, or more choices, than a value may have"),
    rule("lost-end", error, theRecords, "an array to the end of the value that is not the last",
         findLostEnds),
    rule("component-cardinality", error, theRecords,
         "a cardinality that a component of HLA 1.3 does not have"),
    rule("component-condition", error, theRecords,
         "a condition on a component of HLA 1.3 that cannot be decided"),
    rule("discriminant", error, theVariants, "a discriminant that is no enumeration",
         findOddDiscriminants),
    rule("unknown-enumerator", error, theVariants,
         "an alternative for an enumerator that there is not", findUnknownEnumerators),
    rule("reversed-range", error, theVariants, "a range of enumerators that ends before it begins",
         findReversedRanges),
    rule("taken-enumerator", error, theVariants, "an enumerator that two alternatives take",
         findTakenEnumerators),
    rule("repeated-other", error, theVariants, "HLAother in two alternatives", findRepeatedOthers),
};

}  // namespace

std::span<const RuleRow> recordRules()
{
    return theRules;
}

}  // namespace omt
