// SPDX-License-Identifier: Apache-2.0
// Rules of encoding on a small model: what is a fault or a note, what is refused, what set()
// changes.
#include "omt/codec/layout.h"
#include "omt/omt.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <random>
#include <sstream>

namespace
{

using ::testing::HasSubstr;
using Bytes = std::vector<std::uint8_t>;

constexpr const char* theModel =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><objects><objectClass>
<name>HLAobjectRoot</name><attribute><name>A</name><dataType>Spot</dataType></attribute>
</objectClass></objects><dataTypes><enumeratedDataTypes><enumeratedData><name>Kind</name>
<representation>HLAoctet</representation><enumerator><name>Short</name><value>1</value></enumerator>
<enumerator><name>Long</name><value>2</value><value>7</value></enumerator><enumerator><name>None</name>
<value>3</value></enumerator></enumeratedData></enumeratedDataTypes><arrayDataTypes>
<arrayData><name>Doubles</name><dataType>HLAfloat64BE</dataType><cardinality>[0..3]</cardinality>
<encoding>HLAvariableArray</encoding></arrayData>
<arrayData><name>Kinds1</name><dataType>Kind</dataType><cardinality>[0..1]</cardinality>
<encoding>HLAvariableArray</encoding></arrayData>
<arrayData><name>Nothings</name><dataType>Nothing</dataType><cardinality>Dynamic</cardinality>
<encoding>HLAvariableArray</encoding></arrayData>
<arrayData><name>Rests</name><dataType>Nothing</dataType><cardinality>Dynamic</cardinality>
<encoding>RPRlengthlessArray</encoding></arrayData>
<arrayData><name>Kinds</name><dataType>Kind</dataType><cardinality>Dynamic</cardinality>
<encoding>RPRnullTerminatedArray</encoding></arrayData>
<arrayData><name>Trees</name><dataType>Tree</dataType><cardinality>Dynamic</cardinality>
<encoding>HLAvariableArray</encoding></arrayData>
<arrayData><name>Bits</name><dataType>HLAoctet</dataType><cardinality>Dynamic</cardinality>
<encoding>HLAbitArray</encoding></arrayData>
<arrayData><name>Sizeds</name><dataType>Sized</dataType><cardinality>Dynamic</cardinality>
<encoding>HLAvariableArray</encoding></arrayData>
</arrayDataTypes><fixedRecordDataTypes><fixedRecordData><name>Nothing</name></fixedRecordData>
<fixedRecordData><name>Tree</name><field><name>Inside</name><dataType>Trees</dataType></field>
</fixedRecordData><fixedRecordData><name>Ring</name><field><name>R</name><dataType>Ring</dataType>
</field></fixedRecordData><fixedRecordData><name>Spot</name><field><name>K</name>
<dataType>Kind</dataType></field><field><name>X</name><dataType>HLAfloat64BE</dataType></field>
<field><name>V</name><dataType>Choice</dataType></field></fixedRecordData></fixedRecordDataTypes>
<variantRecordDataTypes><variantRecordData><name>Choice</name><discriminant>D</discriminant>
<dataType>Kind</dataType><alternative><enumerator>Short</enumerator><name>S</name>
<dataType>HLAinteger16BE</dataType></alternative><alternative><enumerator>Long</enumerator>
<name>L</name><dataType>HLAinteger64BE</dataType></alternative></variantRecordData>
<variantRecordData><name>Sized</name><discriminant>D</discriminant><dataType>Kind</dataType>
<alternative><enumerator>Short</enumerator><name>S</name><dataType>HLAinteger16BE</dataType>
</alternative><encoding>RPRextendedVariantRecord</encoding></variantRecordData>
</variantRecordDataTypes></dataTypes></objectModel>)";

omt::Codec codec()
{
    return omt::Codec(omt::readDocuments({
                                             {"x.xml", theModel}
    })
                          .model);
}

Bytes bytes(std::string_view text)
{
    Bytes all;
    std::istringstream in{std::string(text)};
    for (int one = 0; in >> std::hex >> one;) all.push_back(static_cast<std::uint8_t>(one));
    return all;
}

std::string hexadecimal(omt::Octets octets)
{
    std::ostringstream out;
    for (const std::uint8_t one : octets)
        out << (out.tellp() > 0 ? " " : "") << std::hex << unsigned{one};
    return out.str();
}

template <typename T>
std::string printed(const T& thing)
{
    return (std::ostringstream() << thing).str();
}

TEST(CodecRulesTest, DecodesAndSaysWhatIsOdd)
{
    const struct
    {
        const char* what;
        const char* type;
        const char* octets;
        const char* json;
        const char* said;  ///< the fault, or the notes, or how many octets are left
    } cases[] = {
        {"a negative count",           "Doubles",  "ff ff ff ff",                           "",                                              "octet 0: the count is negative"                  },
        {"a count that cannot fit",    "Doubles",  "0 0 0 2 0 0 0 0 1 2 3",                 "",
         "octet 0: 2 elements need 20 octets, 7 left"                                                                                                                                          },
        {"padding after a count of 0", "Doubles",  "0 0 0 0 0 0 0 0",                       "[]",
         "octet 4: padding before nothing"                                                                                                                                                     },
        {"padding of another length",  "Doubles",  "0 0 0 0 0 0 0",                         "[]",                                            "left 3"                                          },
        {"outside the cardinality",    "Kinds1",   "0 0 0 2 1 1",                           "[\"Short\",\"Short\"]",
         "octet 0: 2 elements, which is outside the cardinality"                                                                                                                               },
        {"too many without octets",    "Nothings", "0 f 42 41",                             "[]",
         "octet 4: there are more than 1000000 elements and fields without octets"                                                                                                             },
        {"an end",                     "Kinds",    "1 7 9 0",                               "[\"Short\",{\"name\":\"Long\",\"value\":7},9]", ""                                                },
        {"no end",                     "Kinds",    "1",                                     "[\"Short\"]",                                   "[1]: octet 1: 1 octet needed, 0 left"            },
        {"no alternative",             "Choice",   "3",                                     "{\"D\":\"None\"}",                              ""                                                },
        {"padding for none",           "Choice",   "3 0 0 0 0 0 0 0",                       "{\"D\":\"None\"}",
         "octet 1: padding before nothing"                                                                                                                                                     },
        {"padding that is not zero",   "Choice",   "1 0 0 0 5 0 0 0 0 2",                   "{\"D\":\"Short\",\"S\":2}",
         "S: octet 4: padding is not zero"                                                                                                                                                     },
        {"cut in padding",             "Choice",   "1 0 0",                                 "{\"D\":\"Short\"}",
         "S: octet 1: 9 octets needed, 2 left"                                                                                                                                                 },
        {"a length 4 too many",        "Sizeds",   "0 0 0 2 1 0 0 0 6 0 8 0 1 0 0 0 2 0 9",
         "[{\"D\":\"Short\",\"S\":8},{\"D\":\"Short\",\"S\":9}]",                                                                            "[0]: octet 9: the length is 6 octets, 2 are used"},
        {"a length past the end",      "Sized",    "1 0 0 0 6 0 8",                         "{\"D\":\"Short\",\"S\":8}",
         "octet 5: the length is 6 octets, the alternative has 2"                                                                                                                              },
        {"an unknown alternative",     "Sized",    "9 0 0 0 3 a b c",                       "{\"D\":9,\"octets\":\"0a0b0c\"}",
         ""                                                                                                                                                                                    },
        {"an unknown encoding",        "Bits",     "1 2",                                   "\"0102\"",                                      ""                                                },
    };
    const omt::Codec all = codec();
    for (const auto& one : cases)
    {
        const omt::Value value = all.type(one.type).decode(bytes(one.octets));
        std::string said = value.fault() ? printed(*value.fault()) : "";
        for (const omt::ValueNote& note : value.notes()) said += printed(note);
        if (!value.fault() && value.left() > 0) said += "left " + std::to_string(value.left());
        EXPECT_EQ(value.json(), one.json) << one.what;
        EXPECT_EQ(said, one.said) << one.what;
    }
    Bytes deep;
    for (int i = 0; i < 300; ++i) deep.insert(deep.end(), {0, 0, 0, 1});
    EXPECT_THAT(all.type("Trees").decode(deep).fault()->what, HasSubstr("deeper than 200"));
    std::string findings;
    for (const omt::Finding& finding : all.findings()) findings += finding.name + ' ';
    EXPECT_EQ(findings, "array-encoding endless-datatype array-element ");
}

TEST(CodecRulesTest, RefusesWhatIsNoValue)
{
    const std::string good = "{\"K\":\"Short\",\"X\":1,\n\"V\":{\"D\":\"Short\",\"S\":";
    const std::pair<std::string, const char*> cases[] = {
        {good + "40000}}",                                    "2:22: V.S: 40000 is out of range of HLAinteger16BE"            },
        {good + "1.5}}",                                      "2:22: V.S: \"1.5\" is no whole number"                         },
        {good + "1},\"Y\":1}",                                "2:25: no field is called \"Y\"; did you mean K?"               },
        {"{\"K\":\"Shrt\"}",                                  "1:6: K: \"Shrt\" is no enumerator of Kind; did you mean Short?"},
        {"{\"K\":1,\"X\":2}",                                 "1:14: \"V\" is missing"                                        },
        {"{\"K\":1,\"K\":2}",                                 "1:8: \"K\" stands twice"                                       },
        {"{\"K\":1,\"V\":{\"L\":1,\"D\":\"Short\"},\"X\":1}",
         "1:17: V: another alternative goes with the discriminant: \"S\""                                                     },
        {"{\"K\":1,\"V\":{\"D\":5},\"X\":1}",                 "1:17: V: no alternative for the number 5"                      },
        {"[",                                                 "1:1: a record is expected"                                     },
        {"{\"X\":1,\"K\":1,\"X\":2}",                         "1:14: \"X\" stands twice"                                      },
        {"{\"K\":1,\"X\":01.5}",                              "1:12: X: \"01.5\" is no number"                                },
        {"{\"K\":1,\"X\":1.}",                                "1:12: X: \"1.\" is no number"                                  },
        {"{\"K\":1,\"X\":1e400}",                             "1:12: X: 1e400 is out of range of HLAfloat64BE"                },
        {good + "1}} 2",                                      "2:26: something follows the value"                             },
    };
    const omt::Type type = codec().attribute("HLAobjectRoot.A");
    for (const auto& [json, expected] : cases)
    {
        Bytes octets = {1, 2};
        const std::optional<omt::ValueError> error = type.encode(json, octets);
        EXPECT_EQ(error ? printed(*error) : "", expected) << json;
        EXPECT_EQ(octets.size(), 2u) << json;
    }
    EXPECT_THROW(static_cast<void>(codec().attribute("HLAobjectRoot.B")), omt::UnknownName);
    EXPECT_THROW(static_cast<void>(type.field("V.Q")), omt::UnknownName);
}

template <typename Number>
void expectShortest(const omt::Type& type, Number number)
{
    Bytes octets(sizeof number);
    std::memcpy(octets.data(), &number, sizeof number);
    std::reverse(octets.begin(), octets.end());
    char text[64];
    const std::string expected(text, std::to_chars(text, text + sizeof text, number).ptr);
    EXPECT_EQ(type.decode(octets).json(), expected);
}

// Of all sizes, with few digits and with as many as there can be, and their neighbours.
TEST(CodecRulesTest, WritesTheFewestDigits)
{
    const omt::Codec all = codec();
    std::mt19937_64 random(1516);
    for (int i = 0; i < 20000; ++i)
    {
        const int exponent = i % 80 - 20;
        const double some = std::ldexp(static_cast<double>(random() >> 11), exponent - 53);
        const double few = static_cast<double>(random() % 100000) / std::pow(10, i % 9);
        for (const double number : {some, -some, few, std::nextafter(few, 1e9),
                                    std::ldexp(1.0, exponent), std::floor(some)})
        {
            expectShortest(all.type("HLAfloat64BE"), number);
            expectShortest(all.type("HLAfloat32BE"), static_cast<float>(number));
        }
    }
}

TEST(CodecRulesTest, WritesOneNumberInPlace)
{
    const omt::Type type = codec().attribute("HLAobjectRoot.A");
    const std::string before = "{\"K\":\"Short\",\"X\":1,\"V\":{\"D\":\"Short\",\"S\":5}}";
    const std::tuple<const char*, double, std::string> cases[] = {
        {"X",   -2.5,  "{\"K\":\"Short\",\"X\":-2.5,\"V\":{\"D\":\"Short\",\"S\":5}}"},
        {"V.S", -7,    "{\"K\":\"Short\",\"X\":1,\"V\":{\"D\":\"Short\",\"S\":-7}}"  },
        {"K",   200,   "{\"K\":200,\"X\":1,\"V\":{\"D\":\"Short\",\"S\":5}}"         },
        {"V.S", 1.5,   ""                                                            },
        {"V.S", 32768, ""                                                            },
        {"V.D", 2,     ""                                                            },
        {"V.L", 1,     ""                                                            },
        {"V",   1,     ""                                                            },
    };
    for (const auto& [path, number, expected] : cases)
    {
        Bytes octets;
        type.encode(before, octets);
        const bool isWritten = type.field(path).write(octets.data(), octets.size(), number);
        EXPECT_EQ(isWritten, !expected.empty()) << path << ' ' << number;
        EXPECT_EQ(type.decode(octets).json(), isWritten ? expected : before) << path;
    }
}

TEST(CodecRulesTest, ReadsFieldsInAnyOrderAndWithBlanks)
{
    const omt::Type type = codec().attribute("HLAobjectRoot.A");
    for (const char* const json : {
             R"({"K":"Long","X":2,"V":{"D":"Short","S":3}})",
             R"({"V":{"S":3,"D":"Short"},"X":2,"K":"Long"})",
             R"({"X":2,"K":2,"V":{"D":1,"S":3}})",
             "\t{ \"K\" : \"L\\u006fng\",\n\"X\":2.0 , \"V\" : { \"D\":\"Short\" , \"S\" :3 "
             "}\r\n} ",
         })
    {
        Bytes octets;
        const std::optional<omt::ValueError> error = type.encode(json, octets);
        EXPECT_EQ(error ? printed(*error) : hexadecimal(octets),
                  "2 0 0 0 0 0 0 0 40 0 0 0 0 0 0 0 1 0 0 0 0 0 0 0 0 3")
            << json;
    }
}

// Among them the middle between two numbers, and just beside it.
TEST(CodecRulesTest, ReadsTheNearestNumber)
{
    const omt::Codec all = codec();
    for (const char* const text :
         {"0.1", "-0", "0.3e1", "16777217", "16777217.000000001", "8388608.5", "9007199254740993",
          "9007199254740993.5", "4503599627370497.5", "1.0000000596046448", "-6378137.0000000009",
          "123456789012345678901", "1e-7", "0.00000000000000000001", "5e-324", "3.4028235e38"})
    {
        Bytes octets;
        double number = 0;
        float less = 0;
        std::from_chars(text, text + std::strlen(text), number);
        std::from_chars(text, text + std::strlen(text), less);
        EXPECT_FALSE(all.type("HLAfloat64BE").encode(text, octets)) << text;
        EXPECT_EQ(all.type("HLAfloat64BE").decode(octets).root().number(), number) << text;
        octets.clear();
        const bool isLarge = all.type("HLAfloat32BE").encode(text, octets).has_value();
        EXPECT_EQ(isLarge ? 0 : all.type("HLAfloat32BE").decode(octets).root().number(), less)
            << text;
    }
}

TEST(CodecRulesTest, SetChangesWhatIsNamed)
{
    const char* const first = "1 9 0 0 0 0 0 0 3f f0 0 0 0 0 0 0 1 0 0 0 0 0 0 0 0 2";
    const struct
    {
        const char* path;
        const char* json;
        const char* octets;  ///< or what is said, where it cannot be set
    } cases[] = {
        {"X",      "2",    "1 9 0 0 0 0 0 0 40 0 0 0 0 0 0 0 1 0 0 0 0 0 0 0 0 2"             },
        {"K",      "Long", "2 9 0 0 0 0 0 0 3f f0 0 0 0 0 0 0 1 0 0 0 0 0 0 0 0 2"            },
        {"V.S",    "-1",   "1 9 0 0 0 0 0 0 3f f0 0 0 0 0 0 0 1 0 0 0 0 0 0 0 ff ff"          },
        {"V.D",    "Long", "1 0 0 0 0 0 0 0 3f f0 0 0 0 0 0 0 2 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0"},
        {"V.L",    "1",    "1 0 0 0 0 0 0 0 3f f0 0 0 0 0 0 0 2 0 0 0 0 0 0 0 0 0 0 0 0 0 0 1"},
        {"V.D",    "None", "1 0 0 0 0 0 0 0 3f f0 0 0 0 0 0 0 3"                              },
        {"V.S",    "x",    "V.S: \"x\" is no whole number"                                    },
        {"V.Q",    "1",    "V.Q: no alternative \"Q\"; did you mean D?"                       },
        {"V.L[0]", "1",    "V.L[0]: D chooses another alternative, and has to be set before"  },
        {"S",      "1",    "S: no field \"S\"; it is at V.S"                                  },
        {"V.S.T",  "1",    "V.S.T: \"HLAinteger16BE\" has no parts"                           },
        {"V..S",   "1",    "V..S: this is no path"                                            },
    };
    const omt::Type type = codec().type("Spot");
    for (const auto& one : cases)
    {
        omt::Value value = type.decode(bytes(first));
        std::optional<omt::ValueError> error = value.set(one.path, std::string_view(one.json));
        if (error) error->line = 0;
        EXPECT_EQ(error ? printed(*error) : hexadecimal(value.octets()), one.octets) << one.path;
        EXPECT_TRUE(!error || hexadecimal(value.octets()) == first) << one.path;
    }
}

TEST(CodecRulesTest, LayoutTellsPlaces)
{
    std::string text;
    for (const omt::LayoutRow& row : omt::layout(codec().type("Spot")))
        text += std::string(row.depth, ' ') + row.name + ' ' +
                (row.offset ? std::to_string(*row.offset) : "-") + ' ' +
                std::to_string(row.leastSize) + ".." +
                (row.greatestSize ? std::to_string(*row.greatestSize) : "") + ' ' +
                (row.padding ? std::to_string(*row.padding) : "-") + '\n';
    EXPECT_EQ(text,
              " 0 17..32 0\n K 0 1..1 0\n X 8 8..8 7\n V 16 1..16 0\n"
              "  D 0 1..1 0\n  S 8 2..2 7\n  L 8 8..8 7\n");
    EXPECT_THAT(codec().json(), HasSubstr("\"names\":{\"Bits\":"));
}

}  // namespace
