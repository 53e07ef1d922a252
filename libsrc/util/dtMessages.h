// SPDX-License-Identifier: Apache-2.0
// What the library says to the people who run it, and where that goes.
#pragma once

#include "util/dtExport.h"
#include "util/dtMessageStream.h"

#include <functional>
#include <string_view>

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

/// The streams of this thread. They can be written to for as long as the thread runs, and in the
/// main thread until the end of the process, in destructors of static objects too.
extern OMTREADER_EXPORT thread_local DtMessageStream DtWarn;
extern OMTREADER_EXPORT thread_local DtMessageStream DtInfo;
extern OMTREADER_EXPORT thread_local DtMessageStream DtVerbose;
extern OMTREADER_EXPORT thread_local DtMessageStream DtDebug;
