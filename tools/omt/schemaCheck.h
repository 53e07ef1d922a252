// SPDX-License-Identifier: Apache-2.0
// Validates the files of a set, and the set as a whole, by the schemas of the standard.
#pragma once

#include "checkSet.h"

#include <string>

/// Each file of 1516-2010 and 1516-2025 by the DIF schema of its edition, and all of them with the
/// standard MIM, merged and written as the newest edition among them, by its OMT schema. Findings
/// are called "dif-schema" and "omt-schema" and name the file and line that they come from; those
/// about the standard MIM are left out.
///
/// `folder` holds the schemas, under any names: they are known by what they hold. One that is
/// missing is an error among the findings. Nothing is loaded from a network. Throws InputError
/// where the folder cannot be read.
omt::Findings checkBySchemas(const CheckedSet& set, const std::string& folder);
