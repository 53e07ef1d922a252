// SPDX-License-Identifier: Apache-2.0
// What writing makes of models that the schemas refuse as they are, and what it keeps.
#include "omt/model/modelBuilder.h"
#include "omt/model/read.h"
#include "omt/model/write.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <vector>

namespace
{

using testing::HasSubstr;
using testing::Not;

std::string document(std::string_view content, int year = 2010)
{
    return "<objectModel xmlns=\"http://standards.ieee.org/IEEE1516-" + std::to_string(year) +
           "\">" + std::string(content) + "</objectModel>";
}

std::string textOf(const omt::Findings& findings)
{
    std::ostringstream text;
    for (const omt::Finding& finding : findings) text << finding << '\n';
    return text.str();
}

omt::Writing written(const std::string& xml, omt::Edition edition)
{
    omt::Findings ignored;
    return omt::writeXml(omt::readModule({"a.xml", xml}, ignored), edition);
}

TEST(WriteTest, WhatTheSchemaRefusesIsMadeValidWithAFinding)
{
    const struct
    {
        const char* what;
        std::string input;
        omt::Edition edition;
        std::vector<const char*> expected;
        std::vector<const char*> absent;
        const char* finding;
    } cases[] = {
        {"labels of notes",
         document(R"(<objects><objectClass notes="6 7"><name>A</name></objectClass></objects>
<notes><note><label>6</label></note><note><label>N</label></note></notes>)"),
         omt::Edition::ieee2010,
         {R"(<objectClass notes="Note6">)", "<label>Note6</label>", "<label>N</label>"},
         {},
         "a.xml:1: warning: the reference to note `7` is lost"},
        {"names, and those who refer to them",
         document(R"(<dataTypes><enumeratedDataTypes><enumeratedData><name>a b</name><enumerator>
<name>1x</name></enumerator></enumeratedData></enumeratedDataTypes><variantRecordDataTypes>
<variantRecordData><name>a_b</name><discriminant>d</discriminant><dataType>a b</dataType>
<alternative><enumerator>[1x .. y], 1x</enumerator></alternative></variantRecordData>
</variantRecordDataTypes></dataTypes>)"),
         omt::Edition::ieee2010,
         {"<name>a_b_2</name>", "<dataType>a_b_2</dataType>", "<name>_1x</name>",
          "<enumerator>[_1x .. y], _1x</enumerator>"},
         {},
         "name `a b` of enumerated datatype is written as `a_b_2`"},
        {"empty tables of classes and values out of their range",
         document(R"(<modelIdentification><modificationDate>10/03/2003</modificationDate>
<applicationDomain/></modelIdentification><objects/><interactions/><dataTypes><arrayDataTypes>
<arrayData><name>A</name><cardinality>1+</cardinality></arrayData></arrayDataTypes></dataTypes>)",
         2025),
         omt::Edition::ieee2025,
         {"2003-10-03", "<cardinality>[1..2147483647]</cardinality>"},
         {"objects", "interactions", "applicationDomain"},
         "modificationDate `10/03/2003` of identification is written as `2003-10-03`"},
        {"several roots, and a class twice",
         document(R"(<objects><objectClass><name>A</name><attribute><name>x</name></attribute>
<objectClass><name>C</name></objectClass></objectClass><objectClass><name>A</name><attribute>
<name>y</name></attribute><attribute><name>x</name></attribute></objectClass><objectClass>
<name>B</name></objectClass></objects>)"),
         omt::Edition::ieee2010,
         {"<name>HLAobjectRoot</name>\n      <objectClass>\n        <name>A</name>\n        "
          "<attribute>\n          <name>x</name>\n        </attribute>\n        <attribute>\n"
          "          <name>y</name>\n        </attribute>\n        <objectClass>\n          "
          "<name>C</name>"},
         {},
         "attribute `x` of object class `A` is lost: the name is there twice"},
        {"notes and comments at a property that 2010 lacks, and notes of a part that it lacks",
         document(R"(<objects><objectClass><name>A</name><attribute><name>x</name><!--why-->
<valueRequired noteReferences="N">true</valueRequired></attribute><directedInteraction
 noteReferences="N"><interaction>I</interaction></directedInteraction></objectClass></objects>
<notes><note><label>N</label></note></notes>)",
         2025),
         omt::Edition::ieee2010,
         {"<!--why-->\n      <attribute>"},
         {"notes=", "valueRequired"},
         "a.xml:3: warning: the reference to note `N` at directed interaction is lost, as that is "
         "not written [lost]\na.xml:2: warning: the reference to note `N` at valueRequired of "
         "attribute `x` is lost, as that is not written"},
        {"a reference to instances in 2010",
         document(R"(<dataTypes><referenceDataTypes><referenceDataType><name>R</name>
<representation>L</representation><referenceClass>C</referenceClass></referenceDataType>
</referenceDataTypes><arrayDataTypes><arrayData><name>L</name><dataType>E</dataType></arrayData>
</arrayDataTypes></dataTypes>)",
         2025),
         omt::Edition::ieee2010,
         {"<arrayData>\n        <name>R</name>\n        <dataType>E</dataType>"},
         {"reference"},
         "the class `C` and the attribute `` of reference datatype `R` is lost: 1516-2010"},
        {"dimensions of attributes in 2025, and dimensions themselves",
         document(R"(<objects><objectClass><name>A</name><attribute><name>x</name><dimensions>
<dimension>D</dimension></dimensions></attribute><attribute><name>y</name><dimensions><dimension>
D</dimension></dimensions></attribute></objectClass></objects><dimensions><dimension><name>D</name>
<dataType>T</dataType></dimension></dimensions><switches><conveyProducingFederate/></switches>)"),
         omt::Edition::ieee2025,
         {"<name>A</name>\n      <dimensions>\n        <dimension>D</dimension>\n      "
          "</dimensions>\n      <attribute>\n        <name>x</name>\n      </attribute>",
          "<inputDataTypes>\n        <dataType>T</dataType>\n      </inputDataTypes>\n      "
          "<inputDataDescription/>\n      <normalization/>\n      <outputDataSemantics/>"},
         {"conveyProducingFederate"},
         "a.xml:4: warning: switch `conveyProducingFederate` is lost: 1516-2025"},
        {"elements of another edition that nothing knows; those with a namespace stay",
         document(R"(<objects><objectClass u="1"><name>A</name><new>1</new><n:x xmlns:n="urn:n"/>
</objectClass></objects>)"),
         omt::Edition::ieee2025,
         {R"(<n:x xmlns:n="urn:n"/>)"},
         {"<new>", "u="},
         "the element `new` of object class `A` is lost"},
    };
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.what);
        const omt::Writing writing = written(one.input, one.edition);
        for (const char* const expected : one.expected)
            EXPECT_THAT(writing.text, HasSubstr(expected));
        for (const char* const absent : one.absent)
            EXPECT_THAT(writing.text, Not(HasSubstr(absent)));
        EXPECT_THAT(textOf(writing.findings), HasSubstr(one.finding));
        const omt::Writing again = written(writing.text, one.edition);
        EXPECT_EQ(again.text, writing.text);
        EXPECT_EQ(textOf(again.findings), "");
    }
}

TEST(WriteTest, WhatStandsBesideThePropertiesStaysWhereItIs)
{
    const std::string xml = R"(<?xml version="1.0" encoding="UTF-8"?>
<!--before-->
<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010" xmlns:f="urn:f" f:a="1&quot;&#10;">
  <modelIdentification>
    <!--of the name-->
    <name notes="N" f:b="2">A &amp;&#13; B &lt;</name>
    <name>again</name>
    <useHistory>1</useHistory>
    <!--of the second-->
    <useHistory f:c="3">2</useHistory>
    <f:extra><f:inner/></f:extra>
    <!--at the end-->
  </modelIdentification>
  <objects>
    <objectClass>
      <name>Root</name>
      <attribute>
        <name>x</name>
        <semantics/>
        <dimensions f:d="4">
          <dimension f:e="5">D</dimension>
          <odd/>
        </dimensions>
      </attribute>
    </objectClass>
  </objects>
  <switches>
    <automaticResignAction resignAction="NoAction"/>
  </switches>
  <notes>
    <note>
      <label>N</label>
      <semantics>ü - two
        lines</semantics>
    </note>
  </notes>
</objectModel>
)";
    omt::Findings findings;
    const omt::Model model = omt::readModule({"a.xml", xml}, findings);
    std::string inOrder = xml;  // semantics stands after dimensions in the schema
    const std::string semantics = "        <semantics/>\n";
    inOrder.erase(inOrder.find(semantics), semantics.size());
    inOrder.insert(inOrder.find("      </attribute>"), semantics);
    EXPECT_EQ(omt::writeXml(model, omt::Edition::ieee2010).text, inOrder);
    EXPECT_EQ(omt::writeXml(model, omt::Edition::ieee2010, omt::WriteOptions().asRead()).text,
              inOrder);
}

TEST(WriteTest, ModulesBecomeOneDocument)
{
    const std::string first =
        document(R"(<modelIdentification><name>One</name></modelIdentification>
<objects><objectClass notes="N"><name>A</name><sharing>Publish</sharing></objectClass></objects><notes><note><label>N</label>
<semantics>1</semantics></note></notes>)");
    const std::string second =
        document(R"(<modelIdentification><name>Two</name><copyright>C</copyright>
</modelIdentification><objects><objectClass><name>A</name><attribute noteReferences="N"><name>x
</name></attribute></objectClass></objects><notes><note><label>N</label><semantics>2</semantics>
</note></notes>)",
                 2025);
    const omt::Reading reading = omt::readDocuments({
        {"one.xml", first },
        {"two.xml", second}
    });
    const omt::Writing writing = omt::writeXml(reading.model, omt::Edition::ieee2010);
    for (const char* const expected :
         {"<name>One</name>", "<type>Composed_From</type>", "<identification>Two</identification>",
          R"(<objectClass notes="N">)", R"(<attribute notes="N_2">)", "<label>N_2</label>"})
        EXPECT_THAT(writing.text, HasSubstr(expected));
    EXPECT_THAT(textOf(writing.findings), HasSubstr("two.xml:3: note: the label of note `N`"));
}

TEST(WriteTest, AnyTextOfABuilderIsWellFormed)
{
    omt::ModelBuilder builder;
    builder.addModule("made", omt::Edition::ieee2010);
    omt::Note note;
    note.name = builder.text("]]>\x01 ");
    note.semantics = builder.text("\xFF\x08]]>\xEF\xBF\xBE\t\"");
    omt::Aside comment;
    comment.what = omt::Aside::What::comment;
    comment.text = builder.text("a--b---");
    note.asides = builder.list(&comment, 1);
    builder.tables().notes.push_back(note);
    const std::string text = omt::writeXml(builder.build(), omt::Edition::ieee2010).text;
    EXPECT_THAT(text, HasSubstr("<semantics>\uFFFD\uFFFD]]&gt;\uFFFD\t\"</semantics>"));
    omt::Findings findings;
    omt::readModule({"", text}, findings);
    EXPECT_EQ(textOf(findings), "");
}

TEST(WriteTest, TextsOfAnyLengthReadBackAsTheyAre)
{
    omt::ModelBuilder builder;
    builder.addModule("made", omt::Edition::ieee2010);
    std::vector<std::string> texts;
    for (const std::string end : {"x", "&", "\xC3\xA9", "\xE2\x82\xAC<"})
        for (std::size_t size = 1; size < 9000; size += size < 20 ? 1 : 173 + size % 7)
            texts.push_back(std::string(size, 'a') + end + std::string(size % 50, 'b'));
    for (const std::string& text : texts)
    {
        omt::Note note;
        note.name = builder.text(std::string(1 + text.size() % 70, 'n') +
                                 std::to_string(&text - texts.data()));
        note.semantics = builder.text(text);
        builder.tables().notes.push_back(note);
    }
    omt::Findings findings;
    const omt::Model model = omt::readModule(
        {"", omt::writeXml(builder.build(), omt::Edition::ieee2010).text}, findings);
    ASSERT_EQ(model.tables().notes.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
        EXPECT_EQ(model.tables().notes[i].semantics, texts[i]);
}

TEST(WriteTest, DeepHierarchiesTakeNoStackAndNoSquare)
{
    constexpr std::size_t theDepth = 100000;
    std::string xml = "<objects>";
    for (std::size_t i = 0; i < theDepth; ++i) xml += "<objectClass><name>A</name>";
    for (std::size_t i = 0; i < theDepth; ++i) xml += "</objectClass>";
    const omt::Writing writing = written(document(xml + "</objects>"), omt::Edition::ieee2010);
    EXPECT_LT(writing.text.size(), theDepth * 400);
}

}  // namespace
