// SPDX-License-Identifier: Apache-2.0
// NameHash hashes names so that no document can be written whose names collide.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace omt
{

/// A number below 2^61 - 1 that this process has drawn by chance.
std::uint64_t nameKey();

/// The octets of a name, seven to a number, are a polynomial, whose value at the key is the hash,
/// modulo the prime 2^61 - 1. Two names of n octets have one hash for at most n / 7 + 1 of all
/// keys. The hash of the standard library knows no key: names that collide can be calculated, and
/// any number of them would take time by its square.
struct NameHash
{
    std::size_t operator()(std::string_view name) const;

    std::uint64_t key = nameKey();
};

/// The same for numbers, which octets and files hold as well.
struct NumberHash
{
    std::size_t operator()(std::uint64_t number) const
    {
        return hash({reinterpret_cast<const char*>(&number), sizeof number});
    }

    NameHash hash;
};

/// The views of names live elsewhere.
template <typename Value>
using NameMap = std::unordered_map<std::string_view, Value, NameHash>;
using NameSet = std::unordered_set<std::string_view, NameHash>;

/// With memory of their own.
template <typename Value>
using OwnNameMap = std::unordered_map<std::string, Value, NameHash>;
using OwnNameSet = std::unordered_set<std::string, NameHash>;

}  // namespace omt
