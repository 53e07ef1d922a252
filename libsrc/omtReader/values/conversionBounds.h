// SPDX-License-Identifier: Apache-2.0
// How much one call may do, whatever the octets and the model hold.
#pragma once

#include "util/dtMessages.h"
#include "util/dtString.h"

#include <cstdint>

namespace omtreader
{

/// Counts what one outermost call makes and searches, and says when it is too much.
///
/// Nodes and pieces are counted as promised to hosts. Work that leaves none of them (scanning for
/// an end that is far away without getting on, alignments that are not kept, measuring texts) has a
/// bound of its own, far above what honest values need.
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
        myIsPast = false;
    }
    /// Whether the outermost call ends here.
    bool end() { return --myCalls == 0; }

    /// Whether any call is under way.
    bool isCounting() const { return myCalls > 0; }
    bool isPast() const { return myIsPast; }

    /// Whether one more node may be made for this datatype at this depth.
    bool allowNode(const DtString& datatype, unsigned int offset, int depth)
    {
        if (myIsPast) return false;
        if (depth > theDeepest) return stop("datatypes inside each other", datatype, offset);
        if (--myNodes < 0) return stop("nodes", datatype, offset);
        return true;
    }

    bool allowWork(std::int64_t amount, const DtString& datatype, unsigned int offset = 0)
    {
        if (myIsPast) return false;
        myWork -= amount;
        return myWork >= 0 || stop("steps", datatype, offset);
    }

private:
    static constexpr std::int64_t theWorkForEach = 64;

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
