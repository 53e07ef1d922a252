// SPDX-License-Identifier: Apache-2.0
// Following a path of class names down a hierarchy.
#pragma once

#include "omtReader/hierarchy.h"

#include <typeinfo>
#include <vector>

namespace omtreader
{

/// Finds the class that a path leads to by the names of the classes, with no stack for each level.
///
/// The character after a name is taken for a separator without a look at it, because hosts write
/// paths with ".", ":" and "/".
template <typename Class>
class ClassPath
{
public:
    /// `start` is looked at as a plain class, whatever it is: it is the one that was asked.
    static Class* find(Class* start, const char* path)
    {
        std::vector<Children> pending;
        std::string_view rest = path ? path : "";
        for (Class* node = start; node;)
        {
            const std::string_view name = node->getName().view();
            if (rest == name) return node;
            if (rest.substr(0, name.size()) == name)
                pushFirst(pending, {H::children(*node), rest.substr(name.size() + 1)});
            // Now whatever child comes next; one that derives from the plain class looks itself.
            for (node = nullptr; !node && !pending.empty();)
            {
                Class* const child = takeNext(pending, rest);
                if (isPlain(*child))
                    node = child;
                else if (Class* const found = H::findChild(*child, rest.data()))
                    return found;  // the rest ends where the path does
            }
        }
        return nullptr;
    }

private:
    using H = Hierarchy<Class>;

    /// The children of one class that are still to be asked for the rest of a path.
    struct Children
    {
        Children(const std::list<Class*>& all, std::string_view path)
            : next(all.begin()), end(all.end()), rest(path)
        {
            skip();
        }

        /// Passes over those that cannot lead on.
        void skip()
        {
            while (next != end && isPlain(**next) &&
                   rest.substr(0, (*next)->getName().length()) != (*next)->getName().view())
                ++next;
        }

        typename std::list<Class*>::const_iterator next;
        typename std::list<Class*>::const_iterator end;
        std::string_view rest;
    };

    static bool isPlain(const Class& node) { return typeid(node) == typeid(Class); }

    static void pushFirst(std::vector<Children>& pending, Children children)
    {
        if (children.next != children.end) pending.push_back(children);
    }

    static Class* takeNext(std::vector<Children>& pending, std::string_view& rest)
    {
        Children& children = pending.back();
        rest = children.rest;
        Class* const child = *children.next++;
        children.skip();
        if (children.next == children.end) pending.pop_back();
        return child;
    }
};

}  // namespace omtreader
