// SPDX-License-Identifier: Apache-2.0
// Any octets as two models, each of modules with two zero octets between them, and "--" with a line
// end before and after it between the models: both read, checked, and compared in either direction.
#include "omt/check/check.h"
#include "omt/check/diff.h"

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

std::vector<omt::Model> modulesIn(std::string_view octets)
{
    constexpr std::string_view theSeparator("\0\0", 2);
    constexpr std::size_t theMost = 3;
    std::vector<omt::Document> documents;
    while (documents.size() < theMost)
    {
        const std::size_t end = octets.find(theSeparator);
        documents.push_back({"module " + std::to_string(documents.size()), octets.substr(0, end)});
        if (end == std::string_view::npos) break;
        octets.remove_prefix(end + theSeparator.size());
    }
    omt::Findings ignored;
    return omt::readModules(documents, ignored);
}

omt::Model checkedModel(std::string_view octets)
{
    const std::vector<omt::Model> modules = modulesIn(octets);
    omt::CheckOptions options;
    options.enable = {"lint"};
    for (const omt::Finding& finding : omt::check(modules, options))
        require(!finding.name.empty() && !finding.text.empty(), "findings say what they are");
    omt::Findings ignored;
    return omt::merge(modules, ignored);
}

void compare(const omt::Model& before, const omt::Model& after, std::size_t size)
{
    const omt::Differences found = omt::diff(before, after);
    // Every definition, and every part of one, takes some octets in one of the models.
    require(found.rows.size() <= 64 + size, "differences grow with the models");
    for (const omt::Difference& row : found.rows)
    {
        require(!row.kind.empty() && row.name.size() <= 1000, "differences name what they are of");
        const bool isWhole = row.change <= omt::Change::removed;
        require(isWhole == !(row.before.file != "" && row.after.file != ""),
                "what is in both models has two places, all else one");
        require(isWhole || !row.details.empty() || !row.nameBefore.empty() ||
                    (row.wire && row.wire->wire != omt::Wire::same),
                "a difference says what differs");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view octets(reinterpret_cast<const char*>(data), size);
    constexpr std::string_view theSeparator = "\n--\n";
    const std::size_t end = octets.find(theSeparator);
    const omt::Model before = checkedModel(octets.substr(0, end));
    require(omt::diff(before, before).isEmpty(), "a model does not differ from itself");
    if (end == std::string_view::npos) return 0;
    const omt::Model after = checkedModel(octets.substr(end + theSeparator.size()));
    compare(before, after, size);
    compare(after, before, size);
    return 0;
}
