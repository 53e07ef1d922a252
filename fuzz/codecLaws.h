// SPDX-License-Identifier: Apache-2.0
// CodecLaws checks what holds for any octets of any datatype, with public headers alone.
#pragma once

#include "omt/codec/overlay.h"
#include "omt/codec/value.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class CodecLaws
{
public:
    /// Decodes the octets and checks: what Value, Item, Field, visitor and JSON say agrees; what
    /// has no fault, no note and nothing left encodes to the same octets. Gives the law that is
    /// broken, or an empty text. The octets are read in place, so that one may guard their end.
    std::string check(const omt::Type& type, omt::Octets octets);
    /// After check(): cuts the octets at every place, or at some where these are many: a fault
    /// stands where decoding stopped. `isStrict`: it needs more than is left, as those of a value
    /// that was whole do.
    std::string checkCuts(const omt::Type& type, omt::Octets octets, bool isStrict);
    /// After check(): columns of the octets, of some of them, of more and of null rows say what
    /// single values say, and encode to what these encode to.
    std::string checkColumns(const omt::Type& type, omt::Octets octets);
    /// JSON that is read gives octets of which JSON is made again that gives the same octets.
    std::string checkText(const omt::Type& type, std::string_view json);

    /// Of the last check(): whether it had no fault, no note and nothing left.
    bool isPlain() const { return myIsPlain; }

private:
    void compare();
    void checkFault(omt::Octets octets);
    void walk(const omt::Item& item, const std::string& path);
    void number(const omt::Item& item);
    void enumerated(const omt::Item& item);
    void floating(const omt::Item& item, double number);
    void text(const omt::Item& item);
    void octets(const omt::Item& item);
    void fields(const omt::Item& item, const std::string& path);
    void leaf(const omt::Item& item, const std::string& path);
    void roundTrip(const omt::Type& type, omt::Octets octets);
    void setBack(const std::string& path, const omt::Item& item);
    void compareRow(const omt::Type& type, omt::Octets octets, bool isThere,
                    std::optional<std::string_view> fault, std::optional<std::string_view> encoded);
    void require(bool holds, const char* law);
    bool takes(std::string_view text);
    void expect(std::string_view text);

    omt::Value myValue;
    omt::Value myOther;
    std::string myBroken;
    /// The JSON that is not compared yet.
    std::string myJson;
    std::string_view myRest;
    std::string myEvents;
    std::vector<std::uint8_t> myOctets;
    const omt::Type* myType = nullptr;
    omt::Octets myAll;
    std::size_t myLeaves = 0;
    bool myIsPlain = false;
};
