// SPDX-License-Identifier: Apache-2.0
#include "diffReport.h"

#include "paint.h"
#include "plainText.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace
{

using Json = nlohmann::ordered_json;
using omt::Change;
using omt::Detail;
using omt::Difference;
using omt::Wire;
using omt::WireChange;

bool isShown(const Difference& row, const DiffView& view)
{
    return !view.isOnlyWire || (row.wire && row.wire->wire != Wire::same);
}

// The page
// -----------------------------------------------------------------------------------------

constexpr std::size_t theMostColumns = 200;

/// Headings by the kinds of definitions below them, in the order of the rows; the last for all
/// others.
struct Heading
{
    std::string_view ending;
    std::string_view text;
};
constexpr Heading theHeadings[] = {
    {"object class",      "Object classes"     },
    {"attribute",         "Object classes"     },
    {"interaction class", "Interaction classes"},
    {"parameter",         "Interaction classes"},
    {"datatype",          "Datatypes"          },
    {"record",            "Datatypes"          },
    {"representation",    "Datatypes"          },
    {"",                  "Other tables"       },
};

std::string_view headingOf(const Difference& row)
{
    return std::find_if(std::begin(theHeadings), std::end(theHeadings),
                        [&](const Heading& one)
                        {
                            const std::size_t size = one.ending.size();
                            return row.kind.size() >= size &&
                                   row.kind.compare(row.kind.size() - size, size, one.ending) == 0;
                        })
        ->text;
}

std::string shown(const std::string& text)
{
    return clipped(oneLine(text), theMostColumns);
}

std::string valueText(const std::string& value)
{
    return value.empty() ? "nothing" : '`' + shown(value) + '`';
}

/// "field `X`: dataType `A`, was `B`".
std::string detailText(const Detail& detail)
{
    const std::string part =
        detail.partKind.empty() ? "" : detail.partKind + " `" + shown(detail.part) + '`';
    const std::string values = valueText(detail.after) + ", was " + valueText(detail.before);
    switch (detail.change)
    {
        case Change::added:
            return part + " added" +
                   (detail.after.empty() ? "" : ": `" + shown(detail.after) + '`');
        case Change::removed:
            return part + " removed" +
                   (detail.before.empty() ? "" : ": `" + shown(detail.before) + '`');
        case Change::renamed:
            return part + ", was `" + shown(detail.before) + '`';
        default:
            return (part.empty() ? "" : part + ": ") + detail.property + ' ' + values;
    }
}

std::string wireText(const WireChange& change)
{
    std::string text = change.path.empty() ? "" : '`' + shown(change.path) + "`: ";
    text += shown(change.why);
    switch (change.wire)
    {
        case Wire::same:
            return "the same";
        case Wire::compatible:
            return "the same for what both know: " + text;
        case Wire::unknown:
            return yellow("not known") + ": " + text;
        case Wire::different:
            break;
    }
    const std::string place =
        change.octet ? " from octet " + std::to_string(*change.octet) + " on" : "";
    return red("different" + place) + ": " + text;
}

std::string placeText(const omt::Place& place)
{
    if (place.file.empty()) return "";
    return dim(" (" + visible(place.file) +
               (place.line == 0 ? "" : ':' + std::to_string(place.line)) + ')');
}

std::string rowText(const Difference& row, const DiffView& view)
{
    constexpr std::size_t theMostDetails = 10;
    std::string text = "  " + row.kind + ' ' + bold(shown(row.name));
    if (!row.nameBefore.empty()) text += ", was " + bold(shown(row.nameBefore));
    text += placeText(row.change == Change::removed ? row.before : row.after) + '\n';
    const std::size_t count = view.isOnlyWire ? 0
                              : view.isWhole  ? row.details.size()
                                              : std::min(row.details.size(), theMostDetails);
    for (std::size_t i = 0; i < count; ++i) text += "      " + detailText(row.details[i]) + '\n';
    if (count < row.details.size() && !view.isOnlyWire)
        text += "      and " + std::to_string(row.details.size() - count) + " more (--all)\n";
    if (row.wire) text += "      octets: " + wireText(*row.wire) + '\n';
    return text;
}

/// Whether a member came or went with its class, whose row is one of those before.
bool isOfClass(const Difference& row, const Difference& owner)
{
    const bool isMember = row.kind == "attribute" || row.kind == "parameter";
    return isMember && row.change == owner.change && row.change <= Change::removed &&
           row.name.size() > owner.name.size() && row.name[owner.name.size()] == '.' &&
           row.name.compare(0, owner.name.size(), owner.name) == 0;
}

using Rows = std::vector<const Difference*>;

/// The rows of one heading and change. Members that came or went with their class share a line.
std::string rowsText(const Rows& rows, const DiffView& view)
{
    std::string text;
    for (std::size_t i = 0; i < rows.size();)
    {
        const Difference& row = *rows[i++];
        text += rowText(row, view);
        std::string members;
        for (; i < rows.size() && isOfClass(*rows[i], row); ++i)
            members +=
                (members.empty() ? "" : ", ") + shown(rows[i]->name.substr(row.name.size() + 1));
        if (!members.empty()) text += "      with " + members + '\n';
    }
    return text;
}

std::size_t countOf(const omt::Differences& differences, Change change)
{
    return static_cast<std::size_t>(std::count_if(differences.rows.begin(), differences.rows.end(),
                                                  [change](const Difference& row)
                                                  { return row.change == change; }));
}

constexpr Change theChanges[] = {Change::added, Change::removed, Change::renamed, Change::moved,
                                 Change::changed};
constexpr Wire theWires[] = {Wire::same, Wire::compatible, Wire::unknown, Wire::different};

std::string summaryText(const omt::Differences& differences, const DiffView& view)
{
    std::vector<std::string> counts;
    std::string text;
    if (!view.isOnlyWire)
    {
        for (const Change change : theChanges)
            counts.push_back(std::to_string(countOf(differences, change)) + ' ' +
                             std::string(name(change)));
        text = joined(counts, ", ") + '\n';
        counts.clear();
    }
    for (const Wire wire : theWires)
        counts.push_back(std::to_string(differences.octets[static_cast<std::size_t>(wire)]) + ' ' +
                         std::string(name(wire)));
    return text +
           "octets of attributes, parameters and datatypes in both: " + joined(counts, ", ") + '\n';
}

}  // namespace

std::string diffPage(const omt::Differences& differences, const DiffView& view)
{
    std::vector<std::pair<std::string_view, std::array<Rows, std::size(theChanges)>>> parts;
    for (const Difference& row : differences.rows)
    {
        if (!isShown(row, view)) continue;
        const std::string_view heading = headingOf(row);
        if (parts.empty() || parts.back().first != heading) parts.push_back({heading, {}});
        parts.back().second[static_cast<std::size_t>(row.change)].push_back(&row);
    }
    std::string page;
    for (const auto& [heading, byChange] : parts)
        for (const Change change : theChanges)
        {
            const Rows& rows = byChange[static_cast<std::size_t>(change)];
            if (!rows.empty())
                page += bold(std::string(heading) + ", " + std::string(name(change))) + '\n' +
                        rowsText(rows, view) + '\n';
        }
    return page + summaryText(differences, view);
}

// JSON
// ---------------------------------------------------------------------------------------------

namespace
{

Json placeJson(const omt::Place& place)
{
    if (place.file.empty()) return nullptr;
    Json json = {
        {"file", place.file}
    };
    if (place.line != 0) json["line"] = place.line;
    return json;
}

Json detailJson(const Detail& detail)
{
    Json json = {
        {"change", name(detail.change)}
    };
    const auto add = [&](const char* key, const std::string& text)
    {
        if (!text.empty()) json[key] = text;
    };
    add("partKind", detail.partKind);
    add("part", detail.part);
    add("property", detail.property);
    add("before", detail.before);
    add("after", detail.after);
    return json;
}

Json wireJson(const WireChange& change)
{
    Json json = {
        {"change", name(change.wire)}
    };
    if (change.octet) json["octet"] = *change.octet;
    if (!change.path.empty()) json["path"] = change.path;
    if (!change.why.empty()) json["why"] = change.why;
    return json;
}

Json rowJson(const Difference& row, const DiffView& view)
{
    Json json = {
        {"change", name(row.change)},
        {"kind",   row.kind        },
        {"name",   row.name        }
    };
    if (!row.nameBefore.empty()) json["nameBefore"] = row.nameBefore;
    if (!view.isOnlyWire)
    {
        json["details"] = Json::array();
        for (const Detail& detail : row.details) json["details"].push_back(detailJson(detail));
    }
    if (row.wire) json["octets"] = wireJson(*row.wire);
    json["before"] = placeJson(row.before);
    json["after"] = placeJson(row.after);
    return json;
}

}  // namespace

std::string diffJson(const omt::Differences& differences, const DiffView& view)
{
    Json list = Json::array();
    for (const Difference& row : differences.rows)
        if (isShown(row, view)) list.push_back(rowJson(row, view));
    Json summary;
    for (const Change change : theChanges)
        summary[std::string(name(change))] = countOf(differences, change);
    for (const Wire wire : theWires)
        summary["octets"][std::string(name(wire))] =
            differences.octets[static_cast<std::size_t>(wire)];
    const Json json = {
        {"differences", std::move(list)   },
        {"summary",     std::move(summary)}
    };
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}
