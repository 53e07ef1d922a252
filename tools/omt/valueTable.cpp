// SPDX-License-Identifier: Apache-2.0
#include "valueTable.h"

#include "octetDump.h"
#include "octetForms.h"
#include "plainText.h"
#include "textTable.h"

#include <algorithm>
#include <map>

namespace
{

constexpr std::size_t theMostElements = 10;  // of an array that is shown as a whole
constexpr std::size_t theFirstElements = 8;  // of one that is not
constexpr std::size_t theMostOctets = 16;
constexpr std::size_t theLongestText = 60;

class ValueRows
{
public:
    ValueRows(const omt::Value& value, const std::vector<omt::Overlay>& overlays,
              const TableChoice& choice)
        : myValue(value), myChoice(choice), myTable(columns(choice))
    {
        for (const omt::Overlay& one : overlays) myOverlays.emplace(one.path, &one);
    }

    void add(const omt::Item& item, std::string_view name, std::size_t depth);
    std::string text() const { return myTable.text(); }

private:
    static std::vector<Column> columns(const TableChoice& choice);
    void addPart(const omt::Item& part, std::string_view name, std::size_t depth);
    void addElements(const omt::Item& array, std::size_t depth);
    void addKept(const omt::Item& variant, std::size_t depth);
    void addRow(std::size_t offset, const std::string& octets, std::string_view name,
                std::size_t depth, std::string_view datatype, const std::string& value,
                std::string_view units);
    std::size_t offsetOf(omt::Octets octets) const
    {
        return static_cast<std::size_t>(octets.data() - myValue.octets().data());
    }
    std::string hexadecimal(omt::Octets octets) const;
    std::string octetsOf(const omt::Item& item) const;
    std::string textOf(const omt::Item& item) const;
    std::string valueOf(const omt::Item& item) const;

    const omt::Value& myValue;
    const TableChoice& myChoice;
    TextTable myTable;
    std::map<std::string, const omt::Overlay*> myOverlays;  // by path
    std::string myPath;
};

std::vector<Column> ValueRows::columns(const TableChoice& choice)
{
    std::vector<Column> columns = {exact("Offset"), exact("Name"), whole("Datatype"),
                                   exact("Value"), whole("Units")};
    if (choice.hasOctets) columns.insert(columns.begin() + 1, whole("Octets"));
    return columns;
}

std::string ValueRows::hexadecimal(omt::Octets octets) const
{
    if (myChoice.isWhole || octets.size() <= theMostOctets)
        return hexadecimalText(octets.data(), octets.size());
    return hexadecimalText(octets.data(), theMostOctets) + "... (" + std::to_string(octets.size()) +
           " octets)";
}

/// Octets without the count before them.
std::string ValueRows::octetsOf(const omt::Item& item) const
{
    std::string text;
    item.appendJson(text);
    std::vector<std::uint8_t> octets;
    for (std::size_t at = 1; at + 2 < text.size(); at += 2)
        octets.push_back(static_cast<std::uint8_t>(hexadecimalDigit(text[at]) << 4 |
                                                   hexadecimalDigit(text[at + 1])));
    return hexadecimal(octets);
}

/// In quotes, as JSON has it.
std::string ValueRows::textOf(const omt::Item& item) const
{
    std::string text;
    item.appendJson(text);
    text = visible(text);
    if (myChoice.isWhole || columnsOf(text) <= theLongestText) return text;
    return clipped(text, theLongestText) + "\" (" + std::to_string(item.size()) + " characters)";
}

std::string ValueRows::valueOf(const omt::Item& item) const
{
    std::string text;
    switch (item.kind())
    {
        case omt::ValueKind::text:
            return textOf(item);
        case omt::ValueKind::octets:
            return octetsOf(item);
        case omt::ValueKind::array:
            return std::to_string(item.size()) + (item.size() == 1 ? " element" : " elements");
        case omt::ValueKind::record:
        case omt::ValueKind::variant:
            return "";
        case omt::ValueKind::number:
        case omt::ValueKind::enumerated:
            break;
    }
    item.appendJson(text);
    const bool isObject = text.front() == '{';  // what has no form of its own in JSON
    if (const std::optional<std::string_view> label = item.label())
        return std::string(*label) + (isObject ? " (" + std::to_string(*item.integer()) + ')' : "");
    if (isObject) return "NaN (" + hexadecimal(item.octets()) + ')';
    return text.front() == '"' ? text.substr(1, text.size() - 2) : text;
}

// Goes down as deep as datatypes do, which is little; elements and fields are a loop.
void ValueRows::add(const omt::Item& item, std::string_view name, std::size_t depth)
{
    const bool isLeaf = item.kind() != omt::ValueKind::record &&
                        item.kind() != omt::ValueKind::variant &&
                        item.kind() != omt::ValueKind::array;
    const omt::Type type = item.type();
    std::string value = valueOf(item);
    std::string_view units = type.units();
    if (const auto found = myOverlays.find(myPath); found != myOverlays.end())
    {
        const omt::Overlay& overlay = *found->second;
        value = value.empty() ? overlay.text : value + " (" + overlay.text + ')';
        if (overlay.kind == omt::Overlay::Kind::geodetic) units = "degree, metre";
    }
    addRow(item.offset(), isLeaf && myChoice.hasOctets ? hexadecimal(item.octets()) : "", name,
           depth, type.name(), value, units);
    if (isLeaf) return;
    if (item.kind() == omt::ValueKind::array) return addElements(item, depth + 1);
    item.forEach(
        [&](std::string_view field, const omt::Item& part)
        {
            addPart(part, field, depth + 1);
            return true;
        });
    if (item.kind() == omt::ValueKind::variant) addKept(item, depth + 1);
}

void ValueRows::addPart(const omt::Item& part, std::string_view name, std::size_t depth)
{
    const std::size_t size = myPath.size();
    if (size > 0 && name.front() != '[') myPath += '.';
    myPath += name;
    add(part, name, depth);
    myPath.resize(size);
}

void ValueRows::addElements(const omt::Item& array, std::size_t depth)
{
    const std::size_t count = array.size();
    const std::size_t most =
        myChoice.isWhole || count <= theMostElements ? count : theFirstElements;
    std::size_t index = 0;
    array.forEach(
        [&](std::string_view, const omt::Item& element)
        {
            if (index == most)
            {
                addRow(element.offset(), "", "...", depth, "",
                       std::to_string(count - most) + " more, which --all shows", "");
                return false;
            }
            addPart(element, '[' + std::to_string(index++) + ']', depth);
            return true;
        });
}

/// Octets of an alternative that is not known.
void ValueRows::addKept(const omt::Item& variant, std::size_t depth)
{
    const omt::Octets kept = variant.octets();
    if (variant.size() > 1 || kept.data() == variant[0].octets().data()) return;
    addRow(offsetOf(kept), myChoice.hasOctets ? hexadecimal(kept) : "", "octets", depth, "",
           hexadecimal(kept), "");
}

void ValueRows::addRow(std::size_t offset, const std::string& octets, std::string_view name,
                       std::size_t depth, std::string_view datatype, const std::string& value,
                       std::string_view units)
{
    constexpr std::size_t theOffsetWidth = 6;
    std::string place = std::to_string(offset);
    place.insert(0, theOffsetWidth - std::min(place.size(), theOffsetWidth), ' ');
    std::vector<std::string> cells = {place, std::string(2 * depth, ' ') + oneLine(name),
                                      std::string(datatype), value,
                                      units == "NA" ? "" : std::string(units)};
    if (myChoice.hasOctets) cells.insert(cells.begin() + 1, octets);
    myTable.add(cells);
}

}  // namespace

std::string valueTable(const std::string& name, const omt::Value& value,
                       const std::vector<omt::Overlay>& overlays, const TableChoice& choice)
{
    ValueRows rows(value, overlays, choice);
    if (const omt::Item root = value.root()) rows.add(root, name, 0);
    return rows.text();
}
