// SPDX-License-Identifier: Apache-2.0
// JsonLeaves writes the numbers and texts of values in JSON.
#pragma once

#include "omt/codec/index.h"
#include "omt/codec/jsonRoom.h"
#include "omt/codec/value.h"

#include <charconv>

namespace omt
{

/// Every operation writes to where there is room for the most that it may write, with
/// JsonRoom::theSlack after it, and gives the end.
class JsonLeaves
{
public:
    /// The most octets for a number without a name, and for one character.
    static constexpr std::size_t theLongestNumber = 32;
    static constexpr std::size_t theLongestUnit = 6;
    /// Those for a number with a name, besides the name.
    static constexpr std::size_t theLongestLabel = 64;
    static constexpr std::size_t theLongestFrame = 32;

    /// The most octets of an array that is shown as a text.
    static constexpr std::size_t longestText(std::size_t count)
    {
        return count * theLongestUnit + theLongestFrame;
    }

    JsonLeaves(const Plan& plan, const JsonOptions& options) : myPlan(plan), myOptions(options) {}

    /// Of a node of the form number.
    char* number(char* at, const Node& node, const std::uint8_t* octets) const;
    /// What a script says about the octets of its record.
    char* script(char* at, const Node& record, const std::uint8_t* octets) const;
    /// An array that is shown as a text, which takes theLongestUnit for each element and
    /// theLongestFrame at most.
    char* text(char* at, const Node& array, const std::uint8_t* octets, std::size_t count) const;
    /// Whether the octets after the first zero of an array of the look "text" are told: all but
    /// those that encoding fills in.
    static bool isRestShown(const Node& array, const std::uint8_t* octets, std::size_t count,
                            std::size_t shown);
    /// Texts without their quotes.
    static char* latin1(char* at, const std::uint8_t* octets, std::size_t count);
    static char* utf16(char* at, const Node& element, const std::uint8_t* octets,
                       std::size_t count);
    static char* hexadecimal(char* at, const std::uint8_t* octets, std::size_t count);

private:
    template <bool isLittleEndian>
    static char* utf16(char* at, const std::uint8_t* octets, std::size_t count);
    char* integer(char* at, const Node& node, std::int64_t number) const;
    char* label(char* at, const Node& node, const std::uint8_t* octets) const;
    char* label(char* at, const ScriptStep& step, std::uint32_t number,
                const std::uint8_t* octets) const;
    char* unusualLabel(char* at, const Node& node, std::int64_t number, std::uint32_t entry) const;

    const Plan& myPlan;
    const JsonOptions& myOptions;
};

}  // namespace omt
