// SPDX-License-Identifier: Apache-2.0
#include "omt/model/references.h"

#include "omt/base/nameHash.h"
#include "omt/model/compare.h"
#include "omt/model/moduleNames.h"
#include "omt/model/parts.h"
#include "omt/model/read.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

namespace omt
{

namespace
{

/// What a name may refer to.
enum class Target : std::uint8_t
{
    datatype,
    dimension,
    transportation,
    note,
    objectClass,
    interactionClass
};

struct TargetWords
{
    Severity severity;
    std::string_view finding;
    /// Before the name in sentences; a datatype goes without.
    std::string_view before;
};

/// In the order of Target. Without a datatype octets cannot be read.
constexpr TargetWords theTargets[] = {
    {Severity::error,   "unknown-datatype",       ""                  },
    {Severity::warning, "unknown-dimension",      "dimension "        },
    {Severity::warning, "unknown-transportation", "transportation "   },
    {Severity::warning, "unknown-note",           "note "             },
    {Severity::warning, "unknown-class",          "object class "     },
    {Severity::warning, "unknown-class",          "interaction class "},
};

/// Names that need no definition: basic data representations of IEEE 1516.2, in order.
constexpr std::string_view theBasicNames[] = {
    "HLAfloat32BE",
    "HLAfloat32LE",
    "HLAfloat64BE",
    "HLAfloat64LE",
    "HLAinteger16BE",
    "HLAinteger16LE",
    "HLAinteger32BE",
    "HLAinteger32LE",
    "HLAinteger64BE",
    "HLAinteger64LE",
    "HLAoctet",
    "HLAoctetPairBE",
    "HLAoctetPairLE",
    "HLAunsignedInteger16BE",
    "HLAunsignedInteger16LE",
    "HLAunsignedInteger32BE",
    "HLAunsignedInteger32LE",
    "HLAunsignedInteger64BE",
    "HLAunsignedInteger64LE",
};

/// The scalars that HLA 1.3 predefines, in order.
constexpr std::string_view theNames13[] = {
    "any",
    "boolean",
    "char",
    "double",
    "float",
    "long",
    "long long",
    "octet",
    "sequence",
    "short",
    "string",
    "unsigned char",
    "unsigned long",
    "unsigned long long",
    "unsigned short",
    "wchar",
    "wstring",
};

constexpr std::string_view theTransportations[] = {"HLAbestEffort", "HLAreliable"};
constexpr std::string_view theTransportations13[] = {"best_effort", "reliable"};

template <std::size_t Count>
bool isIn(const std::string_view (&names)[Count], std::string_view name)
{
    return std::binary_search(std::begin(names), std::end(names), name);
}

std::string quoted(std::string_view name)
{
    return '`' + cutText(name) + '`';
}

/// Finds classes by their full name, with or without the root. Made in linear time.
class ClassNames
{
public:
    template <typename Class>
    explicit ClassNames(const std::vector<Class>& table)
    {
        myClasses.reserve(table.size());
        for (std::uint32_t i = 0; i < table.size(); ++i)
        {
            myClasses.emplace(Key{table[i].parent, table[i].name}, i);
            if (table[i].parent == ClassDefinition::theNone) myRoots.push_back(i);
        }
    }

    bool has(std::string_view path) const
    {
        if (isBelow(ClassDefinition::theNone, path)) return true;
        constexpr std::size_t theMostRoots = 4;
        const std::size_t count = std::min(myRoots.size(), theMostRoots);
        return std::any_of(myRoots.begin(), myRoots.begin() + static_cast<std::ptrdiff_t>(count),
                           [&](std::uint32_t root) { return isBelow(root, path); });
    }

private:
    using Key = std::pair<std::uint32_t, std::string_view>;
    struct Hash
    {
        std::size_t operator()(const Key& key) const
        {
            return NameHash()(key.second) ^ (key.first * 0x9E3779B97F4A7C15U);
        }
    };

    bool isBelow(std::uint32_t at, std::string_view path) const
    {
        while (true)
        {
            const std::size_t period = path.find('.');
            const auto found = myClasses.find({at, path.substr(0, period)});
            if (found == myClasses.end()) return false;
            if (period == std::string_view::npos) return true;
            at = found->second;
            path.remove_prefix(period + 1);
        }
    }

    std::unordered_map<Key, std::uint32_t, Hash> myClasses;
    std::vector<std::uint32_t> myRoots;
};

/// Calls `visit` with each name by which a definition refers to another one, notes apart.
template <typename T, typename Visit>
void forEachReference(const T& definition, Visit&& visit)
{
    if constexpr (requires { definition.dataType; }) visit(Target::datatype, definition.dataType);
    if constexpr (requires { definition.representation; })
        visit(Target::datatype, definition.representation);
    if constexpr (requires { definition.dataTypes; })
        for (const Text& name : definition.dataTypes) visit(Target::datatype, name);
    if constexpr (std::is_base_of_v<ClassDefinition, T> || std::is_same_v<T, Attribute>)
        for (const Text& name : definition.dimensions) visit(Target::dimension, name);
    if constexpr (requires { definition.transportation; })
        visit(Target::transportation, definition.transportation);
    if constexpr (requires { definition.referenceClass; })
        visit(Target::objectClass, definition.referenceClass);
    if constexpr (std::is_same_v<T, DirectedInteraction>)
        visit(Target::interactionClass, definition.name);
}

class ReferenceCheck
{
public:
    ReferenceCheck(const Model& model, const std::function<Model()>& readMim, Findings& findings)
        : myModel(model), myReadMim(readMim), myFindings(findings)
    {
        for (const RoutingSpace& space : model.tables().routingSpaces)
            myRoutingSpaces.insert(space.name.view());
    }

    void check()
    {
        for (std::size_t i = 0; i < myModel.modules().size(); ++i)
        {
            const Module& module = myModel.modules()[i];
            myModuleNames.add(module, i);
            myHasMim = myHasMim || module.isBuiltIn;
        }
        for (const Module& module : myModel.modules())
        {
            checkDependencies(module);
            checkDefinition(module.identification);
            for (const Section& section : module.sections) checkNotes(section);
        }
        forEachNamedTable(
            [&](auto table)
            {
                for (const auto& definition : myModel.tables().*table) checkDefinition(definition);
            });
        for (const Note& note : myModel.tables().notes) checkNotes(note);
        for (const Missing& missing : myMissing) report(missing);
    }

private:
    /// How many dependencies of a module are named as what could help.
    static constexpr std::size_t theMostHints = 3;

    struct Missing
    {
        Target target;
        std::string_view name;
        std::uint32_t module;
        Place place;
        std::size_t uses;
    };
    struct Mim
    {
        explicit Mim(Model read)
            : model(std::move(read)),
              objectClasses(model.objectClasses()),
              interactionClasses(model.interactionClasses())
        {
        }
        Model model;
        ClassNames objectClasses;
        ClassNames interactionClasses;
    };
    struct Dependency
    {
        std::string_view name;
        std::uint32_t module;
    };

    template <typename T>
    void checkDefinition(const T& definition)
    {
        checkNotes(definition);
        forEachReference(definition, [&](Target target, const Text& name)
                         { checkName(target, name, definition); });
        forEachPartList<T>(
            [&](auto list)
            {
                using Part = std::decay_t<decltype(*(definition.*list).begin())>;
                if constexpr (!std::is_same_v<Part, Text>)
                    for (const Part& part : definition.*list) checkDefinition(part);
            });
    }

    void checkNotes(const Definition& definition)
    {
        for (const Aside& aside : definition.asides)
        {
            if (aside.what != Aside::What::notes) continue;
            std::string_view rest = aside.text;
            while (true)
            {
                constexpr std::string_view theBlanks = " \t\r\n";
                rest.remove_prefix(std::min(rest.find_first_not_of(theBlanks), rest.size()));
                if (rest.empty()) break;
                const std::string_view label = rest.substr(0, rest.find_first_of(theBlanks));
                rest.remove_prefix(label.size());
                if (!myModel.findNote(label, definition))
                    add(Target::note, label, definition, aside.text.line());
            }
        }
    }

    void checkName(Target target, const Text& name, const Definition& user)
    {
        if (!saysSomething(name.view()) || isKnown(target, name, user)) return;
        add(target, name, user, name.line());
    }

    bool isKnown(Target target, std::string_view name, const Definition& user)
    {
        const bool is13 = user.module < myModel.modules().size() &&
                          myModel.modules()[user.module].edition == Edition::hla13;
        switch (target)
        {
            case Target::datatype:
                return myModel.findDatatype(name) || isIn(theBasicNames, name) ||
                       (is13 && isIn(theNames13, name));
            case Target::dimension:
                return is13 ? myRoutingSpaces.count(name) != 0
                            : myModel.findDimension(name) != nullptr;
            case Target::transportation:
                return myModel.findTransportation(name) || isIn(theTransportations, name) ||
                       (is13 && isIn(theTransportations13, name));
            case Target::objectClass:
                if (!myObjectClasses) myObjectClasses.emplace(myModel.objectClasses());
                return myObjectClasses->has(name);
            case Target::interactionClass:
                if (!myInteractionClasses)
                    myInteractionClasses.emplace(myModel.interactionClasses());
                return myInteractionClasses->has(name);
            case Target::note:
                break;
        }
        return true;
    }

    void add(Target target, std::string_view name, const Definition& user, std::uint32_t line)
    {
        auto& places = myPlaces[static_cast<std::size_t>(target)];
        const auto [place, isNew] = places.try_emplace(name, myMissing.size());
        if (!isNew)
        {
            ++myMissing[place->second].uses;
            return;
        }
        myMissing.push_back({target, name, user.module, myModel.place(user), 1});
        if (line != 0) myMissing.back().place.line = line;
    }

    void checkDependencies(const Module& module)
    {
        std::size_t count = 0;
        for (const Reference& reference : module.identification.references)
        {
            if (!isDependency(reference)) continue;
            const std::string_view name = reference.identification;
            if (isGiven(name, module)) continue;
            if (++count <= theMostHints)
                myDependencies.push_back({name, module.identification.module});
            myFindings.push_back(
                {Severity::note, "missing-dependency",
                 quoted(name) + " is named as a dependency, and no module given has this name",
                 myModel.place(reference, reference.identification)});
        }
    }

    bool isGiven(std::string_view dependency, const Module& user)
    {
        const std::vector<std::size_t>& found = myModuleNames.find(dependency);
        return std::any_of(found.begin(), found.end(),
                           [&](std::size_t i) { return &myModel.modules()[i] != &user; });
    }

    void report(const Missing& missing)
    {
        const TargetWords& words = theTargets[static_cast<std::size_t>(missing.target)];
        std::string text = std::string(words.before) + quoted(missing.name);
        if (isInMim(missing))
            text += " is in the standard MIM: add --mim";
        else
            text += " is defined in no module given" + dependencyHint(missing);
        if (missing.uses > 1) text += "; used " + std::to_string(missing.uses) + " times";
        myFindings.push_back(
            {words.severity, std::string(words.finding), std::move(text), missing.place});
    }

    bool isInMim(const Missing& missing)
    {
        if (!missing.name.starts_with("HLA") || myHasMim) return false;
        if (!myMim) myMim.emplace(myReadMim());
        const Model& mim = myMim->model;
        switch (missing.target)
        {
            case Target::datatype:
                return static_cast<bool>(mim.findDatatype(missing.name));
            case Target::dimension:
                return mim.findDimension(missing.name) != nullptr;
            case Target::transportation:
                return mim.findTransportation(missing.name) != nullptr;
            case Target::objectClass:
                return myMim->objectClasses.has(missing.name);
            case Target::interactionClass:
                return myMim->interactionClasses.has(missing.name);
            case Target::note:
                break;
        }
        return false;
    }

    /// The missing dependencies of the module that uses the name; where it has none, those of all.
    std::string dependencyHint(const Missing& missing) const
    {
        if (missing.target == Target::note) return {};
        // In the order of their modules.
        const auto isBefore = [](const Dependency& dependency, std::uint32_t module)
        { return dependency.module < module; };
        auto first = std::lower_bound(myDependencies.begin(), myDependencies.end(), missing.module,
                                      isBefore);
        auto last = std::lower_bound(first, myDependencies.end(), missing.module + 1, isBefore);
        if (first == last)
        {
            first = myDependencies.begin();
            last =
                first + static_cast<std::ptrdiff_t>(std::min(myDependencies.size(), theMostHints));
        }
        std::string text;
        for (; first != last; ++first)
            text += "; " + cutText(first->name) + " is named as a dependency of " +
                    myModel.modules()[first->module].file.str();
        return text;
    }

    const Model& myModel;
    const std::function<Model()>& myReadMim;
    Findings& myFindings;
    NameSet myRoutingSpaces;
    std::optional<ClassNames> myObjectClasses;
    std::optional<ClassNames> myInteractionClasses;
    std::optional<Mim> myMim;
    bool myHasMim = false;
    ModuleNames myModuleNames;
    std::vector<Missing> myMissing;
    NameMap<std::size_t> myPlaces[std::size(theTargets)];
    std::vector<Dependency> myDependencies;
};

}  // namespace

void checkReferences(const Model& model, const std::function<Model()>& readMim, Findings& findings)
{
    ReferenceCheck(model, readMim, findings).check();
}

void checkReferences(const Model& model, Findings& findings)
{
    checkReferences(
        model,
        [&model]
        {
            Findings none;
            return readModule({"standard MIM", standardMim(model.edition())}, none);
        },
        findings);
}

}  // namespace omt
