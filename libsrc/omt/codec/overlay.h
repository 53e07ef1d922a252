// SPDX-License-Identifier: Apache-2.0
// overlays() derives from a value what its hints promise: names of entity types, geodetic
// positions, names of numbers.
#pragma once

#include "omt/codec/entityTable.h"
#include "omt/codec/value.h"

#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// What stands beside one piece of a value, and never in its place.
struct Overlay
{
    enum class Kind
    {
        /// Of a record that is an entity type: parts "Kind" to "Extra", each a name or, where the
        /// table has none, the number.
        entityType,
        /// Of a record that is a geocentric position: parts "latitude" and "longitude" in degrees,
        /// north and east positive, with nine digits after the point, and "altitude" in metres
        /// above the ellipsoid of WGS 84 with two.
        geodetic,
        /// Of a number: its name in a table of hints.
        label
    };
    struct Part
    {
        std::string name;
        std::string text;
    };

    Kind kind = Kind::label;
    /// Of the piece, as faults have it; empty for the value as a whole.
    std::string path;
    /// Where the piece begins, in octets from the start of the value.
    std::size_t offset = 0;
    /// One line: the texts of the parts, or the name.
    std::string text;
    std::vector<Part> parts;
};

/// In the order of the octets. Entity types need a table, and a row that matches; positions that
/// are not finite, or further away than 10^12 metres, have no overlay. Takes time by the size of
/// those parts of the value that hints concern.
OMT_EXPORT std::vector<Overlay> overlays(const Value& value, const EntityTable* table = nullptr);

/// Appends overlays as a JSON array; docs/values-json.md has its form.
OMT_EXPORT void appendJson(std::string& text, const std::vector<Overlay>& overlays);

}  // namespace omt
