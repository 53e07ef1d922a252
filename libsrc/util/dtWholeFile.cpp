// SPDX-License-Identifier: Apache-2.0
#include "util/dtWholeFile.h"

#include "files/wholeFile.h"

std::error_code DtWriteWholeFile(const std::string& name, std::string_view content) noexcept
{
    return files::writeWholeFile(name, content);
}
