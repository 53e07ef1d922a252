// SPDX-License-Identifier: Apache-2.0
// Representations: the octets of one value to text and back.
#include "omtReader/arrayDatatypeRep.h"
#include "omtReader/conversionString.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/enum8DatatypeRep.h"
#include "omtReader/hexDatatypeRep.h"
#include "omtReader/intLEDatatypeRep.h"
#include "support.h"
#include "util/dtNetworkOrder.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <utility>

using testing::ElementsAre;

namespace
{

/// The representations that every manager begins with, by their names.
struct Representations : DtDatatypeManager
{
    explicit Representations(bool isAligned)
    {
        setImplicitPadding(isAligned);
        fillDefaultDatatypeRepList();
    }
    auto begin() { return getNameRepMapList(); }
    auto end() { return getNameRepMapListEnd(); }
};

/// The representation that a case such as "short 42" begins with; the rest stays in the case.
const DtDatatypeRep& takeRepresentation(std::string_view& input)
{
    static Representations theRepresentations(false);
    const std::string_view wanted = input.substr(0, input.find(' '));
    input.remove_prefix(wanted.size() + 1);
    for (const auto& [name, rep] : theRepresentations)
        if (name == wanted) return *rep;
    throw std::invalid_argument("no representation " + std::string(wanted));
}

/// Octets in hexadecimal, each with a blank after it.
struct Dump : DtArrayDatatypeRep
{
    std::vector<char> valueFromStringRep(const DtString&) const override { return {}; }
};

/// What numberRep gives; -1 consumed for a representation that has none.
std::pair<double, int> numberOf(const DtDatatypeRep& rep, const void* position)
{
    int consumed = -1;
    double number = 0;
    if (const auto* const numeric = dynamic_cast<const DtNumberDatatypeRep*>(&rep))
        number = numeric->numberRep(position, &consumed);
    else if (const auto* const integer = dynamic_cast<const DtIntDatatypeRep*>(&rep))
        number = integer->numberRep(position, &consumed);
    else if (const auto* const hex = dynamic_cast<const DtHexDatatypeRep*>(&rep))
        number = hex->numberRep(position, &consumed);
    return {number, consumed};
}

/// "text (consumed)", then the number where there is one, of a case such as "short 00 2A".
std::string decoded(const DtString& input)
{
    std::string_view digits = input.view();
    const DtDatatypeRep& rep = takeRepresentation(digits);
    const std::vector<char> value = octets(digits);
    int consumed = -1;
    const DtString text = rep.stringRep(value.data(), &consumed);
    EXPECT_EQ(rep.stringRep(value.data(), nullptr), text) << input;
    const std::string result = text.str() + " (" + std::to_string(consumed) + ")";
    const auto [number, numberConsumed] = numberOf(rep, value.data());
    if (numberConsumed < 0) return result;
    EXPECT_EQ(numberConsumed, consumed) << input;
    return result + ' ' + DtString(number).str();
}

/// The octets of a case such as "short 42".
std::string encoded(const DtString& input)
{
    std::string_view text = input.view();
    const std::vector<char> value = takeRepresentation(text).valueFromStringRep(text);
    return Dump().stringRep(value.data(), static_cast<int>(value.size()), nullptr).str();
}

}  // namespace

TEST(RepresentationTest, Decodes)
{
    DtSetNetworkByteOrdering(0);  // on which nothing here depends
    expectEach(
        {"bool 02 => true (1) 2", "bool 00 => false (1) 0", "byte FF => 255 (1) 255",
         "char E9 => \xE9 (1) 233", "char 00 =>  (1) 0", "hex 0A => 0A (1) 10",
         "short FF FE => -2 (2) -2", "unsigned-short FF FE => 65534 (2) 65534",
         "short-LE FF FE => -257 (2) -257", "unsigned-short-LE FF FE => 65279 (2) 65279",
         "int FF FF FF FE => -2 (4) -2", "unsigned-int FF FF FF FE => 4294967294 (4) 4294967294",
         "int-LE FF FF FF FE => -16777217 (4) -16777217",
         "unsigned-int-LE 00 00 00 80 => 2147483648 (4) 2147483648",
         "long FF FF FF FF 00 00 00 00 => -4294967296 (8) -4294967296",
         "unsigned-long 80 00 00 00 00 00 00 00 => 9223372036854775808 (8) 9223372036854775808",
         "long-LE 01 00 00 00 00 00 00 80 => -9223372036854775807 (8) -9223372036854775808",
         "unsigned-long-LE 00 01 00 00 00 00 00 00 => 256 (8) 256",
         "float 40 49 0F DB => 3.1416 (4) 3.1415927410125732",
         "float-LE 00 50 C3 47 => 1e+05 (4) 1e+05", "float 80 00 00 00 => -0 (4) -0",
         "double C0 5E DD 2F 1A 9F BE 77 => -123.46 (8) -123.456",
         "double-LE 77 BE 9F 1A 2F DD 5E C0 => -123.46 (8) -123.456", "enum8 FF => 255 (1) 255",
         "enum16 00 05 => 5 (2) 5", "enum32 FF FF FF FE => 4294967294 (4) 4294967294",
         "string 48 49 00 => HI (3)", "string 00 =>  (1)",
         // A stop octet belongs to the text, unless it is zero.
         "utf8 48 49 00 => HI (2)", "utf8 48 03 => H\x03 (2)", "utf8 48 04 49 00 => H\x04 (2)",
         "utf8 13 => \x13 (1)", "utf8 00 =>  (0)", "utf16 00 48 => H (2)", "utf16 00 00 =>  (2)"},
        decoded);
    DtSetNetworkByteOrdering(1);
}

TEST(RepresentationTest, Encodes)
{
    expectEach(
        {"bool true => 00 ", "bool false => 01 ", "bool TRUE => ", "byte 300 => 2C ",
         "byte -1 => FF ", "byte 4294967298 => 02 ", "char Hello => 48 ", "char  => 00 ",
         "hex 0A => 0A 00 00 00 ", "hex  0x1fg => 1F 00 00 00 ", "hex -1 => FF FF FF FF ",
         "hex 123456789 => FF FF FF FF ", "hex xyz => 00 00 00 00 ", "short 70000 => 11 70 ",
         "short-LE -2 => FE FF ", "unsigned-short 65535 => FF FF ", "int -2 => FF FF FF FE ",
         "int-LE 258 => 02 01 00 00 ", "unsigned-int 4294967295 => 7F FF FF FF ",
         "int no => 00 00 00 00 ", "long 3000000000 => 00 00 00 00 7F FF FF FF ",
         "unsigned-long -2 => FF FF FF FF FF FF FF FE ", "long-LE -2 => FE FF FF FF FF FF FF FF ",
         "float 1.5 => 3F C0 00 00 ", "float-LE -1.5 => 00 00 C0 BF ", "float x => 00 00 00 00 ",
         "float 1e39 => 7F 80 00 00 ", "float +-5 => 00 00 00 00 ", "float -1e-60 => 80 00 00 00 ",
         "float  +16777217 => 4B 80 00 00 ",
         // As a double this is halfway between two floats, and just above that in truth.
         "float 1.00000005960464477539062500000001 => 3F 80 00 01 ",
         "double -123.456 => C0 5E DD 2F 1A 9F BE 77 ",
         "double-LE 0.5x => 00 00 00 00 00 00 E0 3F ", "enum8 258 => 02 ", "enum16 5 => 05 00 ",
         "enum16 65537 => 01 00 ", "enum32 258 => 02 01 00 00 ", "string HI => 48 49 ",
         "string  => ", "utf8 HI => 48 49 00 61 61 61 ", "utf8  => 00 61 ",
         "utf16 HI => 00 48 00 49 00 00 "},
        encoded);
}

TEST(RepresentationTest, ReadsAtTheNextMultipleOfItsWidthIfAligned)
{
    for (const bool isAligned : {false, true})
        for (const auto& [name, rep] : Representations(isAligned))
            for (std::size_t start = 0; start <= 8; ++start)
            {
                SCOPED_TRACE(name.str() + (isAligned ? " aligned at " : " at ") +
                             std::to_string(start));
                if (name == "string" || name == "utf8") continue;  // these have no width
                const std::size_t width = rep->byteAlignment();
                std::size_t begin = start;
                while (isAligned && name != "utf16" && begin % width) ++begin;
                // A vector begins at a multiple of 16. This one ends with the value, which is 0.
                std::vector<char> value(begin, '\x7F');
                value.resize(begin + width);
                int consumed = -1;
                rep->stringRep(value.data() + start, &consumed);
                EXPECT_EQ(consumed, begin + width - start);
                EXPECT_EQ(numberOf(*rep, value.data() + start).first, 0);
            }
}

TEST(RepresentationTest, TakesNoPosition)
{
    for (const auto& [name, rep] : Representations(true))
    {
        SCOPED_TRACE(name.str());
        EXPECT_EQ(rep->datatype(), name);
        const int untouched = 77;
        int consumed = untouched;
        EXPECT_EQ(rep->stringRep(nullptr, &consumed), "");
        EXPECT_EQ(consumed, name == "string" ? 1 : name == "enum8" ? untouched : 0);
        EXPECT_EQ(rep->stringRep(nullptr, nullptr), "");
        const auto [number, numberConsumed] = numberOf(*rep, nullptr);
        EXPECT_EQ(number, 0);
        EXPECT_LE(numberConsumed, 0);
    }
    EXPECT_EQ(DtIntDatatypeRep::intValFromBuffer(nullptr), 0);
}

TEST(RepresentationTest, ReportsWhatIsNoAscii)
{
    const std::string utf8 =
        "Failed to convert from UTF-8 to ASCII when creating string representation: ";
    const std::string utf16 =
        "Failed to convert from UTF-16BE to ASCII when creating string representation: ";
    const std::string toUtf8 =
        "Failed to convert from ASCII to UTF-8 when creating value from string representation: ";
    const std::string toUtf16 =
        "Failed to convert from ASCII to UTF-16BE when creating value from string representation: ";
    const std::string invalid = "invalid multi-byte sequence in the input.\n";

    Messages messages;
    expectEach({"utf8 48 C3 A9 00 =>  (0)", "utf16 20 AC =>  (2)", "utf16 D8 00 =>  (2)"}, decoded);
    const std::string incomplete = "incomplete multi-byte sequence in the input.\n";
    EXPECT_THAT(messages.take(),
                ElementsAre(utf8 + invalid, utf8 + invalid, utf16 + invalid, utf16 + invalid,
                            utf16 + incomplete, utf16 + incomplete));  // decoded() asks twice
    expectEach({"utf8 H\xE9 => 48 61 61 61 61 61 ", "utf16 H\xE9 => 00 48 61 61 61 61 "}, encoded);
    EXPECT_THAT(messages.take(), ElementsAre(toUtf8 + invalid, toUtf16 + " " + invalid));
}

TEST(RepresentationTest, LittleEndianIntegersKeepTheOperationOfTheirBase)
{
    const std::vector<char> value = octets("01 00 00 00");
    DtIntLEDatatypeRep little(false, false);
    DtIntDatatypeRep& asBase = little;
    EXPECT_EQ(little.intVal(value.data()), 1);
    EXPECT_EQ(asBase.intVal(value.data()), 0x01000000);
    EXPECT_EQ(asBase.unsignedIntVal(value.data()), 1u);
    asBase.setUnsigned(true);
    EXPECT_STREQ(asBase.datatype(), "unsigned-int-LE");
    EXPECT_EQ(DtIntDatatypeRep::intValFromBuffer(value.data()), 0x01000000);
}

TEST(RepresentationTest, ShowsOpaqueOctets)
{
    const std::vector<char> value = octets("01 AB FF");
    expectEach({"3 => 01 AB FF  (3)", "1 => 01  (1)", "0 =>  (1)", "-1 =>  (1)"},
               [&value](const DtString& count)
               {
                   int consumed = 77;
                   EXPECT_EQ(Dump().stringRep(nullptr, count.toInt(), &consumed), "");
                   EXPECT_EQ(consumed, 1);
                   const DtString text = Dump().stringRep(value.data(), count.toInt(), &consumed);
                   return text.str() + " (" + std::to_string(consumed) + ")";
               });
    int consumed = 77;
    EXPECT_EQ(Dump().stringRep(value.data(), &consumed), "");
    EXPECT_EQ(consumed, 77);
}

namespace
{

/// A host's representation that counts how often it was deleted.
struct HostRep : DtDatatypeRep
{
    explicit HostRep(int* deletions) : DtDatatypeRep(true), myDeletions(deletions) {}
    const char* datatype() const override { return "host"; }
    DtString stringRep(const void*, int*) const override { return {}; }
    std::vector<char> valueFromStringRep(const DtString&) const override { return {}; }
    unsigned int byteAlignment() const override { return 1; }
    virtual ~HostRep() { ++*myDeletions; }
    int* myDeletions;
};

struct NamedRep : HostRep
{
    explicit NamedRep(int* deletions) : HostRep(deletions) { nameOwnClass(this); }
    ~NamedRep() override { *myDeletions += 10; }
};

/// Below a class of the library there is no need to name oneself.
struct HostEnumRep : DtEnum8DatatypeRep
{
    explicit HostEnumRep(int* deletions) : myDeletions(deletions) {}
    ~HostEnumRep() override { ++*myDeletions; }
    int* myDeletions;
};

}  // namespace

TEST(RepresentationTest, IsDeletedAsTheClassThatItNamed)
{
    DtDatatypeRep::release(nullptr);
    int deletions = 0;
    DtDatatypeRep::release(new NamedRep(&deletions));
    EXPECT_EQ(deletions, 11);
    DtDatatypeRep::release(new HostEnumRep(&deletions));
    EXPECT_EQ(deletions, 12);

    // Neither a class that named nothing nor the part that was cut out of one that did.
    const NamedRep named(&deletions);
    HostRep unnamed(&deletions);
    HostRep cutOut(named);
    unnamed = named;
    DtDatatypeRep::release(&unnamed);
    DtDatatypeRep::release(&cutOut);
    EXPECT_EQ(deletions, 12);
}

TEST(ConversionStringTest, WritesWhatTheCConversionWrites)
{
    using Limits = std::numeric_limits<double>;
    std::vector<double> numbers = {0.0, -0.0, 2.0 / 3, 0.1, 1e-300, 99999.5, 999995, 1e-5, 0.0001,
                                   -1e300, Limits::max(),
                                   // A NaN has a sign, and shows it.
                                   Limits::denorm_min(), Limits::infinity(), -Limits::infinity(),
                                   Limits::quiet_NaN(), -Limits::quiet_NaN()};
    std::mt19937_64 random(1);
    for (int i = 0; i < 2000; ++i)
    {
        const std::uint64_t bits = random();
        numbers.emplace_back();
        std::memcpy(&numbers.back(), &bits, sizeof bits);
        // Of usual size, and where rounding is hard to tell.
        numbers.push_back(static_cast<double>(static_cast<std::int64_t>(bits)) *
                          std::pow(10.0, -8 - static_cast<int>(bits % 16)));
        numbers.push_back((static_cast<double>(bits % 100000) + 0.5) /
                          std::pow(10.0, static_cast<int>(bits % 9)));
    }
    for (const double number : numbers)
        for (const int precision : {5, 6, 0, 1, 3, 17, 100, 400, 5000})
        {
            char expected[64];
            std::snprintf(expected, sizeof expected, "%.*g", precision, number);
            EXPECT_EQ(DtConversionString(number, precision), expected);
        }
    EXPECT_EQ(DtConversionString(0.1, -1),
              "0.1000000000000000055511151231257827021181583404541015625");
}

TEST(ConversionStringTest, WritesOtherNumbers)
{
    DtConversionString text(2.0 / 3, 3);
    text.setString(0.1F, 10);
    EXPECT_EQ(text, "0.1000000015");
    text.setString(0.1, 10);
    EXPECT_EQ(text, "0.1");
    EXPECT_EQ(DtConversionString(static_cast<unsigned char>(200)), "200");
    EXPECT_EQ(DtConversionString(std::numeric_limits<long>::min()), "-9223372036854775808");
    EXPECT_EQ(DtConversionString(std::numeric_limits<unsigned long>::max()),
              "18446744073709551615");
}
