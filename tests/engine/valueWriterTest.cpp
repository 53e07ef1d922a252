// SPDX-License-Identifier: Apache-2.0
// Values made by calls: the octets of a few on a small model, and what is refused where.
#include "omt/omt.h"

#include <gtest/gtest.h>

#include <sstream>

namespace
{

using Bytes = std::vector<std::uint8_t>;

constexpr const char* theModel =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><dataTypes><enumeratedDataTypes>
<enumeratedData><name>Kind</name><representation>HLAoctet</representation>
<enumerator><name>Short</name><value>1</value></enumerator>
<enumerator><name>Long</name><value>2</value><value>7</value></enumerator>
<enumerator><name>None</name><value>3</value></enumerator></enumeratedData></enumeratedDataTypes>
<arrayDataTypes><arrayData><name>Doubles</name><dataType>HLAfloat64BE</dataType>
<cardinality>[0..3]</cardinality><encoding>HLAvariableArray</encoding></arrayData>
<arrayData><name>Kinds</name><dataType>Kind</dataType><cardinality>Dynamic</cardinality>
<encoding>RPRnullTerminatedArray</encoding></arrayData>
<arrayData><name>Gap</name><dataType>HLAoctet</dataType><cardinality>Dynamic</cardinality>
<encoding>RPRpaddingTo32Array</encoding></arrayData>
<arrayData><name>Grid</name><dataType>Pair</dataType><cardinality>2</cardinality>
<encoding>HLAfixedArray</encoding></arrayData>
<arrayData><name>Many</name><dataType>HLAinteger16LE</dataType><cardinality>70</cardinality>
<encoding>HLAfixedArray</encoding></arrayData>
<arrayData><name>Choices</name><dataType>Choice</dataType><cardinality>Dynamic</cardinality>
<encoding>HLAvariableArray</encoding></arrayData>
<arrayData><name>Nothings</name><dataType>Nothing</dataType><cardinality>Dynamic</cardinality>
<encoding>HLAvariableArray</encoding></arrayData>
<arrayData><name>Trees</name><dataType>Tree</dataType><cardinality>Dynamic</cardinality>
<encoding>HLAvariableArray</encoding></arrayData></arrayDataTypes><fixedRecordDataTypes>
<fixedRecordData><name>Nothing</name></fixedRecordData>
<fixedRecordData><name>Tree</name><field><name>Inside</name><dataType>Trees</dataType></field>
</fixedRecordData><fixedRecordData><name>Pair</name><field><name>A</name>
<dataType>HLAoctet</dataType></field><field><name>B</name><dataType>HLAinteger16BE</dataType></field>
</fixedRecordData><fixedRecordData><name>Padded</name><field><name>K</name><dataType>Kind</dataType>
</field><field><name>P</name><dataType>Gap</dataType></field><field><name>Q</name>
<dataType>Pair</dataType></field><field><name>E</name><dataType>Nothing</dataType></field>
</fixedRecordData><fixedRecordData><name>Spot</name><field><name>K</name><dataType>Kind</dataType>
</field><field><name>X</name><dataType>HLAfloat64BE</dataType></field><field><name>V</name>
<dataType>Choice</dataType></field><field><name>N</name><dataType>HLAinteger64BE</dataType></field>
</fixedRecordData></fixedRecordDataTypes><variantRecordDataTypes><variantRecordData>
<name>Choice</name><discriminant>D</discriminant><dataType>Kind</dataType><alternative>
<enumerator>Short</enumerator><name>S</name><dataType>HLAinteger16BE</dataType></alternative>
<alternative><enumerator>Long</enumerator><name>L</name><dataType>Doubles</dataType></alternative>
</variantRecordData><variantRecordData><name>Sized</name><discriminant>D</discriminant>
<dataType>Kind</dataType><alternative><enumerator>Short</enumerator><name>S</name>
<dataType>HLAinteger16BE</dataType></alternative><encoding>RPRextendedVariantRecord</encoding>
</variantRecordData><variantRecordData><name>Open</name><discriminant>D</discriminant>
<dataType>Kind</dataType><alternative><enumerator>Short</enumerator><name>S</name>
<dataType>HLAinteger16BE</dataType></alternative><encoding>HLAextendableVariantRecord</encoding>
</variantRecordData></variantRecordDataTypes></dataTypes></objectModel>)";

omt::Codec codec()
{
    const std::vector<omt::Document> documents = {
        {"x.xml", theModel}
    };
    return omt::Codec(omt::readDocuments(documents, omt::ReadOptions().withMim()).model);
}

std::string hexadecimal(omt::Octets octets)
{
    std::ostringstream out;
    for (const std::uint8_t one : octets)
        out << (out.tellp() > 0 ? " " : "") << std::hex << unsigned{one};
    return out.str();
}

/// Calls by their first letters: integer, Unsigned, double, float, label, text, octets, [ array.
void tell(omt::ValueWriter& writer, const std::string& calls)
{
    std::istringstream in(calls);
    for (std::string one; in >> one;)
    {
        const std::string rest = one.substr(1);
        switch (one[0])
        {
            case 'i':
                writer.integer(std::stoll(rest));
                break;
            case 'U':
                writer.integer(std::stoull(rest));
                break;
            case 'd':
                writer.number(std::stod(rest));
                break;
            case 'f':
                writer.number(std::stof(rest));
                break;
            case 'l':
                writer.label(rest);
                break;
            case 't':
                writer.text(rest);
                break;
            case 'o':
                writer.octets(omt::Octets(std::string_view(rest)));
                break;
            case '[':
                writer.beginArray(std::stoul(rest));
                break;
            case '.':
                writer.field(rest);
                break;
            default:
                one == "{"   ? writer.beginRecord()
                : one == "}" ? writer.endRecord()
                : one == "]" ? writer.endArray()
                             : writer.element();
        }
    }
}

TEST(ValueWriterTest, MakesOctets)
{
    constexpr const char* theSpot =
        "1 0 0 0 0 0 0 0 3f f8 0 0 0 0 0 0 1 0 0 0 0 0 0 0 ff fe 0 0 0 0 0 0 0 0 0 0 0 0 0 5";
    const struct
    {
        const char* type;
        const char* calls;
        const char* octets;
    } cases[] = {
        {"Spot",             "lShort d1.5 i1 i-2 i5",                               theSpot                  },
        {"Spot",             "{ .K lShort .X d1.5 .V { .D lShort .S i-2 } .N i5 }", theSpot                  },
        {"Choice",           "i3",                                                  "3"                      },
        {"Choice",           "{ i3 }",                                              "3"                      },
        {"Choices",          "[3 i1 i5 i3 , i1 i6",
         "0 0 0 3 0 0 0 0 1 0 0 0 0 0 0 0 0 5 0 0 0 0 0 0 3 0 0 0 0 0 0 0 1 0 0 0 0 0 0 0 0 6"               },
        {"Choices",          "[1 , { i2 .L [1 d1.5 ] } ]",
         "0 0 0 1 0 0 0 0 2 0 0 0 0 0 0 0 0 0 0 1 0 0 0 0 3f f8 0 0 0 0 0 0"                                 },
        {"Doubles",          "[2 i1 f1.5",
         "0 0 0 2 0 0 0 0 3f f0 0 0 0 0 0 0 "
         "3f f8 0 0 0 0 0 0"                                                                                 },
        {"Doubles",          "[0 ]",                                                "0 0 0 0"                },
        {"Kinds",            "[2 lShort i9",                                        "1 9 0"                  },
        {"Sized",            "i1 i8",                                               "1 0 0 0 2 0 8"          },
        {"Sized",            "i9",                                                  "9 0 0 0 0"              },
        {"Sized",            "i9 .octets oab",                                      "9 0 0 0 2 61 62"        },
        {"Open",             "i1 i8",                                               "1 0 0 0 0 0 0 2 0 8"    },
        {"Open",             "{ i1 }",                                              "1 0 0 0 0 0 0 0"        },
        {"Padded",           "i1 i2 i3",                                            "1 0 0 0 2 0 0 3"        },
        {"Padded",           "{ .K i1 .P oabc .Q { .A i2 .B i3 } .E { } }",         "1 61 62 63 2 0 0 3"     },
        {"Grid",             "[2 , { i1 i2 } , { i3 d4 } ]",                        "1 0 0 2 3 0 0 4"        },
        {"HLAunicodeString", "tA\xE2\x82\xAC\xED\xA0\x80",                          "0 0 0 3 0 41 20 ac d8 0"},
        {"HLAASCIIstring",   "tA\xC3\xA9",                                          "0 0 0 2 41 e9"          },
        {"HLAASCIIstring",   "oA\xE9",                                              "0 0 0 2 41 e9"          },
        {"HLAinteger64BE",   "i9223372036854775807",                                "7f ff ff ff ff ff ff ff"},
        {"HLAfloat32BE",     "U18446744073709551615",                               "5f 80 0 0"              },
    };
    const omt::Codec all = codec();
    for (const auto& one : cases)
    {
        omt::ValueWriter writer(all.type(one.type));
        // A second value is as the first.
        for (int i = 0; i < 2; ++i)
        {
            tell(writer, one.calls);
            omt::Octets octets;
            const auto error = writer.finish(octets);
            EXPECT_EQ(error ? error->path + ": " + error->what : hexadecimal(octets), one.octets)
                << one.type << ' ' << one.calls;
        }
    }
    omt::ValueWriter writer(all.type("HLAunicodeString"));
    omt::Octets octets;
    writer.text(u"some\u20AC");
    EXPECT_FALSE(writer.finish(octets));
    EXPECT_EQ(hexadecimal(octets), "0 0 0 5 0 73 0 6f 0 6d 0 65 20 ac");
    omt::ValueWriter many(all.type("Many"));
    many.beginArray(70);
    for (int i = 0; i < 70; ++i) many.integer(i);
    EXPECT_FALSE(many.finish(octets));
    EXPECT_EQ(hexadecimal({octets.data() + 136, octets.size() - 136}), "44 0 45 0");
}

TEST(ValueWriterTest, SaysWhatIsWrongAndWhere)
{
    std::string deep;
    for (int i = 0; i < 300; ++i) deep += "[1 ";
    const struct
    {
        const char* type;
        std::string calls;
        const char* error;
    } cases[] = {
        {"Spot",             "i1 d1 i1 i40000 i5",   "V.S: 40000 is out of range of HLAinteger16BE"             },
        {"Spot",             "i1 tA",                "X: a number is expected"                                  },
        {"Spot",             "lShrt",                "K: \"Shrt\" is no enumerator of Kind; did you mean Short?"},
        {"Spot",             "i1 d1 i5",             "V: no alternative for the number 5"                       },
        {"Spot",             "i1 d1",                "V.D: a number is missing"                                 },
        {"Spot",             "i1 .V",                "X: no field \"V\" begins here"                            },
        {"Spot",             "{ i1 }",               "X: the record does not end here"                          },
        {"Spot",             "i1 d1 i3 i1 i1",       ": something follows the value"                            },
        {"Spot",             "i-1",                  "K: -1 is out of range of Kind"                            },
        {"Spot",             "d0.5",                 "K: 0.5 is no whole number"                                },
        {"HLAinteger64BE",   "i1 }",                 ": the record does not end here"                           },
        {"Choice",           "i3 } }",               ": the record does not end here"                           },
        {"Choice",           "i1 .L",                ": another alternative goes with the discriminant: \"S\""  },
        {"Choice",           "i1",                   "S: a number is missing"                                   },
        {"Choices",          "[2 i1 i5 i2 [1 tA",    "[1].L[0]: a number is expected"                           },
        {"Doubles",          "[4",                   ": 4 elements, which is outside the cardinality"           },
        {"Doubles",          "[2 d1 ]",              "[1]: the array does not end here"                         },
        {"Doubles",          "d1",                   ": an array is expected"                                   },
        {"Kinds",            "[2 i1 i0 ]",           "[1]: a zero ends the array"                               },
        {"Grid",             "[3",                   ": 3 elements, 2 are needed"                               },
        {"Grid",             "[2 i1 i2 i3 i-40000",  "[1].B: -40000 is out of range of HLAinteger16BE"          },
        {"Grid",             "[2 i1 ,",              "[0].B: no element begins here"                            },
        {"Padded",           "i1 .P oab",            "P: 2 elements, 3 octets of padding are needed"            },
        {"HLAunicodeString", "[1",                   ": a text is expected"                                     },
        {"HLAunicodeString", "t\xFF",                ": a text that is no UTF-8"                                },
        {"HLAASCIIstring",   "t\xE2\x82\xAC",        ": a character that no octet holds"                        },
        {"HLAfloat32BE",     "d1e39",                ": 1e+39 is out of range of HLAfloat32BE"                  },
        {"HLAinteger64BE",   "U9223372036854775808",
         ": 9223372036854775808 is out of range of HLAinteger64BE"                                              },
        {"Nothings",         "[1000001",
         ": there are more than 1000000 elements and fields without octets"                                     },
    };
    const omt::Codec all = codec();
    for (const auto& one : cases)
    {
        omt::ValueWriter writer(all.type(one.type));
        tell(writer, one.calls);
        Bytes octets = {1, 2};
        const auto error = writer.finish(octets);
        const std::string said = error ? error->path + ": " + error->what : "";
        const bool isTooMany = std::string_view(one.type) == "Nothings";
        EXPECT_EQ(isTooMany ? said.substr(said.find(':')) : said, one.error) << one.calls;
        EXPECT_EQ(octets.size(), 2u) << one.calls;
    }
    omt::ValueWriter writer(all.type("Trees"));
    tell(writer, deep);
    omt::Octets octets;
    EXPECT_EQ(writer.finish(octets)->what, "values are nested deeper than 200");
}

}  // namespace
