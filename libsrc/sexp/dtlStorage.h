// SPDX-License-Identifier: Apache-2.0
// Where objects live.
#pragma once

#include "sexp/dtlObj.h"

#include <memory_resource>
#include <string_view>
#include <unordered_map>

/// Everything but a pair.
class DtlObj::Atom : public DtlObj
{
public:
    Atom(Kind kind, DtString content) : DtlObj(kind), text(std::move(content)) {}

    const DtString text;
    Atom* next = nullptr;  // in the storage's list
};

class DtlObj::Pair : public DtlObj
{
public:
    Pair(const DtlObj* first, const DtlObj* rest) : DtlObj(Kind::pair), head(first), tail(rest) {}

    const DtlObj* const head;
    const DtlObj* const tail;
};

/// The objects of one environment, side by side in memory and freed all at once: a model has some
/// hundred thousand, and none goes before the others do.
class DtlStorage
{
public:
    DtlStorage() = default;
    DtlStorage(const DtlStorage&) = delete;
    DtlStorage& operator=(const DtlStorage&) = delete;

    void hold() { ++myReferences; }
    /// Deletes the storage when nobody holds it any more.
    void letGo()
    {
        if (--myReferences == 0) delete this;
    }

    const DtlObj* makeAtom(DtlObj::Kind kind, DtString text);
    const DtlObj* makePair(const DtlObj* head, const DtlObj* tail);
    /// The one symbol of this name.
    const DtlObj* intern(std::string_view name);
    DtlObjPtr reference(const DtlObj* object) { return DtlObjPtr(object, this); }

private:
    ~DtlStorage();
    template <typename Object, typename... Arguments>
    Object* make(Arguments... arguments);

    std::size_t myReferences = 0;
    std::pmr::monotonic_buffer_resource myMemory;
    DtlObj::Atom* myAtoms = nullptr;                                // their texts have to be freed
    std::unordered_map<std::string_view, const DtlObj*> mySymbols;  // by the names inside them
};
