// SPDX-License-Identifier: Apache-2.0
// The walk over a value's octets, one function for each kind of datatype.
#pragma once

#include "omtReader/values/alignmentCalculator.h"
#include "omtReader/values/conversionBounds.h"
#include "omtReader/values/conversionSettings.h"
#include "omtReader/values/datatypeResolver.h"
#include "omtReader/values/valueReader.h"

#include <memory>

namespace omtreader
{

/// Decodes for one manager, whose virtual operations it calls at every step, so that a host may
/// replace any of them.
class ValueWalker
{
public:
    ValueWalker(DtDatatypeManager& manager, ConversionSettings& settings,
                DatatypeResolver& resolver, AlignmentCalculator& alignment, ValueReader& reader,
                ConversionBounds& bounds)
        : myManager(manager),
          mySettings(settings),
          myResolver(resolver),
          myAlignment(alignment),
          myReader(reader),
          myBounds(bounds)
    {
    }

    /// What every walk is handed.
    using Value = EncodedValue;
    struct Context
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

    void variantLine(const DtString& datatype, Value value, DtString& text);
    void arrayLine(const DtString& datatype, Value value, DtString& text);
    void arrayLineByCount(DtArrayDatatypeNode& node, Value value, DtString& text);

    /// The walk of one kind, over the datatype of a name; null data gives nothing.
    using Walk = void (ValueWalker::*)(ResolvedDatatype&, const Value&, const Context&);
    void enter(Walk ours, const DtString& datatype, Value value, const Context& context);
    void walkFixed(ResolvedDatatype& datatype, const Value& value, const Context& context);
    void walkComplex(ResolvedDatatype& datatype, const Value& value, const Context& context);
    void walkArray(ResolvedDatatype& datatype, const Value& value, const Context& context);
    void walkVariant(ResolvedDatatype& datatype, const Value& value, const Context& context);
    void walkDefined(ResolvedDatatype& datatype, const Value& value, const Context& context);

private:
    class Chain;

    Value rest(const Value& value, int& consumed) const;
    void simpleText(ResolvedDatatype& datatype, const Value& value, DtString& text);
    DtStringTree* attributeTree(const DtString& name, ResolvedDatatype& datatype,
                                const Value& value, unsigned int offset);
    DtStringTree* treeOf(const DtOMTDatatypeNode& node, ResolvedDatatype& datatype,
                         const Value& value, unsigned int offset, DtStringTree* root,
                         DtObjectHistory* history);
    DtStringTree* build(ResolvedDatatype& datatype, const Value& value, const DtOMTNode* keyNode,
                        unsigned int offset, DtStringTree* root, DtObjectHistory* history);
    void fill(ResolvedDatatype& datatype, const Value& value, DtStringTree& node,
              DtStringTree* root, DtObjectHistory* history);
    using Operation = void (DtDatatypeManager::*)(const DtString&, const void*, int, int&,
                                                  DtStringTree*, DtStringTree*, unsigned int,
                                                  DtObjectHistory*);
    void walk(Walk ours, Operation managers, ResolvedDatatype& datatype, const Value& value,
              const Context& context);
    DtString wrappedLine(ResolvedDatatype& datatype, const Value& value);
    DtString renderedLine(const DtString& datatype, const Value& value);
    bool hasAttributeMapping(const DtString& name) const;

    void lengthlessArray(DtArrayDatatypeNode& node, const Value& value, const Context& context);
    void countedArray(DtArrayDatatypeNode& node, const Value& value, const Context& context);
    std::int64_t elements(DtArrayDatatypeNode& node, const Value& value, const Context& context,
                          std::int64_t count);
    void componentValues(DtComplexComponentNode& node, ResolvedDatatype& datatype,
                         const Value& value, const Context& context, DtStringTree*& last);
    DtDatatypeManager& myManager;
    ConversionSettings& mySettings;
    DatatypeResolver& myResolver;
    AlignmentCalculator& myAlignment;
    ValueReader& myReader;
    ConversionBounds& myBounds;
    int myDepth = 0;
};

}  // namespace omtreader
