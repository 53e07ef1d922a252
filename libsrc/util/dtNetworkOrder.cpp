// SPDX-License-Identifier: Apache-2.0
#include "util/dtNetworkOrder.h"

#include <atomic>

static std::atomic<int> theNetworkByteOrdering = 1;

int DtNetworkByteOrdering() noexcept
{
    return theNetworkByteOrdering.load(std::memory_order_relaxed);
}

void DtSetNetworkByteOrdering(int isNetworkOrder) noexcept
{
    theNetworkByteOrdering.store(isNetworkOrder, std::memory_order_relaxed);
}
