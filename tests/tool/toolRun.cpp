// SPDX-License-Identifier: Apache-2.0
#include "toolRun.h"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace
{

std::string contentOf(const std::filesystem::path& file)
{
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
}

}  // namespace

Outcome ToolRun::run(const std::string& arguments, const std::string& environment)
{
    const std::string command = "cd " + myFolder.path().string() + " && " + environment +
                                " timeout 60 " OMT_TOOL " " + arguments + " >.out 2>.err";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(myFolder.path() / ".out"),
            contentOf(myFolder.path() / ".err")};
}
