// SPDX-License-Identifier: Apache-2.0
// Hints say what a model does not: which octets are text, which records are entity types or
// geocentric positions, which numbers have names in a table.
#pragma once

#include "omt/base/finding.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace omt
{

/// What is said of one datatype, or of one field.
struct Hint
{
    enum class What : std::uint8_t
    {
        /// An array of octets that is text up to the first zero octet.
        text,
        /// A record of seven integers: kind, domain, country, category, subcategory, specific,
        /// extra.
        entityType,
        /// A record of three floating point numbers: metres from the centre of the earth along the
        /// axes of WGS 84.
        position,
        /// An integer whose numbers have names in a table.
        table
    };
    What what = What::text;
    /// "DATATYPE", or "RECORD.FIELD" for a field of a fixed record or of a complex datatype.
    std::string name;
    /// For `table`: the name of one of Hints::tables.
    std::string table;
    /// Of the file that it stands in, from 1; 0 for one that was made by calls.
    std::uint32_t line = 0;
};

/// Names of numbers that no enumerated datatype of the model has.
struct NumberTable
{
    std::string name;
    std::vector<std::pair<std::int64_t, std::string>> rows;
};

/// A list of hints. Of two for the same datatype or field the later one counts.
struct Hints
{
    /// What findings call it.
    std::string file;
    std::vector<Hint> hints;
    std::vector<NumberTable> tables;
};

/// What came of reading hints. With an error among the findings there are no hints.
struct HintsReading
{
    Hints hints;
    Findings findings;
};

/// Reads hints in JSON; docs/hints.md has their form. Never throws for what the text holds.
OMT_EXPORT HintsReading readHints(std::string_view json, const std::string& file);
/// The same from a file, "-" being standard input.
OMT_EXPORT HintsReading readHintsFile(const std::string& file);

/// The hints that are built in, in JSON: those for the RPR FOM.
OMT_EXPORT std::string_view builtInHints();

}  // namespace omt
