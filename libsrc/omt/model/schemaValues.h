// SPDX-License-Identifier: Apache-2.0
// Says which texts the schemas of 1516-2010 and 1516-2025 accept, and what others are meant to be.
#pragma once

#include "omt/model/rows.h"

#include <optional>
#include <string>
#include <string_view>

namespace omt
{

/// Whether the DIF schema of an edition accepts a text.
bool isAccepted(std::string_view text, ValueForm form, Edition edition);

/// What a text is called today that stood in an older edition: "TA" of HLA 1.3 is "DivestAcquire".
/// Nothing for a text that is no such word.
std::optional<std::string_view> todaysWord(std::string_view text, ValueForm form);

/// The nearest text that the schema accepts, or nothing where none has the same meaning.
std::optional<std::string> accepted(std::string_view text, ValueForm form, Edition edition);

}  // namespace omt
