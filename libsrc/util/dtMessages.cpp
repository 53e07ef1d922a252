// SPDX-License-Identifier: Apache-2.0
// One sink for all streams and threads; each stream collects a message before it hands it over.
#include "util/dtMessages.h"

#include <atomic>
#include <iostream>
#include <locale>
#include <mutex>
#include <streambuf>
#include <string>
#include <utility>

namespace
{

std::atomic<DtMessageLevel> theLevel = DtMessageLevel::info;

struct SinkPlace
{
    std::mutex mutex;
    DtMessageSink sink;  // empty for the default
};

SinkPlace& sinkPlace()
{
    // Never destroyed: a thread that ends late may still have a message to hand over.
    static SinkPlace* const place = new SinkPlace;
    return *place;
}

void writeToStandardError(std::string_view message)
{
    std::cerr << message;
    if (message.back() != '\n') std::cerr << '\n';
    std::cerr.flush();
}

void deliver(DtMessageLevel level, std::string_view message)
{
    if (message.empty() || level > theLevel.load(std::memory_order_relaxed)) return;
    SinkPlace& place = sinkPlace();
    const std::lock_guard lock(place.mutex);
    try
    {
        if (place.sink) return place.sink(level, message);
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
    SinkPlace& place = sinkPlace();
    const std::lock_guard lock(place.mutex);
    return std::exchange(place.sink, std::move(sink));
}

DtMessageLevel DtNotifyLevel() noexcept
{
    return theLevel.load(std::memory_order_relaxed);
}

void DtSetNotifyLevel(DtMessageLevel level) noexcept
{
    theLevel.store(level, std::memory_order_relaxed);
}

class DtMessageStream::Buffer : public std::streambuf
{
public:
    explicit Buffer(DtMessageLevel level) : myLevel(level) {}

    void handOver()
    {
        std::string message;
        message.swap(myMessage);
        deliver(myLevel, message);
    }

protected:
    int_type overflow(int_type octet) override
    {
        if (traits_type::eq_int_type(octet, traits_type::eof())) return traits_type::not_eof(octet);
        const char c = traits_type::to_char_type(octet);
        xsputn(&c, 1);
        return octet;
    }

    std::streamsize xsputn(const char* octets, std::streamsize count) override
    {
        std::string_view rest(octets, static_cast<std::size_t>(count));
        for (std::size_t end; (end = rest.find('\n')) != std::string_view::npos;)
        {
            myMessage += rest.substr(0, end + 1);
            rest.remove_prefix(end + 1);
            handOver();
        }
        myMessage += rest;
        return count;
    }

    int sync() override
    {
        handOver();
        return 0;
    }

private:
    DtMessageLevel myLevel;
    std::string myMessage;
};

DtMessageStream::DtMessageStream(DtMessageLevel level)
    : std::ostream(nullptr), myBuffer(std::make_unique<Buffer>(level))
{
    rdbuf(myBuffer.get());
    imbue(std::locale::classic());  // numbers in messages look the same everywhere
}

DtMessageStream::~DtMessageStream()
{
    myBuffer->handOver();
}

thread_local DtMessageStream DtWarn(DtMessageLevel::warn);
thread_local DtMessageStream DtInfo(DtMessageLevel::info);
thread_local DtMessageStream DtVerbose(DtMessageLevel::verbose);
thread_local DtMessageStream DtDebug(DtMessageLevel::debug);
