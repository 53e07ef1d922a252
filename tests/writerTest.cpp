// SPDX-License-Identifier: Apache-2.0
// The writer of 1516-2010 documents: each element in its place, what is left out, odd texts, places
// that cannot be written.
#include "omtReader/xmlEvolvedFileWriter.h"
#include "omtReader/xmlFileReader.h"
#include "support.h"

#include <fstream>
#include <regex>
#include <sstream>

namespace
{

using Lines = std::vector<std::string>;

const std::string theWarning =
    "Warning: texts or names with something that XML cannot hold, changed as they were written: ";

std::string written(const TreePtr& tree)
{
    return DtXMLEvolvedFileWriter(tree.get()).writeString().str();
}

/// What is after the first elements, whose XML attributes stand in another order in files, without
/// blanks.
std::string bodyOf(const DtString& document)
{
    std::string body = document.str().substr(document.str().find("<modelIdentification"));
    std::erase_if(body, [](char octet) { return octet == ' ' || octet == '\n'; });
    return body;
}

/// The tree of a document, through a file; null if it cannot be read.
TreePtr readAgain(const std::string& document)
{
    const TemporaryFolder folder;
    return TreePtr(DtXMLFileReader().readFile(folder.write("m.xml", document).c_str(), nullptr));
}

// Each text is another, so that none can take the place of another.
constexpr char theDocument[] =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<objectModel notes="_1" xmlns="http://standards.ieee.org/IEEE1516-2010" )"
    R"(xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xsi:schemaLocation=)"
    R"("http://standards.ieee.org/IEEE1516-2010 )"
    R"(http://standards.ieee.org/downloads/1516/1516.1-2010/IEEE1516-FDD-2010.xsd">
<modelIdentification notes="_2"><name notes="_2">FooValid FDD</name><type>i1</type>
<version>i2</version><modificationDate>i3</modificationDate>
<securityClassification>i4</securityClassification><releaseRestriction>i5</releaseRestriction>
<purpose>i6</purpose><applicationDomain>i7</applicationDomain><description>i8</description>
<useLimitation>i9</useLimitation>
<reference><type>r1</type><identification>r2</identification></reference>
<reference><identification>r3</identification></reference></modelIdentification>
<objects><objectClass><name>HLAobjectRoot</name><sharing>o1</sharing><semantics>o2</semantics>
<attribute><name>a1</name><dataType>a2</dataType><updateType>a3</updateType>
<updateCondition>a4</updateCondition><ownership>a5</ownership><sharing>a6</sharing>
<dimensions><dimension>a7</dimension><dimension>a8</dimension></dimensions>
<transportation>a9</transportation><order>a10</order><semantics>a11</semantics></attribute>
<attribute><name>b1</name></attribute>
<objectClass><name>o3</name><objectClass><name>o4</name></objectClass></objectClass>
<objectClass><name>o5</name></objectClass></objectClass></objects>
<interactions><interactionClass><name>HLAinteractionRoot</name><sharing>p1</sharing>
<dimensions><dimension>p2</dimension></dimensions><transportation>p3</transportation>
<order>p4</order><semantics>p5</semantics>
<parameter><name>q1</name><dataType>q2</dataType><sharing>q3</sharing>
<transportation>q4</transportation><order>q5</order><semantics>q6</semantics></parameter>
<interactionClass><name>p6</name></interactionClass></interactionClass></interactions>
<dimensions><dimension notes="d0"><name>d1</name><dataType>d2</dataType>
<upperBound>d3</upperBound><normalization>d4</normalization><value>d5</value></dimension>
<dimension><name>d6</name></dimension></dimensions>
<time><timeStamp><dataType>t1</dataType><semantics>t2</semantics></timeStamp>
<lookahead><dataType>t3</dataType><semantics>t4</semantics></lookahead></time>
<tags><sendReceiveTag><dataType>g1</dataType><semantics>g2</semantics></sendReceiveTag></tags>
<synchronizations><synchronizationPoint><label>s1</label><datatype>s2</datatype>
<capability>s3</capability><semantics>s4</semantics></synchronizationPoint></synchronizations>
<transportations><transportation><name>m1</name><reliable>m2</reliable>
<semantics>m3</semantics></transportation></transportations>
<switches><automaticResignAction resignAction="NoAction"/><autoProvide isEnabled="true"/>
<serviceReporting isEnabled="false"/></switches>
<updateRates><updateRate><name>u1</name><semantics>u2</semantics><rate>0.1</rate></updateRate>
<updateRate><name>u3</name><rate>0</rate></updateRate></updateRates>
<dataTypes><basicDataRepresentations><basicData><name>e1</name><size>e2</size>
<interpretation>e3</interpretation><endian>e4</endian><encoding>e5</encoding></basicData>
</basicDataRepresentations><simpleDataTypes><simpleData><name>f1</name>
<representation>f2</representation><units>f3</units><resolution>f4</resolution>
<accuracy>f5</accuracy><semantics>f6</semantics></simpleData></simpleDataTypes>
<enumeratedDataTypes><enumeratedData><name>h1</name><representation>h2</representation>
<semantics>h3</semantics><enumerator><name>h4</name><value>-2147483648</value></enumerator>
<enumerator><name>h5</name><value>0</value></enumerator></enumeratedData></enumeratedDataTypes>
<arrayDataTypes><arrayData><name>j1</name><dataType>j2</dataType><cardinality>j3</cardinality>
<encoding>j4</encoding><semantics>j5</semantics></arrayData></arrayDataTypes>
<fixedRecordDataTypes><fixedRecordData><name>k1</name><encoding>k2</encoding>
<semantics>k3</semantics><field><name>k4</name><dataType>k5</dataType>
<semantics>k6</semantics></field></fixedRecordData></fixedRecordDataTypes>
<variantRecordDataTypes><variantRecordData><name>v1</name><discriminant></discriminant>
<dataType></dataType><alternative><enumerator>v2</enumerator><name>v3</name>
<dataType></dataType></alternative></variantRecordData>
<variantRecordData><name>v4</name><discriminant>v5</discriminant>
<dataType>v6</dataType><alternative><enumerator></enumerator><name></name>
<dataType>v7</dataType></alternative></variantRecordData></variantRecordDataTypes></dataTypes>
<notes><note><label>n1</label><semantics>n2</semantics></note></notes></objectModel>
)";

TEST(WriterTest, EachElementIsInItsPlace)
{
    const TreePtr tree = readAgain(theDocument);
    ASSERT_TRUE(tree);
    tree->setName("Foo");
    tree->addReference({"r1", "r2"});
    tree->addReference({"", "r3"});
    tree->getSynchroNode("s1")->setDatatype("s2");
    tree->getDimensionNode("d1")->setNote("d0");
    const std::string all = written(tree);
    // With an element in each line a difference shows where it is.
    const std::regex theSeam("><");
    const auto byLine = [&](const std::string& text)
    { return std::regex_replace(text, theSeam, ">\n<"); };
    EXPECT_EQ(byLine(all),
              byLine(std::regex_replace(theDocument, std::regex(R"(([^?]>)\n(?=<))"), "$1")));
    const std::string indented = DtXMLEvolvedFileWriter(tree.get()).writeIndentedString().str();
    EXPECT_THAT(indented, testing::HasSubstr("\n    <name notes=\"_2\">FooValid FDD</name>\n"));
    const std::regex theEmpty(R"(<(\w+)></\1>)");
    EXPECT_EQ(bodyOf(indented), std::regex_replace(bodyOf(all), theEmpty, "<$1/>"));

    // None of these is written.
    tree->addPOC("x", "x", "x", "x", "x", "x", "x");
    for (const auto set :
         {&DtOMTTree::setUseHistory, &DtOMTTree::setSponsorOrgName, &DtOMTTree::setMOMVersion,
          &DtOMTTree::setReference, &DtOMTTree::setOther})
        (tree.get()->*set)("x");
    tree->setHlaVersion(DtHla13);
    tree->addObjectClassNode(named<DtObjectClassFedNode>("x"));
    tree->addInteractionClassNode(named<DtInteractionClassFedNode>("x"));
    tree->addComplexDatatypeNode(named<DtComplexDatatypeNode>("x"));
    DtVariantDatatypeNode& variant = *tree->getVariantDatatypeNode("v1");
    variant.setEncoding("x");
    variant.setDescription("x");
    (*variant.getComponentNodeList())->setDescription("x");
    DtAttributeFedNode& attribute = *tree->objectClassRoot()->findAttribute("a1");
    attribute.setAccuracy("x");
    attribute.setAccuracyCondition("x");
    attribute.setCardinality("x");
    attribute.setNote("x");
    tree->getSimpleDatatypeNode("f1")->setNote("x");
    EXPECT_EQ(written(tree), all);
}

TEST(WriterTest, AnEmptyTreeHasEverySection)
{
    const TreePtr tree(new DtOMTTree);
    EXPECT_THAT(written(tree),
                testing::EndsWith(
                    "<modelIdentification notes=\"_2\"><name notes=\"_2\">Valid FDD</name>"
                    "</modelIdentification><objects/><interactions/><dimensions/>"
                    "<time><timeStamp/><lookahead/></time><tags/><synchronizations/>"
                    "<transportations/><switches/><updateRates/><dataTypes>"
                    "<basicDataRepresentations/><simpleDataTypes/><enumeratedDataTypes/>"
                    "<arrayDataTypes/><fixedRecordDataTypes/><variantRecordDataTypes/></dataTypes>"
                    "<notes/></objectModel>\n"));
}
TEST(WriterTest, AnyTextGivesAWellFormedDocument)
{
    const std::string theFine =
        "<a b=\"c\" d='e'>&amp;]]><!--\ta\nb\r\n\u00e9\u20ac\ud7ff\ue000\ufffd\U0010ffff\x7f ";
    const struct
    {
        const char* what;
        std::string text;
        std::string kept;  // what is read again
    } theCases[] = {
        {"fine", theFine, theFine},
        {"control characters", "a\x01\x1f\vb", "a\ufffd\ufffd\ufffdb"},
        {"a zero", std::string("a\0b", 3), "a\ufffdb"},
        {"no characters", "\ufffe\uffff", "\ufffd\ufffd"},
        {"Latin-1", "caf\xe9 \x80\xff", "caf\u00e9 \u0080\u00ff"},
        {"cut UTF-8", "\u00e9\xe2\x82", "\u00e9\u00e2\u0082"},
        {"too long UTF-8", "\xc0\xaf\xe0\x80\xaf", "\u00c0\u00af\u00e0\u0080\u00af"},
        {"a surrogate", "\xed\xa0\x80", "\u00ed\u00a0\u0080"},
        {"beyond Unicode", "\xf4\x90\x80\x80\xf8", "\u00f4\u0090\u0080\u0080\u00f8"},
    };
    for (const auto& [what, text, kept] : theCases)
    {
        SCOPED_TRACE(what);
        const TreePtr tree(new DtOMTTree);
        tree->setPurpose(text);
        tree->addVariantDatatypeNode(named<DtVariantDatatypeNode>(text));
        tree->addSwitchNode(named<DtBoolAttrNode>("automaticResignAction"));
        tree->getSwitchNode("automaticResignAction")->setNote(text);
        Lines expected;
        if (text != kept) expected.push_back(theWarning + "3\n");
        Messages messages;
        DtXMLEvolvedFileWriter writer(tree.get());
        writer.writeString();
        EXPECT_EQ(messages.take(), expected);
        const std::string document = writer.writeString().str();
        EXPECT_EQ(messages.take(), expected) << "each document has a count of its own";
        const TreePtr again = readAgain(document);
        ASSERT_TRUE(again);
        EXPECT_EQ(again->getPurpose(), kept);
        EXPECT_EQ((*again->getVariantDatatypeNodeList())->getName(), kept);
        EXPECT_EQ((*again->getSwitchNodeList())->getNote(), kept);
    }
}

TEST(WriterTest, NamesOfTagsAndSwitchesBecomeNamesOfElements)
{
    expectEach(
        {"sendReceiveTag => sendReceiveTag 0", "\u00e9t\u00e9-1.a => \u00e9t\u00e9-1.a 0",
         " => _ 2", "a b => a_b 2", "<x/> => _x__ 2", "1a => _1a 2", "-a => _-a 2", "a:b => a_b 2",
         "\xe9 => _ 2", "\u00e9 b => ___b 2", "\"&' => ___ 2", std::string("a\0b => a_b 2", 12)},
        [](const DtString& name)
        {
            const TreePtr tree(new DtOMTTree);
            tree->addTagNode(named<DtTagNode>(name));
            tree->addSwitchNode(named<DtBoolAttrNode>(name));
            const Messages messages;
            const std::string document = written(tree);
            const std::string count =
                messages.list().empty() ? "0" : messages.list()[0].substr(theWarning.size(), 1);
            const TreePtr again = readAgain(document);
            if (!again) return document;
            const std::string result = (*again->getTagNodeList())->getName().str();
            EXPECT_EQ((*again->getSwitchNodeList())->getName(), result.c_str());
            return result + " " + count;
        });
}

/// A tree of classes, each below the last.
TreePtr chain(int length)
{
    TreePtr tree(new DtOMTTree);
    auto* parent = named<DtObjectClassFedNode>("HLAobjectRoot");
    tree->addObjectClassNode(parent);
    tree->setObjectClassRoot(parent);
    for (; length > 0; --length)
    {
        auto* const node = named<DtObjectClassFedNode>("C");
        tree->addObjectClassNode(node);
        parent->addChildObject(node);
        parent = node;
    }
    return tree;
}

TEST(WriterTest, TreesOfAnySizeAreWrittenWhole)
{
    const TemporaryFolder folder;
    const std::string file = (folder.path() / "m.xml").string();
    TreePtr large(new DtOMTTree);
    large->setPurpose(std::string(11'000'000, 'p'));
    const TreePtr theTrees[] = {chain(200), chain(1000), chain(20000), std::move(large)};
    for (const TreePtr& tree : theTrees)
    {
        DtXMLEvolvedFileWriter writer(tree.get());
        writer.writeFile(file.c_str());
        std::ostringstream content;
        content << std::ifstream(file, std::ios::binary).rdbuf();
        EXPECT_TRUE(content.str() == writer.writeIndentedString().str());
        EXPECT_NE(content.str().find("\n  <modelIdentification"), std::string::npos);
        EXPECT_TRUE(bodyOf(content.str()) == bodyOf(written(tree)));
    }
    EXPECT_TRUE(readAgain(written(chain(249)))) << "the deepest that is read from other formats";
}

TEST(WriterTest, PartsAskedForOutsideOfAWriteAreNotWritten)
{
    const TreePtr tree(new DtOMTTree);
    DtXMLEvolvedFileWriter writer(tree.get());
    const DtString before = writer.writeString();
    testing::internal::CaptureStderr();
    writer.writeType();
    writer.writePOCs();
    writer.writePOC(DtOMTTreePOC());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(writer.writeString(), before);
}

TEST(WriterTest, WhatCannotBeWrittenIsReportedAndNoMore)
{
    const TemporaryFolder folder;
    const TreePtr tree(new DtOMTTree);
    for (const std::string& name :
         {folder.path().string(), (folder.path() / "none" / "m.xml").string(),
          std::string("/dev/full"), std::string()})
    {
        testing::internal::CaptureStderr();
        DtXMLEvolvedFileWriter(tree.get()).writeFile(name.empty() ? nullptr : name.c_str());
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error at xmlSaveFormatFileEnc\n")
            << name;
    }
}

}  // namespace
