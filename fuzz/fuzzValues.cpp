// SPDX-License-Identifier: Apache-2.0
// Any octets as a value of every kind of datatype, and any text as one to encode.
//
// The first octet chooses: its lowest bit implicit padding, the next one whether the rest is a
// text, the others the datatype. Digits and letters do, so that texts stay texts.
#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/simpleDatatypeNode.h"
#include "omtReader/stringTree.h"
#include "omtReader/variantDatatypeNode.h"
#include "util/dtMessages.h"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>

namespace
{

using Tree = DtOMTTreePtr;

constexpr const char* theSimple[][2] = {
    {"Byte",    "byte"   },
    {"Char",    "char"   },
    {"Short",   "short"  },
    {"Int",     "int-LE" },
    {"Float",   "float"  },
    {"Double",  "double" },
    {"Text",    "string" },
    {"Utf8",    "utf8"   },
    {"Utf16",   "utf16"  },
    {"Nothing", "nowhere"},
};
// Name, element, encoding, cardinality.
constexpr const char* theArrays[][4] = {
    {"Doubles",  "Double",  "HLAvariableArray",       "Dynamic"},
    {"Chars",    "Char",    "HLAnullTerminatedArray", "Dynamic"},
    {"Texts",    "Utf8",    "HLAvariableArray",       "Dynamic"},
    {"Pairs",    "Short",   "HLAfixedArray",          "2"      },
    {"Bounded",  "Int",     "HLAfixedArray",          "[0..3]" },
    {"Bits",     "Byte",    "HLAbitArray",            "Dynamic"},
    {"Open",     "Pairs",   "HLAlengthlessVarArray",  "Dynamic"},
    {"Records",  "Record",  "HLAvariableArray",       "Dynamic"},
    {"Variants", "Variant", "HLAvariableArray",       "Dynamic"},
    {"Empties",  "Empty",   "HLAvariableArray",       "Dynamic"},
    {"Ring",     "Ring",    "HLAvariableArray",       "Dynamic"},
};
constexpr const char* theRecord[] = {"Byte", "Pairs", "Kind", "Doubles", "Float"};
constexpr const char* theSelf[] = {"Byte", "Self", "Self"};
constexpr const char* theAlternatives[][2] = {
    {"One",   "Record" },
    {"Two",   "Nothing"},
    {"Three", "Variant"}
};
constexpr const char* theComplex[][3] = {
    {"Kind", "Kind", "1"             },
    {"One",  "Int",  "(Kind = One)"  },
    {"Two",  "Char", "0-2 (Kind = 2)"},
    {"Pad",  "Byte", "%4"            },
    {"Rest", "Self", "0+"            },
};

template <typename Node>
Node* named(const char* name)
{
    auto* const node = new Node;
    node->setName(name);
    return node;
}

template <typename Record, typename Field>
void addFields(Record& record, const Field& fields)
{
    for (const char* field : fields)
    {
        auto* const node = named<DtFieldComponentNode>(field);
        node->setDatatype(field);
        record.addComponentNode(node);
    }
}

void addEnumeration(DtOMTTree& tree)
{
    auto* const kind = named<DtEnumeratedDatatypeNode>("Kind");
    kind->setRepresentation("HLAoctet");
    for (int number : {1, 2, 3})
    {
        auto* const enumerator = new DtEnumerationNode;
        enumerator->setEnum(number == 1 ? "One" : number == 2 ? "Two" : "Three");
        enumerator->setNumber(number);
        kind->addEnumerationNode(enumerator);
    }
    tree.addEnumeratedDatatypeNode(kind);
}

void addVariant(DtOMTTree& tree)
{
    auto* const variant = named<DtVariantDatatypeNode>("Variant");
    variant->setDatatype("Kind");
    variant->setDiscriminant("Kind");
    for (const auto& alternative : theAlternatives)
    {
        auto* const node = named<DtAlternativeComponentNode>(alternative[0]);
        node->setEnumerator(alternative[0]);
        node->setDatatype(alternative[1]);
        variant->addComponentNode(node);
    }
    tree.addVariantDatatypeNode(variant);
}

void addComplex(DtOMTTree& tree)
{
    auto* const complex = named<DtComplexDatatypeNode>("Complex");
    for (const auto& [name, datatype, cardinality] : theComplex)
    {
        auto* const component = named<DtComplexComponentNode>(name);
        component->setDatatype(datatype);
        component->setCardinality(cardinality);
        complex->addComponentNode(component);
    }
    tree.addComplexDatatypeNode(complex);
}

Tree makeModel()
{
    Tree tree(new DtOMTTree);
    for (const auto& simple : theSimple)
        tree->addSimpleDatatypeNode(named<DtSimpleDatatypeNode>(simple[0]));
    for (const auto& [name, element, encoding, cardinality] : theArrays)
    {
        auto* const array = named<DtArrayDatatypeNode>(name);
        array->setDatatype(element);
        array->setEncoding(encoding);
        array->setCardinality(cardinality);
        tree->addArrayDatatypeNode(array);
    }
    for (const char* name : {"Record", "Self", "Empty"})
        tree->addFixedDatatypeNode(named<DtFixedDatatypeNode>(name));
    addFields(*tree->getFixedDatatypeNode("Record"), theRecord);
    addFields(*tree->getFixedDatatypeNode("Self"), theSelf);
    addEnumeration(*tree);
    addVariant(*tree);
    addComplex(*tree);
    return tree;
}

std::unique_ptr<DtDatatypeManager> makeManager(DtOMTTree& tree, bool isPadded)
{
    auto manager = std::make_unique<DtDatatypeManager>();
    manager->setImplicitPadding(isPadded);
    manager->fillDefaultDatatypeRepList();
    manager->initOMTData(&tree);
    for (const auto& [name, representation] : theSimple)
        manager->addRepMapping(name, representation);
    manager->addDelimiterMap("Record", ", ");
    manager->setNodeLimit(20000);
    return manager;
}

void require(bool holds, const char* rule)
{
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", rule);
    std::abort();
}

void decode(DtDatatypeManager& manager, const DtString& datatype, const std::uint8_t* data,
            int length)
{
    int ofLine = 0;
    int ofTree = 0;
    const DtString line = manager.getStringRep(datatype, data, length, ofLine);
    const std::unique_ptr<DtStringTree> tree(
        manager.createStringTreeRep(datatype, data, length, ofTree, nullptr, 0, nullptr, nullptr));
    const auto kind = manager.getDatatypeEnum(datatype);
    if (kind == DtDatatypeManager::DtDatatypeSimple) return;  // other rules for what is missing
    const DtString& delimiter = manager.getDelimiterMap(datatype, nullptr);
    require(ofLine == ofTree, "line and tree take the same octets");
    require(manager.convertStringTreeToString(tree.get(), delimiter) == line,
            "the line is that of the tree");
    DtDatatypeManager::Octets octets;
    manager.getValueFromStringRep(datatype, line, octets);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool isQuiet = (DtSetMessageSink([](auto, auto) {}), true);
    static const Tree theModel = makeModel();
    static const std::unique_ptr<DtDatatypeManager> theManagers[] = {makeManager(*theModel, false),
                                                                     makeManager(*theModel, true)};
    static const char* const theDatatypes[] = {
        "Record",  "Complex", "Variant", "Doubles", "Chars",    "Texts",   "Pairs",
        "Bounded", "Bits",    "Open",    "Records", "Variants", "Empties", "Ring",
        "Self",    "Kind",    "Text",    "Utf8",    "Utf16",    "Nothing", "Unknown"};
    constexpr std::size_t theCount = sizeof theDatatypes / sizeof *theDatatypes;
    if (!isQuiet || size == 0 || size > std::size_t{std::numeric_limits<int>::max()}) return 0;

    DtDatatypeManager& manager = *theManagers[data[0] & 1];
    const DtString datatype = theDatatypes[(data[0] >> 2) % theCount];
    if (data[0] & 2)
    {
        DtDatatypeManager::Octets octets;
        manager.getValueFromStringRep(
            datatype, std::string(reinterpret_cast<const char*>(data + 1), size - 1), octets);
        decode(manager, datatype, reinterpret_cast<const std::uint8_t*>(octets.data()),
               octets.empty() ? 0 : static_cast<int>(octets.size()));
    }
    else
    {
        decode(manager, datatype, data + 1, static_cast<int>(size - 1));
    }
    return 0;
}
