// SPDX-License-Identifier: Apache-2.0
#include "omt/recording/flatColumns.h"

#include <charconv>

namespace omt
{

std::optional<FlatColumns> FlatColumns::of(const Type& type)
{
    FlatColumns columns;
    if (!columns.add(type, "", "")) return std::nullopt;
    return columns;
}

// Nests as deep as a datatype without arrays in between, which the codec bounds.
bool FlatColumns::add(const Type& type, const std::string& path, std::string_view name)
{
    const std::size_t at = myNodes.size();
    const std::size_t cells = myNames.size();
    const bool hasParts = type.kind() == ValueKind::record || type.kind() == ValueKind::variant;
    if (at >= 2 * theMost || cells >= theMost) return false;
    myNodes.push_back({type.kind(), 0, 0, 1, std::string(name)});
    if (!hasParts) myNames.push_back(path.empty() ? "value" : path);
    for (std::size_t i = 0; hasParts && i < type.partCount(); ++i)
    {
        const std::string part(type.partName(i));
        if (!add(type.partType(i), path.empty() ? part : path + '.' + part, part)) return false;
        ++myNodes[at].parts;
    }
    myNodes[at].cells = static_cast<std::uint32_t>(myNames.size() - cells);
    myNodes[at].nodes = static_cast<std::uint32_t>(myNodes.size() - at);
    return true;
}

void FlatColumns::append(const Item& root, char delimiter, std::string& out) const
{
    append(0, root, delimiter, out);
}

namespace
{

/// Without the quotes of JSON where it is a text.
void appendLeaf(const Item& item, char delimiter, std::string& out)
{
    if (const auto label = item.label()) return appendCell(*label, delimiter, out);
    if (const auto text = item.text()) return appendCell(*text, delimiter, out);
    std::string json;
    item.appendJson(json);
    const bool isText = item.kind() != ValueKind::array && json.size() > 1 && json.front() == '"';
    appendCell(isText ? std::string_view(json).substr(1, json.size() - 2) : json, delimiter, out);
}

}  // namespace

void FlatColumns::append(std::size_t node, const Item& item, char delimiter, std::string& out) const
{
    const Node& one = myNodes[node];
    if (!item)
    {
        out.append(one.cells, delimiter);
        return;
    }
    if (one.kind != ValueKind::record && one.kind != ValueKind::variant)
    {
        out += delimiter;
        return appendLeaf(item, delimiter, out);
    }
    // What is there of a record or variant stands in the order of its parts.
    std::size_t there = 0;
    std::size_t at = node + 1;
    for (std::uint32_t i = 0; i < one.parts; ++i, at += myNodes[at].nodes)
    {
        const bool isThere = there < item.size() && item.name(there) == myNodes[at].name;
        append(at, isThere ? item[there] : Item(), delimiter, out);
        there += isThere;
    }
}

void appendCell(std::string_view text, char delimiter, std::string& out)
{
    const char special[] = {delimiter, '"', '\r', '\n'};
    if (text.find_first_of({special, sizeof special}) == std::string_view::npos)
    {
        out += text;
        return;
    }
    out += '"';
    for (const char c : text)
    {
        if (c == '"') out += '"';
        out += c == '\n' || c == '\r' ? ' ' : c;  // a row is a line
    }
    out += '"';
}

}  // namespace omt
