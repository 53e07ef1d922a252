// SPDX-License-Identifier: Apache-2.0
#include "omt/model/merging.h"

namespace omt
{

Edition Merging::editionOf(std::uint32_t module) const
{
    return module < tables().modules.size() ? tables().modules[module].edition : Edition::ieee2010;
}

Place Merging::place(std::uint32_t module, std::uint32_t line) const
{
    if (module >= tables().modules.size()) return {};
    return {tables().modules[module].file.str(), line};
}

void Merging::keepAsides(const Definition& scaffold, Definition& whole)
{
    if (scaffold.asides.empty()) return;
    std::vector<Aside> asides(scaffold.asides.begin(), scaffold.asides.end());
    for (const Aside& aside : std::as_const(asides))
        if (aside.what == Aside::What::notes) movedNotes.push_back({aside.text, scaffold.module});
    asides.insert(asides.end(), whole.asides.begin(), whole.asides.end());
    whole.asides = builder.list(asides);
}

}  // namespace omt
