// SPDX-License-Identifier: Apache-2.0
// Where the s-expression reader takes its characters from.
#pragma once

#include "util/dtExport.h"

#include <cstddef>
#include <cstdio>
#include <string_view>
#include <vector>

/// Octets one after the other, with the line they are in.
class OMTREADER_EXPORT DtlInputStream
{
public:
    /// What get() and peek() give at the end.
    static constexpr int theEnd = -1;

    DtlInputStream() = default;
    DtlInputStream(const DtlInputStream&) = delete;
    DtlInputStream& operator=(const DtlInputStream&) = delete;
    virtual ~DtlInputStream();

    /// The next octet, 0 to 255, without taking it.
    int peek();
    /// Takes the next octet.
    int get();
    /// The next octets, as many as are at hand, without taking them; none at the end only. Valid
    /// until the next look, even when they are taken meanwhile.
    std::string_view ahead()
    {
        if (myAhead.empty()) nextBlock();
        return myAhead;
    }
    /// Takes so many of the octets that are at hand.
    void take(std::size_t count) { myAhead.remove_prefix(count); }
    /// The line of the next octet, counted from 1.
    std::size_t line();

protected:
    /// The octets after those given before, valid until the next call; none at the end.
    virtual std::string_view readBlock() = 0;

private:
    void nextBlock();

    std::string_view myAhead;
    const char* myCounted = nullptr;  // where in its block the count of lines stands
    std::size_t myLine = 1;
};

/// The octets of an open file from where it stands.
///
/// The stream owns the file and closes it at its own end. A null file reads as an empty one, and a
/// read error as the end.
class OMTREADER_EXPORT DtlFileInputStream : public DtlInputStream
{
public:
    explicit DtlFileInputStream(std::FILE* file);
    ~DtlFileInputStream() override;

protected:
    std::string_view readBlock() override;

private:
    std::FILE* myFile;
    std::vector<char> myBuffer;
};

/// The octets of a text in memory, which has to stay where it is as long as it is read.
class OMTREADER_EXPORT DtlStringInputStream : public DtlInputStream
{
public:
    explicit DtlStringInputStream(std::string_view text) : myText(text) {}
    ~DtlStringInputStream() override;

protected:
    std::string_view readBlock() override;

private:
    std::string_view myText;
};
