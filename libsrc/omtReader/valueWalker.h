// SPDX-License-Identifier: Apache-2.0
// The walk over a value's octets, one function for each kind of datatype.
#pragma once

#include "omtReader/alignmentCalculator.h"
#include "omtReader/conversionBounds.h"
#include "omtReader/conversionSettings.h"
#include "omtReader/datatypeResolver.h"
#include "omtReader/valueOctets.h"

#include <deque>
#include <memory>
#include <optional>

namespace omt
{

/// Decodes for one manager, whose virtual operations it calls at every step, so that a host may
/// replace any of them. Positions are addresses in the copy of the value that the outermost call
/// makes; see ValueOctets.
class ValueWalker
{
public:
    ValueWalker(DtDatatypeManager& manager, ConversionSettings& settings,
                DatatypeResolver& resolver, AlignmentCalculator& alignment,
                ConversionBounds& bounds)
        : myManager(manager),
          mySettings(settings),
          myResolver(resolver),
          myAlignment(alignment),
          myBounds(bounds)
    {
    }

    /// Whether the operations of the walk are our own, so that it may go from step to step without
    /// asking at the door.
    bool isAlone = false;

    /// What every walk is handed.
    struct Value
    {
        const void* data;
        int length;
        int& consumed;
    };
    struct Place
    {
        DtStringTree* parent;
        DtStringTree* root;
        unsigned int offset;
        DtObjectHistory* history;
    };

    DtString line(const DtString& datatype, Value value);
    DtString line(const DtOMTDatatypeNode& node, Value value);
    DtString line(const DtDatatypeFedNode& node, Value value);

    DtStringTree* tree(const DtString& datatype, Value value, const DtOMTNode* keyNode,
                       unsigned int offset, DtStringTree* root, DtObjectHistory* history);
    DtStringTree* tree(const DtOMTDatatypeNode& node, Value value, unsigned int offset,
                       DtStringTree* root, DtObjectHistory* history);
    DtStringTree* tree(const DtDatatypeFedNode& node, Value value, unsigned int offset,
                       DtObjectHistory* history);

    void mapped(const DtString& datatype, Value value, DtString& text);
    void attribute(const DtString& name, Value value, DtString& text);
    void hexadecimal(Value value, DtString& text);
    void enumerated(const DtString& datatype, Value value, DtString& text);
    void variantLine(const DtString& datatype, Value value, DtString& text);
    void arrayLine(const DtString& datatype, Value value, DtString& text);
    void arrayLineBySize(const DtString& datatype, Value value, DtString& text);
    void arrayLineByCount(DtArrayDatatypeNode& node, Value value, DtString& text);

    void fixed(const DtString& datatype, Value value, const Place& place);
    void complex(const DtString& datatype, Value value, const Place& place);
    void array(const DtString& datatype, Value value, const Place& place);
    void variant(const DtString& datatype, Value value, const Place& place);
    void defined(const DtString& datatype, Value value, const Place& place);

    int arrayCount(const DtArrayDatatypeNode& node, const void* data, int length);
    int complexCount(const DtComplexComponentNode& node, const DtStringTree* root,
                     const DtStringTree* parent);

private:
    class Call;
    class Chain;

    const char* advance(const void* from, std::int64_t octets) const
    {
        return myViews[myOpenViews - 1].advance(from, octets);
    }
    std::int64_t octetsToZero(const void* from, int length) const;
    void represent(const DtDatatypeRep& rep, const DtString& name, const Value& value,
                   DtString& text);
    std::optional<std::int64_t> enumeratorNumber(const DtDatatypeRep& rep, const Value& value,
                                                 DtString& text);

    void simpleText(ResolvedDatatype& datatype, const Value& value, DtString& text);
    DtStringTree* attributeTree(const DtString& name, const ResolvedDatatype& datatype,
                                const Value& value, unsigned int offset);
    DtStringTree* treeOf(const DtOMTDatatypeNode& node, ResolvedDatatype& datatype,
                         const Value& value, unsigned int offset, DtStringTree* root,
                         DtObjectHistory* history);
    DtStringTree* build(ResolvedDatatype& datatype, const Value& value, const DtOMTNode* keyNode,
                        unsigned int offset, DtStringTree* root, DtObjectHistory* history);
    void fill(ResolvedDatatype& datatype, const Value& value, DtStringTree& node,
              DtStringTree* root, DtObjectHistory* history);
    using Walk = void (ValueWalker::*)(ResolvedDatatype&, const Value&, const Place&);
    using Operation = void (DtDatatypeManager::*)(const DtString&, const void*, int, int&,
                                                  DtStringTree*, DtStringTree*, unsigned int,
                                                  DtObjectHistory*);
    void walk(Walk ours, Operation managers, ResolvedDatatype& datatype, const Value& value,
              const Place& place);
    void walkFixed(ResolvedDatatype& datatype, const Value& value, const Place& place);
    void walkComplex(ResolvedDatatype& datatype, const Value& value, const Place& place);
    void walkArray(ResolvedDatatype& datatype, const Value& value, const Place& place);
    void walkVariant(ResolvedDatatype& datatype, const Value& value, const Place& place);
    void walkDefined(ResolvedDatatype& datatype, const Value& value, const Place& place);
    DtString wrappedLine(ResolvedDatatype& datatype, const Value& value);
    DtString renderedLine(const DtString& datatype, const Value& value);
    bool hasAttributeMapping(const DtString& name) const;

    void lengthlessArray(DtArrayDatatypeNode& node, const Value& value, const Place& place);
    void countedArray(DtArrayDatatypeNode& node, const Value& value, const Place& place);
    std::int64_t elements(DtArrayDatatypeNode& node, const Value& value, const Place& place,
                          std::int64_t count);
    void componentValues(DtComplexComponentNode& node, ResolvedDatatype& datatype,
                         const Value& value, const Place& place, DtStringTree*& last);
    const DtStringTree* earlierComponent(const DtString& name, const DtStringTree* root,
                                         const DtStringTree* parent) const;
    bool holdsValue(const DtStringTree& node, const DtString& value);

    DtDatatypeManager& myManager;
    ConversionSettings& mySettings;
    DatatypeResolver& myResolver;
    AlignmentCalculator& myAlignment;
    ConversionBounds& myBounds;
    std::deque<ValueOctets> myViews;
    std::size_t myOpenViews = 0;
    int myDepth = 0;
};

}  // namespace omt
