// SPDX-License-Identifier: Apache-2.0
// editionOfDocument tells which edition an XML document of an object model is written in.
#pragma once

#include "omt/model/definitions.h"

#include <string_view>

namespace omt
{

struct DocumentEdition
{
    Edition edition = Edition::ieee2010;
    /// Whether the namespace is that of the edition, or there is none.
    bool isKnown = true;
};

/// By the namespace of the root element; where that is none of an edition, by the year in it and by
/// words that only one edition has. `text` is the whole document.
DocumentEdition editionOfDocument(std::string_view namespaceName, std::string_view text);

}  // namespace omt
