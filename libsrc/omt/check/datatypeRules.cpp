// SPDX-License-Identifier: Apache-2.0
// Rules on basic, simple and reference data, enumerations and arrays.
#include "omt/check/checkRun.h"
#include "omt/codec/typeText.h"
#include "omt/model/moduleCheck.h"

namespace omt
{

namespace
{

void findIncompleteBasics(CheckRun& run)
{
    run.each(&Tables::basicData,
             [&](const BasicData& data)
             {
                 std::string missing;
                 for (const Row& row : rowsOf(Kind::basicData))
                     if (!saysSomething(textOf(data, row).view()))
                         missing += (missing.empty() ? "" : ", ") + std::string(row.key);
                 if (!missing.empty())
                     run.report(data, data.name, called(data) + " lacks " + missing);
             });
}

/// Whether a name is a basic data representation, of the model or of the standard.
bool isBasic(const Model& model, std::string_view name)
{
    const Datatype datatype = model.findDatatype(name);
    return datatype ? datatype.kind() == Kind::basicData : standardRepresentation(name).has_value();
}

void findOddRepresentations(CheckRun& run)
{
    const auto look = [&](const auto& data)
    {
        if (!run.model().findDatatype(data.representation) ||
            isBasic(run.model(), data.representation))
            return;
        run.report(data, data.representation,
                   called(data) + " is represented by " + quoted(data.representation) +
                       ", which is no basic data representation");
    };
    run.each(&Tables::simpleData, look);
    run.each(&Tables::enumeratedData, look);
}

/// Definitions that cannot do without the datatype of something.
void findMissingDatatypes(CheckRun& run)
{
    const auto look = [&](const auto& definition, const Text& datatype, std::string_view what)
    {
        if (saysSomething(datatype.view())) return;
        // A module of 2025 may add to a definition that another one has.
        const bool mayBeElsewhere = run.edition(definition) == Edition::ieee2025;
        run.report(definition, datatype,
                   called(definition) + " does not say " + std::string(what) +
                       (mayBeElsewhere ? ", and no module given says it" : ""));
    };
    run.each(&Tables::simpleData, [&](const SimpleData& data)
             { look(data, data.representation, "what represents it"); });
    run.each(&Tables::referenceData, [&](const ReferenceData& data)
             { look(data, data.representation, "what represents it"); });
    run.each(&Tables::enumeratedData,
             [&](const EnumeratedData& data)
             {
                 if (run.edition(data) != Edition::hla13)
                     look(data, data.representation, "what represents it");
             });
    run.each(&Tables::arrayData, [&](const ArrayData& data)
             { look(data, data.dataType, "of which datatype its elements are"); });
    run.each(&Tables::variantRecords, [&](const VariantRecord& data)
             { look(data, data.dataType, "of which datatype its discriminant is"); });
    run.each(&Tables::fixedRecords,
             [&](const FixedRecord& record)
             {
                 for (const RecordField& field : record.fields)
                     look(field, field.dataType,
                          "in " + called(record) + " of which datatype it is");
             });
}

// Enumerations -----------------------------------------------------------------------------------

/// What represents an enumeration, where it is a number that is known.
std::optional<Representation> representationOf(const Model& model, const EnumeratedData& data)
{
    std::string ignored;
    if (const auto* const basic = model.findDatatype(data.representation).as<BasicData>())
        return representation(*basic, ignored);
    return standardRepresentation(data.representation);
}

/// Whether a number, as it is written, is among those of a representation.
bool fits(std::string_view text, std::int64_t number, const Representation& what)
{
    const bool isNegative = text.starts_with('-');
    const unsigned bits = 8U * what.octets;
    if (what.scalar == Scalar::unsignedInteger)
        return (!isNegative || number == 0) &&
               (bits == 64 || static_cast<std::uint64_t>(number) >> bits == 0);
    // Above 2^63 - 1 numbers wrap.
    if (!isNegative && number < 0) return false;
    return bits == 64 || (number >> (bits - 1)) == (number < 0 ? -1 : 0);
}

void findWideNumbers(CheckRun& run)
{
    run.each(&Tables::enumeratedData,
             [&](const EnumeratedData& data)
             {
                 const auto what = representationOf(run.model(), data);
                 if (!what || what->scalar == Scalar::floating) return;
                 for (const Enumerator& enumerator : data.enumerators)
                     for (const Text& value : enumerator.values)
                     {
                         const auto number = enumeratorNumber(value);
                         if (number && !fits(value, *number, *what))
                             run.report(enumerator, value,
                                        called(enumerator) + " of " + quoted(data.name) +
                                            " has the number " + cutText(value) + ", which " +
                                            quoted(data.representation) + " cannot hold");
                     }
             });
}

void findEmptyEnumerations(CheckRun& run)
{
    run.each(&Tables::enumeratedData,
             [&](const EnumeratedData& data)
             {
                 if (data.enumerators.empty())
                     run.report(data, data.name, called(data) + " has no enumerators");
             });
}

// Arrays -----------------------------------------------------------------------------------------

void findOddCardinalities(CheckRun& run)
{
    run.each(&Tables::arrayData,
             [&](const ArrayData& data)
             {
                 const auto dimensions = cardinality(data.cardinality);
                 if (!dimensions || encoding(data.encoding) != Encoding::variableArray) return;
                 for (const Cardinality& one : *dimensions)
                     if (!one.isNumber()) return;
                 run.report(data, data.cardinality,
                            called(data) + " has always " + cutText(data.cardinality) +
                                " elements, and an encoding that counts them");
             });
}

constexpr Severity error = Severity::error;
constexpr Severity warning = Severity::warning;
constexpr Severity note = Severity::note;
constexpr std::string_view theDatatypes = "datatypes";
constexpr std::string_view theEnumerations = "enumerations";
constexpr std::string_view theArrays = "arrays";

constexpr RuleRow theRules[] = {
    rule("unknown-datatype", error, theDatatypes, "a datatype that is defined in no module given"),
    rule("no-datatype", error, theDatatypes, "a datatype that does not say what it is made of",
         findMissingDatatypes),
    rule("incomplete-basic", warning, theDatatypes,
         "a basic data representation without size, interpretation, endian or encoding",
         findIncompleteBasics),
    rule("basic-representation", error, theDatatypes,
         "a basic data representation whose octets cannot be told"),
    rule("representation", error, theDatatypes,
         "a simple or enumerated datatype on something that is no basic data representation",
         findOddRepresentations),
    rule("enumerated-representation", error, theEnumerations, "an enumeration on no integer"),
    rule("no-number", warning, theEnumerations, "an enumerator without a number"),
    rule("several-numbers", note, theEnumerations, "an enumerator with several numbers"),
    rule("enumerator-twice", warning, theEnumerations, "a name that an enumeration has twice"),
    rule("number-twice", warning, theEnumerations,
         "a number that an enumeration, or the classes of HLA 1.3, have twice"),
    rule("enumerator-range", error, theEnumerations, "a number that the representation cannot hold",
         findWideNumbers),
    rule("empty-enumeration", warning, theEnumerations, "an enumeration without enumerators",
         findEmptyEnumerations),
    rule("array-encoding", error, theArrays,
         "an array whose cardinality or encoding is unknown, or which do not go together"),
    rule("array-element", error, theArrays, "an array to the end of elements without octets"),
    rule("array-length", warning, theArrays,
         "a length stated by a note that is no sum of earlier fields"),
    rule("array-cardinality", warning, theArrays, "a fixed number of elements that is counted",
         findOddCardinalities),
};

}  // namespace

std::span<const RuleRow> datatypeRules()
{
    return theRules;
}

}  // namespace omt
