// SPDX-License-Identifier: Apache-2.0
// The definitions of an object model, as plain data: what each says, in the words of its document.
//
// One struct serves all editions: IEEE 1516-2025, 1516-2010, 1516-2000 and HLA 1.3. Every property
// is a Text as it was written, outer blanks off; a property that an edition does not have, or a
// document does not say, is not there (Text::isThere()). Names of members are the elements of
// 1516-2025 and 1516-2010 (Annex D of IEEE 1516.2) where these have one.
#pragma once

#include "omt/base/list.h"
#include "omt/base/text.h"

#include <cstdint>

namespace omt
{

/// The four forms of object models.
enum class Edition : std::uint8_t
{
    hla13,
    ieee2000,
    ieee2010,
    ieee2025
};

/// The kinds of definitions; each struct below names its own as theKind.
enum class Kind : std::uint8_t
{
    identification,
    keyword,
    contact,
    reference,
    glyph,
    service,
    objectClass,
    directedInteraction,
    attribute,
    interactionClass,
    parameter,
    dimension,
    time,
    tag,
    synchronizationPoint,
    transportation,
    switchSetting,
    updateRate,
    basicData,
    simpleData,
    referenceData,
    enumeratedData,
    enumerator,
    arrayData,
    fixedRecord,
    field,
    variantRecord,
    alternative,
    complexRecord,
    component,
    routingSpace,
    routingDimension,
    note,
    section
};

/// What stands beside a property, or in a definition, and is no property itself.
struct Aside
{
    enum class What : std::uint8_t
    {
        /// References to notes, labels with blanks between them. `name` is empty.
        notes,
        /// An XML attribute that no property has: `name` as written, with its prefix. Declarations
        /// of prefixes are such attributes too.
        attribute,
        /// An XML element, or a clause of HLA 1.3, that no property has. `name` is its name and
        /// `text` all of it, markup included; what its prefixes stand for is declared in it.
        element,
        /// A comment before the element, without its delimiters.
        comment,
        /// Text where the edition has none.
        text
    };
    /// The definition as a whole, and the end of it (after all its properties and parts).
    static constexpr std::uint8_t theWhole = 255;
    static constexpr std::uint8_t theEnd = 254;

    What what = What::notes;
    /// Which property it belongs to: the index of its row (model/rows.h), or theWhole, or theEnd.
    std::uint8_t property = theWhole;
    /// The element around the texts of a property, such as "dimensions".
    static constexpr std::uint32_t theAround = 0xFFFFFFFF;
    /// Which of the property's texts, from 0, where it may be there several times; theAround for
    /// what stands on the element around all of them.
    std::uint32_t item = 0;
    Text name;
    Text text;
};

/// What all definitions have.
struct Definition
{
    Text name;
    /// The module that defines it, an index of Model::modules().
    std::uint32_t module = 0;
    /// The line on which its element begins to have content, as XML libraries count (the end of the
    /// start tag), or on which its clause begins; 0 where no document has it.
    std::uint32_t line = 0;
    /// Notes, comments and what no property knows, in the order of the document.
    List<Aside> asides;
};

// Identification
// ------------------------------------------------------------------------------------

struct Keyword : Definition
{
    static constexpr Kind theKind = Kind::keyword;
    Text taxonomy;
    Text keywordValue;
};

/// A point of contact. `name` is its name in one text; HLA 1.3 has it in three.
struct Contact : Definition
{
    static constexpr Kind theKind = Kind::contact;
    Text type;
    Text organization;
    List<Text> telephones;
    List<Text> emails;
    Text honorific;
    Text firstName;
    Text lastName;
};

/// A document that the model refers to, such as a module that it depends on.
struct Reference : Definition
{
    static constexpr Kind theKind = Kind::reference;
    Text type;
    Text identification;
};

/// A picture that stands for the model. `content` is base64.
struct Glyph : Definition
{
    static constexpr Kind theKind = Kind::glyph;
    Text href;
    Text alt;
    Text type;
    Text height;
    Text width;
    Text content;
};

struct Identification : Definition
{
    static constexpr Kind theKind = Kind::identification;
    Text type;
    Text version;
    Text modificationDate;
    Text securityClassification;
    Text copyright;
    List<Text> releaseRestrictions;
    Text purpose;
    Text applicationDomain;
    Text description;
    Text useLimitation;
    List<Text> useHistories;
    List<Keyword> keywords;
    List<Contact> contacts;
    List<Reference> references;
    Text other;
    List<Glyph> glyphs;
    /// 1516-2000 and HLA 1.3.
    Text sponsor;
    /// 1516-2000.
    Text dtdVersion;
    /// HLA 1.3.
    Text momVersion;
    Text fedName;
};

/// A table as a module has it, `name` being the path of its element below the root, such as
/// "dataTypes/simpleDataTypes"; the root's is empty. Kept for what stands on the table itself.
struct Section : Definition
{
    static constexpr Kind theKind = Kind::section;
};

/// One document that the model was made of.
struct Module
{
    /// The name that it was read by, "-" for standard input, "standard MIM" for the built-in ones.
    Text file;
    Edition edition = Edition::ieee2010;
    /// Whether it is one of the two standard MIMs that libomt carries.
    bool isBuiltIn = false;
    Identification identification;
    List<Section> sections;
};

/// One service of the federate interface. `name` is the element, such as "connect".
struct Service : Definition
{
    static constexpr Kind theKind = Kind::service;
    Text section;
    Text isCallback;
    Text isUsed;
};

// Classes
// -------------------------------------------------------------------------------------------

/// What attributes, parameters and components of HLA 1.3 share.
struct Member : Definition
{
    Text dataType;
    Text semantics;
    /// HLA 1.3.
    Text cardinality;
    Text units;
    Text resolution;
    Text accuracy;
    Text accuracyCondition;
};

struct Attribute : Member
{
    static constexpr Kind theKind = Kind::attribute;
    Text updateType;
    Text updateCondition;
    Text valueRequired;
    Text ownership;
    /// In HLA 1.3 UpdateReflect.
    Text sharing;
    /// In HLA 1.3 the routing space.
    List<Text> dimensions;
    Text transportation;
    Text order;
};

struct Parameter : Member
{
    static constexpr Kind theKind = Kind::parameter;
};

/// An interaction class that may be sent to instances of an object class (2025).
struct DirectedInteraction : Definition
{
    static constexpr Kind theKind = Kind::directedInteraction;
    Text sharing;
};

/// What object classes and interaction classes share.
struct ClassDefinition : Definition
{
    /// No class: the parent of a root.
    static constexpr std::uint32_t theNone = 0xFFFFFFFF;

    Text sharing;
    List<Text> dimensions;
    Text semantics;
    /// Indices of the model's table of the same kind of class. The children are in the order of the
    /// table; ModelBuilder::build() fills them in.
    std::uint32_t parent = theNone;
    List<std::uint32_t> children;
};

struct ObjectClass : ClassDefinition
{
    static constexpr Kind theKind = Kind::objectClass;
    List<DirectedInteraction> directedInteractions;
    List<Attribute> attributes;
};

struct InteractionClass : ClassDefinition
{
    static constexpr Kind theKind = Kind::interactionClass;
    Text transportation;
    Text order;
    List<Parameter> parameters;
};

// Other tables
// --------------------------------------------------------------------------------------

struct Dimension : Definition
{
    static constexpr Kind theKind = Kind::dimension;
    /// One in 2010 (dataType), any number in 2025 (inputDataTypes).
    List<Text> dataTypes;
    Text inputDataDescription;
    Text upperBound;
    Text normalization;
    Text outputDataSemantics;
    Text value;
};

/// A representation of time. `name` is the element: timeStamp, lookahead, logicalTime or
/// logicalTimeInterval.
struct Time : Definition
{
    static constexpr Kind theKind = Kind::time;
    Text dataType;
    Text semantics;
};

/// A user-supplied tag. `name` is the element, such as "updateReflectTag".
struct Tag : Definition
{
    static constexpr Kind theKind = Kind::tag;
    Text dataType;
    Text semantics;
};

/// A synchronization point. `name` is its label.
struct SynchronizationPoint : Definition
{
    static constexpr Kind theKind = Kind::synchronizationPoint;
    Text dataType;
    Text capability;
    Text semantics;
};

struct Transportation : Definition
{
    static constexpr Kind theKind = Kind::transportation;
    Text reliable;
    Text semantics;
};

/// A switch. `name` is the element, such as "autoProvide"; `value` what isEnabled or resignAction
/// says.
struct Switch : Definition
{
    static constexpr Kind theKind = Kind::switchSetting;
    Text value;
};

struct UpdateRate : Definition
{
    static constexpr Kind theKind = Kind::updateRate;
    Text rate;
    Text semantics;
};

/// `name` is its label.
struct Note : Definition
{
    static constexpr Kind theKind = Kind::note;
    Text semantics;
};

/// A dimension of a routing space (HLA 1.3).
struct RoutingDimension : Definition
{
    static constexpr Kind theKind = Kind::routingDimension;
    Text type;
    Text minimum;
    Text maximum;
    Text units;
    Text normalization;
    Text semantics;
};

struct RoutingSpace : Definition
{
    static constexpr Kind theKind = Kind::routingSpace;
    Text semantics;
    List<RoutingDimension> dimensions;
};

// Datatypes
// -----------------------------------------------------------------------------------------

struct BasicData : Definition
{
    static constexpr Kind theKind = Kind::basicData;
    /// In bits.
    Text size;
    Text interpretation;
    Text endian;
    Text encoding;
};

struct SimpleData : Definition
{
    static constexpr Kind theKind = Kind::simpleData;
    Text representation;
    Text units;
    Text resolution;
    Text accuracy;
    Text semantics;
};

/// A datatype whose values refer to an object instance (2025).
struct ReferenceData : Definition
{
    static constexpr Kind theKind = Kind::referenceData;
    Text representation;
    Text referenceClass;
    Text referencedAttribute;
    Text semantics;
};

struct Enumerator : Definition
{
    static constexpr Kind theKind = Kind::enumerator;
    /// The numbers as they are written; mostly one.
    List<Text> values;
};

struct EnumeratedData : Definition
{
    static constexpr Kind theKind = Kind::enumeratedData;
    Text representation;
    Text semantics;
    List<Enumerator> enumerators;
    /// HLA 1.3.
    Text autoSequence;
    Text startValue;
};

struct ArrayData : Definition
{
    static constexpr Kind theKind = Kind::arrayData;
    Text dataType;
    Text cardinality;
    Text encoding;
    Text semantics;
};

/// A field of a fixed record.
struct RecordField : Definition
{
    static constexpr Kind theKind = Kind::field;
    Text dataType;
    Text semantics;
};

struct FixedRecord : Definition
{
    static constexpr Kind theKind = Kind::fixedRecord;
    Text encoding;
    Text semantics;
    List<RecordField> fields;
};

/// An alternative of a variant record. `name` is "NA" or not there where nothing follows.
struct Alternative : Definition
{
    static constexpr Kind theKind = Kind::alternative;
    /// One or several enumerators of the discriminant's datatype, as written.
    Text enumerator;
    Text dataType;
    Text semantics;
};

struct VariantRecord : Definition
{
    static constexpr Kind theKind = Kind::variantRecord;
    /// The name of the discriminant, and its datatype.
    Text discriminant;
    Text dataType;
    List<Alternative> alternatives;
    Text encoding;
    Text semantics;
};

/// A component of a complex datatype (HLA 1.3).
struct Component : Member
{
    static constexpr Kind theKind = Kind::component;
};

/// A complex datatype (HLA 1.3).
struct ComplexRecord : Definition
{
    static constexpr Kind theKind = Kind::complexRecord;
    Text semantics;
    List<Component> components;
};

}  // namespace omt
