// SPDX-License-Identifier: Apache-2.0
// DtMessageStream collects what is written to it and hands it over message by message.
#pragma once

#include "util/dtExport.h"

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

/// How much a message matters; the order is from the most to the least.
enum class DtMessageLevel
{
    fatal,    ///< the program stops with this message; always shown
    warn,     ///< something in the input or the call was not as it should be
    info,     ///< news that most users want
    verbose,  ///< what the library is doing
    debug     ///< for those who work on the library
};

/// A text stream for messages of one level.
///
/// A message ends with a line break or with a flush, and then goes to the sink in one piece. Every
/// thread has streams of its own, so messages of two threads are never mixed. What is written is
/// text, never a format: a "%" stays a "%". Where memory is short a message may come in pieces.
class OMTREADER_EXPORT DtMessageStream : public std::ostream
{
public:
    explicit DtMessageStream(DtMessageLevel level);
    /// Hands over what was written since the last message ended.
    ~DtMessageStream() override;

    /// Hands over every piece at once from now on, as nobody will be there for the last one.
    void stopCollecting() noexcept { myBuffer.stopCollecting(); }

private:
    /// A part of the stream, so that a first message takes no memory.
    class OMTREADER_EXPORT Buffer : public std::streambuf
    {
    public:
        explicit Buffer(DtMessageLevel level) : myLevel(level) {}
        ~Buffer() override;
        void handOver() noexcept;
        void stopCollecting() noexcept;

    protected:
        int_type overflow(int_type octet) override;
        std::streamsize xsputn(const char* octets, std::streamsize count) override;
        int sync() override;

    private:
        void add(std::string_view piece) noexcept;

        DtMessageLevel myLevel;
        bool myIsCollecting = true;
        std::string myMessage;
    };

    Buffer myBuffer;
};
