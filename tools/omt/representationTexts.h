// SPDX-License-Identifier: Apache-2.0
// Which texts the library's representations can encode; the library itself takes any text.
#pragma once

#include "util/dtString.h"

#include <string>
#include <string_view>

/// What a text is not, such as "is not a whole number (int)", for the representation registered
/// under a name. Empty where the text fits, and for a name that is not one of the library's.
std::string whyNotEncoded(std::string_view representation, const DtString& text);
