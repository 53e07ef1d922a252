// SPDX-License-Identifier: Apache-2.0
// Any octets as a model: read, written, read again. What was written reads back as it is, and no
// finding is worse than before.
#include "omt/model/read.h"
#include "omt/model/write.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

namespace
{

void require(bool holds, const char* rule)
{
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", rule);
    std::abort();
}

omt::Model read(std::string_view octets, omt::Findings& findings)
{
    return omt::readModule({"model", octets}, findings);
}

/// The worst severity of each kind of finding.
std::map<std::string, omt::Severity> worstOf(const omt::Findings& findings)
{
    std::map<std::string, omt::Severity> worst;
    for (const omt::Finding& finding : findings)
    {
        const auto [place, isNew] = worst.try_emplace(finding.name, finding.severity);
        if (!isNew) place->second = std::max(place->second, finding.severity);
    }
    return worst;
}

void checkWriting(const omt::Model& model, const omt::Findings& before, omt::Edition edition,
                  const omt::WriteOptions& options, std::size_t size)
{
    const omt::Writing first = omt::writeXml(model, edition, options);
    require(first.text.size() <= 65536 + 400 * size, "what is written grows with the model");
    omt::Findings findings;
    const omt::Model again = read(first.text, findings);
    require(again.modules().size() == 1, "what is written can be read");
    require(again.edition() == edition, "it is of the edition");
    const std::map<std::string, omt::Severity> known = worstOf(before);
    for (const auto& [name, severity] : worstOf(findings))
    {
        const auto found = known.find(name);
        require(found != known.end() && found->second >= severity, "no finding is worse");
    }
    const omt::Writing second = omt::writeXml(again, edition, options);
    require(second.text == first.text, "what was read from a written document stays the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    omt::Findings findings;
    const omt::Model model = read({reinterpret_cast<const char*>(data), size}, findings);
    if (model.modules().empty()) return 0;
    for (const omt::Edition edition : {omt::Edition::ieee2010, omt::Edition::ieee2025})
    {
        checkWriting(model, findings, edition, {}, size);
        if (model.edition() == edition)
            checkWriting(model, findings, edition, omt::WriteOptions().asRead(), size);
    }
    return 0;
}
