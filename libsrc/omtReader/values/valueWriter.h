// SPDX-License-Identifier: Apache-2.0
// Text to the octets of a value, with the counts that decoding expects.
#pragma once

#include "omtReader/values/conversionBounds.h"
#include "omtReader/values/conversionSettings.h"
#include "omtReader/values/datatypeResolver.h"
#include "omtReader/values/textCutter.h"

namespace omtreader
{

/// Encodes for one manager, whose virtual operations it calls for every part.
class ValueWriter
{
public:
    using Octets = DtDatatypeManager::Octets;

    ValueWriter(DtDatatypeManager& manager, const ConversionSettings& settings,
                DatatypeResolver& resolver, TextCutter& cutter, ConversionBounds& bounds)
        : myManager(manager),
          mySettings(settings),
          myResolver(resolver),
          myCutter(cutter),
          myBounds(bounds)
    {
    }

    void value(const DtString& datatype, const DtString& text, Octets& out);
    void simple(const DtString& datatype, const DtString& text, Octets& out);
    void enumerated(const DtString& datatype, const DtString& text, Octets& out);
    void record(const DtString& datatype, const DtString& text, Octets& out);
    void array(const DtString& datatype, const DtString& text, Octets& out);

private:
    class Call;
    class Handed;

    void byKind(ResolvedDatatype& datatype, const DtString& text, Octets& out);
    void piece(const TextPiece& piece, Octets& out);
    void component(const TextPiece& values, Octets& out);
    const DtString& delimiterFor(const DtString& datatype);
    static void append(const ResolvedDatatype& datatype, const DtString& text, Octets& out);

    DtDatatypeManager& myManager;
    const ConversionSettings& mySettings;
    DatatypeResolver& myResolver;
    TextCutter& myCutter;
    ConversionBounds& myBounds;
    const Octets* myOut = nullptr;  // of the outermost call
    std::size_t myStart = 0;        // where its value begins in it
    int myDepth = 0;
    // The delimiter handed down to the piece that is encoded next.
    const DtString* myHanded = nullptr;
    const ResolvedDatatype* myHandedTo = nullptr;
};

}  // namespace omtreader
