// SPDX-License-Identifier: Apache-2.0
#include "valueJson.h"

#include <nlohmann/json.hpp>

namespace
{

void write(const DtStringTree& node, std::string& out);

/// An element chain, or all the fields with their further values.
void writeAll(const DtStringTree* first, const char* key, std::string& out)
{
    out += std::string(",\"") + key + "\":[";
    bool isFirst = true;
    for (const DtStringTree* field = first; field; field = field->nextSibling())
        for (const DtStringTree* one = field; one; one = one->nextElement())
        {
            if (!isFirst) out += ',';
            isFirst = false;
            write(*one, out);
            out += '}';
        }
    out += ']';
}

/// All but the closing brace. Goes down as deep as datatypes do, which is little.
void write(const DtStringTree& node, std::string& out)
{
    out += "{\"key\":" + jsonText(node.key());
    out += ",\"datatype\":" + jsonText(node.datatype());
    out += ",\"offset\":" + std::to_string(node.offset());
    out += ",\"value\":" + jsonText(node.value());
    writeAll(node.firstChild(), "children", out);
}

}  // namespace

std::string jsonText(const DtString& text)
{
    return nlohmann::json(text.str()).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
}

std::string jsonOf(const DtStringTree* tree)
{
    if (!tree) return "null";
    std::string out;
    write(*tree, out);
    if (tree->nextElement()) writeAll(tree->nextElement(), "elements", out);
    return out + '}';
}
