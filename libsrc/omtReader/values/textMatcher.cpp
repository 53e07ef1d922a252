// SPDX-License-Identifier: Apache-2.0
#include "omtReader/values/textMatcher.h"

#include "omtReader/alternativeComponentNode.h"
#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/cardinalityForms.h"
#include "omtReader/complexComponentNode.h"
#include "omtReader/variantDatatypeNode.h"

#include <algorithm>
#include <charconv>

namespace omtreader
{
namespace
{

constexpr std::size_t theNoPosition = std::string_view::npos;

bool isWholeNumber(std::string_view text)
{
    if (!text.empty() && text.front() == '-') text.remove_prefix(1);
    return !text.empty() && text.find_first_not_of("0123456789") == theNoPosition;
}

bool isNumber(std::string_view text)
{
    double ignored = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, ignored);
    return stop == end && error != std::errc::invalid_argument;
}

}  // namespace

ElementCount ElementCount::of(const DtArrayDatatypeNode& node)
{
    const std::int32_t least = std::max(node.getCardinalityMinimum(), 0);
    switch (node.getCardinalityType())
    {
        case DtArrayForm::theFixed:
            return {least, least};
        case DtArrayForm::theBounded:
            return {0, std::max(node.getCardinalityMaximum(), 0)};
        case DtArrayForm::theOpenComponent:
        case DtArrayForm::thePadding:
        case DtArrayForm::thePaddingComponent:
            return {0, 0};
        case DtArrayForm::theZeroEnded:
            return {0, theUnlimited, true};
        case DtArrayForm::theBits:
        case DtArrayForm::theLengthless:
        case DtArrayForm::theCounted:
            return {0, theUnlimited};
        default:
            return {1, 1};
    }
}

void TextMatcher::Scope::add(std::unique_ptr<DtStringTree> child)
{
    children.push_back(std::move(child));
    DtStringTree* const added = children.back().get();
    if (children.size() > 1)
        children[children.size() - 2]->setNextSibling(added);
    else
        parent.setFirstChild(added);
}

void TextMatcher::Scope::removeLast()
{
    children.pop_back();
    if (children.empty())
        parent.setFirstChild(nullptr);
    else
        children.back()->setNextSibling(nullptr);
}

TextMatcher::Scope::~Scope()
{
    // A node deletes what it is linked to.
    parent.setFirstChild(nullptr);
    for (const std::unique_ptr<DtStringTree>& child : children) child->setNextSibling(nullptr);
}

bool TextMatcher::matchFields(ResolvedDatatype& record, const DtString& delimiter)
{
    const std::vector<ResolvedComponent>& list = my.resolver.fields(record);
    const bool isComplex = !list.empty() && list.front().component;
    Goal goal{isComplex ? &TextMatcher::complex : &TextMatcher::fields};
    goal.datatype = &record;
    goal.delimiter = &delimiter;
    goal.isMarked = true;
    return match(goal);
}

bool TextMatcher::matchElements(ResolvedDatatype& element, const DtString& delimiter,
                                ElementCount count)
{
    Goal goal{&TextMatcher::chain};
    goal.datatype = &element;
    goal.delimiter = &delimiter;
    goal.count = count;
    goal.isMarked = true;
    return match(goal);
}

bool TextMatcher::matchCharacters(ResolvedDatatype& element, const DtString& delimiter,
                                  ElementCount count)
{
    std::vector<std::string_view> texts;
    std::size_t form = 0;
    for (; form < theFormsEnd; ++form)
    {
        myPosition = 0;
        texts.clear();
        if (takeCharacters(form, count, &texts) && isAtEnd()) break;
    }
    if (form == theFormsEnd) return false;
    myPieces.clear();
    for (const std::string_view text : texts)
        myPieces.push_back({&element, text, &delimiter, nullptr});
    return true;
}

// First as the line of a value, then as a text that need not be one.
bool TextMatcher::match(const Goal& first)
{
    constexpr std::int64_t theStepsForEach = 64;
    constexpr std::int64_t theStepsAtLeast = 4096;
    const std::size_t size = myText.size() + first.datatype->components.size();
    const std::int64_t allowed =
        theStepsForEach * static_cast<std::int64_t>(size) + theStepsAtLeast;
    for (const bool isSecond : {false, true})
    {
        isLenient = isSecond;
        mySteps = allowed;
        const bool isMatch = run(first);
        if (!my.bounds.allowWork(allowed - mySteps, first.datatype->name)) return false;
        if (isMatch) return true;
    }
    return false;
}

bool TextMatcher::run(const Goal& first)
{
    clear();
    myGoal = add(first);
    std::size_t attempt = 0;
    while (--mySteps > 0)
    {
        bool isRight = false;
        if (myGoal != theEnd)
        {
            const Goal goal = myGoals[static_cast<std::size_t>(myGoal)];
            isRight = (this->*goal.step)(goal, attempt);
            attempt = 0;
        }
        else if (isAtEnd())
        {
            return true;
        }
        if (isRight) continue;
        if (myChoices.empty()) return false;
        attempt = retry();
    }
    return false;
}

void TextMatcher::clear()
{
    myPosition = 0;
    myPieces.clear();
    myGoals.clear();
    myChoices.clear();
    myScopes.clear();
    myLearned.clear();
}

/// Goes back to the latest choice, as if nothing had been tried since; gives what to try next.
std::size_t TextMatcher::retry()
{
    const Choice choice = myChoices.back();
    myChoices.pop_back();
    myPosition = choice.position;
    myGoal = choice.goal;
    myGoals.resize(choice.goals);
    myPieces.resize(choice.pieces, {nullptr, {}, nullptr, nullptr});
    while (myLearned.size() > choice.learned)
    {
        myScopes[static_cast<std::size_t>(myLearned.back())].removeLast();
        myLearned.pop_back();
    }
    while (myScopes.size() > choice.scopes) myScopes.pop_back();
    return choice.attempt;
}

int TextMatcher::add(const Goal& goal)
{
    myGoals.push_back(goal);
    return static_cast<int>(myGoals.size() - 1);
}

int TextMatcher::addValue(ResolvedDatatype& datatype, const DtString& delimiter, int next)
{
    Goal goal{my.settings.wrapperOpen.empty() ? stepOf(datatype) : &TextMatcher::wrapped, next};
    goal.datatype = &datatype;
    goal.delimiter = &delimiter;
    return add(goal);
}

TextMatcher::Step TextMatcher::stepOf(ResolvedDatatype& datatype)
{
    switch (my.resolver.kindOf(datatype))
    {
        case DtDatatypeManager::DtDatatypeSimple:
            if (datatype.isCharacter) return &TextMatcher::character;
            return isLenient || datatype.number.text == NumberText::none ? &TextMatcher::anyText
                                                                         : &TextMatcher::number;
        case DtDatatypeManager::DtDatatypeEnumerated:
            return isLenient ? &TextMatcher::anyText : &TextMatcher::name;
        case DtDatatypeManager::DtDatatypeFixed:
            return &TextMatcher::fields;
        case DtDatatypeManager::DtDatatypeComplex:
            return &TextMatcher::complex;
        case DtDatatypeManager::DtDatatypeArray:
            return &TextMatcher::array;
        case DtDatatypeManager::DtDatatypeVariant:
            return &TextMatcher::variant;
        case DtDatatypeManager::DtDatatypeDefined:
        case DtDatatypeManager::DtDatatypeUnknown:
            break;
    }
    return &TextMatcher::anyText;
}

bool TextMatcher::proceed(int goal)
{
    myGoal = goal;
    return true;
}

/// To be called before a step changes anything.
void TextMatcher::offer(std::size_t attempt)
{
    myChoices.push_back({myPosition, attempt, myGoal, myGoals.size(), myPieces.size(),
                         myLearned.size(), myScopes.size()});
}

// The text.

bool TextMatcher::startsAt(std::size_t position, std::string_view text) const
{
    return myText.compare(position, text.size(), text) == 0;
}

bool TextMatcher::take(std::string_view text)
{
    if (isLenient && isAtEnd()) return true;
    if (!startsAt(myPosition, text)) return false;
    myPosition += text.size();
    return true;
}

/// The first position from one on at which a text of unknown form may end.
std::size_t TextMatcher::nextStop(std::size_t from, const DtString& delimiter)
{
    const std::string_view separator = delimiter.view();
    std::size_t position = from;
    for (; position < myText.size(); ++position)
    {
        const char octet = myText[position];
        if (octet == '[' || octet == ']') break;
        if (!separator.empty() && octet == separator.front() && startsAt(position, separator))
            break;
    }
    mySteps -= static_cast<std::int64_t>(position - from) / 8;
    return position;
}

/// After the wrapper that begins here, wrapped parts inside it included; no position without one.
std::size_t TextMatcher::wrapperEnd()
{
    const std::string_view open = my.settings.wrapperOpen.view();
    const std::string_view close = my.settings.wrapperClose.view();
    if (open.empty() || close.empty() || !startsAt(myPosition, open)) return theNoPosition;
    int depth = 0;
    for (std::size_t position = myPosition; position < myText.size(); --mySteps)
    {
        if (startsAt(position, close) && (open != close || depth == 1))
        {
            position += close.size();
            if (--depth == 0) return position;
        }
        else if (startsAt(position, open))
        {
            position += open.size();
            ++depth;
        }
        else
        {
            ++position;
        }
    }
    return theNoPosition;
}

// The pieces.

void TextMatcher::beginPiece(ResolvedDatatype& datatype, const DtString& delimiter,
                             DtComplexComponentNode* component)
{
    myPieces.push_back({&datatype, myText.substr(myPosition, 0), &delimiter, component});
}

void TextMatcher::endPiece()
{
    const auto begin = static_cast<std::size_t>(myPieces.back().text.data() - myText.data());
    myPieces.back().text = myText.substr(begin, myPosition - begin);
}

/// Lets the latest piece take what is left, but for brackets that close.
bool TextMatcher::takeRest(std::size_t brackets)
{
    const std::size_t begin = myPosition;
    myPosition = myText.size();
    for (; brackets > 0 && myPosition > begin && myText[myPosition - 1] == ']'; --brackets)
        --myPosition;
    endPiece();
    myPosition = myText.size();
    return proceed(theEnd);
}

// Values.

bool TextMatcher::wrapped(const Goal& goal, std::size_t attempt)
{
    const std::size_t end = attempt == 0 ? wrapperEnd() : theNoPosition;
    if (end != theNoPosition)
    {
        offer(1);
        myPosition = end;
        return proceed(goal.next);
    }
    Goal bare = goal;
    bare.step = stepOf(*goal.datatype);
    return proceed(add(bare));
}

/// The attempt is the position, after the latest stop, from which the next one is looked for.
bool TextMatcher::anyText(const Goal& goal, std::size_t attempt)
{
    const std::size_t end = nextStop(std::max(attempt, myPosition), *goal.delimiter);
    if (end < myText.size()) offer(end + 1);
    myPosition = end;
    return proceed(goal.next);
}

/// One, or none for a character of value 0; of people, also a text of several.
bool TextMatcher::character(const Goal& goal, std::size_t attempt)
{
    const std::size_t left = myText.size() - myPosition;
    if (attempt == 0 && left > 0)
    {
        offer(1);
        ++myPosition;
    }
    else if (attempt > 1)
    {
        const std::size_t end = nextStop(myPosition + attempt, *goal.delimiter);
        if (end < myText.size()) offer(end + 1 - myPosition);
        myPosition = end;
    }
    else if (isLenient && left > 1)
    {
        offer(2);
    }
    return proceed(goal.next);
}

bool TextMatcher::number(const Goal& goal, std::size_t)
{
    const std::string_view separator = goal.delimiter->view();
    const auto isOfNumber = [&](char octet)
    {
        const auto letter = static_cast<char>(octet | 0x20);
        return (octet >= '0' && octet <= '9') || octet == '-' || octet == '+' || octet == '.' ||
               (letter >= 'a' && letter <= 'z');
    };
    std::size_t end = myPosition;
    while (end < myText.size() && isOfNumber(myText[end]) &&
           (separator.empty() || !startsAt(end, separator)))
        ++end;
    const std::string_view text = myText.substr(myPosition, end - myPosition);
    mySteps -= static_cast<std::int64_t>(text.size()) / 8;
    const bool isRight =
        goal.datatype->number.text == NumberText::whole ? isWholeNumber(text) : isNumber(text);
    myPosition = end;
    return isRight && proceed(goal.next);
}

bool TextMatcher::name(const Goal& goal, std::size_t)
{
    const std::size_t end = nextStop(myPosition, *goal.delimiter);
    const std::string_view text = myText.substr(myPosition, end - myPosition);
    const DtEnumeratedDatatypeNode* const node = my.resolver.enumerated(*goal.datatype);
    // A number without a name shows as itself.
    if (!isWholeNumber(text) && !(node && my.enumerators.find(*node, text))) return false;
    myPosition = end;
    return proceed(goal.next);
}

// Arrays.

bool TextMatcher::array(const Goal& goal, std::size_t attempt)
{
    const DtArrayDatatypeNode* const node = my.resolver.array(*goal.datatype);
    const ElementCount count = node ? ElementCount::of(*node) : ElementCount{0, 0};
    if (attempt == 1 || count.most == 0 || (isLenient && isAtEnd())) return proceed(goal.next);
    if (isLenient || count.least == 0) offer(1);
    Goal first = goal;
    first.datatype = &my.resolver.component(*goal.datatype, 0, *node);
    first.step = first.datatype->isCharacter ? &TextMatcher::characters : &TextMatcher::chain;
    first.count = count;
    return proceed(add(first));
}

bool TextMatcher::characters(const Goal& goal, std::size_t attempt)
{
    // People write them as one text.
    if (attempt >= theFormsEnd) return isLenient && anyText(goal, 0);
    offer(attempt + 1);
    return takeCharacters(attempt, goal.count, nullptr) && proceed(goal.next);
}

/// Whether a character of an array has a text here; a zero has none.
bool TextMatcher::hasText(std::size_t form, std::int32_t number) const
{
    if (isAtEnd()) return false;
    switch (form)
    {
        case theEndedForm:
            return !isBracketAt(myPosition, ']') || isBracketAt(myPosition + 1, '[');
        case theShortForm:
            return number == 0;
        case theSparseForm:
            return !isBracketAt(myPosition, '[') && !isBracketAt(myPosition, ']');
        default:
            return true;
    }
}

/// Takes an array of characters of a form; not where there is none.
bool TextMatcher::takeCharacters(std::size_t form, ElementCount count,
                                 std::vector<std::string_view>* texts)
{
    // A text that ends at a zero is tried with it first.
    if (count.isZeroEnded && form <= theEndedForm) form = theEndedForm - form;
    if (form == theShortForm) count.most = std::min(count.most, 2);
    if (form == theSingleForm) count.most = std::min(count.most, 1);
    bool isText = true;
    std::int32_t found = 0;
    do
    {
        if (found > 0) ++myPosition;
        isText = hasText(form, found);
        if (texts) texts->push_back(myText.substr(myPosition, isText ? 1 : 0));
        if (isText) ++myPosition;
    } while (++found < count.most && isBracketAt(myPosition, '['));
    mySteps -= found / 8;
    for (std::int32_t closing = 1; closing < found; ++closing, ++myPosition)
        if (!isBracketAt(myPosition, ']')) return false;
    if (isLenient) return true;
    const bool isEnded = form == theEndedForm || form == theShortForm;
    if (form != theSparseForm && isText == isEnded) return false;
    // Only one that was cut short has no zero.
    if (count.isZeroEnded && isText && !isAtEnd()) return false;
    return found >= count.least;
}

/// What comes after an element: a bracket with the rest, which is tried first, or nothing.
bool TextMatcher::chain(const Goal& goal, std::size_t attempt)
{
    if (goal.at == 0) return element(goal, *goal.delimiter);
    if (goal.isMarked) endPiece();
    const bool hasMore = !isAtEnd() && myText[myPosition] == '[' &&
                         goal.at < static_cast<std::uint32_t>(goal.count.most);
    if (attempt == 0 && hasMore)
    {
        offer(1);
        ++myPosition;
        return element(goal, my.renderer.delimiterOf(*goal.datatype, *goal.delimiter));
    }
    const bool isEnough = goal.at >= static_cast<std::uint32_t>(goal.count.least);
    return (isLenient || isEnough) && proceed(goal.next);
}

bool TextMatcher::element(const Goal& goal, const DtString& delimiter)
{
    if (goal.isMarked) beginPiece(*goal.datatype, delimiter, nullptr);
    Goal after = goal;
    ++after.at;
    after.delimiter = &delimiter;
    if (isLenient && goal.isMarked && after.at == static_cast<std::uint32_t>(goal.count.most))
        return takeRest(goal.at);
    if (goal.at > 0) after.next = add({&TextMatcher::bracket, goal.next});
    const int next = add(after);
    return proceed(addValue(*goal.datatype, delimiter, next));
}

bool TextMatcher::bracket(const Goal& goal, std::size_t)
{
    return take("]") && proceed(goal.next);
}

// Records.

bool TextMatcher::fields(const Goal& goal, std::size_t)
{
    const std::vector<ResolvedComponent>& list =
        goal.at == 0 ? my.resolver.fields(*goal.datatype) : goal.datatype->components;
    if (goal.isMarked && goal.at > 0) endPiece();
    if (goal.at >= list.size()) return proceed(goal.next);
    ResolvedDatatype& datatype = *list[goal.at].datatype;
    const DtString* serving = goal.delimiter;
    if (goal.at > 0)
    {
        if (!take(serving->view())) return false;
        serving = &my.renderer.delimiterOf(datatype, *serving);
    }
    // There is a delimiter for each field to come, so that a character that takes one in vain is
    // noticed at once.
    if (!isLenient && myText.size() - myPosition + 1 < list.size() - goal.at) return false;
    if (goal.isMarked) beginPiece(datatype, *serving, nullptr);
    Goal after = goal;
    ++after.at;
    after.delimiter = serving;
    if (isLenient && goal.isMarked && after.at == list.size()) return takeRest(0);
    const int next = add(after);
    return proceed(addValue(datatype, *serving, next));
}

bool TextMatcher::complex(const Goal& goal, std::size_t)
{
    Goal first = goal;
    first.step = &TextMatcher::components;
    first.scope = static_cast<int>(myScopes.size());
    my.resolver.fields(*goal.datatype);
    myScopes.emplace_back();
    return proceed(add(first));
}

/// Components come and go with the values of those before them. One that need not be there is
/// missing where the value ends, without a delimiter.
bool TextMatcher::components(const Goal& goal, std::size_t attempt)
{
    const std::vector<ResolvedComponent>& list = goal.datatype->components;
    DtStringTree& found = myScopes[static_cast<std::size_t>(goal.scope)].parent;
    if (goal.isMarked && goal.isLater) endPiece();
    Goal now = goal;
    int most = 0;
    for (; now.at < list.size() && most <= 0; ++now.at)
    {
        DtComplexComponentNode& node = *list[now.at].component;
        most = my.manager.getComplexDatatypeCount(&node, nullptr, 0, &found, &found);
        // A condition looks through what was found.
        mySteps -= node.getConditionalComponent().empty() ? 1 : 1 + now.at / 4;
    }
    if (most <= 0) return proceed(goal.next);
    // The loop went past it.
    const ResolvedComponent& part = list[now.at - 1];
    const int least = std::min(part.component->getCardinalityMinimum(), most);
    const bool isMissing = least <= 0 && (attempt == 1 || (isLenient && isAtEnd()));
    if (isMissing) return proceed(add(now));
    if (least <= 0) offer(1);
    return component(now, part, {std::max(least, 1), most});
}

bool TextMatcher::component(const Goal& goal, const ResolvedComponent& part, ElementCount count)
{
    const DtString* serving = goal.delimiter;
    if (goal.isLater)
    {
        if (!take(serving->view())) return false;
        serving = &my.renderer.delimiterOf(*part.datatype, *serving);
    }
    if (goal.isMarked) beginPiece(*part.datatype, *serving, part.component);
    Goal after = goal;
    after.isLater = true;
    after.delimiter = serving;
    Goal values{&TextMatcher::chain, add(after)};
    values.datatype = part.datatype;
    values.delimiter = serving;
    values.at = 1;
    values.count = count;
    Goal learned{&TextMatcher::learn, add(values), goal.scope};
    learned.datatype = goal.datatype;
    learned.at = goal.at - 1;
    learned.begin = myPosition;
    const int next = add(learned);
    return proceed(addValue(*part.datatype, *serving, next));
}

bool TextMatcher::learn(const Goal& goal, std::size_t)
{
    const ResolvedComponent& part = goal.datatype->components[goal.at];
    Scope& scope = myScopes[static_cast<std::size_t>(goal.scope)];
    auto node = std::make_unique<DtStringTree>();
    node->setKey(part.node->getName());
    node->setDatatype(part.datatype->name);
    node->setValue(myText.substr(goal.begin, myPosition - goal.begin));
    scope.add(std::move(node));
    myLearned.push_back(goal.scope);
    return proceed(goal.next);
}

// Variants.

bool TextMatcher::variant(const Goal& goal, std::size_t)
{
    const DtVariantDatatypeNode* const node = my.resolver.variant(*goal.datatype);
    if (!node) return proceed(goal.next);
    Goal after = goal;
    after.step = &TextMatcher::alternative;
    after.begin = myPosition;
    const int next = add(after);
    return proceed(
        addValue(my.resolver.component(*goal.datatype, 0, *node), *goal.delimiter, next));
}

bool TextMatcher::alternative(const Goal& goal, std::size_t)
{
    const DtVariantDatatypeNode* const node = my.resolver.variant(*goal.datatype);
    const DtString discriminant = myText.substr(goal.begin, myPosition - goal.begin);
    std::size_t at = 1;
    const auto end = node->getComponentNodeEnd();
    auto it = node->getComponentNodeList();
    for (; it != end && (*it)->getEnumerator() != discriminant; ++it, --mySteps) ++at;
    if (it == end) return proceed(goal.next);
    if (!take(goal.delimiter->view())) return false;
    ResolvedDatatype& datatype = my.resolver.component(*goal.datatype, at, **it);
    return proceed(
        addValue(datatype, my.renderer.delimiterOf(datatype, *goal.delimiter), goal.next));
}

}  // namespace omtreader
