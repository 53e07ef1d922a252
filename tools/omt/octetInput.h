// SPDX-License-Identifier: Apache-2.0
// The octets that the user gives: as arguments, from a file, or from standard input.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Where the octets come from.
struct OctetChoice
{
    /// In any form that readOctets() takes; none where they come from elsewhere.
    std::vector<std::string> words;
    /// "-" and, in hexadecimal, empty for standard input.
    std::string file;
    /// Whether each line is a value of its own, in hexadecimal.
    bool isByLine = false;

    bool isFromStandardInput() const { return words.empty() && (file.empty() || file == "-"); }
};

/// Whether a word is octets though it has a dot: a line of a dump with its column of text.
bool isDumpLine(const std::string& word);

/// One value, or why there is none.
struct GivenValue
{
    /// What messages begin with; nothing for a single value.
    std::string place;
    std::vector<std::uint8_t> octets;
    std::string complaint;
};

/// Whether octets are themselves a text of octets, in a form that readOctets() takes.
bool isOctetText(const std::vector<std::uint8_t>& octets);

/// Calls `take` for every value; lines with nothing in them are left out. Throws InputError where
/// nothing can be read, UsageError for a word that can be no octets.
void readValues(const OctetChoice& choice, const std::function<void(const GivenValue&)>& take);
