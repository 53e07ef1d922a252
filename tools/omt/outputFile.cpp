// SPDX-License-Identifier: Apache-2.0
#include "outputFile.h"

#include "errors.h"
#include "files/wholeFile.h"

#include <csignal>

void writeOutputFile(const std::string& name, std::string_view content)
{
    if (name.empty()) throw InputError("the name of the file to be written is empty");
    std::signal(SIGXFSZ, SIG_IGN);  // a limit on the size of files is a failure like any other
    if (const std::error_code problem = files::writeWholeFile(name, content))
        throw InputError(name + ": " + problem.message());
}
