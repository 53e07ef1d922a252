// SPDX-License-Identifier: Apache-2.0
// A model with every kind of datatype, and how an input chooses one.
//
// The first octet chooses: its lowest bit implicit padding, the next one is the target's own, the
// others the datatype. Digits and letters do, so that texts stay texts.
#pragma once

#include "../tests/datatypeNodes.h"
#include "omtReader/datatypeManager.h"

#include <cstdint>

/// Those whose line stands for one value only, before the others.
inline constexpr std::size_t theExactCount = 8;
inline constexpr const char* theDatatypes[] = {
    "Record",  "Doubles", "Pairs", "Bounded", "Bits",    "Open",     "Records", "Kind",
    "Complex", "Chars",   "Texts", "Variant", "Ring",    "Variants", "Empties", "Self",
    "Text",    "Utf8",    "Utf16", "Nothing", "Unknown", "Losts"};

inline constexpr const char* theSimple[] = {
    "Byte byte",     "Char char",   "Short short", "Int int-LE",  "Float float",
    "Double double", "Text string", "Utf8 utf8",   "Utf16 utf16", "Nothing nowhere"};
// Name, element, encoding, cardinality.
inline constexpr const char* theArrays[] = {
    "Doubles Double HLAvariableArray Dynamic",   "Chars Char HLAnullTerminatedArray Dynamic",
    "Texts Utf8 HLAvariableArray Dynamic",       "Pairs Short HLAfixedArray 2",
    "Bounded Int HLAfixedArray [0..3]",          "Bits Byte HLAbitArray Dynamic",
    "Open Pairs HLAlengthlessVarArray Dynamic",  "Records Record HLAvariableArray Dynamic",
    "Variants Variant HLAvariableArray Dynamic", "Empties Empty HLAvariableArray Dynamic",
    "Ring Ring HLAvariableArray Dynamic",        "Rest Lost HLAlengthlessVarArray Dynamic",
    "Losts Rest HLAvariableArray Dynamic"};
// Record, then the fields, each of the datatype that it is named after.
inline constexpr const char* theRecords[] = {"Record Byte Pairs Kind Doubles Float",
                                             "Self Byte Self Self", "Empty",
                                             // Shows all octets and takes none.
                                             "Lost Nothing Nothing"};
inline constexpr const char* theAlternatives[] = {"N1 Record", "N2 Nothing", "N3 Variant",
                                                  "N4 Lost"};
inline constexpr const char* theComponents[] = {
    "Kind|Kind|1", "One|Int|(Kind = N1)", "Two|Char|0-2 (Kind = 2)", "Pad|Byte|%4", "Rest|Self|0+"};

inline void addRecord(DtOMTTree& tree, const std::vector<DtString>& words)
{
    auto* const record = named<DtFixedDatatypeNode>(words[0]);
    for (std::size_t at = 1; at < words.size(); ++at)
        addComponent<DtFieldComponentNode>(*record, words[at], words[at]);
    tree.addFixedDatatypeNode(record);
}

inline DtOMTTreePtr makeModel()
{
    DtOMTTreePtr tree(new DtOMTTree);
    const auto wordsOf = [](const char* text) { return DtString(text).sections(' '); };
    // Every octet has an enumerator, so that each can be encoded.
    auto& kind = *addEnumerated(*tree, "Kind", "HLAoctet");
    for (int number = 0; number < 256; ++number)
        addEnumerator(kind, "N" + DtString(number), number);
    for (const char* simple : theSimple) addSimple(*tree, wordsOf(simple)[0], wordsOf(simple)[1]);
    for (const char* text : theArrays)
    {
        const std::vector<DtString> words = wordsOf(text);
        addArray(*tree, words[0], words[1], words[2], words[3]);
    }
    for (const char* record : theRecords) addRecord(*tree, wordsOf(record));
    auto* const variant = named<DtVariantDatatypeNode>("Variant");
    variant->setDatatype("Kind");
    variant->setDiscriminant("Kind");
    for (const char* text : theAlternatives)
        addComponent<DtAlternativeComponentNode>(*variant, wordsOf(text)[0], wordsOf(text)[1])
            ->setEnumerator(wordsOf(text)[0]);
    tree->addVariantDatatypeNode(variant);
    auto* const complex = named<DtComplexDatatypeNode>("Complex");
    for (const char* text : theComponents)
    {
        const std::vector<DtString> words = DtString(text).sections('|');
        addComponent<DtComplexComponentNode>(*complex, words[0], words[1])
            ->setCardinality(words[2]);
    }
    tree->addComplexDatatypeNode(complex);
    return tree;
}

inline std::unique_ptr<DtDatatypeManager> makeManager(bool isPadded)
{
    static const DtOMTTreePtr theModel = makeModel();
    auto manager = std::make_unique<DtDatatypeManager>();
    manager->setImplicitPadding(isPadded);
    manager->fillDefaultDatatypeRepList();
    manager->initOMTData(theModel.get());
    manager->addDelimiterMap("Record", ", ");
    manager->setNodeLimit(300);  // few, as rings use them up; more than values go down
    return manager;
}

inline DtDatatypeManager& managerFor(std::uint8_t choice)
{
    static const std::unique_ptr<DtDatatypeManager> theManagers[] = {makeManager(false),
                                                                     makeManager(true)};
    return *theManagers[choice & 1];
}

inline std::size_t datatypeFor(std::uint8_t choice)
{
    return (choice >> 2) % (sizeof theDatatypes / sizeof *theDatatypes);
}
