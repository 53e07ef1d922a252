// SPDX-License-Identifier: Apache-2.0
#include "findingReport.h"

#include "engineInput.h"
#include "messages.h"
#include "paint.h"
#include "plainText.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace
{

using Json = nlohmann::ordered_json;
using omt::Finding;
using omt::Severity;

std::string dumped(const Json& json)
{
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string counted(std::size_t count, const std::string& word)
{
    return std::to_string(count) + ' ' + word + (count == 1 ? "" : "s");
}

std::string severityText(Severity severity)
{
    const std::string_view word = name(severity);
    return severity == Severity::error     ? red(word)
           : severity == Severity::warning ? yellow(word)
                                           : std::string(word);
}

Json placeJson(const omt::Place& place)
{
    Json json = {
        {"file", place.file}
    };
    if (place.line != 0) json["line"] = place.line;
    return json;
}

/// A name of a file as part of a URI.
std::string uri(const std::string& file)
{
    constexpr std::string_view theSafe = "-._~/:@!$&'()*+,;=";
    std::string text;
    for (const char c : file)
    {
        const bool isAlphanumeric =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        if (isAlphanumeric || theSafe.find(c) != std::string_view::npos)
        {
            text += c;
            continue;
        }
        const auto octet = static_cast<unsigned char>(c);
        text += '%';
        text += "0123456789ABCDEF"[octet >> 4U];
        text += "0123456789ABCDEF"[octet & 0xFU];
    }
    return text;
}

Json sarifLocation(const omt::Place& place)
{
    Json physical;
    physical["artifactLocation"] = {
        {"uri", uri(place.file)}
    };
    if (place.line != 0)
        physical["region"] = {
            {"startLine", place.line}
        };
    return {
        {"physicalLocation", physical}
    };
}

/// What escapes the marks of a workflow command.
std::string forCommand(std::string_view text, std::string_view marks)
{
    std::string escaped;
    for (const char c : text)
    {
        if (c != '%' && c != '\r' && c != '\n' && marks.find(c) == std::string_view::npos)
        {
            escaped += c;
            continue;
        }
        escaped += '%';
        escaped += "0123456789ABCDEF"[static_cast<unsigned char>(c) >> 4U];
        escaped += "0123456789ABCDEF"[static_cast<unsigned char>(c) & 0xFU];
    }
    return escaped;
}

std::size_t indexOf(const std::string& rule)
{
    const auto& rules = omt::rules();
    return static_cast<std::size_t>(std::find_if(rules.begin(), rules.end(),
                                                 [&](const omt::Rule& one)
                                                 { return one.name == rule; }) -
                                    rules.begin());
}

}  // namespace

std::size_t FindingReport::count(Severity severity) const
{
    return static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(),
                                                  [&](const Finding& finding)
                                                  { return finding.severity == severity; }));
}

void writeFindingLines(const FindingReport& report)
{
    const bool isQuiet = messageLevel() == MessageLevel::errors;
    FindingLimit limit;
    for (const Finding& finding : report.findings)
    {
        if ((isQuiet && finding.severity != Severity::error) || !limit.takes(finding)) continue;
        std::ostringstream place;
        place << finding.place;
        const std::string line =
            paintedForErrors((place.str().empty() ? "" : visible(place.str()) + ": ") +
                             severityText(finding.severity) + ": " + visible(finding.text) +
                             dim(" [" + visible(finding.name) + "]")) +
            '\n';
        std::fwrite(line.data(), 1, line.size(), stderr);
    }
    for (const std::string& line : limit.rest()) writeLine(line);
}

std::string summaryOf(const FindingReport& report)
{
    std::string text = counted(report.count(Severity::error), "error") + ", " +
                       counted(report.count(Severity::warning), "warning") + " and " +
                       counted(report.count(Severity::note), "note") + " in " +
                       counted(report.files, "file");
    if (report.known != 0)
        text += "; " + counted(report.known, "known one") + (report.known == 1 ? " is" : " are") +
                " not shown";
    return text + '\n';
}

std::string findingJson(const FindingReport& report)
{
    Json json;
    json["findings"] = Json::array();
    for (const Finding& finding : report.findings)
    {
        Json one = {
            {"severity", name(finding.severity)},
            {"rule",     finding.name          },
            {"text",     finding.text          }
        };
        one.update(placeJson(finding.place));
        if (finding.other) one["other"] = placeJson(*finding.other);
        json["findings"].push_back(std::move(one));
    }
    json["summary"] = {
        {"errors",   report.count(Severity::error)  },
        {"warnings", report.count(Severity::warning)},
        {"notes",    report.count(Severity::note)   },
        {"files",    report.files                   },
        {"known",    report.known                   }
    };
    return dumped(json);
}

std::string findingSarif(const FindingReport& report)
{
    Json rules = Json::array();
    for (const omt::Rule& rule : omt::rules())
        rules.push_back({
            {"id",                   rule.name                            },
            {"shortDescription",     {{"text", rule.sentence}}            },
            {"defaultConfiguration", {{"level", name(rule.severity)}}     },
            {"properties",           {{"tags", Json::array({rule.group})}}},
        });
    Json results = Json::array();
    for (const Finding& finding : report.findings)
    {
        Json result = {
            {"ruleId",  finding.name            },
            {"level",   name(finding.severity)  },
            {"message", {{"text", finding.text}}}
        };
        if (const std::size_t index = indexOf(finding.name); index < rules.size())
            result["ruleIndex"] = index;
        if (!finding.place.file.empty())
            result["locations"] = Json::array({sarifLocation(finding.place)});
        if (finding.other && !finding.other->file.empty())
            result["relatedLocations"] = Json::array({sarifLocation(*finding.other)});
        results.push_back(std::move(result));
    }
    Json driver = {
        {"name",    "omt"      },
        {"version", OMT_VERSION},
        {"rules",   rules      }
    };
    Json run;
    run["tool"]["driver"] = std::move(driver);
    run["columnKind"] = "unicodeCodePoints";
    run["results"] = std::move(results);
    Json json;
    json["$schema"] = "https://json.schemastore.org/sarif-2.1.0.json";
    json["version"] = "2.1.0";
    json["runs"] = Json::array({std::move(run)});
    return dumped(json);
}

std::string findingAnnotations(const FindingReport& report)
{
    std::string text;
    for (const Finding& finding : report.findings)
    {
        text += finding.severity == Severity::note ? "::notice " : "::";
        if (finding.severity != Severity::note) text += std::string(name(finding.severity)) + ' ';
        if (!finding.place.file.empty())
            text += "file=" + forCommand(finding.place.file, ":,") + ',';
        if (finding.place.line != 0) text += "line=" + std::to_string(finding.place.line) + ',';
        text += "title=" + finding.name + "::" + forCommand(finding.text, "") + '\n';
    }
    return text;
}

std::string ruleTable(bool asJson)
{
    if (asJson)
    {
        Json json = Json::array();
        for (const omt::Rule& rule : omt::rules())
            json.push_back({
                {"name",     rule.name          },
                {"severity", name(rule.severity)},
                {"group",    rule.group         },
                {"sentence", rule.sentence      }
            });
        return dumped(json);
    }
    std::size_t widest = 0;
    for (const omt::Rule& rule : omt::rules()) widest = std::max(widest, rule.name.size());
    std::string text;
    std::string_view group;
    for (const omt::Rule& rule : omt::rules())
    {
        if (rule.group != group)
            text += (group.empty() ? "" : "\n") + bold(rule.group) +
                    (rule.group == "lint" ? " (off unless enabled)" : "") + '\n';
        group = rule.group;
        std::string line = "  " + std::string(rule.name);
        line.resize(widest + 4, ' ');
        line += name(rule.severity);
        line.resize(widest + 13, ' ');
        text += line + std::string(rule.sentence) + '\n';
    }
    return painted(text);
}
