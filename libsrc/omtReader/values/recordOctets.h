// SPDX-License-Identifier: Apache-2.0
// What the representations of whole records have in common: vectors, and chains of named texts.
#pragma once

#include "geometry/dtVector64.h"
#include "omtReader/stringTree.h"
#include "omtReader/values/scalarOctets.h"

#include <memory>
#include <utility>
#include <vector>

namespace omtreader
{

inline constexpr char theFailedRecord[] = "err,err,err";
inline constexpr int theRecordPrecision = 6;  // significant digits

/// Three numbers of a width, one after the other, in network order.
template <typename Number>
struct VectorOctets
{
    static constexpr unsigned int theNumberWidth = sizeof(Number);
    static constexpr unsigned int theWidth = 3 * theNumberWidth;

    static DtVector64 read(const void* position)
    {
        return {component(position, 0), component(position, 1), component(position, 2)};
    }

    /// The numbers with ", " after each.
    static DtString text(const void* position)
    {
        DtString text;
        for (unsigned int axis = 0; axis < 3; ++axis)
        {
            text += DtConversionString(component(position, axis), theRecordPrecision);
            text += ", ";
        }
        return text;
    }

private:
    static Number component(const void* position, unsigned int axis)
    {
        const char* const octets = static_cast<const char*>(position);
        return ScalarOctets<Number, std::endian::big>::read(octets + axis * theNumberWidth);
    }
};

inline DtString recordText(double number)
{
    return DtConversionString(number, theRecordPrecision);
}

struct RecordPart
{
    const char* key;
    const char* datatype;
    unsigned int offset;
    DtString value;
};

/// A new node for each part, linked as siblings; the first is the caller's.
inline DtStringTree* createChain(const std::vector<RecordPart>& parts)
{
    std::unique_ptr<DtStringTree> first;
    DtStringTree* last = nullptr;
    for (const RecordPart& part : parts)
    {
        auto node = std::make_unique<DtStringTree>();
        node->setKey(part.key);
        node->setDatatype(part.datatype);
        node->setOffset(part.offset);
        node->setValue(part.value);
        DtStringTree* const added = node.get();
        if (last)
            last->setNextSibling(node.release());
        else
            first = std::move(node);
        last = added;
    }
    return first.release();
}

}  // namespace omtreader
