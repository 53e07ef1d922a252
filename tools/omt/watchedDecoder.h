// SPDX-License-Identifier: Apache-2.0
// Decodes a value for people: as far as its octets go, and with the place where they end.
#pragma once

#include "mappedManager.h"
#include "omtReader/stringTree.h"
#include "valueTarget.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

/// What watching a value gave.
struct WatchedValue
{
    /// What was read. Null where there is no value.
    std::unique_ptr<DtStringTree> tree;
    /// Why it could not be read to its end, in a sentence; empty if it could.
    std::string complaint;
    /// What the library warned of meanwhile.
    std::vector<std::string> warnings;
};

/// A manager that also watches where the parts of a value end.
///
/// Its conversions are those of its base, octet for octet. Only watch() is different: it decodes no
/// part that the octets do not hold as a whole, ends there, and keeps what stands in front of it,
/// also in a record that could not be read to its end; and line() has each record that is shown as
/// a whole once, without the parts behind it.
class WatchedDecoder : public MappedManager
{
public:
    WatchedValue watch(const ValueTarget& target, const Octets& octets);

    /// The line of a value.
    DtString line(const ValueTarget& target, const Octets& octets);

    /// The datatypes shown in hexadecimal so far, as no representation is mapped to them.
    const std::set<std::string>& unmapped() const { return myUnmapped; }

    using DtDatatypeManager::createStringTreeRep;
    DtStringTree* createStringTreeRep(const DtString& datatype, const void* data, int length,
                                      int& consumed, const DtOMTNode* keyNode, unsigned int offset,
                                      DtStringTree* root, DtObjectHistory* history) override;
    DtStringTree* createStringTreeRep(const DtOMTDatatypeNode& node, const void* data, int length,
                                      int& consumed, unsigned int offset, DtStringTree* root,
                                      DtObjectHistory* history) override;
    void createFixedTreeRep(const DtString& datatype, const void* data, int length, int& consumed,
                            DtStringTree* parent, DtStringTree* root, unsigned int offset,
                            DtObjectHistory* history) override;
    void createComplexTreeRep(const DtString& datatype, const void* data, int length, int& consumed,
                              DtStringTree* parent, DtStringTree* root, unsigned int offset,
                              DtObjectHistory* history) override;
    void createArrayTreeRep(const DtString& datatype, const void* data, int length, int& consumed,
                            DtStringTree* parent, DtStringTree* root, unsigned int offset,
                            DtObjectHistory* history) override;
    void createVariantTreeRep(const DtString& datatype, const void* data, int length, int& consumed,
                              DtStringTree* parent, DtStringTree* root, unsigned int offset,
                              DtObjectHistory* history) override;
    void createDefinedTreeRep(const DtString& datatype, const void* data, int length, int& consumed,
                              DtStringTree* node, DtStringTree* root, unsigned int offset,
                              DtObjectHistory* history) override;
    int getArrayDatatypeCount(DtArrayDatatypeNode* node, const void* data, int length,
                              DtStringTree* root, DtStringTree* other) override;
    int getComplexDatatypeCount(DtComplexComponentNode* node, const void* data, int length,
                                DtStringTree* root, DtStringTree* parent) override;
    void getDatatypeRep(const DtString& datatype, const void* data, int length, int& consumed,
                        DtString& text) override;

private:
    /// One step of the way from the value down to the part that is being read.
    struct Step
    {
        const DtString* name;
        int index;  // of an element or of a repeated component; negative for anything else
    };
    /// A record, an array or a variant that is being read.
    struct Composite
    {
        bool isFixed = false;
        const DtComplexComponentNode* component = nullptr;  // of a complex datatype: which one
        int expected = 0;                                   // elements, or values of the component
        int found = 0;
        std::unique_ptr<DtStringTree> cutOff = nullptr;  // the field that ended the record
    };

    int octetsLeft(unsigned int offset) const;
    void check(DtStringTree* tree, unsigned int offset, int& consumed);
    bool holds(unsigned int offset, int needed);
    void fail(unsigned int offset, const std::string& reason);
    void enter(const DtOMTDatatypeNode& node);
    void leaveComponent();
    void failIn(const DtComplexComponentNode& node, const std::string& reason);
    void findMissingElement(DtArrayDatatypeNode& node, const void* data, unsigned int offset,
                            DtObjectHistory* history);
    std::string path() const;

    bool myIsWatching = false;
    bool myIsLine = false;
    int myLength = 0;
    std::vector<Step> myPath;
    std::vector<Composite> myComposites;
    int myRootValues = 0;
    bool myHasFailed = false;
    std::string myFailure;
    std::set<std::string> myUnmapped;
};
