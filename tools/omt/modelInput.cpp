// SPDX-License-Identifier: Apache-2.0
// A file is looked at before the library reads it: the library has a reader for XML and one for HLA
// 1.3, takes any XML for a model, and says what is wrong with a file in more than one message.
#include "modelInput.h"

#include "messages.h"
#include "omtReader/omtFileReader.h"
#include "omtReader/xmlFileReader.h"
#include "plainText.h"

#include <libxml/tree.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace
{

// In a list this very name means the MIM inside the library, not a file.
constexpr const char* theMIMName = "HLAstandardMIM.xml";

// What an object model consists of, in either XML format.
constexpr const char* theSections[] = {
    "modelIdentification", "objects",         "interactions", "dimensions",  "time",      "tags",
    "synchronizations",    "transportations", "switches",     "updateRates", "dataTypes", "notes"};

struct FreeDocument
{
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, FreeDocument>;

std::string inQuotes(std::string_view text)
{
    return '"' + std::string(text) + '"';
}

/// A pipe may never deliver, and a file is opened more than once.
void refuseSpecialFile(const std::string& name)
{
    std::error_code ignored;
    const auto status = std::filesystem::status(name, ignored);
    if (std::filesystem::is_other(status))
        throw InputError(name + ": not a regular file; save the model to a file first");
}

/// What a file looks like from its first characters.
enum class Beginning
{
    nothing,  ///< the file is empty, or cannot be read
    xml,
    hla13,
    other
};

/// Where a file is: as the library looks for it, here first and then in the directory RTI_CONFIG.
std::string placeOf(const std::string& name)
{
    const char* const variable = std::getenv("RTI_CONFIG");
    const std::string elsewhere = (variable ? variable : "") + ('/' + name);
    const auto isFile = [](const std::string& one)
    {
        std::error_code ignored;
        return std::filesystem::is_regular_file(one, ignored);
    };
    return !isFile(name) && isFile(elsewhere) ? elsewhere : name;
}

Beginning beginningOf(const std::string& name)
{
    std::ifstream file(placeOf(name), std::ios::binary);
    Beginning beginning = Beginning::nothing;
    for (char c; file.get(c);)
    {
        constexpr std::string_view theXmlStarts = "<\xEF\xFE\xFF";  // with a byte order mark, too
        if (c == '(') return Beginning::hla13;
        if (theXmlStarts.find(c) != std::string_view::npos) return Beginning::xml;
        beginning = Beginning::other;
        if (c == ';')
            while (file.get(c) && c != '\n') continue;
        else if (std::string_view(" \t\r\n\f\v").find(c) == std::string_view::npos)
            return beginning;
    }
    return beginning;
}

/// Why a file cannot be opened, when the parser has nothing to say about it.
std::string whyNotOpened(const std::string& name, const DtString& error)
{
    if (!error.contains("No such FED file")) return name + ": " + oneLine(error.view());
    const char* const variable = std::getenv("RTI_CONFIG");
    const std::string directory = variable ? variable : "";
    const bool isSearched = !directory.empty() && directory != "/" && directory != "\\";
    return name + ": no such file" +
           (isSearched ? ", neither here nor in the directory " + inQuotes(directory) +
                             " that RTI_CONFIG names"
                       : "");
}

/// What the parser says is misleading where a text is not XML from its very first character on.
std::string whyNotParsed(const std::string& name, const std::string& warning)
{
    const std::string start = name + ":1:1:";
    if (warning.compare(0, start.size(), start) != 0) return warning;
    switch (beginningOf(name))
    {
        case Beginning::nothing:
            return name + ": the file is empty";
        case Beginning::other:
            return start + " no object model: neither XML nor HLA 1.3";
        case Beginning::xml:
        case Beginning::hla13:
            break;
    }
    return warning;
}

Document openDocument(const std::string& name)
{
    const HeldWarnings warnings;
    xmlDoc* opened = nullptr;
    DtString error;
    if (DtXMLFileReader::openFile(name.c_str(), &opened, error) != DtFedReadSuccess)
        throw InputError(warnings.list().empty() ? whyNotOpened(name, error)
                                                 : whyNotParsed(name, warnings.list().front()));
    return Document(opened);
}

/// Throws unless the document of a file looks like an object model.
void checkRoot(const std::string& name, xmlNode* root)
{
    constexpr std::size_t theMostShown = 80;
    const std::string word = reinterpret_cast<const char*>(root->name);
    if (word != "objectModel")
        throw InputError(name + ": no object model: the root element is " +
                         inQuotes(clipped(oneLine(word), theMostShown)) + ", not \"objectModel\"");
    const bool hasContent =
        std::any_of(std::begin(theSections), std::end(theSections),
                    [&](const char* section)
                    {
                        const auto* text = reinterpret_cast<const xmlChar*>(section);
                        return DtXMLFileReader::getNodeByName(root, text) != nullptr;
                    });
    const bool isNamed = xmlHasProp(root, reinterpret_cast<const xmlChar*>("name")) != nullptr;
    if (!hasContent && !isNamed)
        throw InputError(name +
                         ": the element \"objectModel\" is empty: no identification, no "
                         "classes, no tables");
}

/// Which format a file has. Throws for one that is no object model, as far as its root tells.
DtHLAProtocolVersion formatOf(const std::string& name)
{
    if (!DtFilename(name).isValid()) throw InputError("the name of a file is empty");
    refuseSpecialFile(name);
    if (beginningOf(name) == Beginning::hla13) return DtHla13;
    const Document document = openDocument(name);
    xmlNode* root = xmlDocGetRootElement(document.get());
    checkRoot(name, root);
    return DtXMLFileReader::isEvolvedFormat(root) ? DtHla1516_2010 : DtHla1516_2000;
}

/// The library's words; a file without the tag, such as one of mappings, is no model at all.
std::string whyNotHla13(const std::string& name, const DtString& problem)
{
    const bool isOther = problem.contains("Could not find ObjectModel tag");
    return name + ": " + problem.str() +
           (isOther ? ": no object model, though it begins like one of HLA 1.3" : "");
}

DtOMTTree* readHla13(const std::string& name)
{
    try
    {
        return DtOMTFileReader().readFile(placeOf(name), nullptr);
    }
    catch (const DtOMTReadException& problem)
    {
        throw InputError(whyNotHla13(name, problem.message()));
    }
}

DtOMTTree* readOne(DtXMLFileReader& reader, const ModelChoice& choice)
{
    const std::string& name = choice.files.front();
    const DtHLAProtocolVersion format = formatOf(name);
    if (choice.withMIM && format != DtHla1516_2010)
        DtWarn << name
               << ": the standard MIM belongs to models of IEEE 1516-2010; it was not added to "
                  "this one of "
               << versionText(format) << "\n";
    if (format == DtHla13) return readHla13(name);
    reader.includeMIM(choice.withMIM);
    return reader.readFile(name.c_str(), nullptr);
}

DtOMTTree* readSeveral(DtXMLFileReader& reader, const ModelChoice& choice)
{
    std::vector<DtFilename> names;
    for (const std::string& name : choice.files)
    {
        const DtHLAProtocolVersion format = formatOf(name);
        if (format != DtHla1516_2010)
            throw InputError(name + ": a model of " + versionText(format) +
                             ", which cannot be merged with others; only modules of IEEE "
                             "1516-2010 can");
        names.emplace_back(DtString(name == theMIMName ? "./" + name : name));
    }
    if (choice.withMIM) names.emplace_back(theMIMName);
    return reader.readFiles(names, nullptr);
}

}  // namespace

const char* versionText(DtHLAProtocolVersion version)
{
    switch (version)
    {
        case DtHlaUnset:
            return "unknown";
        case DtHla13:
            return "HLA 1.3";
        case DtHla1516_2000:
            return "IEEE 1516-2000";
        case DtHla1516_2010:
            return "IEEE 1516-2010";
    }
    return "unknown";
}

CLI::Option* addModelArguments(CLI::App& command, ModelChoice& choice)
{
    command.add_flag("--mim", choice.withMIM, "Merge the standard MIM in, behind the files");
    return command
        .add_option("MODEL", choice.files, "Files of the model; modules are merged in order")
        ->required();
}

DtOMTTreePtr readModel(const ModelChoice& choice)
{
    DtXMLFileReader reader;
    DtOMTTreePtr tree(choice.files.size() == 1 ? readOne(reader, choice)
                                               : readSeveral(reader, choice));
    if (!tree)
        throw InputError("the model cannot be read: " + oneLine(reader.getLastError().view()));
    return tree;
}
