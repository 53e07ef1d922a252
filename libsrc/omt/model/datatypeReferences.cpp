// SPDX-License-Identifier: Apache-2.0
#include "omt/model/datatypeReferences.h"

namespace omt
{

namespace
{

using Visit = std::function<void(const Text&, const Definition&, Kind)>;

template <typename T>
void visitOne(const T& definition, const Text& name, const Visit& visit)
{
    if (!name.empty()) visit(name, definition, T::theKind);
}

template <typename Part>
void visitParts(const List<Part>& parts, const Visit& visit)
{
    for (const Part& part : parts) visitOne(part, part.dataType, visit);
}

}  // namespace

void forEachReference(const Datatype& datatype, const Visit& visit)
{
    if (const auto* const simple = datatype.as<SimpleData>())
        visitOne(*simple, simple->representation, visit);
    else if (const auto* const reference = datatype.as<ReferenceData>())
        visitOne(*reference, reference->representation, visit);
    else if (const auto* const enumerated = datatype.as<EnumeratedData>())
        visitOne(*enumerated, enumerated->representation, visit);
    else if (const auto* const array = datatype.as<ArrayData>())
        visitOne(*array, array->dataType, visit);
    else if (const auto* const record = datatype.as<FixedRecord>())
        visitParts(record->fields, visit);
    else if (const auto* const complex = datatype.as<ComplexRecord>())
        visitParts(complex->components, visit);
    else if (const auto* const variant = datatype.as<VariantRecord>())
    {
        visitOne(*variant, variant->dataType, visit);
        visitParts(variant->alternatives, visit);
    }
}

std::string_view wordOf(const Datatype& datatype)
{
    switch (datatype.kind())
    {
        case Kind::basicData:
            return "basic";
        case Kind::simpleData:
            return "simple";
        case Kind::referenceData:
            return "reference";
        case Kind::enumeratedData:
            return "enumerated";
        case Kind::arrayData:
            return "array";
        case Kind::fixedRecord:
            return "fixed";
        case Kind::variantRecord:
            return "variant";
        case Kind::complexRecord:
            return "complex";
        default:
            return "";
    }
}

}  // namespace omt
