// SPDX-License-Identifier: Apache-2.0
// PathStep is a step of a path to a piece of a value, such as "Datums[2].Value".
#pragma once

#include "omt/codec/plan.h"

#include <optional>
#include <string>
#include <string_view>

namespace omt
{

/// A name, or an index.
struct PathStep
{
    std::string_view name;
    std::uint32_t index = theNone;
};
/// Takes the next step off a path; nothing at its end, or where `isWrong` tells that it is none.
std::optional<PathStep> takeStep(std::string_view& path, bool& isWrong);

/// Why no value of a node has a piece at this path, with names that may have been meant; where some
/// have it, that this one has not.
std::string whyNoPiece(const Plan& plan, std::uint32_t node, std::string_view path);

}  // namespace omt
