// SPDX-License-Identifier: Apache-2.0
// The line of a record or an array, cut back into the lines of its parts.
#pragma once

#include "omtReader/values/conversionBounds.h"
#include "omtReader/values/conversionSettings.h"
#include "omtReader/values/datatypeResolver.h"
#include "omtReader/values/treeRenderer.h"

#include <string_view>
#include <vector>

namespace omtreader
{

/// The text of one field or element.
struct TextPiece
{
    ResolvedDatatype* datatype;
    std::string_view text;
    const DtString* delimiter;          // that serves inside it
    DtComplexComponentNode* component;  // only in a complex value
};

/// Cuts for one manager, by the datatypes and not by the look of the text: a field that is a record
/// takes as many delimiters as it has fields.
class TextCutter
{
public:
    TextCutter(DtDatatypeManager& manager, const ConversionSettings& settings,
               DatatypeResolver& resolver, TreeRenderer& renderer, ConversionBounds& bounds)
        : myManager(manager),
          mySettings(settings),
          myResolver(resolver),
          myRenderer(renderer),
          myBounds(bounds)
    {
    }

    /// One piece for each field, empty where the text has none; of a complex value, for each
    /// component whose condition holds. Pieces are parts of the text.
    std::vector<TextPiece> fields(ResolvedDatatype& record, std::string_view text,
                                  const DtString& delimiter);

    /// One piece for each element, `most` at the most.
    std::vector<TextPiece> elements(ResolvedDatatype& element, std::string_view text,
                                    const DtString& delimiter, std::int64_t most);

    /// Forgets what was kept while pieces were in use.
    void release() { myRenderer.release(); }

    /// The text without the array wrapper around it, if it is in one.
    std::string_view unwrapped(std::string_view text) const;

    /// Whether a text of characters is none that rendering made, but stands for itself.
    static bool isPlain(std::string_view text);

    /// The most elements that the text of an array has: the number that a fixed one has, 0 for one
    /// that never has any.
    static std::int64_t mostElements(const DtArrayDatatypeNode& node);
    static bool hasFixedCount(const DtArrayDatatypeNode& node);

private:
    /// A part of the text that is being cut: where it begins, and before which place it ends.
    struct Range
    {
        std::size_t begin;
        std::size_t end;
    };
    /// How many bracketed groups may stand at the end of a value's line.
    struct Groups
    {
        int least;
        int most;
        bool mayBeMissing = false;  // as in an empty array
    };
    void takeText(std::string_view text);
    std::vector<TextPiece> cutRecord(ResolvedDatatype& record, Range range,
                                     const DtString& delimiter, std::string_view follow,
                                     bool takesRest, bool isElement, std::size_t* end);
    std::vector<TextPiece> cutComplex(const std::vector<ResolvedComponent>& components, Range range,
                                      const DtString& delimiter, std::string_view follow,
                                      bool takesRest, std::size_t* end);
    std::string_view textOf(Range range) const
    {
        return myText.substr(range.begin, range.end - range.begin);
    }
    bool hasTooFew(std::string_view delimiter, Range range, std::size_t needed) const;
    std::size_t placeBehind(std::size_t place, std::size_t limit, std::string_view text) const;
    std::size_t endOf(ResolvedDatatype& datatype, Range range, const DtString& delimiter,
                      std::string_view follow, bool isElement);
    std::size_t endOfSingle(const ResolvedDatatype& datatype, Range range, std::string_view follow,
                            bool isElement) const;
    std::size_t endOfArray(ResolvedDatatype& datatype, Range range, const DtString& delimiter,
                           std::string_view follow, bool isElement);
    bool opensGroup(Range range) const;
    std::size_t endOfGroups(std::size_t from, std::size_t limit) const;
    std::size_t endOfWrapper(Range range) const;
    std::size_t splitBeforeRest(const ResolvedDatatype& element, Groups groups, Range range,
                                const DtString& delimiter) const;
    Groups groupsOf(ResolvedDatatype& datatype, int depth);
    bool startsAt(std::size_t place, std::size_t limit, std::string_view text) const;
    bool isEveryThirdABracket(Range range) const;

    DtDatatypeManager& myManager;
    const ConversionSettings& mySettings;
    DatatypeResolver& myResolver;
    TreeRenderer& myRenderer;
    ConversionBounds& myBounds;
    std::string_view myText;
    std::vector<std::size_t> myPartners;  // of each bracket, the place of the other one
    int myDepth = 0;
};

}  // namespace omtreader
