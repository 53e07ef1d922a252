// SPDX-License-Identifier: Apache-2.0
// What a datatype is made of, down to the leaves.
#pragma once

#include "omt/model/model.h"

#include <string>

/// The parts of a datatype and their parts, under a heading; empty for one that has none. A
/// datatype that stands in several places is taken apart in the first of them.
std::string datatypeTree(const omt::Model& model, const omt::Datatype& datatype);

/// The representation that a leaf comes down to; empty for what is no leaf.
std::string representationOf(const omt::Datatype& datatype);
