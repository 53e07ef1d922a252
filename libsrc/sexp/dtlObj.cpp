// SPDX-License-Identifier: Apache-2.0
#include "sexp/dtlObj.h"

#include "sexp/dtlStorage.h"

const DtString& DtlObj::string() const
{
    return myKind == Kind::pair ? DtString::nullString() : static_cast<const Atom*>(this)->text;
}

std::int64_t DtlObj::fixnum() const
{
    return myKind == Kind::fixnum ? string().toInt64() : string().toInt();
}

const DtlObj* DtlObj::head() const
{
    return myKind == Kind::pair ? static_cast<const Pair*>(this)->head : nullptr;
}

const DtlObj* DtlObj::tail() const
{
    return myKind == Kind::pair ? static_cast<const Pair*>(this)->tail : nullptr;
}

const DtlObj& DtlObj::emptyList()
{
    // It outlives every reference that other statics hold.
    static const DtlObj* const theEmptyList = new Atom(Kind::emptyList, DtString());
    return *theEmptyList;
}

DtlObjPtr::DtlObjPtr(const DtlObj* object, DtlStorage* storage)
    : myObject(object), myStorage(object ? storage : nullptr)
{
    if (myStorage) myStorage->hold();
}

DtlObjPtr::DtlObjPtr(const DtlObjPtr& other) : DtlObjPtr(other.myObject, other.myStorage) {}

DtlObjPtr::~DtlObjPtr()
{
    if (myStorage) myStorage->letGo();
}

DtlObjPtr DtlObjPtr::head() const
{
    return myObject ? DtlObjPtr(myObject->head(), myStorage) : DtlObjPtr();
}

DtlObjPtr DtlObjPtr::tail() const
{
    return myObject ? DtlObjPtr(myObject->tail(), myStorage) : DtlObjPtr();
}
