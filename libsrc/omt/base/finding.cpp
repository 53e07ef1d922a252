// SPDX-License-Identifier: Apache-2.0
#include "omt/base/finding.h"

#include <ostream>

namespace omt
{

std::string_view name(Severity severity)
{
    switch (severity)
    {
        case Severity::note:
            return "note";
        case Severity::warning:
            return "warning";
        case Severity::error:
            return "error";
    }
    return "error";
}

std::ostream& operator<<(std::ostream& out, const Place& place)
{
    out << place.file;
    if (place.line == 0) return out;
    out << ':' << place.line;
    if (place.column != 0) out << ':' << place.column;
    return out;
}

std::ostream& operator<<(std::ostream& out, const Finding& finding)
{
    if (!finding.place.file.empty() || finding.place.line != 0) out << finding.place << ": ";
    return out << name(finding.severity) << ": " << finding.text << " [" << finding.name << ']';
}

}  // namespace omt
