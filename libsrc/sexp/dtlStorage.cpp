// SPDX-License-Identifier: Apache-2.0
#include "sexp/dtlStorage.h"

#include <new>
#include <utility>

DtlStorage::~DtlStorage()
{
    while (myAtoms) std::exchange(myAtoms, myAtoms->next)->~Atom();
}

template <typename Object, typename... Arguments>
Object* DtlStorage::make(Arguments... arguments)
{
    return new (myMemory.allocate(sizeof(Object), alignof(Object))) Object(std::move(arguments)...);
}

const DtlObj* DtlStorage::makeAtom(DtlObj::Kind kind, DtString text)
{
    DtlObj::Atom* const atom = make<DtlObj::Atom>(kind, std::move(text));
    atom->next = std::exchange(myAtoms, atom);
    return atom;
}

const DtlObj* DtlStorage::makePair(const DtlObj* head, const DtlObj* tail)
{
    return make<DtlObj::Pair>(head, tail);
}

const DtlObj* DtlStorage::intern(std::string_view name)
{
    const auto found = mySymbols.find(name);
    if (found != mySymbols.end()) return found->second;
    const DtlObj* const symbol = makeAtom(DtlObj::Kind::symbol, name);
    mySymbols.emplace(symbol->string().view(), symbol);
    return symbol;
}
