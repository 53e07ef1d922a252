// SPDX-License-Identifier: Apache-2.0
#include "omtReader/values/textCutter.h"

#include <algorithm>

namespace omtreader
{

constexpr std::size_t theNoPosition = std::string_view::npos;

std::string_view TextCutter::unwrapped(std::string_view text) const
{
    const std::string_view open = my.settings.wrapperOpen.view();
    const std::string_view close = my.settings.wrapperClose.view();
    const bool isWrapped =
        !(open.empty() && close.empty()) && text.size() >= open.size() + close.size() &&
        text.substr(0, open.size()) == open && text.substr(text.size() - close.size()) == close;
    if (!isWrapped) return text;
    return text.substr(open.size(), text.size() - open.size() - close.size());
}

/// Whether the text of a part has neither delimiters nor brackets that belong to its own parts.
bool TextCutter::mayBeSplit(ResolvedDatatype& datatype) const
{
    const auto kind = my.resolver.kindOf(datatype);
    return my.settings.wrapperOpen.empty() && !datatype.isCharacter &&
           (kind == DtDatatypeManager::DtDatatypeSimple ||
            kind == DtDatatypeManager::DtDatatypeEnumerated);
}

std::vector<TextPiece> TextCutter::fields(ResolvedDatatype& record, std::string_view text,
                                          const DtString& delimiter)
{
    const std::vector<ResolvedComponent>& fields = my.resolver.fields(record);
    std::vector<TextPiece> pieces;
    if (fields.empty()) return pieces;
    pieces.reserve(fields.size());
    if (splitFields(fields, text, delimiter, pieces)) return pieces;
    if (TextMatcher(my, text, pieces).matchFields(record, delimiter)) return pieces;
    // Nothing like a line of the datatype: every delimiter cuts.
    const bool isComplex = fields.front().component != nullptr;
    pieces.clear();
    for (std::size_t at = 0; at < fields.size() && !(isComplex && text.empty()); ++at)
    {
        const bool isLast = at + 1 == fields.size() || delimiter.empty();
        const std::size_t end = isLast ? theNoPosition : text.find(delimiter.view());
        pieces.push_back(
            {fields[at].datatype, text.substr(0, end), &delimiter, fields[at].component});
        text = end == theNoPosition ? std::string_view() : text.substr(end + delimiter.length());
    }
    return pieces;
}

/// Cuts at the delimiters, if there are as many as there have to be.
bool TextCutter::splitFields(const std::vector<ResolvedComponent>& fields, std::string_view text,
                             const DtString& delimiter, std::vector<TextPiece>& pieces) const
{
    if (delimiter.empty()) return false;
    const std::string_view separator = delimiter.view();
    for (const ResolvedComponent& field : fields)
    {
        if (field.component || !mayBeSplit(*field.datatype)) return false;
        const bool isLast = &field == &fields.back();
        const std::size_t end = text.find(separator);
        if ((end == theNoPosition) != isLast) return false;
        pieces.push_back({field.datatype, text.substr(0, end), &delimiter, nullptr});
        if (!isLast) text.remove_prefix(end + separator.size());
    }
    return true;
}

std::vector<TextPiece> TextCutter::elements(ResolvedDatatype& element, std::string_view text,
                                            const DtString& delimiter, ElementCount count)
{
    std::vector<TextPiece> pieces;
    if (count.most == 0) return pieces;
    if (element.isCharacter && isPlain(text))
    {
        const std::size_t length = std::min(text.size(), static_cast<std::size_t>(count.most));
        for (std::size_t at = 0; at < length; ++at)
            pieces.push_back({&element, text.substr(at, 1), &delimiter, nullptr});
        return pieces;
    }
    TextMatcher matcher(my, text, pieces);
    if (element.isCharacter && matcher.matchCharacters(element, delimiter, count)) return pieces;
    if (splitElements(element, text, delimiter, count, pieces)) return pieces;
    if (!matcher.matchElements(element, delimiter, count))
        pieces.assign(1, {&element, text, &delimiter, nullptr});
    return pieces;
}

/// Cuts at the brackets, if all that open stand before all that close.
bool TextCutter::splitElements(ResolvedDatatype& element, std::string_view text,
                               const DtString& delimiter, ElementCount count,
                               std::vector<TextPiece>& pieces) const
{
    if (!mayBeSplit(element)) return false;
    const std::size_t firstClosing = std::min(text.find(']'), text.size());
    const std::string_view closings = text.substr(firstClosing);
    text = text.substr(0, firstClosing);
    const auto brackets = static_cast<std::size_t>(std::count(text.begin(), text.end(), '['));
    if (brackets != closings.size() || brackets >= static_cast<std::size_t>(count.most) ||
        closings.find_first_not_of(']') != theNoPosition)
        return false;
    pieces.reserve(brackets + 1);
    for (std::size_t at = 0; at <= brackets; ++at)
    {
        const std::size_t end = std::min(text.find('['), text.size());
        pieces.push_back({&element, text.substr(0, end), &delimiter, nullptr});
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return true;
}

}  // namespace omtreader
