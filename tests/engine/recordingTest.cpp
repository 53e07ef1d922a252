// SPDX-License-Identifier: Apache-2.0
// Recordings: what rows become, what is said of bad ones, and what a writer leaves in its file.
#include "omt/omt.h"

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <set>
#include <sstream>
#include <thread>

namespace
{

constexpr const char* theModel =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><objects><objectClass>
<name>HLAobjectRoot</name><objectClass><name>Car</name><attribute><name>At</name><dataType>Spot
</dataType></attribute><objectClass><name>Taxi</name></objectClass></objectClass></objectClass>
</objects><interactions><interactionClass><name>HLAinteractionRoot</name><interactionClass>
<name>Honk</name><parameter><name>Text</name><dataType>HLAASCIIstring</dataType></parameter>
</interactionClass></interactionClass></interactions><dataTypes><enumeratedDataTypes><enumeratedData>
<name>Kind</name><representation>HLAoctet</representation><enumerator><name>Up</name><value>1</value>
</enumerator><enumerator><name>Down</name><value>2</value></enumerator></enumeratedData>
</enumeratedDataTypes><fixedRecordDataTypes><fixedRecordData><name>Spot</name><field><name>X</name>
<dataType>HLAinteger16BE</dataType></field><field><name>V</name><dataType>Way</dataType></field>
</fixedRecordData></fixedRecordDataTypes><variantRecordDataTypes><variantRecordData><name>Way</name>
<discriminant>K</discriminant><dataType>Kind</dataType><alternative><enumerator>Up</enumerator>
<name>High</name><dataType>HLAoctet</dataType></alternative><alternative><enumerator>Down</enumerator>
<name>Text</name><dataType>HLAASCIIstring</dataType></alternative></variantRecordData>
</variantRecordDataTypes></dataTypes></objectModel>)";

omt::Codec codec()
{
    return omt::Codec(omt::readDocuments(
                          {
                              {"x.xml", theModel}
    },
                          omt::ReadOptions().withMim())
                          .model);
}

/// What a recording becomes; why it is none where it is none.
std::string decoded(std::string_view text, const omt::UpdateOptions& options = {})
{
    omt::UpdateDecoder decoder(codec(), options);
    std::string result;
    if (const auto why = decoder.begin(text, result)) return *why;
    decoder.decode(text, result);
    return result;
}

struct Case
{
    std::string row;
    std::string result;
};

Case row(std::string row, std::string result)
{
    return {std::move(row), std::move(result)};
}

TEST(RecordingTest, GivesARowForEachRow)
{
    const std::string value = R"("value":{"X":1,"V":{"K":"Up","High":7}}})";
    const Case cases[] = {
        row("1.5,7,x,Car,At,0001000001000000 07",
            R"({"time":1.5,"event":7,"note":"x","class":"Car","member":"At",)"
            R"("octets":"0001000001000000 07",)" +
                value),
        row(R"(01,,"a ""b"", c",HLAobjectRoot.Car.Taxi,At,"0x00,0x01,\x0000,01-00:00;00 07")",
            R"({"time":"01","event":"","note":"a \"b\", c","class":"HLAobjectRoot.Car.Taxi",)"
            R"("member":"At","octets":"0x00,0x01,\\x0000,01-00:00;00 07",)" +
                value),
        row("1,2,,Car,At,0001000002",
            R"({"time":1,"event":2,"note":"","class":"Car","member":"At","octets":"0001000002",)"
            R"("fault":{"what":"7 octets needed, 0 left","path":"V.Text","offset":5,"needed":7,)"
            R"("left":0}})"),
        row("1,2,,Car,At,00010000010000000700",
            R"("fault":{"what":"octets are left over after the value","path":"","offset":9,)"
            R"("needed":0,"left":1}})"),
        row("1,2,,Car,Ta,00", R"(no attribute or parameter \"Ta\"; did you mean At?)"),
        row("1,2,,Car,At,000", "character 3 is alone"),
        row("1,2,,Car,At,0g", "character 2 is no"),
        row("1,2,Car,At,00",
            R"({"row":"1,2,Car,At,00","fault":{"what":"5 cells, and the header has 6")"),
        row(R"(1,2,"x,Car,At,00)", "a quoted cell does not end in its line"),
        row(R"(1,2,"x"y,Car,At,00)", "something stands after the quote"),
        row("3,4,,Car,,",
            R"({"time":3,"event":4,"note":"","class":"Car","member":"","octets":""})"),
    };
    std::string recording = "\xEF\xBB\xBFtime,event,note,class,member,octets\r\n";
    for (const Case& one : cases) recording += one.row + "\r\n\n";
    std::istringstream rows(decoded(recording));
    for (const Case& one : cases)
    {
        std::string row;
        EXPECT_TRUE(std::getline(rows, row));
        EXPECT_THAT(row, testing::HasSubstr(one.result)) << one.row;
    }
    EXPECT_EQ(rows.peek(), std::char_traits<char>::eof());
}

TEST(RecordingTest, TakesJsonLinesAndTellsAttributesFromParameters)
{
    const Case cases[] = {
        row(R"({"member":"Car.At","octets":"000100000100000007","more":[1, {"a":null}]})",
            R"({"member":"Car.At","octets":"000100000100000007","more":[1, {"a":null}],)"
            R"("value":{"X":1,"V":{"K":"Up","High":7}}})"),
        row(R"({ "kind":"interaction","class":"Honk","member":"Text","octets":"0000000148" } )",
            R"(,"value":"H"})"),
        row(R"({"kind":"update","class":"Honk","member":"Text","octets":"0000000148"})",
            R"("fault":{"what":"\"Honk.Text\": no )"),
        // A kind that begins like another is not that one.
        row(R"({"kind":"up","class":"Honk","member":"Text","octets":"0000000148"})"
            "\n"
            R"({"kind":"update","class":"Honk","member":"Text","octets":"0000000148"})",
            R"("fault":{"what":"\"Honk.Text\": no )"),
        row(R"({"class":"Car","octets":"00"})", R"("fault":{"what":"no text \"member\"")"),
        row(R"({"class":"Car","member":"At","octets":"00","fault":1})", R"({"row":"{\"class\":)"),
        row(R"({"kind":"discover","object":"A"})", R"({"kind":"discover","object":"A"})"),
        row("{}", "{}"),
        row(R"({"member":"Car.At")", R"({"row":"{\"member\":\"Car.At\"","fault":{"what":"no JSON)"),
    };
    for (const Case& one : cases)
        EXPECT_THAT(decoded(one.row), testing::HasSubstr(one.result)) << one.row;
}

TEST(RecordingTest, LaysOneMemberOutInColumns)
{
    omt::UpdateOptions options;
    options.member = "Car.At";
    options.asCsv = true;
    EXPECT_EQ(decoded("time\tclass\tmember\toctets\n"
                      "1\tTaxi\tAt\t000100000100000007\n"
                      "2\tHonk\tText\t0000000148\n"
                      "3\tCar\tAt\t00020000020000000000000322 2C 41\n"
                      "\"4,0\"\tCar\tAt\t0002\n",
                      options),
              "time,class,member,octets,X,V.K,V.High,V.Text,fault\n"
              "1,Taxi,At,000100000100000007,1,Up,7,,\n"
              "3,Car,At,00020000020000000000000322 2C 41,2,Down,,\"\"\",A\",\n"
              "\"4,0\",Car,At,0002,,,,,\"V: 3 octets needed, 0 left\"\n");
    EXPECT_THROW(decoded("", {"Car.No", true, {}, false, {}}), omt::UnknownName);
    EXPECT_THROW(decoded("", {"", true, {}, false, {}}), std::invalid_argument);
}

TEST(RecordingTest, SaysWhyAFileIsNoRecording)
{
    const Case cases[] = {
        {"",                       "is empty"                       },
        {"class,member\n",         "no column \"octets\""           },
        {"member,octets,member\n", "\"member\" stands twice"        },
        {"member,octets,value\n",  "\"value\" has the name of a res"},
        {"member,\"octets\n",      "does not end in its line"       },
    };
    for (const Case& one : cases)
        EXPECT_THAT(decoded(one.row), testing::HasSubstr(one.result)) << one.row;
}

/// A file that goes with the test.
class RecordingFile : public testing::Test
{
protected:
    ~RecordingFile() override { std::remove(myFile.c_str()); }
    std::string content() const
    {
        std::ifstream in(myFile);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    const std::string myFile = testing::TempDir() + "recordingTest.csv";
};

constexpr std::uint8_t theOctets[] = {0, 1, 0, 0, 1, 0, 0, 0, 7};

omt::Update update(double time)
{
    omt::Update one;
    one.time = time;
    one.object = "Cab, \"7\"";
    one.classHandle = 3;
    one.values = {
        {1, {theOctets, sizeof theOctets}}
    };
    return one;
}

TEST_F(RecordingFile, ThreadsWriteWholeRowsThatDecode)
{
    constexpr int theThreads = 8;
    constexpr int theUpdates = 200;
    {
        std::ofstream(myFile) << "time,event,kind,object,class,member,octets,sender,tag\n1,0,upd";
        omt::UpdateWriter writer(myFile);
        writer.nameClass(3, "HLAobjectRoot.Car");
        writer.nameMember(3, 1, "At");
        std::vector<std::jthread> threads;
        for (int i = 0; i < theThreads; ++i)
            threads.emplace_back(
                [&writer, i]
                {
                    for (int n = 0; n < theUpdates; ++n)
                        EXPECT_TRUE(writer.write(update(i * 1000 + n)));
                });
    }
    const std::string text = content();
    omt::UpdateDecoder decoder(codec());
    std::string_view rows = text;
    std::string result;
    ASSERT_FALSE(decoder.begin(rows, result));
    decoder.decode(rows, result);
    EXPECT_EQ(decoder.counts().rows, theThreads * theUpdates + 1U);
    EXPECT_EQ(decoder.counts().faults, 1U);  // the row that was cut
    EXPECT_THAT(result,
                testing::HasSubstr(R"("object":"Cab, \"7\"","class":"HLAobjectRoot.Car",)"));
    for (const int time : {0, 7199})
        EXPECT_THAT(result, testing::HasSubstr("\n{\"time\":" + std::to_string(time) + ","));
}

TEST_F(RecordingFile, AFullDiskIsToldAndLeavesWholeRows)
{
    EXPECT_EQ(omt::UpdateWriter("/dev/full").error(), std::errc::no_space_on_device);
    EXPECT_EQ(omt::UpdateWriter("/no/such/folder").error(), std::errc::no_such_file_or_directory);

    const auto before = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small{100, limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    omt::UpdateWriter writer(myFile);
    EXPECT_FALSE(writer.write(update(1)));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    std::signal(SIGXFSZ, before);
    EXPECT_EQ(writer.error(), std::errc::file_too_large);
    EXPECT_TRUE(writer.write(update(2)));
    EXPECT_EQ(content(),
              "time,event,kind,object,class,member,octets,sender,tag\n"
              "2,2,update,\"Cab, \"\"7\"\"\",#3,#1,000100000100000007,,\n");
}

}  // namespace
