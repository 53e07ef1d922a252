// SPDX-License-Identifier: Apache-2.0
// Lets requests for memory fail, to see what they leave.
#pragma once

#include <cstddef>
#include <functional>

/// While it lives, this thread is granted so many requests for memory, and none after them.
class MemoryShortage
{
public:
    explicit MemoryShortage(std::size_t granted);
    MemoryShortage(const MemoryShortage&) = delete;
    MemoryShortage& operator=(const MemoryShortage&) = delete;
    ~MemoryShortage();
};

/// Runs a piece of work with no memory at all, then with one request granted, with two and so on,
/// until it has enough. After each run `check` is called, with memory.
void sweepShortages(const std::function<void()>& work, const std::function<void()>& check);
