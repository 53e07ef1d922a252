// SPDX-License-Identifier: Apache-2.0
// The list of components that a composite node owns.
#pragma once

#include <list>
#include <memory>

/// Nodes in the order added, deleted with the list and copied with it, one by one.
template <typename Node>
class DtOwnedNodes
{
public:
    using List = std::list<Node*>;

    DtOwnedNodes() = default;
    DtOwnedNodes(const DtOwnedNodes& other) : DtOwnedNodes()
    {
        addCopiesOf(other);  // and what is there already is deleted where a copy fails
    }
    DtOwnedNodes& operator=(const DtOwnedNodes& other)
    {
        if (this == &other) return *this;
        clear();
        addCopiesOf(other);
        return *this;
    }
    ~DtOwnedNodes() { clear(); }

    /// Takes the node over; null is ignored.
    void add(Node* node)
    {
        if (node) myNodes.push_back(node);
    }

    void clear()
    {
        for (Node* node : myNodes) delete node;
        myNodes.clear();
    }

    const List& list() const { return myNodes; }
    List& list() { return myNodes; }

private:
    void addCopiesOf(const DtOwnedNodes& other)
    {
        for (const Node* node : other.myNodes)
        {
            auto copy = std::make_unique<Node>(*node);
            myNodes.push_back(copy.get());
            copy.release();
        }
    }

    List myNodes;
};
