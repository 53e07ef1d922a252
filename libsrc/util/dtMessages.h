// SPDX-License-Identifier: Apache-2.0
// What the library says to the people who run it, and where that goes.
#pragma once

#include "util/dtExport.h"

#include <functional>
#include <memory>
#include <ostream>
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
/// it must not write to a message stream itself. If it throws, the message goes to standard error.
using DtMessageSink = std::function<void(DtMessageLevel level, std::string_view message)>;

/// Replaces the receiver of all messages and returns the one before; an empty function stands for
/// the default, which writes each message to standard error on a line of its own.
OMTREADER_EXPORT DtMessageSink DtSetMessageSink(DtMessageSink sink);

/// The least important level that reaches the sink; info at first.
OMTREADER_EXPORT DtMessageLevel DtNotifyLevel() noexcept;
OMTREADER_EXPORT void DtSetNotifyLevel(DtMessageLevel level) noexcept;

/// A text stream for messages of one level.
///
/// A message ends with a line break or with a flush, and then goes to the sink in one piece. Every
/// thread has streams of its own, so messages of two threads are never mixed. What is written is
/// text, never a format: a "%" stays a "%".
class OMTREADER_EXPORT DtMessageStream : public std::ostream
{
public:
    explicit DtMessageStream(DtMessageLevel level);
    /// Hands over what was written since the last message ended.
    ~DtMessageStream() override;

private:
    class Buffer;
    std::unique_ptr<Buffer> myBuffer;
};

extern OMTREADER_EXPORT thread_local DtMessageStream DtWarn;
extern OMTREADER_EXPORT thread_local DtMessageStream DtInfo;
extern OMTREADER_EXPORT thread_local DtMessageStream DtVerbose;
extern OMTREADER_EXPORT thread_local DtMessageStream DtDebug;
