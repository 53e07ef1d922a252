// SPDX-License-Identifier: Apache-2.0
// Finding says what is wrong or noteworthy in a document, and where.
#pragma once

#include "omt/base/export.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

enum class Severity
{
    note,
    warning,
    error
};

/// "note", "warning" or "error".
OMT_EXPORT std::string_view name(Severity severity);

/// A line of a document.
struct Place
{
    /// The name that the document was read by, "-" for standard input; empty for a model that was
    /// made by calls.
    std::string file;
    /// From 1; 0 where the document as a whole is meant.
    std::uint32_t line = 0;
    /// From 1, in characters; 0 where only the line is known.
    std::uint32_t column = 0;
};

/// One thing that was found, as a value: nothing is printed, thrown or kept elsewhere.
struct Finding
{
    Severity severity = Severity::error;
    /// Which kind of finding, in words joined by dashes, such as "conflict" or "unknown-datatype".
    std::string name;
    /// One sentence without the place.
    std::string text;
    Place place;
    /// The second place of a conflict.
    std::optional<Place> other = std::nullopt;
    /// The name of the definition that it is about, as its document has it, where compiling
    /// datatypes found it; else empty.
    std::string subject = {};
};

/// Writes `FILE:LINE:COLUMN: severity: text [name]`, leaving out a line or column that is not
/// known, without an end of line.
OMT_EXPORT std::ostream& operator<<(std::ostream& out, const Place& place);
OMT_EXPORT std::ostream& operator<<(std::ostream& out, const Finding& finding);

using Findings = std::vector<Finding>;

}  // namespace omt
