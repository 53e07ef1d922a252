// SPDX-License-Identifier: Apache-2.0
// How much one call may do, whatever the octets and the model hold.
#pragma once

#include "util/dtMessages.h"
#include "util/dtString.h"

#include <cstddef>
#include <cstdint>

namespace omtreader
{

/// Counts what one outermost call makes and searches, and says when it is too much.
///
/// Nodes and pieces are counted as promised to hosts. Work that leaves none of them (scanning for
/// an end that is far away without getting on, alignments that are not kept, measuring texts,
/// looking for a node) has a bound of its own, far above what honest values need. So have the
/// octets that are shown: an honest value shows each of its own once, while a part that is read
/// again without getting on shows all the rest each time.
class ConversionBounds
{
public:
    static constexpr int theDeepest = 200;

    /// Begins counting, unless a call further out did so.
    void begin(std::int64_t nodeLimit, std::int64_t length)
    {
        if (myCalls++ > 0) return;
        myNodes = nodeLimit + length;
        myWork = theWorkForEach * myNodes;
        myOctets = nodeLimit + theShownForEach * length + theShownAlways;
        myIsPast = false;
    }
    /// Whether the outermost call ends here.
    bool end() { return --myCalls == 0; }

    /// Whether any call is under way.
    bool isCounting() const { return myCalls > 0; }
    bool isPast() const { return myIsPast; }

    /// Whether one more node may be made for this datatype at this depth. A key of unusual length
    /// counts as work, as every node has a copy of its names.
    bool allowNode(const DtString& datatype, unsigned int offset, int depth,
                   std::size_t keyLength = 0)
    {
        if (myIsPast) return false;
        if (depth > theDeepest) return stop("datatypes inside each other", datatype, offset);
        if (--myNodes < 0) return stop("nodes", datatype, offset);
        return allowNames(keyLength + datatype.length(), datatype, offset);
    }

    /// Whether a node may have names of this length, which are the model's.
    bool allowNames(std::size_t length, const DtString& datatype, unsigned int offset = 0)
    {
        constexpr std::size_t theUsual = 128;
        return length <= theUsual || allowWork(static_cast<std::int64_t>(length), datatype, offset);
    }

    /// Whether the text of so many octets of the value may be shown.
    bool allowOctets(std::int64_t count, const DtString& datatype)
    {
        if (myIsPast) return false;
        myOctets -= count;
        return myOctets >= 0 || stop("octets shown", datatype, 0);
    }

    bool allowWork(std::int64_t amount, const DtString& datatype, unsigned int offset = 0)
    {
        if (myIsPast) return false;
        myWork -= amount;
        return myWork >= 0 || stop("steps", datatype, offset);
    }

private:
    static constexpr std::int64_t theWorkForEach = 64;
    static constexpr std::int64_t theShownForEach = 16;
    // Zeros follow a value that was cut short, and are shown too.
    static constexpr std::int64_t theShownAlways = 1024;

    bool stop(const char* what, const DtString& datatype, unsigned int offset)
    {
        myIsPast = true;
        DtWarn << "Stopped at datatype " << datatype << ", offset " << offset << ": too many "
               << what << "\n";
        return false;
    }

    int myCalls = 0;
    std::int64_t myNodes = 0;
    std::int64_t myWork = 0;
    std::int64_t myOctets = 0;
    bool myIsPast = false;
};

/// Counts while it lives.
class CountedCall
{
public:
    CountedCall(ConversionBounds& bounds, std::int64_t nodeLimit) : myBounds(bounds)
    {
        myBounds.begin(nodeLimit, 0);
    }
    CountedCall(const CountedCall&) = delete;
    CountedCall& operator=(const CountedCall&) = delete;
    ~CountedCall() { myBounds.end(); }

private:
    ConversionBounds& myBounds;
};

/// One step down while it lives, also if a host's operation throws on the way.
class Descent
{
public:
    explicit Descent(int& depth) : myDepth(depth) { ++myDepth; }
    Descent(const Descent&) = delete;
    Descent& operator=(const Descent&) = delete;
    ~Descent() { --myDepth; }

private:
    int& myDepth;
};

}  // namespace omtreader
