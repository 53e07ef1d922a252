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
#include "util/dtNetworkOrder.h"

#include <GeographicLib/LocalCartesian.hpp>

#include <array>
#include <cmath>
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

}  // namespace

TEST(GeospatialTest, ShowsRecords)
{
    Dictionary names;
    DtDatatypeManager manager;
    const auto show = [&](const DtString& input)
    {
        const bool pads = manager.isImplicitPaddingEnabled();
        const DtEntityTypeDatatypeRep named(pads, &names, ":"), unnamed(pads, nullptr, "-");
        const DtLatLongCoordinateDatatypeRep place(pads);
        const DtTopoCoordinateDatatypeRep turn(manager);
        const DtAltVelocityDatatypeRep velocity(manager);
        const DtDefinedDatatypeRep* const reps[] = {&named, &unnamed, &place, &turn, &velocity};
        const DtDefinedDatatypeRep& rep = *reps[input.toInt()];
        const std::size_t width =
            std::array<std::size_t, 5>{2, 2, 8, 4, 4}.at(std::size_t(input.toInt()));
        EXPECT_TRUE(rep.byteAlignment() == width && rep.valueFromStringRep("1, 2, 3").empty());
        const std::vector<char> value = octets(input.view().substr(2));
        int ofLine = -1, ofNumbers = -1, ofTree = -1;
        for (std::size_t start = 0; start < 8 && !value.empty(); ++start)
        {
            std::vector<char> shifted(pads ? (start + width - 1) / width * width : start, '\x55');
            const std::size_t gap = shifted.size() - start;  // it begins at a multiple of 16
            shifted.insert(shifted.end(), value.begin(), value.end());
            EXPECT_EQ(rep.stringRep(&shifted[start], &ofLine), rep.stringRep(&value[0], nullptr));
            rep.originalStringRep(&shifted[start], &ofNumbers, nullptr);
            EXPECT_EQ(ofLine, gap + value.size());
            EXPECT_EQ(ofNumbers, width == 8 ? gap % 4 + 12 : gap + value.size());
        }
        const char* const position = value.empty() ? nullptr : value.data();
        const DtString line = rep.stringRep(position, &ofLine);
        const DtString numbers = rep.originalStringRep(position, &ofNumbers, nullptr);
        const Tree tree(rep.createTreeRep(position, &ofTree, nullptr));
        EXPECT_TRUE(ofTree == ofLine && (ofNumbers == ofLine || (ofLine == 24 && ofNumbers == 12)));
        return line.str() + ';' + numbers.str() + ';' + outline(tree.get()) +
               std::to_string(ofLine);
    };
    for (const bool pads : {false, true})
    {
        manager.setImplicitPadding(pads);
        const std::string numbers = ":3F C0 00 00 40 00 00 00 C0 40 00 00", zeros = " 00 00 00 00";
        expectEach(
            {"0:01 01 00 E1 01 01 03 00 => P:L:C:T:H:X:0;1:1:225:1:1:3:0;Kind@0=P/D Domain@1=L/D "
             "Country@2=C/D Category@3=T/D SubCategory@4=H/D Specific@5=X/D Extra@6=0/o 8",
             "0:01 01 00 E1 02 FF FE FD => P:L:C:2:255:254:253;1:1:225:2:255:254:253;Kind@0=P/D "
             "Domain@1=L/D Country@2=C/D Category@3=Any/D SubCategory@4=Any/D Specific@5=Any/D "
             "Extra@6=253/o 8",
             "0:01 02 FF FF 02 03 04 05 => 1:A:65535:2:3:4:5;1:2:65535:2:3:4:5;Kind@0=1/o "
             "Domain@1=A/D Country@2=Any/D Category@3=Any/D SubCategory@4=Any/D Specific@5=Any/D "
             "Extra@6=5/o 8",
             "1:01 02 01 00 04 05 06 07 => 1-2-256-4-5-6-7;1-2-256-4-5-6-7;Kind@0=1/o Domain@1=2/o "
             "Country@2=256/o Category@3=4/o SubCategory@4=5/o Specific@5=6/o Extra@6=7/o 8",
             "2" + numbers + zeros + zeros + zeros +
                 " => 89.9572, -89.7762, -6.35675e+06;1.5, 2, -3, ;Latitude@0=89.9572/D "
                 "Longitude@8=-89.7762/D Altitude@16=-6.35675e+06/D 24",
             "3" + numbers + " => err,err,err;1.5, 2, -3, ;12",
             "4" + numbers +
                 " => err,err,err;1.5, 2, -3, ;Heading@0=err,err,err/D Speed@4=3.90512/D 12",
             "0: => ;;@0=/ 0", "2: => ;;@0=/ 0", "3: => err,err,err;err,err,err;0",
             "4: => err,err,err;err,err,err;@0=/ 0"},
            show);
    }
}

TEST(GeospatialTest, ShowsEveryPositionAsItIs)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> coordinate(-7e6, 7e6);
    std::vector<double> numbers = {6378137, 0,    0,        -0.0, 0,   0,    0,        -1, -6378137,
                                   0,       -0.0, -6378137, -1,   0,   1e12, 0,        0,  -1e300,
                                   1,       0,    HUGE_VAL, 0,    NAN, 1,    -HUGE_VAL};
    while (numbers.size() < 6000) numbers.push_back(coordinate(random));
    for (std::size_t at = 0; at + 2 < numbers.size(); ++at)
    {
        const double x = numbers[at], y = numbers[at + 1], z = numbers[at + 2];
        double latitude = 0, longitude = 0, altitude = 0;
        Earth::WGS84().Reverse(x, y, z, latitude, longitude, altitude);
        char expected[99];
        std::snprintf(expected, sizeof expected, "%.6g, %.6g, %.6g", latitude, longitude, altitude);
        const DtNetValue<double> value[] = {x, y, z};
        EXPECT_EQ(DtLatLongCoordinateDatatypeRep(false).stringRep(value, nullptr), expected);
    }
}

TEST(GeospatialTest, HeadsFromNorthOverEast)
{
    constexpr double theRadius = 6378137, theDegree = DtDeg2Rad(1);
    using Case = std::array<double, 7>;
    for (const auto& [x, y, z, toX, toY, toZ, degrees] : {
             Case{0, 0, 7e6,  -1, 0, 0, 0 },
             Case{0, 0, 7e6,  0,  1, 0, 90},
             Case{0, 0, -7e6, 1,  1, 0, 45}
    })
        EXPECT_NEAR(DtHeadingFromGeocAToGeocB({x, y, z}, {toX, toY, toZ}), degrees * theDegree,
                    1e-12);
    DtCoordTransform transform;
    DtGeocToTopoTransform(0, 0, transform);
    EXPECT_EQ(transform.coordTrans({theRadius - 5, 0, 0})[2], 5);  // down
    std::mt19937 random(1);
    std::uniform_real_distribution<double> unit(-1, 1);
    for (int count = 0; count < 2000; ++count)
    {
        const GeographicLib::LocalCartesian local(89.99 * unit(random), 180 * unit(random));
        const double east = 1e4 * unit(random), north = 1e4 * unit(random), up = 1e5 * unit(random);
        double at[] = {local.LatitudeOrigin(), local.LongitudeOrigin(), up};
        DtVector64 a, b;
        Earth::WGS84().Forward(at[0], at[1], at[2], a[0], a[1], a[2]);
        local.Reverse(east, north, -up, at[0], at[1], at[2]);
        Earth::WGS84().Forward(at[0], at[1], at[2], b[0], b[1], b[2]);
        const double expected = std::atan2(-east, -north) + 180 * theDegree;
        EXPECT_NEAR(DtHeadingFromGeocAToGeocB(a, b), expected, 1e-8);
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
        for (std::size_t length = 1; length <= 10; ++length)
        {
            const std::vector<char> cut(value.begin(), value.end() - 10 + std::ptrdiff_t(length));
            std::vector<char> filled = cut;
            filled.resize(10);  // as if zeros were behind the end
            const std::string type = rep.stringRep(&filled[1], nullptr).str();
            const Tree parts(isNamed ? rep.createTreeRep(&filled[1], nullptr, nullptr) : nullptr);
            const std::string start = "@0=/O id@0=7/B type@1=", last = length < 9  ? ""
                                                                       : filled[9] ? "last@9=5/B "
                                                                                   : "last@9=0/B ";
            int consumed = 0;
            const Tree tree(manager.createStringTreeRep("Object", cut.data(), int(length), consumed,
                                                        nullptr, 0, nullptr, nullptr));
            EXPECT_EQ(outline(tree.get()), start + type + "/E " + outline(parts.get()) + last);
            EXPECT_EQ(consumed, length < 9 ? -1 : 10);
            const DtString line = manager.getStringRep("Object", cut.data(), int(length), consumed);
            EXPECT_TRUE(line.startsWith("7 " + type)) << line;
        }
    }
}
