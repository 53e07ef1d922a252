// SPDX-License-Identifier: Apache-2.0
#include "util/dtFilename.h"

bool DtFilename::isValid() const
{
    return !myName.empty() && !myName.contains(std::string_view("\0", 1));
}

void DtFilename::stripPath()
{
    const std::string_view name = myName.view();
    myName = DtString(name.substr(name.rfind('/') + 1));
}
