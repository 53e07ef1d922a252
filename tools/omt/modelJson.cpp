// SPDX-License-Identifier: Apache-2.0
#include "modelJson.h"

#include "modelCounts.h"
#include "modelLists.h"

#include <nlohmann/json.hpp>

#include <unordered_set>

namespace
{

using Json = nlohmann::ordered_json;

template <typename Class>
Json classNames(DtOMTTree& tree)
{
    Json names = Json::array();
    for (const Class* node : ClassKind<Class>::all(tree))
        names.push_back(node->getFullName().str());
    return names;
}

Json counts(DtOMTTree& tree)
{
    Json result = Json::object();
    for (const Count& count : countsOf(tree)) result[count.key] = count.number;
    return result;
}

Json datatypes(DtOMTTree& tree)
{
    Json result = Json::object();
    auto& entries = result.get_ref<Json::object_t&>();
    std::unordered_set<std::string_view> seen;  // the object would search itself, entry by entry
    for (const Datatype& datatype : datatypesOf(tree))
    {
        const DtString& name = nameOf(datatype);
        if (seen.insert(name.view()).second) entries.emplace_back(name.str(), kindOf(datatype));
    }
    return result;
}

}  // namespace

std::string jsonOf(DtOMTTree& tree)
{
    Json model;
    model["name"] = tree.getName().str();
    model["version"] = tree.getVersionNo().str();
    model["hlaVersion"] = static_cast<int>(tree.hlaVersion());
    model["counts"] = counts(tree);
    model["objectClasses"] = classNames<DtObjectClassFedNode>(tree);
    model["interactionClasses"] = classNames<DtInteractionClassFedNode>(tree);
    model["datatypes"] = datatypes(tree);
    return model.dump(2, ' ', true, Json::error_handler_t::replace) + '\n';
}
