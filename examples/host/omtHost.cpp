// SPDX-License-Identifier: Apache-2.0
// Shows what libomtReader gives a host: trees, values as lines and trees, octets, documents.
#include "omtReader/datatypeManager.h"
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtFileReader.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/stringTree.h"
#include "omtReader/xmlEvolvedFileWriter.h"
#include "omtReader/xmlFileReader.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <stdexcept>

namespace
{

using Json = nlohmann::ordered_json;
using Octets = DtDatatypeManager::Octets;
using Classes = std::vector<const DtFedNode*>;

constexpr const char* theUsage =
    "usage: omtHost show|convert MODEL...\n"
    "       omtHost decode MODEL... OCTETS... [--json]\n"
    "       omtHost encode MODEL... TEXT\n"
    "with --mim, --map FILE, --no-padding; values take --attribute CLASS.NAME, --parameter\n"
    "CLASS.NAME or --type NAME, and octets are pairs of hexadecimal digits";

struct Arguments
{
    std::string command;
    std::vector<std::string> models;
    std::vector<std::string> value;              // octets, or the text
    std::map<std::string, std::string> options;  // the text of a flag is empty

    bool has(const char* option) const { return options.count(option) > 0; }
};

/// The value begins at the first word without a dot or a slash, which every name of a file can be
/// given: "./10". A text to encode is the last word, whatever is in it.
void splitWords(Arguments& arguments)
{
    std::vector<std::string>& words = arguments.models;
    const auto isFile = [](const std::string& word)
    { return word.find_first_of("./") != std::string::npos; };
    auto split = words.end();
    if (arguments.command == "decode") split = std::find_if_not(words.begin(), split, isFile);
    if (arguments.command == "encode" && words.size() > 1) --split;
    arguments.value.assign(split, words.end());
    words.erase(split, words.end());
    if (words.empty()) throw std::runtime_error(theUsage);
}

Arguments readArguments(const std::vector<std::string>& words)
{
    const std::set<std::string> flags = {"--mim", "--json", "--no-padding"};
    const std::set<std::string> named = {"--map", "--attribute", "--parameter", "--type"};
    if (words.empty()) throw std::runtime_error(theUsage);
    Arguments arguments = {words.front(), {}, {}, {}};
    for (auto word = words.begin() + 1; word != words.end(); ++word)
        if (flags.count(*word) > 0)
            arguments.options[*word];
        else if (named.count(*word) > 0 && word + 1 != words.end())
            ++word, arguments.options[word[-1]] = *word;
        else if (word->compare(0, 2, "--") == 0)
            throw std::runtime_error(theUsage);
        else
            arguments.models.push_back(*word);
    splitWords(arguments);
    return arguments;
}

/// HLA 1.3 has a reader of its own. Its models begin with a list or with a comment.
bool isHla13(const std::string& file)
{
    std::ifstream content(file);
    const int first = (content >> std::ws).peek();
    return first == '(' || first == ';';
}

/// One file of any format, or several modules of IEEE 1516-2010.
DtOMTTreePtr readModel(const std::vector<std::string>& files, bool hasMim)
{
    if (files.size() == 1 && isHla13(files.front()))
        return DtOMTTreePtr(DtOMTFileReader().readFile(files.front(), nullptr));
    DtXMLFileReader reader;
    reader.includeMIM(hasMim);  // with one file; beside several it is a module of this name
    std::vector<DtFilename> names(files.begin(), files.end());
    if (hasMim) names.emplace_back("HLAstandardMIM.xml");
    DtOMTTreePtr tree(files.size() == 1 ? reader.readFile(names.front(), nullptr)
                                        : reader.readFiles(names, nullptr));
    if (!tree) throw std::runtime_error("the model cannot be read: " + reader.getLastError().str());
    return tree;
}

Classes objectClassesOf(DtOMTTree& tree)
{
    return {tree.getObjectClassNodeBegin(), tree.getObjectClassNodeEnd()};
}

Classes interactionClassesOf(DtOMTTree& tree)
{
    return {tree.getInteractionClassNodeBegin(), tree.getInteractionClassNodeEnd()};
}

/// The attributes or parameters that a class has of its own.
std::vector<const DtDatatypeFedNode*> membersOf(const DtFedNode& node)
{
    if (const auto* const objectClass = dynamic_cast<const DtObjectClassFedNode*>(&node))
        return {objectClass->getAttributes().begin(), objectClass->getAttributes().end()};
    const auto& parameters = dynamic_cast<const DtInteractionClassFedNode&>(node).getParameters();
    return {parameters.begin(), parameters.end()};
}

/// Whether the full name of a class ends in a path of names.
bool isNamed(const DtFedNode* node, const std::string& path)
{
    const std::size_t dot = path.rfind('.');
    if (!node || node->getName().view() != std::string_view(path).substr(dot + 1)) return false;
    return dot == std::string::npos || isNamed(node->getParentObject(), path.substr(0, dot));
}

/// An own or inherited member by "CLASS.NAME".
const DtDatatypeFedNode* findMember(const Classes& classes, const std::string& path)
{
    const std::size_t dot = path.rfind('.');
    const DtFedNode* found = nullptr;
    for (const DtFedNode* one : classes)
        if (dot != std::string::npos && isNamed(one, path.substr(0, dot)))
        {
            if (found) throw std::runtime_error(path + ": there are several such classes");
            found = one;
        }
    for (; found; found = found->getParentObject())
        for (const DtDatatypeFedNode* member : membersOf(*found))
            if (member->getName().view() == path.substr(dot + 1)) return member;
    throw std::runtime_error("the model has no " + path);
}

void print(DtOMTTree& tree)
{
    for (const Classes& classes : {objectClassesOf(tree), interactionClassesOf(tree)})
        for (const DtFedNode* one : classes)
        {
            const DtFedNode* const parent = one->getParentObject();
            std::cout << one->getName() << (parent ? " below " + parent->getName().str() : "")
                      << '\n';
            for (const DtDatatypeFedNode* member : membersOf(*one))
                std::cout << "    " << member->getName() << ": " << member->getDatatype() << '\n';
        }
}

/// Furnishes a manager; the order of the calls matters.
void prepare(DtDatatypeManager& manager, DtOMTTree& tree, const Arguments& arguments)
{
    // HLA 1.3 has no rule of padding: its models have components for it.
    manager.setImplicitPadding(!arguments.has("--no-padding") && tree.hlaVersion() != DtHla13);
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(&tree);
    if (!arguments.has("--map")) return manager.readStandardMappings();
    const std::string& file = arguments.options.at("--map");
    // The manager takes a file that is not there for one without mappings.
    if (!std::ifstream(file)) throw std::runtime_error(file + ": the mapping cannot be read");
    manager.readFile(file);
}

/// What a value is of: the attribute or parameter, null for a datatype alone, and the datatype.
std::pair<const DtDatatypeFedNode*, DtString> findTarget(DtOMTTree& tree,
                                                         const Arguments& arguments)
{
    const DtDatatypeFedNode* member = nullptr;
    if (arguments.has("--attribute"))
        member = findMember(objectClassesOf(tree), arguments.options.at("--attribute"));
    else if (arguments.has("--parameter"))
        member = findMember(interactionClassesOf(tree), arguments.options.at("--parameter"));
    else if (!arguments.has("--type") || arguments.value.empty())
        throw std::runtime_error(theUsage);
    return {member, member ? member->getDatatype() : arguments.options.at("--type")};
}

Octets octetsOf(const std::vector<std::string>& words)
{
    Octets octets;
    octets.reserve(1);  // null would stand for no value, and not for one without octets
    for (const std::string& word : words)
        for (std::size_t at = 0; at < word.size(); at += 2)
        {
            unsigned char octet = 0;
            const char* const pair = &word[at];  // a single digit ends at the zero after the word
            if (std::from_chars(pair, pair + 2, octet, 16).ptr != pair + 2)
                throw std::runtime_error('"' + word + "\" is not pairs of hexadecimal digits");
            octets.push_back(static_cast<char>(octet));
        }
    return octets;
}

/// The elements or fields of a chain, down as deep as datatypes go, which the manager bounds.
Json jsonOf(const DtStringTree* first)
{
    Json nodes = Json::array();
    for (const DtStringTree* field = first; field; field = field->nextSibling())
        for (const DtStringTree* node = field; node; node = node->nextElement())
            nodes.push_back({
                {"key",      node->key().str()         },
                {"datatype", node->datatype().str()    },
                {"offset",   node->offset()            },
                {"value",    node->value().str()       },
                {"children", jsonOf(node->firstChild())}
            });
    return nodes;
}

void printJson(const DtString& line, int consumed, const DtStringTree* tree)
{
    Json value = {
        {"text",     line.str()},
        {"consumed", consumed  },
        {"tree",     nullptr   }
    };
    Json nodes = jsonOf(tree);
    if (tree) value["tree"] = std::exchange(nodes[0], nullptr);
    // Further values of an attribute are no parts of the first one.
    if (nodes.size() > 1) value["tree"]["elements"] = Json(nodes.begin() + 1, nodes.end());
    std::cout << value.dump(-1, ' ', true, Json::error_handler_t::replace) << '\n';
}

/// Octets that are missing read as zero, so a host compares what was consumed with what there is.
int decode(DtDatatypeManager& manager, const Arguments& arguments)
{
    const Octets octets = octetsOf(arguments.value);
    const char* const data = octets.data();
    const auto length = static_cast<int>(octets.size());
    const auto [member, type] = findTarget(*manager.omtTree(), arguments);
    int consumed = 0;
    const DtString line = member ? manager.getFedNodeStringRep(member, data, length, consumed)
                                 : manager.getStringRep(type, data, length, consumed);
    const std::unique_ptr<DtStringTree> tree(
        member ? manager.createStringTreeRep(member, data, length, consumed, 0, nullptr)
               : manager.createStringTreeRep(type, data, length, consumed, nullptr, 0, nullptr,
                                             nullptr));
    if (arguments.has("--json"))
        printJson(line, consumed, tree.get());
    else
        std::cout << line << '\n';
    if (consumed == length) return 0;
    std::cerr << "omtHost: " << consumed << " of " << length << " octets were consumed\n";
    return 1;
}

void encode(DtDatatypeManager& manager, const Arguments& arguments)
{
    Octets octets;
    const DtString type = findTarget(*manager.omtTree(), arguments).second;
    manager.getValueFromStringRep(type, arguments.value.front(), octets);
    for (std::size_t i = 0; i < octets.size(); ++i)
        std::printf("%s%02X", i == 0 ? "" : " ", static_cast<unsigned char>(octets[i]));
    std::printf("\n");
}

int run(const Arguments& arguments)
{
    const DtOMTTreePtr tree = readModel(arguments.models, arguments.has("--mim"));
    DtDatatypeManager manager;
    prepare(manager, *tree, arguments);
    if (arguments.command == "decode") return decode(manager, arguments);
    if (arguments.command == "encode")
        encode(manager, arguments);
    else if (arguments.command == "show")
        print(*tree);
    else if (arguments.command == "convert")
        std::cout << DtXMLEvolvedFileWriter(tree.get()).writeIndentedString();
    else
        throw std::runtime_error(theUsage);
    return 0;
}

}  // namespace

int main(int argc, char* argv[])
{
    try
    {
        const int status = run(readArguments({argv + 1, argv + argc}));
        return std::cout.flush() ? status : 1;
    }
    catch (const std::exception& problem)
    {
        std::cerr << "omtHost: " << problem.what() << '\n';
        return 1;
    }
}
