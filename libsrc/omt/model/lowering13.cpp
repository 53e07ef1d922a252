// SPDX-License-Identifier: Apache-2.0
#include "omt/model/lowering13.h"

#include "omt/model/compare.h"
#include "omt/model/parts.h"
#include "omt/model/read.h"
#include "omt/model/rows.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <iterator>
#include <utility>

namespace omt
{

namespace
{

/// A datatype that HLA 1.3 has without a definition, with the octets that the RPR FOM gives it.
struct Primitive
{
    std::string_view name;
    /// The representation in the standard MIM; empty where it has none.
    std::string_view in2010;
    std::string_view in2025;
    /// What its simple datatype is called.
    std::string_view simple;
    std::uint32_t octets;
};

constexpr Primitive thePrimitives[] = {
    {"octet",              "HLAoctet",       "HLAoctet",               "Octet",             1},
    {"unsigned char",      "HLAoctet",       "HLAoctet",               "Octet",             1},
    {"short",              "HLAinteger16BE", "HLAinteger16BE",         "Integer16",         2},
    {"unsigned short",     "",               "HLAunsignedInteger16BE", "UnsignedInteger16", 2},
    {"long",               "HLAinteger32BE", "HLAinteger32BE",         "Integer32",         4},
    {"unsigned long",      "",               "HLAunsignedInteger32BE", "UnsignedInteger32", 4},
    {"int",                "HLAinteger32BE", "HLAinteger32BE",         "Integer32",         4},
    {"unsigned int",       "",               "HLAunsignedInteger32BE", "UnsignedInteger32", 4},
    {"long long",          "HLAinteger64BE", "HLAinteger64BE",         "Integer64",         8},
    {"unsigned long long", "",               "HLAunsignedInteger64BE", "UnsignedInteger64", 8},
    {"float",              "HLAfloat32BE",   "HLAfloat32BE",           "Float32",           4},
    {"double",             "HLAfloat64BE",   "HLAfloat64BE",           "Float64",           8},
};

const Primitive* findPrimitive(std::string_view name)
{
    const auto* const found =
        std::find_if(std::begin(thePrimitives), std::end(thePrimitives),
                     [&](const Primitive& each) { return each.name == name; });
    return found == std::end(thePrimitives) ? nullptr : found;
}

/// The letters and digits of a text as one word.
std::string asWord(std::string_view text)
{
    std::string word;
    bool isStart = true;
    for (const char c : text)
    {
        const auto octet = static_cast<unsigned char>(c);
        const bool isPart = octet < 0x80 && std::isalnum(octet) != 0;
        if (isPart) word += isStart ? static_cast<char>(std::toupper(octet)) : c;
        isStart = !isPart;
    }
    return word;
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view theBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(theBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(theBlanks) - first + 1);
}

/// In HLA 1.3 also "N/A" says nothing.
bool says(const Text& text)
{
    const std::string_view said = trimmed(text);
    return saysSomething(said) && said != "N/A" && said != "n/a";
}

std::optional<std::uint32_t> numberIn(std::string_view text)
{
    text = trimmed(text);
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    constexpr std::uint32_t theMost = 0x7FFFFFFF;
    if (text.empty() || error != std::errc() || stop != end || number > theMost)
        return std::nullopt;
    return number;
}

/// The octets of an enumerated datatype, which the RPR FOM has in its name: "KindEnum8".
std::uint32_t enumeratedOctets(std::string_view name)
{
    constexpr std::pair<std::string_view, std::uint32_t> theEndings[] = {
        {"Enum8",  1},
        {"Enum16", 2},
        {"Enum32", 4},
        {"Enum64", 8}
    };
    for (const auto& [ending, octets] : theEndings)
        if (name.size() > ending.size() && name.substr(name.size() - ending.size()) == ending)
            return octets;
    return 4;
}

}  // namespace

std::optional<Occurrence> occurrence(std::string_view cardinality)
{
    Occurrence how;
    std::string_view text = trimmed(cardinality);
    if (text.empty()) return how;
    if (text.front() == '%')
    {
        how.padding = numberIn(text.substr(1)).value_or(0);
        if (how.padding != 2 && how.padding != 4 && how.padding != 8) return std::nullopt;
        return how;
    }
    const std::size_t open = text.find_first_of("(,");
    if (open != std::string_view::npos)
    {
        std::string_view condition = trimmed(text.substr(open + 1));
        if (!condition.empty() && condition.back() == ')') condition.remove_suffix(1);
        const std::size_t equal = condition.find('=');
        how.decider = trimmed(condition.substr(0, equal));
        if (equal != std::string_view::npos) how.value = trimmed(condition.substr(equal + 1));
        text = trimmed(text.substr(0, open));
        how.least = 0;
        if (text.empty()) return how;
    }
    const bool isOpen = text.back() == '+';
    if (isOpen) text.remove_suffix(1);
    const std::size_t dash = text.find('-');
    const auto first = numberIn(text.substr(0, dash));
    const auto last = dash == std::string_view::npos ? first : numberIn(text.substr(dash + 1));
    if (!first || !last || *last < *first) return std::nullopt;
    how.least = *first;
    how.most = isOpen ? Occurrence::theOpen : *last;
    return how;
}

bool Lowering13::isOf13(const Definition& definition) const
{
    return definition.module < myModel.modules().size() &&
           myModel.modules()[definition.module].edition == Edition::hla13;
}

void Lowering13::lose(const Definition& definition, const Text& property, std::string sentence)
{
    myFindings.push_back(
        {Severity::warning, "lost", std::move(sentence), myModel.place(definition, property)});
}

void Lowering13::lower()
{
    std::vector<Module>& modules = myBuilder.tables().modules;
    const auto isOld = [](const Module& module) { return module.edition == Edition::hla13; };
    const auto first = std::find_if(modules.begin(), modules.end(), isOld);
    if (first == modules.end()) return;
    myModule = static_cast<std::uint32_t>(first - modules.begin());
    forEachNamedTable(
        [this](auto table)
        {
            for (const auto& definition : myBuilder.tables().*table)
                myNames.take(definition.name.str());
        });
    for (Module& module : modules)
        if (isOld(module)) lowerIdentification(module);
    lowerEnumerations();
    lowerComplex();
    lowerRoutingSpaces();
    lowerClasses();
}

/// A point of contact has its name in three texts, and the sponsor is another one.
void Lowering13::lowerIdentification(Module& module)
{
    Identification& identification = module.identification;
    std::vector<Contact> contacts(identification.contacts.begin(), identification.contacts.end());
    for (Contact& contact : contacts)
    {
        std::string name = contact.name.str();
        for (Text* const part : {&contact.honorific, &contact.firstName, &contact.lastName})
        {
            if (!part->empty()) name += (name.empty() ? "" : " ") + part->str();
            *part = {};
        }
        if (!name.empty()) contact.name = myBuilder.text(name, contact.line);
    }
    if (says(identification.sponsor))
    {
        Contact& sponsor = contacts.emplace_back();
        sponsor.module = identification.module;
        sponsor.type = myBuilder.text("Sponsor");
        sponsor.organization = identification.sponsor;
    }
    identification.sponsor = {};
    identification.contacts = myBuilder.list(contacts);
}

// Classes
// ------------------------------------------------------------------------------------

void Lowering13::lowerClasses()
{
    for (ObjectClass& node : myBuilder.tables().objectClasses)
    {
        if (!isOf13(node)) continue;
        lowerClass(node, "HLAobjectRoot", "ObjectRoot");
        lowerMembers(node.attributes);
    }
    for (InteractionClass& node : myBuilder.tables().interactionClasses)
    {
        if (!isOf13(node)) continue;
        lowerClass(node, "HLAinteractionRoot", "InteractionRoot");
        node.transportation = todaysTransportation(node.transportation);
        lowerMembers(node.parameters);
    }
}

template <typename T>
void Lowering13::lowerClass(T& node, std::string_view rootName, std::string_view rootBefore)
{
    if (node.parent == T::theNone && node.name == rootBefore)
        node.name = myBuilder.text(rootName, node.name.line());
    // The numbers of classes, and of those above them, are the hierarchy itself.
    std::vector<Aside> asides;
    for (const Aside& aside : std::as_const(node.asides))
    {
        const bool isNumber =
            aside.what == Aside::What::element &&
            (aside.name == "ID" || aside.name == "SuperClass" || aside.name == "SuperInteraction");
        if (!isNumber) asides.push_back(aside);
    }
    node.asides = myBuilder.list(asides);
}

template <typename T>
void Lowering13::lowerMembers(List<T>& members)
{
    List<T> lowered = myBuilder.copy(members);
    for (T& member : lowered)
    {
        if (!isOf13(member)) continue;
        lowerMember(member);
        if constexpr (std::is_same_v<T, Attribute>)
            member.transportation = todaysTransportation(member.transportation);
    }
    members = lowered;
}

/// The datatype of an attribute or parameter, which has the units and how often it occurs.
void Lowering13::lowerMember(Member& member)
{
    const Text before = member.dataType;
    const auto how = occurrence(member.cardinality);
    const bool isOne = how && how->padding == 0 && how->least == 1 && how->most == 1;
    const std::optional<Laid> element = this->element(member);
    if (element && isOne)
        member.dataType = myBuilder.text(element->name, before.line());
    else if (element && how)
    {
        if (const std::optional<Piece> piece = repeated(*element, *how))
            member.dataType = myBuilder.text(piece->type, before.line());
        else
        {
            member.dataType = myBuilder.text(tailOctets(), before.line());
            lose(member, before,
                 "the datatype of `" + member.name.str() +
                     "` is lost: 1516 would pad its elements; they become octets");
        }
    }
    member.cardinality = member.units = member.resolution = member.accuracy = {};
    member.accuracyCondition = {};
}

bool Lowering13::isSimple(std::string_view type)
{
    return findPrimitive(type) != nullptr;
}

void Lowering13::loseUnits(const Member& member)
{
    for (const Text& each :
         {member.units, member.resolution, member.accuracy, member.accuracyCondition})
        if (says(each))
            return lose(member, each,
                        "`" + cutText(each) + "` of `" + member.name.str() +
                            "` is lost: units, resolution and accuracy are of simple datatypes");
}

Text Lowering13::todaysTransportation(const Text& transportation)
{
    const std::string_view word = transportation == "best_effort" ? "HLAbestEffort"
                                  : transportation == "reliable"  ? "HLAreliable"
                                                                  : std::string_view();
    return word.empty() ? transportation : myBuilder.text(word, transportation.line());
}

/// The dimensions of a routing space stand by themselves; who was in the space has them all.
void Lowering13::lowerRoutingSpaces()
{
    Tables& tables = myBuilder.tables();
    for (const RoutingSpace& space : tables.routingSpaces)
        for (const RoutingDimension& from : space.dimensions)
        {
            Dimension dimension;
            static_cast<Definition&>(dimension) = from;
            const std::string name = myNames.free(from.name.str());
            dimension.name = myBuilder.text(name, from.name.line());
            dimension.asides = asidesFor(from, Kind::routingDimension, Kind::dimension);
            dimension.normalization = from.normalization;
            for (const Text& each : {from.type, from.minimum, from.maximum, from.units})
                if (says(each))
                    lose(from, each,
                         "`" + cutText(each) + "` of dimension `" + from.name.str() +
                             "` is lost: 1516 has no place for it");
            tables.dimensions.push_back(dimension);
            mySpaces[space.name.str()].push_back(dimension.name);
        }
    tables.routingSpaces.clear();
    for (ObjectClass& node : tables.objectClasses)
    {
        if (!isOf13(node)) continue;
        node.attributes = myBuilder.copy(node.attributes);
        for (Attribute& attribute : node.attributes) replaceSpaces(attribute, attribute.dimensions);
    }
    for (InteractionClass& node : tables.interactionClasses)
        if (isOf13(node)) replaceSpaces(node, node.dimensions);
}

void Lowering13::replaceSpaces(const Definition& user, List<Text>& dimensions)
{
    // A document may put any number of attributes into a space of any size.
    constexpr std::size_t theMost = 1000000;
    std::vector<Text> all;
    for (const Text& each : std::as_const(dimensions))
    {
        const auto found = mySpaces.find(each.str());
        if (found == mySpaces.end())
            all.push_back(each);
        else if ((myReplaced += found->second.size()) <= theMost)
            all.insert(all.end(), found->second.begin(), found->second.end());
        else
            lose(user, each,
                 "the routing space of `" + user.name.str() +
                     "` is lost: its dimensions are too many to be written for each attribute");
    }
    if (all.size() != dimensions.size() || !mySpaces.empty()) dimensions = myBuilder.list(all);
}

// Datatypes
// ----------------------------------------------------------------------------------

/// Numbers of enumerators that are counted, and the octets of all of them.
void Lowering13::lowerEnumerations()
{
    for (EnumeratedData& data : myBuilder.tables().enumeratedData)
    {
        if (!isOf13(data) || data.representation.isThere()) continue;
        const std::uint32_t octets = enumeratedOctets(data.name);
        constexpr std::string_view theTypes[] = {"octet", "unsigned short", "unsigned long",
                                                 "unsigned long long"};
        const std::string_view type = theTypes[octets == 1   ? 0
                                               : octets == 2 ? 1
                                               : octets == 4 ? 2
                                                             : 3];
        data.representation = myBuilder.text(basicName(type), data.line);
        data.enumerators = myBuilder.copy(data.enumerators);
        std::int64_t next = 0;
        std::from_chars(data.startValue.view().data(),
                        data.startValue.view().data() + data.startValue.size(), next);
        for (Enumerator& enumerator : data.enumerators)
        {
            if (enumerator.values.empty() && data.autoSequence.isThere())
                enumerator.values =
                    myBuilder.list(std::vector<Text>{myBuilder.text(std::to_string(next))});
            for (const Text& value : std::as_const(enumerator.values))
                std::from_chars(value.view().data(), value.view().data() + value.size(), next);
            next = static_cast<std::int64_t>(static_cast<std::uint64_t>(next) + 1);
        }
        data.autoSequence = data.startValue = {};
        Laid& known = myLaid[data.name.str()];
        known.name = data.name.str();
        known.size = octets;
        known.boundary = octets;
        known.extent.rest = octets % 8;
    }
}

/// A definition of the standard MIM, once in the tables.
std::string Lowering13::copyFromMim(std::string_view name)
{
    if (!myNames.take(std::string(name))) return std::string(name);
    if (myMim.modules().empty())
    {
        Findings ignored;
        myMim = readModule({"", standardMim(myEdition)}, ignored);
        myBuilder.share(myMim);
    }
    const Datatype found = myMim.findDatatype(name);
    if (const auto* const basic = found.as<BasicData>())
    {
        BasicData copy = *basic;
        copy.module = myModule;
        copy.line = 0;
        copy.asides = {};
        myBuilder.tables().basicData.push_back(copy);
    }
    if (const auto* const simple = found.as<SimpleData>())
    {
        SimpleData copy = *simple;
        copy.module = myModule;
        copy.line = 0;
        copy.asides = {};
        myBuilder.tables().simpleData.push_back(copy);
        copyFromMim(copy.representation);
    }
    return std::string(name);
}

/// The representation of a primitive datatype; 1516-2010 has no unsigned ones.
std::string Lowering13::basicName(std::string_view type)
{
    const Primitive& primitive = *findPrimitive(type);
    const std::string_view standard =
        myEdition == Edition::ieee2025 ? primitive.in2025 : primitive.in2010;
    if (!standard.empty()) return copyFromMim(standard);
    std::string& name = myMade["basic " + std::string(primitive.simple)];
    if (!name.empty()) return name;
    name = myNames.free(std::string(primitive.simple) + "BE");
    const std::string bits = std::to_string(primitive.octets * 8);
    BasicData data;
    data.module = myModule;
    data.name = myBuilder.text(name);
    data.size = myBuilder.text(bits);
    data.interpretation = myBuilder.text("Integer in the range [0, 2^" + bits + " - 1]");
    data.endian = myBuilder.text("Big");
    data.encoding =
        myBuilder.text(bits + "-bit unsigned integer, the most significant octet first");
    myBuilder.tables().basicData.push_back(data);
    return name;
}

/// A simple datatype of a primitive one, with the units of a member if there is one.
std::string Lowering13::simpleName(std::string_view type, const Member* member)
{
    const auto said = [&](Text Member::*property)
    { return member && says(member->*property) ? (member->*property).str() : std::string(); };
    const std::string units = said(&Member::units);
    const std::string resolution = said(&Member::resolution);
    const std::string condition = said(&Member::accuracyCondition);
    std::string accuracy = said(&Member::accuracy);
    if (!condition.empty()) accuracy += (accuracy.empty() ? "(" : " (") + condition + ")";
    const Primitive& primitive = *findPrimitive(type);
    std::string& name = myMade["simple " + std::string(primitive.simple) + '\n' + units + '\n' +
                               resolution + '\n' + accuracy];
    if (!name.empty()) return name;
    const bool isAlways = condition.empty() || condition == "always";
    name = myNames.free(std::string(primitive.simple) + asWord(units) +
                        asWord(isAlways ? said(&Member::accuracy) : accuracy) +
                        (resolution.empty() ? "" : "By" + asWord(resolution)));
    SimpleData data;
    data.module = myModule;
    if (member) data.line = member->line;
    data.name = myBuilder.text(name);
    data.representation = myBuilder.text(basicName(type));
    const auto text = [&](const std::string& value)
    { return myBuilder.text(value.empty() ? "NA" : value); };
    data.units = text(units);
    data.resolution = text(resolution);
    data.accuracy = text(accuracy);
    myBuilder.tables().simpleData.push_back(data);
    return name;
}

const Lowering13::Laid* Lowering13::laidPrimitive(std::string_view name)
{
    Laid found;
    if (const Primitive* const primitive = findPrimitive(name))
    {
        found.name = simpleName(name, nullptr);
        found.boundary = primitive->octets;
        found.size = primitive->octets;
        found.extent.rest = primitive->octets % 8;
    }
    else if (name == "char")
    {
        found.name = copyFromMim("HLAASCIIchar");
        found.size = found.extent.rest = 1;
    }
    else if (name == "boolean")
    {
        EnumeratedData data;
        data.module = myModule;
        data.name = myBuilder.text(found.name = myNames.free("Boolean8"));
        data.representation = myBuilder.text(copyFromMim("HLAoctet"));
        std::vector<Enumerator> enumerators(2);
        for (std::size_t i = 0; i < 2; ++i)
        {
            enumerators[i].module = myModule;
            enumerators[i].name = myBuilder.text(i == 0 ? "HLAfalse" : "HLAtrue");
            enumerators[i].values =
                myBuilder.list(std::vector<Text>{myBuilder.text(std::to_string(i))});
        }
        data.enumerators = myBuilder.list(enumerators);
        myBuilder.tables().enumeratedData.push_back(data);
        found.size = found.extent.rest = 1;
    }
    else if (name == "string")
    {
        found.name =
            arrayName(copyFromMim("HLAASCIIchar"), "String", "Dynamic", "RPRnullTerminatedArray");
        found.extent.modulus = 1;
    }
    else if (name == "any")
    {
        found.name = tailOctets();
        found.extent.modulus = 1;
        found.isTail = true;
    }
    else
        return nullptr;
    return &(myLaid[std::string(name)] = found);
}

/// What is known of a datatype; null where that is nothing, as of one of another edition.
const Lowering13::Laid* Lowering13::laid(std::string_view name)
{
    const auto known = myLaid.find(std::string(name));
    if (known != myLaid.end()) return &known->second;
    return myModel.findDatatype(name) ? nullptr : laidPrimitive(name);
}

std::string Lowering13::arrayName(const std::string& element, std::string_view suffix,
                                  std::string_view cardinality, std::string_view encoding)
{
    std::string& name =
        myMade["array " + element + '\n' + std::string(cardinality) + '\n' + std::string(encoding)];
    if (!name.empty()) return name;
    name = myNames.free(element + std::string(suffix));
    ArrayData data;
    data.module = myModule;
    data.name = myBuilder.text(name);
    data.dataType = myBuilder.text(element);
    data.cardinality = myBuilder.text(cardinality);
    data.encoding = myBuilder.text(encoding);
    myBuilder.tables().arrayData.push_back(data);
    return name;
}

std::string Lowering13::octets(std::uint64_t count)
{
    const std::string digits = std::to_string(count);
    return arrayName(laid("octet")->name, "Array" + digits, digits, "HLAfixedArray");
}

std::string Lowering13::tailOctets()
{
    return arrayName(laid("octet")->name, "LengthlessArray", "Dynamic", "RPRlengthlessArray");
}

/// The asides of a definition that becomes one of another kind; those of a property that it does
/// not have there are on the whole.
List<Aside> Lowering13::asidesFor(const Definition& from, Kind kind, Kind to)
{
    std::vector<Aside> asides(from.asides.begin(), from.asides.end());
    for (Aside& aside : asides)
    {
        if (aside.property >= rowsOf(kind).size()) continue;
        const std::string_view key = rowsOf(kind)[aside.property].key;
        aside.property = Aside::theWhole;
        aside.item = 0;
        for (std::uint8_t i = 0; i < rowsOf(to).size(); ++i)
            if (rowsOf(to)[i].key == key) aside.property = i;
    }
    return myBuilder.list(asides);
}

}  // namespace omt
