// SPDX-License-Identifier: Apache-2.0
// Runs the example host: what libomtReader gives for files, octets and texts, seen from outside.
#include "support.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace
{

struct Case
{
    std::string arguments;
    std::string text;  // all that is printed, or the beginning of it where a value is long
    int status = 0;
};

const std::string theHarbour = " HarbourBase.xml HarbourTraffic.xml --mim --map ../harbour.map ";

/// Runs the host in the folder of the sample models; a case may end in what a shell redirects.
void expectEach(const std::string& head, const std::vector<Case>& cases)
{
    for (const Case& one : cases)
    {
        SCOPED_TRACE(one.arguments);
        const std::string command =
            "cd " OMT_EXAMPLES "/models && 2>/dev/null " OMT_HOST " " + head;
        FILE* const output = popen((command + one.arguments).c_str(), "r");
        ASSERT_TRUE(output);
        std::string text;
        for (int c; (c = std::fgetc(output)) != EOF;) text += static_cast<char>(c);
        EXPECT_EQ(WEXITSTATUS(pclose(output)), one.status);
        const bool isWhole = !one.text.empty() && one.text.back() == '\n';
        EXPECT_EQ(isWhole ? text : text.substr(0, one.text.size()), one.text);
    }
}

// Tables among arguments, which clang-format would break at every text.
// clang-format off

TEST(OmtHostTest, DecodesToALine)
{
    expectEach("decode" + theHarbour, {
        {"--parameter PortCall.DeclaredCargo 0001 0000 0000019c 00000260 00000025",
         "Containers 412 608 37\n"},
        {"--type BerthIdentifier 42 00 00 07", "B 7\n"},
        {"--type BerthIdentifier --no-padding 420007", "B 7\n"},
        {"--type SignalKind 10", "GaleWarning\n"},
        {"--type SignalKind 1000", "GaleWarning\n", 1},
        {"--type CargoVariant 0002", "LiquidBulk 0\n", 1},
        {"--type WaypointArray FFFFFFFF", "\n", 1},
        {"--attribute PortEntity.Position 414CC458 00000000 0000000000000000 BFF0000000000000",
         "3.7705e+06 / 0 / -1\n"},
    });
    expectEach("decode Harbour.omd ", {
        {"--type CargoVariant 0001 0000019c 00000260 00000025", "Containers 412 608 37\n"},
    });
}

TEST(OmtHostTest, DecodesToATree)
{
    expectEach("decode --json" + theHarbour, {
        {"--type BerthIdentifier 42000007",
         R"({"text":"B 7","consumed":4,"tree":{"key":"","datatype":"BerthIdentifier","offset":0,)"
         R"("value":"","children":[{"key":"Pier","datatype":"HLAASCIIchar","offset":0,)"
         R"("value":"B","children":[]},{"key":"Number","datatype":"BerthNumber","offset":2,)"
         R"("value":"7","children":[]}]}})" "\n"},
        {"--attribute Tug.Name 00000001000A 0000 00000000",
         R"({"text":"\n  ","consumed":12,"tree":{"key":"Name","datatype":"EntityName",)"
         R"("offset":0,"value":"","children":[{"key":"EntityName","datatype":"HLAunicodeChar",)"
         R"("offset":4,"value":"\n","children":[]}],"elements":[{"key":"Name",)"
         R"("datatype":"EntityName","offset":8,"value":"","children":[]}]}})" "\n"},
        {"--type HLAASCIIstring 0000000222ff",
         R"({"text":"\"[\ufffd]","consumed":6,"tree":{"key":"","datatype":"HLAASCIIstring",)"},
        {"--attribute Vessel.Cargo ''", R"({"text":"","consumed":0,"tree":null})" "\n"},
        {"--type WaypointArray FFFFFFFF",
         R"({"text":"","consumed":-1,"tree":{"key":"","datatype":"WaypointArray","offset":0,)", 1},
    });
}

TEST(OmtHostTest, EncodesWritesAndShows)
{
    expectEach("encode" + theHarbour, {
        {"--type EntityTypeRecord 1.3.78.61.2.0.255", "01 03 00 4E 3D 02 00 FF\n"},
        {"--type BerthIdentifier 'B 7'", "42 00 07\n"},
        {"--type DraughtArray '1[2[-0.5]]'",
         "3F F0 00 00 00 00 00 00 40 00 00 00 00 00 00 00 BF E0 00 00 00 00 00 00\n"},
        {"--attribute Vessel.Cargo 'None'", "\n"},
    });
    expectEach("", {
        {"convert Harbour.omd | grep -c '<objectClass>'", "8\n"},
        {"convert HarbourBase.xml > /dev/full", "", 1},
        {"show HarbourTraffic.xml | grep -A 2 ^Vessel",
         "Vessel below PortEntity\n    CallSign: HLAASCIIstring\n    State: VesselState\n"},
    });
}

TEST(OmtHostTest, SaysWhatItCannotDo)
{
    expectEach("", {
        {"2>&1", "omtHost: usage: omtHost show", 1},
        {"decode HarbourBase.xml --type 2>&1", "omtHost: usage: ", 1},
        {"decode HarbourBase.xml --type SignalKind 1 2>&1", "omtHost: \"1\" is not pairs of", 1},
        {"decode HarbourBase.xml --type SignalKind 1g 2>&1", "omtHost: \"1g\" is not pairs", 1},
        {"decode HarbourBase.xml --attribute Berth.Nam 00 2>&1 | tail -n 1", "omtHost: the model has no B"},
        {"decode HarbourBase.xml --map none.map 2>&1", "omtHost: none.map: the mapping cannot", 1},
        {"show none.xml 2>&1", "omtHost: the model cannot be read: ", 1},
        {"show ../harbour.map 2>&1", "omtHost: Could not find ObjectModel tag\n", 1},
        {"show HarbourBase.xml Harbour-2000.xml 2>&1", "omtHost: the model cannot be read: ", 1},
    });
}

TEST(OmtHostTest, DecodesPublishedModels)
{
    const char* const folder = std::getenv("OMT_MODELS");
    if (!folder) GTEST_SKIP() << "OMT_MODELS is not set";
    const std::string models = "decode --json " + std::string(folder);
    const std::string zeros(94, '0');
    expectEach(models + "/evolved/RPR_FOM_v2.0_1516-2010.xml --mim ", {
        {"--attribute BaseEntity.Spatial 01" + zeros,
         R"({"text":"Static 0 0 0 False 0 0 0","consumed":48,"tree":{"key":"Spatial",)"},
        {"--attribute BaseEntity.Spatial 0f000000",
         R"({"text":"15 Other Other Other","consumed":4,"tree":{"key":"Spatial",)"},
        {"--attribute BaseEntity.EntityType 010100E101010300",
         R"({"text":"1 1 225 1 1 3 0","consumed":8,"tree":{"key":"EntityType",)"},
    });
    expectEach(models + "/hla13/RPR2-D17.omd ", {
        {"--type SpatialStaticStruct 415854A640000000" + zeros.substr(0, 64),
         R"({"text":"6.3781e+06 0 0 false 0[0[0]] 0 0 0","consumed":40,"tree":{"key":"",)"},
    });
}

// clang-format on

}  // namespace
