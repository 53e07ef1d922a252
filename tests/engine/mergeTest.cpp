// SPDX-License-Identifier: Apache-2.0
// Merging and references: what several modules say together, and what they contradict.
#include "omt/model/modelBuilder.h"
#include "omt/model/read.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <sstream>

namespace
{

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

std::string objectModel(const std::string& edition, const std::string& content)
{
    return "<objectModel xmlns=\"http://standards.ieee.org/IEEE1516-" + edition + "\">\n" +
           content + "</objectModel>";
}

std::vector<std::string> texts(const omt::Findings& findings)
{
    std::vector<std::string> lines;
    for (const omt::Finding& finding : findings)
    {
        lines.push_back((std::ostringstream() << finding).str());
        if (finding.other &&
            lines.back().find(finding.other->file + ":" + std::to_string(finding.other->line)) ==
                std::string::npos)
            lines.push_back("no second place");
    }
    return lines;
}

/// The findings of merging a.xml, b.xml and so on alone, without those on names that are missing.
omt::Findings mergeAll(const std::vector<std::string>& documents, omt::Model* merged = nullptr)
{
    std::vector<omt::Model> models;
    omt::Findings findings;
    char name = 'a';
    for (const std::string& document : documents)
        models.push_back(omt::readModule({std::string(1, name++) + ".xml", document}, findings));
    EXPECT_THAT(texts(findings), IsEmpty());
    const omt::Model model = omt::merge(models, findings);
    if (merged) *merged = model;
    return findings;
}

/// Definitions in the first and the second module, both of 2010, and what is found.
struct Pair
{
    const char* what;
    const char* tables;
    const char* first;
    const char* second;
    std::vector<std::string> findings;
};

/// The tables around a definition, such as "dataTypes/simpleDataTypes".
std::string around(std::string tables, const std::string& content)
{
    std::string before;
    std::string after;
    std::istringstream words(tables);
    for (std::string word; std::getline(words, word, '/');)
    {
        before += "<" + word + ">";
        after.insert(0, "</" + word + ">");
    }
    return before + "\n" + content + after;
}

// Rows of several lines, which clang-format would run into each other.
// clang-format off
const Pair thePairs[] = {
    {"equal but for prose, blanks, NA and order of dimensions", "dimensions",
     "<dimension><name>D</name><dataType>A  B</dataType><upperBound>3</upperBound><value>NA</value></dimension>",
     "<dimension><name>D</name><dataType>A\nB</dataType><upperBound>3</upperBound></dimension>", {}},
    {"units of a simple datatype", "dataTypes/simpleDataTypes",
     "<simpleData><name>S</name>\n<representation>HLAoctet</representation>\n<units>m/s</units></simpleData>",
     "\n\n<simpleData><name>S</name>\n<representation>HLAoctet</representation>\n<units>km/h</units></simpleData>",
     {"b.xml:7: error: units of simple datatype `S` is `km/h`, but `m/s` in a.xml:5 [conflict]"}},
    {"a property that one does not say", "dataTypes/basicDataRepresentations",
     "<basicData><name>B</name><size>8</size><interpretation>In [-2^7,2^7-1]</interpretation><endian>Big</endian></basicData>",
     "\n<basicData><name>B</name>\n<size>16</size><interpretation>In [-2^7, 2^7 - 1].</interpretation></basicData>",
     {"b.xml:5: error: size of basic data representation `B` is `16`, but `8` in a.xml:3 [conflict]",
      "b.xml:4: error: endian of basic data representation `B` is not given, but `Big` in a.xml:3 [conflict]"}},
    {"elements of an array", "dataTypes/arrayDataTypes",
     "<arrayData><name>A</name><dataType>X</dataType><cardinality>2</cardinality></arrayData>",
     "<arrayData><name>A</name><dataType>X</dataType>\n<cardinality>Dynamic</cardinality></arrayData>",
     {"b.xml:4: error: cardinality of array datatype `A` is `Dynamic`, but `2` in a.xml:3 [conflict]"}},
    {"enumerators: numbers compared as numbers", "dataTypes/enumeratedDataTypes",
     "<enumeratedData><name>E</name>\n<enumerator><name>A</name><value>1</value></enumerator>"
     "<enumerator><name>B</name><value>16</value></enumerator></enumeratedData>",
     "<enumeratedData><name>E</name><enumerator><name>B</name><value>0x10</value></enumerator>\n"
     "<enumerator><name>A</name><value>2</value></enumerator></enumeratedData>",
     {"b.xml:4: error: value of enumerator `A` of enumerated datatype `E` is `2`, but `1` in a.xml:4 [conflict]"}},
    {"enumerators that come and go", "dataTypes/enumeratedDataTypes",
     "<enumeratedData><name>E</name><enumerator><name>A</name><value>1</value></enumerator></enumeratedData>",
     "<enumeratedData><name>E</name>\n<enumerator><name>B</name><value>1</value></enumerator></enumeratedData>",
     {"b.xml:4: error: enumerator `B` of enumerated datatype `E` is not in a.xml:3; only a module of 1516-2025 may add it [addition]",
      "b.xml:4: error: enumerator `B` of enumerated datatype `E` takes `1`, which is `A` in a.xml:3 [conflict]",
      "b.xml:3: error: enumerated datatype `E` lacks the enumerator `A` that it has in a.xml:3 [conflict]"}},
    {"a field's datatype", "dataTypes/fixedRecordDataTypes",
     "<fixedRecordData><name>F</name><field><name>X</name>\n<dataType>A</dataType></field></fixedRecordData>",
     "<fixedRecordData><name>F</name><field><name>X</name><dataType>B</dataType></field></fixedRecordData>",
     {"b.xml:3: error: dataType of field `X` of fixed record `F` is `B`, but `A` in a.xml:4 [conflict]"}},
    {"order of fields", "dataTypes/fixedRecordDataTypes",
     "<fixedRecordData><name>F</name><field><name>X</name></field>\n<field><name>Y</name></field></fixedRecordData>",
     "<fixedRecordData><name>F</name><field><name>X</name></field><field><name>Z</name></field></fixedRecordData>",
     {"b.xml:3: error: field 2 of fixed record `F` is `Z`, but `Y` in a.xml:4 [conflict]"}},
    {"number of fields", "dataTypes/fixedRecordDataTypes",
     "<fixedRecordData><name>F</name><field><name>X</name></field></fixedRecordData>",
     "<fixedRecordData><name>F</name><field><name>X</name></field>\n<field><name>Z</name></field></fixedRecordData>",
     {"b.xml:4: error: fixed record `F` has 2 parts, but 1 in a.xml:3 [conflict]"}},
    {"an alternative", "dataTypes/variantRecordDataTypes",
     "<variantRecordData><name>V</name><alternative><enumerator>A, B</enumerator><name>X</name><dataType>P</dataType></alternative></variantRecordData>",
     "<variantRecordData><name>V</name>\n<alternative><enumerator>A, B</enumerator><name>X</name><dataType>Q</dataType></alternative>\n"
     "<alternative><enumerator>B</enumerator><name>Y</name></alternative></variantRecordData>",
     {"b.xml:4: error: dataType of alternative `X` of variant record `V` is `Q`, but `P` in a.xml:3 [conflict]",
      "b.xml:5: error: alternative `Y` of variant record `V` is not in a.xml:3; only a module of 1516-2025 may add it [addition]",
      "b.xml:5: error: alternative `Y` of variant record `V` takes `B`, which is `X` in a.xml:3 [conflict]"}},
    {"one name, two kinds", "dataTypes",
     "<simpleDataTypes>\n<simpleData><name>T</name></simpleData></simpleDataTypes>",
     "<arrayDataTypes><arrayData><name>T</name></arrayData></arrayDataTypes>",
     {"b.xml:3: error: `T` is defined as array datatype, but as simple datatype in a.xml:4 [conflict]"}},
    {"classes: scaffolds, and equal ones", "objects/objectClass",
     "<name>R</name><objectClass><name>A</name><sharing>Publish</sharing><attribute><name>x</name><dataType>T</dataType></attribute></objectClass>",
     "<name>R</name><objectClass><name>A</name><objectClass><name>B</name></objectClass></objectClass>", {}},
    {"attributes of a class", "objects/objectClass",
     "<name>R</name>\n<objectClass><name>A</name><sharing>Publish</sharing>\n<attribute><name>x</name><dataType>T</dataType></attribute></objectClass>",
     "<name>R</name><objectClass><name>A</name><sharing>Subscribe</sharing><attribute><name>x</name><dataType>U</dataType></attribute>\n<attribute><name>y</name></attribute></objectClass>",
     {"b.xml:3: error: sharing of object class `R.A` is `Subscribe`, but `Publish` in a.xml:4 [conflict]",
      "b.xml:3: error: dataType of attribute `x` of object class `R.A` is `U`, but `T` in a.xml:5 [conflict]",
      "b.xml:4: error: attribute `y` of object class `R.A` is not in a.xml:4; only a module of 1516-2025 may add it [addition]"}},
    {"an interaction class", "interactions/interactionClass",
     "<name>R</name><transportation>HLAreliable</transportation><order>Receive</order><parameter><name>p</name></parameter>",
     "<name>R</name>\n<order>TimeStamp</order><parameter><name>q</name></parameter>",
     {"b.xml:4: error: order of interaction class `R` is `TimeStamp`, but `Receive` in a.xml:3 [conflict]",
      "b.xml:4: error: parameter `q` of interaction class `R` is not in a.xml:2; only a module of 1516-2025 may add it [addition]",
      "b.xml:2: error: interaction class `R` lacks the parameter `p` that it has in a.xml:2 [conflict]"}},
    {"members by their names alone are mentioned", "objects/objectClass",
     "<name>R</name><attribute><name>x</name><dataType>T</dataType></attribute><attribute><name>y</name></attribute>",
     "<name>R</name><attribute><name>x</name><dataType>NA</dataType></attribute>\n<attribute><name>y</name><dataType>T</dataType></attribute>", {}},
    {"dimensions: NA is none", "interactions/interactionClass",
     "<name>R</name>\n<dimensions><dimension>D</dimension></dimensions><order>Receive</order>",
     "<name>R</name><dimensions><dimension>NA</dimension></dimensions>",
     {"b.xml:2: error: interaction class `R` lacks the dimension `D` that it has in a.xml:2 [conflict]"}},
    {"transportations", "transportations",
     "<transportation><name>T</name><reliable>Yes</reliable></transportation>",
     "<transportation><name>T</name><reliable>No</reliable></transportation>",
     {"b.xml:3: error: reliable of transportation `T` is `No`, but `Yes` in a.xml:3 [conflict]"}},
    {"update rates", "updateRates", "<updateRate><name>U</name><rate>5</rate></updateRate>",
     "<updateRate><name>U</name><rate>6</rate></updateRate>",
     {"b.xml:3: error: rate of update rate `U` is `6`, but `5` in a.xml:3 [conflict]"}},
    {"synchronization points", "synchronizations",
     "<synchronizationPoint><label>L</label><capability>Register</capability></synchronizationPoint>",
     "<synchronizationPoint><label>L</label><capability>Achieve</capability></synchronizationPoint>",
     {"b.xml:3: error: capability of synchronization point `L` is `Achieve`, but `Register` in a.xml:3 [conflict]"}},
    {"tags: NA says nothing", "tags",
     "<deleteRemoveTag><dataType>NA</dataType></deleteRemoveTag><requestUpdateTag><dataType>A</dataType></requestUpdateTag>",
     "<deleteRemoveTag><dataType>T</dataType></deleteRemoveTag><requestUpdateTag><dataType>B</dataType></requestUpdateTag>",
     {"b.xml:3: error: dataType of user-supplied tag `requestUpdateTag` is `B`, but `A` in a.xml:3 [conflict]"}},
    {"time", "time", "<timeStamp><dataType>A</dataType></timeStamp>",
     "<timeStamp><dataType>B</dataType></timeStamp><lookahead><dataType>C</dataType></lookahead>",
     {"b.xml:3: error: dataType of time representation `timeStamp` is `B`, but `A` in a.xml:3 [conflict]"}},
    {"a switch: the first counts", "switches", "<autoProvide isEnabled=\"true\"/><delaySubscriptionEvaluation isEnabled=\"1\"/>",
     "<autoProvide isEnabled=\"false\"/><delaySubscriptionEvaluation isEnabled=\"true\"/>",
     {"b.xml:3: warning: isEnabled of switch `autoProvide` is `false`, but `true` in a.xml:3, which counts [switch]"}},
};
// clang-format on

TEST(Merging, findsWhatTwoModulesContradict)
{
    for (const Pair& pair : thePairs)
    {
        SCOPED_TRACE(pair.what);
        const std::string first = objectModel("2010", around(pair.tables, pair.first));
        const std::string second = objectModel("2010", around(pair.tables, pair.second));
        EXPECT_THAT(texts(mergeAll({first, second})), ElementsAreArray(pair.findings));
        EXPECT_THAT(texts(mergeAll({first, first})), IsEmpty());
    }
}

// What 2025 may add, given before and after the definition itself.
constexpr char theWhole[] =
    "<objects><objectClass><name>R</name><objectClass><name>A</name><sharing>Publish</sharing>"
    "<attribute><name>x</name><dataType>T</dataType></attribute></objectClass></objectClass>"
    "</objects><dataTypes><enumeratedDataTypes><enumeratedData><name>E</name>"
    "<representation>HLAoctet</representation><enumerator><name>P</name><value>1</value>"
    "</enumerator></enumeratedData></enumeratedDataTypes><variantRecordDataTypes>"
    "<variantRecordData><name>V</name><discriminant>d</discriminant><dataType>E</dataType>"
    "<alternative><enumerator>P</enumerator><name>p</name><dataType>T</dataType></alternative>"
    "<encoding>HLAextendableVariantRecord</encoding></variantRecordData></variantRecordDataTypes>"
    "</dataTypes>";
constexpr char theAddition[] =
    "<objects><objectClass><name>R</name><objectClass><name>A</name><directedInteraction><name>I"
    "</name></directedInteraction><dimensions><dimension>D</dimension></dimensions>"
    "<attribute><name>y</name><dataType>T</dataType></attribute></objectClass></objectClass>"
    "</objects><dataTypes><enumeratedDataTypes><enumeratedData><name>E</name><enumerator><name>Q"
    "</name><value>2</value></enumerator></enumeratedData></enumeratedDataTypes>"
    "<variantRecordDataTypes><variantRecordData><name>V</name><alternative><enumerator>Q"
    "</enumerator><name>q</name><dataType>T</dataType></alternative></variantRecordData>"
    "</variantRecordDataTypes></dataTypes>";

TEST(Merging, addsWhatModulesOf2025Add)
{
    const std::string whole = objectModel("2010", theWhole);
    const std::string addition = objectModel("2025", theAddition);
    for (const auto& documents : {
             std::vector{whole, addition, whole, addition},
             std::vector{addition, whole, addition}
    })
    {
        omt::Model model;
        omt::Findings findings = mergeAll(documents, &model);
        ASSERT_EQ(findings.size(), 1U) << ::testing::PrintToString(texts(findings));
        EXPECT_EQ(findings[0].name, "mixed-editions");
        const omt::ObjectClass* const node = model.findObjectClass("R.A");
        ASSERT_TRUE(node);
        EXPECT_EQ(node->sharing, "Publish");
        EXPECT_EQ(node->attributes.size(), 2U);
        EXPECT_EQ(node->dimensions.size(), 1U);
        EXPECT_EQ(node->directedInteractions.size(), 1U);
        // Each part says which module it came from.
        for (const omt::Attribute& attribute : node->attributes)
            EXPECT_EQ(documents[attribute.module] == whole, attribute.name == "x");
        const auto* const variant = model.findDatatype("V").as<omt::VariantRecord>();
        EXPECT_EQ(variant->alternatives.size(), 2U);
        EXPECT_EQ(variant->discriminant, "d");
        EXPECT_EQ(model.findDatatype("E").as<omt::EnumeratedData>()->enumerators.size(), 2U);
    }
}

TEST(Merging, keepsTheNotesOfEachModule)
{
    const auto document = [](const std::string& name, const std::string& text)
    {
        return objectModel("2010", "<dimensions><dimension notes=\"n\"><name>" + name +
                                       "</name></dimension></dimensions><notes><note><label>n"
                                       "</label><semantics>" +
                                       text + "</semantics></note></notes>");
    };
    omt::Model model;
    mergeAll({document("A", "one"), document("B", "two"), document("C", "one")}, &model);
    EXPECT_EQ(model.tables().notes.size(), 2U);
    for (const auto& [name, text] : {
             std::pair("A", "one"), {"B", "two"},
               {"C", "one"}
    })
        EXPECT_EQ(model.findNote("n", *model.findDimension(name))->semantics, text) << name;
}

TEST(Merging, findsWhatOneModuleSaysTwice)
{
    const std::string tables = "dataTypes/simpleDataTypes";
    const std::string one = "<simpleData><name>S</name><units>m</units></simpleData>\n";
    const std::string other = "<simpleData><name>S</name><units>km</units></simpleData>";
    EXPECT_THAT(texts(mergeAll({objectModel("2010", around(tables, one + one + other))})),
                ElementsAre("a.xml:4: warning: simple datatype `S` stands a second time, after "
                            "a.xml:3 [duplicate]",
                            "a.xml:5: error: units of simple datatype `S` is `km`, but `m` in "
                            "a.xml:3 [conflict]"));
}

/// A class that one document repeats many times, each time with one attribute more, takes no
/// time by the square of their number.
TEST(Merging, growsInLinearTime)
{
    std::string classes;
    for (int i = 0; i < 20000; ++i)
        classes += "<objectClass><name>A</name><attribute><name>x" + std::to_string(i) +
                   "</name></attribute></objectClass>";
    const std::string document = objectModel(
        "2025", "<objects><objectClass><name>R</name>" + classes + "</objectClass></objects>");
    const auto start = std::chrono::steady_clock::now();
    omt::Model model;
    mergeAll({objectModel("2025", ""), document}, &model);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    EXPECT_EQ(model.findObjectClass("A")->attributes.size(), 20000U);
}

TEST(References, nameWhatIsMissingAndWhatHelps)
{
    const std::string document = objectModel(
        "2010",
        "<modelIdentification><name>Physical</name><reference><type>dependency</type>\n"
        "<identification>My-Enumerations_v2.xml</identification></reference><reference><type>"
        "Dependency</type><identification>MIM</identification></reference></modelIdentification>"
        "<objects><objectClass notes=\"n1 n2\"><name>R</name><attribute><name>x</name>\n"
        "<dataType>Missing</dataType><dimensions><dimension>D</dimension></dimensions>"
        "<transportation>T</transportation></attribute><attribute><name>y</name>"
        "<dataType>Missing</dataType><transportation>HLAreliable</transportation></attribute>"
        "<attribute><name>z</name><dataType>HLAunicodeString</dataType></attribute>"
        "<attribute><name>w</name><dataType>NA</dataType></attribute></objectClass></objects>"
        "<dataTypes><arrayDataTypes><arrayData><name>L</name><dataType>HLAinteger32BE</dataType>"
        "</arrayData></arrayDataTypes></dataTypes>"
        "<notes><note><label>n2</label></note></notes>");
    const omt::Reading alone = omt::readDocuments({
        {"x/Physical.xml", document}
    });
    EXPECT_THAT(
        texts(alone.findings),
        ElementsAre(
            "x/Physical.xml:3: note: `My-Enumerations_v2.xml` is named as a dependency, and no "
            "module given has this name [missing-dependency]",
            "x/Physical.xml:3: note: `MIM` is named as a dependency, and no module given has this "
            "name [missing-dependency]",
            "x/Physical.xml:3: warning: note `n1` is defined in no module given [unknown-note]",
            "x/Physical.xml:4: error: `Missing` is defined in no module given; "
            "My-Enumerations_v2.xml is named as a dependency of x/Physical.xml; MIM is named as a "
            "dependency of x/Physical.xml; used 2 times [unknown-datatype]",
            "x/Physical.xml:4: warning: dimension `D` is defined in no module given; "
            "My-Enumerations_v2.xml is named as a dependency of x/Physical.xml; MIM is named as a "
            "dependency of x/Physical.xml [unknown-dimension]",
            "x/Physical.xml:4: warning: transportation `T` is defined in no module given; "
            "My-Enumerations_v2.xml is named as a dependency of x/Physical.xml; MIM is named as a "
            "dependency of x/Physical.xml [unknown-transportation]",
            "x/Physical.xml:4: error: `HLAunicodeString` is in the standard MIM: add --mim "
            "[unknown-datatype]"));

    const std::string other =
        objectModel("2010",
                    "<dataTypes><simpleDataTypes><simpleData><name>Missing</name></simpleData>"
                    "</simpleDataTypes></dataTypes>");
    const omt::Reading both = omt::readDocuments(
        {
            {"x/Physical.xml",         document},
            {"My-Enumerations_v2.xml", other   }
    },
        omt::ReadOptions().withMim());
    EXPECT_EQ(both.findings.size(), 3U) << ::testing::PrintToString(texts(both.findings));
}

// Published sets
// ------------------------------------------------------------------------------------

struct PublishedSet
{
    std::vector<std::string> files;
    /// Object classes, attributes, interaction classes, parameters; basic, simple, reference,
    /// enumerated, array, fixed and variant datatypes; enumerators.
    std::vector<std::size_t> counts;
    std::vector<std::string> findings;
};

std::vector<std::size_t> counts(const omt::Tables& tables)
{
    std::size_t attributes = 0;
    std::size_t parameters = 0;
    std::size_t enumerators = 0;
    for (const auto& node : tables.objectClasses) attributes += node.attributes.size();
    for (const auto& node : tables.interactionClasses) parameters += node.parameters.size();
    for (const auto& data : tables.enumeratedData) enumerators += data.enumerators.size();
    return {tables.objectClasses.size(),      attributes,
            tables.interactionClasses.size(), parameters,
            tables.basicData.size(),          tables.simpleData.size(),
            tables.referenceData.size(),      tables.enumeratedData.size(),
            tables.arrayData.size(),          tables.fixedRecords.size(),
            tables.variantRecords.size(),     enumerators};
}

std::vector<std::string> files(const std::string& before, const std::string& names,
                               const std::string& after)
{
    std::vector<std::string> all;
    std::istringstream words(names);
    for (std::string word; words >> word;) all.push_back(before + word + after);
    return all;
}

std::vector<std::string> operator+(std::vector<std::string> left,
                                   const std::vector<std::string>& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

TEST(Merging, givesPublishedSetsWhole)
{
    const char* const folder = std::getenv("OMT_MODELS");
    if (!folder) GTEST_SKIP() << "OMT_MODELS is not set";
    const PublishedSet theSets[] = {
        {files("evolved/RPR-",
         "Foundation Enumerations Base Physical Aggregate Warfare Communication DER "
               "Logistics Minefield SE SIMAN UA Switches", "_v2.0.xml"),
         {67, 356, 163, 378, 17, 52, 0, 101, 76, 84, 9, 3988},
         {}},
        {files("evolved/RPR-", "Foundation Enumerations Base SE", "_v2.0.xml") +
             files("2025/NETN-", "BASE SMC ORG ETR COM SE METOC", ".xml"),
         {52, 214, 169, 271, 24, 60, 2, 140, 86, 134, 14, 4664},
         {"mixed-editions"}},
        {files("2025/Restaurant", "FOM ExtensionFOM", "module-2025.xml"),
         {45, 70, 111, 131, 21, 22, 3, 19, 31, 7, 2, 132},
         {}},
        {files("evolved/Restaurant", "Processes Food Drinks Soup", ".xml"),
         {42, 54, 99, 104, 14, 17, 0, 12, 19, 6, 1, 45},
         {}},
    };
    for (const PublishedSet& set : theSets)
    {
        SCOPED_TRACE(set.files.front());
        std::vector<std::string> names;
        for (const std::string& file : set.files) names.push_back(folder + ("/" + file));
        const omt::Reading reading = omt::read(names, omt::ReadOptions().withMim());
        EXPECT_EQ(counts(reading.model.tables()), set.counts);
        std::vector<std::string> found;
        for (const omt::Finding& finding : reading.findings) found.push_back(finding.name);
        EXPECT_EQ(found, set.findings) << ::testing::PrintToString(texts(reading.findings));
    }
}

}  // namespace
