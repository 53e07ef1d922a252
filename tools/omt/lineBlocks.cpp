// SPDX-License-Identifier: Apache-2.0
#include "lineBlocks.h"

#include "errors.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace
{

constexpr std::size_t theBlock = 1U << 20;
constexpr std::size_t theLongestLine = 64U << 20;

[[noreturn]] void fail(const std::string& name)
{
    throw InputError(name + ": " + std::generic_category().message(errno));
}

}  // namespace

LineBlocks::LineBlocks(const std::string& file)
    : myName(file == "-" ? "standard input" : file),
      myFile(file == "-" ? STDIN_FILENO : ::open(file.c_str(), O_RDONLY | O_CLOEXEC))
{
    struct stat status;
    if (myFile < 0 || ::fstat(myFile, &status) != 0) fail(myName);
    if (S_ISDIR(status.st_mode)) throw InputError(myName + " is a folder");
    if (S_ISREG(status.st_mode)) mySize = static_cast<std::uint64_t>(status.st_size);
}

LineBlocks::~LineBlocks()
{
    if (myFile > STDIN_FILENO) ::close(myFile);
}

bool LineBlocks::next(std::string& block)
{
    block = std::move(myRest);
    myRest.clear();
    while (!myIsAtEnd)
    {
        const std::size_t before = block.size();
        if (before > theLongestLine) throw InputError(myName + ": a line of more than 64 MB");
        block.resize(before + theBlock);
        const ssize_t count = ::read(myFile, block.data() + before, theBlock);
        if (count < 0 && errno != EINTR) fail(myName);
        block.resize(before + static_cast<std::size_t>(count < 0 ? 0 : count));
        myRead += block.size() - before;
        myIsAtEnd = count == 0;
        const std::size_t last = std::string_view(block).substr(before).rfind('\n');
        if (last == std::string_view::npos) continue;
        myRest.assign(block, before + last + 1);
        block.resize(before + last + 1);
        return true;
    }
    return !block.empty();
}

double LineBlocks::progress() const
{
    return mySize == 0 ? -1 : static_cast<double>(myRead) / static_cast<double>(mySize);
}
