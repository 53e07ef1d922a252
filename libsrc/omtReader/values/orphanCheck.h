// SPDX-License-Identifier: Apache-2.0
// Names of datatypes that a model refers to and does not define.
#pragma once

#include "omtReader/values/conversionSettings.h"

#include <optional>
#include <unordered_set>

namespace omtreader
{

/// Gives every such name a kind and a placeholder for a representation. A class that was looked at
/// is not looked at again as long as the check lives.
class OrphanCheck
{
public:
    explicit OrphanCheck(ConversionSettings& settings) : mySettings(settings) {}

    /// The datatypes that datatypes refer to.
    void datatypes();
    /// The datatypes of a class's attributes or parameters, and on request of all classes below it.
    /// False if the class was looked at before.
    bool objectClasses(const DtObjectClassFedNode& top, bool isWhole);
    bool interactionClasses(const DtInteractionClassFedNode& top, bool isWhole);

    int depth = 0;  ///< of the calls that share the check

private:
    void check(const DtString& datatype);
    void checkComponents(const DtString& datatype, DtDatatypeManager::DtDatatypeEnum kind);
    template <typename Class, typename Members, typename Children>
    bool classes(const Class& top, bool isWhole, Members members, Children children);

    ConversionSettings& mySettings;
    std::unordered_set<const void*> mySeen;
};

/// Keeps one check for all calls that begin while it lives, and counts how deep they are.
class OrphanCheckScope
{
public:
    OrphanCheckScope(std::optional<OrphanCheck>& check, ConversionSettings& settings)
        : myCheck(check), myIsFirst(!check)
    {
        if (myIsFirst) myCheck.emplace(settings);
        ++myCheck->depth;
    }
    OrphanCheckScope(const OrphanCheckScope&) = delete;
    OrphanCheckScope& operator=(const OrphanCheckScope&) = delete;
    ~OrphanCheckScope()
    {
        --myCheck->depth;
        if (myIsFirst) myCheck.reset();
    }
    /// Whether one more call for every level of classes could take too much stack.
    bool isDeep() const { return myCheck->depth > theDeepest; }

private:
    static constexpr int theDeepest = 100;
    std::optional<OrphanCheck>& myCheck;
    bool myIsFirst;
};

}  // namespace omtreader
