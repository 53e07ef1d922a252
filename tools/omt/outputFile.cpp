// SPDX-License-Identifier: Apache-2.0
#include "outputFile.h"

#include "modelInput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace
{

using Path = std::filesystem::path;

/// Fails with the reason that errno holds.
[[noreturn]] void refuse()
{
    throw std::system_error(errno, std::generic_category());
}

/// Whether a link stands for an open file of a process, as /dev/stdout does, and not for a name.
bool isOpenFile(const Path& link)
{
    std::error_code ignored;
    const Path folder = link.has_parent_path() ? link.parent_path() : Path(".");
    return std::filesystem::canonical(folder, ignored).native().compare(0, 6, "/proc/") == 0;
}

/// Where a name leads to in the end; a link only where that stands for an open file.
Path followLinks(Path file)
{
    constexpr int theMostLinks = 40;
    std::error_code ignored;
    for (int i = 0; std::filesystem::is_symlink(file, ignored) && !isOpenFile(file); ++i)
    {
        if (i == theMostLinks)
            throw std::system_error(std::make_error_code(std::errc::too_many_symbolic_link_levels));
        file = file.parent_path() / std::filesystem::read_symlink(file, ignored);
    }
    return file;
}

/// Writes all of it to an open file, and closes that in any case.
void writeAndClose(std::FILE* file, std::string_view content)
{
    if (!file) refuse();
    const bool isWritten = std::fwrite(content.data(), 1, content.size(), file) == content.size();
    const int reason = errno;
    const bool isClosed = std::fclose(file) == 0;
    if (isWritten && isClosed) return;
    if (!isWritten) errno = reason;
    refuse();
}

/// A file that is there only until it gets its name, and not at all if it does not.
class NewFile
{
public:
    /// Beside the target, where it can be renamed to it.
    explicit NewFile(const Path& target);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    /// Gives it the owner, as far as that is allowed, and the permissions of the file that it will
    /// replace.
    void takeAfter(const struct stat& old);
    void write(std::string_view content);
    void renameTo(const Path& target);

private:
    Path myPath;
    int myDescriptor = -1;
};

NewFile::NewFile(const Path& target)
{
    constexpr int theMostTries = 100;
    const std::string stem = ".omt-" + std::to_string(::getpid()) + '-';
    for (int i = 0; i < theMostTries && myDescriptor < 0; ++i)
    {
        myPath = target.parent_path() / (stem + std::to_string(i));
        myDescriptor = ::open(myPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (myDescriptor < 0 && errno != EEXIST) refuse();
    }
    if (myDescriptor < 0) refuse();
}

NewFile::~NewFile()
{
    if (myDescriptor >= 0) ::close(myDescriptor);
    if (!myPath.empty()) ::unlink(myPath.c_str());
}

void NewFile::takeAfter(const struct stat& old)
{
    constexpr mode_t thePermissions = 0777;
    // Who may not give files away keeps this one, as with every other program.
    [[maybe_unused]] const int ignored = ::fchown(myDescriptor, old.st_uid, old.st_gid);
    if (::fchmod(myDescriptor, old.st_mode & thePermissions) != 0) refuse();
}

void NewFile::write(std::string_view content)
{
    std::FILE* const file = ::fdopen(myDescriptor, "wb");
    if (file) myDescriptor = -1;
    writeAndClose(file, content);
}

void NewFile::renameTo(const Path& target)
{
    if (std::rename(myPath.c_str(), target.c_str()) != 0) refuse();
    myPath.clear();
}

/// What a file is that may be written, and may be missing.
struct stat writableFile(const Path& file)
{
    struct stat old = {};
    if (::stat(file.c_str(), &old) != 0)
    {
        if (errno != ENOENT) refuse();
        return {};
    }
    if (!S_ISREG(old.st_mode)) return old;
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0) refuse();
    ::close(descriptor);
    return old;
}

void writeWhole(const Path& target, std::string_view content)
{
    const struct stat old = writableFile(target);
    const bool isThere = old.st_mode != 0;
    if (isThere && (!S_ISREG(old.st_mode) || std::filesystem::is_symlink(target)))
        return writeAndClose(std::fopen(target.c_str(), "ab"), content);
    NewFile file(target);
    if (isThere) file.takeAfter(old);
    file.write(content);
    file.renameTo(target);
}

}  // namespace

void writeOutputFile(const std::string& name, std::string_view content)
{
    if (name.empty()) throw InputError("the name of the file to be written is empty");
    std::signal(SIGXFSZ, SIG_IGN);  // a limit on the size of files is a failure like any other
    try
    {
        writeWhole(followLinks(name), content);
    }
    catch (const std::system_error& problem)
    {
        throw InputError(name + ": " + problem.code().message());
    }
}
