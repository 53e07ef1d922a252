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
            EXPECT_THAT(outcome.err, testing::HasSubstr(one.err));
            EXPECT_EQ(outcome.err.empty(), one.err.empty()) << outcome.err;
            EXPECT_EQ(one.out.empty() ? "" : outcome.out, one.out);
        }
    }
};

// Tables among arguments, which clang-format would break at every text.
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
                             "  1:2:3:4:5:any:any          Ship:Sea:Isle:Tug:Small:Any\n"
                             "  1:2:3:4:5:6:any            Ship:Sea:Isle:Tug:Small:Ox\n"
                             "  9:any:any:any:any:any:any  Rest:Any:Any:Any:Any:Any\n"},
        {"1 --limit 1 | tail -n 1", "  and 2 more\n"},
        {"1:2:3 --limit 1 --json | tr -d ' \\n'",
         R"({"key":"1:2:3:-1:-1:-1:-1","matches":[{"row":"1:2:3:4:5:-1:-1",)"
         R"("names":["Ship","Sea","Isle","Tug","Small","Any"],"country":"Isle"}],"more":2})"},
        {"1:2:3:5:5:6:7", "", "t.csv: no entity type matches 1:2:3:5:5:6:7\n"},
        {"1:256", "", "the key: Domain: \"256\" is"}, {"1::2", "", "the key: Domain: \"\" is no"},
        {"1:1:65535:1:1:1:-2", "", "the key: Extra: \"-2"}, {"1:2:3:4:5:6:7:8", "", "the key: mo"},
    });
}

TEST_F(EntityTest, SaysWhatIsWrongWithATable)
{
    write("bad.csv", theHeader);
    write("odd.csv", theHeader + theRow + "1,Ship\n");
    expectEach("entity ", {
        {"bad.csv 1", "", "bad.csv: error: there is no row after the header ["},
        {"odd.csv 1", "", "odd.csv:3: warning: ", 0}, {"none.csv 1", "", "none.csv: error: cannot be"},
        {". 1", "", ".: error: cannot be read: Is a dir"}, {"/proc/self/mem 1", "", "/proc/self/mem: error: cannot be"},
    });
}

TEST_F(EntityTest, StandsBesideValues)
{
    write("codes.json", R"({"version": 1, "tables": {"K": {"1": "Platform"}}, "numbers": {"TypeOctet": "K"},
        "positions": ["GeocentricPosition"], "texts": ["Nowhere"]})");
    const std::string examples = OMT_EXAMPLES "/../";
    const std::string hints = "--hints " + examples + "harbourHints.json ";
    const std::string table = hints + "--entity-types " + examples + "entity-types.csv ";
    const std::string place = " 41 58 54 A6 40 00 00 00" + std::string(32, '0');
    const std::string type = "--type EntityTypeRecord 01 03 03 E7 01 02 09 05";
    expectEach("decode HarbourBase.xml HarbourTraffic.xml --mim ", {
        {table + "--attribute Tug.EntityType 01 03 03 E7 01 02 09 05 | sed 4,8d",
         "  Offset  Name           Datatype          Value\n"
         "       0  EntityType     EntityTypeRecord  Platform:Surface:Harbourland:Tug:Push boat:9:5\n"
         "       0    EntityKind   TypeOctet         1\n"
         "       7    Extra        TypeOctet         5\n"},
        {table + "--line " + type + " | cut -d ' ' -f 2-", " Platform:Surface:Harbourland:Tug:Push boat:9:5\n"},
        {table + "--json " + type + " | cut -d , -f 8-",
         R"("overlays":[{"path":"","entityType":"Platform:Surface:Harbourland:Tug:Push boat:9:5"}],)"
         R"("octets":8,"left":0,"faults":[],"notes":[]})" "\n"},
        {hints + "--geodetic --type WaypointArray 0000000100000000" + place + " | sed 1,2d",
         "       8    [0]          GeocentricPosition  0.000000000 0.000000000 0.00  degree, metre\n"
         "       8      X          Metres              6378137                       metre\n"
         "      16      Y          Metres              0                             metre\n"
         "      24      Z          Metres              0                             metre\n"},
        {hints + "--type GeocentricPosition --line" + place, "{\"X\":6378137,\"Y\":0,\"Z\":0}\n"},
        {"--hints codes.json --json --type TypeOctet 01",
         R"({"value":1,"overlays":[{"path":"","label":"Platform"}],"octets":1,"left":0,"faults":[],"notes":[]})" "\n",
         "codes.json:2: warning: ", 0},
        {"--hints codes.json -q --type TypeOctet 01 | tail -n 1", "       0  TypeOctet  TypeOctet  1 (Platform)\n"},
        {"--hints none.json " + type, "", "none.json: error: cannot be"},
        {hints + "--entity-types . " + type, "", ".: error: cannot be read"},
    });
}

TEST_F(EntityTest, KnowsTheRecordsOfPublishedModels)
{
    const char* const folder = std::getenv("OMT_MODELS");
    if (!folder) GTEST_SKIP() << "OMT_MODELS is not set";
    const std::string head = "decode --geodetic --entity-types " + std::string(folder) +
                             "/dis/entity-types.csv " + folder;
    const Case type = {"--attribute BaseEntity.EntityType 010100E101010300 | grep -o Platform.*",
                       "Platform:Land:United States:Tank:M1 Abrams:M1A2:0\n"};
    const std::string spatial = "Struct 0100000000000000415854A640000000" + std::string(64, '0');
    const std::string place = "0.000000000 0.000000000 0.00  degree, metre\n";
    expectEach(head + "/evolved/RPR_FOM_v2.0_1516-2010.xml --mim ", {
        type, {"--type SpatialVariant" + spatial + " | grep -o '0[.]0000.*'", place}});
    expectEach(head + "/hla13/RPR2-D17.omd ", {
        type, {"--type SpatialStatic" + spatial.substr(0, 7) + spatial.substr(23) + " | grep -o '0[.]0000.*'",
               place}});
}

}  // namespace
