// SPDX-License-Identifier: Apache-2.0
// Both XML readers: where each word goes, what is dropped with which warning, what a host
// overrides.
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/simpleDatatypeNode.h"
#include "omtReader/xml1516FileReader.h"
#include "omtReader/xmlEvolvedFileReader.h"
#include "omtReader/xmlFileReader.h"
#include "support.h"
#include "xmlDocument.h"

#include <libxml/tree.h>

#include <algorithm>
#include <set>
#include <sstream>

namespace
{

using Lines = std::vector<std::string>;

/// The document of a text; content without a root gets one.
Document parse(const std::string& content)
{
    const bool isWhole = content.find("<objectModel") != std::string::npos;
    const std::string text = isWhole ? content : "<objectModel>" + content + "</objectModel>";
    xmlDoc* document = nullptr;
    DtString error;
    EXPECT_EQ(
        DtXMLFileReader::openStream(text.data(), static_cast<int>(text.size()), &document, error),
        DtFedReadSuccess)
        << text;
    return Document(document);
}

/// The tree of a text. The document is gone when it is returned.
template <typename Reader>
TreePtr read(Reader&& reader, const std::string& content)
{
    const Document document = parse(content);
    xmlNode* root = xmlDocGetRootElement(document.get());
    return TreePtr(reader.processObjectModel(root));
}

/// What the document said, by path: the dump without empty and initial values and without those
/// that follow from others.
Lines contents(DtOMTTree& tree)
{
    static const std::set<std::string> theDerived = {"hlaVersion",
                                                     "fullName",
                                                     "identifier",
                                                     "parentIdentifier",
                                                     "expectedEnumerationSize",
                                                     "cardinalityType",
                                                     "cardinalityMinimum",
                                                     "cardinalityMaximum"};
    Lines result;
    std::istringstream text(dump(tree));
    for (std::string line; std::getline(text, line);)
    {
        const std::size_t end = line.find(" = ");
        const std::string path = line.substr(1, end - 1);
        const std::string field = path.substr(path.rfind('.') + 1);
        const std::string value = line.substr(end + 3);
        const bool isSame = field == "number" && path.rfind("note", 0) == 0;  // as the label
        const bool isInitial = field == "cardinality" && value == "1";
        const bool isNothing = value.empty() && field != "honorificName";  // shows that it is there
        if (isNothing || value == "(none)" || isSame || isInitial || theDerived.count(field))
            continue;
        result.push_back(path + "=" + value);
    }
    const auto pathOf = [](const std::string& line) { return line.substr(0, line.find('=')); };
    std::stable_sort(result.begin(), result.end(),
                     [&](const auto& one, const auto& other)
                     { return pathOf(one) < pathOf(other); });
    return result;
}

/// The same as one text.
std::string summary(DtOMTTree& tree)
{
    std::string result;
    for (const std::string& line : contents(tree)) result += (result.empty() ? "" : "; ") + line;
    return result;
}

template <typename Reader>
constexpr bool isEvolved = std::is_base_of_v<DtXMLEvolvedFileReader, Reader>;

/// Elements with one property each, inside the elements of a path, as a dialect has them.
template <typename Reader>
std::string definitions(const std::string& path, const std::string& word,
                        std::initializer_list<const char*> values)
{
    const bool hasElements = isEvolved<Reader> || path.rfind("time", 0) == 0;
    std::istringstream names(path);
    std::string name = "objectModel";
    std::string opening;
    std::string closing;
    for (std::string next; std::getline(names, next, '/'); name = next)
    {
        opening += "<" + name + ">";
        closing = "</" + name + ">" + closing;
    }
    for (const std::string value : values)
        opening += hasElements
                       ? "<" + name + "><" + word + ">" + value + "</" + word + "></" + name + ">"
                       : "<" + name + " " + word + "=\"" + value + "\"/>";
    return opening + closing;
}

/// The properties of one kind of element: words apart by blanks, each with the field of the dump
/// after "=" where that has another name.
struct Element
{
    const char* path;   // of the element
    const char* entry;  // in the dump, with what goes before the field
    const char* noun;   // in the warning for an empty name, which is the first word; or none
    const char* inBoth;
    const char* inEvolved = "";
    const char* inOlder = "";
    const char* inNeither = "";
};

const std::vector<Element> theWords = {
    {"", "", "", "", "",
     "name version=versionNo type purpose appDomain=applicationDomain sponsor=sponsorOrgName "
     "date=modificationDate reference other pocName=POC[0].lastName pocOrg=POC[0].orgName "
     "pocPhone=POC[0].phone pocEmail=POC[0].email", "pocType Name description"},
    {"modelIdentification", "", "", "",
     "name type version=versionNo modificationDate securityClassification releaseRestriction "
     "purpose applicationDomain description useLimitation useHistory", "", "other glyph sponsor"},
    {"modelIdentification/reference", "", "", "", "", "", "type identification"},
    {"modelIdentification/poc", "POC[0].", "", "",
     "pocType=type pocName=lastName pocOrg=orgName pocTelephone=phone pocEmail=email", "",
     "pocPhone"},
    {"objects/objectClass", "object[0].", "objectClass", "name sharing semantics=descriptor", "",
     "", "transportation"},
    {"objects/objectClass/attribute", "object[0].attribute[0].", "attribute",
     "name dataType=datatype updateType updateCondition ownership=transferAccept cardinality "
     "accuracy semantics=description", "sharing transportation order", "", "dimensions"},
    {"objects/objectClass/attribute/dimensions", "object[0].attribute[0].", "", "",
     "dimension=dimensions"},
    {"interactions/interactionClass", "interaction[0].", "interactionClass",
     "name sharing transportation order semantics=descriptor", "", "", "dimensions"},
    {"interactions/interactionClass/dimensions", "interaction[0].", "", "", "dimension=dimensions"},
    {"interactions/interactionClass/parameter", "interaction[0].parameter[0].", "parameter",
     "name dataType=datatype semantics=description", "sharing transportation order", "",
     "cardinality"},
    {"dataTypes/basicDataRepresentations/basicData", "basic[0].", "basicData",
     "name size endian encoding", "interpretation"},
    {"dataTypes/simpleDataTypes/simpleData", "simple[0].", "simpleData",
     "name representation units resolution accuracy semantics=description"},
    {"dataTypes/enumeratedDataTypes/enumeratedData", "enumerated[0].", "enumeratedData",
     "name representation semantics=description"},
    {"dataTypes/enumeratedDataTypes/enumeratedData/enumerator", "enumerated[0].enumerator[0].",
     "enumerator", "name=enum value=number", "", "values=number"},
    {"dataTypes/arrayDataTypes/arrayData", "array[0].", "arrayData",
     "name dataType=datatype cardinality encoding semantics=description"},
    {"dataTypes/fixedRecordDataTypes/fixedRecordData", "fixed[0].", "fixedRecordData",
     "name semantics=description", "encoding"},
    {"dataTypes/fixedRecordDataTypes/fixedRecordData/field", "fixed[0].component[0].",
     "fixedRecordData field", "name dataType=datatype semantics=description"},
    {"dataTypes/variantRecordDataTypes/variantRecordData", "variant[0].", "variantRecordData",
     "name discriminant dataType=datatype encoding semantics=description"},
    {"dataTypes/variantRecordDataTypes/variantRecordData/alternative", "variant[0].component[0].",
     "", "enumerator name dataType=datatype semantics=description"},
    {"notes/note", "note[0].", "", "semantics=text", "label", "name=label"},
    {"dimensions/dimension", "dimension[0].", "dimension",
     "name dataType=datatype upperBound normalization value"},
    {"time/timeStamp", "", "", "dataType=fedTimeDatatype semantics=fedTimeSemantics"},
    {"time/lookahead", "", "", "dataType=lookaheadDatatype semantics=lookaheadSemantics"},
    {"tags/sendReceiveTag", "tag[0].", "", "dataType=datatype semantics=description"},
    {"synchronizations/synchronizationPoint", "synchro[0].", "synchronization", "",
     "label=name dataType=datatype capability semantics=description"},
    {"synchronizations/synchronization", "synchro[0].", "synchronization", "", "",
     "label=name dataType=datatype capability semantics=description"},
    {"transportations/transportation", "transportation[0].", "", "name semantics=description",
     "reliable"},
    {"updateRates/updateRate", "updateRate[0].", "updateRate", "", "name rate semantics"},
};

template <typename Reader>
class ReaderTest : public testing::Test
{
};
using Readers = testing::Types<DtXMLEvolvedFileReader, DtXML1516FileReader>;
TYPED_TEST_SUITE(ReaderTest, Readers);

/// A word in a table and the field that it fills.
std::vector<std::pair<std::string, std::string>> pairs(const std::string& words)
{
    std::vector<std::pair<std::string, std::string>> result;
    std::istringstream pieces(words);
    for (std::string piece; pieces >> piece;)
        result.emplace_back(piece.substr(0, piece.find('=')), piece.substr(piece.find('=') + 1));
    return result;
}

/// Reads a document with a word and one without, and compares.
template <typename Reader>
void expectWords(const Element& element, const char* words, bool areRead)
{
    for (const auto& [word, field] : pairs(words))
    {
        SCOPED_TRACE(std::string(element.path) + " " + word);
        const Lines without =
            contents(*read(Reader(nullptr), definitions<Reader>(element.path, "x", {"7"})));
        const TreePtr tree = read(Reader(nullptr), definitions<Reader>(element.path, word, {"7"}));
        EXPECT_EQ(tree->hlaVersion(), isEvolved<Reader> ? 3 : 2);
        Lines added = contents(*tree);
        std::erase_if(
            added, [&](const std::string& line)
            { return line.back() == '=' || std::count(without.begin(), without.end(), line); });
        EXPECT_EQ(added, areRead ? Lines{element.entry + field + "=7"} : Lines());
    }
}

TYPED_TEST(ReaderTest, EachWordFillsItsFieldAndNothingElse)
{
    const Messages messages;
    for (const Element& element : theWords)
    {
        expectWords<TypeParam>(element, element.inBoth, true);
        expectWords<TypeParam>(element, element.inEvolved, isEvolved<TypeParam>);
        expectWords<TypeParam>(element, element.inOlder, !isEvolved<TypeParam>);
        expectWords<TypeParam>(element, element.inNeither, false);
    }
}

TYPED_TEST(ReaderTest, WhatHasAnEmptyNameIsDroppedWithAWarning)
{
    for (const Element& element : theWords)
    {
        const std::string noun = element.noun;
        const auto words = pairs(std::string(element.inBoth) + " " +
                                 (isEvolved<TypeParam> ? element.inEvolved : element.inOlder));
        const bool isKept = !isEvolved<TypeParam> && noun == "fixedRecordData";
        if (noun.empty() || words.empty() || isKept) continue;
        SCOPED_TRACE(element.path);
        const auto& [word, field] = words.front();
        const Messages messages;
        const TreePtr tree =
            read(TypeParam(nullptr), definitions<TypeParam>(element.path, word, {"", "B"}));
        const Lines lines = contents(*tree);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), element.entry + field + "=B"), 1);
        EXPECT_EQ(summary(*tree).find("[1]"), std::string::npos);
        ASSERT_FALSE(messages.list().empty());
        EXPECT_EQ(messages.list()[0],
                  "Warning: " + noun + " definition was missing a " + word + "\n");
        EXPECT_LE(messages.list().size(), 2u);  // the other being that of a missing root
    }
}

struct Case
{
    const char* what;
    const char* document;
    const char* contents;
    Lines messages = {};
};

constexpr char theNoObjectRoot[] = "Warning: HLAobjectRoot is missing from 1516 Evolved XML file\n";
constexpr char theNoInteractionRoot[] =
    "Warning: HLAinteractionRoot is missing from 1516 Evolved XML file\n";

// Rows of several lines, which clang-format would run into each other.
// clang-format off
const std::vector<Case> theEvolvedCases = {
    {"nothing at all", "", ""},
    {"classes: children first, the root last, a second top is ignored",
     R"(<objects><objectClass><name>HLAobjectRoot</name><objectClass><name>A</name></objectClass>
       <objectClass><name>C</name></objectClass></objectClass>
       <objectClass><name>D</name><objectClass><name/></objectClass></objectClass></objects>)",
     "object[0].name=A; object[0].parent=HLAobjectRoot; object[1].name=C; "
     "object[1].parent=HLAobjectRoot; object[2].child=HLAobjectRoot.A; "
     "object[2].child=HLAobjectRoot.C; object[2].name=HLAobjectRoot; root=HLAobjectRoot",
     {"Warning: Additional object node found at the root level when parsing 1516 Evolved XML file "
      "has been ignored.\n"}},
    {"interactions: likewise, and a dropped first class leaves the top to the second",
     R"(<interactions><interactionClass><name/></interactionClass>
       <interactionClass><name>HLAinteractionRoot</name></interactionClass>
       <interactionClass><name>D</name></interactionClass></interactions>)",
     "interaction[0].name=HLAinteractionRoot; root=HLAinteractionRoot",
     {"Warning: interactionClass definition was missing a name\n",
      "Warning: Additional interaction node found at the root level when parsing 1516 Evolved XML "
      "file has been ignored.\n"}},
    {"a dropped class leaves what is inside it without a parent",
     R"(<objects><objectClass><attribute><name>lost</name></attribute><objectClass><name>A</name>
       <objectClass><name>B</name></objectClass></objectClass><name/>
       <objectClass><name>unread</name></objectClass></objectClass></objects>
       <interactions><interactionClass><interactionClass><name>C</name></interactionClass><name/>
       </interactionClass></interactions>)",
     "interaction[0].name=C; object[0].name=B; object[0].parent=A; object[1].child=A.B; "
     "object[1].name=A",
     {"Warning: objectClass definition was missing a name\n", theNoObjectRoot,
      "Warning: interactionClass definition was missing a name\n", theNoInteractionRoot}},
    {"a root below another class is not found",
     R"(<objects><objectClass><name>A</name><objectClass><name>HLAobjectRoot</name></objectClass>
       </objectClass></objects><interactions/>)",
     "object[0].name=HLAobjectRoot; object[0].parent=A; object[1].child=A.HLAobjectRoot; "
     "object[1].name=A",
     {theNoObjectRoot, theNoInteractionRoot}},
    {"a section again adds, but its root is another",
     R"(<objects><objectClass><name>HLAobjectRoot</name></objectClass></objects>
       <objects><objectClass><name>HLAobjectRoot</name></objectClass></objects>)",
     "object[0].name=HLAobjectRoot; object[1].name=HLAobjectRoot; root=HLAobjectRoot",
     {"Warning: Interaction root is not \"HLAinteractionRoot\" in 1516 Evolved XML file\n"}},
    {"every child of tags but text is a tag", "<tags>words<a/><!-- c --></tags>",
     "tag[0].name=a; tag[1].name=comment"},
    {"switches: one entry for each XML attribute",
     R"(<switches><twice x="" isEnabled="true"/><none/><!-- c --><a isEnabled="True"/>
       <automaticResignAction resignAction="NoAction"/><b resignAction="lost"/></switches>)",
     "switch[0].enabled=1; switch[0].name=twice; switch[1].enabled=1; switch[1].name=twice; "
     "switch[2].enabled=0; switch[2].name=a; switch[3].enabled=0; "
     "switch[3].name=automaticResignAction; switch[3].note=NoAction; switch[4].enabled=0; "
     "switch[4].name=b"},
    {"only dimensions take a note, and not from notes",
     R"(<dimensions><dimension note="N" notes="lost"><name>D</name></dimension></dimensions>
       <notes><note note="lost"/></notes>)",
     "dimension[0].name=D; dimension[0].note=N; note[0].label=0"},
    {"a text is its first piece",
     R"(<!DOCTYPE objectModel [<!ENTITY e "two">]><objectModel><notes>
       <note><label>a</label><semantics>one &lt;&amp;&#33;<!-- c -->two</semantics></note>
       <note><label>b</label><semantics><![CDATA[<one>]]>two</semantics></note>
       <note><label>c</label><semantics>one&e;three</semantics></note>
       <note><label>d</label><semantics><b>one</b>two</semantics></note></notes></objectModel>)",
     "note[0].label=a; note[0].text=one <&!; note[1].label=b; note[1].text=<one>; "
     "note[2].label=c; note[2].text=one; note[3].label=d"},
    {"enumerators: numbers as far as they go, wrapped as in C, no second of a name or number",
     R"(<dataTypes><enumeratedDataTypes><enumeratedData><name>%s%n</name>
       <enumerator><name>a</name><value>7x</value></enumerator>
       <enumerator><name>b</name><value>99999999999</value></enumerator>
       <enumerator><name>c</name><value> +4294967295</value></enumerator>
       <enumerator><name>d</name><value>0x10</value></enumerator>
       <enumerator><name>a</name><value>8</value></enumerator>
       <enumerator><name>f</name><value>7</value></enumerator>
       </enumeratedData></enumeratedDataTypes></dataTypes>)",
     "enumerated[0].enumerator[0].enum=a; enumerated[0].enumerator[0].number=7; "
     "enumerated[0].enumerator[1].enum=b; enumerated[0].enumerator[1].number=1215752191; "
     "enumerated[0].enumerator[2].enum=c; enumerated[0].enumerator[2].number=-1; "
     "enumerated[0].enumerator[3].enum=d; enumerated[0].enumerator[3].number=0; "
     "enumerated[0].name=%s%n",
     {"Duplicated enum name a", "ted enum number "}},
    {"update rates are numbers",
     R"(<updateRates><updateRate><name>B</name><rate>fast</rate></updateRate>
       <updateRate><name>C</name><rate> 1e3 Hz</rate></updateRate>
       <updateRate><name>D</name><rate>0x1p4</rate></updateRate></updateRates>)",
     "updateRate[0].name=B; updateRate[0].rate=0; updateRate[1].name=C; updateRate[1].rate=1000; "
     "updateRate[2].name=D; updateRate[2].rate=16"},
    {"a point of contact for each element", 
     R"(<modelIdentification><poc><pocName>A</pocName></poc><poc><pocType>T</pocType></poc>
       <name>N</name></modelIdentification>)",
     "POC[0].honorificName=; POC[0].lastName=A; POC[1].honorificName=; POC[1].type=T; name=N"},
};

const std::vector<Case> theOlderCases = {
    {"nothing, and no point of contact", "<objectModel name=\"\"/>", ""},
    {"classes: XML attributes first, children before parents, a second top is ignored",
     R"(<objects><objectClass name="HLAobjectRoot"><objectClass name="A"><attribute name="x"/>
       <attribute name="y"/></objectClass></objectClass><objectClass name="D"/></objects>)",
     "object[0].attribute[0].name=x; object[0].attribute[0].parent=A; "
     "object[0].attribute[1].name=y; object[0].attribute[1].parent=A; object[0].name=A; "
     "object[0].parent=HLAobjectRoot; object[1].child=HLAobjectRoot.A; "
     "object[1].name=HLAobjectRoot; root=HLAobjectRoot",
     {"Warning: Additional object node found at the root level when parsing 1516 XML file has been "
      "ignored.\n"}},
    {"a nameless class is not entered",
     R"(<objects><objectClass name="" ><objectClass name="A"/><attribute name=""/></objectClass>
       </objects><interactions><interactionClass name="B"/><interactionClass name="C"/>
       </interactions>)",
     "interaction[0].name=B",
     {"Warning: objectClass definition was missing a name\n",
      "Warning: HLAobjectRoot is missing from 1516 XML file\n",
      "Warning: Additional interaction node found at the root level when parsing 1516 XML file has "
      "been ignored.\n",
      "Warning: HLAinteractionRoot is missing from 1516 XML file\n"}},
    {"a section again adds, but its root is another",
     R"(<objects><objectClass name="HLAobjectRoot"/></objects>
       <objects><objectClass name="A"/></objects><interactions>
       <interactionClass name="HLAinteractionRoot"/></interactions><interactions/>)",
     "interaction[0].name=HLAinteractionRoot; object[0].name=HLAobjectRoot; object[1].name=A; "
     "root=HLAobjectRoot; root=HLAinteractionRoot",
     {"Warning: Object root is not \"HLAobjectRoot\" in 1516 XML file\n",
      "Warning: Interaction root is not \"HLAinteractionRoot\" in 1516 XML file\n"}},
    {"switches are XML attributes",
     R"(<switches autoProvide="Enabled" b="Disabled" c="enabled" d=""><e isEnabled="true"/>
       </switches>)",
     "switch[0].enabled=1; switch[0].name=autoProvide; switch[1].enabled=0; switch[1].name=b; "
     "switch[2].enabled=0; switch[2].name=c"},
    {"of value and values the later wins, and enumerators come before their datatype",
     R"(<dataTypes><enumeratedDataTypes><enumeratedData name=""><enumerator name="" value="1"/>
       <enumerator name="b" value="1" values="2"/><enumerator name="c" values="2" value="1"/>
       </enumeratedData><enumeratedData name="E"><enumerator name="b" value="1" values="2"/>
       <enumerator name="c" values="2" value="1"/><enumerator name="d" value="3" values=""/>
       </enumeratedData></enumeratedDataTypes></dataTypes>)",
     "enumerated[0].enumerator[0].enum=b; enumerated[0].enumerator[0].number=2; "
     "enumerated[0].enumerator[1].enum=c; enumerated[0].enumerator[1].number=1; "
     "enumerated[0].enumerator[2].enum=d; enumerated[0].enumerator[2].number=3; "
     "enumerated[0].name=E",
     {"Warning: enumerator definition was missing a name\n",
      "Warning: enumeratedData definition was missing a name\n"}},
    {"records without a name stay",
     R"(<dataTypes><fixedRecordDataTypes><fixedRecordData name=""><field name="f"/>
       </fixedRecordData></fixedRecordDataTypes></dataTypes>)", "fixed[0].component[0].name=f"},
    {"every child of tags is a tag", "<tags>words<a dataType=\"T\"/><!-- c --></tags>",
     "tag[0].name=text; tag[1].datatype=T; tag[1].name=a; tag[2].name=comment"},
};
// clang-format on

TYPED_TEST(ReaderTest, WhatADocumentBecomes)
{
    for (const Case& c : isEvolved<TypeParam> ? theEvolvedCases : theOlderCases)
    {
        SCOPED_TRACE(c.what);
        Messages messages;
        TypeParam reader(nullptr);
        const TreePtr tree = read(reader, c.document);
        EXPECT_EQ(summary(*tree), c.contents);
        EXPECT_EQ(messages.take(), c.messages);
        EXPECT_EQ(reader.getLastError(), "");
        // A connection has handles set up, which assigns nothing.
        auto* const connection = reinterpret_cast<DtExerciseConn*>(&reader);
        EXPECT_EQ(dump(read(TypeParam(connection), c.document)), dump(tree));
    }
}

template <typename Reader>
constexpr const char* theHostModel =
    R"(<objects><objectClass name="HLAobjectRoot"><attribute name="Secret"/><attribute name="Open"/>
    </objectClass></objects><dataTypes><simpleDataTypes><simpleData name="S"/></simpleDataTypes>
    </dataTypes><tags><t/></tags>)";
template <>
constexpr const char* theHostModel<DtXMLEvolvedFileReader> =
    R"(<objects><objectClass><name>HLAobjectRoot</name><attribute><name>Secret</name></attribute>
    <attribute><name>Open</name></attribute></objectClass></objects><dataTypes><simpleDataTypes>
    <simpleData><name>S</name></simpleData></simpleDataTypes></dataTypes><tags><t/></tags>)";

/// Takes names from elsewhere and hides an attribute and a datatype.
template <typename Base>
class Overriding : public Base
{
public:
    using Base::Base;
    using Base::childNodeString;
    using Item = std::conditional_t<isEvolved<Base>, _xmlNode, _xmlAttr>;

    DtString childNodeString(Item*& item) override
    {
        const DtString text = Base::childNodeString(item);
        return text == "Open" ? DtString("Renamed") : text;
    }
    DtAttributeFedNode* processAttribute(_xmlNode*& element, DtObjectClassFedNode* owner) override
    {
        std::unique_ptr<DtAttributeFedNode> attribute(Base::processAttribute(element, owner));
        return attribute->getName() == "Secret" ? nullptr : attribute.release();
    }
    DtSimpleDatatypeNode* processSimpleData(_xmlNode*&, DtOMTTree*) override { return nullptr; }
    void processTags(_xmlNode*&, DtOMTTree* tree) override { tree->setOther("tags"); }
};

TYPED_TEST(ReaderTest, OverriddenHandlersTakeEffect)
{
    const TreePtr tree = read(Overriding<TypeParam>(nullptr), theHostModel<TypeParam>);
    EXPECT_EQ(summary(*tree),
              "object[0].attribute[0].name=Renamed; object[0].attribute[0].parent=HLAobjectRoot; "
              "object[0].name=HLAobjectRoot; other=tags; root=HLAobjectRoot");
}

/// Writes down what is handed to it.
class LoggingTree : public DtOMTTree
{
public:
    void addObjectClassNode(DtObjectClassFedNode* node) override
    {
        log += "add " + node->getName().str() + ";";
        DtOMTTree::addObjectClassNode(node);
    }
    void setObjectClassRoot(DtObjectClassFedNode* node) override
    {
        log += "root " + node->getName().str() + ";";
    }
    std::string log;
};

TYPED_TEST(ReaderTest, ADerivedTreeIsFilledThroughItsOwnOperations)
{
    TypeParam reader(nullptr);
    const Document document = parse(theHostModel<TypeParam>);
    LoggingTree tree;
    xmlNode* section = xmlDocGetRootElement(document.get())->children;
    reader.processObjects(section, &tree);
    EXPECT_EQ(tree.log, "add HLAobjectRoot;root HLAobjectRoot;");
}

TYPED_TEST(ReaderTest, AParameterNeedsNoOwner)
{
    const Document document =
        parse(isEvolved<TypeParam> ? "<p><name>P</name></p>" : "<p name=\"P\"/>");
    xmlNode* element = xmlDocGetRootElement(document.get())->children;
    const std::unique_ptr<DtParameterFedNode> parameter(
        TypeParam(nullptr).processParameter(element, nullptr));
    ASSERT_TRUE(parameter);
    EXPECT_EQ(parameter->getFullName(), "P");
}

}  // namespace

TEST(EvolvedReaderTest, AReferenceIsAddedWhenBothPartsAreThere)
{
    DtXMLEvolvedFileReader reader(nullptr);
    const Document document =
        parse("<r><type>T</type><identification>I</identification></r><r><type>U</type></r>");
    DtOMTTree tree;
    for (xmlNode* node = xmlDocGetRootElement(document.get())->children; node; node = node->next)
    {
        auto* attribute = reinterpret_cast<xmlAttr*>(node);  // what hosts do: the heads are alike
        reader.processReference(attribute, &tree);
    }
    EXPECT_EQ(summary(tree), ("references[0].identification=I; references[0].type=T"));
}
