// SPDX-License-Identifier: Apache-2.0
// The DIS entity type as a key.
#pragma once

#include "util/dtString.h"

#include <cstdint>
#include <functional>

// Virtual operations and a destructor that is not virtual: keys are values, which nobody deletes
// through a pointer to a key.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// The seven numbers of a DIS entity type (IEEE 1278.1): kind, domain, country, category,
/// subcategory, specific, extra.
///
/// -1 stands for any number: it matches all in a comparison by pattern, and in the order it stands
/// after all others.
class OMTREADER_EXPORT DtEntityMapperKey
{
public:
    static constexpr int theAny = -1;
    static constexpr int theSize = 7;

    /// Any entity type.
    DtEntityMapperKey() = default;
    DtEntityMapperKey(int kind, int domain, int country, int category, int subCategory,
                      int specific, int extra)
        : myNumbers{kind, domain, country, category, subCategory, specific, extra}
    {
    }
    /// Reads "1:2:225:1:3:4:0": whole numbers, decimal, hexadecimal after "0x" or octal after
    /// "0", with any one character between them. Kept for compatibility: a number that is missing
    /// is 0 and not -1. One out of range is the nearest limit.
    explicit DtEntityMapperKey(const char* text);
    DtEntityMapperKey(const DtEntityMapperKey& other);
    DtEntityMapperKey& operator=(const DtEntityMapperKey& other);
    /// Reads all seven numbers, as the constructor does.
    DtEntityMapperKey& operator=(const char* text);

    /// The numbers in decimal with ":" between them; valid until the next call or assignment.
    const DtString& string() const;

    /// The numbers by their places 1 to 6. Kept for compatibility: 0 and every other place give the
    /// kind.
    std::int32_t& operator[](int place) { return myNumbers[indexOf(place)]; }
    std::int32_t operator[](int place) const { return myNumbers[indexOf(place)]; }

    void setKind(int number) { myNumbers[0] = number; }
    void setDomain(int number) { myNumbers[1] = number; }
    void setCountry(int number) { myNumbers[2] = number; }
    void setCategory(int number) { myNumbers[3] = number; }
    void setSubCategory(int number) { myNumbers[4] = number; }
    void setSpecific(int number) { myNumbers[5] = number; }
    void setExtra(int number) { myNumbers[6] = number; }

    /// Whether the two match as patterns: in every place the numbers are equal or one is -1.
    bool operator==(const DtEntityMapperKey& other) const;
    bool operator!=(const DtEntityMapperKey& other) const { return !(*this == other); }

    /// As operator==.
    virtual bool matchPattern(const DtEntityMapperKey& other) const;
    /// Whether all seven numbers are equal; -1 is equal to -1 only.
    virtual bool exactMatch(const DtEntityMapperKey& other) const;

    /// The order of the dictionary: number by number, -1 after every other.
    ///
    /// Kept for compatibility: two keys of which every number is -1 are each less than the other.
    /// An ordered container would lose entries by that; for them std::less is made a strict order,
    /// below.
    bool operator<(const DtEntityMapperKey& other) const
    {
        for (int place = 0; place < theSize; ++place)
        {
            const std::int32_t mine = myNumbers[place];
            const std::int32_t others = other.myNumbers[place];
            if (mine != others) return others == theAny || (mine != theAny && mine < others);
        }
        return other.isAnything();
    }
    /// The negation of operator<, so that equal keys count as greater: kept for compatibility, no
    /// strict order.
    bool operator>(const DtEntityMapperKey& other) const { return !(*this < other); }

    /// Whether every number is -1.
    bool isAnything() const
    {
        for (const std::int32_t number : myNumbers)
            if (number != theAny) return false;
        return true;
    }

private:
    static int indexOf(int place) { return place > 0 && place < theSize ? place : 0; }

    mutable DtString myText;
    std::int32_t myNumbers[theSize] = {theAny, theAny, theAny, theAny, theAny, theAny, theAny};
};

#pragma GCC diagnostic pop

/// The order of the dictionary as containers need it: two keys of which every number is -1 are
/// equal.
template <>
struct std::less<DtEntityMapperKey>
{
    bool operator()(const DtEntityMapperKey& a, const DtEntityMapperKey& b) const
    {
        return a < b && !(b.isAnything() && a.isAnything());
    }
};
