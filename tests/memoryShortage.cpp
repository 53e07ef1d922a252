// SPDX-License-Identifier: Apache-2.0
#include "memoryShortage.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>
#include <string>

namespace
{

constexpr std::size_t theUnlimited = std::numeric_limits<std::size_t>::max();
thread_local std::size_t theGranted = theUnlimited;
thread_local bool theHasRefused = false;

}  // namespace

// The library asks these as well, as they are the program's. All forms are here, so that under a
// sanitizer, which has its own, none is mixed with another's.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    if (theGranted == 0)
    {
        theHasRefused = true;
        return nullptr;
    }
    if (theGranted != theUnlimited) --theGranted;
    return std::malloc(size > 0 ? size : 1);
}

void* operator new(std::size_t size)
{
    if (void* const memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return operator new(size, std::nothrow);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

MemoryShortage::MemoryShortage(std::size_t granted)
{
    theGranted = granted;
    theHasRefused = false;
}

MemoryShortage::~MemoryShortage()
{
    theGranted = theUnlimited;
}

void sweepShortages(const std::function<void()>& work, const std::function<void()>& check)
{
    constexpr std::size_t theMost = 10000;
    theHasRefused = true;
    std::size_t granted = 0;
    for (; theHasRefused && granted < theMost; ++granted)
    {
        SCOPED_TRACE(std::to_string(granted) + " requests granted");
        try
        {
            const MemoryShortage shortage(granted);
            work();
        }
        catch (const std::bad_alloc&)
        {
            EXPECT_TRUE(theHasRefused);
        }
        check();
        if (testing::Test::HasFailure()) return;
    }
    EXPECT_GT(granted, 1u) << "nothing was asked for";
    EXPECT_LT(granted, theMost);
}
