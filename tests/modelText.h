// SPDX-License-Identifier: Apache-2.0
// Models of datatypes out of short texts.
#pragma once

#include "support.h"

/// Declarations with a ";" after each: "simple NAME REPRESENTATION", "enumerated NAME
/// REPRESENTATION NAME=NUMBER...", "array NAME ELEMENT ENCODING CARDINALITY", "fixed NAME
/// FIELD...", "variant NAME DISCRIMINANT ALTERNATIVE...", "complex NAME COMPONENT...".
TreePtr modelOf(const std::string& declarations);
