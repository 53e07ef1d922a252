// SPDX-License-Identifier: Apache-2.0
// The parts of a line, found by trying which of them make it a line of its datatype.
#pragma once

#include "omtReader/stringTree.h"
#include "omtReader/values/conversionBounds.h"
#include "omtReader/values/conversionSettings.h"
#include "omtReader/values/datatypeResolver.h"
#include "omtReader/values/enumeratorNames.h"
#include "omtReader/values/treeRenderer.h"

#include <deque>
#include <limits>
#include <memory>
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

/// How many elements an array has, as far as its datatype says.
struct ElementCount
{
    std::int32_t least;
    std::int32_t most;
    bool isZeroEnded = false;  // the last one is a zero

    static constexpr std::int32_t theUnlimited = std::numeric_limits<std::int32_t>::max();
    static ElementCount of(const DtArrayDatatypeNode& node);
};

/// Matches one text with the grammar of its datatype:
///
///   record    field (delimiter field)*
///   array     nothing, or chain
///   chain     element ("[" chain "]")?
///   variant   discriminant (delimiter alternative)?
///
/// The delimiter after a field is the one that serves the field: handed down to the first one, a
/// record's or array's own for a later one. One text may be several of these: an element may end in
/// brackets of its own, a character may be a bracket. So what is likeliest is tried first, and what
/// comes after decides. Steps are counted: a text that takes too many matches nothing.
class TextMatcher
{
public:
    /// What a matcher asks.
    struct Sources
    {
        DtDatatypeManager& manager;
        const ConversionSettings& settings;
        DatatypeResolver& resolver;
        TreeRenderer& renderer;
        ConversionBounds& bounds;
        EnumeratorNames& enumerators;
    };

    /// The text has to outlive the matcher, which sets the pieces.
    TextMatcher(const Sources& sources, std::string_view text, std::vector<TextPiece>& pieces)
        : my(sources), myText(text), myPieces(pieces)
    {
    }

    /// Whether the text can be taken for the fields of a record, or the elements of an array.
    bool matchFields(ResolvedDatatype& record, const DtString& delimiter);
    bool matchElements(ResolvedDatatype& element, const DtString& delimiter, ElementCount count);
    /// The same for an array of characters.
    bool matchCharacters(ResolvedDatatype& element, const DtString& delimiter, ElementCount count);

private:
    struct Goal;
    using Step = bool (TextMatcher::*)(const Goal&, std::size_t attempt);
    /// What is still to be found in the text.
    struct Goal
    {
        Step step = nullptr;
        int next = theEnd;  // the goal after it
        int scope = -1;     // of a component, which values its condition sees
        ResolvedDatatype* datatype = nullptr;
        const DtString* delimiter = nullptr;
        std::size_t begin = 0;  // where a component or discriminant began
        std::uint32_t at = 0;   // the field or element that is next
        ElementCount count = {0, 0};
        bool isLater = false;   // a component was there already
        bool isMarked = false;  // its parts are the pieces
    };
    /// Where to go on if what was tried leads nowhere.
    struct Choice
    {
        std::size_t position;
        std::size_t attempt;
        int goal;
        std::size_t goals, pieces, learned, scopes;
    };
    /// The components of a complex value that were found so far, in the form in which conditions
    /// look for them.
    struct Scope
    {
        Scope() = default;
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope();
        void add(std::unique_ptr<DtStringTree> child);
        void removeLast();

        DtStringTree parent;
        std::vector<std::unique_ptr<DtStringTree>> children;  // each linked to the next one too
    };
    static constexpr int theEnd = -1;
    /// How the characters of an array may look.
    enum CharacterForm
    {
        theFullForm,    // each has a text, which may be a bracket
        theEndedForm,   // the same, with a zero as the last one
        theShortForm,   // one of them, and a zero
        theSparseForm,  // some are zeros, and none is a bracket
        theSingleForm,  // one
        theFormsEnd
    };

    bool match(const Goal& first);
    bool run(const Goal& first);
    std::size_t retry();
    void clear();
    int add(const Goal& goal);
    int addValue(ResolvedDatatype& datatype, const DtString& delimiter, int next);
    Step stepOf(ResolvedDatatype& datatype);
    bool proceed(int goal);
    void offer(std::size_t attempt);
    bool isAtEnd() const { return myPosition == myText.size(); }
    bool isBracketAt(std::size_t position, char bracket) const
    {
        return position < myText.size() && myText[position] == bracket;
    }
    bool startsAt(std::size_t position, std::string_view text) const;
    bool take(std::string_view text);
    std::size_t nextStop(std::size_t from, const DtString& delimiter);
    std::size_t wrapperEnd();
    void beginPiece(ResolvedDatatype& datatype, const DtString& delimiter,
                    DtComplexComponentNode* component);
    void endPiece();
    bool takeRest(std::size_t brackets);

    bool wrapped(const Goal& goal, std::size_t attempt);
    bool anyText(const Goal& goal, std::size_t attempt);
    bool character(const Goal& goal, std::size_t attempt);
    bool number(const Goal& goal, std::size_t attempt);
    bool name(const Goal& goal, std::size_t attempt);
    bool array(const Goal& goal, std::size_t attempt);
    bool characters(const Goal& goal, std::size_t attempt);
    bool hasText(std::size_t form, std::int32_t number) const;
    bool takeCharacters(std::size_t form, ElementCount count, std::vector<std::string_view>* texts);
    bool chain(const Goal& goal, std::size_t attempt);
    bool element(const Goal& goal, const DtString& delimiter);
    bool bracket(const Goal& goal, std::size_t attempt);
    bool fields(const Goal& goal, std::size_t attempt);
    bool complex(const Goal& goal, std::size_t attempt);
    bool components(const Goal& goal, std::size_t attempt);
    bool component(const Goal& goal, const ResolvedComponent& part, ElementCount count);
    bool learn(const Goal& goal, std::size_t attempt);
    bool variant(const Goal& goal, std::size_t attempt);
    bool alternative(const Goal& goal, std::size_t attempt);

    const Sources my;
    const std::string_view myText;
    std::vector<TextPiece>& myPieces;
    bool isLenient = false;  // takes what people write
    std::int64_t mySteps = 0;
    std::size_t myPosition = 0;
    int myGoal = theEnd;
    std::vector<Goal> myGoals;
    std::vector<Choice> myChoices;
    std::deque<Scope> myScopes;
    std::vector<int> myLearned;  // the scope of each component that was found
};

}  // namespace omtreader
