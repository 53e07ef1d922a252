// SPDX-License-Identifier: Apache-2.0
// Single values: the octets in place, what a representation shows of them, how many there are.
#pragma once

#include "omtReader/values/conversionBounds.h"
#include "omtReader/values/conversionSettings.h"
#include "omtReader/values/datatypeResolver.h"
#include "omtReader/values/valueOctets.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <limits>
#include <optional>

namespace omtreader
{

/// A value in the buffer of a caller, and where to put the number of octets that it took.
struct EncodedValue
{
    const void* data;
    int length;
    int& consumed;
};

/// Adds octet counts; what is too large stays the largest.
inline void addTo(int& sum, std::int64_t count)
{
    constexpr std::int64_t theLargest = std::numeric_limits<int>::max();
    sum = static_cast<int>(std::clamp(sum + count, -theLargest, theLargest));
}

/// Reads for one manager. Positions are addresses in the copy of the value that the outermost call
/// makes; see ValueOctets.
class ValueReader
{
public:
    ValueReader(DtDatatypeManager& manager, ConversionSettings& settings,
                DatatypeResolver& resolver, ConversionBounds& bounds)
        : myManager(manager), mySettings(settings), myResolver(resolver), myBounds(bounds)
    {
    }

    /// The time between entry and return of one operation. The outermost one copies the value; so
    /// does one that a host calls in between with octets of its own.
    class Call
    {
    public:
        Call(ValueReader& reader, EncodedValue& value)
            : myReader(reader), myConsumed(value.consumed)
        {
            if (!value.data) return;
            if (reader.myOpenViews > 0 && reader.myViews[reader.myOpenViews - 1].holds(value.data))
                return;
            if (reader.myViews.size() == reader.myOpenViews) reader.myViews.emplace_back();
            ValueOctets& view = reader.myViews[reader.myOpenViews];
            view.copy(value.data, value.length);
            reader.myBounds.begin(reader.mySettings.nodeLimit, view.length());
            ++reader.myOpenViews;
            value.data = view.begin();
            myIsOpener = true;
        }
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;
        ~Call()
        {
            if (!myIsOpener) return;
            --myReader.myOpenViews;
            if (myReader.myBounds.isPast()) myConsumed = -1;
            if (myReader.myBounds.end()) myReader.myResolver.release();
        }

    private:
        ValueReader& myReader;
        int& myConsumed;
        bool myIsOpener = false;
    };

    /// The address some octets after one in the copy.
    const char* advance(const void* from, std::int64_t octets) const
    {
        return myViews[myOpenViews - 1].advance(from, octets);
    }

    void represent(const DtDatatypeRep& rep, const DtString& name, const EncodedValue& value,
                   DtString& text);

    void mapped(const DtString& datatype, EncodedValue value, DtString& text);
    void attribute(const DtString& name, EncodedValue value, DtString& text);
    void hexadecimal(EncodedValue value, DtString& text);
    void enumerated(const DtString& datatype, EncodedValue value, DtString& text);
    void octets(const DtString& datatype, EncodedValue value, DtString& text);

    int arrayCount(const DtArrayDatatypeNode& node, const void* data, int length);

private:
    std::int64_t octetsToZero(const void* from, int length) const;
    std::optional<std::int64_t> enumeratorNumber(const DtDatatypeRep& rep,
                                                 const EncodedValue& value, DtString& text);

    DtDatatypeManager& myManager;
    ConversionSettings& mySettings;
    DatatypeResolver& myResolver;
    ConversionBounds& myBounds;
    std::deque<ValueOctets> myViews;
    std::size_t myOpenViews = 0;
};

}  // namespace omtreader
