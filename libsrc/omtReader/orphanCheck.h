// SPDX-License-Identifier: Apache-2.0
// Names of datatypes that a model refers to and does not define.
#pragma once

#include "omtReader/conversionSettings.h"

#include <unordered_set>

namespace omt
{

/// Gives every such name a kind and a placeholder for a representation. A class that was looked at
/// is not looked at again as long as the check lives.
class OrphanCheck
{
public:
    explicit OrphanCheck(ConversionSettings& settings) : mySettings(settings) {}

    /// The datatypes that datatypes refer to.
    void datatypes();
    /// The datatypes of a class's attributes or parameters, and of all classes below it.
    void objectClasses(const DtObjectClassFedNode& top);
    void interactionClasses(const DtInteractionClassFedNode& top);

private:
    void check(const DtString& datatype);
    void checkComponents(const DtString& datatype, DtDatatypeManager::DtDatatypeEnum kind);
    template <typename Class, typename Members, typename Children>
    void classes(const Class& top, Members members, Children children);

    ConversionSettings& mySettings;
    std::unordered_set<const void*> mySeen;
};

}  // namespace omt
