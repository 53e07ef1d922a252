// SPDX-License-Identifier: Apache-2.0
// How XML becomes nodes: a vocabulary says which word fills which property, one walk does it all.
//
// The two XML dialects differ in where a word stands, as a child element or as an XML attribute.
// The walk takes either; the reader's own childNodeString() fetches the text.
#pragma once

#include "omtReader/formats/handOver.h"
#include "omtReader/omtTree.h"
#include "util/dtMessages.h"

#include <libxml/tree.h>

#include <cstring>
#include <memory>

namespace omtreader
{

/// What an empty text does.
enum class WhenEmpty
{
    set,   ///< it is set like any other
    skip,  ///< the word is passed over
    drop   ///< the definition is dropped at once, with a warning
};

/// A dialect's word for one property of a node.
template <typename Node>
struct Spelling
{
    const char* word;
    void (Node::*set)(const DtString&);
    WhenEmpty whenEmpty = WhenEmpty::set;
};

/// A dialect's word for what one handler of a reader is there for.
template <typename Reader, typename Item>
struct Section
{
    const char* word;
    void (Reader::*process)(Item*&, DtOMTTree*);
};

/// A dialect's word for one field of a point of contact.
struct ContactSpelling
{
    const char* word;
    DtString DtOMTTreePOC::*field;
};

inline bool isWord(const xmlChar* name, const char* word)
{
    const char* const text = reinterpret_cast<const char*>(name);
    return *text == *word && std::strcmp(text, word) == 0;
}
/// Whether this is an element of that name. Other nodes may have names too, or none at all.
inline bool isNamed(const xmlNode* node, const char* word)
{
    return node->type == XML_ELEMENT_NODE && isWord(node->name, word);
}
inline bool isNamed(const xmlAttr* attribute, const char* word)
{
    return isWord(attribute->name, word);
}

inline DtString nameOf(const xmlNode* node)
{
    return reinterpret_cast<const char*>(node->name);
}
inline DtString nameOf(const xmlAttr* attribute)
{
    return reinterpret_cast<const char*>(attribute->name);
}

/// The children and the XML attributes of an element; none of anything else, as other nodes keep
/// other things in those places.
inline xmlNode* childrenOf(const xmlNode* node)
{
    return node && node->type == XML_ELEMENT_NODE ? node->children : nullptr;
}
inline xmlAttr* attributesOf(const xmlNode* node)
{
    return node && node->type == XML_ELEMENT_NODE ? node->properties : nullptr;
}

/// The text of an element or XML attribute: the content of its first child and of no other. What a
/// comment or an entity cuts in two is not joined.
template <typename Item>
DtString firstText(const Item* item)
{
    const xmlNode* const first = item ? item->children : nullptr;
    return first ? reinterpret_cast<const char*>(first->content) : nullptr;
}

/// Finds words in a table. It looks first after the word found last, as documents mostly keep the
/// order of the table.
template <typename Entry, std::size_t Size>
class WordFinder
{
public:
    explicit WordFinder(const Entry (&table)[Size]) : myTable(table) {}

    template <typename Item>
    const Entry* find(const Item* item)
    {
        for (std::size_t tried = 0; tried < Size; ++tried)
        {
            const Entry& entry = myTable[myNext];
            myNext = myNext + 1 < Size ? myNext + 1 : 0;
            if (isNamed(item, entry.word)) return &entry;
        }
        return nullptr;
    }

private:
    const Entry (&myTable)[Size];
    std::size_t myNext = 0;
};

/// Calls `handle` for each item from the first on. A handler may move the reference it is given.
template <typename Item, typename Handle>
void forEach(Item* first, Handle handle)
{
    for (Item* item = first; item; item = item ? item->next : nullptr) handle(item);
}

/// As forEach, for the items of one name.
template <typename Item, typename Handle>
void forEachNamed(Item* first, const char* word, Handle handle)
{
    forEach(first,
            [&](Item*& item)
            {
                if (isNamed(item, word)) handle(item);
            });
}

/// Hands every item that a section is named after to the section's handler.
template <typename Reader, typename Item, std::size_t Size>
void processSections(Reader& reader, Item* first, const Section<Reader, Item> (&sections)[Size],
                     DtOMTTree* tree)
{
    WordFinder finder(sections);
    forEach(first,
            [&](Item*& item)
            {
                if (const auto* section = finder.find(item)) (reader.*section->process)(item, tree);
            });
}

/// Sets the properties of a node from the items whose words are in the vocabulary, in document
/// order, and hands every other item to `other`.
///
/// False, with the warning written and the rest unread, when the node is to be dropped.
template <typename Reader, typename Item, typename Node, std::size_t Size, typename Other>
bool fill(Reader& reader, Item* first, const Spelling<Node> (&words)[Size], Node& node,
          const char* dropWarning, Other other)
{
    WordFinder finder(words);
    for (Item* item = first; item; item = item ? item->next : nullptr)
    {
        const Spelling<Node>* const spelling = finder.find(item);
        if (!spelling)
        {
            other(item);
            continue;
        }
        const DtString text = reader.childNodeString(item);
        if (text.empty() && spelling->whenEmpty == WhenEmpty::drop)
        {
            DtWarn << dropWarning << std::flush;
            return false;
        }
        if (text.empty() && spelling->whenEmpty == WhenEmpty::skip) continue;
        (node.*spelling->set)(text);
    }
    return true;
}

template <typename Reader, typename Item, typename Node, std::size_t Size>
bool fill(Reader& reader, Item* first, const Spelling<Node> (&words)[Size], Node& node,
          const char* dropWarning = "")
{
    return fill(reader, first, words, node, dropWarning, [](Item*&) {});
}

/// A new node filled from a vocabulary alone; null when it was dropped.
template <typename Node, typename Reader, typename Item, std::size_t Size>
std::unique_ptr<Node> readNode(Reader& reader, Item* first, const Spelling<Node> (&words)[Size],
                               const char* dropWarning = "")
{
    auto node = std::make_unique<Node>();
    return fill(reader, first, words, *node, dropWarning) ? std::move(node) : nullptr;
}

/// Sets the fields of a point of contact; whether there was a word for any.
template <typename Reader, typename Item, std::size_t Size>
bool fillContact(Reader& reader, Item* first, const ContactSpelling (&words)[Size],
                 DtOMTTreePOC& contact)
{
    bool isFilled = false;
    WordFinder finder(words);
    forEach(first,
            [&](Item*& item)
            {
                const ContactSpelling* const spelling = finder.find(item);
                if (!spelling) return;
                contact.*spelling->field = reader.childNodeString(item);
                isFilled = true;
            });
    return isFilled;
}

}  // namespace omtreader
