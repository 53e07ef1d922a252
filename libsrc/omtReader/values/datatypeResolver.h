// SPDX-License-Identifier: Apache-2.0
// What a datatype's name stands for, found once and kept while nothing changes.
#pragma once

#include "omtReader/modelRevision.h"
#include "omtReader/values/conversionBounds.h"
#include "omtReader/values/conversionSettings.h"
#include "omtReader/values/ownRepresentations.h"

#include <cstdint>
#include <deque>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

class DtComplexDatatypeNode;
class DtEnumeratedDatatypeNode;
class DtFixedDatatypeNode;
class DtVariantDatatypeNode;

namespace omtreader
{

struct ResolvedDatatype;

/// A field, alternative, component or element with what its datatype stands for.
struct ResolvedComponent
{
    const DtOMTDatatypeNode* node = nullptr;
    ResolvedDatatype* datatype = nullptr;
    DtComplexComponentNode* component = nullptr;  // the node, where it is one of a complex datatype
};

/// One datatype. What a kind needs is found when it is first asked for.
struct ResolvedDatatype
{
    explicit ResolvedDatatype(DtString itsName) : name(std::move(itsName)) {}

    const DtString name;
    const DtDatatypeManager::DtDatatypeEnum* kind = nullptr;  // in the kind table, null if absent
    const DtString* mapping = nullptr;    // the name of the representation, null if none is mapped
    DtDatatypeRep* rep = nullptr;         // the one mapped and registered
    NumberTraits number;                  // what is known of rep, if it is one of numbers
    bool isCharacter = false;             // shown by the representation of characters
    const DtString* delimiter = nullptr;  // null if none is mapped
    int alignment = 0;                    // 0 while not known, or not to be kept
    bool isBeingAligned = false;
    std::uint64_t epoch = 0;  // between which changes it was found

    // The first node of this name in each table; none is null.
    template <typename Node>
    struct Found
    {
        bool isKnown = false;
        Node* node = nullptr;
    };
    Found<DtFixedDatatypeNode> fixed;
    Found<DtVariantDatatypeNode> variant;
    Found<DtArrayDatatypeNode> array;
    Found<DtComplexDatatypeNode> complex;
    Found<DtEnumeratedDatatypeNode> enumerated;

    std::vector<ResolvedComponent> components;
    std::vector<std::pair<int, const DtString*>> names;  // of an enumeration, by number
    bool hasNames = false;
};

/// Finds datatypes by name. Nothing that it gives changes what a caller sees: it starts anew after
/// any change of the settings or of a model.
class DatatypeResolver
{
public:
    DatatypeResolver(DtDatatypeManager& manager, ConversionSettings& settings,
                     const ConversionBounds& bounds)
        : myManager(manager), mySettings(settings), myBounds(bounds)
    {
    }

    /// The kind of a datatype as the manager tells it.
    DtDatatypeManager::DtDatatypeEnum kindOf(ResolvedDatatype& datatype)
    {
        return datatype.kind && !mySettings.hasHost ? *datatype.kind
                                                    : myManager.getDatatypeEnum(datatype.name);
    }

    /// What a name stands for now; valid until release().
    ResolvedDatatype& find(const DtString& name)
    {
        startAnewAfterChange();
        // Most names that come are those that this resolver gave out.
        return myLast && &myLast->name == &name ? *myLast : search(name);
    }

    /// What a component's datatype stands for, kept in the list of its record at this index.
    ResolvedDatatype& component(ResolvedDatatype& record, std::size_t index,
                                const DtOMTDatatypeNode& node);

    /// The fields or components of a record as they are now. The list stays while no model changes.
    const std::vector<ResolvedComponent>& fields(ResolvedDatatype& record);

    DtFixedDatatypeNode* fixed(ResolvedDatatype& datatype);
    DtVariantDatatypeNode* variant(ResolvedDatatype& datatype);
    DtArrayDatatypeNode* array(ResolvedDatatype& datatype);
    DtComplexDatatypeNode* complex(ResolvedDatatype& datatype);
    DtEnumeratedDatatypeNode* enumerated(ResolvedDatatype& datatype);

    /// The name of an enumerator by its number; null if there is none.
    const DtString* enumerator(ResolvedDatatype& datatype, int number);

    /// Frees what was found before the last change. Nothing that find() gave may be in use.
    void release() { myOutdated.clear(); }

private:
    using Table = std::unordered_map<std::string_view, ResolvedDatatype*>;

    void startAnewAfterChange()
    {
        if (myChanges != mySettings.changes || myModelRevision != modelRevision()) startAnew();
    }
    void startAnew();
    ResolvedDatatype& search(const DtString& name);
    ResolvedDatatype& resolve(const DtString& name);

    DtDatatypeManager& myManager;
    ConversionSettings& mySettings;
    const ConversionBounds& myBounds;
    std::uint64_t myChanges = 0;
    std::uint64_t myModelRevision = 0;
    std::uint64_t myEpoch = 0;
    std::deque<ResolvedDatatype> myDatatypes;
    std::deque<std::deque<ResolvedDatatype>> myOutdated;
    Table myTable;  // keys are the names in myDatatypes
    ResolvedDatatype* myLast = nullptr;
};

}  // namespace omtreader
