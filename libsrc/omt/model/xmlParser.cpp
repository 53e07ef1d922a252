// SPDX-License-Identifier: Apache-2.0
#include "omt/model/xmlParser.h"

#include <expat.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <utility>

namespace omt
{

namespace
{

struct FreeExpat
{
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

constexpr std::string_view theDeclaration = "xmlns";

/// The prefix that an XML attribute declares; not there for other attributes.
bool isDeclaration(std::string_view attribute, std::string_view& prefix)
{
    if (attribute.substr(0, theDeclaration.size()) != theDeclaration) return false;
    prefix = attribute.substr(theDeclaration.size());
    if (prefix.empty()) return true;
    if (prefix.front() != ':') return false;
    prefix.remove_prefix(1);
    return true;
}

}  // namespace

/// What expat calls. Nothing may throw through expat, which is C: what is thrown waits here.
struct XmlParser::Callbacks
{
    template <typename Call>
    static void guard(void* data, Call&& call)
    {
        auto* const self = static_cast<Callbacks*>(data);
        if (self->thrown || self->isStopped) return;
        try
        {
            call(self->parser);
        }
        catch (...)
        {
            self->thrown = std::current_exception();
            XML_StopParser(static_cast<XML_Parser>(self->parser.myExpat), XML_FALSE);
        }
    }

    static void start(void* data, const char* name, const char** attributes)
    {
        guard(data, [&](XmlParser& parser) { parser.start(name, attributes); });
    }
    static void end(void* data, const char*)
    {
        guard(data, [](XmlParser& parser) { parser.end(); });
    }
    static void text(void* data, const char* piece, int size)
    {
        const std::string_view view(piece, static_cast<std::size_t>(size));
        guard(data, [view](XmlParser& parser) { parser.myHandler.addText(view); });
    }
    static void comment(void* data, const char* text)
    {
        guard(data, [text](XmlParser& parser) { parser.myHandler.addComment(text); });
    }
    static void entity(void* data, const char* name, int)
    {
        guard(data, [name](XmlParser& parser) { parser.myHandler.skipEntity(name); });
    }
    static void doctype(void* data, const char*, const char*, const char*, int hasDeclarations)
    {
        guard(data,
              [&](XmlParser& parser)
              {
                  if (hasDeclarations)
                      parser.stop("doctype",
                                  "has a document type with declarations of its own, "
                                  "which are not read; take them out");
                  else
                      parser.myHandler.skipDoctype();
              });
    }

    XmlParser& parser;
    std::exception_ptr thrown = nullptr;
    bool isStopped = false;
};

std::size_t XmlParser::offset() const
{
    return static_cast<std::size_t>(XML_GetCurrentByteIndex(static_cast<XML_Parser>(myExpat)));
}

/// Counts line ends once each: places come in the order of the text.
std::uint32_t XmlParser::lineAt(std::size_t offset)
{
    const char* at = myText.data() + myCountedTo;
    const char* const end = myText.data() + std::min(offset, myText.size());
    while (at < end)
    {
        const void* const found = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
        if (!found) break;
        at = static_cast<const char*>(found) + 1;
        ++myLine;
    }
    myCountedTo = std::max(myCountedTo, offset);
    return myLine;
}

void XmlParser::stop(const char* name, std::string text)
{
    auto* const expat = static_cast<XML_Parser>(myExpat);
    myFault = {Severity::error, name, std::move(text), {}};
    // Expat counts a lone carriage return as the end of a line; here as elsewhere only a line feed
    // is.
    const std::size_t at = std::min(offset(), myText.size());
    myFault.place.line = lineAt(at);
    const std::size_t lineEnd = myText.substr(0, at).rfind('\n');
    const std::string_view before =
        myText.substr(lineEnd == std::string_view::npos ? 0 : lineEnd + 1, at - lineEnd - 1);
    myFault.place.column =
        1 + static_cast<std::uint32_t>(std::count_if(
                before.begin(), before.end(),
                [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
    static_cast<Callbacks*>(XML_GetUserData(expat))->isStopped = true;
    XML_StopParser(expat, XML_FALSE);
}

bool XmlParser::declarePrefixes(const char* const* attributes)
{
    bool isDeclaring = false;
    for (; *attributes; attributes += 2)
    {
        std::string_view prefix;
        if (!isDeclaration(*attributes, prefix)) continue;
        myPrefixes.push_back({std::string(prefix), attributes[1], myDepth});
        isDeclaring = true;
    }
    return isDeclaring;
}

std::string_view XmlParser::namespaceOf(std::string_view prefix) const
{
    for (auto known = myPrefixes.rbegin(); known != myPrefixes.rend(); ++known)
        if (known->prefix == prefix) return known->name;
    return {};
}

void XmlParser::resolve(XmlElement& element) const
{
    const std::size_t colon = element.name.find(':');
    if (colon == std::string_view::npos)
    {
        element.isForeign = !isPlain && namespaceOf({}) != myNamespace;
        return;
    }
    element.isForeign = namespaceOf(element.name.substr(0, colon)) != myNamespace;
    if (!element.isForeign) element.name.remove_prefix(colon + 1);
}

void XmlParser::start(const char* name, const char** attributes)
{
    auto* const expat = static_cast<XML_Parser>(myExpat);
    XmlElement element;
    element.name = name;
    element.attributes = attributes;
    element.offset = offset();
    element.line =
        lineAt(element.offset + static_cast<std::size_t>(XML_GetCurrentByteCount(expat)));
    ++myDepth;
    const bool isDeclaring = *attributes && declarePrefixes(attributes);
    if (myDepth == 1)
    {
        const std::size_t colon = element.name.find(':');
        myNamespace =
            namespaceOf(colon == std::string_view::npos ? "" : element.name.substr(0, colon));
        isPlain = namespaceOf({}) == myNamespace;
        resolve(element);
        if (!myHandler.startRoot(element, myNamespace))
        {
            static_cast<Callbacks*>(XML_GetUserData(expat))->isStopped = true;
            XML_StopParser(expat, XML_FALSE);
        }
        return;
    }
    if (isDeclaring) isPlain = false;
    resolve(element);
    myHandler.startElement(element);
}

void XmlParser::end()
{
    auto* const expat = static_cast<XML_Parser>(myExpat);
    const std::size_t end = offset() + static_cast<std::size_t>(XML_GetCurrentByteCount(expat));
    myHandler.endElement(end);
    while (!myPrefixes.empty() && myPrefixes.back().depth == myDepth && myDepth > 1)
        myPrefixes.pop_back();
    --myDepth;
}

bool XmlParser::parse(Finding& fault)
{
    // Small enough that expat's own copy does not count, large enough that calls do not.
    constexpr std::size_t thePiece = 65536;
    const std::unique_ptr<XML_ParserStruct, FreeExpat> expat(XML_ParserCreate("UTF-8"));
    if (!expat) throw std::bad_alloc();
    myExpat = expat.get();
    Callbacks callbacks{*this};
    XML_SetUserData(expat.get(), &callbacks);
    XML_SetElementHandler(expat.get(), &Callbacks::start, &Callbacks::end);
    XML_SetCharacterDataHandler(expat.get(), &Callbacks::text);
    XML_SetCommentHandler(expat.get(), &Callbacks::comment);
    XML_SetSkippedEntityHandler(expat.get(), &Callbacks::entity);
    XML_SetStartDoctypeDeclHandler(expat.get(), &Callbacks::doctype);

    XML_Status status = XML_STATUS_OK;
    for (std::size_t at = 0; status == XML_STATUS_OK;)
    {
        const std::size_t size = std::min(thePiece, myText.size() - at);
        const bool isLast = at + size == myText.size();
        status = XML_Parse(expat.get(), myText.data() + at, static_cast<int>(size), isLast);
        at += size;
        if (isLast) break;
    }
    if (callbacks.thrown) std::rethrow_exception(callbacks.thrown);
    if (status == XML_STATUS_OK) return true;
    const XML_Error error = XML_GetErrorCode(expat.get());
    if (error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
    if (error != XML_ERROR_ABORTED)
        stop("not-well-formed", std::string("is no well-formed XML: ") + XML_ErrorString(error));
    fault = myFault;
    return false;
}

}  // namespace omt
