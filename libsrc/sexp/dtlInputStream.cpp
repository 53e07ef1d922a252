// SPDX-License-Identifier: Apache-2.0
// Streams hand out octets from blocks, so that an octet costs no virtual call.
#include "sexp/dtlInputStream.h"

#include <cstring>
#include <utility>

namespace
{

constexpr std::size_t theBlockSize = 65536;

}  // namespace

DtlInputStream::~DtlInputStream() = default;

int DtlInputStream::peek()
{
    const std::string_view octets = ahead();
    return octets.empty() ? theEnd : static_cast<unsigned char>(octets.front());
}

int DtlInputStream::get()
{
    const int octet = peek();
    if (octet != theEnd) take(1);
    return octet;
}

/// Lines are counted when someone asks, and before the block is gone.
std::size_t DtlInputStream::line()
{
    for (const char* const place = myAhead.data(); myCounted != place; ++myCounted, ++myLine)
    {
        const auto length = static_cast<std::size_t>(place - myCounted);
        const void* const end = std::memchr(myCounted, '\n', length);
        myCounted = end ? static_cast<const char*>(end) : place;
        if (!end) break;
    }
    return myLine;
}

void DtlInputStream::nextBlock()
{
    line();
    myAhead = readBlock();
    myCounted = myAhead.data();
}

DtlFileInputStream::DtlFileInputStream(std::FILE* file) : myFile(file), myBuffer(theBlockSize) {}

DtlFileInputStream::~DtlFileInputStream()
{
    if (myFile) std::fclose(myFile);
}

std::string_view DtlFileInputStream::readBlock()
{
    if (!myFile) return {};
    return {myBuffer.data(), std::fread(myBuffer.data(), 1, myBuffer.size(), myFile)};
}

DtlStringInputStream::~DtlStringInputStream() = default;

std::string_view DtlStringInputStream::readBlock()
{
    return std::exchange(myText, {});
}
