// SPDX-License-Identifier: Apache-2.0
// The values that nodes work out when first asked for.
#pragma once

class DtOMTTree;

namespace omtreader
{

/// Asks every node of the tree for each value that it would otherwise work out, and remember,
/// inside a reading operation.
void deriveAllValues(DtOMTTree& tree);

}  // namespace omtreader
