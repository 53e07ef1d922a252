// SPDX-License-Identifier: Apache-2.0
// OctetRoom appends octets to a vector through a pointer, and takes them back unless they are kept.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace omt
{

class OctetRoom
{
public:
    /// How many octets may be written past those asked for, if they are made zero again.
    static constexpr std::size_t theSlack = 8;

    explicit OctetRoom(std::vector<std::uint8_t>& octets)
        : myOctets(octets), myStart(octets.size()), mySize(octets.size())
    {
    }
    OctetRoom(const OctetRoom&) = delete;
    OctetRoom& operator=(const OctetRoom&) = delete;
    ~OctetRoom() { myOctets.resize(myIsKept ? mySize : myStart); }

    /// Leaves what was appended in the vector.
    void keep() { myIsKept = true; }
    /// How many octets there are, those included that were there before.
    std::size_t size() const { return mySize; }
    std::size_t start() const { return myStart; }
    std::uint8_t* data() { return myOctets.data(); }

    /// Where so many octets may be written, all of them zero. They count after add() only.
    std::uint8_t* need(std::size_t size)
    {
        if (myOctets.size() - mySize < size + theSlack) enlarge(size + theSlack);
        return myOctets.data() + mySize;
    }
    void add(std::size_t size) { mySize += size; }
    /// Appends zeros, up to this size.
    void growTo(std::size_t size)
    {
        need(size - mySize);
        mySize = size;
    }
    /// Drops octets from the end.
    void dropTo(std::size_t size)
    {
        std::fill(myOctets.begin() + static_cast<std::ptrdiff_t>(size),
                  myOctets.begin() + static_cast<std::ptrdiff_t>(mySize), std::uint8_t{0});
        mySize = size;
    }

private:
    void enlarge(std::size_t size)
    {
        constexpr std::size_t theLeast = 128;
        const std::size_t wanted = std::max(2 * (mySize - myStart + size), theLeast) + myStart;
        const bool isThere = mySize + size <= myOctets.capacity();
        myOctets.resize(isThere ? std::min(wanted, myOctets.capacity()) : wanted);
    }

    std::vector<std::uint8_t>& myOctets;
    std::size_t myStart;
    std::size_t mySize;
    bool myIsKept = false;
};

}  // namespace omt
