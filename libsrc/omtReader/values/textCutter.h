// SPDX-License-Identifier: Apache-2.0
// The line of a record or an array, cut back into the lines of its parts.
#pragma once

#include "omtReader/values/textMatcher.h"

#include <string_view>
#include <vector>

namespace omtreader
{

/// Cuts for one manager, by the datatypes and not by the look of the text.
///
/// A text that is the line of a value is cut as that value was rendered. One that is not, as people
/// write them, is cut as far as it goes: fields may be missing at the end, an array may have too
/// few elements or, where it has a most, too many, which the last one takes.
class TextCutter
{
public:
    TextCutter(DtDatatypeManager& manager, const ConversionSettings& settings,
               DatatypeResolver& resolver, TreeRenderer& renderer, ConversionBounds& bounds)
        : my{manager, settings, resolver, renderer, bounds, myEnumerators}
    {
    }

    /// One piece for each field, empty where the text has none; of a complex value, for each
    /// component whose condition holds. Pieces are parts of the text.
    std::vector<TextPiece> fields(ResolvedDatatype& record, std::string_view text,
                                  const DtString& delimiter);

    /// One piece for each element.
    std::vector<TextPiece> elements(ResolvedDatatype& element, std::string_view text,
                                    const DtString& delimiter, ElementCount count);

    /// The enumerator of a name; null if there is none.
    const DtEnumerationNode* enumerator(const DtEnumeratedDatatypeNode& node, std::string_view name)
    {
        return myEnumerators.find(node, name);
    }

    /// The text without the array wrapper around it, if it is in one.
    std::string_view unwrapped(std::string_view text) const;

    /// Whether a text of characters is none that rendering made, but stands for itself.
    static bool isPlain(std::string_view text)
    {
        return text.size() > 1 && text.find('[') == std::string_view::npos;
    }

private:
    bool mayBeSplit(ResolvedDatatype& datatype) const;
    bool splitFields(const std::vector<ResolvedComponent>& fields, std::string_view text,
                     const DtString& delimiter, std::vector<TextPiece>& pieces) const;
    bool splitElements(ResolvedDatatype& element, std::string_view text, const DtString& delimiter,
                       ElementCount count, std::vector<TextPiece>& pieces) const;

    EnumeratorNames myEnumerators;
    const TextMatcher::Sources my;
};

}  // namespace omtreader
