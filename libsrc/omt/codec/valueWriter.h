// SPDX-License-Identifier: Apache-2.0
// ValueWriter makes the octets of a value out of calls, one for each piece.
#pragma once

#include "omt/codec/value.h"

#include <cstring>
#include <new>
#include <type_traits>

namespace omt
{

/// Makes one value after the other, straight into octets. It is told the numbers, texts, octets and
/// arrays of a value from the first to the last, and knows from the type what each of them is,
/// where it stands, and which alternative follows a discriminant:
///
///     omt::ValueWriter writer(codec.type("SpatialVariantStruct"));
///     writer.label("DRM_FPW");
///     for (const double place : location) writer.number(place);
///     ...
///     omt::Octets octets;
///     if (const auto error = writer.finish(octets)) std::cerr << *error;
///
/// The first call that does not fit is remembered, the others after it do nothing, and finish()
/// says what was wrong and where. Records need not be told: beginRecord(), field(), element() and
/// the ends check that one begins or ends here, so that fields are not mixed up, and cost some
/// time. As a Visitor it is told a whole decoded value, and gives the octets that its JSON would,
/// but for what a visitor is not told: the octets after the first zero of a text, and which NaN of
/// 32 bits a signalling one was.
///
/// A writer takes some time to make, nothing is allocated once it has grown. One writer is for one
/// thread at a time; it outlives the codec.
class OMT_EXPORT ValueWriter final : public Visitor
{
public:
    explicit ValueWriter(const Type& type);
    /// One that was moved from can be assigned to and destroyed.
    ValueWriter(ValueWriter&& other) noexcept;
    ValueWriter& operator=(ValueWriter&& other) noexcept;
    ~ValueWriter() override;

    /// The next piece is a number, and an integer is its value; refused where it is out of range.
    template <typename Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
    void integer(Integer number)
    {
        constexpr bool isLarge = std::is_unsigned_v<Integer> && sizeof(Integer) == 8;
        const auto bits = static_cast<std::uint64_t>(number);
        const Step& step = *myCursor.step;
        const bool isSigned = !isLarge || bits >> 63 == 0;
        if (isSigned && bits - step.least < step.count)
            store(step, bits << step.shift);
        else
            writeInteger(static_cast<std::int64_t>(bits), std::is_unsigned_v<Integer>);
    }
    /// The same; an unsigned one above 2^63 - 1 comes as two's complement.
    void integer(std::int64_t number, bool isUnsigned) override
    {
        if (isUnsigned)
            integer(static_cast<std::uint64_t>(number));
        else
            integer(number);
    }
    /// The next piece is a number: one of 32 bits is rounded, an integer has to be whole.
    void number(double number) override
    {
        const Step& step = *myCursor.step;
        std::uint64_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        if (step.kind == Kind::float64)
            store(step, bits);
        else
            writeNumber(number);
    }
    template <typename Float, std::enable_if_t<std::is_same_v<Float, float>, int> = 0>
    void number(Float number)
    {
        const Step& step = *myCursor.step;
        std::uint32_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        if (step.kind == Kind::float32)
            store(step, std::uint64_t{bits} << 32);
        else
            writeFloat(number);
    }
    /// The next piece is enumerated, and has the first number of this name.
    void label(std::string_view name);
    /// The same for one of the numbers of a name.
    void label(std::string_view name, std::int64_t number) override;
    /// The next piece is an array of characters. In UTF-8; a lone surrogate may take three octets.
    /// A fixed array of octets that is shown as text is filled with zeros.
    void text(std::string_view text) override;
    /// The same in UTF-16.
    void text(std::u16string_view text);
    /// The next piece is an array of octets or of characters of one octet, or has an unknown form.
    void octets(Octets octets) override
    {
        const Step& step = *myCursor.step;
        if (step.kind != Kind::octets && step.kind != Kind::text) return writeOctets(octets);
        if (step.least != octets.size()) return writeOctets(octets);
        std::memcpy(myCursor.start + step.offset, octets.data(), octets.size());
        myCursor.step = &step + 1;
    }
    /// The next piece is another array. All arrays are told, those of a fixed size too; what
    /// follows is their elements.
    void beginArray(std::size_t count) override;

    /// The next piece is a record or variant record.
    void beginRecord(std::string_view type = {}) override;
    /// The next piece is this field or alternative. Needed in two places only: before the octets of
    /// a padding array, which is zeros otherwise; and as "octets" before those of an alternative
    /// that is not known, which has none otherwise.
    void field(std::string_view name) override;
    /// A record is complete. After a discriminant whose alternative may be left out, it is.
    void endRecord() override;
    /// The next piece is an element.
    void element() override;
    /// An array is complete.
    void endArray() override;

    /// Ends the value and begins another one. Gives its octets, which stay until the next call; on
    /// an error nothing.
    std::optional<ValueError> finish(Octets& octets)
    {
        if (myCursor.step != myWhole.last) return finishAny(octets);
        octets = {myCursor.start, myWhole.last->offset};
        myCursor.step = myWhole.first;
        return std::nullopt;
    }
    /// The same, and appends the octets, on an error none.
    std::optional<ValueError> finish(std::vector<std::uint8_t>& octets);
    /// Forgets what was told since the last value.
    void clear();

private:
    struct Parts;
    /// What a step is; integers that are stored at once are told by their range.
    enum class Kind : std::uint8_t
    {
        number,
        float32,
        float64,
        text,
        octets,
        array,
        /// An array of fixed size whose elements are the steps after it.
        fixedArray,
        /// The steps end here, the value does, or there was an error.
        end,
        complete,
        failed
    };
    /// A piece at a fixed place in a record, in the order of the octets.
    struct Step
    {
        /// The range of an integer; no number is in one of no numbers. Of octets without padding
        /// after them: how many.
        std::uint64_t least = 0;
        std::uint64_t count = 0;
        std::uint32_t offset = 0;
        std::uint32_t node = 0xFFFFFFFF;
        Kind kind = Kind::number;
        /// Brings the first octet of a number to the highest place.
        std::uint8_t shift = 0;
    };
    /// Eight octets anywhere, which are nothing else at the same time.
    struct [[gnu::packed]] Eight
    {
        std::uint64_t octets;
    };
    struct Cursor
    {
        const Step* step = nullptr;
        /// Where the octets of the steps are counted from.
        std::uint8_t* start = nullptr;
    };
    /// The steps of a type that is no more than them; for others none.
    struct Whole
    {
        const Step* first = nullptr;
        const Step* last = nullptr;
    };

    // A number together with what follows it in eight octets, which is padding or written later.
    void store(const Step& step, std::uint64_t bits)
    {
        new (myCursor.start + step.offset) Eight{__builtin_bswap64(bits)};
        myCursor.step = &step + 1;
    }
    void writeInteger(std::int64_t number, bool isUnsigned);
    void writeNumber(double number);
    void writeFloat(float number);
    void writeOctets(Octets octets);
    std::optional<ValueError> finishAny(Octets& octets);

    Cursor myCursor;
    Whole myWhole;
    std::unique_ptr<Parts> myParts;
};

}  // namespace omt
