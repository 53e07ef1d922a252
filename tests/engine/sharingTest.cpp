// SPDX-License-Identifier: Apache-2.0
// Many threads read documents and one model at the same time; the thread sanitizer watches.
#include "omt/model/modelBuilder.h"
#include "omt/model/modelJson.h"
#include "omt/model/read.h"

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

}  // namespace
