// SPDX-License-Identifier: Apache-2.0
#include "sexp/dtcList.h"

#include "sexp/dtlReader.h"

#include <vector>

thread_local const char* DtSexpReadEscapeChar = nullptr;

DtlObjPtr DtcRead(DtlInputStream& stream, DtSexpEnvironment& env)
{
    return DtlReader(stream, env).read();
}

DtlObjPtr DtcIntern(const DtString& name, DtSexpEnvironment& env)
{
    return env.intern(name);
}

DtlObjPtr DtcMakeSymbol(const DtString& name)
{
    return DtSexpEnvironment().intern(name);
}

DtlObjPtr DtcCar(const DtlObjPtr& list)
{
    return list.head();
}

DtlObjPtr DtcCdr(const DtlObjPtr& list)
{
    return list.tail();
}

DtlObjPtr DtcCadr(const DtlObjPtr& list)
{
    return list.tail().head();
}

DtlObjPtr DtcCaddr(const DtlObjPtr& list)
{
    return list.tail().tail().head();
}

bool DtcListp(const DtlObjPtr& object)
{
    return object->kind() == DtlObj::Kind::pair;
}

bool DtcStringp(const DtlObjPtr& object)
{
    return object->kind() == DtlObj::Kind::string;
}

bool DtcNull(const DtlObjPtr& object)
{
    return !object;
}

bool DtcEq(const DtlObjPtr& a, const DtlObjPtr& b)
{
    return a.get() == b.get();
}

bool DtcEqual(const DtlObjPtr& a, const DtlObjPtr& b)
{
    std::vector<std::pair<const DtlObj*, const DtlObj*>> open = {
        {a.get(), b.get()}
    };
    while (!open.empty())
    {
        const auto [left, right] = open.back();
        open.pop_back();
        if (left == right) continue;
        if (!left || !right || left->kind() != right->kind()) return false;
        if (left->string() != right->string()) return false;
        if (left->kind() != DtlObj::Kind::pair) continue;
        open.emplace_back(left->tail(), right->tail());
        open.emplace_back(left->head(), right->head());
    }
    return true;
}
