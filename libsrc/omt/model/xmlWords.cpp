// SPDX-License-Identifier: Apache-2.0
#include "omt/model/xmlWords.h"

#include <stdexcept>

namespace omt
{

namespace
{

/// The root, and the tables below it in the order of the schema of 2025.
constexpr TableWord theTables[] = {
    {0, "objectModel"},
    {0, "serviceUtilization", Kind::service, "", "serviceUtilization"},
    {0, "objects", Kind::objectClass, "objectClass", "objects"},
    {0, "interactions", Kind::interactionClass, "interactionClass", "interactions"},
    {0, "dimensions", Kind::dimension, "dimension", "dimensions"},
    {0, "time", Kind::time, "", "time"},
    {0, "tags", Kind::tag, "", "tags"},
    {0, "synchronizations", Kind::synchronizationPoint, "synchronizationPoint", "synchronizations"},
    {0, "transportations", Kind::transportation, "transportation", "transportations"},
    {0, "switches", Kind::switchSetting, "", "switches"},
    {0, "updateRates", Kind::updateRate, "updateRate", "updateRates"},
    {0, "dataTypes", Kind::section, "", "dataTypes"},
    {11, "basicDataRepresentations", Kind::basicData, "basicData",
     "dataTypes/basicDataRepresentations"},
    {11, "simpleDataTypes", Kind::simpleData, "simpleData", "dataTypes/simpleDataTypes"},
    {11, "referenceDataTypes", Kind::referenceData, "referenceDataType",
     "dataTypes/referenceDataTypes"},
    {11, "enumeratedDataTypes", Kind::enumeratedData, "enumeratedData",
     "dataTypes/enumeratedDataTypes"},
    {11, "arrayDataTypes", Kind::arrayData, "arrayData", "dataTypes/arrayDataTypes"},
    {11, "fixedRecordDataTypes", Kind::fixedRecord, "fixedRecordData",
     "dataTypes/fixedRecordDataTypes"},
    {11, "variantRecordDataTypes", Kind::variantRecord, "variantRecordData",
     "dataTypes/variantRecordDataTypes"},
    {0, "notes", Kind::note, "note", "notes"},
};

constexpr Edition theXmlEditions[] = {Edition::ieee2000, Edition::ieee2010, Edition::ieee2025};

}  // namespace

const XmlWords& XmlWords::instance()
{
    static const XmlWords theWords;
    return theWords;
}

std::span<const TableWord> XmlWords::tables()
{
    return theTables;
}

std::size_t XmlWords::slot(std::string_view word)
{
    std::size_t hash = word.size();
    for (const char c : word) hash = hash * 31 + static_cast<unsigned char>(c);
    return hash ^ hash >> 10;
}

WordNumber XmlWords::number(std::string_view word) const
{
    for (std::size_t at = slot(word);; ++at)
    {
        const Known& known = mySlots[at % theSlots];
        if (known.number == theUnknown || known.word == word) return known.number;
    }
}

WordNumber XmlWords::add(std::string_view word)
{
    std::size_t at = slot(word);
    while (mySlots[at % theSlots].number != theUnknown && mySlots[at % theSlots].word != word) ++at;
    Known& known = mySlots[at % theSlots];
    if (known.number != theUnknown) return known.number;
    if (myCount + 1U == theMostWords)
        throw std::logic_error("more words than XmlWords has room for");
    known = {word, ++myCount};
    return known.number;
}

XmlWords::XmlWords()
{
    for (auto& editions : myAttributes)
        for (auto& words : editions) words.fill(theNone);
    for (std::size_t kind = 0; kind < theKinds; ++kind)
        for (const Edition edition : theXmlEditions) addRows(static_cast<Kind>(kind), edition);
    for (std::size_t i = 0; i < std::size(theTables); ++i) myTableWords[i] = add(theTables[i].word);
    for (const TableWord& table : theTables)
        if (!table.element.empty()) add(table.element);
}

void XmlWords::addRows(Kind kind, Edition edition)
{
    auto& elements = myElements[static_cast<std::size_t>(kind)][static_cast<std::size_t>(edition)];
    auto& attributes =
        myAttributes[static_cast<std::size_t>(kind)][static_cast<std::size_t>(edition)];
    const std::span<const Row> rows = rowsOf(kind);
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        const auto row = static_cast<std::uint8_t>(i);
        const std::string_view word = rows[i].words.in(edition);
        if (word.empty()) continue;
        const bool isAttribute = rows[i].isXmlAttribute ||
                                 (edition == Edition::ieee2000 && rows[i].form != Row::Form::parts);
        const std::string_view around = edition == Edition::ieee2025   ? rows[i].around2025
                                        : edition == Edition::ieee2010 ? rows[i].around2010
                                                                       : std::string_view();
        if (isAttribute)
            attributes[add(word)] = row;
        else if (around.empty())
            elements[add(word)] = {row, false};
        else
        {
            add(word);
            elements[add(around)] = {row, true};
        }
    }
}

XmlWords::Use XmlWords::element(Kind kind, Edition edition, WordNumber word) const
{
    if (word == theUnknown) return {};
    return myElements[static_cast<std::size_t>(kind)][static_cast<std::size_t>(edition)][word];
}

std::uint8_t XmlWords::attribute(Kind kind, Edition edition, WordNumber word) const
{
    if (word == theUnknown) return theNone;
    return myAttributes[static_cast<std::size_t>(kind)][static_cast<std::size_t>(edition)][word];
}

std::uint8_t XmlWords::table(std::uint8_t parent, WordNumber word) const
{
    for (std::size_t i = 1; i < std::size(theTables); ++i)
        if (myTableWords[i] == word && theTables[i].parent == parent)
            return static_cast<std::uint8_t>(i);
    return theNone;
}

}  // namespace omt
