// SPDX-License-Identifier: Apache-2.0
// Many threads read documents and one model at the same time; the thread sanitizer watches.
#include "omt/model/modelBuilder.h"
#include "omt/model/modelJson.h"
#include "omt/model/read.h"
#include "omt/omt.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace
{

constexpr std::string_view theText =
    "<objectModel xmlns='http://standards.ieee.org/IEEE1516-2010'><objects><objectClass>"
    "<name>HLAobjectRoot</name><objectClass><name>Ship</name><attribute><name>Speed</name>"
    "<dataType>HLAfloat64BE</dataType></attribute></objectClass></objectClass></objects>"
    "</objectModel>";

TEST(SharingTest, EightThreadsReadOneModel)
{
    const omt::Reading shared = omt::readDocuments(
        {
            {"x.xml", theText}
    },
        omt::ReadOptions().withMim());
    const std::string json = omt::modelJson(shared.model);
    std::vector<std::string> results(8);
    std::vector<std::thread> threads;
    for (std::string& result : results)
        threads.emplace_back(
            [&]
            {
                const omt::Model copy = shared.model;
                const std::vector<omt::MemberUse> uses = copy.findMembers("Ship.Speed");
                ASSERT_EQ(uses.size(), 1U);
                // A builder starts from the shared tables, and leaves them alone.
                omt::ModelBuilder builder(copy);
                builder.tables().objectClasses.back().name = builder.text("Boat");
                EXPECT_NE(builder.build().findObjectClass("Boat"), nullptr);
                const std::vector<omt::Document> documents = {
                    {"y.xml", theText}
                };
                EXPECT_TRUE(omt::readDocuments(documents).isSound());
                result = omt::modelJson(copy);
            });
    for (std::thread& thread : threads) thread.join();
    for (const std::string& result : results) EXPECT_EQ(result, json);
}

TEST(SharingTest, EightThreadsShareOneCodec)
{
    constexpr std::string_view theDatatypes =
        R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><dataTypes><arrayDataTypes>
<arrayData><name>MarkingArray11</name><dataType>HLAoctet</dataType><cardinality>11</cardinality>
</arrayData><arrayData><name>Spots</name><dataType>Choice</dataType><cardinality>Dynamic</cardinality>
</arrayData></arrayDataTypes><fixedRecordDataTypes><fixedRecordData><name>WorldLocationStruct</name>
<field><name>X</name><dataType>HLAfloat64BE</dataType></field><field><name>Y</name>
<dataType>HLAfloat64BE</dataType></field><field><name>Z</name><dataType>HLAfloat64BE</dataType>
</field></fixedRecordData><fixedRecordData><name>All</name><field><name>M</name>
<dataType>MarkingArray11</dataType></field><field><name>S</name><dataType>Spots</dataType></field>
</fixedRecordData></fixedRecordDataTypes><variantRecordDataTypes><variantRecordData>
<name>Choice</name><discriminant>D</discriminant><dataType>HLAoctet</dataType><alternative>
<enumerator>1</enumerator><name>P</name><dataType>WorldLocationStruct</dataType></alternative>
</variantRecordData></variantRecordDataTypes></dataTypes></objectModel>)";
    const std::vector<omt::Document> documents = {
        {"x.xml", theDatatypes}
    };
    const omt::Codec codec(omt::readDocuments(documents).model);
    const std::string json = R"({"M":"Ox","S":[{"D":1,"P":{"X":6378137,"Y":0,"Z":0}}]})";
    const auto work = [&](std::string& result)
    {
        const omt::Codec copy = codec;
        const omt::Type type = copy.type("All");
        const omt::Field field = type.field("S[0].P.X");
        omt::Value value;
        for (int i = 0; i < 100; ++i)
        {
            std::vector<std::uint8_t> octets;
            if (type.encode(json, octets)) return;
            type.decode(octets, value);
            if (field.number(octets) != 6378137.0 || value.set("M", std::string_view("Elk")))
                return;
            result.clear();
            value.appendJson(result);
            omt::appendJson(result, omt::overlays(value));
        }
    };
    std::vector<std::string> results(8);
    std::vector<std::thread> threads;
    for (std::string& result : results) threads.emplace_back(work, std::ref(result));
    for (std::thread& thread : threads) thread.join();
    for (const std::string& result : results)
        EXPECT_EQ(result, R"({"M":"Elk","S":[{"D":1,"P":{"X":6378137,"Y":0,"Z":0}}]})"
                          R"([{"path":"S[0].P","geodetic":{"latitude":0.000000000,)"
                          R"("longitude":0.000000000,"altitude":0.00}}])");
}

}  // namespace
