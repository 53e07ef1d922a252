// SPDX-License-Identifier: Apache-2.0
// Owning a whole tree.
#pragma once

#include "omtReader/omtTree.h"

#include <memory>

/// Deletes a tree with the tables that it would leave undeleted; null is ignored. Not for a tree
/// whose switches, dimensions, synchronization points or tags somebody else still uses.
struct DtDeleteTree
{
    void operator()(DtOMTTree* tree) const
    {
        if (tree) tree->deleteAuxiliaryTables();
        delete tree;
    }
};

/// A tree of one's own, such as a reader returns, freed to the last node.
using DtOMTTreePtr = std::unique_ptr<DtOMTTree, DtDeleteTree>;
