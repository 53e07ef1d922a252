// SPDX-License-Identifier: Apache-2.0
#include "omtReader/formats/xmlDocument.h"

#include "util/dtMessages.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <limits>
#include <new>
#include <string>
#include <system_error>

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

    void reportErrno() { report(0, 0, std::generic_category().message(errno)); }

private:
    static void receive(void* context, xmlError* error)
    {
        if (!error || error->level < XML_ERR_ERROR) return;
        static_cast<FirstError*>(context)->report(
            error->line, error->int2, error->message ? error->message : "not well-formed XML");
    }

    const char* myName;
    bool myHasReported = false;
    xmlStructuredErrorFunc myOldReceiver;
    void* myOldContext;
};

struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

struct Source
{
    std::FILE* file;
    FirstError& firstError;
    bool hasFailed = false;
};

int readPiece(void* context, char* octets, int count)
{
    Source& source = *static_cast<Source*>(context);
    const std::size_t got = std::fread(octets, 1, static_cast<std::size_t>(count), source.file);
    if (!std::ferror(source.file)) return static_cast<int>(got);
    source.firstError.reportErrno();
    source.hasFailed = true;
    return -1;
}

struct FreeParserContext
{
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

constexpr std::size_t theReadSize = std::size_t(64) << 10;  // libxml2 asks for 4 KB at a time

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
    const FirstError firstError(name);
    const ParserContext context = newParserContext();
    XmlDocument document(xmlCtxtReadMemory(context.get(), text.data(),
                                           static_cast<int>(text.size()), name, nullptr,
                                           theParserOptions));
    requireMemory(context);
    return document;
}

omtreader::XmlDocument omtreader::parseXmlFile(const char* name)
{
    FirstError firstError(name);
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(name, "rbe"));
    if (!file)
    {
        if (errno != ENOENT && errno != ENOTDIR) firstError.reportErrno();
        return nullptr;
    }
    std::setvbuf(file.get(), nullptr, _IOFBF, theReadSize);
    Source source{file.get(), firstError};
    const ParserContext context = newParserContext();
    XmlDocument document(
        xmlCtxtReadIO(context.get(), readPiece, nullptr, &source, name, nullptr, theParserOptions));
    requireMemory(context);
    return source.hasFailed ? nullptr : std::move(document);
}
