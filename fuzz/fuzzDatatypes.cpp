// SPDX-License-Identifier: Apache-2.0
// Any octets as a model of datatypes, as settings, and as a value of one of them.
//
// The first octet chooses: its lowest bit implicit padding, the next one that names are free. Else
// a datatype contains those before it only, and what is decoded is compared with a slow and
// obvious decoder. Every octet after it is one decision, up to the value.
#include "../tests/datatypeNodes.h"
#include "../tests/referenceWalk.h"
#include "omtReader/basicDataRepresentationNode.h"
#include "omtReader/latLongCoordinatesDatatypeRep.h"
#include "valueChecks.h"

#include <cstdint>
#include <string>

namespace
{

constexpr std::size_t theMostOctets = 65536;
// The slow walk takes time that grows faster.
constexpr std::size_t theMostToCompare = 1024;
constexpr std::size_t theMostDatatypes = 6;

constexpr const char* theNames[] = {"A", "B", "C", "D", "E", "F", "Kind", "Missing", "geodedic"};
constexpr const char* theReps[] = {
    "byte",     "short",  "int",  "long",         "float",         "double", "short-LE", "int-LE",
    "float-LE", "char",   "bool", "hex",          "string",        "utf8",   "utf16",    "enum8",
    "enum16",   "enum32", "---",  "unsigned-int", "unsigned-long", "A",      "F"};
// The slow walk knows no words, characters and rounded numbers as values of enumerations.
constexpr const char* theKindReps[] = {"byte", "int-LE", "unsigned-long", "hex", "utf8", "---"};
constexpr const char* theBasics[] = {"HLAoctet", "HLAinteger16BE", "HLAinteger32BE", "24bits"};
constexpr const char* theEncodings[] = {"HLAfixedArray",
                                        "HLAvariableArray",
                                        "HLAnullTerminatedArray",
                                        "HLAlengthlessVarArray",
                                        "HLAbitArray",
                                        "RPRpaddingTo32Array",
                                        "Other"};
constexpr const char* theArrayCardinalities[] = {"0",      "3",       "2,2", "[0..2]",
                                                 "[1..3]", "Dynamic", "-1",  "2147483647"};
constexpr const char* theEnumerators[] = {"A", "B", "C", "0", "1", "true", ""};
constexpr const char* theCardinalities[] = {"1",           "3",       "1-3",        "0+", "1+",
                                            "0-1 (A = 1)", "(A = B)", "0+ (A)",     "%8", "%3",
                                            "-1",          "",        "%2147483647"};
constexpr const char* theDelimiters[] = {",", "; ", "", "1"};

/// The octets of an input one after the other; zeros after its end.
class Choices
{
public:
    Choices(const std::uint8_t* data, std::size_t size) : myData(data), mySize(size) {}

    std::size_t below(std::size_t end)
    {
        if (mySize == 0) return 0;
        --mySize;
        return *myData++ % end;
    }
    template <std::size_t count>
    const char* oneOf(const char* const (&list)[count])
    {
        return list[below(count)];
    }

    const std::uint8_t* rest() const { return myData; }
    int restSize() const { return static_cast<int>(mySize); }

private:
    const std::uint8_t* myData;
    std::size_t mySize;
};

/// Makes up a model.
class ModelMaker
{
public:
    const DtOMTTreePtr tree{new DtOMTTree};

    ModelMaker(Choices& choices, bool isFree) : myChoices(choices), myIsFree(isFree)
    {
        addKinds(*addEnumerated(*tree, "Kind", myChoices.oneOf(theBasics)));
        for (std::size_t count = 1 + myChoices.below(theMostDatatypes); myDone < count; ++myDone)
            addDatatype(myIsFree ? theNames[myChoices.below(theMostDatatypes)] : theNames[myDone]);
    }

    /// The name of a datatype that may be referred to.
    DtString reference()
    {
        if (myIsFree) return myChoices.oneOf(theNames);
        const std::size_t choice = myChoices.below(myDone + 2);
        return theNames[choice < myDone ? choice : theMostDatatypes + choice - myDone];
    }

private:
    void addDatatype(const DtString& name)
    {
        const std::size_t kind = myChoices.below(myIsFree ? 7 : 5);
        if (kind == 0) addSimple(*tree, name, myChoices.oneOf(theReps));
        if (kind == 1) addKinds(*addEnumerated(*tree, name, myChoices.oneOf(theBasics)));
        if (kind == 2) addArrayOf(reference(), name);
        if (kind == 3) addRecord<DtFieldComponentNode>(named<DtFixedDatatypeNode>(name));
        if (kind == 4) addVariant(named<DtVariantDatatypeNode>(name));
        if (kind == 5) addRecord<DtComplexComponentNode>(named<DtComplexDatatypeNode>(name));
        if (kind == 6) addBasic(named<DtBasicDataRepresentationNode>(name));
    }

    void addKinds(DtEnumeratedDatatypeNode& enumerated)
    {
        addEnumerator(enumerated, "A", 0);
        addEnumerator(enumerated, "B", 1);
        addEnumerator(enumerated, "C", static_cast<std::int8_t>(2 + myChoices.below(254)));
    }

    void addArrayOf(const DtString& element, const DtString& name)
    {
        const DtString encoding = myChoices.oneOf(theEncodings);
        addArray(*tree, name, element, encoding, myChoices.oneOf(theArrayCardinalities));
    }

    void addVariant(DtVariantDatatypeNode* variant)
    {
        variant->setDiscriminant("kind");
        variant->setDatatype(reference());
        addRecord<DtAlternativeComponentNode>(variant);
    }

    template <typename Component>
    void addRecord(auto* record)
    {
        for (std::size_t count = myChoices.below(4), at = 0; at < count; ++at)
        {
            auto& part = *addComponent<Component>(*record, theNames[at], reference());
            if constexpr (requires { part.setEnumerator(""); })
                part.setEnumerator(myChoices.oneOf(theEnumerators));
            if constexpr (requires { part.setCardinality(""); })
                part.setCardinality(myChoices.oneOf(theCardinalities));
        }
        add(record);
    }

    void addBasic(DtBasicDataRepresentationNode* basic)
    {
        basic->setSize(DtString(static_cast<int>(myChoices.below(256))));
        tree->addBasicDataRepresentationNode(basic);
    }

    void add(DtFixedDatatypeNode* node) { tree->addFixedDatatypeNode(node); }
    void add(DtVariantDatatypeNode* node) { tree->addVariantDatatypeNode(node); }
    void add(DtComplexDatatypeNode* node) { tree->addComplexDatatypeNode(node); }

    Choices& myChoices;
    bool myIsFree;
    std::size_t myDone = 0;
};

void set(DtDatatypeManager& manager, Choices& choices, bool isFree)
{
    for (std::size_t count = choices.below(4); count > 0; --count)
    {
        const std::size_t what = choices.below(3);
        const DtString name = choices.oneOf(theNames);
        if (what == 0)
            manager.addRepMapping(name,
                                  isFree ? choices.oneOf(theReps) : choices.oneOf(theKindReps));
        if (what == 1) manager.addAttributeMapping(name, choices.oneOf(theReps));
        if (what == 2) manager.addDelimiterMap(name, choices.oneOf(theDelimiters));
    }
}

void compareWithSlowWalk(const Value& value)
{
    const Decoded expected = decodeSlowly(
        value.manager, value.datatype, static_cast<const char*>(value.data), value.length, "", "");
    int consumed = 0;
    const DtString line = value.line(consumed);
    require(consumed == expected.lineConsumed, "the line takes what the slow walk takes");
    const std::string tree = shown(value.tree(consumed).get());
    require(consumed == expected.treeConsumed, "the tree takes what the slow walk takes");
    require(line == expected.line.c_str(), "the line is that of the slow walk");
    require(tree == expected.tree, "the tree is that of the slow walk");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    beQuiet();
    if (size == 0 || size > theMostOctets) return 0;
    const bool isFree = data[0] & 2;
    Choices choices(data + 1, size - 1);
    ModelMaker maker(choices, isFree);
    DtDatatypeManager manager;
    manager.setImplicitPadding(data[0] & 1);
    manager.fillDefaultDatatypeRepList();
    if (isFree) manager.addDefinedDatatypeRep(new DtLatLongCoordinateDatatypeRep(true));
    manager.initOMTData(maker.tree.get());
    set(manager, choices, isFree);
    manager.setNodeLimit(300);

    const DtString datatype = maker.reference();
    const Value value{manager, datatype, choices.rest(), choices.restSize()};
    checkDecoding(value);
    if (!isFree && !isStopped && size <= theMostToCompare) compareWithSlowWalk(value);
    return 0;
}
