// SPDX-License-Identifier: Apache-2.0
// Runs omt decode on octets in every form: what is read, and what is refused as it says two things.
#include "toolRun.h"

namespace
{

constexpr const char* theModel =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><dataTypes><arrayDataTypes>
<arrayData><name>All</name><dataType>HLAoctet</dataType><cardinality>Dynamic</cardinality>
<encoding>RPRlengthlessArray</encoding></arrayData></arrayDataTypes></dataTypes></objectModel>)";

const std::string theSixteen = "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f";

class OctetTest : public ToolRun
{
protected:
    void SetUp() override
    {
        write("a.xml", theModel);
        write("10", "a file whose name is an octet");
    }

    Outcome decode(const std::string& input, const std::string& arguments = "")
    {
        write("input", input);
        return run("decode a.xml --type All --line " + arguments + " <input");
    }
};

// Tables among arguments, which clang-format would break at every text.
// clang-format off
TEST_F(OctetTest, ReadsEveryFormThatTracesHave)
{
    const struct { const char* what; std::string input, octets; } cases[] = {
        {"no blanks", "48Ff", "48ff"}, {"blanks", " 48\t49\r\n4a\n", "48494a"}, {"none", "\n", ""},
        {"blocks", "0001 0000 0000026000000025", "000100000000026000000025"},
        {"blocks of four", "00000000 00000001\n00000004 00000005\n", "00000000000000010000000400000005"},
        {"marks", "48:49,4a-4b, 4c,", "48494a4b4c"}, {"numbers", "0x48, 0X49 0x1", "484901"},
        {"one number", "0x48494a4b", "48494a4b"}, {"escapes", "b'\\x48\\x49'", "4849"},
        {"list of C", "uint8_t a[2] = { // 0x1\n  0x48, 0x7b, /* H{ */ 0 };\nint b = 3;", "487b00"},
        {"list of Python", "[0x48, 0x49]", "4849"},
        {"list of Java", "[72, -1, -128, 0]", "48ff8000"}, {"decimal list", "bytes([200, 7])", "c807"},
        {"bytes of Python", "bytearray(b'H\\x00\\n\\'{')", "48000a277b"}, {"numbers of one digit", "[1, 2]", "0102"},
        {"gdb", "0x7ffe30 <a>:\t0x48\t0x49\n0x7ffe32 <a+2>:\t0x4a\n", "48494a"}, {"one line of gdb", "0x7ffe30:\t0x48", "48"}, {"text beside", "48 49 7c   HI|\n7b\n", "48497c7b"},
        {"xxd", "00000000: 4142 4344 0a31 32                        ABCD.12\n", "414243440a3132"},
        {"xxd of less", "00000000: 4142 4344 45     ABCDE\n00000005: 41  A\n", "414243444541"},
        {"xxd from 4 on", "00000004: 4142  AB\n00000006: 43  C\n", "414243"},
        {"hexdump -C", "00000000  41 42 43 44 41 42 43 44  7c 20 41 42 43 44 45 46  |ABCDABCD| ABCDEF|\n"
                       "*\n00000020  30                                               |0|\n00000021\n",
         "41424344414243447c2041424344454641424344414243447c2041424344454630"},
        {"od", "0000000 " + theSixteen + "\n0000020 10\n0000021\n", "000102030405060708090a0b0c0d0e0f10"},
        {"od -z", "000000 48 49 00                                         >HI.<\n000003\n", "484900"},
        {"tcpdump", "\t0x0000:  4500 2041 4200 00                         E..AB..\n", "45002041420000"},
        {"Wireshark", "0000   " + theSixteen + "   ........ ........\n0010   41 42 43 44   ABCD\n",
         "000102030405060708090a0b0c0d0e0f41424344"},
        {"Wireshark's last line", "0020   30 20 34 31   0 41\n", "30203431"},
        {"Wireshark without text", "0000  41 42\n0002  43\n", "414243"},
        {"Wireshark's dots", "0000  c3 a9 48   \xc2\xb7\xc2\xb7H\n", "c3a948"},
    };
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.what);
        const Outcome outcome = decode(one.input);
        EXPECT_EQ(outcome.out, '"' + one.octets + "\"\n") << outcome.err;
    }
    EXPECT_EQ(run("decode a.xml --line --type All 10 '0000  48 2e   H.'").status, 1);  // two forms
    EXPECT_EQ(run("decode a.xml --line --type All '0000  48 2e   H.'").out, "\"482e\"\n");
    EXPECT_EQ(run("decode a.xml --line --type All 10 10").out, "\"1010\"\n");
}

TEST_F(OctetTest, RefusesWhatIsNoneOrMayBeTwoThings)
{
    const struct { std::string input, message; } cases[] = {
        {"[" + std::string(1, '\0'), "character 2: \"\\x00\" is no hexadecimal digit; --file takes octets"},
        {"1", "character 1: an odd number of digits"}, {"48 1 0", "character 4: an odd number"},
        {"48\n1G", "line 2, character 2: \"G\" is no hexadecimal digit"}, {"48:0", "character 4: an odd"},
        {"fe80::1", "character 6: \":\" has no octet before it"}, {"48 -- 49", "character 5: \"-\" has"},
        {"0x0102, 0x0304", "character 11: numbers of several octets"}, {"0x", "character 3: the digits"},
        {"{0x01, 42}", "character 8: \"4\" begins a number without 0x, which may be decimal"},
        {"[12, 34]", "character 2: these numbers may be decimal or hexadecimal"},
        {"[256]", "character 2: \"256\" is no octet"}, {"[-129]", "\"-129\" is no octet"}, {"[007]", "\"007\" is"},
        {"[-1, 128]", "here is -1 as well as 128"}, {"b'H\\q'", "character 4: no escape"}, {"b'H", "quote does not end"},
        {"b'H' 1", "the quote has ended"}, {"SGkh\nSGk=\n", "no hexadecimal digit; if this is base64, `base64 -d`"},
        {"0x10:\t0x48\n0x12:\t0x49", "the offset 12 does not count"}, {"SGkh0", "digit\n"},
        {"{0x01", "the list does not end"}, {"01 {0x02}", "a list begins after"}, {"{0x01} 02", "has ended"},
        {"\\x01A", "\"A\" stands among octets such as \\x01"}, {"0x01 /*", "the comment does not end"},
        {"0000 48 49", "character 1: \"0000\" may be octets, or the offset of a dump"},
        {"0010  48 49", "\"0010\" may be"}, {"00: 48 49", "\"00\" may be"},
        {"41 42  AB", "character 8: this may be octets, or the text"}, {"0000 41 42 AB", "character 12: this"},
        {"0000  48 49   HJ", "character 15: what stands here is not the text"},
        {"00000000: 44434241  ABCD", "character 21: what stands here is not"},  // xxd -e
        {"0000000 4142 4344\n0000004\n", "words of several octets"}, {"000000: 41 4", "neither an octet"},
        {"00000000: 4142\n00000003: 43", "line 2, character 1: the offset 00000003 does not count"},
        {"00000000: 4142\n4344", "line 2, character 1: the offset 4344 does not"},
        {"00000000: 4142\n43", "character 9: \":\" ends an offset"}, {"00000000  41 |A", "the column of text"},
        {"00000000: 41\n*\nffffffff: 41", "line 3, character 1: the offset ffffffff does not count"},
    };
    for (const auto& one : cases)
    {
        const Outcome outcome = decode(one.input);
        EXPECT_THAT(outcome.err, testing::StartsWith("omt: octets: ")) << one.input;
        EXPECT_THAT(outcome.err, testing::HasSubstr(one.message));
        EXPECT_EQ(outcome.status, 1);
    }
    EXPECT_THAT(decode("48\n\n1\n49\n", "--lines"), testing::AllOf(
        testing::Field(&Outcome::out, "\"48\"\n\"49\"\n"),
        testing::Field(&Outcome::err, testing::HasSubstr("line 3: octets: character 1: an odd"))));
}
// clang-format on

}  // namespace
