// SPDX-License-Identifier: Apache-2.0
// The rows say for each kind of definition which properties it has, and by which word each edition
// knows them.
//
// The same rows read documents, write them in schema order, print JSON, compare definitions and
// tell what an edition cannot carry. What is nested (fields, enumerators, attributes) is a row too,
// with the kind of its parts; where nested things stand in a document is a function for each
// edition.
#pragma once

#include "omt/model/definitions.h"

#include <array>
#include <span>
#include <string_view>

namespace omt
{

/// The words of one property, by edition; empty where the edition has no such property.
struct Words
{
    /// An element in 2025 and 2010; an XML attribute there where `isXmlAttribute` says so.
    std::string_view in2025;
    std::string_view in2010;
    /// An XML attribute.
    std::string_view in2000;
    /// A keyword of a clause.
    std::string_view in13;

    constexpr std::string_view in(Edition edition) const
    {
        switch (edition)
        {
            case Edition::hla13:
                return in13;
            case Edition::ieee2000:
                return in2000;
            case Edition::ieee2010:
                return in2010;
            case Edition::ieee2025:
                return in2025;
        }
        return {};
    }
};

/// What a property bears on, and so whether two definitions that differ in it contradict each
/// other.
enum class Bearing : std::uint8_t
{
    /// Descriptions, semantics, notes: never.
    prose,
    /// Octets or behaviour: a difference is a conflict.
    behaviour
};

/// What the schemas of 1516-2010 and 1516-2025 let a text be.
enum class ValueForm : std::uint8_t
{
    any,
    notEmpty,
    notEmptyIn2010,
    notEmptyIn2025,
    /// The name of a definition, or one that refers to a definition: an XML name without colon.
    identifier,
    reference,
    uri,
    /// 2003-10-03.
    date,
    decimal,
    integer,
    positive,
    boolean,
    cardinality,
    dimensionValue,
    /// FOM or SOM; any text but the empty one in 2010.
    modelType,
    // Words of which there are a few.
    sharing,
    order,
    updateType,
    ownership,
    capability,
    reliable,
    endian
};

/// One property of a kind of definition.
struct Row
{
    enum class Form : std::uint8_t
    {
        /// One text.
        text,
        /// Any number of texts.
        texts,
        /// The content of the element itself (glyph).
        content,
        /// Definitions of another kind, in a list of their own.
        parts
    };

    /// The key in JSON, and the name by which people know it.
    std::string_view key;
    Words words;
    Form form = Form::text;
    Bearing bearing = Bearing::prose;
    /// An XML attribute in all editions of XML (isEnabled, section, href).
    bool isXmlAttribute = false;
    /// The element around the texts in 2025 and 2010, such as "dimensions"; empty where there is
    /// none.
    std::string_view around2025 = {};
    std::string_view around2010 = {};
    Kind parts = Kind::section;
    Text Definition::*oneText = nullptr;
    List<Text> Definition::*someTexts = nullptr;
    ValueForm value = ValueForm::any;
    /// Whether a definition of 1516-2025 must have it.
    bool isRequired = false;

    /// The element around the texts in an edition.
    constexpr std::string_view around(Edition edition) const
    {
        return edition == Edition::ieee2025   ? around2025
               : edition == Edition::ieee2010 ? around2010
                                              : std::string_view();
    }
};

/// The rows of a kind, in the order of the schema of 1516-2025, which is that of 2010 as well. The
/// index of a row is Aside::property.
std::span<const Row> rowsOf(Kind kind);

/// What a kind is called in sentences: "fixed record", "object class".
std::string_view nameOf(Kind kind);

/// "1516-2025", "1516-2010", "1516-2000" or "HLA 1.3".
std::string_view nameOf(Edition edition);

/// The text of a property; for one with several texts its first.
inline Text textOf(const Definition& definition, const Row& row)
{
    if (row.oneText) return definition.*row.oneText;
    if (row.someTexts && !(definition.*row.someTexts).empty())
        return (definition.*row.someTexts)[0];
    return {};
}

}  // namespace omt
