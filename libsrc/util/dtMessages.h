// SPDX-License-Identifier: Apache-2.0
// What the library says to the people who run it, and where that goes.
#pragma once

#include "util/dtExport.h"

#include <functional>
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

/// Receives one whole message. The text ends with a line break only where its writer put one.
///
/// Called from the thread that wrote the message, for one message at a time in the whole process;
/// it must neither write to a message stream itself nor set a sink: what it writes goes to standard
/// error, and a sink that it sets is refused with a message there. If it throws, the message goes
/// to standard error.
using DtMessageSink = std::function<void(DtMessageLevel level, std::string_view message)>;

/// Replaces the receiver of all messages and returns the one before; an empty function stands for
/// the default, which writes each message to standard error on a line of its own. Called by a sink
/// it changes nothing and returns an empty function.
OMTREADER_EXPORT DtMessageSink DtSetMessageSink(DtMessageSink sink);

/// The least important level that reaches the sink; info at first.
OMTREADER_EXPORT DtMessageLevel DtNotifyLevel() noexcept;
OMTREADER_EXPORT void DtSetNotifyLevel(DtMessageLevel level) noexcept;

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

/// The streams of this thread. They can be written to for as long as the thread runs, and in the
/// main thread until the end of the process, in destructors of static objects too.
extern OMTREADER_EXPORT thread_local DtMessageStream& DtWarn;
extern OMTREADER_EXPORT thread_local DtMessageStream& DtInfo;
extern OMTREADER_EXPORT thread_local DtMessageStream& DtVerbose;
extern OMTREADER_EXPORT thread_local DtMessageStream& DtDebug;
