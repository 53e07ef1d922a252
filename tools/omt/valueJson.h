// SPDX-License-Identifier: Apache-2.0
// A decoded value for programs.
#pragma once

#include "omtReader/stringTree.h"

#include <string>

/// A text in quotes, in ASCII; octets that are not UTF-8 are replaced.
std::string jsonText(const DtString& text);

/// A node with its fields or elements; "null" where there is none. Further values of an attribute,
/// which are no parts of the first one, follow as its "elements".
std::string jsonOf(const DtStringTree* tree);
