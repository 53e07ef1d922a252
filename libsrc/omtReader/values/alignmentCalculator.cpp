// SPDX-License-Identifier: Apache-2.0
// At multiples of how many octets the values of a datatype stand.
#include "omtReader/values/alignmentCalculator.h"

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/cardinalityForms.h"
#include "omtReader/datatypeRep.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/variantDatatypeNode.h"
#include "util/dtMessages.h"

#include <algorithm>

namespace omtreader
{
namespace
{

// Few steps are not kept, but where there is a host it is all of them.
constexpr int theStepWork = 100;
constexpr int theStepWorkWithHost = 10;

/// Marks a datatype while its alignment is being worked out.
class BeingAligned
{
public:
    explicit BeingAligned(ResolvedDatatype& datatype) : myDatatype(datatype)
    {
        myDatatype.isBeingAligned = true;
    }
    BeingAligned(const BeingAligned&) = delete;
    BeingAligned& operator=(const BeingAligned&) = delete;
    ~BeingAligned() { myDatatype.isBeingAligned = false; }

private:
    ResolvedDatatype& myDatatype;
};

}  // namespace

int AlignmentCalculator::padding(unsigned int offset, const DtString& datatype)
{
    if (!myManager.isImplicitPaddingEnabled()) return 0;
    const auto alignment = static_cast<unsigned int>(myManager.byteAlignment(datatype));
    if (alignment <= 1) return 0;
    const unsigned int rest = offset % alignment;
    return rest == 0 ? 0 : static_cast<int>(alignment - rest);
}

int AlignmentCalculator::alignment(const DtString& datatype)
{
    ResolvedDatatype& resolved = myResolver.find(datatype);
    if (resolved.alignment > 0 && !mySettings.hasHost) return resolved.alignment;
    const std::uint64_t warningsBefore = myWarnings;
    const CountedCall call(myBounds, mySettings.nodeLimit);
    const Descent descent(myDepth);
    // Inside itself a datatype has no alignment yet.
    const bool isInside = resolved.isBeingAligned || myDepth > ConversionBounds::theDeepest;
    const int work = mySettings.hasHost ? theStepWorkWithHost : theStepWork;
    const bool isAllowed = myDepth == 1 || myBounds.allowWork(work, resolved.name);
    int result = isInside || !isAllowed ? -1 : byKind(resolved);
    if (result < 1)
    {
        warn();
        DtWarn << "Failed to get alignment for datatype: " << resolved.name
               << " default alignment to 1.\n";
        result = 1;
    }
    if (!mySettings.hasHost && myWarnings == warningsBefore) resolved.alignment = result;
    return result;
}

int AlignmentCalculator::byKind(ResolvedDatatype& datatype)
{
    const BeingAligned mark(datatype);
    const DtString& name = datatype.name;
    if (!datatype.kind)
    {
        const int result = myManager.byteAlignmentFromRep(name);
        if (result < 1)
        {
            warn();
            DtWarn << "Can't find datatype: " << name << "\n";
        }
        return result;
    }
    switch (*datatype.kind)
    {
        case DtDatatypeManager::DtDatatypeSimple:
        case DtDatatypeManager::DtDatatypeEnumerated:
        case DtDatatypeManager::DtDatatypeDefined:
            return myManager.byteAlignmentFromRep(name);
        case DtDatatypeManager::DtDatatypeComplex:
            return myManager.byteAlignmentComplex(name);
        case DtDatatypeManager::DtDatatypeArray:
            return myManager.byteAlignmentArray(name);
        case DtDatatypeManager::DtDatatypeVariant:
            return myManager.byteAlignmentVariant(name);
        case DtDatatypeManager::DtDatatypeFixed:
            return myManager.byteAlignmentFixed(name);
        case DtDatatypeManager::DtDatatypeUnknown:
            break;
    }
    warn();
    DtDebug << "Unknown representation " << *datatype.kind << " for datatype " << name << "\n";
    return -1;
}

int AlignmentCalculator::fromRepresentation(const DtString& datatype)
{
    ResolvedDatatype& resolved = myResolver.find(datatype);
    if (!resolved.mapping)
    {
        warn();
        DtWarn << "Can't find representation for datatype: " << resolved.name << "\n";
        return -1;
    }
    if (!resolved.rep) return myManager.byteAlignment(*resolved.mapping);
    constexpr unsigned int theLargest = 1U << 30;
    return static_cast<int>(std::min(resolved.rep->byteAlignment(), theLargest));
}

int AlignmentCalculator::ofFixed(const DtString& datatype)
{
    ResolvedDatatype& resolved = myResolver.find(datatype);
    const DtFixedDatatypeNode* const node = myResolver.fixed(resolved);
    if (!node) return -1;
    int largest = -1;
    std::size_t at = 0;
    for (auto it = node->getComponentNodeList(); it != node->getComponentNodeEnd(); ++it, ++at)
    {
        const int alignment =
            myManager.byteAlignment(myResolver.component(resolved, at, **it).name);
        if (alignment < 0) return alignment;
        largest = std::max(largest, alignment);
    }
    return largest;
}

int AlignmentCalculator::ofArray(const DtString& datatype)
{
    constexpr int theCountAlignment = 4;
    ResolvedDatatype& resolved = myResolver.find(datatype);
    const DtArrayDatatypeNode* const node = myResolver.array(resolved);
    if (!node) return -1;
    switch (node->getCardinalityType())
    {
        case DtArrayForm::theBits:
        case DtArrayForm::theCounted:
            return theCountAlignment;
        case DtArrayForm::thePadding:
            warn();
            DtWarn << "Unknown alignment, DtArrayDatatypeNode::DtLocation not implemented.\n";
            return -1;
        case DtArrayForm::theFixed:
        case DtArrayForm::theBounded:
        case DtArrayForm::theOpenComponent:
        case DtArrayForm::theZeroEnded:
        case DtArrayForm::thePaddingComponent:
        case DtArrayForm::theLengthless:
        case DtArrayForm::theDimensions:
            return myManager.byteAlignment(myResolver.component(resolved, 0, *node).name);
        default:
            return -1;
    }
}

int AlignmentCalculator::ofVariant(const DtString& datatype)
{
    ResolvedDatatype& resolved = myResolver.find(datatype);
    const DtVariantDatatypeNode* const node = myResolver.variant(resolved);
    if (!node) return -1;
    return myManager.byteAlignment(myResolver.component(resolved, 0, *node).name);
}

}  // namespace omtreader
