// SPDX-License-Identifier: Apache-2.0
// How clauses become nodes: a vocabulary says which keyword fills which property, one walk does it
// all.
#pragma once

#include "omtReader/enumerationNode.h"
#include "omtReader/noteNode.h"
#include "omtReader/omtFileReader.h"
#include "omtReader/omtNode.h"
#include "sexp/dtcList.h"
#include "util/dtMessages.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <memory>

namespace omtreader
{

/// How messages name one kind of definition.
struct ClauseKind
{
    const char* name;   ///< such as "Attribute"
    const char* place;  ///< what stands between the part and the name of the node: " in Attribute "
};

/// The clauses inside a definition that are definitions themselves.
struct ClausePart
{
    const char* keyword;
    const char* context;    ///< stands between what is wrong in the part and the name of the whole
    bool isCheckedByWhole;  ///< whether the whole already looks for something after the keyword
};

/// The keyword of one property of a node: how messages name it, and what its value does.
template <typename Node>
struct ClauseWord
{
    const char* keyword;
    const char* name;
    void (*take)(Node& node, const DtlObjPtr& value);
};

/// The keyword of what one handler of the reader is there for.
struct ClauseSection
{
    const char* keyword;
    void (DtOMTFileReader::*process)(DtlObjPtr&, DtOMTTree*);
};

/// A number of any size in 32 bits, which wrap as in the XML formats; with a warning where they
/// hold it neither with a sign nor without.
inline int toInt32(const DtlObjPtr& value)
{
    const std::int64_t number = value->fixnum();
    const auto wrapped = static_cast<std::int32_t>(number);
    if (wrapped != number && static_cast<std::uint32_t>(number) != number)
        DtWarn << "Warning: number " << value->string() << " is out of range and was read as "
               << wrapped << "\n";
    return wrapped;
}

template <auto set, typename Node>
void takeText(Node& node, const DtlObjPtr& value)
{
    (node.*set)(value->string());
}

/// Ignores a value that is no string.
template <auto set, typename Node>
void takeStringOnly(Node& node, const DtlObjPtr& value)
{
    if (DtcStringp(value)) (node.*set)(value->string());
}

template <auto set, typename Node>
void takeNumber(Node& node, const DtlObjPtr& value)
{
    (node.*set)(toInt32(value));
}

template <typename Word, std::size_t Size>
const Word* findWord(const Word (&words)[Size], const DtString& keyword)
{
    const auto found = std::find_if(std::begin(words), std::end(words),
                                    [&](const Word& word) { return keyword == word.keyword; });
    return found == std::end(words) ? nullptr : found;
}

/// Calls `handle` with the keyword and the clause for each element of a list, up to the first that
/// is no list itself.
template <typename Handle>
void forEachClause(DtlObjPtr clauses, Handle handle)
{
    for (; DtcListp(DtcCar(clauses)); clauses = DtcCdr(clauses))
    {
        DtlObjPtr clause = DtcCar(clauses);
        handle(DtcCar(clause)->string(), clause);
    }
}

/// How messages name a node that is being read: by its name so far, if it has one at all.
inline DtString nameInMessages(const DtOMTNode& node)
{
    return node.getName();
}
inline DtString nameInMessages(const DtEnumerationNode&)
{
    return {};
}
inline DtString nameInMessages(const DtNoteNode&)
{
    return {};
}

/// Reads clauses for one reader, whose last error it sets along with every exception.
class ClauseWalk
{
public:
    explicit ClauseWalk(DtString& lastError) : myLastError(lastError) {}

    [[noreturn]] void fail(const DtString& text) const
    {
        // A name may hold a zero octet, which ends the text of an exception.
        myLastError = text.c_str();
        throw DtOMTReadException(myLastError.c_str());
    }

    /// Fails unless what is named so is a list of at least one element.
    void requireList(const DtlObjPtr& list, const DtString& name) const
    {
        if (!DtcListp(list)) fail("Badly formatted " + name);
    }

    /// Sets the properties of a node from the clauses whose keywords are in the vocabulary, in
    /// their order, and hands every other clause to `other`.
    template <typename Node, std::size_t Size, typename Other>
    void fill(Node& node, const DtlObjPtr& clauses, const ClauseKind& kind,
              const ClauseWord<Node> (&words)[Size], Other other) const
    {
        forEachClause(clauses,
                      [&](const DtString& keyword, DtlObjPtr& clause)
                      {
                          const ClauseWord<Node>* const word = findWord(words, keyword);
                          if (!word) return other(keyword, clause);
                          if (!DtcListp(DtcCdr(clause))) failIn(node, kind, word->name);
                          word->take(node, DtcCadr(clause));
                      });
    }

    /// A new node filled from a vocabulary alone.
    template <typename Node, std::size_t Size>
    std::unique_ptr<Node> readNode(const DtlObjPtr& clauses, const ClauseKind& kind,
                                   const ClauseWord<Node> (&words)[Size]) const
    {
        requireList(clauses, kind.name);
        auto node = std::make_unique<Node>();
        fill(*node, clauses, kind, words, [](const DtString&, DtlObjPtr&) {});
        return node;
    }

    /// A new node filled from a vocabulary and from parts, for each of which `readPart` gets the
    /// node and what is after the keyword.
    template <typename Node, std::size_t Size, typename ReadPart>
    std::unique_ptr<Node> readWhole(const DtlObjPtr& clause, const ClauseKind& kind,
                                    const ClauseWord<Node> (&words)[Size], const ClausePart& part,
                                    ReadPart readPart) const
    {
        requireList(DtcCdr(clause), kind.name);
        auto node = std::make_unique<Node>();
        fill(*node, DtcCdr(clause), kind, words,
             [&](const DtString& keyword, const DtlObjPtr& inner)
             {
                 if (keyword != part.keyword) return;
                 DtlObjPtr rest = DtcCdr(inner);
                 if (part.isCheckedByWhole && !DtcListp(rest)) failIn(*node, kind, part.keyword);
                 inContext(part.context, *node, [&] { readPart(*node, rest); });
             });
        return node;
    }

private:
    /// Fails for a part of a node that is named so.
    template <typename Node>
    [[noreturn]] void failIn(const Node& node, const ClauseKind& kind, const char* part) const
    {
        DtString text = "Badly formatted ";
        text += part;
        text += kind.place;
        fail(text += nameInMessages(node));
    }

    /// What fails in `read` is reported with the name of the whole after it.
    template <typename Read>
    void inContext(const char* context, const DtOMTNode& whole, Read read) const
    {
        try
        {
            read();
        }
        catch (const DtOMTReadException&)
        {
            fail(myLastError + context + whole.getName());
        }
    }

    DtString& myLastError;
};

}  // namespace omtreader
