// SPDX-License-Identifier: Apache-2.0
// Finding classes by full name while a merge looks up every class of a model.
#pragma once

#include "omtReader/fullNames.h"
#include "omtReader/hierarchy.h"
#include "omtReader/indexTable.h"

#include <algorithm>
#include <iterator>
#include <list>
#include <map>
#include <set>
#include <typeinfo>
#include <unordered_map>
#include <vector>

namespace omtreader
{

/// Gives for a full name just the class that the look-up of a plain tree gives, in a time that
/// grows neither with the number of classes nor with their depth. It lives as long as one merge of
/// one hierarchy and follows the classes that are added meanwhile.
///
/// In a tree with a root, any character parts two names, and a name may hold any: a full name may
/// lead down several ways. They are followed together, and name by name: what is found for a class
/// goes on to the classes below it.
template <typename Class>
class ClassFinder
{
public:
    explicit ClassFinder(DtOMTTree& tree) : myTree(tree), myRoot(H::root(tree)) {}

    /// What stands for a full name.
    struct Digest
    {
        std::uint64_t hash = 0xCBF29CE484222325;  // FNV-1a, which a full name can be added to
        bool isEmpty = true;

        void add(std::string_view text)
        {
            for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
            isEmpty = isEmpty && text.empty();
        }
    };

    /// A class whose name is matched up to some octet, where the full name so far ends.
    struct Match
    {
        Class* node;
        std::size_t octets;
    };
    /// What a full name leads to.
    struct Matches
    {
        std::vector<Match> ways = {};  // as the look-up of the tree comes upon them
        Digest digest = {};
    };

    /// What a full name leads to from the root.
    Matches start(std::string_view fullName)
    {
        Matches all;
        all.digest.add(fullName);
        if (myRoot)
            follow(
                {
                    {myRoot, 0}
            },
                fullName, all.ways);
        return all;
    }

    /// What a name leads to after it was added to a full name with a "." between.
    Matches goOn(const Matches& above, std::string_view dotAndName)
    {
        Matches all;
        all.digest = above.digest;
        all.digest.add(dotAndName);
        follow(above.ways, dotAndName, all.ways);
        return all;
    }

    /// The class of the full name that led to these matches, or null.
    Class* found(std::string_view fullName, const Matches& matches)
    {
        if (fullName.empty()) return myRoot;
        if (!myRoot) return findInList(fullName, matches.digest);
        for (const Match& match : matches.ways)
            if (match.octets == match.node->getName().length()) return match.node;
        return nullptr;
    }

    /// Whether only plain classes were met so far. One that derives from them may look up in its
    /// own way: then what was found does not count, and the tree has to be asked.
    bool isSure() const { return myIsSure; }

private:
    using H = Hierarchy<Class>;

    struct Step
    {
        Match match;
        std::size_t position;  // in the text
    };

    /// The children of one class by name, each with its number among them.
    struct Children
    {
        std::size_t known = 0;
        typename std::list<Class*>::const_iterator last;
        std::map<std::string_view, std::vector<std::pair<std::size_t, Class*>>> byName;
        std::set<std::size_t> lengths;
    };

    void follow(const std::vector<Match>& from, std::string_view text, std::vector<Match>& all)
    {
        std::vector<Step> steps;
        for (auto match = from.rbegin(); match != from.rend(); ++match)
            steps.push_back({*match, 0});
        while (!steps.empty())
        {
            const Step step = steps.back();
            steps.pop_back();
            Class* const node = step.match.node;
            if (typeid(*node) != typeid(Class)) myIsSure = false;
            const std::string_view name = node->getName().view().substr(step.match.octets);
            const std::string_view rest = text.substr(step.position);
            const std::size_t common = std::min(name.size(), rest.size());
            if (name.substr(0, common) != rest.substr(0, common)) continue;
            if (name.size() >= rest.size())
                all.push_back({node, step.match.octets + common});
            else
                pushChildren(*node, step.position + name.size() + 1, text, steps);
        }
    }

    /// The children at whose names the text may go on after a separator, the first on top.
    void pushChildren(Class& node, std::size_t position, std::string_view text,
                      std::vector<Step>& steps)
    {
        const auto& list = H::children(node);
        if (list.size() < theSizeWorthAnIndex)
        {
            for (auto child = list.rbegin(); child != list.rend(); ++child)
                if (!cannotLeadOn(**child, text.substr(position)))
                    steps.push_back({
                        {*child, 0},
                        position
                    });
            return;
        }
        const auto children = childrenAt(text.substr(position), childrenOf(&node, list));
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            steps.push_back({
                {child->second, 0},
                position
            });
    }

    /// Whether the name can only go on with something else than the "." that comes next.
    static bool cannotLeadOn(const Class& node, std::string_view rest)
    {
        if (typeid(node) != typeid(Class)) return false;
        const std::string_view name = node.getName().view();
        return name.size() > rest.size() && name[rest.size()] != '.';
    }

    static std::vector<std::pair<std::size_t, Class*>> childrenAt(std::string_view rest,
                                                                  const Children& children)
    {
        std::vector<std::pair<std::size_t, Class*>> matches;
        const auto append = [&matches](const auto& named)
        { matches.insert(matches.end(), named.second.begin(), named.second.end()); };
        for (const std::size_t length : children.lengths)
        {
            if (length > rest.size()) break;
            const auto found = children.byName.find(rest.substr(0, length));
            if (found != children.byName.end()) append(*found);
        }
        const std::string longer = std::string(rest) + '.';
        for (auto named = children.byName.lower_bound(longer);
             named != children.byName.end() && named->first.substr(0, longer.size()) == longer;
             ++named)
            append(*named);
        std::sort(matches.begin(), matches.end());
        return matches;
    }

    const Children& childrenOf(const Class* parent, const std::list<Class*>& list)
    {
        Children& children = myChildren[parent];
        for (auto child = children.known ? std::next(children.last) : list.begin();
             child != list.end(); ++child)
        {
            if (typeid(**child) != typeid(Class)) myIsSure = false;
            const std::string_view name = (*child)->getName().view();
            children.byName[name].emplace_back(children.known++, *child);
            children.lengths.insert(name.size());
            children.last = child;
        }
        return children;
    }

    Class* findInList(std::string_view name, const Digest& digest)
    {
        for (auto node = myClasses.empty() ? H::begin(myTree) : std::next(myLast);
             node != H::end(myTree); ++node)
        {
            myIndices.add(digestOf(**node).hash, myClasses.size());
            myClasses.push_back(*node);
            myLast = node;
        }
        const std::size_t found =
            myIndices.find(digest.hash, [&](std::size_t index)
                           { return FullNames::isEqual(*myClasses[index], name); });
        return found == IndexTable::theNone ? nullptr : myClasses[found];
    }

    /// Works a digest out from that of the parent, which siblings share.
    Digest digestOf(const DtFedNode& node)
    {
        const auto way = FullNames::wayUp(node,
                                          [this](const DtFedNode& above) {
                                              return FullNames::known(above) ||
                                                     FullNames::isHosts(above) ||
                                                     myDigests.count(&above) > 0;
                                          });
        Digest digest;
        if (const auto done = myDigests.find(way.end); done != myDigests.end())
            digest = done->second;
        else
            digest.add(way.nodes.empty() ? node.getFullName().view()
                                         : way.end->getFullName().view());
        for (auto below = way.nodes.rbegin(); below != way.nodes.rend(); ++below)
        {
            if (!digest.isEmpty) digest.add(".");
            digest.add((*below)->getName().view());
            myDigests[*below] = digest;
        }
        return digest;
    }

    static constexpr std::size_t theSizeWorthAnIndex = 32;

    DtOMTTree& myTree;
    Class* const myRoot;
    bool myIsSure = true;
    std::unordered_map<const Class*, Children> myChildren;

    // For a tree without a root: the classes of its list that are in the table, in order.
    std::vector<Class*> myClasses;
    typename std::list<Class*>::iterator myLast;
    IndexTable myIndices;
    std::unordered_map<const DtFedNode*, Digest> myDigests;
};

}  // namespace omtreader
