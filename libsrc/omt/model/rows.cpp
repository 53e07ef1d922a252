// SPDX-License-Identifier: Apache-2.0
#include "omt/model/rows.h"

namespace omt
{

namespace
{

constexpr Bearing prose = Bearing::prose;
constexpr Bearing behaviour = Bearing::behaviour;

/// One word in 2025 and 2010 and, as an XML attribute, in 2000.
constexpr Words xml(std::string_view word, std::string_view in13 = {})
{
    return {word, word, word, in13};
}

/// One word in 2025 and 2010 only.
constexpr Words element(std::string_view word)
{
    return {word, word, {}, {}};
}

constexpr Words only2025(std::string_view word)
{
    return {word, {}, {}, {}};
}
constexpr Words only2010(std::string_view word)
{
    return {{}, word, {}, {}};
}
constexpr Words only2000(std::string_view word)
{
    return {{}, {}, word, {}};
}
constexpr Words only13(std::string_view word)
{
    return {{}, {}, {}, word};
}

template <typename Owner>
constexpr Row text(std::string_view key, Text Owner::*member, Words words, Bearing bearing)
{
    Row row{.key = key, .words = words, .bearing = bearing};
    row.oneText = static_cast<Text Definition::*>(member);
    return row;
}

template <typename Owner>
constexpr Row xmlAttribute(std::string_view key, Text Owner::*member, Words words, Bearing bearing)
{
    Row row = text(key, member, words, bearing);
    row.isXmlAttribute = true;
    return row;
}

template <typename Owner>
constexpr Row content(std::string_view key, Text Owner::*member)
{
    Row row = text(key, member, {}, prose);
    row.form = Row::Form::content;
    return row;
}

template <typename Owner>
constexpr Row texts(std::string_view key, List<Text> Owner::*member, Words words, Bearing bearing,
                    std::string_view around2025 = {}, std::string_view around2010 = {})
{
    Row row{.key = key, .words = words, .form = Row::Form::texts, .bearing = bearing};
    row.around2025 = around2025;
    row.around2010 = around2010;
    row.someTexts = static_cast<List<Text> Definition::*>(member);
    return row;
}

constexpr Row parts(std::string_view key, Kind kind, Words words)
{
    return {.key = key, .words = words, .form = Row::Form::parts, .parts = kind};
}

/// The same row with what the schemas let its text be.
constexpr Row as(ValueForm form, Row row)
{
    row.value = form;
    return row;
}

/// The same row as one that 1516-2025 does not do without.
constexpr Row required(Row row)
{
    row.isRequired = true;
    return row;
}

/// The name of a definition, where it is the property "name" in every edition.
constexpr Row theName =
    as(ValueForm::identifier, text("name", &Definition::name, xml("name", "Name"), behaviour));

template <typename Owner>
constexpr Row semantics(std::string_view in13 = "Description")
{
    return text("semantics", &Owner::semantics, xml("semantics", in13), prose);
}

template <typename Owner>
constexpr Row dataType(std::string_view in13 = {})
{
    return as(ValueForm::reference,
              text("dataType", &Owner::dataType, xml("dataType", in13), behaviour));
}

// Identification
// ------------------------------------------------------------------------------------

constexpr Row theIdentification[] = {
    as(ValueForm::notEmptyIn2010, text("name", &Definition::name, xml("name", "Name"), prose)),
    as(ValueForm::modelType, text("type", &Identification::type, xml("type", "Type"), prose)),
    as(ValueForm::notEmptyIn2010,
       text("version", &Identification::version, xml("version", "VersionNumber"), prose)),
    as(ValueForm::date,
       text("modificationDate", &Identification::modificationDate,
            {"modificationDate", "modificationDate", "date", "ModificationDate"}, prose)),
    as(ValueForm::notEmpty, text("securityClassification", &Identification::securityClassification,
                                 element("securityClassification"), prose)),
    text("copyright", &Identification::copyright, only2025("copyright"), prose),
    texts("releaseRestriction", &Identification::releaseRestrictions, element("releaseRestriction"),
          prose),
    text("purpose", &Identification::purpose, xml("purpose", "Purpose"), prose),
    as(ValueForm::notEmptyIn2025,
       text("applicationDomain", &Identification::applicationDomain,
            {"applicationDomain", "applicationDomain", "appDomain", "ApplicationDomain"}, prose)),
    as(ValueForm::notEmptyIn2010,
       text("description", &Identification::description, element("description"), prose)),
    text("useLimitation", &Identification::useLimitation, element("useLimitation"), prose),
    texts("useHistory", &Identification::useHistories, element("useHistory"), prose),
    parts("keyword", Kind::keyword, element("keyword")),
    parts("poc", Kind::contact, element("poc")),
    parts("reference", Kind::reference, element("reference")),
    text("other", &Identification::other, xml("other"), prose),
    parts("glyph", Kind::glyph, element("glyph")),
    text("sponsor", &Identification::sponsor, {{}, {}, "sponsor", "SponsorOrgName"}, prose),
    text("DTDversion", &Identification::dtdVersion, only2000("DTDversion"), prose),
    text("MOMVersion", &Identification::momVersion, only13("MOMVersion"), prose),
    text("FEDname", &Identification::fedName, only13("FEDname"), prose),
};

constexpr Row theKeyword[] = {
    text("taxonomy", &Keyword::taxonomy, element("taxonomy"), prose),
    as(ValueForm::notEmptyIn2010,
       text("keywordValue", &Keyword::keywordValue, element("keywordValue"), prose)),
};

constexpr Row theContact[] = {
    as(ValueForm::notEmpty, text("pocType", &Contact::type, element("pocType"), prose)),
    text("pocName", &Definition::name, xml("pocName"), prose),
    text("pocOrg", &Contact::organization, xml("pocOrg", "POCOrgName"), prose),
    texts("pocTelephone", &Contact::telephones,
          {"pocTelephone", "pocTelephone", "pocPhone", "POCPhone"}, prose),
    texts("pocEmail", &Contact::emails, xml("pocEmail", "POCEmail"), prose),
    text("honorific", &Contact::honorific, only13("POCHonorificName"), prose),
    text("firstName", &Contact::firstName, only13("POCFirstName"), prose),
    text("lastName", &Contact::lastName, only13("POCLastName"), prose),
};

constexpr Row theReference[] = {
    text("type", &Reference::type, element("type"), prose),
    as(ValueForm::uri, text("identification", &Reference::identification,
                            {"identification", "identification", "references", {}}, prose)),
};

constexpr Row theGlyph[] = {
    as(ValueForm::uri, xmlAttribute("href", &Glyph::href, element("href"), prose)),
    xmlAttribute("alt", &Glyph::alt, element("alt"), prose),
    xmlAttribute("type", &Glyph::type, only2010("type"), prose),
    as(ValueForm::integer, xmlAttribute("height", &Glyph::height, only2010("height"), prose)),
    as(ValueForm::integer, xmlAttribute("width", &Glyph::width, only2010("width"), prose)),
    content("content", &Glyph::content),
};

constexpr Row theService[] = {
    xmlAttribute("section", &Service::section, element("section"), prose),
    as(ValueForm::boolean,
       xmlAttribute("isCallback", &Service::isCallback, element("isCallback"), prose)),
    as(ValueForm::boolean, xmlAttribute("isUsed", &Service::isUsed, element("isUsed"), prose)),
};

// Classes
// -------------------------------------------------------------------------------------------

constexpr Row theObjectClass[] = {
    theName,
    as(ValueForm::sharing,
       text("sharing", &ObjectClass::sharing, xml("sharing", "PSCapabilities"), behaviour)),
    parts("directedInteraction", Kind::directedInteraction, only2025("directedInteraction")),
    as(ValueForm::reference, texts("dimensions", &ObjectClass::dimensions, only2025("dimension"),
                                   behaviour, "dimensions")),
    semantics<ObjectClass>(),
    parts("attribute", Kind::attribute, xml("attribute", "Attribute")),
};

constexpr Row theDirectedInteraction[] = {
    theName,
    as(ValueForm::sharing,
       text("sharing", &DirectedInteraction::sharing, only2025("sharing"), behaviour)),
};

constexpr Row theAttribute[] = {
    theName,
    dataType<Attribute>("DataType"),
    as(ValueForm::updateType,
       text("updateType", &Attribute::updateType, xml("updateType", "UpdateType"), behaviour)),
    text("updateCondition", &Attribute::updateCondition, xml("updateCondition", "UpdateCondition"),
         prose),
    as(ValueForm::boolean,
       text("valueRequired", &Attribute::valueRequired, only2025("valueRequired"), behaviour)),
    as(ValueForm::ownership,
       text("ownership", &Attribute::ownership, xml("ownership", "TransferAccept"), behaviour)),
    as(ValueForm::sharing,
       text("sharing", &Attribute::sharing, xml("sharing", "UpdateReflect"), behaviour)),
    as(ValueForm::reference,
       texts("dimensions", &Attribute::dimensions, {{}, "dimension", "dimensions", "RoutingSpace"},
             behaviour, {}, "dimensions")),
    as(ValueForm::reference, text("transportation", &Attribute::transportation,
                                  xml("transportation", "DeliveryCategory"), behaviour)),
    as(ValueForm::order,
       text("order", &Attribute::order, xml("order", "MessageOrdering"), behaviour)),
    semantics<Attribute>(),
    text("cardinality", &Attribute::cardinality, only13("Cardinality"), behaviour),
    text("units", &Attribute::units, only13("Units"), behaviour),
    text("resolution", &Attribute::resolution, only13("Resolution"), behaviour),
    text("accuracy", &Attribute::accuracy, only13("Accuracy"), behaviour),
    text("accuracyCondition", &Attribute::accuracyCondition, only13("AccuracyCondition"),
         behaviour),
};

constexpr Row theInteractionClass[] = {
    theName,
    as(ValueForm::sharing,
       text("sharing", &InteractionClass::sharing, xml("sharing", "ISRType"), behaviour)),
    as(ValueForm::reference, texts("dimensions", &InteractionClass::dimensions,
                                   {"dimension", "dimension", "dimensions", "RoutingSpace"},
                                   behaviour, "dimensions", "dimensions")),
    as(ValueForm::reference, text("transportation", &InteractionClass::transportation,
                                  xml("transportation", "DeliveryCategory"), behaviour)),
    as(ValueForm::order,
       text("order", &InteractionClass::order, xml("order", "MessageOrdering"), behaviour)),
    semantics<InteractionClass>(),
    parts("parameter", Kind::parameter, xml("parameter", "Parameter")),
};

constexpr Row theParameter[] = {
    theName,
    dataType<Parameter>("DataType"),
    semantics<Parameter>(),
    text("cardinality", &Parameter::cardinality, only13("Cardinality"), behaviour),
    text("units", &Parameter::units, only13("Units"), behaviour),
    text("resolution", &Parameter::resolution, only13("Resolution"), behaviour),
    text("accuracy", &Parameter::accuracy, only13("Accuracy"), behaviour),
    text("accuracyCondition", &Parameter::accuracyCondition, only13("AccuracyCondition"),
         behaviour),
};

// Other tables
// --------------------------------------------------------------------------------------

constexpr Row theDimension[] = {
    theName,
    required(as(ValueForm::reference, texts("dataType", &Dimension::dataTypes, xml("dataType"),
                                            behaviour, "inputDataTypes"))),
    required(text("inputDataDescription", &Dimension::inputDataDescription,
                  only2025("inputDataDescription"), prose)),
    as(ValueForm::positive,
       text("upperBound", &Dimension::upperBound, xml("upperBound"), behaviour)),
    required(as(ValueForm::notEmptyIn2010,
                text("normalization", &Dimension::normalization, xml("normalization"), behaviour))),
    required(text("outputDataSemantics", &Dimension::outputDataSemantics,
                  only2025("outputDataSemantics"), prose)),
    as(ValueForm::dimensionValue, text("value", &Dimension::value, xml("value"), behaviour)),
};

constexpr Row theTime[] = {dataType<Time>(), semantics<Time>({})};
constexpr Row theTag[] = {dataType<Tag>(), semantics<Tag>({})};
constexpr Row theNote[] = {
    as(ValueForm::identifier,
       text("label", &Definition::name, {"label", "label", "name", "NoteNumber"}, behaviour)),
    semantics<Note>("NoteText"),
};

constexpr Row theSynchronizationPoint[] = {
    as(ValueForm::identifier, text("label", &Definition::name, xml("label"), behaviour)),
    dataType<SynchronizationPoint>(),
    as(ValueForm::capability,
       text("capability", &SynchronizationPoint::capability, xml("capability"), behaviour)),
    semantics<SynchronizationPoint>({}),
};

constexpr Row theTransportation[] = {
    theName,
    as(ValueForm::reliable,
       text("reliable", &Transportation::reliable, element("reliable"), behaviour)),
    text("semantics", &Transportation::semantics, {"semantics", "semantics", "description", {}},
         prose),
};

/// The word is that of 2025 and 2010; automaticResignAction says resignAction instead. In 2000 the
/// switch itself is the XML attribute.
constexpr Row theSwitch[] = {
    xmlAttribute("isEnabled", &Switch::value, element("isEnabled"), behaviour),
};

constexpr Row theUpdateRate[] = {
    theName,
    as(ValueForm::decimal, text("rate", &UpdateRate::rate, element("rate"), behaviour)),
    text("semantics", &UpdateRate::semantics, element("semantics"), prose),
};

constexpr Row theRoutingSpace[] = {
    theName,
    semantics<RoutingSpace>(),
    parts("dimension", Kind::routingDimension, only13("Dimension")),
};

constexpr Row theRoutingDimension[] = {
    theName,
    text("type", &RoutingDimension::type, only13("DimensionType"), behaviour),
    text("minimum", &RoutingDimension::minimum, only13("DimensionMinimum"), behaviour),
    text("maximum", &RoutingDimension::maximum, only13("DimensionMaximum"), behaviour),
    text("units", &RoutingDimension::units, only13("RangeSetUnits"), behaviour),
    text("normalization", &RoutingDimension::normalization, only13("NormalizationFunction"),
         behaviour),
    semantics<RoutingDimension>(),
};

// Datatypes
// -----------------------------------------------------------------------------------------

constexpr Row theBasicData[] = {
    theName,
    as(ValueForm::integer, text("size", &BasicData::size, xml("size"), behaviour)),
    text("interpretation", &BasicData::interpretation, xml("interpretation"), behaviour),
    as(ValueForm::endian, text("endian", &BasicData::endian, xml("endian"), behaviour)),
    text("encoding", &BasicData::encoding, xml("encoding"), behaviour),
};

constexpr Row theSimpleData[] = {
    theName,
    as(ValueForm::reference,
       text("representation", &SimpleData::representation, xml("representation"), behaviour)),
    as(ValueForm::notEmptyIn2010, text("units", &SimpleData::units, xml("units"), behaviour)),
    as(ValueForm::notEmptyIn2010,
       text("resolution", &SimpleData::resolution, xml("resolution"), behaviour)),
    as(ValueForm::notEmptyIn2010,
       text("accuracy", &SimpleData::accuracy, xml("accuracy"), behaviour)),
    semantics<SimpleData>({}),
};

constexpr Row theReferenceData[] = {
    theName,
    required(as(ValueForm::reference, text("representation", &ReferenceData::representation,
                                           only2025("representation"), behaviour))),
    required(as(ValueForm::reference, text("referenceClass", &ReferenceData::referenceClass,
                                           only2025("referenceClass"), behaviour))),
    required(
        as(ValueForm::reference, text("referencedAttribute", &ReferenceData::referencedAttribute,
                                      only2025("referencedAttribute"), behaviour))),
    text("semantics", &ReferenceData::semantics, only2025("semantics"), prose),
};

constexpr Row theEnumeratedData[] = {
    theName,
    as(ValueForm::reference,
       text("representation", &EnumeratedData::representation, xml("representation"), behaviour)),
    semantics<EnumeratedData>(),
    parts("enumerator", Kind::enumerator, xml("enumerator", "Enumeration")),
    text("autoSequence", &EnumeratedData::autoSequence, only13("AutoSequence"), prose),
    text("startValue", &EnumeratedData::startValue, only13("StartValue"), prose),
};

constexpr Row theEnumerator[] = {
    as(ValueForm::identifier,
       text("name", &Definition::name, xml("name", "Enumerator"), behaviour)),
    texts("value", &Enumerator::values, {"value", "value", "values", "Representation"}, behaviour),
};

constexpr Row theArrayData[] = {
    theName,
    dataType<ArrayData>(),
    as(ValueForm::cardinality,
       text("cardinality", &ArrayData::cardinality, xml("cardinality"), behaviour)),
    as(ValueForm::notEmpty, text("encoding", &ArrayData::encoding, xml("encoding"), behaviour)),
    semantics<ArrayData>({}),
};

constexpr Row theFixedRecord[] = {
    theName,
    as(ValueForm::notEmpty, text("encoding", &FixedRecord::encoding, xml("encoding"), behaviour)),
    semantics<FixedRecord>({}),
    parts("field", Kind::field, xml("field")),
};

constexpr Row theField[] = {theName, dataType<RecordField>(), semantics<RecordField>({})};

constexpr Row theVariantRecord[] = {
    theName,
    as(ValueForm::identifier,
       text("discriminant", &VariantRecord::discriminant, xml("discriminant"), behaviour)),
    dataType<VariantRecord>(),
    parts("alternative", Kind::alternative, xml("alternative")),
    as(ValueForm::notEmpty, text("encoding", &VariantRecord::encoding, xml("encoding"), behaviour)),
    semantics<VariantRecord>({}),
};

constexpr Row theAlternative[] = {
    as(ValueForm::notEmptyIn2010,
       text("enumerator", &Alternative::enumerator, xml("enumerator"), behaviour)),
    theName,
    dataType<Alternative>(),
    semantics<Alternative>({}),
};

constexpr Row theComplexRecord[] = {
    theName,
    semantics<ComplexRecord>(),
    parts("component", Kind::component, only13("ComplexComponent")),
};

constexpr Row theComponent[] = {
    text("name", &Definition::name, only13("FieldName"), behaviour),
    text("dataType", &Component::dataType, only13("DataType"), behaviour),
    text("cardinality", &Component::cardinality, only13("Cardinality"), behaviour),
    text("units", &Component::units, only13("Units"), behaviour),
    text("resolution", &Component::resolution, only13("Resolution"), behaviour),
    text("accuracy", &Component::accuracy, only13("Accuracy"), behaviour),
    text("accuracyCondition", &Component::accuracyCondition, only13("AccuracyCondition"),
         behaviour),
    text("semantics", &Component::semantics, only13("Description"), prose),
};

}  // namespace

std::span<const Row> rowsOf(Kind kind)
{
    switch (kind)
    {
        case Kind::identification:
            return theIdentification;
        case Kind::keyword:
            return theKeyword;
        case Kind::contact:
            return theContact;
        case Kind::reference:
            return theReference;
        case Kind::glyph:
            return theGlyph;
        case Kind::service:
            return theService;
        case Kind::objectClass:
            return theObjectClass;
        case Kind::directedInteraction:
            return theDirectedInteraction;
        case Kind::attribute:
            return theAttribute;
        case Kind::interactionClass:
            return theInteractionClass;
        case Kind::parameter:
            return theParameter;
        case Kind::dimension:
            return theDimension;
        case Kind::time:
            return theTime;
        case Kind::tag:
            return theTag;
        case Kind::synchronizationPoint:
            return theSynchronizationPoint;
        case Kind::transportation:
            return theTransportation;
        case Kind::switchSetting:
            return theSwitch;
        case Kind::updateRate:
            return theUpdateRate;
        case Kind::basicData:
            return theBasicData;
        case Kind::simpleData:
            return theSimpleData;
        case Kind::referenceData:
            return theReferenceData;
        case Kind::enumeratedData:
            return theEnumeratedData;
        case Kind::enumerator:
            return theEnumerator;
        case Kind::arrayData:
            return theArrayData;
        case Kind::fixedRecord:
            return theFixedRecord;
        case Kind::field:
            return theField;
        case Kind::variantRecord:
            return theVariantRecord;
        case Kind::alternative:
            return theAlternative;
        case Kind::complexRecord:
            return theComplexRecord;
        case Kind::component:
            return theComponent;
        case Kind::routingSpace:
            return theRoutingSpace;
        case Kind::routingDimension:
            return theRoutingDimension;
        case Kind::note:
            return theNote;
        case Kind::section:
            return {};
    }
    return {};
}

std::string_view nameOf(Kind kind)
{
    switch (kind)
    {
        case Kind::identification:
            return "identification";
        case Kind::keyword:
            return "key word";
        case Kind::contact:
            return "point of contact";
        case Kind::reference:
            return "reference";
        case Kind::glyph:
            return "glyph";
        case Kind::service:
            return "service";
        case Kind::objectClass:
            return "object class";
        case Kind::directedInteraction:
            return "directed interaction";
        case Kind::attribute:
            return "attribute";
        case Kind::interactionClass:
            return "interaction class";
        case Kind::parameter:
            return "parameter";
        case Kind::dimension:
            return "dimension";
        case Kind::time:
            return "time representation";
        case Kind::tag:
            return "user-supplied tag";
        case Kind::synchronizationPoint:
            return "synchronization point";
        case Kind::transportation:
            return "transportation";
        case Kind::switchSetting:
            return "switch";
        case Kind::updateRate:
            return "update rate";
        case Kind::basicData:
            return "basic data representation";
        case Kind::simpleData:
            return "simple datatype";
        case Kind::referenceData:
            return "reference datatype";
        case Kind::enumeratedData:
            return "enumerated datatype";
        case Kind::enumerator:
            return "enumerator";
        case Kind::arrayData:
            return "array datatype";
        case Kind::fixedRecord:
            return "fixed record";
        case Kind::field:
            return "field";
        case Kind::variantRecord:
            return "variant record";
        case Kind::alternative:
            return "alternative";
        case Kind::complexRecord:
            return "complex datatype";
        case Kind::component:
            return "component";
        case Kind::routingSpace:
            return "routing space";
        case Kind::routingDimension:
            return "dimension of a routing space";
        case Kind::note:
            return "note";
        case Kind::section:
            return "table";
    }
    return "definition";
}

std::string_view nameOf(Edition edition)
{
    switch (edition)
    {
        case Edition::hla13:
            return "HLA 1.3";
        case Edition::ieee2000:
            return "1516-2000";
        case Edition::ieee2010:
            return "1516-2010";
        case Edition::ieee2025:
            return "1516-2025";
    }
    return "";
}

}  // namespace omt
