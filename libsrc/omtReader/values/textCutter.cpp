// SPDX-License-Identifier: Apache-2.0
// The line of a record or an array, cut back into the lines of its parts.
//
//   record    field (delimiter field)*
//   array     nothing, or chain
//   chain     element ("[" chain "]")?
//
// The delimiter behind a field is the one that serves the field: handed down to the first one, a
// record's or array's own for a later one. Elements may end in brackets of their own, so the group
// that holds the rest of a chain is looked for from the end of the text.
#include "omtReader/values/textCutter.h"

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/complexComponentNode.h"
#include "omtReader/stringTree.h"
#include "omtReader/values/arrayForm.h"

#include <algorithm>
#include <limits>

namespace omtreader
{
namespace
{

constexpr std::size_t theNoPlace = std::string_view::npos;
constexpr int theStepWork = 64;
constexpr std::int64_t theUnlimited = std::numeric_limits<std::int32_t>::max();

/// The place of the other bracket for each bracket; no place for one that has none.
std::vector<std::size_t> bracketPartners(std::string_view text)
{
    std::vector<std::size_t> partners;
    if (text.find('[') == theNoPlace) return partners;
    partners.assign(text.size(), theNoPlace);
    std::vector<std::size_t> open;
    for (std::size_t place = 0; place < text.size(); ++place)
    {
        if (text[place] == '[') open.push_back(place);
        if (text[place] != ']' || open.empty()) continue;
        partners[place] = open.back();
        partners[open.back()] = place;
        open.pop_back();
    }
    return partners;
}

}  // namespace

void TextCutter::takeText(std::string_view text)
{
    myText = text;
    myPartners = bracketPartners(text);
    myDepth = 0;
}

bool TextCutter::startsAt(std::size_t place, std::size_t limit, std::string_view text) const
{
    return !text.empty() && limit - place >= text.size() &&
           myText.substr(place, text.size()) == text;
}

std::string_view TextCutter::unwrapped(std::string_view text) const
{
    const std::string_view open = mySettings.wrapperOpen.view();
    const std::string_view close = mySettings.wrapperClose.view();
    const bool isWrapped =
        !(open.empty() && close.empty()) && text.size() >= open.size() + close.size() &&
        text.substr(0, open.size()) == open && text.substr(text.size() - close.size()) == close;
    if (!isWrapped) return text;
    return text.substr(open.size(), text.size() - open.size() - close.size());
}

// Records.

std::vector<TextPiece> TextCutter::fields(ResolvedDatatype& record, std::string_view text,
                                          const DtString& delimiter)
{
    takeText(text);
    return cutRecord(record, {0, text.size()}, delimiter, {}, true, false, nullptr);
}

std::vector<TextPiece> TextCutter::cutRecord(ResolvedDatatype& record, Range range,
                                             const DtString& delimiter, std::string_view follow,
                                             bool takesRest, bool isElement, std::size_t* end)
{
    const std::vector<ResolvedComponent>& fields = myResolver.fields(record);
    if (!fields.empty() && fields.front().component)
        return cutComplex(fields, range, delimiter, follow, takesRest, end);
    std::vector<TextPiece> pieces;
    pieces.reserve(fields.size());
    const DtString* serving = &delimiter;
    for (std::size_t at = 0; at < fields.size(); ++at)
    {
        ResolvedDatatype& datatype = *fields[at].datatype;
        if (at > 0) serving = &myRenderer.delimiterOf(datatype, *serving);
        const bool isLast = at + 1 == fields.size();
        const std::string_view behind = isLast ? follow : serving->view();
        const bool isEmptyCharacter =
            datatype.isCharacter && !isLast && hasTooFew(behind, range, fields.size() - at - 1);
        std::size_t pieceEnd = range.begin;
        if (isLast && takesRest)
            pieceEnd = range.end;
        else if (!isEmptyCharacter)
            pieceEnd = endOf(datatype, range, *serving, behind, isLast && isElement);
        pieces.push_back({&datatype, textOf({range.begin, pieceEnd}), serving, nullptr});
        range.begin = isLast ? pieceEnd : placeBehind(pieceEnd, range.end, behind);
    }
    if (end) *end = range.begin;
    return pieces;
}

// Whether a delimiter stands here of which the fields behind need all that follow, so that it is no
// character itself.
bool TextCutter::hasTooFew(std::string_view delimiter, Range range, std::size_t needed) const
{
    if (!startsAt(range.begin, range.end, delimiter)) return false;
    std::size_t place = range.begin + 1;
    const std::string_view text = myText.substr(0, range.end);
    for (std::size_t found = 0; found < needed; ++found)
    {
        place = text.find(delimiter, place);
        if (place == theNoPlace) return true;
        place += delimiter.size();
    }
    return false;
}

// Components come and go with the text of those in front of them.
std::vector<TextPiece> TextCutter::cutComplex(const std::vector<ResolvedComponent>& components,
                                              Range range, const DtString& delimiter,
                                              std::string_view follow, bool takesRest,
                                              std::size_t* end)
{
    // What was cut so far, in the form in which conditions look for it.
    DtStringTree earlier;
    DtStringTree* last = nullptr;
    std::size_t at = 0;
    const auto findPresent = [&]
    {
        while (at < components.size() &&
               myManager.getComplexDatatypeCount(components[at].component, nullptr, 0, &earlier,
                                                 &earlier) <= 0)
            ++at;
    };
    std::vector<TextPiece> pieces;
    const DtString* serving = &delimiter;
    // Whether the text goes on with the next one; one without a value has no delimiter either.
    bool isThere = range.begin < range.end;
    for (findPresent(); at < components.size();)
    {
        const ResolvedComponent now = components[at++];
        if (!isThere && now.component->getCardinalityMinimum() == 0)
        {
            findPresent();
            continue;
        }
        ResolvedDatatype& datatype = *now.datatype;
        if (!pieces.empty()) serving = &myRenderer.delimiterOf(datatype, *serving);
        const auto endBefore = [&](std::string_view behind)
        { return endOfGroups(endOf(datatype, range, *serving, behind, true), range.end); };
        std::size_t pieceEnd = endBefore(serving->view());
        auto* const node = new DtStringTree(now.node->getName(), datatype.name, 0);
        node->setValue(textOf({range.begin, pieceEnd}));
        last ? last->setNextSibling(node) : earlier.setFirstChild(node);
        last = node;
        findPresent();
        const bool isLast = at == components.size();
        if (isLast) pieceEnd = takesRest ? range.end : endBefore(follow);
        pieces.push_back({&datatype, textOf({range.begin, pieceEnd}), serving, now.component});
        range.begin = isLast ? pieceEnd : placeBehind(pieceEnd, range.end, serving->view());
        isThere = range.begin > pieceEnd;
    }
    if (end) *end = range.begin;
    return pieces;
}

// Behind a text that stands at a place, or the place itself if it does not.
std::size_t TextCutter::placeBehind(std::size_t place, std::size_t limit,
                                    std::string_view text) const
{
    return startsAt(place, limit, text) ? place + text.size() : place;
}

// Where a value's line ends that begins at a place, with another text to follow.

std::size_t TextCutter::endOf(ResolvedDatatype& datatype, Range range, const DtString& delimiter,
                              std::string_view follow, bool isElement)
{
    std::size_t end = mySettings.wrapperOpen.empty() ? theNoPlace : endOfWrapper(range);
    if (end != theNoPlace) return end;
    const auto kind = myResolver.kindOf(datatype);
    if (kind == DtDatatypeManager::DtDatatypeSimple)
        return endOfSingle(datatype, range, follow, isElement);
    if (myDepth >= ConversionBounds::theDeepest || !myBounds.allowWork(theStepWork, datatype.name))
        return range.begin;
    const Descent descent(myDepth);
    end = range.begin;
    switch (kind)
    {
        case DtDatatypeManager::DtDatatypeFixed:
        case DtDatatypeManager::DtDatatypeComplex:
            cutRecord(datatype, range, delimiter, follow, false, isElement, &end);
            break;
        case DtDatatypeManager::DtDatatypeArray:
            end = endOfArray(datatype, range, delimiter, follow, isElement);
            break;
        default:
            end = endOfSingle(datatype, range, follow, isElement);
            break;
    }
    return end;
}

std::size_t TextCutter::endOfSingle(const ResolvedDatatype& datatype, Range range,
                                    std::string_view follow, bool isElement) const
{
    const auto isEnd = [&](std::size_t place)
    {
        return place >= range.end || startsAt(place, range.end, follow) ||
               (isElement && myText[place] == '[');
    };
    if (datatype.isCharacter)
    {
        if (range.begin >= range.end || (isElement && opensGroup(range))) return range.begin;
        // It may be the delimiter itself, which then stands in front of another one.
        const bool isBehind = !isEnd(range.begin) || range.begin + 1 < range.end;
        if (isBehind && isEnd(range.begin + 1)) return range.begin + 1;
    }
    const std::string_view text = myText.substr(0, range.end);
    std::size_t end = follow.empty() ? theNoPlace : text.find(follow, range.begin);
    if (isElement) end = std::min(end, text.find('[', range.begin));
    return std::min(end, range.end);
}

// Whether a bracket stands here that has its partner in the range.
bool TextCutter::opensGroup(Range range) const
{
    return !myPartners.empty() && myText[range.begin] == '[' && myPartners[range.begin] < range.end;
}

std::size_t TextCutter::endOfArray(ResolvedDatatype& datatype, Range range,
                                   const DtString& delimiter, std::string_view follow,
                                   bool isElement)
{
    const DtArrayDatatypeNode* const node = myResolver.array(datatype);
    // An empty text in front of brackets, which the array around it steps over with its own.
    if (isElement && range.begin < range.end && opensGroup(range)) return range.begin;
    if (!node || mostElements(*node) == 0) return range.begin;
    const bool isAtEnd = range.begin == range.end;
    const bool isEmpty =
        isAtEnd ? !hasFixedCount(*node)
                : startsAt(range.begin, range.end, follow) && mostElements(*node) == theUnlimited;
    if (isEmpty) return range.begin;
    ResolvedDatatype& element = myResolver.component(datatype, 0, *node);
    return endOfGroups(endOf(element, range, delimiter, follow, true), range.end);
}

std::size_t TextCutter::endOfGroups(std::size_t from, std::size_t limit) const
{
    while (from < limit && opensGroup({from, limit})) from = myPartners[from] + 1;
    return from;
}

// Behind the wrapper that begins here, wrapped parts inside it included; no place without one.
std::size_t TextCutter::endOfWrapper(Range range) const
{
    const std::string_view open = mySettings.wrapperOpen.view();
    const std::string_view close = mySettings.wrapperClose.view();
    if (open.empty() || close.empty() || !startsAt(range.begin, range.end, open)) return theNoPlace;
    int depth = 0;
    for (std::size_t place = range.begin; place < range.end;)
    {
        if (startsAt(place, range.end, close) && (open != close || depth == 1))
        {
            place += close.size();
            if (--depth == 0) return place;
        }
        else if (startsAt(place, range.end, open))
        {
            place += open.size();
            ++depth;
        }
        else
        {
            ++place;
        }
    }
    return theNoPlace;
}

// Arrays.

bool TextCutter::hasFixedCount(const DtArrayDatatypeNode& node)
{
    switch (node.getCardinalityType())
    {
        case theBoundedForm:
        case 3:
        case theZeroEndedForm:
        case thePaddingForm:
        case 6:
        case theBitForm:
        case theLengthlessForm:
        case theVariableForm:
            return false;
        default:
            return true;
    }
}

std::int64_t TextCutter::mostElements(const DtArrayDatatypeNode& node)
{
    switch (node.getCardinalityType())
    {
        case theFixedForm:
            return std::max(node.getCardinalityMinimum(), 0);
        case theBoundedForm:
            return std::max(node.getCardinalityMaximum(), 0);
        case 3:
        case thePaddingForm:
        case 6:
            return 0;
        case theZeroEndedForm:
        case theBitForm:
        case theLengthlessForm:
        case theVariableForm:
            return theUnlimited;
        default:
            return 1;
    }
}

std::vector<TextPiece> TextCutter::elements(ResolvedDatatype& element, std::string_view text,
                                            const DtString& delimiter, std::int64_t most)
{
    takeText(text);
    std::vector<TextPiece> pieces;
    Range range{0, text.size()};
    const DtString* serving = &delimiter;
    const auto add = [&](std::size_t begin, std::size_t end) {
        pieces.push_back({&element, text.substr(begin, end - begin), serving, nullptr});
    };
    const bool areCharacters = element.isCharacter;
    if (areCharacters && isPlain(text))
    {
        const std::size_t count = std::min(text.size(), static_cast<std::size_t>(most));
        for (std::size_t at = 0; at < count; ++at) add(at, at + 1);
        return pieces;
    }
    // With fewer than a fixed number, the brackets stand around characters of value 0.
    const auto every = static_cast<std::int64_t>((text.size() + 2) / 3);
    if (areCharacters && (most == theUnlimited || every == most) && isEveryThirdABracket(range))
    {
        for (std::size_t at = 0; 3 * at < text.size() + 2; ++at) add(2 * at, 2 * at + 1);
        return pieces;
    }
    const Groups groups = groupsOf(element, 0);
    while (static_cast<std::int64_t>(pieces.size()) + 1 < most)
    {
        const std::size_t split = splitBeforeRest(element, groups, range, *serving);
        if (split == theNoPlace) break;
        add(range.begin, split);
        range = {split + 1, range.end - 1};
        serving = &myRenderer.delimiterOf(element, *serving);
    }
    if (most > 0) add(range.begin, range.end);
    return pieces;
}

bool TextCutter::isPlain(std::string_view text)
{
    return text.size() > 1 && bracketPartners(text).empty();
}

// Characters may be brackets: then only the form x[x[x]] tells, as a whole.
bool TextCutter::isEveryThirdABracket(Range range) const
{
    const std::size_t length = range.end - range.begin;
    if (length % 3 != 1) return false;
    const std::size_t count = (length + 2) / 3;
    for (std::size_t at = 1; at < count; ++at)
        if (myText[range.begin + 2 * at - 1] != '[' || myText[range.end - at] != ']') return false;
    return true;
}

// The place of the bracket that opens the rest of the chain; no place if this is the last element.
std::size_t TextCutter::splitBeforeRest(const ResolvedDatatype& element, Groups groups, Range range,
                                        const DtString& delimiter) const
{
    const auto openOf = [&](std::size_t end)
    {
        const bool isGroup = end > range.begin && !myPartners.empty() && myText[end - 1] == ']';
        const std::size_t open = isGroup ? myPartners[end - 1] : theNoPlace;
        return open != theNoPlace && open >= range.begin ? open : theNoPlace;
    };
    const std::size_t open = openOf(range.end);
    if (open == theNoPlace) return open;
    int count = 1;
    std::size_t first = open;
    while (count <= groups.most && openOf(first) != theNoPlace)
    {
        first = openOf(first);
        ++count;
    }
    const bool isMissing = groups.mayBeMissing && first == range.begin;
    if (count <= groups.least && !isMissing) return theNoPlace;
    if (first == range.begin || count > groups.most) return open;
    // It could also be the rest of an array that the element ends in. A record has a delimiter in
    // front of that array.
    if (!element.fixed.node && !element.complex.node) return open;
    const std::size_t inner = std::min(myText.find('[', open + 1), range.end - 1);
    const std::string_view head = myText.substr(open + 1, inner - open - 1);
    return head.find(delimiter.view()) == theNoPlace ? theNoPlace : open;
}

TextCutter::Groups TextCutter::groupsOf(ResolvedDatatype& datatype, int depth)
{
    if (depth >= ConversionBounds::theDeepest) return {0, 0};
    const auto kind = myResolver.kindOf(datatype);
    if (kind == DtDatatypeManager::DtDatatypeFixed || kind == DtDatatypeManager::DtDatatypeComplex)
    {
        const std::vector<ResolvedComponent>& fields = myResolver.fields(datatype);
        if (fields.empty()) return {0, 0};
        const bool mayRepeat = fields.back().component != nullptr;
        const Groups groups = groupsOf(*fields.back().datatype, depth + 1);
        return {groups.least, groups.most + (mayRepeat ? 1 : 0), groups.mayBeMissing};
    }
    if (kind != DtDatatypeManager::DtDatatypeArray) return {0, 0};
    const DtArrayDatatypeNode* const node = myResolver.array(datatype);
    const std::int64_t most = node ? mostElements(*node) : 0;
    if (most == 0) return {0, 0};
    const Groups groups = groupsOf(myResolver.component(datatype, 0, *node), depth + 1);
    if (most == 1) return groups;
    // Only at the end of a value may one have fewer than the most.
    const bool isLimited = most < theUnlimited;
    return {groups.least + (isLimited ? 1 : 0), groups.most + 1, !isLimited};
}

}  // namespace omtreader
