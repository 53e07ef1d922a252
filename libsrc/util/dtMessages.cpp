// SPDX-License-Identifier: Apache-2.0
// One sink for all streams and threads; each stream collects a message before it hands it over.
#include "util/dtMessages.h"

#include <atomic>
#include <exception>
#include <iostream>
#include <locale>
#include <mutex>
#include <utility>

namespace
{

std::atomic<DtMessageLevel> theLevel = DtMessageLevel::info;

struct SharedSink
{
    std::mutex mutex;
    DtMessageSink sink;  // empty for the default
};

SharedSink& sharedSink()
{
    // Never destroyed: a thread that ends late may still have a message to hand over.
    static SharedSink* const theSink = new SharedSink;
    return *theSink;
}

void writeToStandardError(std::string_view message)
{
    std::cerr << message;
    if (message.back() != '\n') std::cerr << '\n';
    std::cerr.flush();
}

thread_local bool theSinkIsRunning = false;

/// Gives a message to the sink, and says whether that took it. A sink of this thread that is
/// running already takes none.
bool giveToSink(DtMessageLevel level, std::string_view message)
{
    if (theSinkIsRunning) return false;
    struct Running
    {
        Running() { theSinkIsRunning = true; }
        ~Running() { theSinkIsRunning = false; }
    } const running;
    SharedSink& shared = sharedSink();
    const std::lock_guard lock(shared.mutex);
    if (shared.sink)
        shared.sink(level, message);
    else
        writeToStandardError(message);
    return true;
}

void deliver(DtMessageLevel level, std::string_view message) noexcept
{
    if (message.empty() || level > theLevel.load(std::memory_order_relaxed)) return;
    try
    {
        if (giveToSink(level, message)) return;
    }
    catch (...)
    {
        // An exception would close this thread's stream for good; the message goes where it can.
    }
    writeToStandardError(message);
}

}  // namespace

DtMessageSink DtSetMessageSink(DtMessageSink sink)
{
    if (theSinkIsRunning)
    {
        writeToStandardError("Error: a message sink called DtSetMessageSink(); nothing was set\n");
        return {};
    }
    SharedSink& shared = sharedSink();
    const std::lock_guard lock(shared.mutex);
    return std::exchange(shared.sink, std::move(sink));
}

DtMessageLevel DtNotifyLevel() noexcept
{
    return theLevel.load(std::memory_order_relaxed);
}

void DtSetNotifyLevel(DtMessageLevel level) noexcept
{
    theLevel.store(level, std::memory_order_relaxed);
}

DtMessageStream::Buffer::~Buffer() = default;

void DtMessageStream::Buffer::handOver() noexcept
{
    std::string message;
    message.swap(myMessage);
    deliver(myLevel, message);
}

void DtMessageStream::Buffer::stopCollecting() noexcept
{
    handOver();
    myIsCollecting = false;
}

/// Adds to the message. Where there is no memory for it, it goes to the sink in pieces.
void DtMessageStream::Buffer::add(std::string_view piece) noexcept
{
    try
    {
        if (myIsCollecting)
        {
            myMessage += piece;
            return;
        }
    }
    catch (const std::exception&)
    {
        handOver();
    }
    deliver(myLevel, piece);
}

DtMessageStream::Buffer::int_type DtMessageStream::Buffer::overflow(int_type octet)
{
    if (traits_type::eq_int_type(octet, traits_type::eof())) return traits_type::not_eof(octet);
    const char c = traits_type::to_char_type(octet);
    xsputn(&c, 1);
    return octet;
}

std::streamsize DtMessageStream::Buffer::xsputn(const char* octets, std::streamsize count)
{
    std::string_view rest(octets, static_cast<std::size_t>(count));
    for (std::size_t end; (end = rest.find('\n')) != std::string_view::npos;)
    {
        add(rest.substr(0, end + 1));
        rest.remove_prefix(end + 1);
        handOver();
    }
    if (!rest.empty()) add(rest);
    return count;
}

int DtMessageStream::Buffer::sync()
{
    handOver();
    return 0;
}

DtMessageStream::DtMessageStream(DtMessageLevel level) : std::ostream(nullptr), myBuffer(level)
{
    rdbuf(&myBuffer);
    imbue(std::locale::classic());  // numbers in messages look the same everywhere
}

DtMessageStream::~DtMessageStream()
{
    myBuffer.handOver();
}
