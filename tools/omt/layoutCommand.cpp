// SPDX-License-Identifier: Apache-2.0
#include "layoutCommand.h"

#include "datatypeTree.h"
#include "errors.h"
#include "messages.h"
#include "omt/codec/layout.h"
#include "textTable.h"
#include "valueTarget.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <memory>

namespace
{

using Json = nlohmann::ordered_json;
using LayoutRows = std::vector<omt::LayoutRow>;

constexpr std::size_t theNarrowestRemark = 52;  // what most of them need, on a wider page
constexpr std::size_t theMostRows = 100'000;    // after which libomt ends a layout

struct LayoutChoice
{
    TargetChoice target;
    bool asJson = false;
};

bool isNone(const std::string&)
{
    return false;
}

/// Whether the last word is no file, and may have been meant as CLASS.NAME.
bool mayBeMember(const std::vector<std::string>& files)
{
    std::error_code ignored;
    return files.size() > 1 && files.back().find('/') == std::string::npos &&
           !std::filesystem::exists(placeOfModel(files.back()), ignored);
}

void prepare(LayoutChoice& choice)
{
    TargetChoice& target = choice.target;
    SplitWords words = splitWords(target.words, isNone);
    target.model.files = std::move(words.files);
    const bool isNamed =
        !(target.member + target.attribute + target.parameter + target.datatype).empty();
    if (words.others.empty() && !isNamed && mayBeMember(target.model.files))
        throw UsageError(
            '"' + target.model.files.back() +
            "\" is taken for a file; an attribute or parameter is given with --member");
    if (words.others.size() + (isNamed ? 1 : 0) != 1)
        throw UsageError(
            "exactly one of TYPE, --type, --member, --attribute and --parameter is needed");
    if (!isNamed) target.datatype = std::move(words.others.front());
    checkStandardInput(target.model);
}

std::string numberOf(const std::optional<std::size_t>& number)
{
    return number ? std::to_string(*number) : "-";
}

/// "8", "4 to 12", or "4 and more".
std::string sizeOf(const omt::LayoutRow& row)
{
    const std::string least = std::to_string(row.leastSize);
    if (!row.greatestSize) return least + " and more";
    return *row.greatestSize == row.leastSize ? least : least + " to " + numberOf(row.greatestSize);
}

/// "big-endian" for a number of several octets whose representation says so; else empty.
std::string byteOrder(const omt::LayoutRow& row, const omt::Model& model)
{
    const bool isNumber = row.kind == "number" || row.kind == "enumerated";
    if (!isNumber || row.leastSize < 2) return "";
    constexpr int theMostSteps = 8;  // of representations that are datatypes themselves
    std::string name = row.type;
    for (int step = 0; step < theMostSteps && !name.empty(); ++step)
    {
        const omt::Datatype datatype = model.findDatatype(name);
        if (const auto* const basic = datatype.as<omt::BasicData>())
            return basic->endian == "Big"      ? "big-endian"
                   : basic->endian == "Little" ? "little-endian"
                                               : "";
        name = representationOf(datatype);
    }
    return "";
}

LayoutRows rowsOf(const ValueTarget& target)
{
    LayoutRows rows = omt::layout(target.type);
    for (omt::LayoutRow& row : rows)
        if (const std::string order = byteOrder(row, target.model); !order.empty())
            row.remark += (row.remark.empty() ? "" : ", ") + order;
    return rows;
}

std::string table(const LayoutRows& rows, const std::string& name)
{
    TextTable table({
        whole("Offset"),
        whole("Octets"),
        whole("Boundary"),
        whole("Padding"),
        exact("Name"),
        whole("Datatype"),
        {"Remark", Fit::wrap, false, theNarrowestRemark}
    });
    for (const omt::LayoutRow& row : rows)
        table.add({numberOf(row.offset), sizeOf(row), std::to_string(row.boundary),
                   numberOf(row.padding),
                   std::string(2 * row.depth, ' ') + (row.depth == 0 ? name : row.name), row.type,
                   row.remark});
    return table.text();
}

/// The row at `at` with all that is in it; `at` is then the row after these.
Json jsonOf(const LayoutRows& rows, std::size_t& at, const std::string& name)
{
    const omt::LayoutRow& row = rows[at++];
    Json json = {
        {"name", name    },
        {"type", row.type},
        {"kind", row.kind}
    };
    if (row.offset) json["offset"] = *row.offset;
    if (row.padding) json["padding"] = *row.padding;
    json["boundary"] = row.boundary;
    json["leastSize"] = row.leastSize;
    if (row.greatestSize) json["greatestSize"] = *row.greatestSize;
    if (!row.remark.empty()) json["remark"] = row.remark;
    Json parts = Json::array();
    while (at < rows.size() && rows[at].depth > row.depth)
        parts.push_back(jsonOf(rows, at, rows[at].name));
    if (!parts.empty()) json["parts"] = std::move(parts);
    return json;
}

Result show(LayoutChoice& choice)
{
    prepare(choice);
    const std::optional<ValueTarget> target = findTarget(choice.target);
    if (!target) return theFailure;
    const LayoutRows rows = rowsOf(*target);
    if (rows.size() > theMostRows) writeWarning("the layout is longer, and was cut off");
    if (!choice.asJson) return {table(rows, target->name)};
    std::size_t at = 0;
    return {jsonOf(rows, at, target->name).dump(2, ' ', false, Json::error_handler_t::replace) +
            '\n'};
}

}  // namespace

Command addLayoutCommand(CLI::App& app)
{
    CLI::App* const command =
        app.add_subcommand("layout", "Show where the octets of a datatype stand");
    auto choice = std::make_shared<LayoutChoice>();
    addTargetArguments(*command, choice->target,
                       "Files of the model, and after them TYPE, the name of a datatype", true);
    command->add_flag("--json", choice->asJson, "One JSON object, for programs");
    command->footer(
        "Each part has a row below what holds it, alternatives one below the other. Offsets count\n"
        "from the start of what holds the part; padding stands before it. A dash is for what\n"
        "differs from value to value. A word with a dot or a slash, or -, is a file of the model.\n"
        "\n"
        "Examples:\n"
        "  omt layout HarbourBase.xml --mim BerthIdentifier\n"
        "  omt layout HarbourBase.xml HarbourTraffic.xml --mim --member Vessel.Cargo\n"
        "  omt layout HarbourBase.xml --mim GeocentricPosition --json");
    return {command, [choice] { return show(*choice); }};
}
