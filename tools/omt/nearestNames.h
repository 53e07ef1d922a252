// SPDX-License-Identifier: Apache-2.0
// What a user may have meant who typed a name that there is not.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Up to three of the names, those first that take the fewest changes of a letter to become the
/// name that was sought. Upper and lower case count as the same.
std::vector<std::string> nearestNames(std::string_view sought,
                                      const std::vector<std::string>& names);

/// A sentence for a name that a model does not have: "no class "Cra"; the nearest are Car, ...".
std::string unknownName(std::string_view kind, std::string_view sought,
                        const std::vector<std::string>& names);
