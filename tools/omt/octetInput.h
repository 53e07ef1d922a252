// SPDX-License-Identifier: Apache-2.0
// The octets that the user gives: as arguments, from a file, or from standard input.
#pragma once

#include "omtReader/datatypeManager.h"

#include <string>
#include <vector>

/// Where the octets come from.
struct OctetChoice
{
    /// In hexadecimal; none where they come from a file or from standard input.
    std::vector<std::string> words;
    /// Empty for standard input.
    std::string file;
    /// Whether each line is a value of its own, in hexadecimal.
    bool isByLine = false;
};

/// One value as it was given.
struct GivenValue
{
    /// What messages begin with; nothing for a single value.
    std::string place;
    std::string content;
    bool isHexadecimal;
};

/// All values; lines with nothing in them are left out. Throws InputError for what cannot be read.
std::vector<GivenValue> readValues(const OctetChoice& choice);

/// The octets of a value, at an address that is a multiple of every alignment. Throws InputError
/// for a text that is not pairs of hexadecimal digits with or without blanks between the pairs.
DtDatatypeManager::Octets octetsOf(const GivenValue& value);

/// The text that octetsOf() takes: "00 2A FF".
std::string hexadecimalText(const DtDatatypeManager::Octets& octets);
