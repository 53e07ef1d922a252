// SPDX-License-Identifier: Apache-2.0
// UpdateDecoder turns the rows of a recording into rows with their values.
#pragma once

#include "omt/codec/codec.h"
#include "omt/codec/entityTable.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace omt
{

/// What of a recording is wanted, and how.
struct UpdateOptions
{
    /// "CLASS.MEMBER" as Codec::member() takes it: rows of other members are left out.
    std::string member;
    /// CSV with a column for each number, name and text of the member, instead of JSON lines. Takes
    /// a member.
    bool asCsv = false;
    /// Names the entity types of values by this table.
    std::optional<EntityTable> entities;
    /// Gives latitude, longitude and altitude of geocentric positions.
    bool withGeodetics = false;
    JsonOptions json;
};

/// How many rows were what.
struct OMT_EXPORT UpdateCounts
{
    std::uint64_t rows = 0;
    /// Rows that are in the result.
    std::uint64_t written = 0;
    /// Those with a fault, of the row or of its octets.
    std::uint64_t faults = 0;
    /// Those with notes.
    std::uint64_t noted = 0;

    UpdateCounts& operator+=(const UpdateCounts& other);
};

/// Decodes rows of a recording, each on its own: one row comes out for each one that goes in, in
/// order, and a bad one has a fault. docs/recordings.md has both forms.
///
/// A copy decodes the same recording on another thread; what is kept between rows is memory only.
class OMT_EXPORT UpdateDecoder
{
public:
    /// Throws UnknownName for a member that the model has not, std::invalid_argument for CSV
    /// without a member or of one that comes to more than 10,000 columns.
    explicit UpdateDecoder(const Codec& codec, UpdateOptions options = {});
    UpdateDecoder(const UpdateDecoder& other);
    UpdateDecoder& operator=(const UpdateDecoder& other) = delete;
    ~UpdateDecoder();

    /// Reads the form from the beginning of a recording, which has to hold its first line whole;
    /// removes the header from it, and appends that of the result where it has one. Gives why it is
    /// no recording. To be called once, before copies are made.
    std::optional<std::string> begin(std::string_view& text, std::string& result);

    /// Decodes whole lines and appends a line for each.
    void decode(std::string_view rows, std::string& result);

    /// Of all calls of this copy.
    const UpdateCounts& counts() const;

private:
    struct Parts;
    std::unique_ptr<Parts> myParts;
};

}  // namespace omt
