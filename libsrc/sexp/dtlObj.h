// SPDX-License-Identifier: Apache-2.0
// The objects that s-expressions are made of.
#pragma once

#include "util/dtString.h"

#include <cstdint>
#include <utility>

class DtlObjPtr;
class DtlStorage;

/// A symbol, a string, a whole number, or a pair of which lists are made. It never changes.
class OMTREADER_EXPORT DtlObj
{
public:
    enum class Kind
    {
        emptyList,
        symbol,
        string,
        fixnum,
        pair
    };

    Kind kind() const { return myKind; }

    /// The characters of a string, the name of a symbol, the decimal text of a number; empty for
    /// anything else.
    const DtString& string() const;
    /// The value of a number; of a string or symbol its DtString::toInt(); 0 for anything else.
    std::int64_t fixnum() const;

    /// The two sides of a pair; null, which stands for the empty list, for anything else.
    const DtlObj* head() const;
    const DtlObj* tail() const;

private:
    friend class DtlObjPtr;
    friend class DtlStorage;
    class Atom;
    class Pair;

    explicit DtlObj(Kind kind) : myKind(kind) {}
    ~DtlObj() = default;
    static const DtlObj& emptyList();

    Kind myKind;
};

/// A counted reference to an object; null stands for the empty list.
///
/// What was read with one environment is kept together: an object lives as long as there is a
/// reference to any of it, or the environment. Counts are not guarded, so all of this belongs to
/// one thread at a time.
class OMTREADER_EXPORT DtlObjPtr
{
public:
    DtlObjPtr() = default;
    DtlObjPtr(const DtlObjPtr& other);
    DtlObjPtr(DtlObjPtr&& other) noexcept
        : myObject(std::exchange(other.myObject, nullptr)),
          myStorage(std::exchange(other.myStorage, nullptr))
    {
    }
    DtlObjPtr& operator=(DtlObjPtr other) noexcept
    {
        std::swap(myObject, other.myObject);
        std::swap(myStorage, other.myStorage);
        return *this;
    }
    ~DtlObjPtr();

    /// The object; of the empty list one without text, number and sides.
    const DtlObj* operator->() const { return myObject ? myObject : &DtlObj::emptyList(); }
    /// The object, or null for the empty list.
    const DtlObj* get() const { return myObject; }
    explicit operator bool() const { return myObject != nullptr; }

    /// The two sides of a pair; the empty list for anything else.
    DtlObjPtr head() const;
    DtlObjPtr tail() const;

private:
    friend class DtlStorage;
    DtlObjPtr(const DtlObj* object, DtlStorage* storage);

    const DtlObj* myObject = nullptr;
    DtlStorage* myStorage = nullptr;  // null for the empty list
};
