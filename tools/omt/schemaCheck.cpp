// SPDX-License-Identifier: Apache-2.0
#include "schemaCheck.h"

#include "errors.h"
#include "inputFile.h"
#include "omt/model/write.h"

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <utility>

namespace
{

namespace fs = std::filesystem;
using omt::Edition;
using omt::Severity;

using Document = std::unique_ptr<xmlDoc, void (*)(xmlDoc*)>;
using Schema = std::unique_ptr<xmlSchema, void (*)(xmlSchema*)>;

constexpr const char* theNamespaces[] = {"http://standards.ieee.org/IEEE1516-2010",
                                         "http://standards.ieee.org/IEEE1516-2025"};
constexpr const char* theSchemaNamespace = "http://www.w3.org/2001/XMLSchema";

enum class Use
{
    dif,
    omt
};

std::string nameOf(Use use, Edition edition)
{
    return std::string(use == Use::dif ? "DIF" : "OMT") + " schema of 1516-" +
           (edition == Edition::ieee2025 ? "2025" : "2010");
}

std::string findingName(Use use)
{
    return use == Use::dif ? "dif-schema" : "omt-schema";
}

/// What libxml2 reports goes to its caller, and nothing to standard error.
void silence(void* /*context*/, const char* /*format*/, ...) {}

/// A schema or document is one file: what it includes is neither fetched nor opened.
xmlParserInput* loadNothing(const char* /*url*/, const char* /*id*/, xmlParserCtxt* /*context*/)
{
    return nullptr;
}

class QuietLibxml
{
public:
    QuietLibxml() : myLoader(xmlGetExternalEntityLoader())
    {
        xmlSetExternalEntityLoader(loadNothing);
        xmlSetGenericErrorFunc(nullptr, silence);
    }
    QuietLibxml(const QuietLibxml&) = delete;
    QuietLibxml& operator=(const QuietLibxml&) = delete;
    ~QuietLibxml()
    {
        xmlSetGenericErrorFunc(nullptr, nullptr);
        xmlSetExternalEntityLoader(myLoader);
    }

private:
    xmlExternalEntityLoader myLoader;
};

/// libxml2 compares every XML attribute of an element with all before it, so that it is not asked
/// about elements that have very many. No attribute holds "<" as it is.
bool hasManyAttributes(std::string_view xml)
{
    constexpr std::size_t theMost = 1000;
    std::size_t count = 0;
    bool isEqual = false;
    for (const char c : xml)
    {
        if (c == '<') count = 0;
        if (isEqual && (c == '"' || c == '\'') && ++count > theMost) return true;
        if (c != '\0' && c != ' ' && c != '\t' && c != '\r' && c != '\n') isEqual = c == '=';
    }
    return false;
}

Document parse(const std::string& content)
{
    Document none(nullptr, xmlFreeDoc);
    if (content.size() > INT32_MAX || hasManyAttributes(content)) return none;
    constexpr int theOptions =
        XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_BIG_LINES;
    return {xmlReadMemory(content.data(), static_cast<int>(content.size()), nullptr, nullptr,
                          theOptions),
            xmlFreeDoc};
}

std::string valueOf(const xmlNode* node, const char* name)
{
    const std::unique_ptr<xmlChar, void (*)(void*)> value(
        xmlGetNoNsProp(const_cast<xmlNode*>(node), BAD_CAST name), xmlFree);
    return value ? reinterpret_cast<const char*>(value.get()) : "";
}

std::string lowered(std::string text)
{
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

/// The use of a schema: DIF has no keys at the root, OMT has keys of datatypes; there is a third
/// one between them, for federates that start, which is of no use here.
bool findUse(const xmlNode* root, Use& use)
{
    for (const xmlNode* at = root->children; at; at = at->next)
    {
        if (!xmlStrEqual(at->name, BAD_CAST "element") || valueOf(at, "name") != "objectModel")
            continue;
        bool hasKeys = false;
        bool hasDatatypeKeys = false;
        for (const xmlNode* key = at->children; key; key = key->next)
        {
            if (!xmlStrEqual(key->name, BAD_CAST "key")) continue;
            hasKeys = true;
            hasDatatypeKeys = hasDatatypeKeys ||
                              lowered(valueOf(key, "name")).find("datatype") != std::string::npos;
        }
        use = hasKeys ? Use::omt : Use::dif;
        return !hasKeys || hasDatatypeKeys;
    }
    return false;
}

/// The schemas of a folder.
class Schemas
{
public:
    explicit Schemas(const std::string& folder)
    {
        std::error_code error;
        std::vector<fs::path> files;
        for (fs::directory_iterator at(folder, error), end; !error && at != end;
             at.increment(error))
            if (at->path().extension() == ".xsd") files.push_back(at->path());
        if (error) throw InputError(folder + ": " + error.message());
        std::sort(files.begin(), files.end());
        for (const fs::path& file : files) add(file.string());
    }

    xmlSchema* find(Use use, Edition edition) const
    {
        const auto found = mySchemas.find({use, edition});
        return found == mySchemas.end() ? nullptr : found->second.get();
    }

private:
    void add(const std::string& file)
    {
        const Document document = parse(contentOf(file));
        const xmlNode* const root = document ? xmlDocGetRootElement(document.get()) : nullptr;
        if (!root || !root->ns || !xmlStrEqual(root->ns->href, BAD_CAST theSchemaNamespace) ||
            !xmlStrEqual(root->name, BAD_CAST "schema"))
            return;
        const std::string target = valueOf(root, "targetNamespace");
        Use use = Use::dif;
        if ((target != theNamespaces[0] && target != theNamespaces[1]) || !findUse(root, use))
            return;
        const Edition edition = target == theNamespaces[1] ? Edition::ieee2025 : Edition::ieee2010;
        const std::unique_ptr<xmlSchemaParserCtxt, void (*)(xmlSchemaParserCtxt*)> parser(
            xmlSchemaNewDocParserCtxt(document.get()), xmlSchemaFreeParserCtxt);
        xmlSchemaSetParserErrors(parser.get(), silence, silence, nullptr);
        Schema schema(xmlSchemaParse(parser.get()), xmlSchemaFree);
        if (schema) mySchemas.try_emplace({use, edition}, std::move(schema));
    }

    std::map<std::pair<Use, Edition>, Schema> mySchemas;
};

/// What libxml2 says of a document, line by line.
struct Complaints
{
    static constexpr std::size_t theMost = 1000;
    std::vector<std::pair<std::uint32_t, std::string>> list;

    static void add(void* data, xmlError* error)
    {
        auto& list = static_cast<Complaints*>(data)->list;
        if (list.size() == theMost) return;
        std::string text = error->message ? error->message : "";
        for (const char* const target : theNamespaces)
        {
            const std::string prefix = '{' + std::string(target) + '}';
            for (std::size_t at = 0; (at = text.find(prefix, at)) != std::string::npos;)
                text.erase(at, prefix.size());
        }
        // Values are quoted as they stand in the document, with its lines.
        std::replace(text.begin(), text.end(), '\n', ' ');
        while (!text.empty() && (text.back() == ' ' || text.back() == '.')) text.pop_back();
        const auto* const node = static_cast<xmlNode*>(error->node);
        const long line = node ? xmlGetLineNo(node) : error->line;
        list.emplace_back(static_cast<std::uint32_t>(std::max(line, 0L)), std::move(text));
    }
};

Complaints validate(xmlSchema* schema, xmlDoc* document)
{
    Complaints complaints;
    const std::unique_ptr<xmlSchemaValidCtxt, void (*)(xmlSchemaValidCtxt*)> context(
        xmlSchemaNewValidCtxt(schema), xmlSchemaFreeValidCtxt);
    xmlSchemaSetValidStructuredErrors(context.get(), Complaints::add, &complaints);
    xmlSchemaValidateDoc(context.get(), document);
    return complaints;
}

/// Validates one set.
class SchemaCheck
{
public:
    explicit SchemaCheck(const std::string& folder) : myFolder(folder), mySchemas(folder) {}

    void checkFile(const CheckedFile& file)
    {
        const Edition edition = file.model.modules().front().edition;
        if (edition != Edition::ieee2010 && edition != Edition::ieee2025) return;
        check(Use::dif, edition, file.content, file.name,
              [&](std::uint32_t line) {
                  return omt::Place{file.name, line, 0};
              });
    }

    void checkWhole(const CheckedSet& set)
    {
        std::vector<omt::Model> models;
        for (const CheckedFile& file : set.files) models.push_back(file.model);
        models.insert(models.begin(), omt::readMim(models));
        omt::Findings ignored;
        const omt::Model merged = omt::merge(models, ignored);
        const Edition edition =
            merged.edition() == Edition::ieee2025 ? Edition::ieee2025 : Edition::ieee2010;
        if (!mySchemas.find(Use::omt, edition)) return reportMissing(Use::omt, edition);
        const omt::Writing writing =
            omt::writeXml(merged, edition, omt::WriteOptions().withOrigins());
        check(Use::omt, edition, writing.text, set.files.front().name,
              [&](std::uint32_t line)
              {
                  // Tables come of all modules.
                  if (line == 0 || line > writing.origins.size() ||
                      writing.origins[line - 1].line == 0)
                      return omt::Place{set.files.front().name, 0, 0};
                  const omt::LineOrigin& origin = writing.origins[line - 1];
                  const omt::Module& module = merged.modules()[origin.module];
                  return omt::Place{module.isBuiltIn ? "" : module.file.str(), origin.line, 0};
              });
    }

    omt::Findings findings() { return std::move(myFindings); }

private:
    void reportMissing(Use use, Edition edition)
    {
        if (!myMissing.emplace(use, edition).second) return;
        myFindings.push_back({
            Severity::error,
            findingName(use),
            "the folder holds no " + nameOf(use, edition) + " that can be read",
            {myFolder, 0, 0}
        });
    }

    void check(Use use, Edition edition, const std::string& content, const std::string& name,
               const std::function<omt::Place(std::uint32_t)>& placeOf)
    {
        xmlSchema* const schema = mySchemas.find(use, edition);
        if (!schema) return reportMissing(use, edition);
        const Document document = parse(content);
        if (!document)
        {
            myFindings.push_back({
                Severity::error,
                findingName(use),
                "is not validated: the library for schemas does not read it",
                {name, 0, 0}
            });
            return;
        }
        const Complaints complaints = validate(schema, document.get());
        for (const auto& [line, text] : complaints.list)
        {
            // The schema has no place for NA, which the standard demands; only the message has the
            // key that was not found.
            if (use == Use::omt && text.find("['NA']") != std::string::npos) continue;
            omt::Place place = placeOf(line);
            if (place.file.empty()) continue;
            myFindings.push_back({Severity::error, findingName(use), text, std::move(place)});
        }
        if (complaints.list.size() == Complaints::theMost)
            myFindings.push_back({
                Severity::note,
                findingName(use),
                "there may be more; this is where validating ends",
                {name, 0, 0}
            });
    }

    std::string myFolder;
    Schemas mySchemas;
    std::set<std::pair<Use, Edition>> myMissing;
    omt::Findings myFindings;
};

}  // namespace

omt::Findings checkBySchemas(const CheckedSet& set, const std::string& folder)
{
    const QuietLibxml quiet;
    SchemaCheck check(folder);
    for (const CheckedFile& file : set.files) check.checkFile(file);
    if (!set.files.empty()) check.checkWhole(set);
    return check.findings();
}
