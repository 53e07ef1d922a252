// SPDX-License-Identifier: Apache-2.0
#include "classSearch.h"

#include "modelInput.h"
#include "omt/base/nearestNames.h"
#include "plainText.h"

namespace
{

using Classes = std::vector<const DtFedNode*>;

/// The classes that a name may mean: those of this full name, else those whose full name ends so.
Classes candidates(const Classes& all, const std::string& name)
{
    Classes exact;
    Classes ending;
    for (const DtFedNode* one : all)
    {
        const DtString& fullName = one->getFullName();
        if (fullName == name.c_str())
            exact.push_back(one);
        else if (fullName.endsWith('.' + name))
            ending.push_back(one);
    }
    return exact.empty() ? ending : exact;
}

/// A sentence for a name that means more than one class.
std::string ambiguousName(const std::string& name, const Classes& found)
{
    constexpr std::size_t theMostShown = 10;
    std::vector<std::string> names;
    for (const DtFedNode* one : found)
        if (names.size() < theMostShown) names.push_back(one->getFullName().str());
    if (names.size() < found.size()) names.emplace_back("...");
    return '"' + name + "\" is the name of " + std::to_string(found.size()) +
           " classes; choose one of " + joined(names, ", ");
}

}  // namespace

const DtFedNode& findClass(const Classes& classes, const char* kind, const std::string& name)
{
    const Classes found = candidates(classes, name);
    if (found.size() == 1) return *found.front();
    if (!found.empty()) throw InputError(ambiguousName(name, found));

    const bool isPath = name.find('.') != std::string::npos;
    std::vector<std::string> names;
    for (const DtFedNode* one : classes)
        names.push_back(isPath ? one->getFullName().str() : one->getName().str());
    throw InputError(omt::unknownName(kind, name, names));
}
