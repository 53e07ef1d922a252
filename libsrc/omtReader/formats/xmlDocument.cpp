// SPDX-License-Identifier: Apache-2.0
#include "omtReader/formats/xmlDocument.h"

#include "omtReader/formats/xmlAttributeLimit.h"
#include "util/dtMessages.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <new>
#include <string>
#include <system_error>

namespace
{

using omtreader::XmlAttributeLimit;

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

    /// Only the first is passed on: the rest of a broken document tends to break in every line.
    void report(int line, int column, std::string_view text)
    {
        if (myHasReported) return;
        myHasReported = true;
        while (!text.empty() && text.back() == '\n') text.remove_suffix(1);
        std::string oneLine(text);  // as a line break would end the message
        std::replace(oneLine.begin(), oneLine.end(), '\n', ' ');
        DtWarn << myName << ':';
        if (line > 0) DtWarn << line << ':' << column << ':';
        DtWarn << ' ' << oneLine << std::endl;
    }

    void reportErrno() { report(0, 0, std::generic_category().message(errno ? errno : EIO)); }

private:
    static void receive(void* context, xmlError* error)
    {
        // Whether a file can be read is not for libxml2 to say, which tries in several ways.
        if (!error || error->level < XML_ERR_ERROR || error->domain == XML_FROM_IO) return;
        static_cast<FirstError*>(context)->report(
            error->line, error->int2, error->message ? error->message : "not well-formed XML");
    }

    const char* myName;
    bool myHasReported = false;
    xmlStructuredErrorFunc myOldReceiver;
    void* myOldContext;
};

struct FreeInput
{
    void operator()(xmlParserInputBuffer* input) const { xmlFreeParserInputBuffer(input); }
};
using Input = std::unique_ptr<xmlParserInputBuffer, FreeInput>;

/// Whether this is the name of something on the network, which is never read.
bool isOnNetwork(const char* name)
{
    const auto begins = [name](const char* head, int length)
    {
        const auto* const text = reinterpret_cast<const xmlChar*>(name);
        return xmlStrncasecmp(text, reinterpret_cast<const xmlChar*>(head), length) == 0;
    };
    return begins("http://", 7) || begins("https://", 8) || begins("ftp://", 6);
}

void reportAttributes(FirstError& firstError, const XmlAttributeLimit& limit)
{
    firstError.report(limit.line(), limit.column(),
                      "an element with more than " + std::to_string(XmlAttributeLimit::theMost) +
                          " XML attributes");
}

/// What libxml2 opened, read through it and looked over.
struct Source
{
    Input input;
    FirstError& firstError;
    XmlAttributeLimit limit = {};
    std::size_t octets = 0;
    bool hasFailed = false;
};

/// A small compressed file may hold a text of any size.
constexpr std::size_t theMostOctets = std::size_t(1) << 30;

int readPiece(void* context, char* octets, int count)
{
    Source& source = *static_cast<Source*>(context);
    errno = 0;
    const int got = source.input->readcallback(source.input->context, octets, count);
    const std::size_t size = got > 0 ? static_cast<std::size_t>(got) : 0;
    source.octets += size;
    if (got < 0)
        source.firstError.reportErrno();
    else if (source.octets > theMostOctets)
        source.firstError.report(0, 0, "too large");
    else if (!source.limit.accepts({octets, size}))
        reportAttributes(source.firstError, source.limit);
    else
        return got;
    source.hasFailed = true;
    return -1;
}

struct FreeParserContext
{
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

constexpr int theParserOptions = XML_PARSE_NONET | XML_PARSE_NOBLANKS | XML_PARSE_COMPACT;

using ParserContext = std::unique_ptr<xmlParserCtxt, FreeParserContext>;

ParserContext newParserContext()
{
    ParserContext context(xmlNewParserCtxt());
    if (!context) throw std::bad_alloc();
    return context;
}

/// What libxml2 gives where memory runs out may be a part of the document that looks whole.
void requireMemory(const ParserContext& context)
{
    if (context->errNo == XML_ERR_NO_MEMORY) throw std::bad_alloc();
}

}  // namespace

omtreader::XmlDocument omtreader::parseXml(std::string_view text, const char* name)
{
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    {
        DtWarn << name << ": too large\n";
        return nullptr;
    }
    startXmlLibrary();
    FirstError firstError(name);
    if (XmlAttributeLimit limit; !limit.accepts(text))
    {
        reportAttributes(firstError, limit);
        return nullptr;
    }
    const ParserContext context = newParserContext();
    XmlDocument document(xmlCtxtReadMemory(context.get(), text.data(),
                                           static_cast<int>(text.size()), name, nullptr,
                                           theParserOptions));
    requireMemory(context);
    return document;
}

omtreader::XmlDocument omtreader::parseXmlFile(const char* name)
{
    startXmlLibrary();
    FirstError firstError(name);
    if (isOnNetwork(name))
    {
        firstError.report(0, 0, "nothing is read from the network");
        return nullptr;
    }
    errno = 0;
    Source source{Input(xmlParserInputBufferCreateFilename(name, XML_CHAR_ENCODING_NONE)),
                  firstError};
    if (!source.input)
    {
        if (errno == ENOMEM) throw std::bad_alloc();
        if (errno != ENOENT && errno != ENOTDIR) firstError.reportErrno();
        return nullptr;
    }
    const ParserContext context = newParserContext();
    XmlDocument document(
        xmlCtxtReadIO(context.get(), readPiece, nullptr, &source, name, nullptr, theParserOptions));
    requireMemory(context);
    return source.hasFailed ? nullptr : std::move(document);
}

void omtreader::startXmlLibrary()
{
    static const bool isStarted = (xmlInitParser(), true);
    static_cast<void>(isStarted);
}
