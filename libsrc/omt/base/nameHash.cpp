// SPDX-License-Identifier: Apache-2.0
#include "omt/base/nameHash.h"

#include <algorithm>
#include <cstring>
#include <random>

namespace omt
{

namespace
{

constexpr std::uint64_t thePrime = (std::uint64_t(1) << 61) - 1;

/// The product modulo the prime, but for one time the prime.
std::uint64_t product(std::uint64_t left, std::uint64_t right)
{
    __extension__ using Wide = unsigned __int128;
    const Wide whole = Wide(left) * right;
    const std::uint64_t sum =
        static_cast<std::uint64_t>(whole & thePrime) + static_cast<std::uint64_t>(whole >> 61);
    return sum >= thePrime ? sum - thePrime : sum;
}

std::uint64_t drawKey()
{
    std::random_device device;
    constexpr std::uint64_t theLeast = 1 << 16;
    return std::uniform_int_distribution<std::uint64_t>(theLeast, thePrime - 1)(device);
}

}  // namespace

std::uint64_t nameKey()
{
    static const std::uint64_t theKey = drawKey();
    return theKey;
}

std::size_t NameHash::operator()(std::string_view name) const
{
    constexpr std::size_t theWidth = 7;
    // The length comes first, as the last number is filled up with zeros.
    std::uint64_t hash = product(name.size() + 1, key);
    while (!name.empty())
    {
        std::uint64_t number = 0;
        const std::size_t count = std::min(name.size(), theWidth);
        std::memcpy(&number, name.data(), count);
        hash = product(hash + number, key);
        name.remove_prefix(count);
    }
    return hash;
}

}  // namespace omt
