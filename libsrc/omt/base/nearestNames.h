// SPDX-License-Identifier: Apache-2.0
// nearestNames() finds what somebody may have meant who wrote a name that there is not.
#pragma once

#include "omt/base/export.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// Up to `most` of the names, each once: those first that take the fewest changes of a letter to
/// become the name that was sought, upper and lower case counting as the same and a part of a name
/// as near. Half of the letters of each may stay, of the nearest a third unless it is of two
/// letters; where none is that near there are none. Names are compared by their first 200 octets,
/// so that time grows with the number of names only.
OMT_EXPORT std::vector<std::string_view> nearestNames(std::string_view sought,
                                                      const std::vector<std::string_view>& names,
                                                      std::size_t most = 3);

/// What to add to a sentence about a name that is not there: `; did you mean Car or Bar?`. Nothing
/// without names.
OMT_EXPORT std::string didYouMean(std::string_view sought,
                                  const std::vector<std::string_view>& names);

/// A sentence without full stop for a name that is not there: `no class "Cra"; did you mean Car or
/// Bar?`. `kind` is what the name should be. Without names only its first part.
OMT_EXPORT std::string unknownName(std::string_view kind, std::string_view sought,
                                   const std::vector<std::string_view>& names);
OMT_EXPORT std::string unknownName(std::string_view kind, std::string_view sought,
                                   const std::vector<std::string>& names);

}  // namespace omt
