// SPDX-License-Identifier: Apache-2.0
// Model holds what one or more object model documents say, merged, immutable and indexed by name.
#pragma once

#include "omt/base/export.h"
#include "omt/base/finding.h"
#include "omt/model/definitions.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// The tables of a model, in the order in which their definitions were read. Definitions that
/// several modules have equally stand once.
struct Tables
{
    std::vector<Module> modules;
    std::vector<Service> services;
    /// Every class stands after its parent.
    std::vector<ObjectClass> objectClasses;
    std::vector<InteractionClass> interactionClasses;
    std::vector<Dimension> dimensions;
    std::vector<Time> times;
    std::vector<Tag> tags;
    std::vector<SynchronizationPoint> synchronizationPoints;
    std::vector<Transportation> transportations;
    std::vector<Switch> switches;
    std::vector<UpdateRate> updateRates;
    std::vector<BasicData> basicData;
    std::vector<SimpleData> simpleData;
    std::vector<ReferenceData> referenceData;
    std::vector<EnumeratedData> enumeratedData;
    std::vector<ArrayData> arrayData;
    std::vector<FixedRecord> fixedRecords;
    std::vector<VariantRecord> variantRecords;
    /// HLA 1.3.
    std::vector<ComplexRecord> complexRecords;
    std::vector<RoutingSpace> routingSpaces;
    std::vector<Note> notes;
};

/// A datatype of any kind, basic data representations included: a pointer into a model, or none.
class Datatype
{
public:
    Datatype() = default;
    template <typename T>
    explicit Datatype(const T& definition) : myDefinition(&definition), myKind(T::theKind)
    {
    }

    explicit operator bool() const { return myDefinition != nullptr; }
    Kind kind() const { return myKind; }
    const Definition& definition() const { return *myDefinition; }
    /// The definition as what it is, such as FixedRecord; null for another kind.
    template <typename T>
    const T* as() const
    {
        return myDefinition && myKind == T::theKind ? static_cast<const T*>(myDefinition) : nullptr;
    }

private:
    const Definition* myDefinition = nullptr;
    Kind myKind = Kind::section;
};

/// An attribute or a parameter, seen from a class that has it, of its own or inherited.
struct MemberUse
{
    /// The class it was asked for by; null where it is no such class.
    const ObjectClass* objectClass = nullptr;
    const InteractionClass* interactionClass = nullptr;
    /// The class that declares it.
    const ClassDefinition* owner = nullptr;
    const Attribute* attribute = nullptr;
    const Parameter* parameter = nullptr;

    const Member& member() const
    {
        if (attribute) return *attribute;
        return *parameter;
    }
};

/// What object models say. A copy shares everything with the original, and any number of threads
/// may read it; nothing is computed late. Pointers and views into it live as long as any copy.
class OMT_EXPORT Model
{
public:
    /// A model without definitions.
    Model();

    const Tables& tables() const { return *myTables; }
    const std::vector<Module>& modules() const { return myTables->modules; }
    const std::vector<ObjectClass>& objectClasses() const { return myTables->objectClasses; }
    const std::vector<InteractionClass>& interactionClasses() const
    {
        return myTables->interactionClasses;
    }
    /// The newest edition of the modules; 2010 where there are none.
    Edition edition() const;

    /// The datatype of a name, in constant time. Where several tables have the name, a basic data
    /// representation counts last.
    Datatype findDatatype(std::string_view name) const;
    /// The first note with this label. Labels are those of each module alone, so for a note that a
    /// definition refers to, use the other form.
    const Note* findNote(std::string_view label) const;
    /// The note that a definition means by a label: that of its own module, else the first.
    const Note* findNote(std::string_view label, const Definition& user) const;
    const Dimension* findDimension(std::string_view name) const;
    const Transportation* findTransportation(std::string_view name) const;

    /// The classes whose full name is `path` or ends in `.path`: one with exactly that full name
    /// alone, else all. "Aircraft", "Platform.Aircraft" and the full name mean the same class
    /// where there is only one Aircraft.
    std::vector<const ObjectClass*> findObjectClasses(std::string_view path) const;
    std::vector<const InteractionClass*> findInteractionClasses(std::string_view path) const;
    /// The same where exactly one class is meant; else null.
    const ObjectClass* findObjectClass(std::string_view path) const;
    const InteractionClass* findInteractionClass(std::string_view path) const;

    /// The attributes and parameters that "CLASS.MEMBER" may mean, where CLASS is a path as above
    /// and the member its own or inherited.
    std::vector<MemberUse> findMembers(std::string_view path) const;

    /// The class above; null for a root.
    const ObjectClass* parent(const ObjectClass& node) const;
    const InteractionClass* parent(const InteractionClass& node) const;
    /// All names from the root on with periods between them.
    std::string fullName(const ObjectClass& node) const;
    std::string fullName(const InteractionClass& node) const;

    /// Calls `visit` for each attribute or parameter that a class has, inherited ones first, with
    /// the class that declares it. A name that a class repeats comes from each.
    void forEachAttribute(const ObjectClass& node,
                          const std::function<void(const ObjectClass& owner,
                                                   const Attribute& attribute)>& visit) const;
    void forEachParameter(const InteractionClass& node,
                          const std::function<void(const InteractionClass& owner,
                                                   const Parameter& parameter)>& visit) const;

    /// Where a definition, or one of its properties, stands.
    Place place(const Definition& definition) const;
    Place place(const Definition& definition, const Text& property) const;
    /// The labels of the notes on a definition as a whole, or on the property with this row.
    std::vector<std::string_view> noteLabels(const Definition& definition,
                                             std::uint8_t property = Aside::theWhole) const;

    /// How many octets of memory the model holds, for measurements.
    std::size_t octetsHeld() const;

private:
    friend class ModelBuilder;
    struct Index;
    struct Empty
    {
    };
    explicit Model(Empty) {}
    std::shared_ptr<const Tables> myTables;
    std::shared_ptr<const Index> myIndex;
    /// What owns texts and lists: one arena for each document, shared with the models merged from.
    std::vector<std::shared_ptr<const void>> myMemory;
    std::size_t myOctetsHeld = 0;
};

}  // namespace omt
