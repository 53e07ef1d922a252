// SPDX-License-Identifier: Apache-2.0
// Strings, file names, messages, network-order values and the assertion.
#include "omtReader/fedNode.h"
#include "support.h"
#include "util/dtFilename.h"
#include "util/dtNetworkOrder.h"

#include <exception>
#include <limits>
#include <sstream>
#include <thread>

using testing::ElementsAre;

namespace
{

template <typename Number>
void expectOctets(Number number, const char* hexadecimal)
{
    const DtNetValue<Number> value(number);
    EXPECT_EQ(std::vector<char>(value.octets(), value.octets() + sizeof value),
              octets(hexadecimal));
    EXPECT_EQ(static_cast<Number>(value), number);
}

}  // namespace

TEST(StringTest, ReadsIntegers)
{
    // What 32 bits hold, whether that is the whole text, and what 64 bits hold.
    expectEach(
        {"42 => 42 whole 42", " => 0 cut 0", " \t\n+7 => 7 whole 7", "-7  => -7 cut -7",
         "007 => 7 whole 7", "0x1F => 0 cut 0", "+-5 => 0 cut 0", "- 5 => 0 cut 0", "+ => 0 cut 0",
         "3.9 => 3 cut 3", "2147483647 => 2147483647 whole 2147483647",
         "2147483648 => 2147483647 cut 2147483648", "-2147483648 => -2147483648 whole -2147483648",
         "-2147483649 => -2147483648 cut -2147483649",
         "99999999999999999999x => 2147483647 cut 9223372036854775807",
         "-99999999999999999999 => -2147483648 cut -9223372036854775808"},
        [](const DtString& text)
        {
            bool isWhole = false;
            const std::string value = std::to_string(text.toInt(&isWhole));
            return value + (isWhole ? " whole " : " cut ") + std::to_string(text.toInt64());
        });
}

TEST(StringTest, ReadsDoubles)
{
    const std::string tiny = "0." + std::string(400, '0') + "1";
    const std::string huge(400, '9');
    expectEach(
        {" => 0 cut", ". => 0 cut", "+.5 => 0.5 whole", " -2.5e3 => -2500 whole", "1,5 => 1 cut",
         "1e => 1 cut", "0x10 => 0 cut", "-inf => -inf whole",
         "1.7976931348623157e308 => 1.79769e+308 whole", "-1e400 => -inf cut",
         "1e99999999999999999 => inf cut", "-1e-400 => -0 cut", "0.001e-99999999999x => 0 cut",
         "0e999999999999 => 0 whole", tiny + " => 0 cut", tiny + "e401 => 1 whole",
         tiny + "e900 => inf cut", huge + " => inf cut", huge + "e-400 => 1 whole"},
        [](const DtString& text)
        {
            bool isWhole = false;
            std::ostringstream value;
            value << text.toDouble(&isWhole);
            return value.str() + (isWhole ? " whole" : " cut");
        });
}

TEST(StringTest, ReadsUnsignedAndShortNumbers)
{
    expectEach({"4294967295 => 4294967295 whole 4.29497e+09 whole",
                "4294967296x => 4294967295 cut 4.29497e+09 cut", "-5 => 0 cut -5 whole",
                "0.1 => 0 cut 0.1 whole", "1e39 => 1 cut inf cut", " => 0 cut 0 cut"},
               [](const DtString& text)
               {
                   bool isWhole[2] = {};
                   std::ostringstream value;
                   value << text.toUInt(&isWhole[0]) << (isWhole[0] ? " whole " : " cut ");
                   value << text.toFloat(&isWhole[1]) << (isWhole[1] ? " whole" : " cut");
                   return value.str();
               });
}

TEST(StringTest, WritesTheShortestNumberThatReadsBack)
{
    for (const char* text : {"0.1", "-0", "1e+300", "5e-324", "123456.789", "nan"})
        EXPECT_EQ(DtString(DtString(text).toDouble()), text);
    EXPECT_EQ(DtString(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(DtString(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
}

TEST(StringTest, CutsAndCompares)
{
    const DtString text(" a,,b ");
    EXPECT_EQ(text.charAt(1), 'a');
    for (const std::ptrdiff_t outside : {-1, 6}) EXPECT_EQ(text.charAt(outside), '\0');
    EXPECT_THAT(text.sections(','), ElementsAre(" a", "", "b "));
    EXPECT_THAT(DtString().sections(','), ElementsAre(""));
    EXPECT_THAT(text.tokens(" ,"), ElementsAre("a", "b"));
    EXPECT_THAT(DtString(" \t\n").tokens(), ElementsAre());
    const char* const noText = nullptr;
    EXPECT_TRUE(DtString(noText) == noText);
    EXPECT_NE(DtString(std::string("a\0b", 3)), "a");
}

TEST(FilenameTest, DropsFoldersAndJudges)
{
    DtFilename name("/a/b.xml");
    for (int time = 0; time < 2; ++time) name.stripPath();
    EXPECT_EQ(name.name(), "b.xml");
    EXPECT_TRUE(DtFilename("a/").isValid());
    EXPECT_FALSE(DtFilename("").isValid());
    EXPECT_FALSE(DtFilename(DtString(std::string("a\0b", 3))).isValid());
}

TEST(MessageTest, EndsWithALineBreakOrAFlush)
{
    Messages messages;
    DtWarn << "one " << 1 << ", " << 2.5;
    EXPECT_THAT(messages.list(), ElementsAre());
    DtWarn << "\ntwo\nthr" << std::string("ee") << std::flush << std::flush << "100%s %n\n";
    EXPECT_THAT(messages.take(), ElementsAre("one 1, 2.5\n", "two\n", "three", "100%s %n\n"));
    std::thread([] { DtWarn << "left over"; }).join();
    EXPECT_THAT(messages.take(), ElementsAre("left over"));
}

TEST(MessageTest, TheLevelFilters)
{
    const Messages messages(DtMessageLevel::info);
    for (DtMessageStream* stream : {&DtWarn, &DtInfo, &DtVerbose, &DtDebug}) *stream << "heard\n";
    EXPECT_THAT(messages.list(), ElementsAre("heard\n", "heard\n"));
}

TEST(MessageTest, ASinkThatThrowsDoesNotSilenceTheStream)
{
    Messages messages;
    const DtMessageSink before =
        DtSetMessageSink([](DtMessageLevel, std::string_view) { throw std::exception(); });
    testing::internal::CaptureStderr();
    DtWarn << "one" << std::flush << "two\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "one\ntwo\n");
    DtSetMessageSink(before);
    DtWarn << "two\n";
    EXPECT_THAT(messages.list(), ElementsAre("two\n"));
}

TEST(NetworkOrderTest, HoldsTheOctetsToSend)
{
    expectOctets(std::int16_t(-2), "FF FE");
    expectOctets(std::uint32_t(0x89ABCDEF), "89 AB CD EF");
    expectOctets(std::uint64_t(0x0123456789ABCDEF), "01 23 45 67 89 AB CD EF");
    expectOctets(-2.5F, "C0 20 00 00");
    expectOctets(1.0, "3F F0 00 00 00 00 00 00");
    DtSetNetworkByteOrdering(0);
    expectOctets(std::int32_t(42), "2A 00 00 00");
    DtSetNetworkByteOrdering(1);
}

TEST(AssertionDeathTest, NamesExpressionFileAndLine)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    DtFedNode node;
    EXPECT_DEATH(node.setParentObject(&node),
                 "^libsrc/omtReader/fedNode:64: assertion failed: this != f\n$");
}
