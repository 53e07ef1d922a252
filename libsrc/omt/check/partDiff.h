// SPDX-License-Identifier: Apache-2.0
// detailsOf() says in which properties and parts two definitions differ.
#pragma once

#include "omt/check/diff.h"
#include "omt/check/diffItems.h"

#include <vector>

namespace omt
{

/// What differs but for the name, in the order of the rows, then of the parts. Kinds may differ;
/// then what both kinds have is compared.
std::vector<Detail> detailsOf(const DiffItem& before, Edition editionBefore, const DiffItem& after,
                              Edition editionAfter);

}  // namespace omt
