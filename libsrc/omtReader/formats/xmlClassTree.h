// SPDX-License-Identifier: Apache-2.0
// What both XML readers do with a class hierarchy as a whole.
#pragma once

#include "omtReader/formats/xmlVocabulary.h"
#include "omtReader/hierarchy.h"

namespace omtreader
{

/// The names and warnings of one hierarchy in one dialect.
struct HierarchyWords
{
    const char* classWord;      // the element of a class
    const char* rootName;       // the class that has to be at the top
    const char* additional[2];  // warning for a second class at the top, in two pieces
    const char* missingRoot;    // warning for a model without the root
    const char* anotherRoot;    // warning for a root that is not at the top
};

/// Reads the first class of a section with all below it, and makes it the root if it bears the
/// root's name. `process` reads a class; further classes at the top are not read at all.
template <typename Class, typename Process>
void readHierarchy(xmlNode* section, DtOMTTree* tree, const HierarchyWords& words, Process process)
{
    Class* top = nullptr;
    forEachNamed(childrenOf(section), words.classWord,
                 [&](xmlNode*& element)
                 {
                     if (top)
                         DtWarn << words.additional[0] << words.additional[1] << std::flush;
                     else
                         top = process(element);
                 });

    Class* const root = Hierarchy<Class>::find(*tree, words.rootName);
    if (!root)
        DtWarn << words.missingRoot << std::flush;
    else if (root == top)
        Hierarchy<Class>::setRoot(*tree, top);
    else
        DtWarn << words.anotherRoot << std::flush;
}

/// Drops a class that turned out nameless. The classes inside it are in the tree already and stay
/// there; they lose their parent, so that nothing points to what is gone.
template <typename Class>
Class* dropClass(std::unique_ptr<Class> node)
{
    for (Class* child : Hierarchy<Class>::children(*node)) child->setParentObject(nullptr);
    return nullptr;
}

/// Calls `setHandles` for every class of a hierarchy; what it throws for one class does not keep it
/// from the next.
template <typename Class, typename SetHandles>
void visitForHandles(DtOMTTree& tree, SetHandles setHandles)
{
    using H = Hierarchy<Class>;
    for (auto node = H::begin(tree); node != H::end(tree); ++node)
    {
        try
        {
            setHandles(*node);
        }
        catch (...)
        {
            // Handles are an extra for connected hosts: a class without them is read all the same.
        }
    }
}

}  // namespace omtreader
