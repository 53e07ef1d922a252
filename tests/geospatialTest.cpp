// SPDX-License-Identifier: Apache-2.0
// Entity types, positions, orientations and velocities: alone, and as parts of values.
#include "geometry/dtAngle.h"
#include "geometry/dtCoordTransform.h"
#include "modelText.h"
#include "omtReader/altVelocityDatatypeRep.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/disDictionary.h"
#include "omtReader/entityTypeDatatypeRep.h"
#include "omtReader/latLongCoordinatesDatatypeRep.h"
#include "omtReader/stringTree.h"
#include "omtReader/topoCoordinateDatatypeRep.h"

#include <GeographicLib/LocalCartesian.hpp>

#include <cmath>
#include <map>
#include <random>

namespace
{

using Earth = GeographicLib::Geocentric;
using Tree = std::unique_ptr<DtStringTree>;

/// A dictionary with a row of each kind.
struct Dictionary : DtDisDictionary
{
    Dictionary()
    {
        const TemporaryFolder folder;
        const char* const rows = "\n1,P,1,L,225,C,1,T,1,H,3,X\n1,P,1,L,225,C,,,,\n1,,2,A";
        loadFromFile(folder.write("table.csv", rows), false);
    }
    ~Dictionary() override { deleteEnumerationEntries(); }
};

/// "key@offset=text/datatype" of each node, of the datatype only the first letter.
std::string outline(const DtStringTree* node)
{
    std::string text;
    for (; node; node = node->nextSibling())
    {
        text += node->key().str() + '@' + std::to_string(node->offset()) + '=';
        text += node->value().str() + '/' + node->datatype().str().substr(0, 1) + ' ';
        text += outline(node->firstChild());
    }
    return text;
}

/// Stands for the datatype of this name.
struct EntityTypeStruct : DtEntityTypeDatatypeRep
{
    using DtEntityTypeDatatypeRep::DtEntityTypeDatatypeRep;
    const char* datatype() const override { return "EntityTypeStruct"; }
};

const std::string theVector = "3F C0 00 00 40 00 00 00 C0 40 00 00";  // 1.5, 2 and -3 as floats
const std::string theZeros = " 00 00 00 00 00 00 00 00 00 00 00 00";
const std::string theHeightAboveThePole =
    "00 00 00 00 00 00 00 00 80 00 00 00 00 00 00 00 41 5A B3 F0 00 00 00 00";

/// What a representation shows of the octets of a record.
struct Record
{
    const char* what;
    const char* rep;  // as Representations names it
    std::string octets;
    const char* line;     // by stringRep()
    const char* numbers;  // by originalStringRep()
    const char* tree;     // the outline of createTreeRep()
};

// Rows of several lines, which clang-format would run into each other.
// clang-format off
const Record theRecords[] = {
    {"all names", "named", "01 01 00 E1 01 01 03 00",
     "P:L:C:T:H:X:0",
     "1:1:225:1:1:3:0",
     "Kind@0=P/D Domain@1=L/D Country@2=C/D Category@3=T/D SubCategory@4=H/D Specific@5=X/D "
     "Extra@6=0/o "},
    {"names above, numbers below", "named", "01 01 00 E1 02 FF FE FD",
     "P:L:C:2:255:254:253",
     "1:1:225:2:255:254:253",
     "Kind@0=P/D Domain@1=L/D Country@2=C/D Category@3=Any/D SubCategory@4=Any/D "
     "Specific@5=Any/D Extra@6=253/o "},
    {"a name between numbers", "named", "01 02 FF FF 02 03 04 05",
     "1:A:65535:2:3:4:5",
     "1:2:65535:2:3:4:5",
     "Kind@0=1/o Domain@1=A/D Country@2=Any/D Category@3=Any/D SubCategory@4=Any/D "
     "Specific@5=Any/D Extra@6=5/o "},
    {"no dictionary", "unnamed", "01 02 01 00 04 05 06 07",
     "1-2-256-4-5-6-7",
     "1-2-256-4-5-6-7",
     "Kind@0=1/o Domain@1=2/o Country@2=256/o Category@3=4/o SubCategory@4=5/o Specific@5=6/o "
     "Extra@6=7/o "},
    {"a position", "position", theVector + theZeros,
     "89.9572, -89.7762, -6.35675e+06",
     "1.5, 2, -3, ",
     "Latitude@0=89.9572/D Longitude@8=-89.7762/D Altitude@16=-6.35675e+06/D "},
    {"above the pole", "position", theHeightAboveThePole,
     "90, 0, 643248",
     "0, 0, -0, ",
     "Latitude@0=90/D Longitude@8=0/D Altitude@16=643248/D "},
    {"an orientation", "turn", theVector, "err,err,err", "1.5, 2, -3, ", ""},
    {"a velocity", "velocity", theVector, "err,err,err", "1.5, 2, -3, ",
     "Heading@0=err,err,err/D Speed@4=3.90512/D "},
    {"no octets", "named", "", "", "", "@0=/ "},
    {"no octets", "position", "", "", "", "@0=/ "},
    {"no octets", "turn", "", "err,err,err", "err,err,err", ""},
    {"no octets", "velocity", "", "err,err,err", "err,err,err", "@0=/ "},
};
// clang-format on

struct Padding : DtDatatypeManager
{
    explicit Padding(bool pads) { setImplicitPadding(pads); }
};

/// The representations of records by the names of the table above.
struct Representations
{
    explicit Representations(bool pads)
        : manager(pads), named(pads, &names, ":"), unnamed(pads, nullptr, "-"), position(pads)
    {
    }
    const DtDefinedDatatypeRep& operator[](const std::string& name) const
    {
        const std::map<std::string, const DtDefinedDatatypeRep*> all = {
            {"named",    &named   },
            {"unnamed",  &unnamed },
            {"position", &position},
            {"turn",     &turn    },
            {"velocity", &velocity}
        };
        return *all.at(name);
    }

    Dictionary names;
    Padding manager;
    const DtEntityTypeDatatypeRep named, unnamed;
    const DtLatLongCoordinateDatatypeRep position;
    const DtTopoCoordinateDatatypeRep turn{manager};
    const DtAltVelocityDatatypeRep velocity{manager};
};

}  // namespace

TEST(GeospatialTest, ShowsRecords)
{
    const Representations all(true);
    for (const auto& record : theRecords)
    {
        SCOPED_TRACE(std::string(record.what) + ", " + record.rep);
        const DtDefinedDatatypeRep& rep = all[record.rep];
        const std::vector<char> value = octets(record.octets);
        const char* const position = value.empty() ? nullptr : value.data();
        int ofLine = -1, ofNumbers = -1, ofTree = -1;
        EXPECT_EQ(rep.stringRep(position, &ofLine), record.line);
        EXPECT_EQ(rep.originalStringRep(position, &ofNumbers, nullptr), record.numbers);
        const Tree tree(rep.createTreeRep(position, &ofTree, nullptr));
        EXPECT_EQ(outline(tree.get()), record.tree);
        EXPECT_EQ(ofLine, value.size());
        EXPECT_EQ(ofTree, value.size());
        EXPECT_EQ(ofNumbers, value.size() == 24 ? 12 : value.size()) << "three floats";
        EXPECT_TRUE(rep.valueFromStringRep("1, 2, 3").empty()) << "is not encoded";
    }
}

TEST(GeospatialTest, ReadsAtTheNextBoundaryIfAligned)
{
    const std::map<std::string, std::size_t> theBoundaries = {
        {"named",    2},
        {"unnamed",  2},
        {"position", 8},
        {"turn",     4},
        {"velocity", 4}
    };
    for (const bool pads : {false, true})
        for (const auto& record : theRecords)
        {
            if (record.octets.empty()) continue;
            SCOPED_TRACE(record.what);
            const Representations all(pads);
            const DtDefinedDatatypeRep& rep = all[record.rep];
            const std::size_t boundary = theBoundaries.at(record.rep);
            EXPECT_EQ(rep.byteAlignment(), boundary);
            const std::vector<char> value = octets(record.octets);
            for (std::size_t start = 0; start < 8; ++start)
            {
                const std::size_t gap = pads ? (boundary - start % boundary) % boundary : 0;
                std::vector<char> buffer(start + gap, '\x55');  // begins at a multiple of 16
                buffer.insert(buffer.end(), value.begin(), value.end());
                int ofLine = -1, ofNumbers = -1;
                EXPECT_EQ(rep.stringRep(&buffer[start], &ofLine), record.line);
                rep.originalStringRep(&buffer[start], &ofNumbers, nullptr);
                EXPECT_EQ(ofLine, gap + value.size());
                EXPECT_EQ(ofNumbers, boundary == 8 ? gap % 4 + 12 : gap + value.size());
            }
        }
}

TEST(GeospatialTest, HeadsFromNorthOverEast)
{
    constexpr double theRadius = 6378137, theDegree = DtDeg2Rad(1);
    const struct
    {
        const char* what;
        DtVector64 from, to;
        double degrees;
    } theCases[] = {
        {"from the north pole", {0, 0, 7e6},  {-1, 0, 0}, 0 },
        {"to its right",        {0, 0, 7e6},  {0, 1, 0},  90},
        {"from the south pole", {0, 0, -7e6}, {1, 1, 0},  45},
    };
    for (const auto& [what, from, to, degrees] : theCases)
        EXPECT_NEAR(DtHeadingFromGeocAToGeocB(from, to), degrees * theDegree, 1e-12) << what;
    DtCoordTransform transform;
    DtGeocToTopoTransform(0, 0, transform);
    EXPECT_EQ(transform.coordTrans({theRadius - 5, 0, 0})[2], 5) << "down";

    // From any place to one beside it, against another implementation.
    std::mt19937 random(1);
    std::uniform_real_distribution<double> unit(-1, 1);
    for (int count = 0; count < 2000; ++count)
    {
        const GeographicLib::LocalCartesian local(89.99 * unit(random), 180 * unit(random));
        const double east = 1e4 * unit(random), north = 1e4 * unit(random), up = 1e5 * unit(random);
        double latitude = 0, longitude = 0, height = 0;
        DtVector64 here, there;
        Earth::WGS84().Forward(local.LatitudeOrigin(), local.LongitudeOrigin(), up, here[0],
                               here[1], here[2]);
        local.Reverse(east, north, -up, latitude, longitude, height);
        Earth::WGS84().Forward(latitude, longitude, height, there[0], there[1], there[2]);
        const double expected = std::atan2(-east, -north) + 180 * theDegree;
        EXPECT_NEAR(DtHeadingFromGeocAToGeocB(here, there), expected, 1e-8);
    }
}

TEST(GeospatialTest, StandsInValues)
{
    const std::vector<char> value = octets("07 01 01 00 E1 01 01 03 09 05");
    const TreePtr model = modelOf(
        "simple B byte;fixed EntityTypeStruct a:B b:B;"
        "fixed Object id:B type:EntityTypeStruct last:B");
    for (const bool isNamed : {false, true})
    {
        Dictionary names;
        const EntityTypeStruct rep(false, &names, ":");
        DtDatatypeManager manager;
        manager.fillDefaultDatatypeRepList();
        manager.addDatatypeRep(new DtEntityTypeDatatypeRep(false, &names, ":"));
        manager.initOMTData(model.get());
        if (isNamed)
            manager.addDefinedDatatypeRep(new EntityTypeStruct(false, &names, ":"));
        else
            manager.addAttributeMapping("type", "entityType-Defined");
        for (std::size_t length = 1; length <= value.size(); ++length)
        {
            SCOPED_TRACE(std::to_string(length) + (isNamed ? " octets, named" : " octets"));
            const std::vector<char> cut(value.begin(), value.begin() + std::ptrdiff_t(length));
            std::vector<char> filled = cut;
            filled.resize(value.size());  // as if zeros were after the end
            const std::string type = rep.stringRep(&filled[1], nullptr).str();
            const Tree parts(isNamed ? rep.createTreeRep(&filled[1], nullptr, nullptr) : nullptr);
            const bool hasLast = length >= 9;
            const std::string last =
                hasLast ? "last@9=" + std::to_string(int(filled[9])) + "/B " : "";
            int consumed = 0;
            const Tree tree(manager.createStringTreeRep("Object", cut.data(), int(length), consumed,
                                                        nullptr, 0, nullptr, nullptr));
            EXPECT_EQ(outline(tree.get()),
                      "@0=/O id@0=7/B type@1=" + type + "/E " + outline(parts.get()) + last);
            EXPECT_EQ(consumed, hasLast ? 10 : -1);
            const DtString line = manager.getStringRep("Object", cut.data(), int(length), consumed);
            EXPECT_TRUE(line.startsWith("7 " + type)) << line;
        }
    }
}
