// SPDX-License-Identifier: Apache-2.0
#include "datatypeTables.h"

#include "modelWords.h"
#include "plainText.h"
#include "tableSection.h"

namespace
{

using Row = std::vector<std::string>;

std::string enumeratorsText(const omt::EnumeratedData& node)
{
    constexpr std::size_t theMostShown = 20;  // more than fit on a line
    std::vector<std::string> texts;
    for (const omt::Enumerator& one : node.enumerators)
    {
        texts.push_back(one.name.str() + '=' + joinedTexts(one.values, "/"));
        if (texts.size() == theMostShown) break;
    }
    return joined(texts, ", ");
}

std::string headline(const omt::Definition& node)
{
    return node.name.str();
}

std::string headline(const omt::VariantRecord& node)
{
    return node.name.str() + ", by " + node.discriminant.str() + ": " + node.dataType.str();
}

/// Records and their parts, each part on a line of its own; nothing when there are no records.
template <typename Record, typename Part, typename Cells>
std::string records(const char* title, const std::vector<Record>& table,
                    omt::List<Part> Record::*parts, Cells cells)
{
    if (table.empty()) return "";
    std::string text = heading(withCount(title, table.size()));
    for (const Record& record : table)
    {
        constexpr std::size_t thePartIndent = 6;
        TextTable lines({whole(""), whole(""), wrap("")}, thePartIndent);
        for (const Part& part : record.*parts) lines.add(cells(part));
        text += "  " + oneLine(headline(record)) + '\n' + lines.text();
    }
    return text;
}

std::string numberTables(const omt::Tables& tables)
{
    return section("Basic data representations",
                   {whole("Name"), whole("Bits"), whole("Endian"), clip("Meaning")},
                   tables.basicData,
                   [](const omt::BasicData& one)
                   {
                       const omt::Text& meaning =
                           one.interpretation.empty() ? one.encoding : one.interpretation;
                       return Row{one.name.str(), one.size.str(), one.endian.str(), meaning.str()};
                   }) +
           section("Simple datatypes",
                   {whole("Name"), whole("Representation"), clip("Units"), clip("Resolution"),
                    clip("Accuracy")},
                   tables.simpleData,
                   [](const omt::SimpleData& one)
                   {
                       return Row{one.name.str(), one.representation.str(), one.units.str(),
                                  one.resolution.str(), one.accuracy.str()};
                   }) +
           section("Reference datatypes",
                   {whole("Name"), whole("Representation"), whole("Class"), wrap("Attribute")},
                   tables.referenceData,
                   [](const omt::ReferenceData& one)
                   {
                       return Row{one.name.str(), one.representation.str(),
                                  one.referenceClass.str(), one.referencedAttribute.str()};
                   });
}

std::string collectionTables(const omt::Tables& tables)
{
    return section("Enumerated datatypes",
                   {whole("Name"), whole("Representation"), whole("Values"), clip("Enumerators")},
                   tables.enumeratedData,
                   [](const omt::EnumeratedData& one)
                   {
                       return Row{one.name.str(), one.representation.str(),
                                  std::to_string(one.enumerators.size()), enumeratorsText(one)};
                   }) +
           section("Array datatypes",
                   {whole("Name"), whole("Element"), whole("Cardinality"), clip("Encoding")},
                   tables.arrayData,
                   [](const omt::ArrayData& one) {
                       return Row{one.name.str(), one.dataType.str(), one.cardinality.str(),
                                  one.encoding.str()};
                   });
}

std::string recordTables(const omt::Tables& tables)
{
    return records("Fixed record datatypes and their fields", tables.fixedRecords,
                   &omt::FixedRecord::fields,
                   [](const omt::RecordField& one) {
                       return Row{one.name.str(), one.dataType.str()};
                   }) +
           records(
               "Variant record datatypes and their alternatives", tables.variantRecords,
               &omt::VariantRecord::alternatives,
               [](const omt::Alternative& one) {
                   return Row{one.name.str(), one.dataType.str(), "when " + one.enumerator.str()};
               }) +
           records("Complex datatypes and their components", tables.complexRecords,
                   &omt::ComplexRecord::components,
                   [](const omt::Component& one) {
                       return Row{one.name.str(), one.dataType.str(), one.cardinality.str()};
                   });
}

}  // namespace

std::string datatypeTables(const omt::Model& model)
{
    const omt::Tables& tables = model.tables();
    return numberTables(tables) + collectionTables(tables) + recordTables(tables);
}
