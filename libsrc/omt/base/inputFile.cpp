// SPDX-License-Identifier: Apache-2.0
#include "omt/base/inputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace omt
{

namespace
{

/// A descriptor that is closed at the end, but for that of standard input.
class Descriptor
{
public:
    explicit Descriptor(const std::string& name)
        : myIsOurs(name != "-"),
          myNumber(myIsOurs ? ::open(name.c_str(), O_RDONLY | O_CLOEXEC) : STDIN_FILENO)
    {
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (myIsOurs && myNumber >= 0) ::close(myNumber);
    }
    int number() const { return myNumber; }

private:
    bool myIsOurs;
    int myNumber;
};

std::string reason(const char* clause, int error)
{
    return std::string(clause) + ": " + std::generic_category().message(error);
}

/// Where to begin: what the file system says of a file, or one page of a pipe.
std::size_t likelySize(int descriptor, std::size_t mostOctets)
{
    constexpr std::size_t theLeast = 65536;
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size < 0)
        return theLeast;
    return std::min(static_cast<std::size_t>(status.st_size), mostOctets) + 1;
}

}  // namespace

InputFile readWhole(const std::string& name, std::size_t mostOctets)
{
    InputFile file;
    const Descriptor input(name);
    if (input.number() < 0)
    {
        file.fault = reason("cannot be opened", errno);
        return file;
    }
    std::size_t filled = 0;
    file.octets.resize(likelySize(input.number(), mostOctets));
    for (;;)
    {
        if (filled == file.octets.size()) file.octets.resize(filled * 2);
        const ssize_t got =
            ::read(input.number(), file.octets.data() + filled, file.octets.size() - filled);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) file.fault = reason("cannot be read", errno);
        if (got <= 0) break;
        filled += static_cast<std::size_t>(got);
        if (filled <= mostOctets) continue;
        file.fault = "has more than " + std::to_string(mostOctets) + " octets";
        break;
    }
    file.octets.resize(file.fault.empty() ? filled : 0);
    return file;
}

}  // namespace omt
