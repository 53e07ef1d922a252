// SPDX-License-Identifier: Apache-2.0
#include "gitFile.h"

#include "errors.h"
#include "inputFile.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <vector>

namespace
{

struct GitResult
{
    std::string output;
    bool isDone = false;
};

/// Becomes git, with its output at the end of a pipe and what it complains of nowhere.
[[noreturn]] void becomeGit(const std::vector<std::string>& words, int output)
{
    std::vector<char*> arguments;
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    ::dup2(nowhere, STDIN_FILENO);
    ::dup2(nowhere, STDERR_FILENO);
    ::dup2(output, STDOUT_FILENO);
    ::execvp("git", arguments.data());
    ::_exit(127);
}

/// What git writes to standard output for these arguments.
GitResult runGit(const std::string& folder, std::vector<std::string> arguments)
{
    std::vector<std::string> words = {"git", "-C", folder};
    words.insert(words.end(), arguments.begin(), arguments.end());
    int ends[2] = {};
    if (::pipe2(ends, O_CLOEXEC) != 0) throw InputError("git cannot be run: no pipe");
    const pid_t child = ::fork();
    if (child == 0) becomeGit(words, ends[1]);
    ::close(ends[1]);
    std::FILE* const stream = ::fdopen(ends[0], "rb");
    if (child < 0 || !stream) throw InputError("git cannot be run: no process");
    GitResult result;
    result.output = contentOf(stream, "git");
    std::fclose(stream);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 127) throw InputError("git cannot be run");
    result.isDone = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return result;
}

}  // namespace

std::optional<std::string> contentInGit(const std::string& revision, const std::string& file)
{
    const std::filesystem::path path(file);
    const std::string folder = path.has_parent_path() ? path.parent_path().string() : ".";
    // Git would take it for an option.
    if (revision.empty() || revision.front() == '-')
        throw InputError('"' + revision + "\" is no revision");
    if (!runGit(folder, {"rev-parse", "--quiet", "--verify", revision + "^{tree}"}).isDone)
        throw InputError(file + ": lies in no repository of git that has a revision \"" + revision +
                         '"');
    // Unlike `git show` this runs no programs that a repository names.
    GitResult content =
        runGit(folder, {"cat-file", "blob", revision + ":./" + path.filename().string()});
    if (!content.isDone) return std::nullopt;
    return std::move(content.output);
}
