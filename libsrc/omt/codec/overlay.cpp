// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/overlay.h"

#include "omt/base/jsonWriter.h"
#include "omt/codec/valueParts.h"

#include <GeographicLib/Geocentric.hpp>

#include <charconv>
#include <cmath>

namespace omt
{

namespace
{

/// A number with so many digits after the point; no sign before zeros.
std::string fixedText(double number, int digits)
{
    char text[64];
    const auto end =
        std::to_chars(text, text + sizeof text, number, std::chars_format::fixed, digits).ptr;
    std::string_view result(text, static_cast<std::size_t>(end - text));
    if (result.front() == '-' && result.find_first_not_of("-0.") == std::string_view::npos)
        result.remove_prefix(1);
    return std::string(result);
}

}  // namespace

/// Walks those parts of a value that hold something with a role.
class OverlayFinder
{
public:
    OverlayFinder(const Value& value, const EntityTable* table, std::vector<Overlay>& found)
        : myParts(*value.myParts), mySteps(myParts.steps()), myTable(table), myFound(found)
    {
    }

    static void run(const Value& value, const EntityTable* table, std::vector<Overlay>& found)
    {
        if (!value.myParts || !value.myParts->plan || value.myParts->plan->meanings.empty()) return;
        OverlayFinder finder(value, table, found);
        const Spot root = value.myParts->root();
        if (root.isThere()) finder.piece(root);
    }

private:
    void piece(const Spot& spot)
    {
        const Plan& plan = mySteps.plan;
        const Meaning& meaning = plan.meanings[spot.node];
        if (!meaning.isInside) return;
        const Node& node = plan.nodes[spot.node];
        if (meaning.role != Role::none && isWhole(spot)) add(meaning, spot);
        const std::size_t size = myPath.size();
        const auto field = [&](const Part& part, const Spot& one)
        {
            if (!myPath.empty()) myPath += '.';
            myPath += plan.text(part.name);
            piece(one);
            myPath.resize(size);
            return true;
        };
        if (node.form == Form::record) mySteps.forEachField(spot, field);
        if (node.form == Form::variant)
        {
            field(plan.parts[node.first], {node.element, spot.offset});
            const Part* part = nullptr;
            const Spot alternative = mySteps.alternative(spot, part);
            if (alternative.isThere()) field(*part, alternative);
        }
        if (node.form != Form::array || !plan.meanings[node.element].isInside) return;
        std::uint32_t i = 0;
        mySteps.forEachElement(spot,
                               [&](const Spot& one)
                               {
                                   myPath += '[' + std::to_string(i++) + ']';
                                   piece(one);
                                   myPath.resize(size);
                               });
    }

    bool isWhole(const Spot& spot) const
    {
        const std::size_t end = spot.offset + std::size_t{mySteps.plan.nodes[spot.node].size};
        return end <= myParts.index.octets;
    }

    const std::uint8_t* field(const Spot& record, std::uint32_t i, const Node*& node) const
    {
        const Part& part = mySteps.plan.parts[mySteps.plan.nodes[record.node].first + i];
        node = &mySteps.plan.nodes[part.node];
        return myParts.octets.data() + record.offset + part.offset;
    }

    void add(const Meaning& meaning, const Spot& spot)
    {
        Overlay overlay;
        overlay.path = myPath;
        overlay.offset = spot.offset;
        const bool isFound = meaning.role == Role::entityType ? nameType(spot, overlay)
                             : meaning.role == Role::position ? place(spot, overlay)
                                                              : label(spot, meaning, overlay);
        if (isFound) myFound.push_back(std::move(overlay));
    }

    bool nameType(const Spot& spot, Overlay& overlay) const
    {
        if (!myTable) return false;
        EntityCodes codes;
        for (std::uint32_t i = 0; i < EntityCodes::theLevels; ++i)
        {
            const Node* node = nullptr;
            const std::uint8_t* const octets = field(spot, i, node);
            // Codes have no sign, whatever the integers of the model have.
            const std::uint64_t all = node->size == 1 ? 0xFF : 0xFFFF;
            codes[i] = static_cast<std::int32_t>(loadBits(*node, octets) & all);
        }
        const EntityTable::Row* const row = myTable->find(codes);
        if (!row) return false;
        overlay.kind = Overlay::Kind::entityType;
        for (std::size_t i = 0; i < EntityCodes::theLevels; ++i)
        {
            const bool isNamed = i < EntityTable::theNamedLevels && !row->names[i].empty() &&
                                 row->codes[i] != EntityCodes::theOpen;
            std::string text = isNamed ? std::string(row->names[i]) : std::to_string(codes[i]);
            overlay.text += (i > 0 ? ":" : "") + text;
            overlay.parts.push_back({std::string(entityLevelName(i)), std::move(text)});
        }
        return true;
    }

    bool place(const Spot& spot, Overlay& overlay) const
    {
        constexpr double theFurthest = 1e12;
        double axes[3];
        for (std::uint32_t i = 0; i < 3; ++i)
        {
            const Node* node = nullptr;
            const std::uint8_t* const octets = field(spot, i, node);
            axes[i] = loadNumber(*node, octets);
            // A NaN is not smaller.
            if (!(std::abs(axes[i]) < theFurthest)) return false;
        }
        double latitude = 0;
        double longitude = 0;
        double altitude = 0;
        GeographicLib::Geocentric::WGS84().Reverse(axes[0], axes[1], axes[2], latitude, longitude,
                                                   altitude);
        overlay.kind = Overlay::Kind::geodetic;
        overlay.parts = {
            {"latitude",  fixedText(latitude,  9)},
            {"longitude", fixedText(longitude, 9)},
            {"altitude",  fixedText(altitude,  2)}
        };
        for (const Overlay::Part& part : overlay.parts)
            overlay.text += (overlay.text.empty() ? "" : " ") + part.text;
        return true;
    }

    bool label(const Spot& spot, const Meaning& meaning, Overlay& overlay) const
    {
        const Plan& plan = mySteps.plan;
        const std::int64_t number =
            loadInteger(plan.nodes[spot.node], myParts.octets.data() + spot.offset);
        const Enumeration& table = plan.enumerations[meaning.table];
        const std::uint32_t entry = Plan::findEntry(table, number);
        if (entry == theNone) return false;
        overlay.kind = Overlay::Kind::label;
        overlay.text = plan.text(table.entries[entry].name);
        return true;
    }

    const Value::Parts& myParts;
    const Steps mySteps;
    const EntityTable* myTable;
    std::vector<Overlay>& myFound;
    std::string myPath;
};

std::vector<Overlay> overlays(const Value& value, const EntityTable* table)
{
    std::vector<Overlay> found;
    OverlayFinder::run(value, table, found);
    return found;
}

void appendJson(std::string& text, const std::vector<Overlay>& overlays)
{
    JsonWriter out(text);
    out.beginArray();
    for (const Overlay& one : overlays)
    {
        out.beginObject();
        out.property("path", one.path);
        if (one.kind == Overlay::Kind::entityType) out.property("entityType", one.text);
        if (one.kind == Overlay::Kind::label) out.property("label", one.text);
        if (one.kind == Overlay::Kind::geodetic)
        {
            out.key("geodetic");
            out.beginObject();
            for (const Overlay::Part& part : one.parts)
            {
                out.key(part.name);
                out.raw(part.text);
            }
            out.endObject();
        }
        out.endObject();
    }
    out.endArray();
}

}  // namespace omt
