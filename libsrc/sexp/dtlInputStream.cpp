// SPDX-License-Identifier: Apache-2.0
// Streams hand out octets from blocks, so that an octet costs no virtual call.
#include "sexp/dtlInputStream.h"

#include <utility>

namespace
{

constexpr std::size_t theBlockSize = 65536;

}  // namespace

DtlInputStream::~DtlInputStream() = default;

int DtlInputStream::peek()
{
    if (myBlock.empty()) myBlock = readBlock();
    return myBlock.empty() ? theEnd : static_cast<unsigned char>(myBlock.front());
}

int DtlInputStream::get()
{
    const int octet = peek();
    if (octet == theEnd) return theEnd;
    myBlock.remove_prefix(1);
    if (octet == '\n') ++myLine;
    return octet;
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
