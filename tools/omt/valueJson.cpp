// SPDX-License-Identifier: Apache-2.0
#include "valueJson.h"

#include <nlohmann/json.hpp>

namespace
{

using Json = nlohmann::ordered_json;

std::string textOf(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string faultsOf(const omt::Value& value)
{
    const std::optional<omt::Fault>& fault = value.fault();
    if (!fault) return "[]";
    return '[' +
           textOf({
               {"what",   fault->what  },
               {"path",   fault->path  },
               {"offset", fault->offset},
               {"needed", fault->needed},
               {"left",   fault->left  }
    }) +
           ']';
}

std::string notesOf(const omt::Value& value)
{
    Json notes = Json::array();
    for (const omt::ValueNote& note : value.notes())
        notes.push_back({
            {"what",   note.what  },
            {"path",   note.path  },
            {"offset", note.offset}
        });
    return textOf(notes);
}

}  // namespace

void appendEnvelope(const omt::Value& value, const std::vector<omt::Overlay>* overlays,
                    std::string& text)
{
    text += '{';
    const std::size_t start = text.size();
    text += "\"value\":";
    const std::size_t begin = text.size();
    value.appendJson(text);
    if (text.size() == begin)
        text.resize(start);
    else
        text += ',';
    if (overlays)
    {
        text += "\"overlays\":";
        omt::appendJson(text, *overlays);
        text += ',';
    }
    text += "\"octets\":" + std::to_string(value.octets().size());
    text += ",\"left\":" + std::to_string(value.left());
    text += ",\"faults\":" + faultsOf(value);
    text += ",\"notes\":" + (value.notes().empty() ? "[]" : notesOf(value)) + '}';
}
