// SPDX-License-Identifier: Apache-2.0
// What reading makes of XML documents: lines, oddities, refusals.
#include "omt/model/read.h"

#include <gmock/gmock.h>

#include <map>
#include <sstream>

namespace
{

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::vector<std::string> texts(const omt::Findings& findings)
{
    std::vector<std::string> lines;
    for (const omt::Finding& finding : findings)
        lines.push_back((std::ostringstream() << finding).str());
    return lines;
}

omt::Reading readText(std::string_view text)
{
    return omt::readDocuments({
        {"x.xml", text}
    });
}

/// A document of 2010 with this inside its root.
std::string in2010(const std::string& content)
{
    return "<objectModel xmlns=\"http://standards.ieee.org/IEEE1516-2010\">" + content +
           "</objectModel>";
}

TEST(XmlReadingTest, ReadsOddTextsOrSaysWhatIsOdd)
{
    struct Case
    {
        const char* what;
        std::string text;
        const char* expected;  ///< the findings, a line each
    };
    const std::string data = "<dataTypes><enumeratedDataTypes><enumeratedData>";
    const std::string end = "</enumeratedData></enumeratedDataTypes></dataTypes>";
    const auto enumeration = [&](const std::string& inside) { return in2010(data + inside + end); };
    const Case cases[] = {
        {"plain",
         enumeration("<name>E</name><enumerator><name>A</name><value>1</value></enumerator>"),              ""},
        {"a nameless definition",         enumeration("<semantics>s</semantics>"),
         "x.xml:1: error: there is an enumerated datatype without a name [no-name]\n"                         },
        {"a number that is none",
         enumeration("<name>E</name>\n<enumerator><name>A</name><value>x</value></enumerator>"),
         "x.xml:2: warning: enumerator `A` of `E` has `x`, which is no number [no-number]\n"                  },
        {"two enumerators of one number",
         enumeration("<name>E</name><enumerator><name>A</name><value>1</value></enumerator>\n"
                     "<enumerator><name>B</name>\n<value>0x1</value></enumerator>"),
         "x.xml:3: warning: enumerator `B` of `E` has the number 0x1 of `A` "
         "[number-twice]\n"                                                                                   },
        {"several values",
         enumeration("<name>E</name><enumerator><name>A</name><value>1</value>\n"
                     "<value>2</value></enumerator>"),
         "x.xml:2: note: enumerator `A` of `E` has several numbers [several-numbers]\n"                       },
        {"a property twice",              enumeration("<name>E</name>\n<name>F</name>"),
         "x.xml:2: warning: `name` of enumerated datatype `E` is there twice; the first counts "
         "[repeated-property]\n"                                                                              },
        {"an unknown namespace",          "<objectModel xmlns='urn:x-2030'><objects/></objectModel>",
         "x.xml:1: warning: the namespace `urn:x-2030` is none of an edition; read as 1516-2025 "
         "[unknown-namespace]\n"                                                                              },
        {"text where there is none",      in2010("<objects>\nwords</objects>"),
         "x.xml:2: warning: text stands where `objects` has none; it is kept as it is "
         "[stray-text]\n"                                                                                     },
        {"a document type",               "<!DOCTYPE objectModel SYSTEM 'x.dtd'>\n" + in2010("<objects/>"),
         "x.xml:1: note: the document type is not looked at [doctype]\n"                                      },
    };
    for (const Case& each : cases)
    {
        std::string found;
        for (const std::string& line : texts(readText(each.text).findings)) found += line + "\n";
        EXPECT_EQ(found, each.expected) << each.what;
    }
}

TEST(XmlReadingTest, RefusesWhatIsNoModelAndSaysWhatItIs)
{
    using namespace std::string_literals;
    const std::pair<std::string, const char*> cases[] = {
        {"",                                                                       "x.xml: error: is empty [no-object-model]"                },
        {"\xEF\xBB\xBF",                                                           "x.xml: error: is empty [no-object-model]"                },
        {" \n",                                                                    "x.xml: error: holds nothing but blanks [no-object-model]"},
        {"\x1F\x8B\x08"s,                                                          "is compressed with gzip"                                 },
        {"(FED (Federation x))",                                                   "is a FED file"                                           },
        {"<!DOCTYPE html><p>",                                                     "is an HTML page"                                         },
        {"<html><body/></html>",                                                   "is an HTML page"                                         },
        {"<\0\0\0"s,                                                               "is written in UTF-32"                                    },
        {"<?xml version='1.0' encoding='EBCDIC'?><objectModel/>",                  "encoding \"ebcdic\""                                     },
        {"<!DOCTYPE objectModel [<!ENTITY a 'b'>]><objectModel>&a;</objectModel>",
         "x.xml:1:23: error: has a document type with declarations"                                                                          },
        {"<objectModel>\n <a></b></objectModel>",
         "x.xml:2:7: error: is no well-formed XML: mismatched tag [not-well-formed]"                                                         },
        {"<schema/>",                                                              "its root is `schema`"                                    },
        {"plain words",                                                            "begins neither as XML nor as HLA 1.3"                    },
    };
    for (const auto& [text, expected] : cases)
    {
        const omt::Reading reading = readText(text);
        EXPECT_THAT(texts(reading.findings), ElementsAre(HasSubstr(expected)));
        EXPECT_THAT(reading.model.modules(), IsEmpty());
        EXPECT_FALSE(reading.isSound());
    }
}

TEST(XmlReadingTest, KeepsTextsAsTheyAre)
{
    const std::string text = in2010(
        "<!-- first --><notes><note notes='n'><label> a<!-- in -->b </label>"
        "<semantics><![CDATA[ <x> ]]> y  z </semantics>"
        "<p:q xmlns:p='urn:p' p:r='1'><p:s/></p:q><unknown a='1'>u</unknown></note></notes>");
    const omt::Reading reading = readText(text);
    ASSERT_EQ(reading.model.tables().notes.size(), 1U);
    const omt::Note& note = reading.model.tables().notes.front();
    EXPECT_EQ(note.name, "ab");
    EXPECT_EQ(note.semantics, "<x>  y  z");
    EXPECT_THAT(reading.model.noteLabels(note), ElementsAre("n"));
    std::vector<std::string> asides;
    for (const omt::Aside& aside : note.asides) asides.push_back(aside.text.str());
    EXPECT_THAT(asides, ElementsAre("n", " in ", "<p:q xmlns:p='urn:p' p:r='1'><p:s/></p:q>",
                                    "<unknown a='1'>u</unknown>"));
}

TEST(XmlReadingTest, ReadsEveryEncoding)
{
    const std::string letters = "<notes><note><label>\xC3\xA4\xE2\x82\xAC</label></note></notes>";
    const auto utf16 = [](std::string_view ascii, bool isLittle)
    {
        std::string text = isLittle ? "\xFF\xFE" : "\xFE\xFF";
        for (const char c : ascii) (text += isLittle ? c : '\0') += isLittle ? '\0' : c;
        return text;
    };
    const std::string plain =
        "<objectModel xmlns='http://standards.ieee.org/IEEE1516-2010'><notes>"
        "<note><label>a</label></note></notes></objectModel>";
    const auto declared = [](const std::string& encoding, const std::string& letter)
    {
        return "<?xml version='1.0' encoding='" + encoding + "'?>" +
               in2010("<notes><note><label>" + letter + "</label></note></notes>");
    };
    const std::string letter = "\xC3\xA4";
    const std::string sign = "\xE2\x82\xAC";
    const std::map<std::string, std::string> cases = {
        {in2010(letters), letter + sign},
        {"\xEF\xBB\xBF" + in2010(letters), letter + sign},
        {declared("ISO-8859-1", "\xE4"), letter},
        {declared("windows-1252", "\x80"), sign},
        {utf16(plain, true), "a"},
        {utf16(plain, false), "a"},
    };
    for (const auto& [text, expected] : cases)
    {
        const omt::Reading reading = readText(text);
        ASSERT_EQ(reading.model.tables().notes.size(), 1U) << text;
        EXPECT_EQ(reading.model.tables().notes.front().name, expected);
    }
}

}  // namespace
