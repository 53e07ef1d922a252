// SPDX-License-Identifier: Apache-2.0
// DiffItems lists what can come, go and change in a model, all kinds of definitions in one form.
#pragma once

#include "omt/base/nameHash.h"
#include "omt/model/model.h"
#include "omt/model/rows.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// No item, and the owner of what stands at the top.
constexpr std::uint32_t theNoItem = 0xFFFFFFFF;

/// The parts of a definition, whatever their kind.
class PartView
{
public:
    PartView() = default;
    template <typename T>
    explicit PartView(const List<T>& list)
        : myKind(T::theKind),
          mySize(list.size()),
          myFirst(list.begin()),
          myAt([](const void* first, std::size_t i) -> const Definition&
               { return static_cast<const T*>(first)[i]; })
    {
    }

    Kind kind() const { return myKind; }
    std::size_t size() const { return mySize; }
    const Definition& operator[](std::size_t i) const { return myAt(myFirst, i); }

private:
    Kind myKind = Kind::section;
    std::size_t mySize = 0;
    const void* myFirst = nullptr;
    const Definition& (*myAt)(const void*, std::size_t) = nullptr;
};

/// A class, a member of one, a datatype, or a row of another table.
struct DiffItem
{
    Kind kind = Kind::section;
    const Definition* definition = nullptr;
    /// The class above a class, the class of a member; theNoItem for all others.
    std::uint32_t owner = theNoItem;
    /// Of attributes and parameters.
    const Member* member = nullptr;
    /// Fields, enumerators, alternatives, components, dimensions of a routing space, directed
    /// interactions. Members are items themselves.
    PartView parts;

    std::string_view name() const { return definition->name; }
};

class DiffItems
{
public:
    explicit DiffItems(const Model& model);

    const std::vector<DiffItem>& all() const { return myItems; }
    const DiffItem& operator[](std::uint32_t item) const { return myItems[item]; }
    std::uint32_t size() const { return static_cast<std::uint32_t>(myItems.size()); }
    const Model& model() const { return myModel; }

    /// Whether it is the class above all others, which HLA 1.3 does not write.
    bool isRoot(std::uint32_t item) const;
    /// The class above, theNoItem where that is the root or there is none.
    std::uint32_t ownerBelowRoot(std::uint32_t item) const;
    /// The full name of a class without that of the root; of a member with its class, of anything
    /// else the name.
    std::string fullName(std::uint32_t item) const;
    /// A datatype by its name, theNoItem where there is none.
    std::uint32_t findDatatype(std::string_view name) const;
    Edition edition(std::uint32_t item) const;

private:
    template <typename T>
    void addTable(const std::vector<T>& table);
    template <typename Class, typename Part>
    void addClasses(const std::vector<Class>& table, List<Part> Class::*members);

    const Model& myModel;
    std::vector<DiffItem> myItems;
    NameMap<std::uint32_t> myDatatypes;
};

/// A number for what a definition says in the rows and parts that bear on behaviour, but for its
/// name; 0 where it says nothing.
std::uint64_t contentOf(const DiffItem& item);

/// The datatypes that one refers to.
std::vector<Text> referredBy(const Datatype& datatype);

/// A text as it is compared between editions: words of HLA 1.3 and 1516-2000 as today's.
std::string comparable(std::string_view text, const Row& row);

}  // namespace omt
