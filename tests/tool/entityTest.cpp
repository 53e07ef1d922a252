// SPDX-License-Identifier: Apache-2.0
// Runs omt entity, and omt decode with a table: entity types by name, positions in degrees.
#include "toolRun.h"

#include <cstdlib>

namespace
{

const std::string theHeader = "k,kn,d,dn,c,cn,ca,can,s,sn,sp,spn\n";
const std::string theRow = "1,Ship,2,Sea,3,Isle,4,Tug,5,Small,6,Ox\n";

struct Case
{
    std::string arguments, out, err = {};  // err is the beginning of the message
    int status = 1;                        // where there is one
};

class EntityTest : public ToolRun
{
protected:
    void expectEach(const std::string& command, const std::vector<Case>& cases)
    {
        for (const Case& one : cases)
        {
            SCOPED_TRACE(one.arguments);
            const Outcome outcome = run(command + one.arguments, "env RTI_CONFIG=" OMT_EXAMPLES);
            EXPECT_EQ(outcome.status, one.err.empty() ? 0 : one.status);
            EXPECT_THAT(outcome.err, testing::StartsWith(one.err.empty() ? "" : "omt: " + one.err));
            EXPECT_EQ(outcome.err.empty(), one.err.empty()) << outcome.err;
            EXPECT_EQ(one.out.empty() ? "" : outcome.out, one.out);
        }
    }
};

// clang-format off

TEST_F(EntityTest, GivesTheNamesOfAKey)
{
    write("t.csv", theHeader + theRow + "1,Ship,2,Sea,3,Isle,4,Tug,5,Small,8,Mule\n"
                   "1,Ship,2,Sea,3,Isle,4,Tug,5,Small,,\n9,Rest,,,,,,,,,,\n");
    expectEach("entity t.csv ", {
        {"1:2:3:4:5:7:0",
         "  Level        Code  Name\n  Kind         1     Ship\n  Domain       2     Sea\n"
         "  Country      3     Isle\n  Category     4     Tug\n  Subcategory  5     Small\n"
         "  Specific     7     Any\n  Extra        0\n\n"
         "  Row      1:2:3:4:5:any:any\n  Country  Isle\n"},
        {"'1 2: 3.4 : 5 6 7' | grep Row", "  Row      1:2:3:4:5:6:any\n"},
        {"'*:2:any:4:-1:6'", "  Row                        Names\n"
                             "  1:2:3:4:5:6:any            Ship:Sea:Isle:Tug:Small:Ox\n"
                             "  1:2:3:4:5:any:any          Ship:Sea:Isle:Tug:Small:Any\n"
                             "  9:any:any:any:any:any:any  Rest:Any:Any:Any:Any:Any\n"},
        {"1 --limit 1 | tail -n 1", "  and 2 more\n"},
        {"1:2:3 --limit 1 --json | tr -d ' \\n'",
         R"({"key":"1:2:3:-1:-1:-1:-1","matches":[{"row":"1:2:3:4:5:6:-1",)"
         R"("names":["Ship","Sea","Isle","Tug","Small","Ox"],"country":"Isle"}],"more":2})"},
        {"1:2:3:5:5:6:7", "", "t.csv: no entity type matches 1:2:3:5:5:6:7\n"},
        {"1:256", "", "the key: Domain: \"256\" is"}, {"1::2", "", "the key: Domain: \"\" is no"},
        {"1:1:65535:1:1:1:-2", "", "the key: Extra: \"-2"}, {"1:2:3:4:5:6:7:8", "", "the key: mo"},
    });
}

TEST_F(EntityTest, SaysWhatIsWrongWithATable)
{
    const std::string good = theHeader + theRow;
    const std::string row = good.substr(0, good.size() - 1);
    const struct { const char* what; std::string content; int status; std::string err; } cases[] = {
        {"empty", "", 1, "bad.csv: the file"}, {"no row", theHeader, 1, "bad.csv: there is no"},
        {"zero octet", good + std::string(1, '\0'), 1, "bad.csv:3: an octet of zero"},
        {"no commas", theHeader + "1;Ship;2;Sea\n", 1, "bad.csv: no row has twelve columns"},
        {"more", row + ",x\n", 0, ""}, {"mark", "\xEF\xBB\xBF" + good, 0, "bad.csv:1: a byte"},
        {"no header", theRow + theRow, 0, "bad.csv:1: the first line is taken for a header"},
        {"carriage returns", row + "\r\n\r\n", 0, "bad.csv:2: the line ends with a carriage"},
        {"short", good + "1,Ship\n", 0, "bad.csv:3: fewer than twelve columns"},
        {"quotes", good + "1,A,2,B,3,C,4,D,5,E,7,\"F, G\"\n", 0, "bad.csv:3: a column in quotes"},
        {"word", good + "1,A,2x,B,,,,,,,,\n", 0, "bad.csv:3: Domain: \"2x\" is no number"},
        {"range", good + "1,A,2,B,3,C,4,D,5,E,256,F\n", 0, "bad.csv:3: Specific: 256 is not"},
        {"long", good + std::string(10'000'000, '1') + ",A\n", 0, "bad.csv:3: fewer than twelve"},
    };
    write("good.csv", good);
    const std::string out = run("entity good.csv --json 1:2:3:4:5:6:0").out;
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.what);
        write("bad.csv", one.content);
        expectEach("entity bad.csv --json 1:2:3:4:5:6:0",
                   {{"", one.status == 0 ? out : "", one.err, one.status}});
    }
    expectEach("entity ", {{"none.csv 1", "", "none.csv: No such"}, {". 1", "", ".: Is a dir"}});
}

TEST_F(EntityTest, DecodesByNameAndInDegrees)
{
    const std::string table = "--entity-types " OMT_EXAMPLES "/../entity-types.csv ";
    const std::string type = table + "--entity-type-datatype EntityTypeRecord ";
    const std::string places = "--geodetic --position-datatype GeocentricPosition --type Waypoint";
    const std::string place = " 41 58 54 A6 40 00 00 00" + std::string(32, '0');
    expectEach("decode HarbourBase.xml HarbourTraffic.xml --mim ", {
        {type + "--attribute Tug.EntityType 01 03 03 E7 01 02 09 05 | sed 3,4d",
         "  Offset  Name           Datatype          Value\n"
         "       0  EntityType     EntityTypeRecord  Platform:Surface:Harbourland:Tug:"
         "Push boat:9:5\n"
         "       2    Country                        Harbourland\n"
         "       4    Category                       Tug\n"
         "       5    SubCategory                    Push boat\n"
         "       6    Specific                       Any\n"
         "       7    Extra                          5\n"},
        {type + "--type EntityTypeRecord --line --entity-delimiter / 02 03 03 E7 01 02 09 05",
         "2/3/999/1/2/9/5\n"},
        {places + "Array --line 00 00 00 02 00000000" + place + place, "0, 0, 0[0, 0, 0]\n"},
        {places + "Array 0000000100000000" + place + " | tail -n 4",
         "       8    [0]          GeocentricPosition  0, 0, 0\n"
         "       8      Latitude                       0        degree\n"
         "      16      Longitude                      0        degree\n"
         "      24      Altitude                       0        metre\n"},
        {places + "Array 0000000100000000 41", "", "WaypointArray[0]: octet 8: 24 octets needed, "},
        {table + "--entity-type-datatype A --type B", "", "--entity-type-datatype: no datatype"},
        {"--geodetic --position-datatype SignalKind --type B", "",
         "--position-datatype: the size of SignalKind is 1 and not 24 octets\n"},
        {"--geodetic --type SignalKind --line 10", "GaleWarning\n",
         "--position-datatype: no datatype \"WorldLocationStruct\"; did you mean ", 0},
    });
}

TEST_F(EntityTest, KnowsTheRecordsOfPublishedModels)
{
    const char* const folder = std::getenv("OMT_MODELS");
    if (!folder) GTEST_SKIP() << "OMT_MODELS is not set";
    const std::string head = "decode --geodetic --line --entity-types " + std::string(folder) +
                             "/dis/entity-types.csv " + folder;
    const Case type = {"--attribute BaseEntity.EntityType 010100E101010300",
                       "Platform:Land:United States:Tank:M1 Abrams:M1A2:0\n"};
    const std::string spatial = "Struct 0100000000000000415854A640000000" + std::string(64, '0');
    expectEach(head + "/evolved/RPR_FOM_v2.0_1516-2010.xml --mim ", {
        type, {"--type SpatialVariant" + spatial, "Static 0, 0, 0 False 0 0 0\n"}});
    expectEach(head + "/hla13/RPR2-D17.omd ", {
        type, {"--type SpatialStatic" + spatial.substr(0, 7) + spatial.substr(23),
               "0, 0, 0 false 0[0[0]] 0 0 0\n"}});
}

}  // namespace
