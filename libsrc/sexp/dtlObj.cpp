// SPDX-License-Identifier: Apache-2.0
// How objects are made, counted, and freed without recursion.
#include "sexp/dtlObj.h"

#include <vector>

DtlObjPtr::DtlObjPtr(const DtlObj* object) : myObject(object)
{
    if (myObject) ++myObject->myReferences;
}

DtlObjPtr::DtlObjPtr(const DtlObjPtr& other) : DtlObjPtr(other.myObject) {}

DtlObjPtr& DtlObjPtr::operator=(DtlObjPtr other) noexcept
{
    std::swap(myObject, other.myObject);
    return *this;
}

DtlObjPtr::~DtlObjPtr()
{
    if (const DtlObj* const object = release()) DtlObj::free(object);
}

const DtlObj* DtlObjPtr::operator->() const
{
    return myObject ? myObject : &DtlObj::emptyList();
}

/// Lets go of the object and gives it back if this was the last reference to it.
const DtlObj* DtlObjPtr::release()
{
    const DtlObj* const object = std::exchange(myObject, nullptr);
    return object && --object->myReferences == 0 ? object : nullptr;
}

DtlObj::DtlObj(DtlObjPtr head, DtlObjPtr tail)
    : myKind(Kind::pair), myHead(std::move(head)), myTail(std::move(tail))
{
}

DtlObjPtr DtlObj::makeSymbol(const DtString& name)
{
    return DtlObjPtr(new DtlObj(Kind::symbol, name));
}

DtlObjPtr DtlObj::makeString(const DtString& text)
{
    return DtlObjPtr(new DtlObj(Kind::string, text));
}

DtlObjPtr DtlObj::makeFixnum(std::int64_t number)
{
    return DtlObjPtr(new DtlObj(Kind::fixnum, DtString(number)));
}

DtlObjPtr DtlObj::makePair(DtlObjPtr head, DtlObjPtr tail)
{
    return DtlObjPtr(new DtlObj(std::move(head), std::move(tail)));
}

std::int64_t DtlObj::fixnum() const
{
    return myKind == Kind::fixnum ? myText.toInt64() : myText.toInt();
}

const DtlObj& DtlObj::emptyList()
{
    static const DtlObj* const theEmptyList = new DtlObj(Kind::emptyList, DtString());
    return *theEmptyList;  // it outlives every reference that other statics hold
}

void DtlObj::free(const DtlObj* object)
{
    if (object->myKind != Kind::pair)
    {
        delete object;
        return;
    }
    // Each pair gives up its sides first, so that no destructor goes down into them.
    std::vector<const DtlObj*> dead = {object};
    while (!dead.empty())
    {
        const DtlObj* const next = dead.back();
        dead.pop_back();
        for (DtlObjPtr* const side : {&next->myTail, &next->myHead})
        {
            if (const DtlObj* const last = side->release()) dead.push_back(last);
        }
        delete next;
    }
}
