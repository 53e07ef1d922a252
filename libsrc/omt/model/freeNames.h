// SPDX-License-Identifier: Apache-2.0
// FreeNames makes names that nothing else has.
#pragma once

#include "omt/base/nameHash.h"

#include <string>

namespace omt
{

/// Names that are taken, and new ones beside them: "Name", else "Name_2" and so on.
class FreeNames
{
public:
    /// Whether the name was free until now.
    bool take(const std::string& name) { return myTaken.insert(name).second; }

    std::string free(const std::string& wanted)
    {
        if (take(wanted)) return wanted;
        // Goes on where it ended, as a document may want the same name as often as it likes.
        std::size_t& number = myNumbers.try_emplace(wanted, 1).first->second;
        std::string name;
        do name = wanted + '_' + std::to_string(++number);
        while (!take(name));
        return name;
    }

private:
    OwnNameSet myTaken;
    OwnNameMap<std::size_t> myNumbers;
};

}  // namespace omt
