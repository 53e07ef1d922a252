// SPDX-License-Identifier: Apache-2.0
// A decoded value as a tree of named texts.
#include "omtReader/stringTree.h"

#include <new>

namespace
{

/// The memory of a deleted node, kept for the next one.
struct Spare
{
    Spare* next;
};

// Sanitizers are to see every node come and go.
#ifdef OMTREADER_KEEPS_NO_SPARES
constexpr int theMostSpares = 0;
#else
constexpr int theMostSpares = 64;
#endif

/// The spare nodes of a thread. Nodes may be deleted even after it has closed.
struct SpareStore
{
    Spare* first = nullptr;
    int count = 0;
    bool isClosed = false;
};
[[gnu::tls_model("initial-exec")]] thread_local SpareStore theSpares;

struct SpareStoreCloser
{
    ~SpareStoreCloser()
    {
        theSpares.isClosed = true;
        while (Spare* const spare = theSpares.first)
        {
            theSpares.first = spare->next;
            ::operator delete(spare);
        }
    }
    void isNeeded() const {}
};
thread_local const SpareStoreCloser theSpareStoreCloser;

}  // namespace

void* DtStringTree::operator new(std::size_t size)
{
    SpareStore& store = theSpares;
    if (size != sizeof(DtStringTree) || !store.first) return ::operator new(size);
    --store.count;
    return std::exchange(store.first, store.first->next);
}

void DtStringTree::operator delete(void* memory, std::size_t size) noexcept
{
    if (!memory) return;
    SpareStore& store = theSpares;
    if (size != sizeof(DtStringTree) || store.count >= theMostSpares || store.isClosed)
        return ::operator delete(memory);
    if (!store.first) theSpareStoreCloser.isNeeded();
    store.first = new (memory) Spare{store.first};
    ++store.count;
}

DtStringTree::DtStringTree(const DtStringTree& other) : DtStringTree(other, WithoutLinks())
{
    copyLinksOf(other);
}

DtStringTree::DtStringTree(const DtStringTree& other, WithoutLinks)
    : myLabel(other.myLabel), myValue(other.myValue), myOffset(other.myOffset)
{
}

void DtStringTree::setLabel(DtString key, DtString datatype)
{
    myLabel = std::make_shared<const Label>(Label{std::move(key), std::move(datatype)});
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
    myLabel = std::move(copy.myLabel);
    myOffset = copy.myOffset;
    // These are this node's former links, which stay alive on purpose.
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
    // Each node goes through its own destructor, without links, so that none calls another's.
    constexpr std::size_t theUsualDepth = 32;
    std::vector<DtStringTree*> nodes;
    nodes.reserve(theUsualDepth);
    moveLinksTo(nodes);
    while (!nodes.empty())
    {
        DtStringTree* const node = nodes.back();
        nodes.pop_back();
        node->moveLinksTo(nodes);
        delete node;
    }
}

// The first child comes last, as it is the first to be deleted.
void DtStringTree::moveLinksTo(std::vector<DtStringTree*>& nodes)
{
    for (DtStringTree** link : {&myNextElement, &myNextSibling, &myFirstChild})
        if (*link) nodes.push_back(std::exchange(*link, nullptr));
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
