// SPDX-License-Identifier: Apache-2.0
// Any octets as an XML object model: parsed, read, merged and freed, with a look at the
// links.
//
// The first octet chooses the way, the rest is the document. Digits do, so that inputs stay text:
// 0 the reader that the front-end picks, 1 the 2010 one, 2 the 2000 one; plus 4 to merge after the
// standard MIM.
#include "omtReader/standardMIM.h"
#include "readModel.h"
#include "treeChecks.h"

#include <limits>

namespace
{

DtOMTTreePtr readMIM()
{
    const auto theLength = static_cast<std::size_t>(HLAstandardMIM_xml_len);
    return readXml({reinterpret_cast<const char*>(HLAstandardMIM_xml), theLength});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    beQuiet();
    static const DtOMTTreePtr theMIM = readMIM();
    require(theMIM != nullptr, "the MIM is read");
    if (size == 0 || size > std::size_t{std::numeric_limits<int>::max()}) return 0;

    const Format format = data[0] % 4 == 1   ? Format::is2010
                          : data[0] % 4 == 2 ? Format::is2000
                                             : Format::asTold;
    const bool isBehindMIM = data[0] & 4;
    const std::size_t before = heldMemory();
    DtOMTTreePtr module = readXml({reinterpret_cast<const char*>(data + 1), size - 1}, format);
    if (!module) return 0;
    checkSize(*module, before, size);
    check(*module);

    const DtOMTTreePtr merged(new DtOMTTree);
    merged->setHlaVersion(module->hlaVersion());
    if (isBehindMIM) merged->merge(theMIM.get());
    merged->merge(module.get());
    check(*module);
    module.reset();  // what is merged must not lean on it
    check(*merged);
    return 0;
}
