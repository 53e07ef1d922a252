// SPDX-License-Identifier: Apache-2.0
// Decoding and encoding: against code written by hand for one layout, and as an array grows.
#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/fieldComponentNode.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/simpleDatatypeNode.h"
#include "omtReader/stringTree.h"
#include "omtReader/xmlFileReader.h"
#include "ratio.h"
#include "util/dtNetworkOrder.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace
{

using ratios::secondsOf;
using Octets = DtDatatypeManager::Octets;
using StringTree = std::unique_ptr<DtStringTree>;

constexpr const char* theRPR = "evolved/RPR_FOM_v2.0_1516-2010.xml";
constexpr const char* theSpatial = "SpatialVariantStruct";
/// Short work is done this often and timed as a whole.
constexpr int theTimes = 2000;

/// Sets a manager up as most hosts do.
void setUp(DtDatatypeManager& manager, DtOMTTree& tree)
{
    manager.setImplicitPadding(true);
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(&tree);
    manager.readStandardMappings();
}

/// A manager with its tree.
struct Conversions
{
    explicit Conversions(DtOMTTree* model) : tree(model) { setUp(manager, *tree); }
    DtOMTTreePtr tree;
    DtDatatypeManager manager;
};

/// A manager in which one operation is replaced.
struct Host : DtDatatypeManager
{
    void getEnumRep(const DtString& datatype, const void* data, int length, int& consumed,
                    DtString& text) override
    {
        DtDatatypeManager::getEnumRep(datatype, data, length, consumed, text);
    }
};

void require(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

template <typename Number>
void append(Octets& octets, Number number)
{
    const DtNetValue<Number> value(number);
    octets.insert(octets.end(), value.octets(), value.octets() + sizeof(Number));
}

template <typename Number>
Number numberAt(const char* octets)
{
    DtNetValue<Number> value;
    std::memcpy(static_cast<void*>(&value), octets, sizeof value);
    return value;
}

// One spatial value: algorithm, location, frozen or not, orientation, velocity, acceleration,
// angular velocity.

Conversions& rpr()
{
    static Conversions theConversions(
        []
        {
            DtXMLFileReader reader;
            reader.includeMIM(true);
            return reader.readFile(DtString(ratios::modelPath(theRPR).string()), nullptr);
        }());
    return theConversions;
}

const Octets& spatialValue()
{
    static const Octets theValue = []
    {
        constexpr int theFloats = 12;
        Octets octets = {4, 0, 0, 0, 0, 0, 0, 0};
        for (const double place : {-2708954.75, -4260764.5, 3884963.25}) append(octets, place);
        octets.insert(octets.end(), 4, '\0');
        for (int at = 0; at < theFloats; ++at)
            append(octets, static_cast<float>(at - 5) * 1.2345678F);
        return octets;
    }();
    return theValue;
}

std::string spatialByHand(const Octets& value)
{
    static const char* const theAlgorithms[] = {"Other",   "Static",  "DRM_FPW", "DRM_RPW",
                                                "DRM_RVW", "DRM_FVW", "DRM_FPB", "DRM_RPB"};
    const char* const data = value.data();
    const auto place = [data](int at) { return numberAt<double>(data + 8 + 8 * at); };
    const auto rate = [data](int at) { return double{numberAt<float>(data + 36 + 4 * at)}; };
    char line[512];
    std::snprintf(
        line, sizeof line,
        "%s %.5g %.5g %.5g %s %.5g %.5g %.5g %.5g %.5g %.5g %.5g %.5g %.5g %.5g %.5g %.5g",
        theAlgorithms[data[0] & 7], place(0), place(1), place(2), data[32] ? "True" : "False",
        rate(0), rate(1), rate(2), rate(3), rate(4), rate(5), rate(6), rate(7), rate(8), rate(9),
        rate(10), rate(11));
    return line;
}

DtString spatialLine(DtDatatypeManager& manager = rpr().manager)
{
    int consumed = 0;
    const Octets& value = spatialValue();
    return manager.getStringRep(theSpatial, value.data(), static_cast<int>(value.size()), consumed);
}

double decodeSpatialByHand()
{
    require(spatialByHand(spatialValue()) == spatialLine().str(), "The spatial lines differ");
    return secondsOf(
        []
        {
            for (int at = 0; at < theTimes; ++at) spatialByHand(spatialValue());
        });
}

double decodeSpatialLines(DtDatatypeManager& manager)
{
    require(spatialLine(manager) == spatialLine(), "The spatial lines differ");
    return secondsOf(
        [&]
        {
            for (int at = 0; at < theTimes; ++at) spatialLine(manager);
        });
}

double decodeSpatialLine()
{
    return decodeSpatialLines(rpr().manager);
}

double decodeSpatialHost()
{
    static Host theHost;
    if (!theHost.omtTree()) setUp(theHost, *rpr().tree);
    return decodeSpatialLines(theHost);
}

double decodeSpatialTree()
{
    DtDatatypeManager& manager = rpr().manager;
    const Octets& value = spatialValue();
    return secondsOf(
        [&]
        {
            int consumed = 0;
            for (int at = 0; at < theTimes; ++at)
                StringTree(manager.createStringTreeRep(theSpatial, value.data(),
                                                       static_cast<int>(value.size()), consumed,
                                                       nullptr, 0, nullptr, nullptr));
        });
}

// A made model: a record of twelve numbers, and variable arrays of numbers and of records.

constexpr const char* theNumberTypes[] = {"HLAfloat64BE", "HLAfloat32BE", "HLAinteger32BE"};
constexpr int theFields = 12;

template <typename Node>
Node* named(const char* name)
{
    auto* const node = new Node;
    node->setName(name);
    return node;
}

DtOMTTree* madeModel()
{
    auto* const tree = new DtOMTTree;
    for (const char* type : theNumberTypes)
    {
        auto* const simple = named<DtSimpleDatatypeNode>(type);
        simple->setRepresentation(type);
        tree->addSimpleDatatypeNode(simple);
    }
    const auto addRecord = [tree](const char* name, int count)
    {
        auto* const record = named<DtFixedDatatypeNode>(name);
        for (int at = 0; at < count; ++at)
        {
            auto* const field = named<DtFieldComponentNode>("Field");
            field->setDatatype(theNumberTypes[at * 3 / count]);
            record->addComponentNode(field);
        }
        tree->addFixedDatatypeNode(record);
    };
    addRecord("Track", theFields);
    addRecord("Point", 3);
    for (const auto& [name, element] : {
             std::pair("Numbers", "HLAfloat64BE"), {"Points", "Point"}
    })
    {
        auto* const array = named<DtArrayDatatypeNode>(name);
        array->setDatatype(element);
        array->setEncoding("HLAvariableArray");
        tree->addArrayDatatypeNode(array);
    }
    return tree;
}

Conversions& made()
{
    static Conversions theConversions(madeModel());
    return theConversions;
}

// Encoding the text of a record.

constexpr std::string_view theTrack =
    "-2708954.7512 -4260764.5237 3884963.2511 61234.0625 0.78539816 -0.0021875 3.1415927 "
    "12.345678 100000 -2147483647 1234567 200017";

template <typename Number>
void appendNumber(Octets& octets, std::string_view& text)
{
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    append(octets, number);
    const auto after = static_cast<std::size_t>(end - text.data()) + 1;
    text.remove_prefix(std::min(after, text.size()));
}

Octets trackByHand(std::string_view text)
{
    Octets octets;
    for (int at = 0; at < theFields / 3; ++at) appendNumber<double>(octets, text);
    for (int at = 0; at < theFields / 3; ++at) appendNumber<float>(octets, text);
    for (int at = 0; at < theFields / 3; ++at) appendNumber<std::int32_t>(octets, text);
    return octets;
}

Octets trackByManager(const DtString& text)
{
    Octets octets;
    made().manager.getValueFromStringRep("Track", text, octets);
    return octets;
}

double encodeTrackByHand()
{
    require(trackByHand(theTrack) == trackByManager(theTrack), "The tracks differ");
    return secondsOf(
        []
        {
            for (int at = 0; at < theTimes; ++at) trackByHand(theTrack);
        });
}

double encodeTrack()
{
    const DtString text(theTrack);
    trackByManager(text);
    return secondsOf(
        [&]
        {
            for (int at = 0; at < theTimes; ++at) trackByManager(text);
        });
}

// A record of very many fields, each of another kind than the ones beside it, and an enumeration of
// as many enumerators.

DtOMTTree* wideModel(int size)
{
    DtOMTTree* const tree = madeModel();
    auto* const letter = named<DtSimpleDatatypeNode>("HLAASCIIchar");
    letter->setRepresentation("HLAASCIIchar");
    tree->addSimpleDatatypeNode(letter);
    auto* const names = named<DtEnumeratedDatatypeNode>("Names");
    names->setRepresentation("HLAinteger32BE");
    auto* const record = named<DtFixedDatatypeNode>("Wide");
    constexpr const char* theTypes[] = {"Names", "HLAASCIIchar", "Point", "Numbers"};
    for (int at = 0; at < size; ++at)
    {
        auto* const enumerator = new DtEnumerationNode;
        enumerator->setEnum("Name" + DtString(at));
        enumerator->setNumber(at);
        names->addEnumerationNode(enumerator);
        auto* const field = named<DtFieldComponentNode>("Field");
        field->setDatatype(theTypes[at % 4]);
        record->addComponentNode(field);
    }
    tree->addEnumeratedDatatypeNode(names);
    tree->addFixedDatatypeNode(record);
    return tree;
}

/// Encodes such a record of so many fields, as often.
template <int size>
double encodeWide()
{
    constexpr int theFieldsInAll = 40000;
    Conversions wide(wideModel(size));
    std::string text;
    for (int at = 0; at < size; at += 4)
        text += (at > 0 ? " Name" : "Name") + std::to_string(at) + " x 1 2 3 0.5[1.5[2.5]]";
    return secondsOf(
        [&]
        {
            for (int time = 0; time < theFieldsInAll / size; ++time)
            {
                Octets octets;
                wide.manager.getValueFromStringRep("Wide", text, octets);
                // An enumerator, a letter, a point and three numbers with their count.
                require(octets.size() == size / 4 * (4 + 1 + 16 + 28), "A record was cut short");
            }
        });
}

// Arrays: the same number of elements in all, in many short arrays or in one.

constexpr int theElements = 1000000;

/// Decodes, renders and deletes an array of so many elements, as often.
double decodeArrays(const char* array, std::size_t doublesEach, int count, int times)
{
    DtDatatypeManager& manager = made().manager;
    Octets octets;
    append(octets, std::int32_t{count});
    octets.resize(8);
    for (std::size_t at = 0; at < doublesEach * static_cast<std::size_t>(count); ++at)
        append(octets, 0.001 * static_cast<double>(at % 1000));
    return secondsOf(
        [&]
        {
            for (int time = 0; time < times; ++time)
            {
                int consumed = 0;
                const StringTree tree(manager.createStringTreeRep(
                    array, octets.data(), static_cast<int>(octets.size()), consumed, nullptr, 0,
                    nullptr, nullptr));
                require(consumed == static_cast<int>(octets.size()), "An array was cut short");
                manager.convertStringTreeToString(tree.get(), " ");
            }
        });
}

template <int count>
double decodeNumbers()
{
    return decodeArrays("Numbers", 1, count, theElements / count);
}

template <int count>
double decodePoints()
{
    made().manager.setNodeLimit(4 * theElements);
    return decodeArrays("Points", 2, count, theElements / count);
}

double decodeArray(int count)
{
    return decodeArrays("Numbers", 1, count, 1);
}

}  // namespace

std::vector<ratios::Ratio> ratios::convertValuesRatios()
{
    return {
        {"decode_spatial",        decodeSpatialByHand, decodeSpatialLine,          theRPR },
        {"decode_tree",           decodeSpatialByHand, decodeSpatialTree,          theRPR },
        {"decode_host",           decodeSpatialLine,   decodeSpatialHost,          theRPR },
        {"decode_growth",         decodeNumbers<1000>, decodeNumbers<theElements>, nullptr},
        {"decode_growth_records", decodePoints<1000>,  decodePoints<theElements>,  nullptr},
        {"encode_record",         encodeTrackByHand,   encodeTrack,                nullptr},
        {"encode_growth",         encodeWide<1000>,    encodeWide<40000>,          nullptr},
    };
}

std::vector<ratios::Growth> ratios::convertValuesGrowth()
{
    return {
        {"Decoding", "elements of one array", 8000, decodeArray},
    };
}
