// SPDX-License-Identifier: Apache-2.0
// Any octets as a value of every kind of datatype, or as all values of an attribute of it.
//
// The first octet chooses, as valueModel.h says; its second bit the attribute.
#include "omtReader/attributeFedNode.h"
#include "valueChecks.h"
#include "valueModel.h"

namespace
{

constexpr std::size_t theMostOctets = 65536;

/// The values of an attribute: the line may say more of those that are missing.
void checkAttribute(const Value& value)
{
    DtAttributeFedNode attribute;
    attribute.setName("attribute");
    attribute.setDatatype(value.datatype);
    attribute.setCardinality("0+");
    const std::size_t before = heldMemory();
    int consumed = 0;
    const DtString line =
        value.manager.getFedNodeStringRep(&attribute, value.data, value.length, consumed);
    require(line.length() <= value.textAllowed(), "text grows with the octets and no faster");
    const std::unique_ptr<DtStringTree> tree(value.manager.createStringTreeRep(
        &attribute, value.data, value.length, consumed, 0, nullptr));
    checkConsumed(consumed, value);
    requireMemory(before + 65536 + 1024 * value.nodesAllowed());
    checkNodes(tree.get(), value.nodesAllowed());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    beQuiet();
    if (size == 0 || size > theMostOctets) return 0;
    const DtString datatype = theDatatypes[datatypeFor(data[0])];
    const Value value{managerFor(data[0]), datatype, data + 1, static_cast<int>(size - 1)};
    if (data[0] & 2)
        checkAttribute(value);
    else
        checkDecoding(value);
    return 0;
}
