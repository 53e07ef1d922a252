// SPDX-License-Identifier: Apache-2.0
// checkModule() finds what is wrong within the definitions of one document, whatever its edition.
#pragma once

#include "omt/model/model.h"

#include <cstdint>
#include <optional>

namespace omt
{

/// Adds findings for definitions without a name, numbers of enumerators that are none, and numbers
/// and names that an enumeration has twice. Takes time by the size of the model.
void checkModule(const Model& model, Findings& findings);

/// The number of an enumerator as a document writes it: decimal with an optional sign, or
/// hexadecimal after 0x. From -2^63 to 2^64 - 1, where what is above 2^63 - 1 wraps; none for
/// anything else.
std::optional<std::int64_t> enumeratorNumber(std::string_view text);

}  // namespace omt
