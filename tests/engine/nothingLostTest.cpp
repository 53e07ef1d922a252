// SPDX-License-Identifier: Apache-2.0
// Everything that an XML library finds in a published model is in the model's JSON.
#include "omt/model/modelJson.h"
#include "omt/model/read.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
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

}  // namespace
