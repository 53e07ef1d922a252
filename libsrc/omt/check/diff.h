// SPDX-License-Identifier: Apache-2.0
// diff() says what changed between two object models, and whether octets did.
#pragma once

#include "omt/model/model.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// What became of octets, from the least change to the greatest.
enum class Wire : std::uint8_t
{
    same,
    /// The same for the values that both know: enumerators or alternatives were added, or an array
    /// may have another number of elements.
    compatible,
    /// Nothing can be said, as a datatype is not there or cannot be decoded.
    unknown,
    /// Octets differ, or an enumerator or alternative is gone.
    different
};

/// "same", "compatible", "unknown" or "different".
OMT_EXPORT std::string_view name(Wire wire);

struct WireChange
{
    Wire wire = Wire::same;
    /// The first octet that differs, from 0 at the start of the value; where elements or fields of
    /// open size stand before it, none. Only of what is different or unknown.
    std::optional<std::uint64_t> octet = std::nullopt;
    /// Half a sentence; empty where octets are the same.
    std::string why = {};
    /// The field, element or alternative that `why` is about, "Position.X" or "Parts[0].Kind";
    /// empty for the value itself. Cut after some 300 octets.
    std::string path = {};
};

enum class Change : std::uint8_t
{
    added,
    removed,
    /// The same by another name.
    renamed,
    /// In another class or module, or at another place among its like.
    moved,
    changed
};

/// "added", "removed", "renamed", "moved" or "changed".
OMT_EXPORT std::string_view name(Change change);

/// One thing about a definition that is not as it was: a property of it, one of its parts, or a
/// property of a part.
struct Detail
{
    Change change = Change::changed;
    /// "field", "enumerator" and so on, and its name now; empty for the definition itself.
    std::string partKind;
    std::string part;
    /// The key of a property that changed, "kind" where the definition became one of another kind;
    /// "class" or "module" where it moved, "place" for a part that did, from 1; "name" where a part
    /// was renamed.
    std::string property;
    /// What it says; empty where it says nothing.
    std::string before;
    std::string after;
};

/// One definition that is not as it was.
struct Difference
{
    /// The first that holds: added or removed, renamed, moved, changed. Others are in the details.
    Change change = Change::changed;
    /// "attribute", "enumerated datatype" and so on.
    std::string kind;
    /// Its name now, before for one that was removed; of classes the full name (of a very long one
    /// the end), of members that of the class and their own.
    std::string name;
    /// Its name before, where that was another one; else empty.
    std::string nameBefore;
    /// None for an attribute, parameter or datatype where only octets changed, by what it holds.
    std::vector<Detail> details;
    /// Of attributes, parameters and datatypes that both models have.
    std::optional<WireChange> wire;
    /// Where it stands in either model.
    Place before;
    Place after;
};

struct Differences
{
    /// By table: classes with their members, then datatypes, then all others; in each in the order
    /// of the model after, and then what is gone.
    std::vector<Difference> rows;
    /// Of how many attributes, parameters and datatypes that both models have the octets are the
    /// same, compatible, unknown and different; those without a row are the same.
    std::array<std::size_t, 4> octets{};

    bool isEmpty() const { return rows.empty(); }
};

/// Compares two models, of any editions; both are compiled for that. What no octet and no behaviour
/// depends on (identification, semantics, notes) is not compared. Words and properties that only
/// one of two editions has are no differences. Takes time by the size of the models, times its
/// logarithm, whatever they hold.
OMT_EXPORT Differences diff(const Model& before, const Model& after);

}  // namespace omt
