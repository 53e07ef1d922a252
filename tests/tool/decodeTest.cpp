// SPDX-License-Identifier: Apache-2.0
// Runs omt decode, omt encode and omt layout: what values say, and what is said of bad ones.
#include "toolRun.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <sstream>

namespace
{

using nlohmann::json;
using testing::HasSubstr;

// An array of records of open size, a variant with a length, and what no codec knows.
constexpr const char* theOddModel =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><dataTypes><simpleDataTypes><simpleData><name>Octet</name>
<representation>HLAoctet</representation></simpleData></simpleDataTypes><enumeratedDataTypes>
<enumeratedData><name>E</name><representation>HLAoctet</representation><enumerator><name>One</name>
<value>1</value><value>2</value></enumerator></enumeratedData></enumeratedDataTypes><arrayDataTypes><arrayData>
<name>Rows</name><dataType>Row</dataType><cardinality>Dynamic</cardinality>
<encoding>HLAvariableArray</encoding></arrayData><arrayData><name>Set</name><dataType>Octet</dataType>
<cardinality>Dynamic</cardinality><encoding>of tuples</encoding></arrayData></arrayDataTypes>
<fixedRecordDataTypes><fixedRecordData><name>Row</name><encoding>HLAfixedRecord</encoding><field>
<name>Kind</name><dataType>E</dataType></field><field><name>More</name><dataType>V</dataType></field>
</fixedRecordData></fixedRecordDataTypes><variantRecordDataTypes><variantRecordData><name>V</name>
<discriminant>D</discriminant><dataType>E</dataType><alternative><enumerator>One</enumerator>
<name>F</name><dataType>HLAfloat32BE</dataType></alternative>
<encoding>RPRextendedVariantRecord</encoding></variantRecordData></variantRecordDataTypes></dataTypes>
</objectModel>)";

/// What the arguments after the models, and standard input, give on one of the two streams.
struct Case
{
    std::string arguments;
    std::string text;
    std::string input = {};
};

class ValueTest : public ToolRun
{
protected:
    void SetUp() override
    {
        write("odd.xml", theOddModel);
        write("old.omd", theOldModel);
        write("raw.bin", std::string_view("\0\0\0\2\"\xff", 6));
        write("value.json", "{\"X\": 1,\n \"Y\": true}");
        write("far.xml",
              "<objectModel><objects><objectClass><name>HLAobjectRoot</name><attribute>"
              "<name>Far</name><dataType>Else</dataType></attribute></objectClass>"
              "</objects></objectModel>");
    }

    /// With the Harbour models, unless the arguments name others.
    Outcome runCase(const std::string& command, const Case& one)
    {
        write("input", one.input);
        const bool isOther = one.arguments.substr(0, one.arguments.find(' ')).find('.') < 9;
        const char* const models = isOther ? " " : " HarbourBase.xml HarbourTraffic.xml --mim ";
        const bool isPiped = one.arguments.find(" | ") != std::string::npos;
        return run(command + models + one.arguments + (isPiped ? "" : " <input"),
                   "env RTI_CONFIG=" OMT_EXAMPLES);
    }

    /// Each case is good, and its text is all that is printed.
    void expectOutput(const std::string& command, const std::vector<Case>& cases)
    {
        for (const Case& one : cases)
        {
            SCOPED_TRACE(one.arguments);
            const Outcome outcome = runCase(command, one);
            EXPECT_EQ(outcome.status, 0);
            EXPECT_EQ(outcome.err, "");
            EXPECT_EQ(outcome.out, one.text);
        }
    }

    /// Each case ends with this status and one message that has the text.
    void expectMessage(const std::string& command, const std::vector<Case>& cases, int status)
    {
        for (const Case& one : cases)
        {
            SCOPED_TRACE(one.arguments);
            const Outcome outcome = runCase(command, one);
            EXPECT_EQ(outcome.status, status);
            EXPECT_THAT(outcome.err, HasSubstr("omt: " + one.text));
            EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
        }
    }
};

// Tables among arguments, which clang-format would break at every text.
// clang-format off
TEST_F(ValueTest, ShowsWhatAValueSays)
{
    const std::string rows = "$(printf '020000000700000000000000%.0s' $(seq 11))020000000700000000";
    const std::string zeros = "$(printf '00%.0s' $(seq 80))";
    expectOutput("decode", {
        {"--hex --parameter PortCall.DeclaredCargo 0001 0000 00 00 01 9c 0000026000000025",
         "  Offset  Octets       Name              Datatype         Value\n"
         "       0               DeclaredCargo     CargoVariant\n"
         "       0  00 01          Kind            CargoKind        Containers\n"
         "       4                 ContainerLoad   ContainerCounts\n"
         "       4  00 00 01 9C      TwentyFoot    UnitCount        412\n"
         "       8  00 00 02 60      FortyFoot     UnitCount        608\n"
         "      12  00 00 00 25      Refrigerated  UnitCount        37\n"},
        {"--member Tug.Name 00 00 00 03 00 41 00 0A 00 1B", "  Offset  Name  Datatype    Value\n"
                                                            "       0  Name  EntityName  \"A\\u000a\\u001b\"\n"},
        {"odd.xml -q --type Row 02 00 00 00 07 00 00 00 01 2a", "  Offset  Name        Datatype  Value\n"
                                                                "       0  Row         Row\n"
                                                                "       0    Kind      E         One (2)\n"
                                                                "       4    More      V\n"
                                                                "       4      D       E         7\n"
                                                                "       9      octets            2A\n"},
        {"odd.xml -q --type Rows 0000000c " + rows + " | sed -n '2p;$p'",
         "       0  Rows      Rows      12 elements\n"
         "     100    ...               4 more, which --all shows\n"},
        {"--hex --type HLAopaqueData 00000002 0a ff",
         "  Offset  Octets             Name           Datatype       Value\n"
         "       0  00 00 00 02 0A FF  HLAopaqueData  HLAopaqueData  0A FF\n"},
        {"--type EntityName 00000028" + zeros + " | tail -n 1",
         "       0  EntityName  EntityName  \"\\u0000\\u0000\\u0000\\u0000\\u0000\\u0000\\u0000\\u0000\\u0000\\u..."
         "\" (40 characters)\n"},
        {"old.omd --parameter Crash.Report 02 01 0007 3FF0000000000000 7FF0000000000001",
         "  Offset  Name     Datatype   Value\n"
         "       0  Report   Report\n"
         "       0    Kind   KindEnum8  Full\n"
         "       1    Count  octet      1\n"
         "       2    Sizes  short      1 element\n"
         "       2      [0]  short      7\n"
         "       4    Pad    octet\n"
         "       4    At     Place\n"
         "       4      X    double     1\n"
         "      12      Y    double     NaN (7F F0 00 00 00 00 00 01)\n"},
        {"old.omd --attribute Car.Speed --line 40000000 3DCCCCCD", "[2,0.1]\n"},
        {"--type Metres --line 7f f0 00 00 00 00 00 00", "\"Infinity\"\n"},
        {"--class Vessel 00 00 00 01 | head -n 3", "  Member   Datatype     Value\n"
                                                "  State    VesselState  \"AtAnchor\"\n"
                                                "  Heading  Degrees      1e-45\n"},
        {"--type SignalKind --lines --line", "\"GaleWarning\"\n7\n", "10\r\n\n07\n"},
        {"--type HLAASCIIstring --file raw.bin --json",
         "{\"value\":\"\\\"ÿ\",\"octets\":6,\"left\":0,\"faults\":[],\"notes\":[]}\n"},
        {"--type BerthIdentifier --json --file -",
         "{\"value\":{\"Pier\":66,\"Number\":7},\"octets\":4,\"left\":0,\"faults\":[],\"notes\":[{\"what\":"
         "\"padding is not zero\",\"path\":\"Number\",\"offset\":1}]}\n", "B\1" + std::string("\0\7", 2)},
    });
    EXPECT_THAT(runCase("decode", {"--type DraughtArray " + zeros, ""}).out, HasSubstr("3 elements"));
}

TEST_F(ValueTest, SaysWhereAValueEndsTooEarlyAndShowsTheRest)
{
    const Case cut = {"--type WaypointArray 00 00 00 02 00 00 00 00 " +
                          std::string("$(printf '00%.0s' $(seq 38))"), ""};
    const json object = json::parse(runCase("decode", {cut.arguments + " --json", ""}).out);
    EXPECT_EQ(object, json::parse(R"({"octets":0,"left":46,"notes":[],"faults":[{"what":
        "2 elements need 52 octets, 42 left","path":"","offset":0,"needed":52,"left":42}]})"));
    expectMessage("decode", {
        {"--type CargoVariant ''", "CargoVariant.Kind: octet 0: 2 octets needed, 0 left\n"},
        {"--type CargoVariant 00 02", "CargoVariant.LiquidLoad: octet 2: 6 octets needed, 0 left\n"},
        {"--member PortCall.DeclaredCargo 0001 0000 00000001 0000",
         "DeclaredCargo.ContainerLoad.FortyFoot: octet 8: 4 octets needed, 2 left\n"},
        {"--type WaypointArray FF FF FF FF", "WaypointArray: octet 0: the count is negative\n"},
        {"--type DraughtArray --lines", "line 1: DraughtArray[1]: octet 8: 8 octets needed, 0 left\n",
         "0000000000000000"},
        {"--type SignalKind 10 00 01", "SignalKind: 2 octets left over at octet 1\n"},
        {"old.omd --type Report 01 02 0007 00", "Report.Sizes"},
    }, 1);
}

TEST_F(ValueTest, BadInputGetsOneMessage)
{
    expectMessage("decode", {
        {"--type SignalKind --file none", "none: No such file"},
        {"--type SignalKind --file input", "SignalKind: 1 octet left over at octet 1; --file takes octets as", "10"},
        {"--type SignalKind --file /dev/zero", "/dev/zero: a device"},
        {"--type SignalKnd 00", "no datatype \"SignalKnd\"; did you mean SignalKind"},
        {"--member Vesel.Name 00", "\"Vesel.Name\": no class \"Vesel\"; did you mean Vessel"},
        {"--member Name 00", "\"Name\" is not of the form CLASS.NAME; did you mean "},
        {"--attribute Vessel.Nane 00", "\"Vessel.Nane\": no attribute \"Nane\"; did you mean Name"},
        {"--class Vesel 00", "no class \"Vesel\"; did you mean Vessel"},
        {"--class Vessel 00", "the octets are no whole value of any member of Vessel; "},
        {"--parameter Vessel.Name 00", "\"Vessel.Name\": no interaction class \"Vessel\"\n"},
    }, 1);
    EXPECT_THAT(run("decode old.omd ./input --type octet").err, HasSubstr("omt: octets in a file are named with"));
    expectMessage("decode", {
        {"00", "one of --member, --attribute, --parameter, --type, --class or"}, {"--attribute .Name 00", "--attribute: \".Name\" is not of the form "},
        {"--type SignalKind --line --json 00", "--line excludes --json; see omt decode --help\n"},
        {"--type SignalKind --file ''", "--file: the name of a file is empty"},
        {"--type SignalKind --lines 00", "--lines reads from a file"},
        {"--type SignalKind --file raw.bin 00", "octets stand in the arguments and in a file"},
        {"--type SignalKind 00 B.xml", "\"B.xml\" is no octet; files of the model stand before the octets"},
        {"--type SignalKind - -", "standard input can be read only once; see omt decode --help"},
        {"--type SignalKind -", "standard input can be read only once"},
    }, 2);
    expectMessage("encode", {
        {"--type GeocentricPosition --file value.json", "value.json:2:7: Y: "},
        {"--type GeocentricPosition '{\"X\": 1, \"Q\": 2}'", "JSON:1:10: no field is called \"Q\""},
        {"--type TypeOctet 256", "JSON:1:1: "}, {"--type SignalKind Distres", "JSON:1:1: \"Distres\" is no"},
        {"--type DraughtArray", "-:1:5: 2 elements, 3 are needed", "[1, 2]"},
        {"--type BerthIdentifier --from 42000007 --set Nmber=8", "--set Nmber: no field \"Nmber\"; did you mean Number"},
        {"--type BerthIdentifier --from 4200 --set Number=8", "--from: BerthIdentifier.Number: octet 2: "},
    }, 1);
    EXPECT_THAT(run("encode odd.xml value.json --type Row").err, HasSubstr("; a value in a file is named with --file"));
    expectMessage("encode", {
        {"--bogus --type Metres 1", "no option"}, {"--type Metres 1 2", "\"2\" is too much: "},
        {"--type Metres --set X=1 --file a", "--file excludes --set"}, {"--type Metres --text=1 1", "\"1\" is too"},
        {"--type Metres --from 00 --set 1", "--set: \"1\" is not of the form PATH=VALUE"},
    }, 2);
    expectMessage("layout", {{"SignalKind --type SignalKind", "exactly one of TYPE, --type, "}, {"", "exactly one of"},
                             {"-q Vessel.Cargo", "\"Vessel.Cargo\" is taken for a file; "}}, 2);
    EXPECT_THAT(run("decode Harbour --type A 00").err, HasSubstr("is written ./NAME"));
    const Outcome odd = run("decode odd.xml --type Set 0a fF");
    EXPECT_EQ(odd.status, 0);
    EXPECT_THAT(odd.err, HasSubstr("the array \"Set\" cannot be decoded: its encoding is unknown"));
    EXPECT_THAT(run("decode odd.xml --type Rows 00000000").err, testing::Not(HasSubstr("Set")));
    write("new.xml", "<objectModel xmlns=\"http://standards.ieee.org/IEEE1516-2025\"/>");
    EXPECT_THAT(run("decode odd.xml new.xml -v --type E 01").err, HasSubstr("[mixed-editions]"));
    EXPECT_THAT(run("decode odd.xml new.xml --type E 01").err, testing::Not(HasSubstr("[mixed-editions]")));
    EXPECT_THAT(run("decode far.xml --member HLAobjectRoot.Far 00").err, HasSubstr("unknown datatype \"Else\""));
}

TEST_F(ValueTest, EncodesWhatJsonSaysAndChangesWhatIsNamed)
{
    expectOutput("encode", {
        {"--type BerthIdentifier '{\"Number\": 7, \"Pier\": 66}'", "42 00 00 07\n"},
        {"--member Berth.Identifier --from '42 01 00 07' --set Number=8", "42 01 00 08\n"},
        {"--type SignalKind Distress", "FF\n"}, {"--type HarbourTime -2", "FF FF FF FF FF FF FF FE\n"},
        {"--type DraughtArray '[1,2,-0.1]'", "3F F0 00 00 00 00 00 00 40 00 00 00 00 00 00 00 "
                                             "BF B9 99 99 99 99 99 9A\n"},
        {"--type Tonnes --text=-Infinity", "FF 80 00 00\n"}, {"--type Tonnes 1.5", "3F C0 00 00\n"},
        {"--type HLAASCIIstring 'H I'", "00 00 00 03 48 20 49\n"},
        {"--type HLAASCIIstring '\"[./]\"'", "00 00 00 04 5B 2E 2F 5D\n"},
        {"--type CargoVariant", "00 00\n", "{\"Kind\":\"None\"}"},
        {"--parameter PortCall.DeclaredCargo --from 0000 --set Kind=Containers --set ContainerLoad.FortyFoot=1",
         "00 01 00 00 00 00 00 00 00 00 00 01 00 00 00 00\n"},
        {"--member Vessel.Cargo --set Kind=LiquidBulk --set LiquidLoad=3000", "00 02 00 00 45 3B 80 00\n"},
        {"old.omd --type Place '{\"X\":1,\"Y\":-2}'", "3F F0 00 00 00 00 00 00 C0 00 00 00 00 00 00 00\n"},
    });
}

TEST_F(ValueTest, ShowsLayouts)
{
    expectOutput("layout", {
        {"-q BerthNumber", "  Offset  Octets  Boundary  Padding  Name         Datatype     Remark\n"
                           "  0       2       2         0        BerthNumber  BerthNumber  unsigned, 16 bits, big-endian\n"},
        {"odd.xml -q Row",
         "  Offset  Octets   Boundary  Padding  Name    Datatype      Remark\n"
         "  0       9 to 13  4         0        Row     Row\n"
         "  0       1        1         0          Kind  E             unsigned, 8 bits\n"
         "  4       5 to 9   4         3          More  V             the length of the alternative at 1\n"
         "  0       1        1         0            D   E             discriminant; unsigned, 8 bits\n"
         "  5       4        4         0            F   HLAfloat32BE  alternative of One, One; floating point, 32 bits\n"},
    });
    json shown = json::parse(runCase("layout", {"--member PortCall.DeclaredCargo --json", ""}).out);
    EXPECT_EQ(shown["parts"][1]["name"], "ContainerLoad");
    EXPECT_EQ(shown["parts"][1]["offset"], 4);
    EXPECT_EQ(shown["parts"][1]["padding"], 2);
    EXPECT_EQ(shown["parts"][1]["parts"][2]["name"], "Refrigerated");
    EXPECT_EQ(shown["leastSize"], 2);
    EXPECT_FALSE(shown.contains("greatestSize"));
}

TEST_F(ValueTest, DecodesARecordingInOrderOnManyThreads)
{
    constexpr int theRows = 60000;
    std::string rows = "class,member,octets,time\n";
    for (int i = 0; i < theRows; ++i)
        rows += std::string("PortEntity,Name,0000000100") + (i % 100 == 7 ? "4," : "41,") +
                std::to_string(i) + '\n';
    write("rows.csv", rows);
    const std::string command = "decode HarbourBase.xml --mim --updates ";
    const Outcome outcome = run(command + "rows.csv --jobs 3", "env RTI_CONFIG=" OMT_EXAMPLES);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "omt: 60000 rows, 600 with a fault\n");
    EXPECT_EQ(outcome.out, run(command + "- --jobs 1 <rows.csv", "env RTI_CONFIG=" OMT_EXAMPLES).out);
    std::istringstream lines(outcome.out);
    std::string line;
    for (int i = 0; i < theRows && std::getline(lines, line); ++i)
    {
        const json row = json::parse(line);
        ASSERT_EQ(row["time"], i);
        ASSERT_EQ(row.contains("fault"), i % 100 == 7) << line;
    }
    // Who closes the pipe has seen enough.
    EXPECT_EQ(run(command + "rows.csv | head -n 1", "env RTI_CONFIG=" OMT_EXAMPLES).err.find("pipe"),
              std::string::npos);
    EXPECT_EQ(run(command + "rows.csv 41").status, 2);
    EXPECT_EQ(run(command + "rows.csv --csv").status, 2);
}

TEST_F(ValueTest, DecodesPublishedModels)
{
    const char* const folder = std::getenv("OMT_MODELS");
    if (!folder) GTEST_SKIP() << "OMT_MODELS is not set";
    const std::string models = std::string(folder) + "/evolved/";
    const std::string rpr = models + "RPR_FOM_v2.0_1516-2010.xml --mim --line --member ";
    const struct { std::string arguments, out; int status; } cases[] = {
        {rpr + "BaseEntity.IsPartOf 00 01 00 02 00 03 48 4c 41 34 32 00 00 03 00 02 00 02 00 00 00 10 00 00 "
         "3f c0 00 00 c0 00 00 00 3f 00 00 00",
         R"({"HostEntityIdentifier":{"FederateIdentifier":{"SiteID":1,"ApplicationID":2},"EntityNumber":3},)"
         R"("HostRTIObjectIdentifier":"HLA42","Relationship":{"Nature":"FuelCarriedAsCargo","Position":"Inside"},)"
         R"("NamedLocation":{"StationNumber":2,"StationName":{"StationName":"OnStationXYZ","RelativeLocation":)"
         R"({"BodyXDistance":1.5,"BodyYDistance":-2,"BodyZDistance":0.5}}}})", 0},
        {rpr + "SetData.VariableDatumSet 00 00 00 01 00 00 00 00 00 00 27 10 00 00 00 40 00 00 00 01 "
         "00 00 00 00 01 02 03 04 05 06 07 08",
         R"([{"DatumID":"Entity_Identification","DatumLength":64,"DatumValue":[72623859790382856]}])", 0},
        {rpr + "BaseEntity.Spatial 0f 00 00 00", "", 1},
        {rpr + "PhysicalEntity.Marking 01 48 4c 41 00 00 00 00 00 00 00 00",
         R"({"MarkingEncodingType":"ASCII","MarkingData":"HLA"})", 0},
        {models + "RestaurantFOMmodule.xml --mim --line --member Waiter.Efficiency 00 00 00 02 00 00 00 05",
         R"({"ValIndex":"Journeyman","Rating":5})", 0},
    };
    for (const auto& one : cases)
    {
        const Outcome outcome = run("decode " + one.arguments);
        EXPECT_EQ(outcome.out, one.out + '\n') << outcome.err;
        EXPECT_EQ(outcome.status, one.status);
    }
    EXPECT_EQ(run("encode " + models + "RPR_FOM_v2.0_1516-2010.xml --mim --member BaseEntity.Spatial --from "
                  "01$(printf '00%.0s' $(seq 47)) --set SpatialStatic.Orientation.Psi=0.5 | cut -c 100-130").out,
              "00 00 00 3F 00 00 00 00 00 00 0\n");
}
// clang-format on

}  // namespace
