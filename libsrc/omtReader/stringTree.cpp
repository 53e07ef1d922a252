// SPDX-License-Identifier: Apache-2.0
// A decoded value as a tree of named texts.
#include "omtReader/stringTree.h"

#include <vector>

void* DtStringTree::operator new(std::size_t size)
{
    return ::operator new(size);
}

void* DtStringTree::operator new(std::size_t size, const std::nothrow_t& kind) noexcept
{
    return ::operator new(size, kind);
}

void DtStringTree::operator delete(void* memory, std::size_t) noexcept
{
    ::operator delete(memory);
}

void DtStringTree::operator delete(void* memory, const std::nothrow_t&) noexcept
{
    ::operator delete(memory);
}

DtStringTree::DtStringTree(const DtStringTree& other) : DtStringTree(other, WithoutLinks())
{
    copyLinksOf(other);
}

DtStringTree::DtStringTree(const DtStringTree& other, WithoutLinks)
    : myValue(other.myValue),
      myKey(other.myKey),
      myDatatype(other.myDatatype),
      myOffset(other.myOffset)
{
}

DtStringTree& DtStringTree::operator=(const DtStringTree& other)
{
    if (this == &other) return *this;
    // The copy is whole before anything changes: the other node may be part of this tree.
    DtStringTree copy(other);
    std::swap(myNextSibling, copy.myNextSibling);
    std::swap(myFirstChild, copy.myFirstChild);
    std::swap(myNextElement, copy.myNextElement);
    myValue = std::move(copy.myValue);
    myKey = std::move(copy.myKey);
    myDatatype = std::move(copy.myDatatype);
    myOffset = copy.myOffset;
    // These are this node's former links, which stay alive: a host may point into them.
    copy.myNextSibling = copy.myFirstChild = copy.myNextElement = nullptr;
    return *this;
}

void DtStringTree::copyLinksOf(const DtStringTree& other)
{
    std::vector<std::pair<DtStringTree*, const DtStringTree*>> open = {
        {this, &other}
    };
    const auto copyLink = [&open](DtStringTree*& link, const DtStringTree* source)
    {
        if (!source) return;
        link = new DtStringTree(*source, WithoutLinks());
        open.emplace_back(link, source);
    };
    while (!open.empty())
    {
        const auto [copy, source] = open.back();
        open.pop_back();
        copyLink(copy->myNextElement, source->myNextElement);
        copyLink(copy->myNextSibling, source->myNextSibling);
        copyLink(copy->myFirstChild, source->myFirstChild);
    }
}

DtStringTree::~DtStringTree()
{
    if (!myFirstChild && !myNextSibling && !myNextElement) return;
    // Each node goes through its own destructor, without links, so that none calls another's. Those
    // that wait are one chain of siblings: a destructor that asked for memory could fail.
    DtStringTree* open = nullptr;
    moveLinksTo(open);
    while (open)
    {
        DtStringTree* const node = std::exchange(open, open->myNextSibling);
        node->myNextSibling = nullptr;
        node->moveLinksTo(open);
        delete node;
    }
}

void DtStringTree::moveLinksTo(DtStringTree*& open)
{
    putFirst(std::exchange(myNextElement, nullptr), open);
    putFirst(std::exchange(myNextSibling, nullptr), open);
    putFirst(std::exchange(myFirstChild, nullptr), open);
}

// Every chain of siblings is walked to its end once, when its first node comes in.
void DtStringTree::putFirst(DtStringTree* siblings, DtStringTree*& open)
{
    if (!siblings) return;
    DtStringTree* last = siblings;
    while (last->myNextSibling) last = last->myNextSibling;
    last->myNextSibling = open;
    open = siblings;
}

DtStringTree* DtStringTree::appendToArray(DtStringTree* element)
{
    DtStringTree* last = this;
    while (last->myNextElement) last = last->myNextElement;
    last->myNextElement = element;
    return last;
}

DtStringTree* DtStringTree::findKey(const DtString& key) const
{
    std::vector<const DtStringTree*> open = {this};
    while (!open.empty())
    {
        const DtStringTree* const node = open.back();
        open.pop_back();
        if (node->key() == key) return const_cast<DtStringTree*>(node);
        if (node->myFirstChild) open.push_back(node->myFirstChild);
        if (node->myNextSibling) open.push_back(node->myNextSibling);
    }
    return nullptr;
}
