// SPDX-License-Identifier: Apache-2.0
// Any octets as modules of a model, two zero octets between them: read, merged, checked, and shown
// as JSON, each within bounds.
#include "omt/model/modelJson.h"
#include "omt/model/read.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace
{

void require(bool holds, const char* rule)
{
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", rule);
    std::abort();
}

std::vector<omt::Document> documentsIn(std::string_view octets)
{
    constexpr std::string_view theSeparator("\0\0", 2);
    constexpr std::size_t theMost = 4;
    std::vector<omt::Document> documents;
    while (documents.size() + 1 < theMost)
    {
        const std::size_t end = octets.find(theSeparator);
        if (end == std::string_view::npos) break;
        documents.push_back({"module " + std::to_string(documents.size()), octets.substr(0, end)});
        octets.remove_prefix(end + theSeparator.size());
    }
    documents.push_back({"module " + std::to_string(documents.size()), octets});
    return documents;
}

template <typename Class>
void checkClasses(const omt::Model& model, const std::vector<Class>& table)
{
    std::size_t children = 0;
    std::size_t roots = 0;
    for (std::size_t i = 0; i < table.size(); ++i)
    {
        const Class& node = table[i];
        if (node.parent == omt::ClassDefinition::theNone)
            ++roots;
        else
            require(node.parent < i, "a class stands after its parent");
        for (const std::uint32_t child : node.children)
        {
            require(child < table.size() && table[child].parent == i, "children know their parent");
            ++children;
        }
        require(node.module < model.modules().size(), "a class is of a module that is there");
    }
    require(children + roots == table.size(), "every class is a root or a child");
}

void checkFindings(const omt::Findings& findings, std::string_view octets)
{
    const auto lines =
        static_cast<std::uint32_t>(std::count(octets.begin(), octets.end(), '\n')) + 1;
    // Each finding needs some octets that it speaks of, and quotes a few names.
    require(findings.size() <= 16 + 4 * octets.size(), "findings grow with the input");
    for (const omt::Finding& finding : findings)
    {
        require(!finding.name.empty() && !finding.text.empty(), "findings say what they are");
        if (finding.place.file.substr(0, 6) == "module")
            require(finding.place.line <= lines, "lines are those of the document");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view octets(reinterpret_cast<const char*>(data), size);
    const omt::Reading reading = omt::readDocuments(documentsIn(octets));
    const omt::Model& model = reading.model;
    require(model.octetsHeld() <= 65536 + 400 * size, "a model grows with its documents");
    checkClasses(model, model.objectClasses());
    checkClasses(model, model.interactionClasses());
    checkFindings(reading.findings, octets);

    const std::string json = omt::modelJson(model);
    // Full names of classes have a bound each, and everything else stands once.
    const std::size_t classes = model.objectClasses().size() + model.interactionClasses().size();
    require(json.size() <= 65536 + 400 * size + 2100 * classes, "JSON grows with the model");
    require(nlohmann::json::accept(json), "JSON is JSON");
    return 0;
}
