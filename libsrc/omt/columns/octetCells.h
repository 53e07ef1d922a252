// SPDX-License-Identifier: Apache-2.0
// OctetCells reads the rows of a column of octets that somebody else made, and believes nothing
// that it can check.
#pragma once

#include "omt/codec/octets.h"
#include "omt/columns/arrow.h"

#include <cstring>
#include <optional>
#include <string>

namespace omt
{

class OctetCells
{
public:
    /// Returns why this is no column of octets, or of texts, which are laid out in the same way.
    std::optional<std::string> open(const ArrowSchema& schema, const ArrowArray& array,
                                    bool isOfTexts = false);

    std::size_t rows() const { return myRows; }
    /// Whether a row below rows() is null.
    bool isNull(std::size_t row) const;
    /// A row that is not null; nothing where its offsets are wrong.
    std::optional<Octets> operator[](std::size_t row) const;

    /// Rows that are read together. Places and sizes stand apart, as pairs of them would be written
    /// in a way that the next reader waits for.
    struct Block
    {
        static constexpr std::size_t theMost = 128;
        /// The size of a row that is null.
        static constexpr std::size_t theNull = ~std::size_t{0};
        const std::uint8_t* places[theMost];
        std::size_t sizes[theMost];
    };
    /// Reads rows from one on: as many as there are before they have more octets than `most`, or
    /// before one whose offsets are wrong; how many. At most Block::theMost.
    std::size_t read(std::size_t first, std::size_t count, std::size_t most, Block& block) const;

private:
    enum class Form : std::uint8_t
    {
        offsets32,
        offsets64,
        views,
        fixed,
        /// All rows are null, and there are no buffers.
        nothing
    };
    template <typename Offset>
    std::optional<Octets> between(std::size_t row) const;
    template <typename Offset>
    std::size_t readBetween(std::size_t first, std::size_t count, std::size_t most,
                            Block& block) const;
    Octets wide(std::size_t row) const { return {myData + (myFirst + row) * myWidth, myWidth}; }
    std::optional<Octets> view(std::size_t row) const;

    Form myForm = Form::offsets32;
    std::size_t myRows = 0;
    std::size_t myFirst = 0;
    std::size_t myWidth = 0;
    const std::uint8_t* myValid = nullptr;
    const std::uint8_t* myPlaces = nullptr;
    const std::uint8_t* myData = nullptr;
    /// Of views: their buffers, and how long these are.
    const void* const* myBuffers = nullptr;
    std::size_t myBufferCount = 0;
    const std::int64_t* mySizes = nullptr;
};

/// What is wrong with the counts and pointers of an array, which is to have this many buffers, or
/// more.
std::optional<std::string> findArrayFault(const ArrowArray& array, std::int64_t buffers);

inline bool isBitSet(const std::uint8_t* bits, std::size_t at)
{
    return (bits[at / 8] >> at % 8 & 1) != 0;
}

inline bool OctetCells::isNull(std::size_t row) const
{
    return myForm == Form::nothing || (myValid && !isBitSet(myValid, myFirst + row));
}

template <typename Offset>
std::optional<Octets> OctetCells::between(std::size_t row) const
{
    Offset offsets[2];
    std::memcpy(offsets, myPlaces + (myFirst + row) * sizeof(Offset), sizeof offsets);
    if (offsets[0] < 0 || offsets[1] < offsets[0]) return std::nullopt;
    const auto size = static_cast<std::size_t>(offsets[1] - offsets[0]);
    if (size > 0 && !myData) return std::nullopt;
    return Octets(myData + (size > 0 ? offsets[0] : 0), size);
}

inline std::optional<Octets> OctetCells::operator[](std::size_t row) const
{
    switch (myForm)
    {
        case Form::offsets32:
            return between<std::int32_t>(row);
        case Form::offsets64:
            return between<std::int64_t>(row);
        case Form::views:
            return view(row);
        case Form::fixed:
        case Form::nothing:
            break;
    }
    return wide(row);
}

}  // namespace omt
