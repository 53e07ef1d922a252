// SPDX-License-Identifier: Apache-2.0
// How much one call may do, whatever the octets and the model hold.
#pragma once

#include "util/dtMessages.h"
#include "util/dtString.h"

#include <cstdint>

namespace omt
{

/// Counts what one outermost call makes and searches, and says when it is too much.
///
/// Nodes are counted as promised to hosts. Work that leaves no node (scanning for an end that is
/// far away without getting on, alignments that are not kept, texts that cannot be cut) has a bound
/// of its own, far above what honest values need.
class DecodingBounds
{
public:
    static constexpr int theDeepest = 200;

    void start(std::int64_t nodeLimit, std::int64_t length)
    {
        myNodes = nodeLimit + length;
        myWork = theWorkForEach * (theLeastWork + length);
        myIsPast = false;
    }

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
    static constexpr std::int64_t theLeastWork = 1000000;

    bool stop(const char* what, const DtString& datatype, unsigned int offset)
    {
        myIsPast = true;
        DtWarn << "Stopped at datatype " << datatype << ", offset " << offset << ": too many "
               << what << "\n";
        return false;
    }

    std::int64_t myNodes = 0;
    std::int64_t myWork = 0;
    bool myIsPast = false;
};

}  // namespace omt
