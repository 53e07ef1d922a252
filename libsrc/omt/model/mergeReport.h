// SPDX-License-Identifier: Apache-2.0
// MergeReport compares definitions of one name by their rows, and says where they contradict.
#pragma once

#include "omt/model/merging.h"
#include "omt/model/partKeys.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace omt
{

/// A text as findings show it.
std::string shown(std::string_view text);

/// "object class `A.B`": what findings call a definition of a table.
template <typename T>
std::string describe(const std::vector<T>& table, std::uint32_t index)
{
    std::string name = cutText(table[index].name);
    if constexpr (std::is_base_of_v<ClassDefinition, T>)
    {
        constexpr std::size_t theEnough = 200;
        std::uint32_t at = table[index].parent;
        for (; at != T::theNone && name.size() < theEnough; at = table[at].parent)
            name.insert(0, cutText(table[at].name) + '.');
        if (at != T::theNone) name.insert(0, "...");
    }
    return std::string(nameOf(T::theKind)) + " `" + name + '`';
}

/// In all functions `first` and `ours` stand in the merged model, `later` and `theirs` are of the
/// model that is being added.
class MergeReport
{
public:
    MergeReport(const Merging& merging, Findings& findings)
        : myMerging(merging), myFindings(findings)
    {
    }

    /// How many findings there are so far.
    std::size_t size() const { return myFindings.size(); }

    /// Whether all properties that bear on behaviour are equal; for lists, whether parts are, in
    /// their order.
    bool isEqual(const Definition& first, const Definition& later, Kind kind) const;
    template <typename Part>
    bool isEqual(const List<Part>& ours, const List<Part>& theirs) const;

    /// One finding for each property that differs.
    void compareRows(const Definition& first, const Definition& later, Kind kind,
                     const std::string& what, bool mayLeaveOut);
    /// The same for a part of a repeated definition, where there is a difference; `name` is what
    /// the part is known by.
    void comparePart(const Definition& ours, const Definition& theirs, Kind kind,
                     std::string_view name, const Repetition& repetition);
    /// Fields and components make up octets one after the other, so that nothing can be added.
    template <typename Part>
    void compareInOrder(const List<Part>& ours, const List<Part>& theirs,
                        const Repetition& repetition);

    /// A datatype that is defined already, as one of another kind.
    void reportOtherKind(Kind kind, const Definition& later, Kind firstKind,
                         const Definition& first);
    void reportDuplicate(const std::string& what, const Definition& first, const Definition& later);
    /// A part that only a module of another edition, or another kind of record, may add.
    void reportAddition(Kind kind, std::string_view name, std::uint32_t line,
                        const Repetition& repetition);
    /// A number or an enumerator that another part, its owner, has taken already.
    void reportTakenClaim(const Definition& part, Kind kind, std::string_view name,
                          const std::string& claim, const Definition& owner,
                          std::string_view ownerName, const Repetition& repetition);
    /// Parts that the later definition lacks, listed in `names`.
    void reportMissing(Kind kind, const std::string& names, const Repetition& repetition);
    /// Labels of notes that belong to one module and now stand beside definitions of another one,
    /// where they may mean another note.
    void reportMovedNotes();
    /// Says once which module is of which edition, where there are several. The built-in MIM has
    /// the edition of the others.
    void reportMixedEditions();

private:
    void reportRow(const Definition& first, const Definition& later, Kind kind, const Row& row,
                   const std::string& what);
    void reportOtherPart(Kind kind, std::size_t index, const Definition& ours,
                         const Definition& theirs, const Repetition& repetition);
    void report(Severity severity, std::string_view name, std::string text, Place place,
                Place other);

    const Merging& myMerging;
    Findings& myFindings;
};

template <typename Part>
bool MergeReport::isEqual(const List<Part>& ours, const List<Part>& theirs) const
{
    if (ours.size() != theirs.size()) return false;
    for (std::size_t i = 0; i < ours.size(); ++i)
    {
        if (keyOf(ours[i]) != keyOf(theirs[i])) return false;
        if constexpr (!std::is_same_v<Part, Text>)
            if (!isEqual(ours[i], theirs[i], Part::theKind)) return false;
    }
    return true;
}

}  // namespace omt
