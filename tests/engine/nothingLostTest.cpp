// SPDX-License-Identifier: Apache-2.0
// Everything that an XML library finds in a published model is in the model's JSON, and in what is
// written of it; what is written is valid.
#include "omt/model/modelJson.h"
#include "omt/model/read.h"
#include "omt/model/write.h"

#include <gmock/gmock.h>
#include <libxml/parser.h>
#include <libxml/xmlschemas.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <vector>

namespace
{

using Json = nlohmann::json;

/// Texts by the word of their element or XML attribute, and the lines of all elements.
struct Content
{
    std::multiset<std::pair<std::string, std::string>> texts;
    std::multiset<std::uint32_t> lines;
};

/// Elements around the texts of a list, which JSON has as the list itself.
const std::set<std::string> theArounds = {"dimensions", "inputDataTypes"};

/// What JSON calls otherwise: a list by the element around its texts, a switch's value by one word,
/// the name of a definition that is named by its element.
std::string keyOf(const std::string& word)
{
    static const std::map<std::string, std::string> theKeys = {
        {"dimension",      "dimensions"},
        {"resignAction",   "isEnabled" },
        {"notes",          "text"      },
        {"noteReferences", "text"      },
    };
    const auto found = theKeys.find(word);
    return found == theKeys.end() ? word : found->second;
}

std::string trimmed(const xmlChar* text)
{
    std::string all = text ? reinterpret_cast<const char*>(text) : "";
    all.erase(0, all.find_first_not_of(" \t\r\n"));
    all.erase(all.find_last_not_of(" \t\r\n") + 1);
    return all;
}

std::string qualified(const xmlAttr* attribute)
{
    const std::string name = reinterpret_cast<const char*>(attribute->name);
    if (!attribute->ns || !attribute->ns->prefix) return name;
    return reinterpret_cast<const char*>(attribute->ns->prefix) + (":" + name);
}

void addAttributes(const xmlNode* node, Content& content)
{
    for (const xmlAttr* at = node->properties; at; at = at->next)
    {
        const std::unique_ptr<xmlChar, void (*)(void*)> value(
            xmlNodeListGetString(node->doc, at->children, 1), xmlFree);
        const std::string name = qualified(at);
        const bool isAside = name.find(':') != std::string::npos;
        // 1516-2000 puts several dimensions into one XML attribute.
        std::istringstream words(trimmed(value.get()));
        if (name == "dimensions")
            for (std::string each; words >> each;) content.texts.emplace(name, each);
        else
            content.texts.emplace(isAside ? "text" : keyOf(name), words.str());
    }
}

void addElements(const xmlNode* first, Content& content)
{
    for (const xmlNode* node = first; node; node = node->next)
    {
        if (node->type != XML_ELEMENT_NODE) continue;
        const std::string word = reinterpret_cast<const char*>(node->name);
        addAttributes(node, content);
        const bool isLeaf = xmlChildElementCount(const_cast<xmlNode*>(node)) == 0;
        if (!theArounds.count(word) && (!isLeaf || node->properties))
            content.lines.insert(
                static_cast<std::uint32_t>(xmlGetLineNo(const_cast<xmlNode*>(node))));
        const std::unique_ptr<xmlChar, void (*)(void*)> text(xmlNodeGetContent(node), xmlFree);
        if (isLeaf && !node->properties && !trimmed(text.get()).empty())
            content.texts.emplace(word == "glyph" ? "content" : keyOf(word), trimmed(text.get()));
        addElements(node->children, content);
    }
}

void addJson(const std::string& key, const Json& json, Content& content)
{
    if (json.is_string())
        content.texts.emplace(key, json.get<std::string>());
    else if (key == "line" && json.is_number())
        content.lines.insert(json.get<std::uint32_t>());
    else if (json.is_array())
        for (const Json& each : json) addJson(key, each, content);
    else if (json.is_object())
        for (const auto& [inner, value] : json.items()) addJson(inner, value, content);
}

std::multiset<std::pair<std::string, std::string>> withoutWords(
    const std::multiset<std::pair<std::string, std::string>>& texts)
{
    std::multiset<std::pair<std::string, std::string>> all;
    for (const auto& [word, text] : texts)
        if (!text.empty()) all.emplace("", text);
    return all;
}

/// Takes what is in the second out of the first.
template <typename T>
void subtract(std::multiset<T>& all, const std::multiset<T>& found)
{
    for (const T& each : found)
    {
        const auto at = all.find(each);
        if (at != all.end()) all.erase(at);
    }
}

using Document = std::unique_ptr<xmlDoc, void (*)(xmlDoc*)>;

Document parsed(const std::string& file)
{
    return {xmlReadFile(file.c_str(), nullptr, XML_PARSE_NONET), xmlFreeDoc};
}

std::vector<std::string> filesOf(std::initializer_list<const char*> folders)
{
    std::vector<std::string> files;
    const char* const models = std::getenv("OMT_MODELS");
    if (!models) return files;
    for (const std::string folder : folders)
        for (const auto& entry : std::filesystem::directory_iterator(models + ("/" + folder)))
            files.push_back(entry.path().string());
    return files;
}

TEST(NothingLostTest, EveryElementAttributeAndTextIsInTheJson)
{
    const std::vector<std::string> files = filesOf({"evolved", "mim", "2025", "x2000"});
    if (files.empty()) GTEST_SKIP() << "OMT_MODELS is not set";
    for (const std::string& file : files)
    {
        Content theirs;
        const Document document = parsed(file);
        addElements(xmlDocGetRootElement(document.get()), theirs);
        Content ours;
        addJson("", Json::parse(omt::modelJson(omt::read({file}).model)), ours);
        // In 2000 the words are other ones than the keys.
        if (file.find("x2000") != std::string::npos)
        {
            theirs.texts = withoutWords(theirs.texts);
            ours.texts = withoutWords(ours.texts);
        }
        subtract(theirs.texts, ours.texts);
        subtract(theirs.lines, ours.lines);
        for (const auto& [word, text] : theirs.texts)
            ADD_FAILURE() << file << ": " << word << " \"" << text << "\" is lost";
        EXPECT_EQ(theirs.lines, std::multiset<std::uint32_t>()) << file;
    }
}

void addLines(const xmlNode* first, const char* word, std::multiset<long>& lines)
{
    for (const xmlNode* node = first; node; node = node->next)
    {
        if (node->type == XML_ELEMENT_NODE && xmlStrEqual(node->name, BAD_CAST word))
            lines.insert(xmlGetLineNo(const_cast<xmlNode*>(node)));
        addLines(node->children, word, lines);
    }
}

TEST(NothingLostTest, PropertiesKnowTheirLines)
{
    const std::vector<std::string> files = filesOf({"evolved", "mim", "2025"});
    if (files.empty()) GTEST_SKIP() << "OMT_MODELS is not set";
    for (const std::string& file : files)
    {
        std::multiset<long> theirs;
        const Document document = parsed(file);
        addLines(xmlDocGetRootElement(document.get()), "dataType", theirs);

        std::multiset<long> ours;
        const auto add = [&ours](const auto& definitions)
        {
            for (const auto& definition : definitions)
                if (definition.dataType.isThere()) ours.insert(definition.dataType.line());
        };
        const omt::Reading reading = omt::read({file});
        const omt::Tables& tables = reading.model.tables();
        for (const omt::ObjectClass& node : tables.objectClasses) add(node.attributes);
        for (const omt::InteractionClass& node : tables.interactionClasses) add(node.parameters);
        for (const omt::FixedRecord& record : tables.fixedRecords) add(record.fields);
        for (const omt::VariantRecord& record : tables.variantRecords) add(record.alternatives);
        for (const omt::Dimension& dimension : tables.dimensions)
            for (const omt::Text& datatype : dimension.dataTypes) ours.insert(datatype.line());
        add(tables.variantRecords);
        add(tables.arrayData);
        add(tables.times);
        add(tables.tags);
        add(tables.synchronizationPoints);
        EXPECT_EQ(ours, theirs) << file;
    }
}

/// Elements, XML attributes and comments as "path: text"; blanks around texts do not count.
void addPaths(const xmlNode* first, const std::string& around, std::multiset<std::string>& paths)
{
    for (const xmlNode* node = first; node; node = node->next)
    {
        const std::unique_ptr<xmlChar, void (*)(void*)> text(xmlNodeGetContent(node), xmlFree);
        if (node->type == XML_COMMENT_NODE) paths.insert("comment: " + trimmed(text.get()));
        if (node->type != XML_ELEMENT_NODE) continue;
        const std::string path = around + "/" + reinterpret_cast<const char*>(node->name);
        const bool isLeaf = xmlChildElementCount(const_cast<xmlNode*>(node)) == 0;
        paths.insert(path + ": " + (isLeaf ? trimmed(text.get()) : ""));
        for (const xmlAttr* at = node->properties; at; at = at->next)
        {
            const std::unique_ptr<xmlChar, void (*)(void*)> value(
                xmlNodeListGetString(node->doc, at->children, 1), xmlFree);
            paths.insert(path + "@" + qualified(at) + ": " + trimmed(value.get()));
        }
        addPaths(node->children, path, paths);
    }
}

std::multiset<std::string> pathsOf(const xmlDoc* document)
{
    std::multiset<std::string> paths;
    addPaths(document->children, "", paths);
    return paths;
}

Document parsedText(const std::string& text)
{
    return {xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0),
            xmlFreeDoc};
}

/// The DIF schema of an edition; null without the published files.
class Schema
{
public:
    explicit Schema(omt::Edition edition)
    {
        const char* const models = std::getenv("OMT_MODELS");
        const std::string year = edition == omt::Edition::ieee2025 ? "2025" : "2010";
        const std::string file = (models ? models : "") + ("/schema/IEEE1516-DIF-" + year + ".xsd");
        xmlSchemaParserCtxt* const parser = xmlSchemaNewParserCtxt(file.c_str());
        mySchema = xmlSchemaParse(parser);
        xmlSchemaFreeParserCtxt(parser);
    }
    Schema(const Schema&) = delete;
    Schema& operator=(const Schema&) = delete;
    ~Schema() { xmlSchemaFree(mySchema); }

    bool accepts(xmlDoc* document) const
    {
        xmlSchemaValidCtxt* const context = xmlSchemaNewValidCtxt(mySchema);
        const int result = mySchema ? xmlSchemaValidateDoc(context, document) : -1;
        xmlSchemaFreeValidCtxt(context);
        return result == 0;
    }

private:
    xmlSchema* mySchema;
};

/// What the schemas refuse in the published models, and what is written instead.
const std::multimap<std::string, std::string> theRepairs = {
    {"/objectModel/modelIdentification/applicationDomain: ",                     ""                                                                       },
    {"/objectModel/modelIdentification/reference/identification: Reference for: Enumerations for "
     "Simulation Interoperability\nSISO-REF-010-00v20-0\n19 November 2013", "/objectModel/modelIdentification/reference/identification: Reference for%3A Enumerations for "
     "Simulation Interoperability\nSISO-REF-010-00v20-0\n19 November 2013"},
};

TEST(NothingLostTest, EveryElementAttributeTextAndCommentIsWritten)
{
    const std::vector<std::string> files = filesOf({"evolved", "mim", "2025"});
    if (files.empty()) GTEST_SKIP() << "OMT_MODELS is not set";
    for (const std::string& file : files)
    {
        const omt::Model model = omt::read({file}).model;
        const std::multiset<std::string> theirs = pathsOf(parsed(file).get());
        std::multiset<std::string> repaired = theirs;
        for (const auto& [before, after] : theRepairs)
            if (repaired.erase(before) > 0 && !after.empty()) repaired.insert(after);
        const auto compare = [&](const omt::Writing& writing, const auto& expected)
        {
            std::multiset<std::string> missing = expected;
            std::multiset<std::string> ours = pathsOf(parsedText(writing.text).get());
            subtract(missing, ours);
            subtract(ours, expected);
            for (const std::string& path : missing) ADD_FAILURE() << file << ": lost " << path;
            for (const std::string& path : ours) ADD_FAILURE() << file << ": made " << path;
        };
        compare(omt::writeXml(model, model.edition(), omt::WriteOptions().asRead()), theirs);
        compare(omt::writeXml(model, model.edition()), repaired);
    }
}

/// How many labels of notes a document refers to.
std::size_t countReferences(const xmlNode* first)
{
    std::size_t count = 0;
    for (const xmlNode* node = first; node; node = node->next)
    {
        if (node->type != XML_ELEMENT_NODE) continue;
        for (const char* const word : {"notes", "noteReferences"})
        {
            const std::unique_ptr<xmlChar, void (*)(void*)> labels(
                xmlGetNoNsProp(const_cast<xmlNode*>(node), BAD_CAST word), xmlFree);
            std::istringstream words(trimmed(labels.get()));
            for (std::string label; words >> label;) ++count;
        }
        count += countReferences(node->children);
    }
    return count;
}

/// How many references to notes stand on all definitions and parts of a model, in JSON.
std::size_t countReferences(const Json& json)
{
    std::size_t count = json.is_object() && json.value("what", "") == "notes" ? 1 : 0;
    if (json.is_structured())
        for (const Json& each : json) count += countReferences(each);
    return count;
}

TEST(NothingLostTest, EveryReferenceToANoteIsWrittenOrReported)
{
    const std::vector<std::string> files = filesOf({"evolved", "mim", "2025", "x2000", "hla13"});
    if (files.empty()) GTEST_SKIP() << "OMT_MODELS is not set";
    for (const std::string& file : files)
    {
        const omt::Model model = omt::read({file}).model;
        const std::size_t expected = countReferences(Json::parse(omt::modelJson(model)));
        for (const omt::Edition edition : {omt::Edition::ieee2010, omt::Edition::ieee2025})
        {
            const omt::Writing writing = omt::writeXml(model, edition);
            std::size_t found = countReferences(parsedText(writing.text)->children);
            for (const omt::Finding& finding : writing.findings)
                if (finding.text.find("the reference to note `") == 0) ++found;
            EXPECT_GE(found, expected) << file;
        }
    }
}

/// What reading finds, without places.
std::multiset<std::string> findingsOf(const omt::Findings& findings)
{
    std::multiset<std::string> texts;
    for (const omt::Finding& finding : findings) texts.insert(finding.name);
    return texts;
}

TEST(NothingLostTest, WhatIsWrittenOfAnyEditionIsValidAndReadsBack)
{
    const std::vector<std::string> files = filesOf({"evolved", "mim", "2025", "x2000", "hla13"});
    if (files.empty()) GTEST_SKIP() << "OMT_MODELS is not set";
    for (const omt::Edition edition : {omt::Edition::ieee2010, omt::Edition::ieee2025})
    {
        const Schema schema(edition);
        for (const std::string& file : files)
        {
            SCOPED_TRACE(file);
            const omt::Reading reading = omt::read({file});
            const omt::Writing writing = omt::writeXml(reading.model, edition);
            EXPECT_TRUE(schema.accepts(parsedText(writing.text).get()));
            const omt::Reading again = omt::readDocuments({
                {file, writing.text}
            });
            std::multiset<std::string> worse = findingsOf(again.findings);
            subtract(worse, findingsOf(reading.findings));
            EXPECT_THAT(worse, testing::IsEmpty());
            const omt::Writing second = omt::writeXml(again.model, edition);
            EXPECT_TRUE(second.text == writing.text);
            EXPECT_THAT(findingsOf(second.findings), testing::IsEmpty());
        }
    }
}

}  // namespace
