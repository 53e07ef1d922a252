// SPDX-License-Identifier: Apache-2.0
// The texts of numbers to octets, without a vector for each of them.
#pragma once

#include "util/dtString.h"

#include <vector>

class DtDatatypeRep;

namespace omtreader
{

/// Appends the octets of a text.
using AppendText = void (*)(const DtString& text, std::vector<char>& octets);

/// What a representation's valueFromStringRep() does, if it is one of our own number classes and
/// not a host's class below one; else null.
AppendText appendTextOf(const DtDatatypeRep& rep);

/// What the text of a representation always is.
enum class NumberText
{
    none,   ///< any text
    whole,  ///< a decimal integer
    any     ///< a number, with or without fraction and exponent
};

/// What a representation shows, if it is one of our own number classes; null shows any text.
NumberText numberTextOf(const DtDatatypeRep* rep);

}  // namespace omtreader
