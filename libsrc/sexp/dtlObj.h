// SPDX-License-Identifier: Apache-2.0
// The objects that s-expressions are made of.
#pragma once

#include "util/dtString.h"

#include <cstdint>
#include <utility>

class DtlObj;

/// A counted reference to an object; null stands for the empty list.
///
/// The object lives as long as a reference to it does. Counts are not guarded: the objects of one
/// reading belong to one thread at a time.
class OMTREADER_EXPORT DtlObjPtr
{
public:
    DtlObjPtr() = default;
    explicit DtlObjPtr(const DtlObj* object);
    DtlObjPtr(const DtlObjPtr& other);
    DtlObjPtr(DtlObjPtr&& other) noexcept : myObject(other.myObject) { other.myObject = nullptr; }
    DtlObjPtr& operator=(DtlObjPtr other) noexcept;
    ~DtlObjPtr();

    /// The object; of the empty list one without text, number and sides.
    const DtlObj* operator->() const;
    /// The object, or null for the empty list.
    const DtlObj* get() const { return myObject; }
    explicit operator bool() const { return myObject != nullptr; }

private:
    friend class DtlObj;
    const DtlObj* release();

    const DtlObj* myObject = nullptr;
};

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

    static DtlObjPtr makeSymbol(const DtString& name);
    static DtlObjPtr makeString(const DtString& text);
    static DtlObjPtr makeFixnum(std::int64_t number);
    static DtlObjPtr makePair(DtlObjPtr head, DtlObjPtr tail);

    Kind kind() const { return myKind; }

    /// The characters of a string, the name of a symbol, the decimal text of a number; empty for
    /// anything else.
    const DtString& string() const { return myText; }
    /// The value of a number; of a string or symbol its DtString::toInt(); 0 for anything else.
    std::int64_t fixnum() const;

    /// The two sides of a pair; the empty list for anything else.
    const DtlObjPtr& head() const { return myHead; }
    const DtlObjPtr& tail() const { return myTail; }

private:
    friend class DtlObjPtr;
    DtlObj(Kind kind, const DtString& text) : myKind(kind), myText(text) {}
    DtlObj(DtlObjPtr head, DtlObjPtr tail);
    ~DtlObj() = default;
    static const DtlObj& emptyList();
    static void free(const DtlObj* object);

    Kind myKind;
    mutable std::int32_t myReferences = 0;
    DtString myText;
    // Mutable for free(), which takes objects apart when no reference is left.
    mutable DtlObjPtr myHead;
    mutable DtlObjPtr myTail;
};
