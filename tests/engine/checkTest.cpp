// SPDX-License-Identifier: Apache-2.0
// Rules: the examples of docs/rules.md, one that each fires on and one that it does not; hostile
// models; the order of dependencies.
#include "omt/check/check.h"

#include <gmock/gmock.h>

#include <chrono>
#include <fstream>
#include <map>
#include <sstream>

namespace
{

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// The elements around a definition, by its own.
const std::map<std::string, std::string> theTables = {
    {"objectClass",         "objects/objectClass"               },
    {"interactionClass",    "interactions/interactionClass"     },
    {"simpleData",          "dataTypes/simpleDataTypes"         },
    {"basicData",           "dataTypes/basicDataRepresentations"},
    {"referenceDataType",   "dataTypes/referenceDataTypes"      },
    {"enumeratedData",      "dataTypes/enumeratedDataTypes"     },
    {"arrayData",           "dataTypes/arrayDataTypes"          },
    {"fixedRecordData",     "dataTypes/fixedRecordDataTypes"    },
    {"variantRecordData",   "dataTypes/variantRecordDataTypes"  },
    {"dimension",           "dimensions"                        },
    {"updateRate",          "updateRates"                       },
    {"note",                "notes"                             },
    {"objects",             ""                                  },
    {"dataTypes",           ""                                  },
    {"modelIdentification", ""                                  },
    {"switches",            ""                                  },
};

std::string wholeDocument(const std::string& fragment, const std::string& edition)
{
    const std::string first = fragment.substr(1, fragment.find_first_of(" >\n", 1) - 1);
    const auto tables = theTables.find(first);
    if (tables == theTables.end()) return fragment;
    std::string before =
        "<objectModel xmlns=\"http://standards.ieee.org/IEEE1516-" + edition + "\">";
    std::string after = "</objectModel>";
    std::istringstream words(tables->second);
    for (std::string word; std::getline(words, word, '/');)
    {
        before += "<" + word + ">";
        if (word == "objectClass") before += "<name>HLAobjectRoot</name>";
        if (word == "interactionClass") before += "<name>HLAinteractionRoot</name>";
        after.insert(0, "</" + word + ">");
    }
    return before + fragment + after;
}

struct Block
{
    std::string kind;
    std::string text;
};

struct Page
{
    std::string group;
    std::string head;
    std::vector<Block> wrong;
    std::vector<Block> right;
    std::string expected;
};

/// The pages of docs/rules.md by rule, and the rules in their order.
std::map<std::string, Page> readPages(std::vector<std::string>& order)
{
    std::map<std::string, Page> pages;
    std::ifstream file(OMT_RULES);
    std::string group;
    std::vector<Block>* blocks = nullptr;
    Page* page = nullptr;
    for (std::string line; std::getline(file, line);)
    {
        if (line.rfind("## ", 0) == 0) group = line.substr(3);
        if (line.rfind("### ", 0) == 0)
        {
            page = &pages[order.emplace_back(line.substr(4))];
            page->group = group;
        }
        if (page && page->head.empty() && line.rfind("*", 0) == 0) page->head = line;
        if (page && line == "Wrong:") blocks = &page->wrong;
        if (page && line == "Right:") blocks = &page->right;
        if (line.rfind("```", 0) != 0) continue;
        Block block{line.substr(3), ""};
        while (std::getline(file, line) && line != "```")
            block.text += (block.text.empty() ? "" : "\n") + line;
        if (block.kind == "text")
            page->expected = block.text;
        else
            blocks->push_back(block);
    }
    return pages;
}

/// What a rule finds in the modules a, b and so on.
std::vector<std::string> findingsOf(const std::string& rule, const std::vector<Block>& blocks)
{
    std::vector<std::string> texts;
    std::vector<omt::Document> documents;
    bool withMim = true;
    char name = 'a';
    for (const Block& block : blocks)
    {
        const bool is13 = block.kind == "omd";
        texts.push_back(wholeDocument(block.text, block.kind == "xml 2025" ? "2025" : "2010"));
        if (is13 || texts.back().find("DTDversion") != std::string::npos) withMim = false;
        documents.push_back({name++ + std::string(is13 ? ".omd" : ".xml"), ""});
    }
    for (std::size_t i = 0; i < texts.size(); ++i) documents[i].octets = texts[i];
    omt::CheckOptions options;
    options.enable = {"lint"};
    std::vector<std::string> lines;
    for (const omt::Finding& finding :
         omt::check(documents, options, omt::ReadOptions().withMim(withMim)))
        if (finding.name == rule) lines.push_back((std::ostringstream() << finding).str());
    return lines;
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream all(text);
    for (std::string line; std::getline(all, line);) lines.push_back(line);
    return lines;
}

TEST(Check, everyRuleHasItsPageAndFindsWhatItSays)
{
    std::vector<std::string> order;
    std::map<std::string, Page> pages = readPages(order);
    std::vector<std::string> names;
    for (const omt::Rule& rule : omt::rules())
    {
        const std::string name = names.emplace_back(rule.name);
        SCOPED_TRACE(name);
        const Page& page = pages[name];
        EXPECT_EQ(page.group, rule.group);
        std::ostringstream head;
        head << "*" << omt::name(rule.severity) << "*: " << rule.sentence << ".";
        std::string text = head.str();
        EXPECT_EQ(page.head, text.size() <= 100 ? text : text.substr(0, text.rfind(' ', 100)));
        // A file that is not there, and a document that is longer than a page.
        if (name == "unreadable" || name == "prefixes") continue;
        EXPECT_FALSE(page.wrong.empty() || page.right.empty() || page.expected.empty());
        EXPECT_THAT(findingsOf(name, page.wrong), ElementsAreArray(linesOf(page.expected)));
        EXPECT_THAT(page.expected, HasSubstr(std::string(omt::name(rule.severity)) + ": "));
        EXPECT_THAT(findingsOf(name, page.right), IsEmpty());
    }
    EXPECT_EQ(order, names);
}

std::string repeated(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
    {
        std::string one = text;
        for (std::size_t at = one.find('#'); at != std::string::npos; at = one.find('#', at))
            one.replace(at, 1, std::to_string(i));
        all += one;
    }
    return all;
}

TEST(Check, growsWithTheModelWhateverItHolds)
{
    constexpr int theMany = 20000;
    const std::string nested = repeated(
                                   "<objectClass><name>C#</name><attribute><name>A#</name>"
                                   "<dataType>R#</dataType></attribute>",
                                   theMany / 10) +
                               repeated("</objectClass>", theMany / 10);
    std::map<std::string, std::string> models;
    models["twins"] = repeated("<simpleData><name>S</name></simpleData>", theMany);
    models["a deep chain"] = "<objectClass><name>A</name>" + nested + "</objectClass>";
    models["alternatives of one range"] =
        "<variantRecordData><name>V</name><discriminant>D</discriminant><dataType>HLAboolean"
        "</dataType>" +
        repeated(
            "<alternative><enumerator>[HLAfalse..HLAtrue]</enumerator><name>A#</name>"
            "<dataType>HLAbyte</dataType></alternative>",
            theMany) +
        "</variantRecordData>";
    models["a row of records"] = repeated(
        "<fixedRecordData><name>F#</name><encoding>HLAfixedRecord</encoding><field>"
        "<name>X</name><dataType>F#1</dataType></field></fixedRecordData>",
        theMany);
    models["long names"] =
        "<enumeratedData><name>" + std::string(1000000, 'x') +
        "</name><representation>HLAoctet</representation>" +
        repeated("<enumerator><name>E</name><value>900</value></enumerator>", theMany) +
        "</enumeratedData>";
    for (const auto& [what, fragment] : models)
    {
        const std::string text = wholeDocument(fragment, "2010");
        const auto begin = std::chrono::steady_clock::now();
        const omt::Findings findings = omt::check(
            {
                {"a.xml", text}
        },
            {{"lint"}, {}}, {});
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        EXPECT_LT(taken.count(), 20) << what;
        std::size_t size = 0;
        for (const omt::Finding& finding : findings) size += finding.text.size();
        EXPECT_LT(size, 50 * text.size()) << what;
    }
}

TEST(Check, rulesAreTurnedOnAndOffByNameAndByGroup)
{
    const std::string text = wholeDocument(
        "<simpleData><name>2</name><representation>HLAoctet</representation></simpleData>", "2010");
    const auto found = [&](omt::CheckOptions options)
    {
        options.disable.push_back("identification");
        std::vector<std::string> names;
        for (const omt::Finding& finding : omt::check(
                 {
                     {"a.xml", text}
        },
                 options))
            names.push_back(finding.name);
        return names;
    };
    EXPECT_THAT(found({}), ElementsAre("invalid-name"));
    EXPECT_THAT(found({{"unused-datatype"}, {"names"}}), ElementsAre("unused-datatype"));
    EXPECT_THAT(found({{"lint"}, {"lint"}}), ElementsAre("invalid-name"));
    EXPECT_THROW(found({{"invalid-nam"}, {}}), std::invalid_argument);
}

TEST(Check, modelsAreOrderedByTheirDependencies)
{
    const auto model = [](const std::string& name, const std::string& dependency)
    {
        omt::Findings ignored;
        return omt::readModule(
            {name + ".xml",
             "<objectModel xmlns=\"http://standards.ieee.org/IEEE1516-2010\"><modelIdentification>"
             "<reference><type>Dependency</type><identification>" +
                 dependency + "</identification></reference></modelIdentification></objectModel>"},
            ignored);
    };
    // Each names its file, with a version or without; two that need each other stay as they are.
    EXPECT_THAT(omt::dependencyOrder({model("Ships", "Ports_v1.0.xml"), model("Base", "NA"),
                                      model("Ports_v1.0", "Base"), model("L", "Right"),
                                      model("Right", "L.xml")}),
                ElementsAre(1, 2, 0, 4, 3));

    // A folder full of dependencies on what is not there.
    std::vector<omt::Model> many;
    for (int i = 0; i < 2000; ++i)
        many.push_back(model("m" + std::to_string(i), "absent" + std::to_string(i)));
    const auto begin = std::chrono::steady_clock::now();
    omt::check(many);
    EXPECT_EQ(omt::dependencyOrder(many).size(), many.size());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
}

TEST(Check, refusesVariantsThatTogetherHaveTooManyChoices)
{
    constexpr int theMany = 2500;
    const std::string text = wholeDocument(
        "<dataTypes><enumeratedDataTypes><enumeratedData><name>E</name><representation>HLAinteger32"
        "BE</representation>" +
            repeated("<enumerator><name>E#</name><value>#</value></enumerator>", theMany) +
            "</enumeratedData></enumeratedDataTypes><variantRecordDataTypes>" +
            repeated("<variantRecordData><name>V#</name><discriminant>D</discriminant>"
                     "<dataType>E</dataType><encoding>HLAvariantRecord</encoding>"
                     "</variantRecordData>",
                     theMany) +
            "</variantRecordDataTypes></dataTypes>",
        "2010");
    const omt::Findings findings = omt::check(
        {
            {"a.xml", text}
    },
        {{}, {"identification"}}, {});
    // 4,000,000 choices are 1600 times 2500.
    ASSERT_EQ(findings.size(), theMany - 1600);
    EXPECT_THAT(findings.front().text, HasSubstr("there are too many choices"));
}

}  // namespace
