// SPDX-License-Identifier: Apache-2.0
// Whether a host's class replaced a virtual operation of ours.
#pragma once

#include <cstddef>
#include <cstring>

namespace omtreader
{

/// The table of virtual operations that an object has right now: inside a constructor, that of the
/// class under construction.
inline const char* virtualTable(const void* object)
{
    const char* table;
    std::memcpy(&table, object, sizeof table);
    return table;
}

/// Whether two tables hold different functions for an operation.
///
/// Some results may be kept, and some loops be run flat, only while nobody listens in between. The
/// language has no question for that; the Itanium C++ ABI, which all compilers for Linux follow,
/// answers it: a pointer to a virtual member begins with its place in the table, plus 1 on most
/// processors. A program that is not position-independent may hold another address of the same
/// function: it then counts as replaced, which costs time and changes nothing else.
template <typename Operation>
bool isReplaced(const char* table, const char* baseTable, Operation operation)
{
    std::ptrdiff_t place;
    static_assert(sizeof operation == 2 * sizeof place);
    std::memcpy(&place, &operation, sizeof place);
    place -= place % 2;
    return std::memcmp(table + place, baseTable + place, sizeof(void*)) != 0;
}

}  // namespace omtreader
