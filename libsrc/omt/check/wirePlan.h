// SPDX-License-Identifier: Apache-2.0
// toOctets() brings plans of all editions to one form, so that what has the same octets looks the
// same.
#pragma once

#include "omt/codec/plan.h"

namespace omt
{

/// Changes a plan that nothing is decoded with any more: a count and the array that it counts
/// become an array with a count, a discriminant and the fields that it decides about a variant
/// record, and padding to a multiple of some octets a part of records of fixed size. For all arrays
/// with a count Node::body is where elements begin. Takes time by the size of the plan.
void toOctets(Plan& plan);

}  // namespace omt
