// SPDX-License-Identifier: Apache-2.0
// Runs omt check as a user does: the report of a broken set, its forms, baselines, sets and
// folders.
#include "toolRun.h"

#include <nlohmann/json.hpp>

#include <cstdlib>

namespace
{

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* theBase =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><modelIdentification>
<name>Base</name></modelIdentification><dataTypes><fixedRecordDataTypes>
<fixedRecordData><name>Sensor</name><encoding>HLAfixedRecord</encoding>
<field><name>Range</name>
<dataType>HLAfloat64Time</dataType></field></fixedRecordData></fixedRecordDataTypes></dataTypes>
</objectModel>)";
constexpr const char* theCars =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><modelIdentification>
<name>Cars</name><reference><type>Dependency</type><identification>base</identification></reference>
</modelIdentification><objects><objectClass><name>HLAobjectRoot</name><objectClass><name>Car</name>
<attribute><name>Seen</name><dataType>Sensor</dataType></attribute>
<attribute><name>At</name>
<dataType>EpochTime</dataType></attribute></objectClass></objectClass></objects>
<dataTypes><fixedRecordDataTypes><fixedRecordData><name>Sensor</name>
<encoding>HLAfixedRecord</encoding><field><name>Range</name>
<dataType>HLAcount</dataType></field></fixedRecordData></fixedRecordDataTypes></dataTypes>
</objectModel>)";

// The set below without its identifications, which are short.
constexpr const char* theQuiet = " --mim --disable identification ";

class CheckTest : public ToolRun
{
protected:
    void SetUp() override
    {
        write("base.xml", theBase);
        write("another.xml", theCars);
    }
    const std::string myLines =
        "another.xml:6: error: `EpochTime` is defined in no module given [unknown-datatype]\n"
        "another.xml:9: error: dataType of field `Range` of fixed record `Sensor` is `HLAcount`, "
        "but `HLAfloat64Time` in base.xml:5 [conflict]\n";
};

TEST_F(CheckTest, aBrokenSetHasOneReport)
{
    const Outcome outcome = run(std::string("check base.xml another.xml") + theQuiet);
    EXPECT_EQ(outcome.err, myLines);
    EXPECT_EQ(outcome.out, "2 errors, 0 warnings and 0 notes in 2 files\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(run("check gone.xml").status, 1);
    EXPECT_EQ(run("check").status, 2);
    EXPECT_EQ(run("check base.xml --disable no-such-rule").status, 2);
    // Warnings are failures only when asked for.
    EXPECT_EQ(run("check base.xml --mim").status, 0);
    EXPECT_EQ(run("check base.xml --mim --as-error").status, 1);
}

TEST_F(CheckTest, programsGetJsonSarifAndAnnotations)
{
    const std::string command = std::string("check base.xml another.xml") + theQuiet;
    const json plain = json::parse(run(command + "--json").out);
    EXPECT_EQ(plain["summary"]["errors"], 2);
    EXPECT_EQ(plain["findings"][1]["other"]["line"], 5);

    const json sarif = json::parse(run(command + "--sarif").out);
    EXPECT_EQ(sarif["version"], "2.1.0");
    const json& all = sarif["runs"][0];
    const json& result = all["results"][1];
    EXPECT_EQ(all["results"].size(), 2U);
    EXPECT_EQ(all["tool"]["driver"]["rules"][result["ruleIndex"].get<std::size_t>()]["id"],
              "conflict");
    EXPECT_EQ(result["level"], "error");
    const json& place = result["locations"][0]["physicalLocation"];
    EXPECT_EQ(place["artifactLocation"]["uri"], "another.xml");
    EXPECT_EQ(place["region"]["startLine"], 9);
    EXPECT_EQ(result["relatedLocations"][0]["physicalLocation"]["region"]["startLine"], 5);

    EXPECT_THAT(
        run(command + "--github").out,
        HasSubstr("::error file=another.xml,line=6,title=unknown-datatype::`EpochTime` is"));
}

TEST_F(CheckTest, aBaselineHidesWhatItListsWhereverItMoves)
{
    const std::string command = std::string("check base.xml another.xml") + theQuiet;
    EXPECT_EQ(run(command + "--write-baseline known.json").status, 0);
    write("another.xml", "<?xml version=\"1.0\"?>\n\n" + std::string(theCars));
    const Outcome known = run(command + "--baseline known.json");
    EXPECT_EQ(known.status, 0);
    EXPECT_EQ(known.out,
              "0 errors, 0 warnings and 0 notes in 2 files; 2 known ones are not shown\n");
    EXPECT_EQ(run(command + "--baseline known.json --all").status, 1);
    // What is known already stays so, and what names several files is known in every folder.
    EXPECT_EQ(run(command + "--baseline known.json --write-baseline known.json").status, 0);
    EXPECT_EQ(run(command + "--baseline known.json").out, known.out);
    write("new.xml", "<objectModel xmlns=\"http://standards.ieee.org/IEEE1516-2025\"/>");
    EXPECT_EQ(run("check new.xml base.xml --write-baseline known.json").status, 0);
    EXPECT_EQ(run("check ./new.xml ./base.xml --baseline known.json").err, "");
    write("known.json", "[]");
    EXPECT_THAT(run(command + "--baseline known.json").err,
                HasSubstr("known.json: is no baseline"));
}

TEST_F(CheckTest, aFolderIsOrderedAndASetSaysWhatIsOff)
{
    // Another.xml stands first by name, and depends on base.xml.
    EXPECT_EQ(run(std::string("check .") + theQuiet).err.substr(0, 12), "./another.xm");
    EXPECT_THAT(run(std::string("check .") + theQuiet).err,
                HasSubstr("in ./base.xml:5 [conflict]"));
    write("omt.json", R"({"modules": ["base.xml", "another.xml"], "mim": true, "off": [
        {"rule": "identification", "reason": "a test"}, {"rule": "conflict", "reason": "known"}]})");
    const Outcome outcome = run("check omt.json");
    EXPECT_EQ(outcome.err, myLines.substr(0, myLines.find('\n') + 1));
    EXPECT_EQ(run("check .").err, "./" + outcome.err);
    EXPECT_EQ(run("check").err, outcome.err);
    EXPECT_EQ(run("diff . -- base.xml another.xml").status, 0);
    EXPECT_EQ(run("show . --json").out, run("show ./base.xml ./another.xml --mim --json").out);
    write("omt.json", R"({"modules": ["base.xml"], "off": [{"rule": "conflict"}]})");
    EXPECT_THAT(run("check omt.json").err, HasSubstr("needs a `rule` and a `reason`"));
}

TEST_F(CheckTest, aThousandFindingsOfARuleAreShown)
{
    std::string text =
        R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><modelIdentification/>)";
    for (int i = 0; i < 1005; ++i) text += "<odd/>";
    write("odd.xml", text + "</objectModel>");
    const std::string err = run("check odd.xml --disable identification").err;
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1001);
    EXPECT_THAT(err, testing::EndsWith("\nand 5 more [unknown-element]\n"));
}

TEST_F(CheckTest, publishedFilesAreSilent)
{
    const char* const models = std::getenv("OMT_MODELS");
    if (!models) GTEST_SKIP() << "OMT_MODELS names no folder of models";
    const std::string folder = models;
    const std::string rpr = " " + folder + "/evolved/RPR_FOM_v2.0_1516-2010.xml --mim";
    EXPECT_THAT(run("check" + rpr).err, IsEmpty());
    EXPECT_THAT(run("check --all" + rpr).err, HasSubstr("[update-condition]"));
    EXPECT_THAT(run("check --mim " + folder + "/2025/RestaurantFOMmodule-2025.xml " + folder +
                    "/2025/RestaurantExtensionFOMmodule-2025.xml")
                    .err,
                IsEmpty());
    EXPECT_THAT(run("check " + folder + "/x2000/RPR2-D17.xml").err, IsEmpty());
}

TEST_F(CheckTest, schemasAreKnownByWhatTheyHold)
{
    const std::string schema =
        R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" elementFormDefault="qualified"
 xmlns:m="http://standards.ieee.org/IEEE1516-2010"
 targetNamespace="http://standards.ieee.org/IEEE1516-2010"><xs:element name="objectModel">
<xs:complexType><xs:sequence><xs:any maxOccurs="9" processContents="lax"/></xs:sequence>
</xs:complexType>KEYS</xs:element><xs:element name="modelIdentification" type="xs:int"/>
<xs:element name="name" type="xs:string"/><xs:element name="dataType" type="xs:string"/>
</xs:schema>)";
    const auto with = [&](const std::string& keys)
    { return std::string(schema).replace(schema.find("KEYS"), 4, keys); };
    const std::string key = R"(<xs:key name="K"><xs:selector xpath=".//m:simpleData"/><xs:field
 xpath="m:name"/></xs:key>)";
    write("a.xsd", with(""));
    write("b.xsd", "<xs:schema");
    write("c.xsd", with(key));
    const std::string command = std::string("check base.xml another.xml --schema .") + theQuiet;
    EXPECT_THAT(run(command).err, HasSubstr(".: error: the folder holds no OMT schema of 1516-2010 "
                                            "that can be read [omt-schema]"));
    // What the whole set lacks is said where it was read, but for NA.
    write("d.xsd", with(R"(<xs:key name="datatypes"><xs:selector xpath=".//m:simpleData"/>
<xs:field xpath="m:name"/></xs:key><xs:keyref name="R" refer="m:datatypes"><xs:selector
 xpath=".//m:attribute/m:dataType"/><xs:field xpath="."/></xs:keyref>)"));
    const std::string err = run(command).err;
    // Nothing outside of a schema is opened.
    write("a.xsd",
          with("").insert(with("").find("<xs:element"), R"(<xs:include schemaLocation="c.xsd"/>)"));
    EXPECT_THAT(run(command).err, HasSubstr("holds no DIF schema of 1516-2010 that can be read"));
    EXPECT_THAT(err, HasSubstr("base.xml:1: error: Element 'modelIdentification': "));
    EXPECT_THAT(err, HasSubstr("another.xml:6: error: Element 'dataType': No match found for "
                               "key-sequence ['EpochTime'] of keyref 'R' [omt-schema]"));
    EXPECT_THAT(err, testing::Not(HasSubstr("'NA'")));
    EXPECT_EQ(run("check base.xml --schema none").status, 1);
}

}  // namespace
