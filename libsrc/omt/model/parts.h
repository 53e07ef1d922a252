// SPDX-License-Identifier: Apache-2.0
// Says which lists of parts the definitions of each kind have, and which tables a model has.
#pragma once

#include "omt/model/model.h"

#include <tuple>

namespace omt
{

/// The members of a definition that are lists of definitions, or of dimensions of a class, which
/// come together from several modules as well.
template <typename T>
inline constexpr std::tuple<> theParts{};
template <>
inline constexpr std::tuple theParts<Identification>{
    &Identification::keywords, &Identification::contacts, &Identification::references,
    &Identification::glyphs};
template <>
inline constexpr std::tuple theParts<ObjectClass>{
    &ObjectClass::dimensions, &ObjectClass::directedInteractions, &ObjectClass::attributes};
template <>
inline constexpr std::tuple theParts<InteractionClass>{&InteractionClass::dimensions,
                                                       &InteractionClass::parameters};
template <>
inline constexpr std::tuple theParts<EnumeratedData>{&EnumeratedData::enumerators};
template <>
inline constexpr std::tuple theParts<FixedRecord>{&FixedRecord::fields};
template <>
inline constexpr std::tuple theParts<VariantRecord>{&VariantRecord::alternatives};
template <>
inline constexpr std::tuple theParts<ComplexRecord>{&ComplexRecord::components};
template <>
inline constexpr std::tuple theParts<RoutingSpace>{&RoutingSpace::dimensions};

/// Calls `visit` with the pointer to each list of parts that a kind of definition has.
template <typename T, typename Visit>
void forEachPartList(Visit&& visit)
{
    std::apply([&](auto... lists) { (visit(lists), ...); }, theParts<T>);
}

/// The tables of definitions that a name belongs to once. Modules and notes are none: each module
/// has its own.
inline constexpr std::tuple theNamedTables{&Tables::services,
                                           &Tables::objectClasses,
                                           &Tables::interactionClasses,
                                           &Tables::dimensions,
                                           &Tables::times,
                                           &Tables::tags,
                                           &Tables::synchronizationPoints,
                                           &Tables::transportations,
                                           &Tables::switches,
                                           &Tables::updateRates,
                                           &Tables::basicData,
                                           &Tables::simpleData,
                                           &Tables::referenceData,
                                           &Tables::enumeratedData,
                                           &Tables::arrayData,
                                           &Tables::fixedRecords,
                                           &Tables::variantRecords,
                                           &Tables::complexRecords,
                                           &Tables::routingSpaces};

/// Calls `visit` with the pointer to each of these tables.
template <typename Visit>
void forEachNamedTable(Visit&& visit)
{
    std::apply([&](auto... tables) { (visit(tables), ...); }, theNamedTables);
}

/// Whether a kind is a datatype or a basic data representation, which share their names.
constexpr bool isDatatype(Kind kind)
{
    switch (kind)
    {
        case Kind::basicData:
        case Kind::simpleData:
        case Kind::referenceData:
        case Kind::enumeratedData:
        case Kind::arrayData:
        case Kind::fixedRecord:
        case Kind::variantRecord:
        case Kind::complexRecord:
            return true;
        default:
            return false;
    }
}

}  // namespace omt
