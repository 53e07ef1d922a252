// SPDX-License-Identifier: Apache-2.0
// Owning a tree that nobody else has seen yet.
#pragma once

#include "omtReader/omtTree.h"

#include <memory>

namespace omt
{

/// Deletes a tree with the tables that it would leave undeleted: they are for nobody yet.
struct DeleteTree
{
    void operator()(DtOMTTree* tree) const
    {
        if (tree) tree->deleteAuxiliaryTables();
        delete tree;
    }
};

using OwnTree = std::unique_ptr<DtOMTTree, DeleteTree>;

}  // namespace omt
