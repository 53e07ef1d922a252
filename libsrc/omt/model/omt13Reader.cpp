// SPDX-License-Identifier: Apache-2.0
// Reads HLA 1.3: the words of the rows say which clause is which property. Classes stand flat there
// and name the class above by number; they are put in an order in which it stands first.
#include "omt/model/omt13Reader.h"

#include "omt/base/textEncoding.h"
#include "omt/model/clauses.h"
#include "omt/model/compare.h"
#include "omt/model/parts.h"
#include "omt/model/rows.h"

#include <array>
#include <charconv>
#include <optional>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace omt
{

namespace
{

constexpr std::uint8_t theNoRow = 255;

bool isSameWord(std::string_view left, std::string_view right)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    if (left.size() != right.size()) return false;
    for (std::size_t i = 0; i < left.size(); ++i)
        if (lower(left[i]) != lower(right[i])) return false;
    return true;
}

/// The row that a keyword of HLA 1.3 belongs to, in a kind of definition.
std::uint8_t findRow(Kind kind, std::string_view keyword)
{
    const std::span<const Row> rows = rowsOf(kind);
    for (std::uint8_t i = 0; i < rows.size(); ++i)
        if (!rows[i].words.in13.empty() && isSameWord(rows[i].words.in13, keyword)) return i;
    return theNoRow;
}

/// The word by which a class has its number, and the one by which it names the class above.
template <typename Class>
constexpr std::string_view theParentWord =
    std::is_same_v<Class, ObjectClass> ? "SuperClass" : "SuperInteraction";

bool isAtom(const Clause& clause)
{
    return clause.form == Clause::Form::string || clause.form == Clause::Form::symbol;
}

/// Labels with blanks between them, as in "6, 7".
std::string labelsOf(std::string_view notes)
{
    std::string labels;
    for (const char c : notes)
    {
        const bool isBetween = c == ',' || c == ' ' || c == '\t' || c == '\r' || c == '\n';
        if (!isBetween)
            labels += c;
        else if (!labels.empty() && labels.back() != ' ')
            labels += ' ';
    }
    if (!labels.empty() && labels.back() == ' ') labels.pop_back();
    return labels;
}

class Omt13Reader
{
public:
    Omt13Reader(std::string_view name, const Clauses& clauses, ModelBuilder& builder,
                Findings& findings)
        : myName(name), myClauses(clauses), myBuilder(builder), myFindings(findings)
    {
    }

    bool read();

private:
    /// What a definition has so far, beside its texts.
    struct Pending
    {
        std::vector<Aside> asides;
        std::array<std::vector<Text>, 32> texts;
    };

    void reportOutside(std::uint32_t clause);
    void readModel(std::uint32_t model);
    void readTable(std::uint32_t clause, std::vector<std::uint32_t>& comments);
    bool readIdentification(std::uint32_t clause, const std::vector<std::uint32_t>& comments);
    template <typename T>
    T readDefinition(std::uint32_t clause, const std::vector<std::uint32_t>& comments);
    template <typename T, typename Owner, typename Part>
    void readParts(T& definition, std::uint32_t clause, List<Part> Owner::*list);
    template <typename T>
    void readProperties(T& definition, std::uint32_t clause, Pending& pending);
    void readProperty(Definition& definition, Kind kind, std::uint8_t row, std::uint32_t clause,
                      Pending& pending);
    Text valueOf(std::uint32_t clause, bool& isOdd);
    void addComments(std::vector<std::uint32_t>& comments, std::uint8_t property,
                     std::vector<Aside>& asides);
    void addUnknown(std::uint32_t clause, std::vector<Aside>& asides);
    void addNotes(const Clause& notes, std::uint8_t property, std::uint32_t item,
                  std::vector<Aside>& asides);

    template <typename Class>
    void linkClasses(std::vector<Class>& table, const std::vector<std::uint32_t>& clauses);
    template <typename Class>
    std::vector<std::uint32_t> findParents(const std::vector<Class>& table,
                                           const std::vector<std::uint32_t>& clauses);
    template <typename Class>
    std::vector<std::uint32_t> order(const std::vector<Class>& table,
                                     std::vector<std::uint32_t>& parents);

    std::string_view keywordOf(std::uint32_t clause) const;
    std::optional<std::int64_t> numberOf(std::uint32_t clause, std::string_view keyword);
    Text copy(std::string_view text, std::uint32_t line) { return myBuilder.text(text, line); }
    void report(Severity severity, const char* name, std::string text, std::uint32_t line)
    {
        myFindings.push_back({
            severity, name, std::move(text), {std::string(myName), line, 0}
        });
    }

    std::string_view myName;
    const Clauses& myClauses;
    ModelBuilder& myBuilder;
    Findings& myFindings;
    std::uint32_t myModule = 0;

    Identification myIdentification;
    Pending myIdentificationPending;
    std::vector<Contact> myContacts;
    std::vector<Pending> myContactsPending;
    std::vector<std::uint32_t> myObjectClauses;
    std::vector<std::uint32_t> myInteractionClauses;
};

/// Calls `visit` with each clause directly within one, its keyword left out.
template <typename Visit>
void forEachIn(const Clauses& clauses, std::uint32_t list, Visit&& visit)
{
    bool isFirst = true;
    for (std::uint32_t at = list + 1; at < clauses[list].next; at = clauses[at].next)
    {
        const bool isKeyword = isFirst && clauses[at].form == Clause::Form::symbol;
        isFirst = isFirst && clauses[at].form == Clause::Form::comment;
        if (!isKeyword) visit(at);
    }
}

/// Names a part of a model that stands outside of it, as after a parenthesis too many.
void Omt13Reader::reportOutside(std::uint32_t clause)
{
    const std::string_view keyword = keywordOf(clause);
    for (const std::string_view part :
         {"Class", "Interaction", "ComplexDataType", "EnumeratedDataType", "RoutingSpace", "Note"})
        if (isSameWord(keyword, part))
            report(Severity::warning, "outside",
                   "\"" + std::string(keyword) +
                       "\" stands outside of the object model; it is kept as it is",
                   myClauses[clause].line);
}

bool Omt13Reader::read()
{
    std::optional<std::uint32_t> model;
    bool isFed = false;
    for (std::uint32_t at = 0; at < myClauses.size(); at = myClauses[at].next)
    {
        if (!model && isSameWord(keywordOf(at), "ObjectModel")) model = at;
        isFed = isFed || isSameWord(keywordOf(at), "FED");
    }
    if (!model)
    {
        report(Severity::error, "no-object-model",
               isFed ? "is a FED file, which has neither datatypes nor descriptions; the OMT file "
                       "of the model is read"
                     : "is no object model: there is no clause \"ObjectModel\"",
               0);
        return false;
    }
    myModule = myBuilder.addModule(myName, Edition::hla13);
    myIdentification.module = myModule;
    myIdentification.line = myClauses[*model].line;
    std::vector<std::uint32_t> comments;
    for (std::uint32_t at = 0; at < myClauses.size(); at = myClauses[at].next)
    {
        if (myClauses[at].form == Clause::Form::comment)
        {
            comments.push_back(at);
            continue;
        }
        addComments(comments, Aside::theWhole, myIdentificationPending.asides);
        // The version of the format, and what else stands beside the model, is kept as it is.
        if (at == *model)
            readModel(at);
        else
        {
            reportOutside(at);
            addUnknown(at, myIdentificationPending.asides);
        }
    }
    addComments(comments, Aside::theEnd, myIdentificationPending.asides);
    const auto finish = [&](Definition& definition, Kind kind, Pending& pending)
    {
        for (std::size_t i = 0; i < rowsOf(kind).size(); ++i)
            if (rowsOf(kind)[i].someTexts)
                definition.*rowsOf(kind)[i].someTexts = myBuilder.list(pending.texts[i]);
        definition.asides = myBuilder.list(pending.asides);
    };
    for (std::size_t i = 0; i < myContacts.size(); ++i)
        finish(myContacts[i], Kind::contact, myContactsPending[i]);
    finish(myIdentification, Kind::identification, myIdentificationPending);
    myIdentification.contacts = myBuilder.list(myContacts);
    Tables& tables = myBuilder.tables();
    tables.modules[myModule].identification = myIdentification;
    linkClasses(tables.objectClasses, myObjectClauses);
    linkClasses(tables.interactionClasses, myInteractionClauses);
    return true;
}

void Omt13Reader::readModel(std::uint32_t model)
{
    std::vector<std::uint32_t> comments;
    forEachIn(myClauses, model,
              [&](std::uint32_t at)
              {
                  if (myClauses[at].form == Clause::Form::comment)
                      comments.push_back(at);
                  else if (myClauses[at].form != Clause::Form::list)
                      addUnknown(at, myIdentificationPending.asides);
                  else
                  {
                      readTable(at, comments);
                      comments.clear();
                  }
              });
    addComments(comments, Aside::theEnd, myIdentificationPending.asides);
}

void Omt13Reader::readTable(std::uint32_t clause, std::vector<std::uint32_t>& comments)
{
    Tables& tables = myBuilder.tables();
    const std::string_view keyword = keywordOf(clause);
    if (isSameWord(keyword, "Class"))
    {
        tables.objectClasses.push_back(readDefinition<ObjectClass>(clause, comments));
        myObjectClauses.push_back(clause);
    }
    else if (isSameWord(keyword, "Interaction"))
    {
        tables.interactionClasses.push_back(readDefinition<InteractionClass>(clause, comments));
        myInteractionClauses.push_back(clause);
    }
    else if (isSameWord(keyword, "ComplexDataType"))
        tables.complexRecords.push_back(readDefinition<ComplexRecord>(clause, comments));
    else if (isSameWord(keyword, "EnumeratedDataType"))
        tables.enumeratedData.push_back(readDefinition<EnumeratedData>(clause, comments));
    else if (isSameWord(keyword, "RoutingSpace"))
        tables.routingSpaces.push_back(readDefinition<RoutingSpace>(clause, comments));
    else if (isSameWord(keyword, "Note"))
        tables.notes.push_back(readDefinition<Note>(clause, comments));
    else if (!readIdentification(clause, comments))
    {
        addComments(comments, Aside::theWhole, myIdentificationPending.asides);
        report(
            Severity::warning, "unknown-clause",
            "\"" + std::string(keyword) + "\" is no clause of an object model; it is kept as it is",
            myClauses[clause].line);
        addUnknown(clause, myIdentificationPending.asides);
    }
}

/// Clauses of the model itself and of its point of contact; where one of these comes again, a
/// second contact begins.
bool Omt13Reader::readIdentification(std::uint32_t clause,
                                     const std::vector<std::uint32_t>& comments)
{
    const std::string_view keyword = keywordOf(clause);
    std::vector<std::uint32_t> before = comments;
    std::uint8_t row = findRow(Kind::identification, keyword);
    if (row != theNoRow)
    {
        addComments(before, row, myIdentificationPending.asides);
        readProperty(myIdentification, Kind::identification, row, clause, myIdentificationPending);
        return true;
    }
    row = findRow(Kind::contact, keyword);
    if (row == theNoRow) return false;
    const Row& property = rowsOf(Kind::contact)[row];
    if (myContacts.empty() || (property.oneText && (myContacts.back().*property.oneText).isThere()))
    {
        Contact contact;
        contact.module = myModule;
        contact.line = myClauses[clause].line;
        myContacts.push_back(contact);
        myContactsPending.emplace_back();
    }
    addComments(before, row, myContactsPending.back().asides);
    readProperty(myContacts.back(), Kind::contact, row, clause, myContactsPending.back());
    return true;
}

template <typename T>
T Omt13Reader::readDefinition(std::uint32_t clause, const std::vector<std::uint32_t>& comments)
{
    T definition;
    definition.module = myModule;
    definition.line = myClauses[clause].line;
    Pending pending;
    std::vector<std::uint32_t> before = comments;
    addComments(before, Aside::theWhole, pending.asides);
    readProperties(definition, clause, pending);
    for (std::size_t i = 0; i < rowsOf(T::theKind).size(); ++i)
        if (rowsOf(T::theKind)[i].someTexts)
            definition.*rowsOf(T::theKind)[i].someTexts = myBuilder.list(pending.texts[i]);
    definition.asides = myBuilder.list(pending.asides);
    forEachPartList<T>(
        [&](auto list)
        {
            using Part = std::decay_t<decltype(*(definition.*list).begin())>;
            if constexpr (!std::is_same_v<Part, Text>) readParts(definition, clause, list);
        });
    return definition;
}

template <typename T, typename Owner, typename Part>
void Omt13Reader::readParts(T& definition, std::uint32_t clause, List<Part> Owner::*list)
{
    std::vector<Part> parts;
    std::vector<std::uint32_t> comments;
    forEachIn(myClauses, clause,
              [&](std::uint32_t at)
              {
                  if (myClauses[at].form == Clause::Form::comment) return comments.push_back(at);
                  const std::uint8_t row = findRow(T::theKind, keywordOf(at));
                  if (row != theNoRow && rowsOf(T::theKind)[row].parts == Part::theKind &&
                      rowsOf(T::theKind)[row].form == Row::Form::parts)
                      parts.push_back(readDefinition<Part>(at, comments));
                  comments.clear();
              });
    definition.*list = myBuilder.list(parts);
}

/// The properties of a definition, and what is none; parts are left to readParts().
template <typename T>
void Omt13Reader::readProperties(T& definition, std::uint32_t clause, Pending& pending)
{
    constexpr bool isClass = std::is_base_of_v<ClassDefinition, T>;
    std::vector<std::uint32_t> comments;
    forEachIn(
        myClauses, clause,
        [&](std::uint32_t at)
        {
            const Clause& inner = myClauses[at];
            if (inner.form == Clause::Form::comment) return comments.push_back(at);
            if (inner.form == Clause::Form::notes)
                return addNotes(inner, Aside::theWhole, 0, pending.asides);
            const std::string_view keyword = keywordOf(at);
            const std::uint8_t row = findRow(T::theKind, keyword);
            if (row != theNoRow && rowsOf(T::theKind)[row].form == Row::Form::parts)
                return comments.clear();
            addComments(comments, row, pending.asides);
            if (row != theNoRow) return readProperty(definition, T::theKind, row, at, pending);
            if (!isClass || !(isSameWord(keyword, "ID") || isSameWord(keyword, theParentWord<T>)))
                report(Severity::warning, "unknown-clause",
                       inner.form == Clause::Form::list
                           ? "\"" + std::string(keyword) + "\" is no clause of " +
                                 std::string(nameOf(T::theKind)) + "; it is kept as it is"
                           : "text stands where " + std::string(nameOf(T::theKind)) +
                                 " has none; it is kept as it is",
                       inner.line);
            addUnknown(at, pending.asides);
        });
    addComments(comments, Aside::theEnd, pending.asides);
}

void Omt13Reader::readProperty(Definition& definition, Kind kind, std::uint8_t row,
                               std::uint32_t clause, Pending& pending)
{
    const Row& property = rowsOf(kind)[row];
    const std::uint32_t line = myClauses[clause].line;
    const auto item = static_cast<std::uint32_t>(pending.texts[row].size());
    bool isOdd = false;
    const Text value = valueOf(clause, isOdd);
    const bool isAgain = property.oneText && (definition.*property.oneText).isThere();
    if (isOdd || isAgain)
    {
        report(Severity::warning, isAgain ? "repeated-property" : "odd-clause",
               "\"" + std::string(property.words.in13) + "\" of " + std::string(nameOf(kind)) +
                   (isAgain ? " is there twice; the first counts"
                            : " is no word or string alone; it is kept as it is"),
               line);
        return addUnknown(clause, pending.asides);
    }
    if (property.oneText)
        definition.*property.oneText = value;
    else
        pending.texts[row].push_back(value);
    forEachIn(myClauses, clause,
              [&](std::uint32_t at)
              {
                  const Clause& inner = myClauses[at];
                  if (inner.form == Clause::Form::notes) addNotes(inner, row, item, pending.asides);
                  std::vector<std::uint32_t> comment = {at};
                  if (inner.form == Clause::Form::comment)
                      addComments(comment, row, pending.asides);
              });
}

/// The string or the symbols of a clause; several with a blank between them, as in
/// `(DataType unsigned long)`.
Text Omt13Reader::valueOf(std::uint32_t clause, bool& isOdd)
{
    std::string value;
    std::size_t count = 0;
    forEachIn(myClauses, clause,
              [&](std::uint32_t at)
              {
                  const Clause& inner = myClauses[at];
                  isOdd = isOdd || inner.form == Clause::Form::list ||
                          (isAtom(inner) && count > 0 && inner.form == Clause::Form::string);
                  if (!isAtom(inner)) return;
                  if (count++ > 0) value += ' ';
                  value += inner.form == Clause::Form::string ? withoutEscapes(inner.text)
                                                              : std::string(inner.text);
              });
    return copy(value, myClauses[clause].line);
}

void Omt13Reader::addComments(std::vector<std::uint32_t>& comments, std::uint8_t property,
                              std::vector<Aside>& asides)
{
    for (const std::uint32_t at : comments)
    {
        Aside aside;
        aside.what = Aside::What::comment;
        aside.property = property;
        aside.text = copy(myClauses[at].text, myClauses[at].line);
        asides.push_back(aside);
    }
    comments.clear();
}

void Omt13Reader::addUnknown(std::uint32_t clause, std::vector<Aside>& asides)
{
    const Clause& unknown = myClauses[clause];
    Aside aside;
    aside.what = unknown.form == Clause::Form::list ? Aside::What::element : Aside::What::text;
    aside.name = copy(keywordOf(clause), unknown.line);
    aside.text = unknown.form == Clause::Form::string
                     ? copy(withoutEscapes(unknown.text), unknown.line)
                     : copy(unknown.text, unknown.line);
    asides.push_back(aside);
}

void Omt13Reader::addNotes(const Clause& notes, std::uint8_t property, std::uint32_t item,
                           std::vector<Aside>& asides)
{
    Aside aside;
    aside.property = property;
    aside.item = item;
    aside.text = copy(labelsOf(notes.text), notes.line);
    asides.push_back(aside);
}

// The hierarchies
// -------------------------------------------------------------------------------------

/// Gives every class its parent, and puts the table in an order in which that stands first.
template <typename Class>
void Omt13Reader::linkClasses(std::vector<Class>& table, const std::vector<std::uint32_t>& clauses)
{
    std::vector<std::uint32_t> parents = findParents(table, clauses);
    const std::vector<std::uint32_t> ordered = order(table, parents);
    std::vector<std::uint32_t> places(table.size());
    for (std::uint32_t i = 0; i < ordered.size(); ++i) places[ordered[i]] = i;
    std::vector<Class> sorted;
    sorted.reserve(table.size());
    for (const std::uint32_t index : ordered)
    {
        sorted.push_back(table[index]);
        if (parents[index] != Class::theNone) sorted.back().parent = places[parents[index]];
    }
    table = std::move(sorted);
}

template <typename Class>
std::vector<std::uint32_t> Omt13Reader::findParents(const std::vector<Class>& table,
                                                    const std::vector<std::uint32_t>& clauses)
{
    std::unordered_map<std::int64_t, std::uint32_t> numbers;
    for (std::uint32_t i = 0; i < clauses.size(); ++i)
        if (const auto number = numberOf(clauses[i], "ID"))
            if (!numbers.try_emplace(*number, i).second)
                report(Severity::warning, "number-twice",
                       std::string(nameOf(Class::theKind)) + " \"" + cutText(table[i].name) +
                           "\" has the number " + std::to_string(*number) + " of \"" +
                           cutText(table[numbers[*number]].name) + "\"",
                       table[i].line);
    std::vector<std::uint32_t> parents(clauses.size(), Class::theNone);
    for (std::uint32_t i = 0; i < clauses.size(); ++i)
    {
        const auto number = numberOf(clauses[i], theParentWord<Class>);
        if (!number) continue;
        const auto found = numbers.find(*number);
        if (found != numbers.end())
            parents[i] = found->second;
        else if (*number != 0)
            report(Severity::warning, "unknown-class",
                   std::string(nameOf(Class::theKind)) + " \"" + cutText(table[i].name) +
                       "\" stands below number " + std::to_string(*number) +
                       ", which no class has; it is read as a root",
                   table[i].line);
    }
    return parents;
}

/// All indices, each after that of its parent. A ring is opened where it is
/// closed: its last class becomes a root.
template <typename Class>
std::vector<std::uint32_t> Omt13Reader::order(const std::vector<Class>& table,
                                              std::vector<std::uint32_t>& parents)
{
    enum class State : std::uint8_t
    {
        unseen,
        waiting,
        placed
    };
    std::vector<State> states(table.size(), State::unseen);
    std::vector<std::uint32_t> ordered;
    std::vector<std::uint32_t> waiting;
    ordered.reserve(table.size());
    for (std::uint32_t i = 0; i < table.size(); ++i)
    {
        for (std::uint32_t at = i; at != Class::theNone && states[at] != State::placed;
             at = parents[at])
        {
            if (states[at] == State::waiting)
            {
                const std::uint32_t last = waiting.back();
                report(Severity::warning, "class-ring",
                       std::string(nameOf(Class::theKind)) + " \"" + cutText(table[last].name) +
                           "\" stands below itself; it is read as a root",
                       table[last].line);
                parents[last] = Class::theNone;
                break;
            }
            states[at] = State::waiting;
            waiting.push_back(at);
        }
        for (; !waiting.empty(); waiting.pop_back())
        {
            states[waiting.back()] = State::placed;
            ordered.push_back(waiting.back());
        }
    }
    return ordered;
}

std::string_view Omt13Reader::keywordOf(std::uint32_t clause) const
{
    if (myClauses[clause].form != Clause::Form::list) return {};
    for (std::uint32_t at = clause + 1; at < myClauses[clause].next; at = myClauses[at].next)
        if (myClauses[at].form != Clause::Form::comment)
            return myClauses[at].form == Clause::Form::symbol ? myClauses[at].text
                                                              : std::string_view();
    return {};
}

/// The number that a class has by a keyword; a finding where it is none.
std::optional<std::int64_t> Omt13Reader::numberOf(std::uint32_t clause, std::string_view keyword)
{
    std::optional<std::int64_t> number;
    forEachIn(myClauses, clause,
              [&](std::uint32_t at)
              {
                  if (number || !isSameWord(keywordOf(at), keyword)) return;
                  bool isOdd = false;
                  const std::string_view value = valueOf(at, isOdd);
                  std::int64_t read = 0;
                  const auto [end, error] =
                      std::from_chars(value.data(), value.data() + value.size(), read);
                  if (error == std::errc() && end == value.data() + value.size())
                      number = read;
                  else
                      report(Severity::warning, "odd-clause",
                             "\"" + std::string(keyword) + "\" has no number", myClauses[at].line);
              });
    return number;
}

}  // namespace

bool looksLike13(std::string_view text)
{
    return !text.empty() && (text.front() == '(' || text.front() == ';');
}

bool read13(std::string_view name, std::string_view text, ModelBuilder& builder, Findings& findings)
{
    std::string converted;
    if (!isUtf8(text)) text = converted = fromWindows1252(text);
    const Clauses clauses(text);
    if (!clauses.fault().empty())
    {
        findings.push_back({
            Severity::error,
            "malformed",
            clauses.fault(),
            {std::string(name), clauses.faultLine(), 0}
        });
        return false;
    }
    return Omt13Reader(name, clauses, builder, findings).read();
}

}  // namespace omt
