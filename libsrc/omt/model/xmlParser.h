// SPDX-License-Identifier: Apache-2.0
// XmlParser turns the text of an XML document into elements, texts and comments with their lines.
#pragma once

#include "omt/base/finding.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// A start tag. Views are good until the handler returns.
struct XmlElement
{
    /// Without its prefix where the element is of the model's own namespace.
    std::string_view name;
    /// Of another namespace than the root.
    bool isForeign = false;
    /// Names and values in turn, up to a null pointer, as written; namespace declarations too.
    const char* const* attributes = nullptr;
    /// The line on which the start tag ends.
    std::uint32_t line = 0;
    /// Where the start tag begins in the text.
    std::size_t offset = 0;
};

/// What is told of a document, in its order.
class XmlHandler
{
public:
    virtual ~XmlHandler() = default;
    /// False stops: the root is not one that is read.
    virtual bool startRoot(const XmlElement& root, std::string_view namespaceName) = 0;
    virtual void startElement(const XmlElement& element) = 0;
    /// `end` is where the end tag ends in the text.
    virtual void endElement(std::size_t end) = 0;
    /// A piece of text; one run of text may come in several.
    virtual void addText(std::string_view piece) = 0;
    virtual void addComment(std::string_view comment) = 0;
    /// An entity that only a document type could explain.
    virtual void skipEntity(std::string_view name) = 0;
    /// There is a document type, which is not looked at.
    virtual void skipDoctype() = 0;
};

/// A prefix that stands for a namespace from some element on.
struct XmlPrefix
{
    /// Empty for the default namespace.
    std::string prefix;
    std::string name;
    std::uint32_t depth = 0;
};

/// One pass over one document. Reads nothing but the text it is given.
class XmlParser
{
public:
    /// `text` is UTF-8 without a byte order mark and outlives the parser.
    XmlParser(std::string_view text, XmlHandler& handler) : myText(text), myHandler(handler) {}
    XmlParser(const XmlParser&) = delete;
    XmlParser& operator=(const XmlParser&) = delete;

    /// Goes through the document. The fault, if it is no well-formed XML or has a document type
    /// with declarations, has line and column and no file.
    bool parse(Finding& fault);

    std::string_view text() const { return myText; }
    /// The line on which what is being told begins.
    std::uint32_t line() { return lineAt(offset()); }
    /// What prefixes stand for at the current element.
    const std::vector<XmlPrefix>& prefixes() const { return myPrefixes; }

private:
    struct Callbacks;
    bool declarePrefixes(const char* const* attributes);
    void resolve(XmlElement& element) const;
    std::string_view namespaceOf(std::string_view prefix) const;
    std::uint32_t lineAt(std::size_t offset);
    std::size_t offset() const;
    void start(const char* name, const char** attributes);
    void end();
    void stop(const char* name, std::string text);

    std::string_view myText;
    XmlHandler& myHandler;
    void* myExpat = nullptr;
    std::vector<XmlPrefix> myPrefixes;
    std::string myNamespace;
    std::uint32_t myDepth = 0;
    /// Whether a name without a prefix is one of the model's, whatever stands around it.
    bool isPlain = true;
    std::size_t myCountedTo = 0;
    std::uint32_t myLine = 1;
    Finding myFault;
};

}  // namespace omt
