// SPDX-License-Identifier: Apache-2.0
// Defines the message streams of a thread so that nothing destroys them.
//
// Other destructors of the thread and of the process come later and may have something to say, so
// the streams are members of unions, which leave them as they are. Programs see them as the streams
// that util/dtMessages.h declares; this file must not include it, as it says another type for the
// same names. References to streams elsewhere would not do: clang 14 takes a thread's reference for
// a constant and reads it before it is set.
#include "util/dtMessageStream.h"

namespace omtreader
{

template <DtMessageLevel level>
union LastingStream
{
    LastingStream() : stream(level) {}
    LastingStream(const LastingStream&) = delete;
    LastingStream& operator=(const LastingStream&) = delete;
    /// At the end of a thread, hands over what was written since the last message ended.
    ~LastingStream() { stream.stopCollecting(); }

    DtMessageStream stream;
};

}  // namespace omtreader

OMTREADER_EXPORT thread_local omtreader::LastingStream<DtMessageLevel::warn> DtWarn;
OMTREADER_EXPORT thread_local omtreader::LastingStream<DtMessageLevel::info> DtInfo;
OMTREADER_EXPORT thread_local omtreader::LastingStream<DtMessageLevel::verbose> DtVerbose;
OMTREADER_EXPORT thread_local omtreader::LastingStream<DtMessageLevel::debug> DtDebug;
