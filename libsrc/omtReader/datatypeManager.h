// SPDX-License-Identifier: Apache-2.0
// The octets of attribute and parameter values to readable text, and text back to octets.
#pragma once

#include "util/dtExport.h"
#include "util/dtString.h"

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

class DtArrayDatatypeNode;
class DtComplexComponentNode;
class DtDatatypeFedNode;
class DtDatatypeRep;
class DtInteractionClassFedNode;
class DtlObjPtr;
class DtObjectClassFedNode;
class DtObjectHistory;  // a host's own; it is only handed on, and may be null
class DtOMTDatatypeNode;
class DtOMTNode;
class DtOMTTree;
class DtStringTree;

namespace omtreader
{
class ConversionRooms;
struct ConversionSettings;
}  // namespace omtreader

/// Decodes and encodes values as the datatypes of an object model and a user's mappings say.
///
/// A mapping chooses the representation (DtDatatypeRep) that shows a datatype, or one attribute,
/// parameter or component by its name. Further settings are the delimiter between the fields of a
/// datatype, array brackets and wrapper, and implicit padding.
///
/// Order of calls: construct, setImplicitPadding() if wanted, fillDefaultDatatypeRepList(), add
/// further representations, initOMTData(), addDefinedDatatypeRep(), then readFile() or
/// readStandardMappings() and edits, then conversions. A manager is used by one thread at a time;
/// several may share a tree that was prepared for it. The tree has to outlive the manager's use of
/// it.
///
/// Nothing here throws or fails loudly: problems are told to DtWarn, and a fallback is shown.
///
/// **Decoding.** `data` points at the value, `length` is its size in octets. `consumed` becomes the
/// number of octets that the value took, padding before it included; a negative one says that
/// it could not be decoded and that the caller must not walk on. With implicit padding on, the
/// address counts: a buffer begins at a multiple of 8, as that of a std::vector does, and a literal
/// need not. No octet outside the value is read: what lies beyond its end reads as zero, so that a
/// value cut short may take more octets than it has. One call makes at most nodeLimit() nodes more
/// than the value has octets, shows the text of no more octets than 16 times the value's and
/// nodeLimit(), and goes down at most 200 datatypes; past that it warns once, stops, and keeps what
/// it has.
///
/// **The line of a value.** The fields of a record follow each other with a delimiter between them;
/// the elements of an array nest in brackets, `1[2[3]]`, as programs read them. See
/// convertStringTreeToString().
///
/// **Encoding.** Text is cut as the line of such a value would have been joined, and every piece is
/// encoded by the datatype of its field or element, with getValueFromStringRep(). The rules:
/// - An empty text encodes to nothing, also inside a value, where a missing piece counts as one.
/// - Nothing is written for alignment: neither implicit padding, if it is on, nor the padding
///   components of HLA 1.3.
/// - The count before a variable array is written, the number of bits before a bit array,
///   and the zero octet at the end of an array of characters that ends at one.
/// - A text that is no line of the datatype is cut as far as it goes. The last field takes all that
///   is left. An array holds the elements that the text has, and where it may have no more, the
///   last one takes what is left; what is missing is not written.
/// - An array of characters may also be written as its plain text, `HELLO` for `H[E[L[L[O]]]]`; one
///   that ends at a zero octet then gets it.
/// - A component of a complex datatype is expected in the text exactly if its condition holds for
///   the pieces before it.
/// - A text in the array wrapper loses the wrapper first; a delimiter inside a wrapped or bracketed
///   part does not cut.
/// - Variant records cannot be encoded: nothing is written for them, as programs expect.
///
/// **Which lines come back.** Encoding the line of a whole value gives its octets again if
/// - implicit padding is off, and there are neither variant records nor padding components;
/// - no part that has octets has an empty line, as a character of value 0, an array of no elements
///   or an array of such parts have;
/// - the representations write what they read: not those of enumerations of 2 and 4 octets while
///   DtNetworkByteOrdering() is 1, "bool", "hex", "string", "utf8" and "utf16", nor numbers with
///   more digits than are shown or with more bits than are read from text;
/// - numbers of an enumeration have names, and no delimiter is empty or could be part of a number
///   or of a name;
/// - no other value has the same line.
///
/// Several values have the same line
/// - where the elements of an array, or the values of a component, are arrays of no fixed size, or
///   end in one whose elements could be taken for them: `1[2[3]]` is one row of three, three rows
///   of one, and more. The innermost array is taken to be the longest;
/// - where characters are delimiters or brackets: `[[]]` is a `[` and a `]`, or three zeros. A
///   character is taken for a zero only where nothing else makes a line of the text.
///
/// A value that was cut short, or in which an array without an end stands before other fields,
/// has a line that no whole value need have.
class OMTREADER_EXPORT DtDatatypeManager
{
public:
    /// What is known of a datatype's name.
    enum DtDatatypeEnum
    {
        DtDatatypeUnknown = 0,
        /// A simple datatype, or a name that is referred to and not defined.
        DtDatatypeSimple = 1,
        DtDatatypeEnumerated = 2,
        /// A record of HLA 1.3.
        DtDatatypeComplex = 3,
        DtDatatypeArray = 4,
        DtDatatypeVariant = 5,
        DtDatatypeFixed = 6,
        /// A name that a representation stands for as a whole, see addDefinedDatatypeRep().
        DtDatatypeDefined = 7
    };

    using NameRepMap = std::map<DtString, DtDatatypeRep*>;
    using NameMap = std::map<DtString, DtString>;
    using BracketMap = std::map<DtString, bool>;
    using Octets = std::vector<char>;

    /// A manager without representations, mappings and tree.
    DtDatatypeManager();
    DtDatatypeManager(const DtDatatypeManager&) = delete;
    DtDatatypeManager& operator=(const DtDatatypeManager&) = delete;
    /// Deletes the representations, each through its own class.
    virtual ~DtDatatypeManager();

    /// The manager that the whole process shares; made at the first call and never deleted. The
    /// first call is to come from one thread.
    static DtDatatypeManager* defaultInstance();

    /// Takes up the datatypes of a tree; null changes nothing. Kinds and mappings of an earlier
    /// tree stay. A simple datatype is mapped to its representation, an enumerated one of 1, 2 or 4
    /// octets to "enum8", "enum16" or "enum32", over what was mapped before.
    virtual void initOMTData(DtOMTTree* tree);
    virtual DtOMTTree* omtTree();

    /// Whether values stand at multiples of their alignment. Set it before
    /// fillDefaultDatatypeRepList(), as representations are made to match.
    virtual void setImplicitPadding(bool isEnabled);
    virtual bool isImplicitPaddingEnabled() const;

    /// Registers the 26 representations of numbers, characters, strings and enumerations.
    virtual void fillDefaultDatatypeRepList();
    /// Registers a representation, which the manager then owns, under the name it gives itself. One
    /// that had the name before is not deleted.
    virtual void addDatatypeRep(DtDatatypeRep* rep);
    /// As addDatatypeRep(), and the datatype of that name is shown by it as a whole. To be called
    /// after initOMTData(), which gives a name that the model defines back to the model.
    virtual void addDefinedDatatypeRep(DtDatatypeRep* rep);
    /// The representation mapped to a name, or registered under it; null if there is none. It
    /// leaves an empty mapping where there was none: kept for compatibility, as lists show it.
    virtual DtDatatypeRep* getSimpleDatatypeRep(const DtString& name);
    /// The representations by name.
    virtual NameRepMap::const_iterator getNameRepMapList();
    virtual NameRepMap::const_iterator getNameRepMapListEnd();

    /// The text between the fields or elements of one datatype.
    virtual void addDelimiterMap(const DtString& datatype, const DtString& delimiter);
    virtual void removeDelimiterMap(const DtString& datatype);
    /// The delimiter of all other datatypes; one blank at first.
    virtual void setDefaultDelimiter(const DtString& delimiter);
    /// Texts around the line of a record or array; none at first.
    virtual void setArrayWrapper(const DtString& open, const DtString& close);
    /// The delimiter of a datatype, or the default; `found` may be null.
    virtual const DtString& getDelimiterMap(const DtString& datatype, bool* found);
    virtual NameMap::const_iterator getDelimiterList();
    virtual NameMap::const_iterator getDelimiterListEnd();

    /// Whether a host shows arrays of a datatype in brackets; kept and saved for hosts.
    virtual void addArrayBracketMap(const DtString& datatype, bool hasBrackets);
    virtual void removeArrayBracketMap(const DtString& datatype);
    virtual void setDefaultArrayBracket(bool hasBrackets);
    /// Without a mapping the answer is true, whatever the default says: kept for compatibility,
    /// because programs rely on it. `found` may be null.
    virtual bool getArrayBracketMap(const DtString& datatype, bool* found);
    virtual BracketMap::const_iterator getArrayBracketList();
    virtual BracketMap::const_iterator getArrayBracketListEnd();

    /// Reads a mapping file. A file that cannot be opened, or that holds nothing, changes nothing;
    /// a malformed one is told to DtWarn and changes nothing.
    virtual void readFile(DtString path);
    /// Writes the mapping file. Attribute mappings are not part of it, kept for compatibility, nor
    /// are mappings that initOMTData() makes anew. The file is replaced whole or not at all.
    /// Without a file to write to, nothing happens; a full disk is told to DtWarn.
    virtual void writeFile(DtString path);

    /// Shows a datatype by a representation, and with it every simple datatype that is based on it
    /// and was not mapped itself. Requires a tree.
    virtual void addRepMapping(const DtString& datatype, const DtString& rep);
    virtual void removeRepMapping(const DtString& datatype);
    /// Shows the attribute, parameter or component of a name by a representation; carried over to
    /// simple datatypes as with addRepMapping().
    virtual void addAttributeMapping(const DtString& attribute, const DtString& rep);
    virtual void removeAttributeMapping(const DtString& attribute);
    virtual const DtString& attributeMapping(const DtString& attribute) const;
    /// Changes a mapping that exists; false, and an empty mapping is made, if it does not.
    virtual bool modifyRepMapping(const DtString& datatype, const DtString& rep);
    virtual NameMap::const_iterator getRepMapList();
    virtual NameMap::const_iterator getRepMapListEnd();

    /// The line of all values of an attribute or parameter, as many as the octets hold, with the
    /// delimiter mapped to the node's own name between them. A minimum of 1 or more is always
    /// reported as not met, with the number of values as a negative one: kept for compatibility,
    /// because programs know the message. Empty, with
    /// nothing consumed, for a null node.
    virtual DtString getFedNodeStringRep(const DtDatatypeFedNode* node, const void* data,
                                         int length, int& consumed);
    /// The line of one value; empty for null data. Kept for compatibility, it is empty, with a
    /// count of -1, for a simple datatype without a representation, which a tree shows in
    /// hexadecimal.
    virtual DtString getStringRep(const DtString& datatype, const void* data, int length,
                                  int& consumed);
    /// The line of a field, alternative, element or discriminant.
    virtual DtString getStringRep(const DtOMTDatatypeNode& node, const void* data, int length,
                                  int& consumed);

    /// The tree of a value, which is the caller's; null for null data. `keyNode` (may be null)
    /// gives the name of the value, `offset` is its place in the buffer that is decoded, `root`
    /// (may be null) the tree that it will belong to. `history` may be null and is not owned; it is
    /// handed to representations of whole records.
    virtual DtStringTree* createStringTreeRep(const DtString& datatype, const void* data,
                                              int length, int& consumed, const DtOMTNode* keyNode,
                                              unsigned int offset, DtStringTree* root,
                                              DtObjectHistory* history);
    virtual DtStringTree* createStringTreeRep(const DtOMTDatatypeNode& node, const void* data,
                                              int length, int& consumed, unsigned int offset,
                                              DtStringTree* root, DtObjectHistory* history);
    /// The tree of all values of an attribute or parameter: the first one, with the others chained
    /// to it as elements. It holds the values that getFedNodeStringRep() shows.
    virtual DtStringTree* createStringTreeRep(const DtDatatypeFedNode* node, const void* data,
                                              int length, int& consumed, unsigned int offset,
                                              DtObjectHistory* history);

    /// Appends the octets of a text; an empty text appends nothing.
    virtual void getValueFromStringRep(const DtString& datatype, const DtString& text, Octets& out);

    /// The line of a tree; empty for null.
    ///
    /// A node gives its value, its first child, its next element in brackets, and after the
    /// delimiter its next sibling. The delimiter handed in serves the node and its first child; a
    /// next sibling or element that is no simple, enumerated or variant value uses its own.
    virtual DtString convertStringTreeToString(DtStringTree* tree, const DtString& delimiter);

    virtual DtDatatypeEnum getDatatypeEnum(const DtString& datatype);
    /// Whether mappings or representations changed since a file was read; delimiters, brackets and
    /// writing do not count.
    virtual bool isDirty();
    virtual void setIsDirty(bool isDirty);

    /// Marks every name that is referred to and not defined as a simple datatype shown as "---",
    /// which stands for no representation.
    virtual void checkOrphanMappings();
    /// The same for the attributes (parameters) of a class and of all classes below it. Where a
    /// host replaces one of these two, it is called for the classes below as well, 100 levels deep.
    virtual void checkObjOrphans(DtObjectClassFedNode* objectClass);
    virtual void checkIntOrphans(DtInteractionClassFedNode* interactionClass);

    // The steps of decoding, each of which a host may replace. Text and count are those of one
    // value; a count of -1 says that there is no representation for it.

    /// By the representation mapped to the datatype.
    virtual void getDatatypeRep(const DtString& datatype, const void* data, int length,
                                int& consumed, DtString& text);
    /// By the representation mapped to the name of an attribute, parameter or component.
    virtual void getAttributeRep(const DtString& name, const void* data, int length, int& consumed,
                                 DtString& text);
    /// All octets in hexadecimal, a blank between them.
    virtual void getDefaultRep(const void* data, int length, int& consumed, DtString& text);
    /// The enumerator's name, or the number in decimal if it has none.
    virtual void getEnumRep(const DtString& datatype, const void* data, int length, int& consumed,
                            DtString& text);
    /// The line of the variant's tree.
    virtual void getVariantRep(const DtString& datatype, const void* data, int length,
                               int& consumed, DtString& text);
    /// The line of an array: of its octets if a DtArrayDatatypeRep is mapped to it, else of its
    /// elements. For a datatype that is no array, nothing and a count of -1.
    virtual void getArrayRep(const DtString& datatype, const void* data, int length, int& consumed,
                             DtString& text);
    /// The line of `length` octets, whatever they hold: by the DtArrayDatatypeRep mapped to the
    /// datatype, else in hexadecimal.
    virtual void getArrayRepBySize(const DtString& datatype, const void* data, int length,
                                   int& consumed, DtString& text);
    /// The line of as many elements as getArrayDatatypeCount() gives.
    virtual void getArrayRepByCount(DtArrayDatatypeNode* node, const void* data, int length,
                                    int& consumed, DtString& text);

    /// Fills a node with the parts of a record, an array, a variant, a complex or a defined value.
    /// Null data leave node and count as they are. Without a node nothing is decoded, and the count
    /// is -1; `root` may be null.
    virtual void createFixedTreeRep(const DtString& datatype, const void* data, int length,
                                    int& consumed, DtStringTree* parent, DtStringTree* root,
                                    unsigned int offset, DtObjectHistory* history);
    /// A component whose condition does not hold, or of which there is no value, makes no node;
    /// further values of a component are chained to its first as elements.
    virtual void createComplexTreeRep(const DtString& datatype, const void* data, int length,
                                      int& consumed, DtStringTree* parent, DtStringTree* root,
                                      unsigned int offset, DtObjectHistory* history);
    virtual void createArrayTreeRep(const DtString& datatype, const void* data, int length,
                                    int& consumed, DtStringTree* parent, DtStringTree* root,
                                    unsigned int offset, DtObjectHistory* history);
    virtual void createDefinedTreeRep(const DtString& datatype, const void* data, int length,
                                      int& consumed, DtStringTree* node, DtStringTree* root,
                                      unsigned int offset, DtObjectHistory* history);
    virtual void createVariantTreeRep(const DtString& datatype, const void* data, int length,
                                      int& consumed, DtStringTree* parent, DtStringTree* root,
                                      unsigned int offset, DtObjectHistory* history);

    /// The number of elements that an array at `data` has; root and other are not used.
    virtual int getArrayDatatypeCount(DtArrayDatatypeNode* node, const void* data, int length,
                                      DtStringTree* root, DtStringTree* other);
    /// The most values that a component may have at `data`. Conditions, and counts that another
    /// component gives, are looked up among the children of `parent`, then in `root`.
    ///
    /// "3" gives 3, "2-5" gives 5 and "1+" the largest number; "(Kind = 2)" gives 1 and "0-4 (Kind
    /// = 2)" gives 4 where the component of that name has this text or enumerator number, else 0;
    /// "(Name)", "0+ (Name)" give the number that the component of that name holds, no more than
    /// the maximum. Padding, "%8", has no value of its own: it gives 0, and the walk skips to a
    /// multiple of 8 octets from the start of the complex value.
    virtual int getComplexDatatypeCount(DtComplexComponentNode* node, const void* data, int length,
                                        DtStringTree* root, DtStringTree* parent);

    /// The octets before a value at an offset; 0 while implicit padding is off.
    virtual int implicitPadding(unsigned int offset, const DtString& datatype);
    /// The alignment of a datatype in octets, at least 1. Where it cannot be told it is 1, with a
    /// warning; so it is inside a datatype that contains itself.
    virtual int byteAlignment(const DtString& datatype);
    // By kind; -1 where it cannot be told.
    virtual int byteAlignmentFromRep(const DtString& datatype);
    virtual int byteAlignmentFixed(const DtString& datatype);
    virtual int byteAlignmentArray(const DtString& datatype);
    /// That of the discriminant; alternatives do not count: kept for compatibility, because
    /// recorded values are padded so.
    virtual int byteAlignmentVariant(const DtString& datatype);
    /// Always -1: kept for compatibility, because values of HLA 1.3 are not padded.
    virtual int byteAlignmentComplex(const DtString& datatype);

    // The steps of encoding, each of which a host may replace. They append, or do nothing.

    virtual void getValueFromDatatypeRep(const DtString& datatype, const DtString& text,
                                         Octets& out);
    /// By the enumerator's name. The number is written least significant octet first while
    /// DtNetworkByteOrdering() is 1, unlike it is read: kept for compatibility, because receivers
    /// expect it.
    virtual void getValueFromEnumRep(const DtString& datatype, const DtString& text, Octets& out);
    virtual void getValueFromFixedRep(const DtString& datatype, const DtString& text, Octets& out);
    virtual void getValueFromComplexRep(const DtString& datatype, const DtString& text,
                                        Octets& out);
    virtual void getValueFromArrayRep(const DtString& datatype, const DtString& text, Octets& out);

    /// Applies a list of mappings as a mapping file holds it; what is none is skipped. The result
    /// says nothing.
    virtual bool processMappings(DtlObjPtr& mappings);

    /// Applies the default mapping that the library carries: the basic data representations of the
    /// standard and of the RPR FOM family. Like readFile(), it comes after initOMTData().
    void readStandardMappings();

    /// How many nodes one call may make beyond one for each octet; 1,000,000 at first.
    void setNodeLimit(int nodes);
    int nodeLimit() const;

private:
    friend class omtreader::ConversionRooms;

    std::unique_ptr<omtreader::ConversionSettings> mySettings;
    std::unique_ptr<omtreader::ConversionRooms> myRooms;
};
