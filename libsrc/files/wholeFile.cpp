// SPDX-License-Identifier: Apache-2.0
#include "files/wholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace files
{

namespace
{

using Path = std::filesystem::path;

/// Fails with the reason that errno holds.
[[noreturn]] void refuse()
{
    throw std::system_error(errno, std::generic_category());
}

/// An open file, closed in any case.
class Descriptor
{
public:
    explicit Descriptor(int number) : myNumber(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (myNumber >= 0) ::close(myNumber);
    }

    void open(const Path& path, int flags, mode_t permissions = 0)
    {
        do myNumber = ::open(path.c_str(), flags | O_WRONLY | O_CLOEXEC, permissions);
        while (myNumber < 0 && errno == EINTR);
    }
    bool isOpen() const { return myNumber >= 0; }
    int number() const { return myNumber; }

    void write(std::string_view content) const
    {
        while (!content.empty())
        {
            const ssize_t written = ::write(myNumber, content.data(), content.size());
            if (written < 0 && errno != EINTR) refuse();
            if (written > 0) content.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    /// Some file systems say only here that the disk is full.
    void close()
    {
        const int result = ::close(myNumber);
        myNumber = -1;
        if (result != 0) refuse();
    }

private:
    int myNumber = -1;
};

/// While it lives, no signal ends this thread.
class NoSignals
{
public:
    NoSignals()
    {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &myBefore);
    }
    NoSignals(const NoSignals&) = delete;
    NoSignals& operator=(const NoSignals&) = delete;
    ~NoSignals() { ::pthread_sigmask(SIG_SETMASK, &myBefore, nullptr); }

private:
    sigset_t myBefore;
};

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

Path folderOf(const Path& file)
{
    return file.has_parent_path() ? file.parent_path() : Path(".");
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
    Descriptor opened(-1);
    opened.open(file, 0);
    if (!opened.isOpen()) refuse();
    return old;
}

/// The permissions that a new file gets in this process.
mode_t permissionsOfNewFiles()
{
    // umask() tells only by changing it, for all threads.
    mode_t mask = 077;
    if (std::FILE* const status = std::fopen("/proc/self/status", "re"))
    {
        char line[256];
        while (std::fgets(line, sizeof line, status))
            if (std::strncmp(line, "Umask:", 6) == 0)
                mask = static_cast<mode_t>(std::strtoul(line + 6, nullptr, 8));
        std::fclose(status);
    }
    return 0666 & ~mask;
}

/// Gives a file the owner, as far as that is allowed, and the permissions of the one it replaces.
void takeAfter(int descriptor, const struct stat& old)
{
    constexpr mode_t thePermissions = 0777;
    const bool isThere = old.st_mode != 0;
    // Who may not give files away keeps this one, as with every other program.
    if (isThere && ::fchown(descriptor, old.st_uid, old.st_gid) != 0) errno = 0;
    const mode_t mode = isThere ? old.st_mode & thePermissions : permissionsOfNewFiles();
    if (::fchmod(descriptor, mode) != 0) refuse();
}

/// Calls `make` with names in the folder of the target until it makes one that was not there.
template <typename Make>
Path makeName(const Path& target, Make make)
{
    constexpr int theMostTries = 100;
    const std::string stem = ".omt-" + std::to_string(::getpid()) + '-';
    for (int i = 0; i < theMostTries; ++i)
    {
        Path path = folderOf(target) / (stem + std::to_string(i));
        if (make(path)) return path;
        if (errno != EEXIST) refuse();
    }
    refuse();
}

/// Gives the file of a name the name of the target, or none at all.
void moveTo(const Path& target, const Path& path)
{
    if (std::rename(path.c_str(), target.c_str()) == 0) return;
    const int reason = errno;
    ::unlink(path.c_str());
    errno = reason;
    refuse();
}

void fill(Descriptor& file, std::string_view content, const struct stat& old)
{
    file.write(content);
    takeAfter(file.number(), old);
    if (::fsync(file.number()) != 0) refuse();
}

/// Where the file system has files without names, there is nothing to be left over.
bool writeNameless(const Path& target, std::string_view content, const struct stat& old)
{
    Descriptor file(-1);
    file.open(folderOf(target), O_TMPFILE, 0600);
    if (!file.isOpen()) return false;
    fill(file, content, old);
    const std::string place = "/proc/self/fd/" + std::to_string(file.number());
    const NoSignals noSignals;
    const Path path = makeName(target,
                               [&](const Path& name) {
                                   return ::linkat(AT_FDCWD, place.c_str(), AT_FDCWD, name.c_str(),
                                                   AT_SYMLINK_FOLLOW) == 0;
                               });
    moveTo(target, path);
    file.close();
    return true;
}

/// Elsewhere, signals wait until the file has its name or is gone.
void writeNamed(const Path& target, std::string_view content, const struct stat& old)
{
    const NoSignals noSignals;
    Descriptor file(-1);
    const Path path = makeName(target,
                               [&](const Path& name)
                               {
                                   file.open(name, O_CREAT | O_EXCL, 0600);
                                   return file.isOpen();
                               });
    try
    {
        fill(file, content, old);
        file.close();
    }
    catch (...)
    {
        ::unlink(path.c_str());
        throw;
    }
    moveTo(target, path);
}

void writeStraight(const Path& target, std::string_view content)
{
    Descriptor file(-1);
    file.open(target, O_CREAT | O_APPEND, 0666);
    if (!file.isOpen()) refuse();
    file.write(content);
    file.close();
}

/// So that the new name is still there after a failure of power. Not every folder can do it.
void syncFolder(const Path& target)
{
    const int folder = ::open(folderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) return;
    ::fsync(folder);
    ::close(folder);
}

void writeWhole(const Path& target, std::string_view content)
{
    const struct stat old = writableFile(target);
    const bool isThere = old.st_mode != 0;
    if (isThere && (!S_ISREG(old.st_mode) || std::filesystem::is_symlink(target)))
        return writeStraight(target, content);
    if (!writeNameless(target, content, old)) writeNamed(target, content, old);
    syncFolder(target);
}

}  // namespace

std::error_code writeWholeFile(const std::string& name, std::string_view content) noexcept
{
    try
    {
        writeWhole(followLinks(name), content);
        return {};
    }
    catch (const std::system_error& problem)
    {
        return problem.code();
    }
    catch (...)
    {
        return std::make_error_code(std::errc::not_enough_memory);
    }
}

}  // namespace files
