// SPDX-License-Identifier: Apache-2.0
// Numbers as they travel on the network.
#pragma once

#include "util/dtExport.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

/// Whether network-order values hold their octets in network byte order (1, as at the start) or in
/// the order of this host (0). One setting for the process, made before values are built.
OMTREADER_EXPORT int DtNetworkByteOrdering() noexcept;
OMTREADER_EXPORT void DtSetNetworkByteOrdering(int isNetworkOrder) noexcept;

/// A number whose octets in memory are the ones to send: the most significant first.
///
/// It has the size of the number and no alignment, so that a struct of such values has the layout
/// of a message.
template <typename Number>
class DtNetValue
{
public:
    DtNetValue() : DtNetValue(Number()) {}
    DtNetValue(Number value)
    {
        std::memcpy(myOctets, &value, sizeof value);
        reverseWhereNeeded(myOctets);
    }

    operator Number() const
    {
        unsigned char octets[sizeof(Number)];
        std::memcpy(octets, myOctets, sizeof octets);
        reverseWhereNeeded(octets);
        Number value;
        std::memcpy(&value, octets, sizeof value);
        return value;
    }

    /// The octets in the order in which they are sent; sizeof(Number) of them.
    const unsigned char* octets() const { return myOctets; }

private:
    static void reverseWhereNeeded(unsigned char (&octets)[sizeof(Number)])
    {
        const std::uint16_t one = 1;
        unsigned char first;
        std::memcpy(&first, &one, 1);
        const bool hostIsLittle = first == 1;
        if (hostIsLittle && DtNetworkByteOrdering() == 1)
            std::reverse(octets, octets + sizeof(Number));
    }

    unsigned char myOctets[sizeof(Number)];
};

using DtNetInt16 = DtNetValue<std::int16_t>;
using DtNetInt32 = DtNetValue<std::int32_t>;
using DtNetInt64 = DtNetValue<std::int64_t>;
using DtNetU16 = DtNetValue<std::uint16_t>;
using DtNetU32 = DtNetValue<std::uint32_t>;
using DtNetU64 = DtNetValue<std::uint64_t>;
using DtNetFloat32 = DtNetValue<float>;
using DtNetFloat64 = DtNetValue<double>;
