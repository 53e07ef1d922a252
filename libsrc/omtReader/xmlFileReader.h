// SPDX-License-Identifier: Apache-2.0
// The way into XML object models: files, modules to be merged, texts in memory.
#pragma once

#include "util/dtFilename.h"

#include <memory>
#include <vector>

class DtExerciseConn;  // a host's own; it is never looked into, and may be null
class DtOMTTree;
struct _xmlDoc;
struct _xmlNode;

/// How opening an XML document went.
enum DtFedReadStatus
{
    DtFedReadSuccess = 0,  ///< parsed, and it has a root element
    DtFedReadNoFile = 1,   ///< no such file, or none that can be parsed
    DtFedReadBadFile = 2   ///< a text that cannot be parsed, or no root element
};

/// Reads XML object models, 1516-2010 and 1516-2000, told apart by their content.
///
/// A read that fails gives null and adds to the last error, except where a file of readFiles() is a
/// model of another format; what a parser has to say about a text goes to DtWarn as
/// "file:line:column: text". Whatever is thrown while a model is read is caught and becomes the
/// last error; readFiles() goes on with the next module. The reader stays usable.
///
/// Names go to libxml2: it opens files, packed ones too where it was built for that, by their path
/// or as "file:" URI, and standard input as "-". Nothing is read from the network. A text of more
/// than 1 GiB when unpacked, and an element with more than 1,000 XML attributes, are refused.
class OMTREADER_EXPORT DtXMLFileReader
{
public:
    DtXMLFileReader();
    DtXMLFileReader(const DtXMLFileReader&) = delete;
    DtXMLFileReader& operator=(const DtXMLFileReader&) = delete;
    /// Deletes the modules that readFiles read. Trees that were returned stay.
    virtual ~DtXMLFileReader();

    /// Reads one model into a new tree, which is the caller's; null on failure. The connection may
    /// be null; it is not owned and only tells whether handles are set up.
    ///
    /// With the MIM included, a 1516-2010 model is merged with it by readFiles(), unless it is the
    /// MIM itself. A 1516-2000 model is read as it is.
    virtual DtOMTTree* readFile(const DtFilename& name, DtExerciseConn* connection);

    /// Reads 1516-2010 modules and merges them in the order of the list into a new tree, which is
    /// the caller's; null as soon as one cannot be read or is no 1516-2010 model.
    ///
    /// The name "HLAstandardMIM.xml", just so, stands for the MIM inside the library.
    virtual DtOMTTree* readFiles(const std::vector<DtFilename>& names, DtExerciseConn* connection);

    /// What went wrong, of all reads since it was last cleared.
    virtual const DtString& getLastError() { return myLastError; }
    virtual void clearLastError() { myLastError = DtString(); }

    /// Whether readFile adds the standard MIM; it does not at first.
    void includeMIM(bool isIncluded) { myMIMIsIncluded = isIncluded; }
    bool MIMincluded() const { return myMIMIsIncluded; }

    /// Parses a file into a document, which is the caller's to free with xmlFreeDoc(). Where the
    /// name leads to nothing that can be parsed, it is tried again in the directory that the
    /// environment variable RTI_CONFIG names. Errors are added to `error`. A null name, and a
    /// document pointer that is not null before, stop the program.
    static DtFedReadStatus openFile(const char* fedFileName, _xmlDoc** newXmlDocTree,
                                    DtString& error);
    /// Parses `length` octets into such a document. A null buffer stops the program, too.
    static DtFedReadStatus openStream(const char* buffer, int length, _xmlDoc** newXmlDocTree,
                                      DtString& error);

    /// Whether a document is a 1516-2010 model: by the root's namespace, else by what it holds.
    static bool isEvolvedFormat(_xmlNode*& root);
    /// The first child of a name of any node, a document too, or null. Names and texts are UTF-8 as
    /// libxml2 holds them.
    static _xmlNode* getNodeByName(_xmlNode* parent, const unsigned char* name);
    /// The text of the first child of a name that begins with text, or null.
    static const unsigned char* childContentByName(_xmlNode* parent, const unsigned char* name);

private:
    DtOMTTree* readOpened(_xmlNode* root, const DtFilename& name);
    DtFedReadStatus openModule(const DtFilename& name, _xmlDoc** document);
    void setUnexpectedProblem() noexcept;

    DtString myLastError;
    DtExerciseConn* myConnection = nullptr;
    std::vector<DtOMTTree*> myModules;
    bool myMIMIsIncluded = false;
    DtString mySpareError;  // for when there is no memory for another
};
