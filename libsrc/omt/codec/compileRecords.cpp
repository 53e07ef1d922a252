// SPDX-License-Identifier: Apache-2.0
// Compiler: variant records, counts that notes state, and the records of HLA 1.3.
#include "omt/codec/compile.h"
#include "omt/model/rprNames.h"

#include <algorithm>

namespace omt
{

// Names of parts are made unique, so that every path means one thing.
void Compiler::nameParts(const Definition& data, std::vector<Part>& parts,
                         const std::vector<std::string_view>& names)
{
    OwnNameSet taken;
    const NameSet given(names.begin(), names.end());
    for (std::size_t i = 0; i < parts.size(); ++i)
    {
        std::string name(names[i]);
        if (name.empty()) name = "part" + std::to_string(i + 1);
        const std::string wanted = name;
        for (std::size_t number = taken.count(name) != 0 ? i + 1 : 0;
             taken.count(name) != 0 || (name != names[i] && given.count(name) != 0); ++number)
            name = wanted + "_" + std::to_string(number);
        if (name != names[i])
            find(Severity::warning, "repeated-field", data, nullptr,
                 "\"" + cutText(data.name) + "\" has a field " +
                     (names[i].empty() ? std::string("without name")
                                       : "\"" + cutText(names[i]) + "\" again") +
                     "; it is called \"" + cutText(name) + "\"");
        parts[i].key = myPlan.addQuoted(name, ":", parts[i].name);
        taken.insert(std::move(name));
    }
}

void Compiler::storeParts(Id id, const std::vector<Part>& parts)
{
    Node& node = myPlan.nodes[id];
    node.first = static_cast<std::uint32_t>(myPlan.parts.size());
    node.parts = static_cast<std::uint32_t>(parts.size());
    for (const Part& part : parts) node.isLooking = node.isLooking || part.isLookedAt;
    myPlan.parts.insert(myPlan.parts.end(), parts.begin(), parts.end());
}

const Enumeration* Compiler::enumerationOf(Id id) const
{
    const Node& node = myPlan.nodes[target(id)];
    return node.form == Form::number && node.table != theNone ? &myPlan.enumerations[node.table]
                                                              : nullptr;
}

// Variant records ---------------------------------------------------------------------------

void Compiler::build(Id id, const VariantRecord& data)
{
    const Encoding how = data.encoding.empty() ? Encoding::variantRecord : encoding(data.encoding);
    if (how != Encoding::variantRecord && how != Encoding::extendedVariant &&
        how != Encoding::extendableVariant)
        return find(Severity::error, "record-encoding", data, &data.encoding,
                    "the variant record \"" + cutText(data.name) +
                        "\" cannot be decoded: its encoding is unknown");
    std::vector<Part> parts(1);
    parts[0].node = resolve(data, data.dataType);
    const Node& discriminant = myPlan.nodes[target(parts[0].node)];
    if (discriminant.form != Form::number || discriminant.scalar == Scalar::floating)
        return find(Severity::error, "discriminant", data, &data.dataType,
                    "the variant record \"" + cutText(data.name) +
                        "\" cannot be decoded: its discriminant is no integer");
    if (!addChoices(id, data, parts))
        return find(Severity::error, "too-large", data, &data.dataType,
                    "the variant record \"" + cutText(data.name) +
                        "\" cannot be decoded: with the ranges and enumerators of all variant "
                        "records of the model there are too many choices");
    if (myOptions.isPaddedFromStart && how == Encoding::extendedVariant)
        for (std::size_t i = 1; i < parts.size(); ++i)
            parts[i].node = addPhased(parts[i].node, parts[0].node);
    Node& node = myPlan.nodes[id];
    node.form = Form::variant;
    node.length = how == Encoding::extendedVariant     ? Length::extended
                  : how == Encoding::extendableVariant ? Length::extendable
                                                       : Length::none;
    node.element = parts[0].node;
    storeParts(id, parts);
}

// The record of an alternative that begins at once after discriminant and length, built once more
// to be laid out from there.
Compiler::Id Compiler::addPhased(Id alternative, Id discriminant)
{
    const auto* const record = mySources[alternative].as<FixedRecord>();
    const std::uint32_t phase = (myPlan.nodes[target(discriminant)].size + 4) % 8;
    if (!record || phase == 0) return alternative;
    const auto [place, isNew] = myPhased.try_emplace({alternative, phase}, theNone);
    if (!isNew) return place->second;
    const Id id = addNode(std::string(record->name));
    place->second = id;
    const std::size_t known = myFindings.size();
    build(id, *record);
    // What is to say of the record is said where it stands alone.
    myFindings.erase(myFindings.begin() + static_cast<std::ptrdiff_t>(known), myFindings.end());
    for (Hinted& one : myHinted)
        if (std::count(one.nodes.begin(), one.nodes.end(), alternative) > 0)
            one.nodes.push_back(id);
    myPlan.nodes[id].phase = static_cast<std::uint8_t>(phase);
    return id;
}

// Whether there are not too many.
bool Compiler::addChoices(Id id, const VariantRecord& data, std::vector<Part>& parts)
{
    Choices choices;
    std::vector<std::string_view> names = {data.discriminant};
    const auto isNothing = [](const Text& text) { return text.empty() || text == "NA"; };
    for (const Alternative& alternative : data.alternatives)
    {
        std::uint32_t index = theNothing;
        if (!isNothing(alternative.name) && !isNothing(alternative.dataType))
        {
            index = static_cast<std::uint32_t>(parts.size());
            parts.emplace_back().node = resolve(alternative, alternative.dataType);
            names.push_back(alternative.name);
        }
        for (const EnumeratorRange& range : enumeratorRanges(alternative.enumerator))
            if (!addChoice(data, alternative, range, index, choices)) return false;
    }
    if (!closeChoices(choices, enumerationOf(parts[0].node))) return false;
    nameParts(data, parts, names);
    myPlan.nodes[id].table = static_cast<std::uint32_t>(myPlan.choices.size());
    myPlan.choices.push_back(std::move(choices));
    return true;
}

// Adds the numbers of one name or range of names.
bool Compiler::addChoice(const VariantRecord& data, const Alternative& alternative,
                         const EnumeratorRange& range, std::uint32_t index, Choices& choices)
{
    if (range.first == "HLAother")
    {
        if (choices.other == theNone) choices.other = index;
        return true;
    }
    const Enumeration* const names = enumerationOf(myPlan.names[data.dataType.str()]);
    std::uint32_t first = names ? myPlan.findEntry(*names, range.first) : theNone;
    std::uint32_t last = names ? myPlan.findEntry(*names, range.last) : theNone;
    if (first != theNone && last != theNone && first <= last)
    {
        // The last name may have several numbers, which follow each other.
        while (last + 1 < names->entries.size() && !names->entries[last + 1].isFirst) ++last;
        if (!takeChoices(last - first)) return false;
        for (; first <= last; ++first)
            choices.numbers.push_back({names->entries[first].number, index});
        return true;
    }
    const std::optional<std::int64_t> number = wholeNumber(range.first);
    if (number && range.first == range.last)
        choices.numbers.push_back({*number, index});
    else
        find(Severity::error, "unknown-enumerator", alternative, &alternative.enumerator,
             "the alternative \"" + cutText(alternative.name) + "\" of \"" + cutText(data.name) +
                 "\" names enumerators that \"" + cutText(data.dataType) + "\" does not have: \"" +
                 cutText(alternative.enumerator) + "\"");
    return true;
}

// Whether there is room for choices that no name of their own stands for.
bool Compiler::takeChoices(std::size_t count)
{
    const bool isRoom = count <= myChoicesLeft;
    if (isRoom) myChoicesLeft -= count;
    return isRoom;
}

// Sorts the numbers; the first alternative of a number counts. A named number without alternative
// means that nothing follows.
bool Compiler::closeChoices(Choices& choices, const Enumeration* names)
{
    const auto byNumber = [](const Choices::Range& one, const Choices::Range& two)
    { return one.number < two.number; };
    const std::size_t named = names && choices.other == theNone ? names->entries.size() : 0;
    if (!takeChoices(named - std::min(named, choices.numbers.size()))) return false;
    if (named != 0)
        for (const Enumeration::Entry& entry : names->entries)
            choices.numbers.push_back({entry.number, theNothing});
    std::stable_sort(choices.numbers.begin(), choices.numbers.end(), byNumber);
    const auto isSame = [](const Choices::Range& one, const Choices::Range& two)
    { return one.number == two.number; };
    choices.numbers.erase(std::unique(choices.numbers.begin(), choices.numbers.end(), isSame),
                          choices.numbers.end());
    return true;
}

// Counts stated by a note --------------------------------------------------------------------

void Compiler::addCount(const FixedRecord& data, std::size_t field, std::vector<Part>& parts)
{
    constexpr std::string_view theWord = "RPRlengthlessArrayLength=";
    for (const Aside& aside : data.fields[field].asides)
    {
        if (aside.what != Aside::What::notes) continue;
        for (std::string_view labels = trimmed(aside.text); !labels.empty();)
        {
            const std::size_t end = std::min(labels.find_first_of(" \t\r\n"), labels.size());
            const Note* const note = myModel.findNote(labels.substr(0, end));
            labels = trimmed(labels.substr(end));
            const std::string_view text = note ? trimmed(note->semantics) : std::string_view();
            if (text.substr(0, theWord.size()) != theWord) continue;
            if (addSteps(text.substr(theWord.size()), parts, field)) return;
            find(Severity::warning, "array-length", data.fields[field], nullptr,
                 "the length of \"" + cutText(data.fields[field].name) +
                     "\" is stated by something that is no sum of earlier fields: \"" +
                     cutText(text) + "\"");
        }
    }
}

bool Compiler::addSteps(std::string_view text, std::vector<Part>& parts, std::size_t field)
{
    const Node& array = myPlan.nodes[target(parts[field].node)];
    if (array.form != Form::array || array.extent != Extent::lengthless) return true;
    const std::optional<std::vector<SumToken>> tokens = sum(text);
    if (!tokens) return false;
    std::vector<Step> steps;
    for (const SumToken& token : *tokens)
    {
        Step step{token.what, token.number};
        if (token.what == Step::What::field)
        {
            std::size_t i = 0;
            while (i < field && myPlan.text(parts[i].name) != token.name) ++i;
            const Node& number = myPlan.nodes[target(parts[i].node)];
            if (i == field || number.form != Form::number || number.scalar == Scalar::floating)
                return false;
            parts[i].isLookedAt = true;
            step.value = static_cast<std::int64_t>(i);
        }
        steps.push_back(step);
    }
    parts[field].steps = static_cast<std::uint32_t>(myPlan.steps.size());
    parts[field].stepCount = static_cast<std::uint32_t>(steps.size());
    myPlan.steps.insert(myPlan.steps.end(), steps.begin(), steps.end());
    return true;
}

// HLA 1.3 ------------------------------------------------------------------------------------

// An array without a count of its own, as HLA 1.3 has them.
Compiler::Id Compiler::addRepeated(Id element, const ComponentCardinality& how, bool isPadding)
{
    const Id id = addNode(std::string(myPlan.text(myPlan.nodes[element].name)));
    Node& node = myPlan.nodes[id];
    node.form = Form::array;
    node.element = element;
    node.least = how.least;
    node.most = how.most;
    const bool isFixed = how.least == how.most && how.padding == 0;
    node.extent = isPadding ? Extent::padding : isFixed ? Extent::fixed : Extent::lengthless;
    node.count = isPadding ? how.padding : how.least;
    return id;
}

namespace
{

}  // namespace

void Compiler::build(Id id, const ComplexRecord& data)
{
    std::vector<Part> parts;
    std::vector<std::string_view> names;
    parts.reserve(data.components.size());
    for (const Component& one : data.components)
    {
        parts.emplace_back();
        names.push_back(one.name);
    }
    nameParts(data, parts, names);
    for (std::size_t i = 0; i < data.components.size(); ++i)
    {
        const Part part = component(data, i, parts);
        const Part named = parts[i];
        parts[i] = part;
        parts[i].name = named.name;
        parts[i].key = named.key;
        // No implicit padding: a boundary of 0 until it is laid out.
        parts[i].boundary = 0;
        const Node& node = myPlan.nodes[target(part.node)];
        const auto* before = i > 0 ? &data.components[i - 1] : nullptr;
        if (before && part.decider == theNone && part.stepCount == 0 && node.form == Form::array &&
            node.extent == Extent::lengthless && isCountByName(before->name))
            addSteps(before->name, parts, i);
    }
    splitHinted(data, parts);
    myPlan.nodes[id].form = Form::record;
    // The same for the record as a whole.
    myPlan.nodes[id].boundary = 0;
    storeParts(id, parts);
}

Part Compiler::component(const ComplexRecord& data, std::size_t index, std::vector<Part>& parts)
{
    const Component& one = data.components[index];
    Part part;
    part.node = resolve(one, one.dataType);
    std::optional<ComponentCardinality> how = componentCardinality(one.cardinality);
    if (!how)
    {
        find(Severity::error, "component-cardinality", one, &one.cardinality,
             "the component \"" + cutText(one.name) + "\" of \"" + cutText(data.name) +
                 "\" has the cardinality \"" + cutText(one.cardinality) + "\"");
        part.node = addNode(one.dataType);
        return part;
    }
    const Node& node = myPlan.nodes[target(part.node)];
    const bool isOctet = node.form == Form::number && node.size == 1;
    if (how->padding == 0 && how->most == theNone && how->decider.empty() && isOctet)
        how->padding = paddingByName(one.name);
    const bool isOptional = how->least == 0 && how->decider.empty();
    if (how->padding != 0 || how->most > 1 || how->most == 0 || isOptional)
        part.node = addRepeated(part.node, *how, how->padding != 0);
    if (!how->decider.empty()) setDecider(one, *how, parts, part);
    return part;
}

void Compiler::setDecider(const Component& data, const ComponentCardinality& how,
                          std::vector<Part>& parts, Part& part)
{
    std::uint32_t i = 0;
    while (i < parts.size() && parts[i].node != theNone &&
           myPlan.text(parts[i].name) != how.decider)
        ++i;
    const bool isEarlier = i < parts.size() && parts[i].node != theNone;
    const Enumeration* const names = isEarlier ? enumerationOf(parts[i].node) : nullptr;
    const Node* const node = isEarlier ? &myPlan.nodes[target(parts[i].node)] : nullptr;
    const std::uint32_t entry = names ? myPlan.findEntry(*names, how.value) : theNone;
    const std::optional<std::int64_t> number =
        entry != theNone ? names->entries[entry].number : wholeNumber(how.value);
    const bool isInteger = node && node->form == Form::number && node->scalar != Scalar::floating;
    if (!isInteger || (!how.value.empty() && !number))
        return find(Severity::error, "component-condition", data, &data.cardinality,
                    "the condition of the component \"" + cutText(data.name) +
                        "\" cannot be decided: \"" + cutText(data.cardinality) + "\"");
    parts[i].isLookedAt = true;
    if (!how.value.empty())
    {
        part.decider = i;
        part.decidingNumber = *number;
    }
    else if (how.most != 1)
    {
        part.steps = static_cast<std::uint32_t>(myPlan.steps.size());
        part.stepCount = 1;
        myPlan.steps.push_back({Step::What::field, i});
    }
}

}  // namespace omt
