// SPDX-License-Identifier: Apache-2.0
// One value decoded by the tool, in a process of its own, beside what it cannot do without: the
// model read and its datatypes compiled.
#include "modelFiles.h"
#include "omt/omt.h"
#include "ratio.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string_view>

namespace
{

using ratios::modelPath;
using ratios::secondsOf;
using ratios::theRPR;

/// Where the tool is; empty where none is built.
constexpr std::string_view theTool = OMT_TOOL;
/// The member, and a value of it as a trace has it.
constexpr const char* theMember = "BaseEntity.IsPartOf";
constexpr const char* theOctets =
    "00 01 00 02 00 03 48 4c 41 34 32 00 00 03 00 02 00 02 00 00 00 10 00 00 3f c0 00 00 c0 00 00 "
    "00 "
    "3f 00 00 00";

double readAndCompile()
{
    const std::string path = modelPath(theRPR).string();
    return secondsOf(
        [&path]
        {
            const omt::Reading rpr = omt::read({path}, omt::ReadOptions().withMim());
            const omt::Codec codec(rpr.model);
        });
}

/// Ends the program where the tool does not decode the value.
void runTool(const std::string& model)
{
    const std::string words[] = {std::string(theTool), "decode",  "--mim",  model,
                                 "--member",           theMember, "--json", theOctets};
    char* arguments[std::size(words) + 1] = {};
    for (std::size_t i = 0; i < std::size(words); ++i)
        arguments[i] = const_cast<char*>(words[i].c_str());  // which execve() leaves as they are
    posix_spawn_file_actions_t output;
    posix_spawn_file_actions_init(&output);
    posix_spawn_file_actions_addopen(&output, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    int status = posix_spawn(&process, arguments[0], &output, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&output);
    if (status == 0 && waitpid(process, &status, 0) == process && status == 0) return;
    std::fprintf(stderr, "decode_cold: %s does not decode\n", arguments[0]);
    std::exit(1);
}

double decode()
{
    const std::string path = modelPath(theRPR).string();
    return secondsOf([&path] { runTool(path); });
}

}  // namespace

std::vector<ratios::Ratio> ratios::coldStartRatios()
{
    if (theTool.empty()) return {};
    return {
        {"decode_cold", readAndCompile, decode, theRPR}
    };
}
