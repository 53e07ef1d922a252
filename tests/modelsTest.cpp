// SPDX-License-Identifier: Apache-2.0
// Whole models: the published ones, our MIMs against the published ones, and our samples.
#include "omtReader/omtFileReader.h"
#include "omtReader/standardMIM.h"
#include "omtReader/xmlEvolvedFileWriter.h"
#include "omtReader/xmlFileReader.h"
#include "support.h"
#include "xmlDocument.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace
{

/// Entries of each kind: object classes, attributes, interaction classes, parameters; basic,
/// simple, enumerated, array, fixed and variant datatypes.
using Counts = std::array<std::size_t, 10>;

Counts counts(const TreePtr& tree)
{
    static const std::regex theNumbers(R"(\[\d+\])");
    std::map<std::string, std::size_t> entries;  // by their paths without numbers
    std::istringstream text(dump(tree));
    for (std::string line; std::getline(text, line);)
        if (const std::size_t end = line.find(".name = "); end != std::string::npos)
            ++entries[std::regex_replace(line.substr(0, end), theNumbers, "")];
    return {entries[".object"],      entries[".object.attribute"],
            entries[".interaction"], entries[".interaction.parameter"],
            entries[".basic"],       entries[".simple"],
            entries[".enumerated"],  entries[".array"],
            entries[".fixed"],       entries[".variant"]};
}

constexpr Counts theRPRCounts = {67, 356, 163, 378, 17, 52, 101, 76, 84, 9};
constexpr char theMIM[] = "HLAstandardMIM.xml";

struct PublishedModel
{
    std::vector<const char*> files;
    Counts counts;
    int version = 3;
};
const std::vector<PublishedModel> thePublishedModels = {
    {{"mim/HLAstandardMIM.xml"}, {4, 45, 85, 101, 13, 10, 9, 17, 4, 0}},
    {{"evolved/RPR_FOM_v2.0_1516-2010.xml"}, {64, 311, 79, 277, 4, 42, 92, 59, 80, 9}},
    {{"evolved/RPR_FOM_v2.0_1516-2010.xml", theMIM}, theRPRCounts},
    {{"evolved/RPR-Foundation_v2.0.xml", "evolved/RPR-Enumerations_v2.0.xml",
      "evolved/RPR-Base_v2.0.xml", "evolved/RPR-Physical_v2.0.xml",
      "evolved/RPR-Aggregate_v2.0.xml", "evolved/RPR-Warfare_v2.0.xml",
      "evolved/RPR-Communication_v2.0.xml", "evolved/RPR-DER_v2.0.xml",
      "evolved/RPR-Logistics_v2.0.xml", "evolved/RPR-Minefield_v2.0.xml", "evolved/RPR-SE_v2.0.xml",
      "evolved/RPR-SIMAN_v2.0.xml", "evolved/RPR-UA_v2.0.xml", "evolved/RPR-Switches_v2.0.xml",
      theMIM},
     theRPRCounts},
    {{"evolved/RestaurantFOMmodule.xml"}, {39, 9, 15, 3, 1, 7, 3, 2, 2, 1}},
    {{"evolved/RestaurantSOMmodule.xml"}, {40, 9, 15, 3, 1, 7, 4, 2, 2, 1}},
    {{"evolved/RestaurantFood.xml", "evolved/RestaurantDrinks.xml", "evolved/RestaurantSoup.xml",
      "evolved/RestaurantProcesses.xml"},
     {39, 9, 15, 3, 1, 7, 3, 2, 2, 1}},
    {{"x2000/RPR2-D17.xml"}, {64, 311, 79, 277, 12, 76, 101, 69, 95, 10}, 2},
    {{"x2000/Certi-Test-02.xml"}, {6, 42, 78, 93, 14, 6, 2, 3, 0, 0}, 2},
};

class PublishedModelsTest : public ModelsTest
{
protected:
    static TreePtr read(DtXMLFileReader& reader, const PublishedModel& published)
    {
        std::vector<DtFilename> names;
        for (const std::string file : published.files)
            names.emplace_back(file == theMIM ? theMIM : model(file).c_str());
        return TreePtr(names.size() == 1 ? reader.readFile(names[0], nullptr)
                                         : reader.readFiles(names, nullptr));
    }
};

TEST_F(PublishedModelsTest, EveryEntryIsRead)
{
    for (const PublishedModel& published : thePublishedModels)
    {
        SCOPED_TRACE(published.files.front());
        SCOPED_TRACE(published.files.size());
        const Messages messages;
        DtXMLFileReader reader;
        const TreePtr tree = read(reader, published);
        ASSERT_TRUE(tree);
        EXPECT_EQ(counts(tree), published.counts);
        EXPECT_EQ(tree->hlaVersion(), published.version);
        EXPECT_EQ(messages.list(), std::vector<std::string>());
        EXPECT_EQ(reader.getLastError(), "");
    }
}

/// A tree by path and value, without empty values. Classes and switches go by their name, as two
/// trees may have them in another order; a path that occurs again is marked.
using Fields = std::map<std::string, std::string>;

Fields fields(DtOMTTree& tree)
{
    static const std::regex theLine(R"(\.([\w\[\].]+) = (.*))");
    static const std::regex theName(R"((object|interaction|switch)\[\d+\]\.(fullName|name))");
    std::vector<std::pair<std::string, std::string>> list;
    std::map<std::string, std::string> names;  // of numbered entries
    std::istringstream text(dump(tree));
    for (std::string line; std::getline(text, line);)
    {
        std::smatch match;
        if (!std::regex_match(line, match, theLine))
        {
            list.back().second += '\n' + line;  // a text of more than one line
            continue;
        }
        list.emplace_back(match[1], match[2]);
        const std::string path = match[1];
        if (std::regex_match(path, match, theName))
            names[path.substr(0, path.find('.'))] = match[1].str() + "[" + list.back().second + "]";
    }
    Fields result;
    for (const auto& [path, value] : list)
    {
        const std::size_t end = std::min(path.find('.'), path.size());
        const auto name = names.find(path.substr(0, end));
        std::string key = name == names.end() ? path : name->second + path.substr(end);
        while (result.count(key)) key += '+';
        result[key] = value.substr(0, value.find_last_not_of(" \n") + 1);
    }
    std::erase_if(result, [](const auto& field) { return field.second.empty(); });
    return result;
}

/// The fields that only one of two trees has, or with another value.
std::vector<std::string> differences(const Fields& one, const Fields& other)
{
    std::vector<std::pair<std::string, std::string>> different;
    std::set_symmetric_difference(one.begin(), one.end(), other.begin(), other.end(),
                                  std::back_inserter(different));
    std::vector<std::string> result;
    for (const auto& [path, value] : different) result.push_back(path + " = " + value);
    return result;
}

/// Where two trees differ, but for fields with paths like these, each of which has to occur.
std::vector<std::string> differences(DtOMTTree& one, DtOMTTree& other,
                                     const std::vector<const char*>& exceptions)
{
    std::vector<std::string> result;
    Fields both[] = {fields(one), fields(other)};
    for (const char* const exception : exceptions)
    {
        const auto isExcepted = [pattern = std::regex(exception)](const auto& field)
        { return std::regex_match(field.first, pattern); };
        if (std::erase_if(both[0], isExcepted) + std::erase_if(both[1], isExcepted) == 0)
            result.push_back(std::string("needless: ") + exception);
    }
    const std::vector<std::string> others = differences(both[0], both[1]);
    result.insert(result.end(), others.begin(), others.end());
    return result;
}

std::string projectFile(const std::string& name)
{
    const std::filesystem::path tests = std::filesystem::path(__FILE__).parent_path();
    return (tests.parent_path() / name).string();
}

/// An element without children, or an XML attribute.
struct Entry
{
    std::string path;  // of tags, with the names of what has one
    std::string text;
    bool isFreeText = false;
};

std::string content(const void* node)
{
    const std::unique_ptr<xmlChar, void (*)(void*)> text(
        xmlNodeGetContent(static_cast<const xmlNode*>(node)),
        [](void* octets) { xmlFree(octets); });
    return text ? reinterpret_cast<const char*>(text.get()) : "";
}

void addEntries(xmlNode* element, std::string path, std::vector<Entry>& result)
{
    path += std::string("/") + reinterpret_cast<const char*>(element->name);
    if (path.ends_with("/glyph")) return;  // a picture, and no value
    xmlNode* const first = xmlFirstElementChild(element);
    if (first && xmlStrEqual(first->name, BAD_CAST "name") != 0) path += '[' + content(first) + ']';
    for (const xmlAttr* each = element->properties; each; each = each->next)
        result.push_back({path + '@' + reinterpret_cast<const char*>(each->name), content(each)});
    for (xmlNode* each = first; each; each = xmlNextElementSibling(each))
        addEntries(each, path, result);
    if (first) return;
    // One update condition is three sentences of prose.
    static const std::regex theFreeText(
        R"(.*/(semantics|description|purpose|attribute\[HLAfederateState\]/updateCondition))");
    result.push_back({path, content(element), std::regex_match(path, theFreeText)});
}

std::vector<Entry> entriesOfFile(const std::string& name)
{
    const Document document(xmlReadFile(name.c_str(), nullptr, XML_PARSE_NONET));
    xmlNode* const root = xmlDocGetRootElement(document.get());
    if (!root) return {};
    std::vector<Entry> result(1);
    result[0].text = reinterpret_cast<const char*>(root->ns->href);
    addEntries(root, "", result);
    return result;
}

std::vector<std::string> words(const std::string& text)
{
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

void expectSameButForFreeText(const std::vector<Entry>& found, const std::vector<Entry>& expected)
{
    ASSERT_FALSE(expected.empty());
    for (std::size_t i = 0; i < std::min(found.size(), expected.size()); ++i)
    {
        ASSERT_EQ(found[i].path, expected[i].path);
        if (found[i].isFreeText)
            EXPECT_FALSE(words(found[i].text).empty()) << found[i].path;
        else
            EXPECT_EQ(found[i].text, expected[i].text) << found[i].path;
    }
    EXPECT_EQ(found.size(), expected.size());
}

TEST_F(ModelsTest, BothMIMsAreThePublishedOnesInOtherWords)
{
    std::ostringstream file;
    file << std::ifstream(projectFile("data/HLAstandardMIM.xml")).rdbuf();
    EXPECT_EQ(file.str(), std::string(reinterpret_cast<const char*>(HLAstandardMIM_xml),
                                      static_cast<std::size_t>(HLAstandardMIM_xml_len)));
    for (const std::string name : {"mim/HLAstandardMIM.xml", "2025/HLAstandardMIM-2025.xml"})
    {
        SCOPED_TRACE(name);
        const std::vector<Entry> found =
            entriesOfFile(projectFile("data" + name.substr(name.find('/'))));
        const std::vector<Entry> expected = entriesOfFile(model(name));
        expectSameButForFreeText(found, expected);
        std::set<std::vector<std::string>> published;
        for (const Entry& entry : expected)
            if (entry.isFreeText) published.insert(words(entry.text));
        for (const Entry& entry : found)
        {
            const bool isSentence = entry.isFreeText && words(entry.text).size() > 4;
            EXPECT_FALSE(isSentence && published.contains(words(entry.text))) << entry.path;
        }
    }
}

TEST_F(PublishedModelsTest, WhatIsWrittenIsReadAgainButForTheKnownLosses)
{
    const std::set<std::string> theLosses = {
        "POC[].email",
        "POC[].lastName",
        "POC[].orgName",
        "POC[].phone",
        "POC[].type",
        "references[].identification",
        "references[].type",  // written, but never read
        "useHistory",
        "sponsorOrgName",
        "other",
        "synchro[].datatype",
        "variant[].encoding",
        "variant[].description",
        "variant[].component[].description",
    };
    std::set<std::string> lost;
    const auto withoutLosses = [&](DtOMTTree& tree)
    {
        Fields result;
        for (const auto& [path, value] : fields(tree))
        {
            std::string kind = path;
            std::erase_if(kind, [](char octet) { return octet >= '0' && octet <= '9'; });
            if (theLosses.count(kind))
                lost.insert(kind);
            else
                result[path] = value;
        }
        return result;
    };
    const TemporaryFolder folder;
    const std::string file = (folder.path() / "again.xml").string();
    const Messages messages;
    for (const PublishedModel& published : thePublishedModels)
    {
        SCOPED_TRACE(published.files.front());
        DtXMLFileReader reader;
        const TreePtr tree = read(reader, published);
        DtXMLEvolvedFileWriter(tree.get()).writeFile(file.c_str());
        const TreePtr again(reader.readFile(file.c_str(), nullptr));
        ASSERT_TRUE(again);
        tree->setName(tree->getName() + "Valid FDD");
        tree->setHlaVersion(DtHla1516_2010);
        EXPECT_EQ(differences(withoutLosses(*tree), fields(*again)), std::vector<std::string>());
    }
    EXPECT_EQ(lost, theLosses) << "one is not needed";
    EXPECT_EQ(messages.list(), std::vector<std::string>());
}

TEST_F(ModelsTest, EveryEntryOfOldModelsIsRead)
{
    const struct
    {
        const char* file;
        Counts counts;
        std::array<std::ptrdiff_t, 4> others;  // enumerators, complex datatypes, components, notes
    } theModels[] = {
        {"hla13/RPR2-D17.omd", {64, 310, 79, 277, 0, 0, 99, 0, 0, 0}, {2967, 95, 421, 88}},
        {"hla13/Billiard.omd", {2, 3, 1, 0, 0, 0, 0, 0, 0, 0},        {0, 1, 3, 0}       },
    };
    for (const auto& [file, expected, others] : theModels)
    {
        SCOPED_TRACE(file);
        const Messages messages;
        const TreePtr tree(DtOMTFileReader().readFile(model(file), nullptr));
        EXPECT_EQ(counts(tree), expected);
        std::map<std::string, std::ptrdiff_t> entries;
        for (const auto& [path, value] : fields(*tree))
            ++entries[std::regex_replace(path, std::regex(R"(\[\d+\])"), "")];
        EXPECT_EQ(entries["enumerated.enumerator.enum"], others[0]);
        EXPECT_EQ(entries["complex.name"], others[1]);
        EXPECT_EQ(entries["complex.component.name"], others[2]);
        EXPECT_EQ(entries["note.number"], others[3]);
        EXPECT_EQ(messages.list(), std::vector<std::string>());
    }
}

std::string sample(const std::string& name)
{
    return projectFile("examples/models/" + name);
}

TEST(SampleModelsTest, TheHarbourIsTheSameInBothDialects)
{
    const Messages messages;
    DtXMLFileReader reader;
    const TreePtr evolved(reader.readFiles(
        {sample("HarbourBase.xml").c_str(), sample("HarbourTraffic.xml").c_str()}, nullptr));
    const TreePtr older(reader.readFile(sample("Harbour-2000.xml").c_str(), nullptr));
    ASSERT_TRUE(evolved && older);
    const std::vector<const char*> theExpected = {
        "hlaVersion",
        // Merging takes no identification over, but says what was merged.
        "name|versionNo|type|purpose|applicationDomain|sponsorOrgName|modificationDate|reference|"
        "other|POC.*|references.*",
        // Left out when a 2000 document is read.
        R"(object.*\.attribute\[\d+\]\.(sharing|transportation|order|dimensions).*)",
        R"(interaction.*\.dimensions.*)",
        R"(fixed\[\d+\]\.encoding)",
        R"(basic\[\d+\]\.interpretation)",
        // There is no place for these in a 2000 document.
        R"(transportation\[\d+\]\.reliable)",
        "updateRate.*",
        R"(note\[\d+\]\.(label|number))",
        R"(switch\[(conveyProducingFederate|exceptionReporting|delaySubscriptionEvaluation)\].*)",
        R"(switch\[automaticResignAction\].*)",
    };
    EXPECT_EQ(differences(*evolved, *older, theExpected), std::vector<std::string>());
    EXPECT_EQ(messages.list(), std::vector<std::string>());
}

}  // namespace
