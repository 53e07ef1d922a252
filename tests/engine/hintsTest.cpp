// SPDX-License-Identifier: Apache-2.0
// Hints: texts in arrays of octets, both ways, tables of entity types, and what overlays derive.
#include "omt/omt.h"

#include <gmock/gmock.h>

#include <sstream>

namespace
{

using ::testing::HasSubstr;
using Bytes = std::vector<std::uint8_t>;

/// Records under the names of the RPR FOM, with little in them.
constexpr const char* theModel =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><dataTypes><arrayDataTypes>
<arrayData><name>Six</name><dataType>HLAoctet</dataType><cardinality>6</cardinality></arrayData>
<arrayData><name>Name</name><dataType>HLAoctet</dataType><cardinality>Dynamic</cardinality>
</arrayData><arrayData><name>Places</name><dataType>WorldLocationStruct</dataType>
<cardinality>Dynamic</cardinality></arrayData><arrayData><name>Some</name>
<dataType>HLAinteger16BE</dataType><cardinality>Dynamic</cardinality></arrayData></arrayDataTypes><fixedRecordDataTypes>
<fixedRecordData><name>MarkingStruct</name><field><name>Set</name><dataType>HLAoctet</dataType>
</field><field><name>MarkingData</name><dataType>Six</dataType></field></fixedRecordData>
<fixedRecordData><name>EntityTypeStruct</name><field><name>K</name><dataType>HLAoctet</dataType>
</field><field><name>D</name><dataType>HLAoctet</dataType></field><field><name>C</name>
<dataType>HLAinteger16BE</dataType></field><field><name>A</name><dataType>HLAoctet</dataType></field>
<field><name>S</name><dataType>HLAoctet</dataType></field><field><name>P</name>
<dataType>HLAoctet</dataType></field><field><name>E</name><dataType>HLAoctet</dataType></field>
</fixedRecordData><fixedRecordData><name>WorldLocationStruct</name><field><name>X</name>
<dataType>HLAfloat64BE</dataType></field><field><name>Y</name><dataType>HLAfloat64BE</dataType>
</field><field><name>Z</name><dataType>HLAfloat64BE</dataType></field></fixedRecordData>
<fixedRecordData><name>All</name><field><name>Type</name><dataType>EntityTypeStruct</dataType>
</field><field><name>Where</name><dataType>Places</dataType></field></fixedRecordData>
<fixedRecordData><name>Late</name><field><name>N</name><dataType>HLAoctet</dataType></field><field>
<name>D</name><dataType>Some</dataType></field><field><name>X</name><dataType>HLAfloat64BE</dataType>
</field></fixedRecordData></fixedRecordDataTypes><variantRecordDataTypes><variantRecordData>
<name>Sized</name><discriminant>D</discriminant><dataType>HLAoctet</dataType><alternative>
<enumerator>1</enumerator><name>L</name><dataType>Late</dataType></alternative><alternative>
<enumerator>2</enumerator><name>W</name><dataType>WorldLocationStruct</dataType></alternative>
<encoding>RPRextendedVariantRecord</encoding></variantRecordData></variantRecordDataTypes>
</dataTypes></objectModel>)";

omt::Codec codec(std::string_view hints = R"({"version":1})")
{
    omt::CodecOptions options;
    const omt::HintsReading reading = omt::readHints(hints, "h.json");
    EXPECT_TRUE(reading.findings.empty()) << reading.findings[0];
    options.hints = reading.hints;
    const std::vector<omt::Document> documents = {
        {"x.xml", theModel}
    };
    return omt::Codec(omt::readDocuments(documents).model, options);
}

Bytes bytes(std::string_view text)
{
    Bytes all;
    std::istringstream in{std::string(text)};
    for (int one = 0; in >> std::hex >> one;) all.push_back(static_cast<std::uint8_t>(one));
    return all;
}

template <typename T>
std::string printed(const T& thing)
{
    return (std::ostringstream() << thing).str();
}

TEST(HintsTest, TextGoesBothWays)
{
    const struct
    {
        const char* type;
        const char* octets;
        const char* json;
        const char* text;
    } cases[] = {
        {"MarkingStruct", "1 41 42 0 0 0 0",    R"({"Set":1,"MarkingData":"AB"})",            "AB"   },
        {"MarkingStruct", "1 41 42 e9 22 41 4", R"({"Set":1,"MarkingData":"ABé\"A\u0004"})",
         "ABé\"A\4"                                                                                 },
        {"MarkingStruct", "1 0 0 0 0 0 0",      R"({"Set":1,"MarkingData":""})",              ""     },
        {"MarkingStruct", "1 41 0 0 7 0 0",
         R"({"Set":1,"MarkingData":{"text":"A","rest":"00070000"}})",                         "A"    },
        {"Six",           "41 0 0 0 0 0",       R"("410000000000")",                          nullptr},
        {"Name",          "0 0 0 2 41 42",      R"("AB")",                                    "AB"   },
        {"Name",          "0 0 0 2 41 0",       R"({"text":"A","rest":""})",                  "A"    },
        {"Name",          "0 0 0 0",            R"("")",                                      ""     },
    };
    const omt::Codec all = codec(R"({"version":1,"texts":["Name"]})");
    for (const auto& one : cases)
    {
        const omt::Value value = all.type(one.type).decode(bytes(one.octets));
        EXPECT_EQ(value.json(), one.json);
        const bool isMarking =
            value.root().size() == 2 && value.root().kind() == omt::ValueKind::record;
        const omt::Item item = isMarking ? value["MarkingData"] : value.root();
        EXPECT_EQ(item.text(), one.text ? std::optional<std::string>(one.text) : std::nullopt);
        Bytes again;
        EXPECT_FALSE(all.type(one.type).encode(one.json, again)) << one.json;
        EXPECT_EQ(again, bytes(one.octets)) << one.json;
    }
    const std::pair<const char*, const char*> refused[] = {
        {R"("ABCDEFG")",                       "7 octets, and there is room for 6"},
        {R"("A\u0000")",                       "a zero ends a text"               },
        {R"("\u20ac")",                        "a character that no octet holds"  },
        {R"({"rest":"00"})",                   "\"text\" and then \"rest\""       },
        {R"({"text":"AB","rest":"00000000"})", "7 octets, and there is room for 6"},
        {R"({})",                              "no key"                           },
        {R"(["A"])",                           "a text is expected"               },
    };
    omt::Value value = all.type("MarkingStruct").decode(bytes("1 41 42 0 0 0 7"));
    for (const auto& [json, what] : refused)
    {
        const auto error = value.set("MarkingData", std::string_view(json));
        EXPECT_THAT(error ? error->what : "", HasSubstr(what)) << json;
    }
    EXPECT_FALSE(value.set("MarkingData", std::string_view("XYZ")));
    EXPECT_EQ(value.json(), R"({"Set":1,"MarkingData":"XYZ"})");
}

TEST(HintsTest, SaysWhatDoesNotFit)
{
    const std::pair<const char*, const char*> files[] = {
        {R"({"version":2})",                                   "h.json:1: error: the version is not 1 [hints]"        },
        {"{\"version\":1,\n\"text\":[]}",                      "h.json:2: error: \"text\" is no part of hints [hints]"},
        {"{\"version\":1,\"texts\":[\"A\\q\"]}",               "h.json:1: error: no such escape [hints]"              },
        {R"({"version":1,"texts":["A"],"numbers":{"A":"T"}})",
         "h.json:1: error: there is no table \"T\" [hints]"                                                           },
        {R"({"version":1,"tables":{"T":{"x":"y"}}})",
         "h.json:1: error: \"x\" is no whole number [hints]"                                                          },
        {R"({"texts":["A"]})",                                 "h.json:1: error: \"version\" is missing [hints]"      },
        {R"({"version":1)",                                    "h.json:1: error: a \"}\" is missing [hints]"          },
    };
    for (const auto& [text, finding] : files)
    {
        const omt::HintsReading reading = omt::readHints(text, "h.json");
        EXPECT_EQ(reading.findings.empty() ? "" : printed(reading.findings[0]), finding);
        EXPECT_TRUE(reading.hints.hints.empty());
    }
    EXPECT_TRUE(omt::readHints(omt::builtInHints(), "").findings.empty());
    EXPECT_TRUE(codec().findings().empty());
    std::string findings;
    const omt::Codec wrong =
        codec(R"({"version":1,"texts":["None","All.Where"],"entityTypes":["WorldLocationStruct"],
"positions":["EntityTypeStruct"],"numbers":{"Six":"T"},"tables":{"T":{}}})");
    for (const omt::Finding& one : wrong.findings()) findings += printed(one) + '\n';
    EXPECT_EQ(
        findings,
        "h.json:1: warning: the hint about \"None\" does not fit: the model has no such "
        "datatype and no such field of a record [hint]\n"
        "h.json:1: warning: the hint about \"All.Where\" does not fit: it is no array of "
        "octets, or one of more than 65536 [hint]\n"
        "h.json:1: warning: the hint about \"WorldLocationStruct\" does not fit: it is no "
        "record of seven integers of 1, 1, 2, 1, 1, 1, 1 octets [hint]\n"
        "h.json:2: warning: the hint about \"EntityTypeStruct\" does not fit: it is no record "
        "of three floating point numbers [hint]\n"
        "h.json:2: warning: the hint about \"Six\" does not fit: it is no integer [hint]\n");
}

TEST(HintsTest, OverlaysStandBesideTheValue)
{
    const std::string table =
        "header\n1,Platform,2,Air,65535,Isle,,,,,,\n1,Platform,2,Air,65535,Isle,4,Tug,5,,6,\"Ox\n";
    const omt::EntityTable names = omt::EntityTable::read(table, "t.csv").table;
    const omt::Codec all = codec(
        R"({"version":1,"numbers":{"EntityTypeStruct.C":"T"},"tables":{"T":{"-1":"\u00cdsland"}}})");
    // 6378137 metres on the first axis; then the north pole and 1.5 metres; then no place at all.
    const std::string x = " 41 58 54 a6 40 0 0 0";
    const std::string z = " 41 58 3f c4 74 1c 97 d0";
    const std::string zero = " 0 0 0 0 0 0 0 0";
    const Bytes octets = bytes("1 2 ff ff 4 5 6 9 0 0 0 3 0 0 0 0" + x + zero + zero + zero + zero +
                               z + " 7f f8 0 0 0 0 0 0" + zero + zero);
    const omt::Value value = all.type("All").decode(octets);
    std::string json;
    omt::appendJson(json, omt::overlays(value, &names));
    EXPECT_EQ(json,
              R"([{"path":"Type","entityType":"Platform:Air:Isle:Tug:5:\"Ox:9"},)"
              R"({"path":"Type.C","label":"Ísland"},)"
              R"({"path":"Where[0]","geodetic":{"latitude":0.000000000,"longitude":0.000000000,)"
              R"("altitude":0.00}},)"
              R"({"path":"Where[1]","geodetic":{"latitude":90.000000000,"longitude":0.000000000,)"
              R"("altitude":1.50}}])");
    EXPECT_TRUE(omt::overlays(codec().type("Six").decode(bytes("1"))).empty());
    EXPECT_TRUE(omt::overlays(all.type("WorldLocationStruct").decode(bytes("1" + x))).empty());
}

TEST(HintsTest, FindsTheBestRow)
{
    const std::string row = "1,Ship,2,Sea,3,Isle,4,Tug,5,Small,6,Ox\n";
    const omt::EntityTableReading reading = omt::EntityTable::read(
        "header\r\n" + row + "1,Ship,2,Sea,3,Isle,4,Tug,5,Small,8,Mule\n" +
            "1,Ship,,,3,,4,Tug,5,Small,6,Elk\n1,Ship,2,Sea,3,Isle,4,Tug,5,Small,,\n9,Rest\n\n"
            ",,,,,,,,,,,\n1,Ship,2,Sea,3,Isle,4,Tug,5,Small,6,Ox again\n1,A,2x,B,,,,,,,,\n"
            "1,A,-5,B,,,,,,,,\n2,\"A,2,B\",3,C,4,D,5,E,7,F\n",
        "t.csv");
    std::string findings;
    for (const omt::Finding& one : reading.findings) findings += printed(one.place) + ' ';
    EXPECT_EQ(findings, "t.csv:1 t.csv:12 t.csv:6 t.csv:10 t.csv:11 ");
    const std::pair<const char*, const char*> cases[] = {
        {"1:2:3:4:5:6:0",   "1:2:3:4:5:6:any"                                                         },
        {"1 2 3.4 : 5 7 0", "1:2:3:4:5:any:any"                                                       },
        {"1:7:3:4:5:6:0",   "1:any:3:4:5:6:any"                                                       },
        {"9:1:2:3:4:5:6",   "9:any:any:any:any:any:any"                                               },
        {"1:7:3:4:5:7:0",   ""                                                                        },
        {"1::3",            "Domain: \"\" is no number from 0 to 255, and no \"any\" or \"*\""        },
        {"1:2:65536",       "Country: \"65536\" is no number from 0 to 65535, and no \"any\" or \"*\""},
        {"1:2:3:4:5:6:7:8", "more than seven numbers"                                                 },
    };
    for (const auto& [key, expected] : cases)
    {
        std::string complaint;
        const auto codes = omt::EntityCodes::read(key, complaint);
        const auto* const found = codes ? reading.table.find(*codes) : nullptr;
        EXPECT_EQ(found ? found->codes.text() : complaint, expected) << key;
    }
    std::string complaint;
    const auto some = reading.table.findAll(*omt::EntityCodes::read("*:2:any:4:-1:6", complaint));
    ASSERT_EQ(some.size(), 4u);
    EXPECT_EQ(some[0]->codes.text(), "1:any:3:4:5:6:any");
    EXPECT_EQ(some[2]->names[5], "Ox again");
    EXPECT_EQ(reading.table.country(3), "Isle");
    const std::pair<const char*, const char*> none[] = {
        {"",                   "t.csv: error: the file is empty [entity-table]"               },
        {"header\n",           "t.csv: error: there is no row after the header [entity-table]"},
        {"header\n1;Ship;2\n", "t.csv: error: no row has twelve columns"                      },
    };
    for (const auto& [text, finding] : none)
        EXPECT_THAT(printed(omt::EntityTable::read(text, "t.csv").findings.at(0)),
                    HasSubstr(finding));
}

TEST(HintsTest, PaddingMayCountFromTheStartOfTheValue)
{
    const std::string late = R"({"D":1,"L":{"N":7,"D":[9],"X":1}})";
    const std::string place = R"({"D":2,"W":{"X":1,"Y":1,"Z":1}})";
    const std::string one = " 3f f0 0 0 0 0 0 0";
    const struct
    {
        bool isFromStart;
        std::string json, octets;
        const char* path;
    } cases[] = {
        {false, late,  "1 0 0 0 18 7 0 0 0 0 0 0 1 0 9 0 0 0 0 0 0" + one, "L.X"},
        {true,  late,  "1 0 0 0 13 7 0 0 0 0 0 1 0 9 0 0" + one,           "L.X"},
        {false, place, "2 0 0 0 18" + one + one + one,                     "W.Z"},
        {true,  place, "2 0 0 0 1b 0 0 0" + one + one + one,               "W.Z"},
    };
    const std::vector<omt::Document> documents = {
        {"x.xml", theModel}
    };
    for (const auto& [isFromStart, json, octets, path] : cases)
    {
        omt::CodecOptions options;
        options.isPaddedFromStart = isFromStart;
        const omt::Codec all(omt::readDocuments(documents).model, options);
        const omt::Type type = all.type("Sized");
        const omt::Value value = type.decode(bytes(octets));
        EXPECT_EQ(value.json(), json);
        EXPECT_TRUE(value.isWhole() && value.notes().empty()) << octets;
        Bytes again;
        EXPECT_FALSE(type.encode(json, again));
        EXPECT_EQ(again, bytes(octets));
        EXPECT_EQ(type.field(path).number(bytes(octets)), 1.0);
        EXPECT_EQ(omt::overlays(value).size(), json == place ? 1u : 0u);
    }
}

}  // namespace
