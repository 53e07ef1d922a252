// SPDX-License-Identifier: Apache-2.0
// Runs omt decode and omt encode: what values say, and what is said of bad ones.
#include "toolRun.h"

#include <nlohmann/json.hpp>

#include <cstdlib>

namespace
{

using nlohmann::json;
using testing::HasSubstr;

// A record that begins with its own datatype, and an attribute that another module would define.
constexpr const char* theEndlessModel =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><objects><objectClass>
<name>HLAobjectRoot</name><attribute><name>Far</name><dataType>Elsewhere</dataType></attribute>
</objectClass></objects><dataTypes><fixedRecordDataTypes><fixedRecordData><name>Endless</name>
<field><name>Again</name><dataType>Endless</dataType></field></fixedRecordData>
</fixedRecordDataTypes></dataTypes></objectModel>)";

constexpr const char* theHarbour = " HarbourBase.xml HarbourTraffic.xml --mim ";

/// What the arguments behind the models, and standard input, give on one of the two streams.
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
        write("endless.xml", theEndlessModel);
        write("old.omd", theOldModel);
        write("raw.bin", std::string_view("\0\0\0\2\"\xff", 6));
        write("std.map", "((datatypeMap \"HLAfloat64BE\" \"double\"))");
        write("empty.map", " ; nothing\n");
        write("open.map", "((datatypeMap \"Metres\" \"double\")");
        write("text.map", "Metres double");
        write("wrong.map", "((datatypeMap \"Metres\" \"doubel\") (datatypMap \"A\" \"b\"))");
    }

    /// With the Harbour models and their mapping, unless the arguments name others.
    Outcome runCase(const std::string& command, const Case& one)
    {
        write("input", one.input);
        const bool isOther =
            one.arguments.find("endless.xml") == 0 || one.arguments.find("old.omd") == 0;
        const bool isMapped = isOther || one.arguments.find("--map") != std::string::npos;
        const std::string map = isMapped ? "" : "--map " OMT_EXAMPLES "/../harbour.map ";
        return run(command + (isOther ? " " : theHarbour + map) + one.arguments + " <input",
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

TEST_F(ValueTest, ShowsWhatAValueSays)
{
    // clang-format off
    expectOutput("decode", {
        {"--parameter PortCall.DeclaredCargo 0001 0000 00 00 01 9c 0000026000000025",
         "  Offset  Name              Datatype         Value\n"
         "       0  DeclaredCargo     CargoVariant\n"
         "       0    Kind            CargoKind        Containers\n"
         "       4    ContainerLoad   ContainerCounts\n"
         "       4      TwentyFoot    UnitCount        412\n"
         "       8      FortyFoot     UnitCount        608\n"
         "      12      Refrigerated  UnitCount        37\n"},
        {"--type BerthIdentifier 42 00 00 07",
         "  Offset  Name             Datatype         Value\n"
         "       0  BerthIdentifier  BerthIdentifier\n"
         "       0    Pier           HLAASCIIchar     \"B\"\n"
         "       2    Number         BerthNumber      7\n"},
        {"--attribute Tug.Name 00 00 00 03 00 41 00 0A 00 20 00 00 00 00 00 00",
         "  Offset  Name     Datatype    Value\n"
         "       0  Name[0]  EntityName  \"A\\x0a \"\n"
         "      12  Name[1]  EntityName  \"\"\n"},
        {"--type CargoVariant", "  Offset  Name          Datatype      Value\n"
                                "       0  CargoVariant  CargoVariant\n"
                                "       0    Kind        CargoKind     None\n", "00 00"},
        {"--type BerthIdentifier --no-padding --line 42 00 07", "B 7\n"},
        {"old.omd --parameter Crash.Report 02 01 0007 3FF0000000000000 4000000000000000",
         "  Offset  Name     Datatype   Value\n"
         "       0  Report   Report\n"
         "       0    Kind   KindEnum8  Full\n"
         "       1    Count  octet      1\n"
         "       2    Sizes  short      7\n"
         "       4    At     Place\n"
         "       4      X    double     1\n"
         "      12      Y    double     2\n"},
        {"old.omd --attribute Car.Speed --line 40000000 3F800000", "2 1\n"},
        {"old.omd --type Report --line 01 03 0001 0002 0003", "Brief 3 1[2[3]]\n"},
        {"--type GeocentricPosition --line --map std.map --delimiter , --precision 9 "
         "41 4C C4 58 00 00 00 00 00 00 00 00 00 00 00 00 BF F0 00 00 00 00 00 00",
         "3770544,0,-1\n"},
        {"--type SignalKind --lines --line", "GaleWarning\n7\n", "10\r\n\n07\n"},
        {"--type HLAASCIIstring --file raw.bin --json",
         R"({"text":"\"[\ufffd]","consumed":6,"tree":{"key":"","datatype":"HLAASCIIstring",)"
         R"("offset":0,"value":"","children":[{"key":"HLAASCIIstring","datatype":"HLAASCIIchar",)"
         R"("offset":4,"value":"\"","children":[]},{"key":"HLAASCIIstring",)"
         R"("datatype":"HLAASCIIchar","offset":5,"value":"\ufffd","children":[]}]}})" "\n"},
    });
    // clang-format on
}

TEST_F(ValueTest, SaysWhereAValueEndsTooEarlyAndShowsTheRest)
{
    const Case cut = {"--type WaypointArray 00 00 00 02 00 00 00 00 " +
                          std::string("$(printf '00%.0s' $(seq 38))"),
                      "WaypointArray[1].Y: octet 40: 8 octets needed, 6 left\n"};
    expectMessage("decode", {cut}, 1);
    EXPECT_THAT(runCase("decode", cut).out,
                testing::EndsWith("      32    [1]          GeocentricPosition\n"
                                  "      32      X          Metres              0      metre\n"
                                  "      40      Y          Metres                     metre\n"));
    const json object = json::parse(runCase("decode", {cut.arguments + " --json", ""}).out);
    EXPECT_EQ(object["consumed"], -1);
    EXPECT_EQ(object["tree"]["children"].size(), 2U);

    const std::string none = ": octet 0: 2 octets needed, 0 left\n";
    // clang-format off
    expectMessage("decode", {
        {"--type CargoVariant ''", "CargoVariant.Kind" + none},
        {"--attribute Vessel.Cargo ''", "Cargo.Kind" + none},
        {"--type CargoVariant 00", "CargoVariant.Kind: octet 0: 2 octets needed, 1 left\n"},
        {"--type CargoVariant 00 02", "CargoVariant.LiquidLoad: octet 4: 4 octets needed, 0 left\n"},
        {"--type CargoVariant 0001 0000 00000001 0000", "CargoVariant.ContainerLoad.FortyFoot: "
                                                        "octet 8: 4 octets needed, 2 left\n"},
        {"--type WaypointArray 00 00 02", "WaypointArray: octet 0: 4 octets needed, 3 left\n"},
        {"--type WaypointArray FF FF FF FF", "WaypointArray: octet 0: the count is -1\n"},
        {"--type DraughtArray --lines", "line 1: DraughtArray[1]: octet 8: 8 octets needed, 0 left\n",
         "0000000000000000"},
        {"--type SignalKind 10 00 01", "SignalKind: 2 octets left over at octet 1\n"},
        {"old.omd --type Report 02 01 0007 3FF0", "Report.At.X: octet 4: 8 octets needed, 2 left\n"},
        {"old.omd --type Report 01 02 0007 00", "Report.Sizes[1]: octet 4: 2 octets needed, 1 left\n"},
        {"old.omd --type Report 01 02 0007", "Report.Sizes: octet 4: 2 values needed, 1 found\n"},
        {"old.omd --type Report 01 02 0007 0008", "Report.Pad: octet 6: 2 octets of padding missing\n"},
    }, 1);
    // clang-format on
}

TEST_F(ValueTest, BadInputGetsOneMessageAndStatusOne)
{
    // clang-format off
    expectMessage("decode", {
        {"--type SignalKind 1", "octets: character 1: an odd number of digits"},
        {"--type SignalKind 10 1 0", "octets: character 4: an odd number of digits"},
        {"--type SignalKind 1G", "octets: character 2: \"G\" is no hexadecimal digit\n"},
        {"--type SignalKind --lines", "line 2: octets: character 1: \"x\" is no", "10\nxx\n01"},
        {"--type SignalKind --file none", "none: No such file"},
        {"--type SignalKind --file .", ".: Is a directory\n"},
        {"--type SignalKind --file /dev/zero", "/dev/zero: a device"},
        {"none.xml --type SignalKind 00", "none.xml: no such file"},
        {"--type SignalKnd 00", "no datatype \"SignalKnd\"; did you mean SignalKind"},
        {"--attribute Vesel.Name 00", "no object class \"Vesel\"; did you mean Vessel"},
        {"--attribute Vessel.Nane 00", "HLAobjectRoot.PortEntity.Vessel: no attribute \"Nane\"; "},
        {"--parameter Vessel.Name 00", "no interaction class \"Vessel\"; "},
        {"--type Metres --map none.map 00", "none.map: No such file"},
        {"--type Metres --map . 00", ".: Is a directory\n"},
        {"--type Metres --map empty.map 00", "empty.map: there is no list of mappings"},
        {"--type Metres --map text.map 00", "text.map: there is no list of mappings"},
        {"--type Metres --map open.map 00", "open.map: line 1: "},
    }, 1);
    expectMessage("decode", {
        {"00", "Exactly 1 option"},
        {"--attribute Name 00", "--attribute: \"Name\" is not of the form CLASS.NAME; "},
        {"--type SignalKind --line --json 00", "--line excludes --json"},
        {"--type SignalKind --lines 00", "HEX: "},
        {"--type SignalKind --file raw.bin 00", "HEX: "},
    }, 2);
    // clang-format on
    const Outcome endless = runCase("decode", {"endless.xml --type Endless 00", ""});
    EXPECT_EQ(endless.status, 1);
    EXPECT_THAT(endless.err, HasSubstr("omt: Endless: Stopped at datatype Endless, offset 0: "));
    const Outcome far = runCase("decode", {"endless.xml --attribute HLAobjectRoot.Far 0a fF", ""});
    EXPECT_EQ(far.status, 0);
    EXPECT_THAT(far.out, HasSubstr("0A FF\n"));
    EXPECT_THAT(far.err, HasSubstr("no representation is mapped to Elsewhere: "));
    const std::string noted = runCase("decode", {"--map wrong.map --type SignalKind 00", ""}).err;
    EXPECT_THAT(noted, HasSubstr("wrong.map: \"datatypMap\" begins no mapping"));
    EXPECT_THAT(noted, HasSubstr("\"doubel\"; did you mean double"));
}

TEST_F(ValueTest, EncodesWhatFitsAndRefusesTheRest)
{
    // clang-format off
    expectOutput("encode", {
        {"--type EntityTypeRecord 1.3.78.61.2.0.255", "01 03 00 4E 3D 02 00 FF\n"},
        {"--type BerthIdentifier 'B 7'", "42 00 00 07\n"},
        {"--type SignalKind Distress", "FF\n"},
        {"--type HarbourTime -2", "FF FF FF FF FF FF FF FE\n"},
        {"--type DraughtArray '1[2[-0.1]]'", "3F F0 00 00 00 00 00 00 40 00 00 00 00 00 00 00 "
                                             "BF B9 99 99 99 99 99 9A\n"},
        {"--type Tonnes --text=-inf", "FF 80 00 00\n"},
        {"--type HLAASCIIstring 'HI'", "00 00 00 02 48 49\n"},
        {"--type HLAASCIIstring '[A]'", "00 00 00 02 00 41\n"},
        {"old.omd --type Place '1 -2'", "3F F0 00 00 00 00 00 00 C0 00 00 00 00 00 00 00\n"},
    });
    expectMessage("encode", {
        {"--type GeocentricPosition '1 / abc / 3'", "GeocentricPosition.Y: \"abc\" is not a number"},
        {"--type WaypointArray '1 / 2 / 3[4 / 5 / x]'", "WaypointArray[1].Z: \"x\" is not"},
        {"--type EntityTypeRecord 1.2.3.4.5.6", "EntityTypeRecord.Extra: \"\" is not a whole number"},
        {"--type TypeOctet 256", "TypeOctet: \"256\" is not a whole number from 0 to 255 (byte)\n"},
        {"--type HarbourTime 3000000000", "HarbourTime: \"3000000000\" is not a whole number from"},
        {"--type HLAASCIIchar AB", "HLAASCIIchar: \"AB\" is more than one octet (char)\n"},
        {"--type SignalKind Distres", "SignalKind: no enumerator \"Distres\"; did you mean Dis"},
        {"--type DraughtArray '1[2]'", "DraughtArray: 3 elements needed, 2 found\n"},
        {"--type CargoVariant 'None'", "CargoVariant: CargoVariant is a variant record, which"},
        {"--map empty.map --type Metres 1", "empty.map: "},
        {"--type Metrs 1", "no datatype \"Metrs\"; "},
        {"old.omd --type Place '1 x'", "Place.Y: \"x\" is not a number (double)\n"},
    }, 1);
    expectMessage("encode", {{"--bogus --type Metres 1", "The following argument"}}, 2);
    expectMessage("encode", {{"--type CargoKind Containers", "the octets read back as another"}}, 0);
    // clang-format on
}

TEST_F(ValueTest, ShowsEveryKindOfDeadReckoning)
{
    const char* const models = std::getenv("OMT_MODELS");
    if (!models) GTEST_SKIP() << "OMT_MODELS is not set";
    const std::string head = "decode " + std::string(models) +
                             "/evolved/RPR_FOM_v2.0_1516-2010.xml --mim --attribute "
                             "BaseEntity.Spatial ";
    const struct
    {
        const char* octet;
        int zeros;  // behind the discriminant
        const char* alternative;
        const char* last;
    } cases[] = {
        {"01", 47, "SpatialStatic", "      36      Orientation"    },
        {"02", 59, "SpatialFPW",    "      48      VelocityVector" },
        {"03", 71, "SpatialRPW",    "      60      AngularVelocity"},
        {"04", 83, "SpatialRVW",    "      72      AngularVelocity"},
        {"05", 71, "SpatialFVW",    "      60      Acceleration"   },
        {"08", 83, "SpatialRVB",    "      72      AngularVelocity"},
    };
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.alternative);
        const auto zeros = [](int count)
        { return "$(printf '00%.0s' $(seq " + std::to_string(count) + "))"; };
        const Outcome whole = run(head + one.octet + zeros(one.zeros));
        EXPECT_EQ(whole.status, 0) << whole.err;
        EXPECT_THAT(whole.out, HasSubstr(std::string("\n       8    ") + one.alternative));
        EXPECT_THAT(whole.out, HasSubstr("\n      32      IsFrozen "));
        EXPECT_THAT(whole.out, HasSubstr(std::string("\n") + one.last));
        const Outcome cut = run(head + one.octet + zeros(one.zeros - 1));
        EXPECT_EQ(cut.status, 1);
        EXPECT_THAT(cut.err, HasSubstr(": octet " + std::to_string(one.zeros - 3) +
                                       ": 4 octets needed, 3 left\n"));
    }
}

}  // namespace
