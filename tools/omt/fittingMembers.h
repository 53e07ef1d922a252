// SPDX-License-Identifier: Apache-2.0
// fittingMembers() says which attributes or parameters of a class octets may be.
#pragma once

#include "classReport.h"
#include "omt/codec/codec.h"

#include <string>

/// A table of the members of a class, inherited ones too, of which the octets are a whole value.
/// Those come last of which something is odd, such as padding that is not zero or a number that no
/// enumerator has. Empty where there are none.
std::string fittingMembers(const omt::Codec& codec, const ClassRef& node, omt::Octets octets);
