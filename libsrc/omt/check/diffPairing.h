// SPDX-License-Identifier: Apache-2.0
// DiffPairing says which definition of one model is which of another.
//
// First those of one name, classes and members below the same class. Of what is left, classes that
// have the same content, then those that stand elsewhere; members likewise; datatypes that stand
// where another one stood, with the same octets, then those with the same content. A guess counts
// only where there is one candidate on either side.
#pragma once

#include "omt/check/diffItems.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace omt
{

class DiffPairing
{
public:
    /// Whether two datatypes, by their names, have the same octets for what both know.
    using IsSameWire = std::function<bool(std::string_view before, std::string_view after)>;

    /// The items must outlive this.
    DiffPairing(const DiffItems& before, const DiffItems& after, const IsSameWire& isSameWire);

    /// The item of the other model, or theNoItem.
    std::uint32_t before(std::uint32_t after) const { return myBefores[after]; }
    std::uint32_t after(std::uint32_t before) const { return myAfters[before]; }

    /// Whether an item stands in another class, below another class, or below the root instead.
    bool isInOtherClass(std::uint32_t before, std::uint32_t after) const;

private:
    using Id = std::uint32_t;

    void pair(Id before, Id after);
    void pairByName(bool isOneKind);
    void pairClasses();
    void pairMembers();
    void pairByUse(const IsSameWire& isSameWire);
    void pairByContent();

    /// Pairs what is left and has the same key, a number or 0, once in either model; gives whether
    /// there was any.
    template <typename Key>
    bool pairUnique(const Key& key);
    /// Where an item stands, as the item of the model before that its class is paired with.
    std::uint64_t ownerKey(const DiffItems& items, Id item) const;
    void addContents(const DiffItems& items, std::vector<std::uint64_t>& contents) const;

    const DiffItems& myItemsBefore;
    const DiffItems& myItemsAfter;
    std::vector<Id> myBefores;
    std::vector<Id> myAfters;
    std::vector<std::uint64_t> myContentsBefore;
    std::vector<std::uint64_t> myContentsAfter;
};

}  // namespace omt
