// SPDX-License-Identifier: Apache-2.0
#include "omt/model/openDefinitions.h"

#include <utility>

namespace omt
{

namespace
{

template <typename T>
std::uint32_t sizeOf(const std::vector<T>& stack)
{
    return static_cast<std::uint32_t>(stack.size());
}

/// The values of a stack from a mark on, as a list; they leave the stack.
template <typename T>
List<T> popped(ModelBuilder& builder, std::vector<T>& stack, std::uint32_t mark)
{
    const List<T> list = builder.list(stack.data() + mark, stack.size() - mark);
    stack.erase(stack.begin() + mark, stack.end());
    return list;
}

}  // namespace

OpenDefinitions::OpenDefinitions(ModelBuilder& builder) : myBuilder(builder) {}

Definition& OpenDefinitions::definition(const OpenDefinition& open)
{
    if (open.fixed) return *open.fixed;
    if (open.kind == Kind::objectClass) return myBuilder.tables().objectClasses[open.place];
    if (open.kind == Kind::interactionClass)
        return myBuilder.tables().interactionClasses[open.place];
    return mySections[open.place];
}

OpenDefinition OpenDefinitions::start(Kind kind, std::uint32_t module)
{
    Tables& tables = myBuilder.tables();
    OpenDefinition open;
    open.kind = kind;
    const auto at = [&](auto& stack)
    {
        open.fixed = &stack.emplace_back();
        return open;
    };
    switch (kind)
    {
        case Kind::identification:
            open.fixed = &tables.modules[module].identification;
            return open;
        case Kind::keyword:
            return at(myKeywords);
        case Kind::contact:
            return at(myContacts);
        case Kind::reference:
            return at(myReferences);
        case Kind::glyph:
            return at(myGlyphs);
        case Kind::service:
            return at(tables.services);
        case Kind::objectClass:
            open.place = sizeOf(tables.objectClasses);
            open.members = sizeOf(myAttributes);
            open.directed = sizeOf(myDirected);
            tables.objectClasses.emplace_back().parent = std::exchange(myObjectClass, open.place);
            return open;
        case Kind::directedInteraction:
            return at(myDirected);
        case Kind::attribute:
            return at(myAttributes);
        case Kind::interactionClass:
            open.place = sizeOf(tables.interactionClasses);
            open.members = sizeOf(myParameters);
            tables.interactionClasses.emplace_back().parent =
                std::exchange(myInteractionClass, open.place);
            return open;
        case Kind::parameter:
            return at(myParameters);
        case Kind::dimension:
            return at(tables.dimensions);
        case Kind::time:
            return at(tables.times);
        case Kind::tag:
            return at(tables.tags);
        case Kind::synchronizationPoint:
            return at(tables.synchronizationPoints);
        case Kind::transportation:
            return at(tables.transportations);
        case Kind::switchSetting:
            return at(tables.switches);
        case Kind::updateRate:
            return at(tables.updateRates);
        case Kind::basicData:
            return at(tables.basicData);
        case Kind::simpleData:
            return at(tables.simpleData);
        case Kind::referenceData:
            return at(tables.referenceData);
        case Kind::enumeratedData:
            return at(tables.enumeratedData);
        case Kind::enumerator:
            return at(myEnumerators);
        case Kind::arrayData:
            return at(tables.arrayData);
        case Kind::fixedRecord:
            return at(tables.fixedRecords);
        case Kind::field:
            return at(myFields);
        case Kind::variantRecord:
            return at(tables.variantRecords);
        case Kind::alternative:
            return at(myAlternatives);
        case Kind::note:
            return at(tables.notes);
        case Kind::complexRecord:
        case Kind::component:
        case Kind::routingSpace:
        case Kind::routingDimension:
        case Kind::section:
            break;
    }
    open.place = sizeOf(mySections);
    mySections.emplace_back();
    return open;
}

OpenDefinition OpenDefinitions::startOrGoOn(Kind kind, std::uint32_t module)
{
    OpenDefinition open;
    open.kind = kind;
    if (kind == Kind::contact && !myContacts.empty())
        open.fixed = &myContacts.back();
    else if (kind == Kind::reference && !myReferences.empty())
        open.fixed = &myReferences.back();
    else
        return start(kind, module);
    return open;
}

void OpenDefinitions::finish(const OpenDefinition& open)
{
    Definition& definition = this->definition(open);
    switch (open.kind)
    {
        case Kind::objectClass:
        {
            auto& node = static_cast<ObjectClass&>(definition);
            node.attributes = popped(myBuilder, myAttributes, open.members);
            node.directedInteractions = popped(myBuilder, myDirected, open.directed);
            myObjectClass = node.parent;
            break;
        }
        case Kind::interactionClass:
        {
            auto& node = static_cast<InteractionClass&>(definition);
            node.parameters = popped(myBuilder, myParameters, open.members);
            myInteractionClass = node.parent;
            break;
        }
        case Kind::enumeratedData:
            static_cast<EnumeratedData&>(definition).enumerators =
                popped(myBuilder, myEnumerators, 0);
            break;
        case Kind::fixedRecord:
            static_cast<FixedRecord&>(definition).fields = popped(myBuilder, myFields, 0);
            break;
        case Kind::variantRecord:
            static_cast<VariantRecord&>(definition).alternatives =
                popped(myBuilder, myAlternatives, 0);
            break;
        default:
            break;
    }
}

void OpenDefinitions::finish(Module& module)
{
    module.identification.keywords = myBuilder.list(myKeywords);
    module.identification.contacts = myBuilder.list(myContacts);
    module.identification.references = myBuilder.list(myReferences);
    module.identification.glyphs = myBuilder.list(myGlyphs);
    module.sections = myBuilder.list(mySections);
}

}  // namespace omt
