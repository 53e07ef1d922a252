// SPDX-License-Identifier: Apache-2.0
// The class that a user means by a name.
#pragma once

#include "modelLists.h"

/// All classes of one of the two hierarchies.
template <typename Class>
std::vector<const DtFedNode*> classesOf(DtOMTTree& tree)
{
    const auto all = ClassKind<Class>::all(tree);
    return {all.begin(), all.end()};
}

/// The class of this full name, else the only one whose full name ends so. Throws InputError where
/// there is none, which names the nearest, or more than one; `kind` is what it calls a class.
const DtFedNode& findClass(const std::vector<const DtFedNode*>& classes, const char* kind,
                           const std::string& name);
