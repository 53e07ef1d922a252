// SPDX-License-Identifier: Apache-2.0
// Tells those who keep what they found in a model that a model has changed.
#pragma once

#include <atomic>
#include <cstdint>

namespace omt
{

/// Grows with every change, in any model of the process, of what is found by name or number: a node
/// added, named, pointed at another datatype.
inline std::atomic<std::uint64_t> theModelRevision = 0;

inline void noteModelChange() noexcept
{
    theModelRevision.fetch_add(1, std::memory_order_relaxed);
}

inline std::uint64_t modelRevision() noexcept
{
    return theModelRevision.load(std::memory_order_relaxed);
}

}  // namespace omt
