// SPDX-License-Identifier: Apache-2.0
#include "updateStream.h"

#include "errors.h"
#include "lineBlocks.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;

void writeAll(std::string_view text)
{
    while (!text.empty())
    {
        const ssize_t count = ::write(STDOUT_FILENO, text.data(), text.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0)
            throw InputError("standard output: " + std::generic_category().message(errno));
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

/// Shows a line that is written over, from the first second on and ten times in each.
class Progress
{
public:
    ~Progress()
    {
        if (myIsShown) std::fputs("\r\x1b[K", stderr);
    }
    void show(double part)
    {
        const Clock::time_point now = Clock::now();
        if (!myIsTerminal || part < 0 || now < myNext) return;
        constexpr int theWidth = 40;
        const int done = static_cast<int>(part * theWidth);
        std::fprintf(stderr, "\r[%.*s%*s] %3d %%", done, "########################################",
                     theWidth - done, "", static_cast<int>(part * 100));
        std::fflush(stderr);
        myIsShown = true;
        myNext = now + std::chrono::milliseconds(100);
    }

private:
    const bool myIsTerminal = ::isatty(STDERR_FILENO) != 0;
    bool myIsShown = false;
    Clock::time_point myNext = Clock::now() + std::chrono::seconds(1);
};

/// Threads that each take the next block, decode it, and wait with the result for their turn.
class Queue
{
public:
    explicit Queue(LineBlocks& blocks) : myBlocks(blocks) {}

    /// What one thread does until there are no blocks or another one has failed.
    void work(omt::UpdateDecoder& decoder);
    void rethrow() const
    {
        if (myFailure) std::rethrow_exception(myFailure);
    }
    omt::UpdateCounts counts;

private:
    bool take(std::string& block, std::uint64_t& turn);
    bool give(const std::string& result, std::uint64_t turn);
    void fail();

    LineBlocks& myBlocks;
    std::mutex myReading;
    std::uint64_t myTaken = 0;
    std::mutex myWriting;
    std::condition_variable myTurns;
    std::uint64_t myWritten = 0;
    Progress myProgress;
    double myPart = 0;
    std::exception_ptr myFailure;
};

bool Queue::take(std::string& block, std::uint64_t& turn)
{
    const std::lock_guard lock(myReading);
    if (!myBlocks.next(block)) return false;
    turn = myTaken++;
    const std::lock_guard progress(myWriting);
    myPart = myBlocks.progress();
    return !myFailure;
}

bool Queue::give(const std::string& result, std::uint64_t turn)
{
    std::unique_lock lock(myWriting);
    myTurns.wait(lock, [&] { return myFailure || myWritten == turn; });
    if (myFailure) return false;
    writeAll(result);
    ++myWritten;
    myProgress.show(myPart);
    myTurns.notify_all();
    return true;
}

void Queue::fail()
{
    const std::lock_guard lock(myWriting);
    if (!myFailure) myFailure = std::current_exception();
    myTurns.notify_all();
}

void Queue::work(omt::UpdateDecoder& decoder)
{
    try
    {
        std::string block;
        std::string result;
        for (std::uint64_t turn = 0; take(block, turn);)
        {
            result.clear();
            decoder.decode(block, result);
            if (!give(result, turn)) break;
        }
    }
    catch (...)
    {
        fail();
    }
    const std::lock_guard lock(myWriting);
    counts += decoder.counts();
}

}  // namespace

omt::UpdateCounts decodeRecording(omt::UpdateDecoder decoder, const std::string& file,
                                  unsigned jobs)
{
    LineBlocks blocks(file);
    std::string block;
    std::string result;
    while (block.empty() && blocks.next(block))
    {
    }
    std::string_view text = block;
    if (const auto why = decoder.begin(text, result)) throw InputError(file + ": " + *why);
    // The rest of the first block; the threads take the others.
    decoder.decode(text, result);
    writeAll(result);

    Queue queue(blocks);
    std::vector<omt::UpdateDecoder> decoders(jobs - 1, decoder);
    std::vector<std::jthread> threads;  // joined whatever happens
    for (omt::UpdateDecoder& one : decoders)
        threads.emplace_back([&queue, &one] { queue.work(one); });
    queue.work(decoder);
    threads.clear();
    queue.rethrow();
    return queue.counts;
}
