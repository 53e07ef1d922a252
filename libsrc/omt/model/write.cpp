// SPDX-License-Identifier: Apache-2.0
#include "omt/model/write.h"

#include "omt/model/fitting.h"
#include "omt/model/xmlWriter.h"

#include <stdexcept>

namespace omt
{

Writing writeXml(const Model& model, Edition edition, const WriteOptions& options)
{
    if (edition != Edition::ieee2010 && edition != Edition::ieee2025)
        throw std::invalid_argument("writeXml writes 1516-2010 and 1516-2025");
    Writing writing;
    // Tags take about as much as what the model has beside its texts.
    const std::size_t expected = model.octetsHeld() + model.octetsHeld() / 4;
    const auto write = [&](const Tables& tables)
    {
        XmlWriter writer(writing.text, expected, tables, edition, options.hasOrigins);
        writer.write();
        if (options.hasOrigins) writing.origins = writer.origins(writing.text);
    };
    if (options.isAsRead)
        write(model.tables());
    else
        write(Fitting(model, edition, writing.findings).fit());
    return writing;
}

}  // namespace omt
