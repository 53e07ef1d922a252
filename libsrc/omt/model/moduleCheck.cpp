// SPDX-License-Identifier: Apache-2.0
#include "omt/model/moduleCheck.h"

#include "omt/base/nameHash.h"
#include "omt/model/compare.h"
#include "omt/model/rows.h"

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

namespace omt
{

namespace
{

/// What checking has at hand: the model that findings point into.
class ModuleCheck
{
public:
    ModuleCheck(const Model& model, Findings& findings) : myModel(model), myFindings(findings) {}

    void checkAll()
    {
        const Tables& tables = myModel.tables();
        checkNames(tables.objectClasses, tables.interactionClasses, tables.dimensions,
                   tables.synchronizationPoints, tables.transportations, tables.updateRates,
                   tables.basicData, tables.simpleData, tables.referenceData, tables.enumeratedData,
                   tables.arrayData, tables.fixedRecords, tables.variantRecords,
                   tables.complexRecords, tables.routingSpaces, tables.notes);
        for (const ObjectClass& node : tables.objectClasses) checkNames(node.attributes);
        for (const InteractionClass& node : tables.interactionClasses) checkNames(node.parameters);
        for (const FixedRecord& record : tables.fixedRecords) checkNames(record.fields);
        for (const ComplexRecord& record : tables.complexRecords) checkNames(record.components);
        for (const EnumeratedData& data : tables.enumeratedData) checkEnumerators(data);
    }

private:
    template <typename... Tables>
    void checkNames(const Tables&... tables)
    {
        (checkNamesOf(tables), ...);
    }

    template <typename Table>
    void checkNamesOf(const Table& table)
    {
        for (const auto& definition : table)
        {
            if (!definition.name.empty()) continue;
            const Kind kind = std::decay_t<decltype(definition)>::theKind;
            report(Severity::error, "no-name",
                   "there is " + articled(nameOf(kind)) + " without a name", definition,
                   definition.name);
        }
    }

    static std::string articled(std::string_view name)
    {
        constexpr std::string_view theVowels = "aeiou";
        const bool isVowel = theVowels.find(name.front()) != std::string_view::npos;
        return (isVowel ? "an " : "a ") + std::string(name);
    }

    void checkEnumerators(const EnumeratedData& data)
    {
        checkNames(data.enumerators);
        NameMap<const Enumerator*> names;
        names.reserve(data.enumerators.size());
        myNumbers.clear();
        for (const Enumerator& enumerator : data.enumerators)
        {
            const auto [first, isNew] = names.try_emplace(enumerator.name, &enumerator);
            if (!isNew && !enumerator.name.empty())
                report(Severity::warning, "enumerator-twice",
                       phrase(data, enumerator) + " is there twice", enumerator, enumerator.name,
                       first->second);
            checkNumbers(data, enumerator);
        }
        checkTwins(data);
    }

    void checkNumbers(const EnumeratedData& data, const Enumerator& enumerator)
    {
        if (enumerator.values.empty())
            report(Severity::warning, "no-number", phrase(data, enumerator) + " has no number",
                   enumerator, enumerator.name);
        if (enumerator.values.size() > 1)
            report(Severity::note, "several-numbers",
                   phrase(data, enumerator) + " has several numbers", enumerator,
                   enumerator.values[1]);
        for (const Text& value : enumerator.values)
        {
            if (const std::optional<std::int64_t> number = enumeratorNumber(value))
                myNumbers.push_back({*number, &enumerator, &value});
            else
                report(
                    Severity::warning, "no-number",
                    phrase(data, enumerator) + " has `" + cutText(value) + "`, which is no number",
                    enumerator, value);
        }
    }

    /// Reports each enumerator whose number one before it has. Sorted rather than hashed, as
    /// whoever writes a document chooses the numbers.
    void checkTwins(const EnumeratedData& data)
    {
        const auto isLess = [](const Number& a, const Number& b) { return a.number < b.number; };
        if (std::is_sorted(myNumbers.begin(), myNumbers.end(), isLess) &&
            std::adjacent_find(myNumbers.begin(), myNumbers.end(), isTwin) == myNumbers.end())
            return;
        std::stable_sort(myNumbers.begin(), myNumbers.end(), isLess);
        const Number* first = nullptr;
        for (const Number& each : myNumbers)
        {
            if (!first || !isTwin(*first, each))
                first = &each;
            else if (first->enumerator != each.enumerator)
                report(Severity::warning, "number-twice",
                       phrase(data, *each.enumerator) + " has the number " + cutText(*each.text) +
                           " of `" + cutText(first->enumerator->name) + "`",
                       *each.enumerator, *each.text, first->enumerator);
        }
    }

    struct Number
    {
        std::int64_t number;
        const Enumerator* enumerator;
        const Text* text;
    };
    static bool isTwin(const Number& a, const Number& b) { return a.number == b.number; }

    static std::string phrase(const EnumeratedData& data, const Enumerator& enumerator)
    {
        return "enumerator `" + cutText(enumerator.name) + "` of `" + cutText(data.name) + "`";
    }

    void report(Severity severity, const char* name, std::string text, const Definition& definition,
                const Text& property, const Definition* other = nullptr)
    {
        myFindings.push_back(
            {severity, name, std::move(text), myModel.place(definition, property)});
        if (other) myFindings.back().other = myModel.place(*other, other->name);
    }

    const Model& myModel;
    Findings& myFindings;
    std::vector<Number> myNumbers;
};

}  // namespace

std::optional<std::int64_t> enumeratorNumber(std::string_view text)
{
    const bool isNegative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    const bool isHexadecimal =
        text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    if (isHexadecimal) text.remove_prefix(2);
    std::uint64_t number = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), number, isHexadecimal ? 16 : 10);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    constexpr std::uint64_t theLeast = std::uint64_t{1} << 63;
    if (isNegative && number > theLeast) return std::nullopt;
    return static_cast<std::int64_t>(isNegative ? 0 - number : number);
}

void checkModule(const Model& model, Findings& findings)
{
    ModuleCheck(model, findings).checkAll();
}

}  // namespace omt
