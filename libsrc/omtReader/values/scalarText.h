// SPDX-License-Identifier: Apache-2.0
// Knows the texts of our own number classes, and turns them to octets without a vector for each.
#pragma once

#include "util/dtString.h"

#include <vector>

class DtDatatypeRep;

namespace omtreader
{

/// Appends the octets of a text.
using AppendText = void (*)(const DtString& text, std::vector<char>& octets);

/// What the text of a representation always is.
enum class NumberText
{
    none,   ///< any text
    whole,  ///< a decimal integer
    any     ///< a number, with or without fraction and exponent
};

/// What is known of a representation beforehand.
struct NumberTraits
{
    NumberText text = NumberText::none;
    AppendText append = nullptr;  ///< does what its valueFromStringRep() does; null if not known
};

/// Of one of our own number classes; of any other, a host's class below one too, nothing is known.
NumberTraits numberTraitsOf(const DtDatatypeRep& rep);

}  // namespace omtreader
