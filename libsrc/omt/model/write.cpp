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
    if (options.isAsRead)
    {
        XmlWriter(writing.text, model.tables(), edition).write();
        return writing;
    }
    Fitting fitting(model, edition, writing.findings);
    XmlWriter(writing.text, fitting.fit(), edition).write();
    return writing;
}

}  // namespace omt
