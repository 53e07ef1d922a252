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

}  // namespace omtreader
