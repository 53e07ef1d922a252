// SPDX-License-Identifier: Apache-2.0
#include "omtReader/fedNode.h"

#include "omtReader/fullNames.h"
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "util/dtAssert.h"

#include <memory>
#include <typeinfo>

using omtreader::FullNames;

namespace
{
constexpr const char* theAssertionFile = "libsrc/omtReader/fedNode";
}

DtFedNode::DtFedNode() = default;

DtFedNode::DtFedNode(DtFedNode* parent) : myParentObject(parent)
{
    DtAssert(myParentObject != this, "myParentObject != this", theAssertionFile, 29);
}

DtFedNode::DtFedNode(const DtFedNode& other)
    : DtOMTNode(other), myParentObject(other.myParentObject)
{
}

DtFedNode& DtFedNode::operator=(const DtFedNode& other)
{
    DtOMTNode::operator=(other);
    myParentObject = other.myParentObject;
    FullNames::forget(*this);
    return *this;
}

DtFedNode::~DtFedNode()
{
    FullNames::forget(*this);
}

void DtFedNode::setParentObject(DtFedNode* parent)
{
    DtAssert(this != parent, "this != f", theAssertionFile, 64);
    myParentObject = parent;
}

const DtString& DtFedNode::getFullName() const
{
    if (!myParentObject) return getName();
    if (const DtString* const known = FullNames::known(*this)) return *known;

    const auto way = FullNames::wayUp(
        *this, [this](const DtFedNode& node)
        { return FullNames::known(node) || (&node != this && FullNames::isHosts(node)); });
    if (way.nodes.empty()) return getName();  // a ring

    std::string name = way.end->getFullName().str();
    for (auto node = way.nodes.rbegin(); node != way.nodes.rend(); ++node)
    {
        const bool isBelowNameless = name.empty();
        if (!isBelowNameless) name += '.';
        name += (*node)->getName().view();
        if (!isBelowNameless && (*node == this || name.size() <= FullNames::theLongestKept))
            FullNames::keep(**node, name);
    }
    const DtString* const known = FullNames::known(*this);
    return known ? *known : getName();
}

bool FullNames::isHosts(const DtFedNode& node)
{
    const std::type_info& type = typeid(node);
    return type != typeid(DtObjectClassFedNode) && type != typeid(DtInteractionClassFedNode) &&
           type != typeid(DtAttributeFedNode) && type != typeid(DtParameterFedNode) &&
           type != typeid(DtDatatypeFedNode) && type != typeid(DtFedNode);
}

const DtString* FullNames::known(const DtFedNode& node)
{
    return node.myFullName.load(std::memory_order_acquire);
}

void FullNames::keep(const DtFedNode& node, std::string_view name)
{
    auto fresh = std::make_unique<const DtString>(name);
    const DtString* expected = nullptr;
    if (node.myFullName.compare_exchange_strong(expected, fresh.get(), std::memory_order_acq_rel))
        fresh.release();
}

void FullNames::forget(DtFedNode& node)
{
    delete node.myFullName.exchange(nullptr);
}

bool FullNames::isLong(const DtFedNode& node)
{
    std::size_t length = 0;
    std::size_t steps = 0;
    const DtFedNode* mark = nullptr;  // moves up at each power of two, as in wayUp()
    for (const DtFedNode* above = &node; above; above = above->myParentObject)
    {
        if (above == mark) return false;  // a ring
        if ((steps & (steps + 1)) == 0) mark = above;
        ++steps;
        if (isHosts(*above)) return false;
        const DtString* const whole = known(*above);
        length += whole ? whole->length() : above->getName().length() + 1;
        if (length > theLongestKept) return true;
        if (whole) return false;
    }
    return false;
}

bool FullNames::isEmpty(const DtFedNode& node)
{
    const auto hasName = [](const DtFedNode& above)
    { return known(above) || isHosts(above) || !above.getName().empty(); };
    const DtFedNode& end = *wayUp(node, hasName).end;
    return isHosts(end) ? end.getFullName().empty() : end.getName().empty();
}

bool FullNames::isEqual(const DtFedNode& node, std::string_view name)
{
    if (!isLong(node)) return node.getFullName() == DtString(name);

    // From the end of the name upwards, a name of a class at a time.
    std::string_view rest = name;
    for (const DtFedNode* above = &node;; above = above->myParentObject)
    {
        const bool isTop = !above->myParentObject || known(*above) || isHosts(*above);
        if (isTop) return above->getFullName().view() == rest;
        const std::string_view own = above->getName().view();
        if (rest.size() == own.size()) return rest == own && isEmpty(*above->myParentObject);
        if (rest.size() < own.size() + 2) return false;
        const std::size_t start = rest.size() - own.size();
        if (rest.substr(start) != own || rest[start - 1] != '.') return false;
        rest.remove_suffix(own.size() + 1);
    }
}
