// SPDX-License-Identifier: Apache-2.0
// Lists the representations that every manager begins with, and knows the texts of their numbers.
#pragma once

#include "util/dtString.h"

#include <functional>
#include <vector>

class DtDatatypeRep;

namespace omtreader
{

/// Hands over a new object of each, of those that differ by sign one of either.
void addOwnRepresentations(bool isAligned, const std::function<void(DtDatatypeRep*)>& add);

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
