// SPDX-License-Identifier: Apache-2.0
// Any octets as a mapping file: read, applied, and used.
#include "checks.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/simpleDatatypeNode.h"
#include "sexp/dtcList.h"
#include "util/dtException.h"

#include <cstdint>

namespace
{

/// The forms of a text one after the other, up to its end or to what is malformed.
void applyForms(DtDatatypeManager& manager, std::string_view text)
{
    DtlStringInputStream stream(text);
    DtSexpEnvironment environment;
    const DtlObjPtr eof = DtcIntern("eof", environment.env());
    try
    {
        for (DtlObjPtr form; !DtcEq(form = DtcRead(stream, environment.env()), eof);)
            if (DtcEqual(form, form)) manager.processMappings(form);
    }
    catch (const DtException&)
    {
        // What is malformed ends the reading.
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    beQuiet();
    const DtOMTTreePtr tree(new DtOMTTree);
    auto* const simple = new DtSimpleDatatypeNode;
    simple->setName("Metre");
    simple->setRepresentation("HLAfloat64BE");
    tree->addSimpleDatatypeNode(simple);

    DtDatatypeManager manager;
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(tree.get());
    DtSexpReadEscapeChar = size % 2 ? "\\" : nullptr;
    const std::size_t before = heldMemory();
    applyForms(manager, {reinterpret_cast<const char*>(data), size});
    requireMemory(before + 65536 + 512 * size);
    int consumed = 0;
    manager.getStringRep("Metre", data, static_cast<int>(size), consumed);
    return 0;
}
