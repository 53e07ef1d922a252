// SPDX-License-Identifier: Apache-2.0
// Differences between two models: what came, went and changed, and which octets differ and where.
#include "omt/check/diff.h"
#include "omt/model/read.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>

namespace
{

using omt::Wire;
using testing::ElementsAreArray;
using Lines = std::vector<std::string>;

std::string tag(const std::string& name, const std::string& content)
{
    return '<' + name + '>' + content + "</" + name + '>';
}

omt::Model model(const std::string& content, const std::string& file = "m.xml")
{
    omt::Findings ignored;
    return omt::readModule(
        {file, "<objectModel xmlns=\"http://standards.ieee.org/IEEE1516-2010\">" + content +
                   "</objectModel>"},
        ignored);
}

/// "renamed fixed record F was E: different 4 B; field B dataType HLAoctet>HLAbyte".
Lines linesOf(const omt::Differences& differences)
{
    Lines lines;
    for (const omt::Difference& row : differences.rows)
    {
        std::string line = std::string(name(row.change)) + ' ' + row.kind + ' ' + row.name;
        if (!row.nameBefore.empty()) line += " was " + row.nameBefore;
        if (row.wire) line += ": " + std::string(name(row.wire->wire));
        if (row.wire && row.wire->octet) line += ' ' + std::to_string(*row.wire->octet);
        if (row.wire && !row.wire->path.empty()) line += ' ' + row.wire->path;
        for (const omt::Detail& one : row.details)
        {
            line += "; ";
            if (!one.partKind.empty()) line += one.partKind + ' ' + one.part + ' ';
            line += one.property.empty() ? name(one.change) : std::string_view(one.property);
            if (!one.property.empty()) line += ' ' + one.before + '>' + one.after;
        }
        lines.push_back(line);
    }
    return lines;
}

std::string datatypes(const std::string& arrays, const std::string& records,
                      const std::string& others = "")
{
    return tag("dataTypes",
               others + tag("arrayDataTypes", arrays) + tag("fixedRecordDataTypes", records));
}

std::string field(const std::string& name, const std::string& datatype)
{
    return tag("field", tag("name", name) + tag("dataType", datatype));
}

std::string record(const std::string& name, const std::string& fields)
{
    return tag("fixedRecordData", tag("name", name) + tag("encoding", "HLAfixedRecord") + fields);
}

std::string array(const std::string& name, const std::string& element,
                  const std::string& cardinality = "Dynamic",
                  const std::string& encoding = "HLAvariableArray")
{
    return tag("arrayData", tag("name", name) + tag("dataType", element) +
                                tag("cardinality", cardinality) + tag("encoding", encoding));
}

std::string enumeration(const std::string& name, const std::vector<const char*>& enumerators)
{
    std::string all;
    for (const std::string one : enumerators)
        all += tag("enumerator", tag("name", one.substr(0, one.find('='))) +
                                     tag("value", one.substr(one.find('=') + 1)));
    return tag(
        "enumeratedDataTypes",
        tag("enumeratedData", tag("name", name) + tag("representation", "HLAinteger32BE") + all));
}

std::string variant(const std::string& alternatives)
{
    return tag("variantRecordDataTypes",
               tag("variantRecordData", tag("name", "V") + tag("discriminant", "D") +
                                            tag("dataType", "E") + alternatives +
                                            tag("encoding", "HLAvariantRecord")));
}

std::string alternative(const std::string& enumerator, const std::string& datatype)
{
    return tag("alternative", tag("enumerator", enumerator) + tag("name", "The" + enumerator) +
                                  tag("dataType", datatype));
}

std::string oneRecord(const std::string& fields)
{
    return datatypes("", record("F", fields));
}

std::string oneEnumeration(const std::vector<const char*>& enumerators,
                           const std::string& name = "E")
{
    return datatypes("", "", enumeration(name, enumerators));
}

/// A class at the top, with an attribute unless its datatype is empty.
std::string node(const std::string& name, const std::string& datatype,
                 const std::string& below = "")
{
    const std::string attribute =
        datatype.empty() ? "" : tag("attribute", tag("name", "At") + tag("dataType", datatype));
    return tag("objectClass", tag("name", name) + attribute + below);
}

std::string classes(const std::string& nodes)
{
    return tag("objects", tag("objectClass", tag("name", "HLAobjectRoot") + nodes));
}

struct Case
{
    const char* what;
    std::string before;
    std::string after;
    Lines lines;
};

void expectLines(const std::vector<Case>& cases)
{
    for (const Case& one : cases)
        EXPECT_THAT(linesOf(omt::diff(model(one.before), model(one.after))),
                    ElementsAreArray(one.lines))
            << one.what;
}

TEST(Diff, saysWhichOctetOfADatatypeDiffersFirst)
{
    const std::string octet = field("A", "HLAoctet");
    const std::string two = octet + field("B", "HLAinteger32BE");
    const auto other = [&](const char* datatype) { return octet + field("B", datatype); };
    const std::string holder = record("F", field("P", "HLAoctet") + field("Q", "G"));
    const std::string words = enumeration("E", {"Red=1", "Blue=2"});
    const std::string red = alternative("Red", "HLAoctet");
    const auto choice = [&](const std::string& all)
    { return datatypes("", "", words + variant(all)); };
    const std::string ring = record("F", field("Next", "Fs") + field("B", "HLAinteger16LE"));
    const std::string wide = record("F", field("Next", "Fs") + field("B", "HLAinteger16BE"));
    expectLines({
        {"nothing", oneRecord(two), oneRecord(two), {}},
        {"a field after padding",
         oneRecord(two),
         oneRecord(other("HLAfloat32BE")),
         {"changed fixed record F: different 4 B; field B dataType HLAinteger32BE>HLAfloat32BE"}},
        {"padding itself",
         oneRecord(two),
         oneRecord(other("HLAfloat64BE")),
         {"changed fixed record F: different 4; field B dataType HLAinteger32BE>HLAfloat64BE"}},
        {"the order of octets",
         oneRecord(two),
         oneRecord(other("HLAinteger32LE")),
         {"changed fixed record F: different 4 B; field B dataType HLAinteger32BE>HLAinteger32LE"}},
        {"a field more",
         oneRecord(octet),
         oneRecord(two),
         {"changed fixed record F: different 1; field B added"}},
        {"a field of another name",
         oneRecord(two),
         oneRecord(octet + field("C", "HLAinteger32BE")),
         {"changed fixed record F: same; field C name B>C"}},
        {"a field in front moves one only",
         oneRecord(two + field("C", "HLAoctet")),
         oneRecord(field("C", "HLAoctet") + two),
         {"changed fixed record F: different 1; field C place 3>1"}},
        {"a record around a number",
         oneRecord(two),
         datatypes("", record("F", other("G")) + record("G", field("X", "HLAinteger32BE"))),
         {"changed fixed record F: same; field B dataType HLAinteger32BE>G",
          "added fixed record G"}},
        {"what a record holds",
         datatypes("", holder + record("G", two)),
         datatypes("", holder + record("G", other("HLAfloat32BE"))),
         {"changed fixed record F: different 8 Q.B",
          "changed fixed record G: different 4 B; field B dataType HLAinteger32BE>HLAfloat32BE"}},
        {"an enumerator more",
         oneEnumeration({"Red=1"}),
         oneEnumeration({"Red=1", "Blue=2"}),
         {"changed enumerated datatype E: compatible; enumerator Blue added"}},
        {"an enumerator less",
         oneEnumeration({"Red=1", "Blue=2"}),
         oneEnumeration({"Red=1"}),
         {"changed enumerated datatype E: different 0; enumerator Blue removed"}},
        {"another number",
         oneEnumeration({"Red=1"}),
         oneEnumeration({"Red=0x101"}),
         {"changed enumerated datatype E: different 2; enumerator Red value 1>0x101"}},
        {"numbers change places",
         oneEnumeration({"Red=1", "Blue=2"}),
         oneEnumeration({"Red=2", "Blue=1"}),
         {"changed enumerated datatype E: different 3; enumerator Red value 1>2; enumerator Blue "
          "value 2>1"}},
        {"another name for a number",
         oneEnumeration({"Red=1"}),
         oneEnumeration({"Rouge=01"}),
         {"changed enumerated datatype E: same; enumerator Rouge name Red>Rouge"}},
        {"an alternative more",
         choice(red),
         choice(red + alternative("Blue", "HLAoctet")),
         {"changed variant record V: compatible; alternative TheBlue added"}},
        {"an alternative less",
         choice(red + alternative("Blue", "HLAoctet")),
         choice(red),
         {"changed variant record V: different 4; alternative TheBlue removed"}},
        {"another alternative",
         choice(red),
         choice(alternative("Red", "HLAinteger16BE")),
         {"changed variant record V: different 4 TheRed; alternative TheRed dataType "
          "HLAoctet>HLAinteger16BE"}},
        {"a count",
         datatypes(array("A", "HLAoctet", "3", "HLAfixedArray"), ""),
         datatypes(array("A", "HLAoctet", "4", "HLAfixedArray"), ""),
         {"changed array datatype A: different 3; cardinality 3>4"}},
        {"a bound that octets do not show",
         datatypes(array("A", "HLAoctet"), ""),
         datatypes(array("A", "HLAoctet", "[0..9]"), ""),
         {"changed array datatype A: compatible; cardinality Dynamic>[0..9]"}},
        {"records in a ring",
         datatypes(array("Fs", "F"), ring),
         datatypes(array("Fs", "F"), wide),
         {"changed array datatype Fs: different [0].B",
          "changed fixed record F: different B; field B dataType HLAinteger16LE>HLAinteger16BE"}},
        {"what neither model defines",
         oneRecord(field("A", "Gone")),
         oneRecord(field("A", "Gone")),
         {}},
        {"what one model defines",
         oneRecord(field("A", "Gone")),
         oneRecord(octet),
         {"changed fixed record F: unknown A; field A dataType Gone>HLAoctet"}},
    });
}

TEST(Diff, findsWhatWasRenamedAndWhatMoved)
{
    const std::string red = oneEnumeration({"Red=1"});
    const std::string car = node("Car", "HLAoctet");
    const auto typed = [](const char* datatype, const std::string& types)
    { return classes(node("Car", datatype)) + types; };
    expectLines({
        {"a datatype with the same content",
         red, oneEnumeration({"Red=1"}, "G"),
         {"renamed enumerated datatype G was E: same"}},
        {"a datatype with the same octets",
         typed("E", red),
         typed("F", oneRecord(field("A", "HLAinteger32BE"))),
         {"changed attribute Car.At: same; dataType E>F",
          "renamed fixed record F was E: same; kind enumerated datatype>fixed record"}},
        {"a datatype with other octets",
         typed("E", red),
         typed("F", oneRecord(field("A", "HLAoctet"))),
         {"changed attribute Car.At: different 0; dataType E>F", "added fixed record F",
          "removed enumerated datatype E"}},
        {"a class with its members",
         classes(car),
         classes(node("Van", "HLAoctet")),
         {"renamed object class Van was Car"}},
        {"a class and those below it",
         classes(node("Base", "", car)),
         classes(node("Top", "", car)),
         {"renamed object class Top was Base"}},
        {"a class below another one",
         classes(car + node("Base", "X")),
         classes(node("Base", "X", car)),
         {"moved object class Base.Car was Car; class >Base"}},
        {"an attribute in the class above",
         classes(node("Base", "", car)),
         classes(node("Base", "HLAoctet", node("Car", ""))),
         {"moved attribute Base.At was Base.Car.At: same; class Base.Car>Base"}},
        {"a class with other members",
         classes(car),
         classes(node("Van", "HLAbyte")),
         {"added object class Van", "added attribute Van.At", "removed object class Car",
          "removed attribute Car.At"}},
    });
    omt::Findings ignored;
    const omt::Model before =
        omt::merge({model(red, "a/one.xml"), model("", "a/two.xml")}, ignored);
    const omt::Model after = omt::merge({model("", "b/one.xml"), model(red, "b/two.xml")}, ignored);
    EXPECT_THAT(linesOf(omt::diff(before, after)),
                ElementsAreArray({"moved enumerated datatype E: same; module one.xml>two.xml"}));
}

std::string component(const std::string& name, const std::string& datatype,
                      const std::string& cardinality = "1")
{
    return "(ComplexComponent (FieldName \"" + name + "\") (DataType \"" + datatype +
           "\") (Cardinality \"" + cardinality + "\"))";
}

TEST(Diff, knowsTheOctetsOfRecordsOfHla13InOtherEditions)
{
    const std::string list = array("Ds", "HLAfloat64BE");
    const std::string words = enumeration("E", {"Red=1", "Blue=2"});
    const std::string choice =
        words + variant(alternative("Red", "HLAfloat64BE") + alternative("Blue", "HLAoctet"));
    const std::string number = component("N", "unsigned long");
    const std::string gap = component("Padding", "octet", "4");
    const std::string red = component("X", "double", "0-1 (N = 1)");
    const std::string blue = component("Y", "octet", "0-1 (N = 2)");
    const auto typed = [](const char* datatype) { return record("F", field("A", datatype)); };
    const auto two = record("F", field("A", "HLAoctet") + field("B", "HLAfloat64BE"));
    const struct
    {
        const char* what;
        std::string components;
        std::string today;
        const char* wire;
    } cases[] = {
        {"a count and what it counts", number + gap + component("D", "double", "1+ (N)"),
         datatypes(list, typed("Ds")), "same"},
        {"the same without padding", number + component("D", "double", "1+ (N)"),
         datatypes(list, typed("Ds")), "different 4"},
        {"a count that something else uses",
         number + gap + component("D", "double", "1+ (N)") + component("L", "octet", "1+ (N)"),
         datatypes(list, typed("Ds")), "different 0"},
        {"fields that a number decides on", number + gap + red + blue,
         datatypes("", typed("V"), choice), "same"},
        {"the same without padding", number + red + blue, datatypes("", typed("V"), choice),
         "different 4"},
        {"an alternative less", number + gap + red, datatypes("", typed("V"), choice),
         "compatible"},
        {"two fields for one number", number + gap + red + component("Y", "octet", "0-1 (N = 1)"),
         datatypes("", typed("V"), choice), "different 0"},
        {"padding written out",
         component("A", "octet") + component("Padding", "octet", "7") + component("B", "double"),
         datatypes("", two), "same"},
        {"too little padding",
         component("A", "octet") + component("Padding", "octet", "3") + component("B", "double"),
         datatypes("", two), "different 4"},
        {"padding at the end",
         component("A", "octet") + component("B", "octet") + component("Padding", "octet", "2"),
         datatypes("", record("F", field("A", "HLAoctet") + field("B", "HLAoctet"))),
         "different 2"},
    };
    for (const auto& one : cases)
    {
        omt::Findings ignored;
        const omt::Model old = omt::readModule(
            {"m.omd",
             "(DIF (Version 1.3)) (ObjectModel (Name \"M\") (ComplexDataType (Name \"F\")" +
                 one.components + "))"},
            ignored);
        const omt::Differences found = omt::diff(old, model(one.today));
        const auto row = std::find_if(found.rows.begin(), found.rows.end(),
                                      [](const omt::Difference& each) { return each.name == "F"; });
        ASSERT_TRUE(row != found.rows.end() && row->wire) << one.what;
        std::string wire(name(row->wire->wire));
        if (row->wire->octet) wire += ' ' + std::to_string(*row->wire->octet);
        EXPECT_EQ(wire, one.wire) << one.what << ": " << row->wire->why;
    }
}

/// A ring of arrays, each of the next.
std::string ring(std::size_t size)
{
    std::string arrays;
    for (std::size_t i = 0; i < size; ++i)
        arrays += array("A" + std::to_string(i), "A" + std::to_string((i + 1) % size));
    return datatypes(arrays, record("F", field("X", "A0")));
}

TEST(Diff, isBoundedWhateverModelsHold)
{
    // Every array of one ring meets every array of the other.
    const omt::Differences rings = omt::diff(model(ring(3001)), model(ring(2999)));
    EXPECT_GT(rings.octets[static_cast<std::size_t>(Wire::unknown)], 0U);
    std::string twins;
    std::string chain;
    for (int i = 0; i < 5000; ++i)
    {
        const std::string number = std::to_string(i);
        twins += array("T", "HLAoctet") + array("U" + number, "HLAoctet");
        chain += record("R" + number, field("X", "R" + std::to_string(i + 1)));
    }
    const omt::Model large = model(datatypes(twins, chain));
    EXPECT_TRUE(omt::diff(large, large).isEmpty());
    const omt::Model larger =
        model(datatypes(twins, chain + record("R5000", field("X", "HLAbyte"))));
    EXPECT_EQ(omt::diff(large, larger).octets[static_cast<std::size_t>(Wire::unknown)], 5000U);
}

TEST(Diff, editionsOfPublishedModelsAgreeAsFarAsTheyDo)
{
    const char* const folder = std::getenv("OMT_MODELS");
    if (!folder) GTEST_SKIP() << "OMT_MODELS names no folder of models";
    const auto read = [&](const char* file)
    { return omt::read({std::string(folder) + '/' + file}).model; };
    const char* const final = "evolved/RPR_FOM_v2.0_1516-2010.xml";
    const struct
    {
        const char* before;
        const char* after;
        std::size_t leastAlike;
        std::size_t mostUnlike;
    } cases[] = {
        {final,                             final,                               870, 0 },
        {"x2000/RPR2-D17.xml",              final,                               730, 56},
        {"hla13/RPR2-D17.omd",              "x2000/RPR2-D17.xml",                740, 34},
        {"hla13/RPR2-D17.omd",              final,                               650, 40},
        {"mim/HLAstandardMIM.xml",          "2025/HLAstandardMIM-2025.xml",      170, 14},
        {"evolved/RestaurantFOMmodule.xml", "2025/RestaurantFOMmodule-2025.xml", 10,  5 },
    };
    for (const auto& one : cases)
    {
        const omt::Differences found = omt::diff(read(one.before), read(one.after));
        EXPECT_GE(found.octets[0] + found.octets[1], one.leastAlike) << one.before;
        EXPECT_LE(found.octets[3], one.mostUnlike) << one.before;
        EXPECT_EQ(found.isEmpty(), one.before == one.after) << one.before;
    }
}

}  // namespace
