// SPDX-License-Identifier: Apache-2.0
// read13() builds the definitions of an object model from a document of HLA 1.3 (OMT DIF).
#pragma once

#include "omt/model/modelBuilder.h"

#include <string_view>

namespace omt
{

/// Whether a text without leading blanks can be a document of HLA 1.3: it begins with a clause or a
/// comment.
bool looksLike13(std::string_view text);

/// Reads one document, in UTF-8 or else in windows-1252. What no row knows becomes an aside,
/// numbers of classes included. False, and one error among the findings, where the document is
/// badly formed or no object model; the builder then holds part of it.
bool read13(std::string_view name, std::string_view text, ModelBuilder& builder,
            Findings& findings);

}  // namespace omt
