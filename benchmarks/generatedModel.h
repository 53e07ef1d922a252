// SPDX-License-Identifier: Apache-2.0
// A model of any size, for measuring how work grows with it.
#pragma once

#include <string>

namespace ratios
{

/// The text of a model in which everything that a model has many of is there `scale` times: object
/// classes side by side, each with a class below it, interaction classes, datatypes of every kind
/// and notes; and one enumeration of ten times as many enumerators.
std::string generatedModel(int scale);

/// The same in the format of HLA 1.3, as far as that has it: classes side by side with a class
/// below each, interaction classes, enumerated and complex datatypes, a long enumeration, and
/// notes.
std::string generatedModel13(int scale);

}  // namespace ratios
