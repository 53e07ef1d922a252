// SPDX-License-Identifier: Apache-2.0
#include "omt/columns/octetCells.h"

#include <charconv>
#include <cstring>
#include <limits>
#include <string_view>

namespace omt
{

std::optional<std::string> findArrayFault(const ArrowArray& array, std::int64_t buffers)
{
    constexpr std::int64_t theMostRows = std::int64_t{1} << 48;
    if (!array.release) return "the array was released";
    if (array.length < 0 || array.offset < 0 || array.length > theMostRows ||
        array.offset > theMostRows)
        return "the length or the offset of the array is impossible";
    if (array.n_buffers < buffers || (buffers > 0 && !array.buffers))
        return "the array has " + std::to_string(array.n_buffers) + " buffers, which is too few";
    return std::nullopt;
}

std::optional<std::string> OctetCells::open(const ArrowSchema& schema, const ArrowArray& array,
                                            bool isOfTexts)
{
    if (!schema.release || !schema.format) return "the schema was released";
    const std::string_view format = schema.format;
    const bool isFixed = !isOfTexts && format.substr(0, 2) == "w:";
    if (format == (isOfTexts ? "u" : "z"))
        myForm = Form::offsets32;
    else if (format == (isOfTexts ? "U" : "Z"))
        myForm = Form::offsets64;
    else if (format == (isOfTexts ? "vu" : "vz"))
        myForm = Form::views;
    else if (isFixed &&
             std::from_chars(format.data() + 2, format.data() + format.size(), myWidth).ptr ==
                 format.data() + format.size())
        myForm = Form::fixed;
    else if (format == "n")
        myForm = Form::nothing;
    else
        return "a column of octets is expected, and its format is \"" + std::string(format) + '"';
    if (schema.dictionary) return "a column of octets is expected, not one of a dictionary";
    const std::int64_t buffers = myForm == Form::nothing ? 0 : isFixed ? 2 : 3;
    if (std::optional<std::string> fault = findArrayFault(array, buffers)) return fault;
    myRows = static_cast<std::size_t>(array.length);
    myFirst = static_cast<std::size_t>(array.offset);
    if (myForm == Form::nothing) return std::nullopt;
    myValid = static_cast<const std::uint8_t*>(array.buffers[0]);
    myPlaces = static_cast<const std::uint8_t*>(array.buffers[1]);
    myData = static_cast<const std::uint8_t*>(array.buffers[isFixed ? 1 : 2]);
    if (myRows > 0 && !myPlaces) return "the array has rows and no buffer of them";
    if (myWidth > std::numeric_limits<std::uint32_t>::max()) return "the rows are too wide";
    if (myForm != Form::views) return std::nullopt;
    myBuffers = array.buffers + 2;
    myBufferCount = static_cast<std::size_t>(array.n_buffers - 3);
    mySizes = static_cast<const std::int64_t*>(array.buffers[array.n_buffers - 1]);
    if (myBufferCount > 0 && !mySizes) return "the array has no sizes of its buffers";
    return std::nullopt;
}

// Up to 12 octets stand in the view itself, more in one of the buffers.
std::optional<Octets> OctetCells::view(std::size_t row) const
{
    constexpr std::int32_t theMostInside = 12;
    std::int32_t words[4];
    const std::uint8_t* const place = myPlaces + (myFirst + row) * sizeof words;
    std::memcpy(words, place, sizeof words);
    const auto [size, prefix, buffer, offset] = words;
    static_cast<void>(prefix);
    if (size < 0) return std::nullopt;
    if (size <= theMostInside) return Octets(place + 4, static_cast<std::size_t>(size));
    if (buffer < 0 || static_cast<std::size_t>(buffer) >= myBufferCount || offset < 0 ||
        !myBuffers[buffer] || mySizes[buffer] - size < offset)
        return std::nullopt;
    return Octets(static_cast<const std::uint8_t*>(myBuffers[buffer]) + offset,
                  static_cast<std::size_t>(size));
}

// Nothing of the array is read anew for each row.
template <typename Offset>
std::size_t OctetCells::readBetween(std::size_t first, std::size_t count, std::size_t most,
                                    Block& block) const
{
    const std::uint8_t* const offsets = myPlaces + (myFirst + first) * sizeof(Offset);
    const std::uint8_t* const data = myData;
    const std::uint8_t* const valid = myValid;
    std::size_t octets = 0;
    std::size_t i = 0;
    for (; i < count && octets <= most; ++i)
    {
        Offset start, end;
        std::memcpy(&start, offsets + i * sizeof start, sizeof start);
        std::memcpy(&end, offsets + (i + 1) * sizeof end, sizeof end);
        // Of any two offsets, which are looked at below.
        auto size = static_cast<std::size_t>(end) - static_cast<std::size_t>(start);
        if (valid && !isBitSet(valid, myFirst + first + i))
        {
            start = 0;
            size = Block::theNull;
        }
        else if (start < 0 || end < start || (size > 0 && !data))
            return i;
        else
            octets += size;
        block.places[i] = data ? data + start : nullptr;
        __builtin_prefetch(block.places[i]);
        block.sizes[i] = size;
    }
    return i;
}

std::size_t OctetCells::read(std::size_t first, std::size_t count, std::size_t most,
                             Block& block) const
{
    if (myForm == Form::offsets32) return readBetween<std::int32_t>(first, count, most, block);
    if (myForm == Form::offsets64) return readBetween<std::int64_t>(first, count, most, block);
    std::size_t octets = 0;
    std::size_t i = 0;
    for (; i < count && octets <= most; ++i)
    {
        block.places[i] = nullptr;
        block.sizes[i] = Block::theNull;
        if (isNull(first + i)) continue;
        const std::optional<Octets> one = myForm == Form::views ? view(first + i) : wide(first + i);
        if (!one) return i;
        block.places[i] = one->data();
        block.sizes[i] = one->size();
        octets += one->size();
    }
    return i;
}

}  // namespace omt
