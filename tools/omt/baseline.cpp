// SPDX-License-Identifier: Apache-2.0
#include "baseline.h"

#include "errors.h"
#include "inputFile.h"
#include "knownFaults.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <tuple>

namespace
{

using nlohmann::json;

/// The name of a file without its folder, so that a baseline holds wherever it lies.
std::string plainFile(const std::string& name)
{
    return std::filesystem::path(name).filename().string();
}

/// A text without the lines of places in it: "RPR-Base.xml:41" is "RPR-Base.xml".
std::string withoutLines(std::string_view text)
{
    std::string rest;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        std::size_t end = i + 1;
        while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
        if (text[i] == ':' && end > i + 1 && i > 0 && text[i - 1] != ' ')
            i = end - 1;
        else
            rest += text[i];
    }
    return rest;
}

/// A text that names files, without their folders.
std::string withoutFolders(std::string_view text)
{
    std::string rest;
    for (const char c : text)
        if (c != '/')
            rest += c;
        else
            rest.erase(rest.find_last_of(" (`") + 1);
    return rest;
}

/// What a finding is known by: file, rule, text.
using Known = std::tuple<std::string, std::string, std::string>;

Known knownBy(const omt::Finding& finding)
{
    std::string text = finding.text;
    if (finding.other)
        if (const std::size_t at = text.find(finding.other->file); at != std::string::npos)
            text.replace(at, finding.other->file.size(), plainFile(finding.other->file));
    if (finding.place.file.empty()) text = withoutFolders(text);
    return {plainFile(finding.place.file), finding.name, withoutLines(text)};
}

template <typename IsKnown>
std::size_t remove(omt::Findings& findings, const IsKnown& isKnown)
{
    const std::size_t before = findings.size();
    findings.erase(std::remove_if(findings.begin(), findings.end(), isKnown), findings.end());
    return before - findings.size();
}

}  // namespace

std::size_t removeShipped(const CheckedSet& set, omt::Findings& findings)
{
    const json shipped =
        json::parse(std::string_view(reinterpret_cast<const char*>(omtKnownFaults),
                                     static_cast<std::size_t>(omtKnownFaults_len)));
    std::set<std::tuple<std::string, std::string, std::uint32_t>> known;
    for (const CheckedFile& file : set.files)
    {
        const auto entry = shipped["files"].find(file.hash);
        if (entry == shipped["files"].end()) continue;
        for (const auto& rule : (*entry)["known"].items())
            for (const json& line : rule.value())
                known.emplace(file.name, rule.key(), line.get<std::uint32_t>());
    }
    return remove(
        findings,
        [&](const omt::Finding& finding) {
            return known.count({finding.place.file, finding.name, finding.place.line}) != 0;
        });
}

std::size_t removeListed(const std::string& file, omt::Findings& findings)
{
    const json list = json::parse(contentOf(file), nullptr, false);
    const auto isText = [](const json& one, const char* key)
    { return one.is_object() && one.contains(key) && one[key].is_string(); };
    if (!list.is_object() || !list.contains("findings") || !list["findings"].is_array())
        throw InputError(file + ": is no baseline, which has `findings`");
    std::map<Known, std::size_t> known;
    for (const json& one : list["findings"])
    {
        if (!isText(one, "file") || !isText(one, "rule") || !isText(one, "text"))
            throw InputError(file + ": each of `findings` needs `file`, `rule` and `text`");
        ++known[{one["file"].get<std::string>(), one["rule"].get<std::string>(),
                 one["text"].get<std::string>()}];
    }
    return remove(findings,
                  [&](const omt::Finding& finding)
                  {
                      const auto found = known.find(knownBy(finding));
                      if (found == known.end() || found->second == 0) return false;
                      --found->second;
                      return true;
                  });
}

std::string baselineOf(const omt::Findings& findings)
{
    std::string text = "{\"findings\": [";
    const char* between = "\n";
    for (const omt::Finding& finding : findings)
    {
        const auto [file, rule, what] = knownBy(finding);
        const nlohmann::ordered_json one = {
            {"file", file},
            {"rule", rule},
            {"text", what}
        };
        text += between + one.dump(-1, ' ', false, json::error_handler_t::replace);
        between = ",\n";
    }
    return text + "\n]}\n";
}
