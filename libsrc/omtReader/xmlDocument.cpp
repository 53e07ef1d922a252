// SPDX-License-Identifier: Apache-2.0
#include "omtReader/xmlDocument.h"

#include "util/dtFileOctets.h"
#include "util/dtMessages.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <limits>
#include <new>

namespace
{

/// While it lives, what libxml2 has to say on this thread comes here and not to standard error. The
/// receiver is a setting of the thread, and the one before is put back.
class FirstError
{
public:
    explicit FirstError(const char* name)
        : myName(name), myOldReceiver(xmlStructuredError), myOldContext(xmlStructuredErrorContext)
    {
        xmlSetStructuredErrorFunc(this, &FirstError::receive);
    }
    ~FirstError() { xmlSetStructuredErrorFunc(myOldContext, myOldReceiver); }
    FirstError(const FirstError&) = delete;
    FirstError& operator=(const FirstError&) = delete;

private:
    // Only the first is passed on: the rest of a broken document tends to break in every line.
    static void receive(void* context, xmlError* error)
    {
        FirstError& self = *static_cast<FirstError*>(context);
        if (self.myHasReported || !error || error->level < XML_ERR_ERROR) return;
        self.myHasReported = true;
        std::string_view text = error->message ? error->message : "not well-formed XML";
        while (!text.empty() && text.back() == '\n') text.remove_suffix(1);
        DtWarn << self.myName << ':';
        if (error->line > 0) DtWarn << error->line << ':' << error->int2 << ':';
        DtWarn << ' ' << text << std::endl;
    }

    const char* myName;
    bool myHasReported = false;
    xmlStructuredErrorFunc myOldReceiver;
    void* myOldContext;
};

struct FreeParserContext
{
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

constexpr int theParserOptions = XML_PARSE_NONET | XML_PARSE_NOBLANKS | XML_PARSE_COMPACT;

}  // namespace

omt::XmlDocument omt::parseXml(std::string_view text, const char* name)
{
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    {
        DtWarn << name << ": too large\n";
        return nullptr;
    }
    const FirstError firstError(name);
    const std::unique_ptr<xmlParserCtxt, FreeParserContext> context(xmlNewParserCtxt());
    if (!context) throw std::bad_alloc();
    return XmlDocument(xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()),
                                         name, nullptr, theParserOptions));
}

omt::XmlDocument omt::parseXmlFile(const char* name)
{
    std::error_code reason;
    const auto octets = readFileOctets(name, reason);
    if (octets) return parseXml(*octets, name);
    if (reason != std::errc::no_such_file_or_directory && reason != std::errc::not_a_directory)
        DtWarn << name << ": " << reason.message() << std::endl;
    return nullptr;
}
